#pragma once
// The data operations a screen test watched (qx::dataop observer) and single values read back
// from the shop database, for screen tests of any family.
#include <QString>
#include <vector>

#include "db/Database.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

namespace qx::test {

struct RecordedCalls {
    std::vector<qx::dataop::Call> calls;

    void record(const qx::dataop::Call& call) { calls.push_back(call); }
    void clear() { calls.clear(); }
    // The statements of one kind of call, in order.
    std::vector<QString> statements(qx::dataop::Call::Kind kind) const {
        std::vector<QString> out;
        for (const auto& c : calls)
            if (c.kind == kind) out.push_back(c.sql);
        return out;
    }
    // The last batch handed to ExecSql, with its number and mode.
    qx::dataop::Call lastExec() const {
        for (auto it = calls.rbegin(); it != calls.rend(); ++it)
            if (it->kind == qx::dataop::Call::Kind::ExecSql) return *it;
        return {};
    }
};

// The first column of the first row as text ("" when there is none).
inline QString scalarText(qx::db::Database& db, const QString& sql) {
    const auto r = db.open(sql.toStdString());
    if (r.rows.empty() || r.rows[0].empty()) return {};
    const auto& v = r.rows[0][0];
    if (auto* s = std::get_if<std::string>(&v)) return QString::fromStdString(*s);
    if (auto* i = std::get_if<std::int64_t>(&v)) return QString::number(*i);
    if (auto* d = std::get_if<double>(&v)) return FloatToStr(*d);
    return {};
}

}  // namespace qx::test
