#pragma once
// The data operations a screen test watched (qx::dataop observer) and single values read back
// from the shop database, for screen tests of any family.
#include <QString>
#include <vector>

#include "db/Database.h"
#include "framework/U_dataop.h"
#include "tests/support/ScreenTestEnvironment.h"

namespace qx::test {

// The texts of the recorded calls of one kind, in order.
inline std::vector<QString> statementsOf(const std::vector<qx::dataop::Call>& calls, qx::dataop::Call::Kind kind) {
    std::vector<QString> out;
    for (const auto& c : calls)
        if (c.kind == kind) out.push_back(c.sql);
    return out;
}

struct RecordedCalls {
    std::vector<qx::dataop::Call> calls;

    void record(const qx::dataop::Call& call) { calls.push_back(call); }
    void clear() { calls.clear(); }
    // The statements of one kind of call, in order.
    std::vector<QString> statements(qx::dataop::Call::Kind kind) const { return statementsOf(calls, kind); }
    // The last batch handed to ExecSql, with its number and mode.
    qx::dataop::Call lastExec() const {
        for (auto it = calls.rbegin(); it != calls.rend(); ++it)
            if (it->kind == qx::dataop::Call::Kind::ExecSql) return *it;
        return {};
    }
};

// The first column of the first row as text ("" when there is none).
inline QString scalarText(qx::db::Database& db, const QString& sql) { return scalarOf(db, sql); }

}  // namespace qx::test
