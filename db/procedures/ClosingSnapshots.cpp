#include "db/procedures/ClosingSnapshots.h"

// GCC 12 reports a false -Wrestrict on "literal" + std::string temporaries (GCC bug 105329).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

#include <string>

#include "db/procedures/Statement.h"

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

// The stock per SKU and warehouse before the day of the date `at` (an expression of the dialect),
// from the opening quantities and the movement stream.
std::string closingSelect(const Dialect& d, const std::string& at) {
    const std::string ifNull = d.ifNull;
    const std::string quantity = "k.B# + " + ifNull + "(m.Q#,0)";
    return "SELECT " + d.day(at) + ", k.WL_ID, k.CK_ID, " + list(quantity) + ", " + sum(quantity) + ", " + sum(quantity) + " * " + ifNull +
           "(st.DJ,0) FROM d1802 k LEFT JOIN (SELECT WL_ID, CK_ID, " + list("sum(Q#) AS Q#") + " FROM V_QX_MOVES WHERE BDATE < " +
           d.dayStart(at) + " GROUP BY WL_ID, CK_ID) m ON m.WL_ID = k.WL_ID AND m.CK_ID = k.CK_ID " +
           "LEFT JOIN d1801 s ON s.WL_ID = k.WL_ID LEFT JOIN d1800 st ON st.K_ID = s.K_ID";
}

// A row trigger `event` on `table` ("AFTER UPDATE OF CK_END_DATE ON sys_co"): on SQLite a trigger
// with its WHEN and body, on PostgreSQL a PL/pgSQL function of the same name holding both, and the
// trigger calling it.
std::vector<std::string> rowTrigger(const Dialect& d, const std::string& name, const std::string& event, const std::string& when,
                                    const std::string& body) {
    if (!d.triggerFunctions)
        return {"CREATE TRIGGER IF NOT EXISTS " + name + " " + event + (when.empty() ? "" : " WHEN " + when) + "\nBEGIN\n" + body + "END"};
    return {"CREATE OR REPLACE FUNCTION " + name + "() RETURNS trigger LANGUAGE plpgsql AS $qx$\nBEGIN\n" +
                (when.empty() ? body : "IF " + when + " THEN\n" + body + "END IF;\n") + "RETURN NULL;\nEND\n$qx$",
            "CREATE OR REPLACE TRIGGER " + name + " " + event + " FOR EACH ROW EXECUTE FUNCTION " + name + "()"};
}

}  // namespace

std::vector<std::string> closingSnapshotStatements() { return closingSnapshotStatements(sqliteDialect()); }

std::vector<std::string> closingSnapshotStatements(const Dialect& d) {
    // A close (the open month moves forward) stores the stock at the new date; a reopen drops
    // what lies after the new date.
    std::vector<std::string> out{
        "CREATE TABLE IF NOT EXISTS sys_ck_snapshot (PERIOD VARCHAR(10) COLLATE QX NOT NULL, WL_ID VARCHAR(21) COLLATE QX NOT NULL, "
        "CK_ID VARCHAR(4) COLLATE QX NOT NULL, " +
            list("K# INT NOT NULL DEFAULT 0") + ", QTY INT NOT NULL DEFAULT 0, MONEY DECIMAL(18,2) NOT NULL DEFAULT 0, " +
            "PRIMARY KEY (PERIOD, WL_ID, CK_ID))",
        // The same stock summed over the warehouses, one row per SKU text (byte for byte, as the
        // stock rows spell it), stored in key order: what a report of every warehouse opens from.
        "CREATE TABLE IF NOT EXISTS sys_ck_snapshot_sku (PERIOD VARCHAR(10) NOT NULL, WL_ID VARCHAR(21) NOT NULL, " +
            list("K# INT NOT NULL DEFAULT 0") + ", PRIMARY KEY (PERIOD, WL_ID))" + d.keyOrdered,
        // One row per closed month whose snapshot has its SKU sums; ROWS_ADDED = 1 once a stock row
        // with opening quantities may have been made after the close (or opening quantities changed).
        "CREATE TABLE IF NOT EXISTS sys_ck_snapshot_period (PERIOD VARCHAR(10) NOT NULL PRIMARY KEY, ROWS_ADDED INT NOT NULL DEFAULT 0)"};
    // The triggers of shops made before the sums existed go (dropping a missing trigger writes
    // nothing, so opening a shop stays a read).
    for (const char* old : {"qx_snapshot_close", "qx_snapshot_reopen"})
        out.push_back(d.triggerFunctions ? "DROP FUNCTION IF EXISTS " + std::string(old) + "() CASCADE"
                                         : "DROP TRIGGER IF EXISTS " + std::string(old));
    const std::string day = d.day("NEW.CK_END_DATE");
    const std::string bytes = std::string(" COLLATE ") + d.bytewise;
    for (auto& statement :
         rowTrigger(d, "qx_snapshot_closing", "AFTER UPDATE OF CK_END_DATE ON sys_co",
                    "NEW.CK_END_DATE IS NOT NULL AND (OLD.CK_END_DATE IS NULL OR NEW.CK_END_DATE > OLD.CK_END_DATE)",
                    "DELETE FROM sys_ck_snapshot WHERE PERIOD >= " + day + ";\n" +
                        "DELETE FROM sys_ck_snapshot_sku WHERE PERIOD >= " + day + ";\n" +
                        "DELETE FROM sys_ck_snapshot_period WHERE PERIOD >= " + day + ";\n" +
                        "INSERT INTO sys_ck_snapshot (PERIOD, WL_ID, CK_ID, " + list("K#") + ", QTY, MONEY) " +
                        closingSelect(d, "NEW.CK_END_DATE") + ";\n" +
                        "INSERT INTO sys_ck_snapshot_sku (PERIOD, WL_ID, " + list("K#") + ") SELECT " + day + ", WL_ID" + bytes + ", " +
                        list("SUM(K#)") + " FROM sys_ck_snapshot WHERE PERIOD = " + day + " GROUP BY WL_ID" + bytes + ";\n" +
                        "INSERT INTO sys_ck_snapshot_period (PERIOD, ROWS_ADDED) VALUES (" + day + ", 0);\n"))
        out.push_back(std::move(statement));
    for (auto& statement : rowTrigger(d, "qx_snapshot_reopening", "AFTER UPDATE OF CK_END_DATE ON sys_co",
                                      "OLD.CK_END_DATE IS NOT NULL AND (NEW.CK_END_DATE IS NULL OR NEW.CK_END_DATE < OLD.CK_END_DATE)",
                                      "DELETE FROM sys_ck_snapshot WHERE NEW.CK_END_DATE IS NULL OR PERIOD > " + day + ";\n" +
                                          "DELETE FROM sys_ck_snapshot_sku WHERE NEW.CK_END_DATE IS NULL OR PERIOD > " + day + ";\n" +
                                          "DELETE FROM sys_ck_snapshot_period WHERE NEW.CK_END_DATE IS NULL OR PERIOD > " + day + ";\n"))
        out.push_back(std::move(statement));
    // A stock row made with opening quantities, or opening quantities changed: the snapshots
    // stored so far may lack a row that opens with them (postings make rows without any).
    const std::string stale = "UPDATE sys_ck_snapshot_period SET ROWS_ADDED = 1 WHERE ROWS_ADDED = 0;\n";
    std::string withOpening;
    for (int i = 0; i < kSizes; ++i) withOpening += (i ? " OR NEW.B" : "NEW.B") + std::to_string(i) + " <> 0";
    for (auto& statement : rowTrigger(d, "qx_snapshot_opening_added", "AFTER INSERT ON d1802", withOpening, stale))
        out.push_back(std::move(statement));
    for (auto& statement : rowTrigger(d, "qx_snapshot_opening_changed", "AFTER UPDATE OF " + list("B#") + " ON d1802", "", stale))
        out.push_back(std::move(statement));
    return out;
}

std::string latestSnapshotInTransaction(ProcedureSession& session, const std::string& date) {
    Statement st(session, "SELECT MAX(PERIOD) FROM sys_ck_snapshot WHERE PERIOD <= ?1");
    st.bind(1, date);
    return st.step() ? st.text(0) : std::string();
}

std::string latestSnapshotAtOrBefore(db::Database& db, const std::string& date) {
    const auto result = db.open("SELECT MAX(PERIOD) FROM sys_ck_snapshot WHERE PERIOD <= " + quoted(date));
    return result.rows.empty() || result.rows[0].empty() ? std::string() : text(result.rows[0][0]);
}

namespace {

// How the stock before a date is recomputed for the stock rows `k`: the starting quantity of
// size # (`start`, with '#' for the position) plus x.Q#, with the joins that bring s and x.
struct Recomputation {
    std::string start;
    std::string joins;
    std::string quantity(const std::string& alias) const { return list(start + " + ISNULL(x.Q#, 0) AS " + alias); }
};

Recomputation recomputation(db::Database& db, const std::string& date, bool useSnapshots) {
    const std::string period = useSnapshots ? latestSnapshotAtOrBefore(db, date) : std::string();
    // One row per stock row (every movement has one): its starting quantities plus the
    // movements from the start to the date, summed per SKU and warehouse.
    Recomputation r{"k.B#", ""};
    std::string since = " WHERE m.BDATE < " + quoted(date);
    if (!period.empty()) {
        const std::string p = quoted(period);
        // From the snapshot; rows that had none when the month was closed start from their
        // opening quantities.
        r.start = "CASE WHEN s.WL_ID IS NULL THEN k.B# ELSE s.K# END";
        since = " WHERE m.BDATE >= " + p + " AND m.BDATE < " + quoted(date);
        r.joins = " LEFT JOIN sys_ck_snapshot s ON s.PERIOD = " + p + " AND s.WL_ID = k.WL_ID AND s.CK_ID = k.CK_ID";
    }
    r.joins += " LEFT JOIN (SELECT m.WL_ID, m.CK_ID, " + list("SUM(m.Q#) AS Q#") + " FROM V_QX_MOVES m" + since +
               " GROUP BY m.WL_ID, m.CK_ID) x ON x.WL_ID = k.WL_ID AND x.CK_ID = k.CK_ID";
    return r;
}

}  // namespace

std::string stockBeforeQuery(db::Database& db, const std::string& date, bool useSnapshots) {
    const Recomputation r = recomputation(db, date, useSnapshots);
    return "SELECT k.WL_ID, k.CK_ID, " + r.quantity("Q#") + " FROM d1802 k" + r.joins;
}

std::string balanceFromSnapshotQuery(db::Database& db) {
    const Recomputation r = recomputation(db, "9999-12-31", true);
    std::string sql = "SELECT k.CK_ID AS ck_id, w.CK_NAME AS ck_name, k.WL_ID AS wl_id, s2.K_ID AS k_id, st.WL_NAME AS wl_name, "
                      "c.COL_NAME AS COL_NAME, " +
                      r.quantity("C#") + ", " + list("k.K# AS K#") + ", " + list("z.M# AS m#") + " FROM d1802 k" + r.joins +
                      " LEFT JOIN d1007 w ON w.CK_ID = k.CK_ID LEFT JOIN d1801 s2 ON s2.WL_ID = k.WL_ID "
                      "LEFT JOIN d1800 st ON st.K_ID = s2.K_ID LEFT JOIN d1005 c ON c.COL_ID = s2.COL_ID "
                      "LEFT JOIN d1006 z ON z.M_ID = st.M_ID WHERE ";
    for (int i = 0; i < kSizes; ++i) {
        std::string start = r.start;
        for (auto at = start.find('#'); at != std::string::npos; at = start.find('#')) start.replace(at, 1, std::to_string(i));
        sql += std::string(i ? " OR " : "") + "k.K" + std::to_string(i) + " <> " + start + " + ISNULL(x.Q" + std::to_string(i) + ", 0)";
    }
    return sql;
}

}  // namespace qx::db::procedures
