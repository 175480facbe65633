#pragma once
// Small helpers every test over a shop database and recorded statements needs.
//
//   EXPECT_EQ(qx::test::scalarText(*db, "SELECT COUNT(*) FROM d1805"), "4");
//   EXPECT_EQ(qx::test::statementsOf(calls, Call::Kind::OpenSql), expected);
#include <QString>
#include <vector>

#include "db/Database.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

namespace qx::test {

// The first column of the first row as text ("" when there is none or it is NULL).
inline QString scalarText(qx::db::Database& db, const QString& sql) {
    const auto r = db.open(sql.toStdString());
    if (r.rows.empty() || r.rows[0].empty()) return {};
    const auto& v = r.rows[0][0];
    if (auto* s = std::get_if<std::string>(&v)) return QString::fromStdString(*s);
    if (auto* i = std::get_if<std::int64_t>(&v)) return QString::number(*i);
    if (auto* d = std::get_if<double>(&v)) return FloatToStr(*d);
    return {};
}

// The texts of the recorded calls of one kind, in order.
inline std::vector<QString> statementsOf(const std::vector<qx::dataop::Call>& calls, qx::dataop::Call::Kind kind) {
    std::vector<QString> out;
    for (const auto& c : calls)
        if (c.kind == kind) out.push_back(c.sql);
    return out;
}

}  // namespace qx::test
