#include "db/procedures/ClosingSnapshots.h"

#include <string>

namespace qx::db::procedures {
namespace {

constexpr int kSizes = 10;

std::string list(const std::string& pattern) {
    // pattern with '#' for the size position: list("k.K#") → "k.K0, k.K1, ..."
    std::string out;
    for (int i = 0; i < kSizes; ++i) {
        std::string item = pattern;
        for (auto at = item.find('#'); at != std::string::npos; at = item.find('#')) item.replace(at, 1, std::to_string(i));
        out += (i ? ", " : "") + item;
    }
    return out;
}

std::string sum(const std::string& pattern) {
    std::string out = "(";
    for (int i = 0; i < kSizes; ++i) {
        std::string item = pattern;
        for (auto at = item.find('#'); at != std::string::npos; at = item.find('#')) item.replace(at, 1, std::to_string(i));
        out += (i ? " + " : "") + item;
    }
    return out + ")";
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) out += c == '\'' ? std::string("''") : std::string(1, c);
    return out + "'";
}

std::string text(const Value& v) {
    if (auto* s = std::get_if<std::string>(&v)) return *s;
    return {};
}

// The stock per SKU and warehouse before the date `at` (an SQLite expression), from the opening
// quantities and the movement stream.
std::string closingSelect(const std::string& at) {
    return "SELECT " + at + ", k.WL_ID, k.CK_ID, " + list("k.B# + ifnull(m.Q#,0)") + ", " + sum("k.B# + ifnull(m.Q#,0)") + ", " +
           sum("k.B# + ifnull(m.Q#,0)") + " * ifnull(st.DJ,0) FROM d1802 k LEFT JOIN (SELECT WL_ID, CK_ID, " + list("sum(Q#) AS Q#") +
           " FROM V_QX_MOVES WHERE BDATE < " + at + " GROUP BY WL_ID, CK_ID) m ON m.WL_ID = k.WL_ID AND m.CK_ID = k.CK_ID " +
           "LEFT JOIN d1801 s ON s.WL_ID = k.WL_ID LEFT JOIN d1800 st ON st.K_ID = s.K_ID";
}

}  // namespace

std::vector<std::string> closingSnapshotStatements() {
    return {
        "CREATE TABLE IF NOT EXISTS sys_ck_snapshot (PERIOD VARCHAR(10) COLLATE QX NOT NULL, WL_ID VARCHAR(21) COLLATE QX NOT NULL, "
            "CK_ID VARCHAR(4) COLLATE QX NOT NULL, " +
            list("K# INT NOT NULL DEFAULT 0") + ", QTY INT NOT NULL DEFAULT 0, MONEY DECIMAL(18,2) NOT NULL DEFAULT 0, " +
            "PRIMARY KEY (PERIOD, WL_ID, CK_ID))",
        // A close (the open month moves forward) stores the stock at the new date; a reopen drops
        // what lies after the new date.
        "CREATE TRIGGER IF NOT EXISTS qx_snapshot_close AFTER UPDATE OF CK_END_DATE ON sys_co "
        "WHEN NEW.CK_END_DATE IS NOT NULL AND (OLD.CK_END_DATE IS NULL OR NEW.CK_END_DATE > OLD.CK_END_DATE)\nBEGIN\n"
        "DELETE FROM sys_ck_snapshot WHERE PERIOD >= substr(NEW.CK_END_DATE, 1, 10);\n"
        "INSERT INTO sys_ck_snapshot (PERIOD, WL_ID, CK_ID, " + list("K#") + ", QTY, MONEY) " + closingSelect("substr(NEW.CK_END_DATE, 1, 10)") +
            ";\nEND",
        "CREATE TRIGGER IF NOT EXISTS qx_snapshot_reopen AFTER UPDATE OF CK_END_DATE ON sys_co "
        "WHEN OLD.CK_END_DATE IS NOT NULL AND (NEW.CK_END_DATE IS NULL OR NEW.CK_END_DATE < OLD.CK_END_DATE)\nBEGIN\n"
        "DELETE FROM sys_ck_snapshot WHERE NEW.CK_END_DATE IS NULL OR PERIOD > substr(NEW.CK_END_DATE, 1, 10);\nEND",
    };
}

std::string latestSnapshotAtOrBefore(db::Database& db, const std::string& date) {
    const auto result = db.open("SELECT MAX(PERIOD) FROM sys_ck_snapshot WHERE PERIOD <= " + quoted(date));
    return result.rows.empty() || result.rows[0].empty() ? std::string() : text(result.rows[0][0]);
}

std::string stockBeforeQuery(db::Database& db, const std::string& date, bool useSnapshots) {
    const std::string period = useSnapshots ? latestSnapshotAtOrBefore(db, date) : std::string();
    const std::string before = quoted(date);
    std::string parts;
    if (period.empty()) {
        parts = "SELECT k.WL_ID, k.CK_ID, " + list("k.B# AS Q#") + " FROM d1802 k UNION ALL SELECT m.WL_ID, m.CK_ID, " +
                list("m.Q#") + " FROM V_QX_MOVES m WHERE m.BDATE < " + before;
    } else {
        const std::string p = quoted(period);
        // SKUs that had no stock row when the month was closed start from their opening.
        // Every stock row from its snapshot; rows that had none when the month was closed start
        // from their opening quantities.
        parts = "SELECT k.WL_ID, k.CK_ID, " + list("CASE WHEN s.WL_ID IS NULL THEN k.B# ELSE s.K# END AS Q#") +
                " FROM d1802 k LEFT JOIN sys_ck_snapshot s ON s.PERIOD = " + p +
                " AND s.WL_ID = k.WL_ID AND s.CK_ID = k.CK_ID UNION ALL SELECT m.WL_ID, m.CK_ID, " + list("m.Q#") +
                " FROM V_QX_MOVES m WHERE m.BDATE >= " + p + " AND m.BDATE < " + before;
    }
    return "SELECT x.WL_ID, x.CK_ID, " + list("SUM(x.Q#) AS Q#") + " FROM (" + parts + ") x GROUP BY x.WL_ID, x.CK_ID";
}

std::string balanceFromSnapshotQuery(db::Database& db) {
    const std::string recomputed = stockBeforeQuery(db, "9999-12-31", true);
    std::string sql = "SELECT k.CK_ID AS ck_id, w.CK_NAME AS ck_name, k.WL_ID AS wl_id, s.K_ID AS k_id, st.WL_NAME AS wl_name, "
                      "c.COL_NAME AS COL_NAME, " +
                      list("ISNULL(r.Q#, 0) AS C#") + ", " + list("k.K# AS K#") + ", " + list("z.M# AS m#") +
                      " FROM d1802 k LEFT JOIN (" + recomputed +
                      ") r ON r.WL_ID = k.WL_ID AND r.CK_ID = k.CK_ID LEFT JOIN d1007 w ON w.CK_ID = k.CK_ID "
                      "LEFT JOIN d1801 s ON s.WL_ID = k.WL_ID LEFT JOIN d1800 st ON st.K_ID = s.K_ID "
                      "LEFT JOIN d1005 c ON c.COL_ID = s.COL_ID LEFT JOIN d1006 z ON z.M_ID = st.M_ID WHERE ";
    for (int i = 0; i < kSizes; ++i)
        sql += std::string(i ? " OR " : "") + "k.K" + std::to_string(i) + " <> ISNULL(r.Q" + std::to_string(i) + ", 0)";
    return sql;
}

}  // namespace qx::db::procedures
