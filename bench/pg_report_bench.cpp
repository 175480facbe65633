// The reports' statements on PostgreSQL: each report's batch as the screen sends it (its golden
// file), run through the translator, beside the same query written by hand for PostgreSQL. Both
// give the same rows (checked: row count and every column's sum); the figures are the median
// wall times of 21 runs of each, taken in turn, after one warm-up run ($QXCK_REPORT_RUNS), and
// the fastest run of each.
//   bench_pg_report [--from FILE]    a shop file (default $QXCK_REPORT_DB, else a shop of
//                                    1,000,000 lines made once by qxck-demo --lines in the temp
//                                    folder), copied to a private PostgreSQL server started for
//                                    the run (tests/support/PostgresServer.h)
//   bench_pg_report --db URI         a shop already on a server
//   QXCK_REPORT_CASES="204 255"      only these reports
// The cross-tabs (SYS_JX, SYS_JD) beside their query written by hand in long form (one row per
// row key, column key and value, checked cell by cell against the pivot): the pivot is the
// procedure's work on top of it.
// The ranking (281, a batch of 40 statements and eleven temp tables) beside the same batch
// written by hand in PostgreSQL, statement for statement (CREATE TEMP TABLE … AS, row_number()
// for IDENTITY, UPDATE … FROM, sent as one text in one transaction; checked also column by
// column), which measures the translation. A second line shows the ranking rewritten as one
// query with CTEs against the same runs: a different algorithm (it totals the stock rows once,
// the batch eight times), shown and not held to the target.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "db/postgres/PostgresDatabase.h"
#include "db/tools/BulkShop.h"
#include "db/tools/ShopCopy.h"
#include "support/PostgresServer.h"

namespace {

[[noreturn]] void die(const std::string& message) {
    std::fprintf(stderr, "bench_pg_report: %s\n", message.c_str());
    std::exit(1);
}

// The cases of a golden statement file, read as the tests' GoldenStatements reads them (this
// program has no Qt): "-- case: name" starts one, "#" lines are notes, a case's lines are joined
// with nothing, "${br}" is a line break.
std::map<std::string, std::string> goldenCases(const std::string& file) {
    std::ifstream in(std::string(QXCK_BENCH_SOURCE_DIR) + "/tests/" + file);
    if (!in) die("no golden file " + file);
    std::map<std::string, std::string> cases;
    std::string name;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("-- case:", 0) == 0) {
            name = line.substr(8);
            name.erase(0, name.find_first_not_of(' '));
            cases[name];
        } else if (!name.empty() && !line.empty() && line[0] != '#') {
            cases[name] += line;
        }
    }
    for (auto& [n, text] : cases)
        for (auto at = text.find("${br}"); at != std::string::npos; at = text.find("${br}", at)) text.replace(at, 5, "\n");
    return cases;
}

struct Case {
    Case(std::string name, std::string golden, std::string goldenCase, std::string hand, bool crossTab = false, std::string skipRow = {})
        : name(std::move(name)), golden(std::move(golden)), goldenCase(std::move(goldenCase)), hand(std::move(hand)), crossTab(crossTab),
          skipRow(std::move(skipRow)) {}
    std::string name, golden, goldenCase;
    std::string hand;  // the same query written for PostgreSQL
    // A cross-tab (SYS_JX, SYS_JD): the hand-written query gives the figures long (one row per
    // row key, column key and value); both must add up to the same total of the value cells (the
    // columns named by a month number or "yyyymm|dd"), leaving out a row whose first value is
    // skipRow (the report's template row).
    bool crossTab = false;
    std::string skipRow;
    // Each column holds the same values on both sides (in any order: places tied on what they
    // sold may be numbered either way round).
    bool sameColumns = false;
    // Another hand-written form, timed beside the same runs on a line of its own: shown, not held
    // to the target.
    std::string alsoName, also;
};

const char* kQty = "(l.s0+l.s1+l.s2+l.s3+l.s4+l.s5+l.s6+l.s7+l.s8+l.s9)";

std::vector<Case> cases() {
    const std::string q = kQty;
    const std::string range = " AND h.bdate >= '2026-03-01' AND h.bdate < '2026-03-19'";
    // the detail's line of a receipt (0) or a purchase return (2), with its supplier
    auto purchaseDetail = [&](const char* head, const char* lines, const char* sign, const char* price, const char* amount, int kind) {
        const std::string s = sign;
        std::string sizes;
        for (int i = 0; i < 10; ++i) sizes += ", " + s + "l.s" + std::to_string(i);
        return "SELECT " + std::to_string(kind) + " AS ttype, h.bdate, l.noid, st.m_id, st.k_id, st.wl_name, st.dw_name, c.col_name" + sizes +
               ", 0 AS stot, 0.00 AS zk, 0.00 AS vipzk, 0.00 AS odj, 0.00 AS omoney, l." + price + ", " + s + "l." + amount +
               ", g.kh_gys_id AS oid, g.kg_name AS oname, NULL AS note FROM d1801 w JOIN " + lines +
               " l ON l.wl_id = w.wl_id JOIN d1800 st ON st.k_id = w.k_id JOIN d1005 c ON c.col_id = w.col_id JOIN " + head +
               " h ON h.noid = l.noid AND h.t = 1 JOIN d1103 g ON g.kh_gys_id = h.kh_gys_id JOIN d1007 k ON k.ck_id = h.ck_id "
               "JOIN d1101 y ON y.yw_id = h.yw_id WHERE TRUE" + range;
    };
    auto salesDetail = [&](const char* head, const char* lines, const char* sign, int kind) {
        const std::string s = sign;
        std::string sizes;
        for (int i = 0; i < 10; ++i) sizes += ", " + s + "l.s" + std::to_string(i);
        return "SELECT " + std::to_string(kind) + " AS ttype, h.bdate, l.noid, st.m_id, st.k_id, st.wl_name, st.dw_name, c.col_name" + sizes +
               ", 0 AS stot, 0.00 AS zk, 0.00 AS vipzk, 0.00 AS odj, 0.00 AS omoney, l.sj, " + s +
               "l.smoney, g.kh_gys_id AS oid, g.kg_name AS oname, NULL AS note FROM d1801 w JOIN " + lines +
               " l ON l.wl_id = w.wl_id JOIN d1800 st ON st.k_id = w.k_id JOIN d1009 p ON p.pp_id = st.pp_id JOIN d1005 c ON "
               "c.col_id = w.col_id JOIN " + head +
               " h ON h.noid = l.noid AND h.t = 1 JOIN d1102 g ON g.kh_gys_id = h.kh_gys_id JOIN d1007 k ON k.ck_id = h.ck_id "
               "JOIN d1101 y ON y.yw_id = h.yw_id WHERE TRUE" + range;
    };
    // the summaries' lines: counterparty, quantity, amount (and profit)
    auto purchaseLines = [&](const char* head, const char* lines, const char* sign, const char* amount) {
        const std::string s = sign;
        return "SELECT g.kg_name, " + s + q + " AS q, " + s + "l." + amount +
               " AS m FROM " + head + " h JOIN " + lines + " l ON l.noid = h.noid JOIN d1801 w ON w.wl_id = l.wl_id JOIN d1800 st ON "
               "st.k_id = w.k_id JOIN d1101 y ON y.yw_id = h.yw_id JOIN d1008 b ON b.bm_id = y.bm_id JOIN d1103 g ON g.kh_gys_id = "
               "h.kh_gys_id JOIN d1007 k ON k.ck_id = h.ck_id JOIN d1005 c ON c.col_id = w.col_id WHERE h.t = 1" + range;
    };
    auto salesLines = [&](const char* head, const char* lines, const char* sign, const char* profit) {
        const std::string s = sign;
        return "SELECT g.kg_name, " + s + q + " AS q, " + s + "l.smoney AS m, " + profit + " AS ly FROM " + head + " h JOIN " + lines +
               " l ON l.noid = h.noid JOIN d1801 w ON w.wl_id = l.wl_id JOIN d1800 st ON st.k_id = w.k_id JOIN d1009 p ON p.pp_id = "
               "st.pp_id JOIN d1101 y ON y.yw_id = h.yw_id JOIN d1008 b ON b.bm_id = y.bm_id JOIN d1102 g ON g.kh_gys_id = "
               "h.kh_gys_id JOIN d1007 k ON k.ck_id = h.ck_id JOIN d1005 c ON c.col_id = w.col_id WHERE h.t = 1" + range;
    };
    auto pointOfSale = [&](const std::string& items) {
        return "SELECT v.vipname, " + q + ", l.smoney, l.smoney - l.money FROM " + items +
               " JOIN d712 h ON h.noid = l.noid JOIN d1007 k ON k.ck_id = h.ck_id" + range +
               " LEFT JOIN d702 v ON v.vipid = h.vipid LEFT JOIN d1101 y ON y.yw_id = h.yw_id LEFT JOIN d1008 b ON b.bm_id = y.bm_id";
    };
    std::vector<Case> out;
    out.push_back({"203 purchase detail, by supplier", "reports/golden/qxck203.sql", "by supplier",
                   "SELECT * FROM (" + purchaseDetail("d8101", "d8101a", "", "dj", "money", 0) + " UNION ALL " +
                       purchaseDetail("d8102", "d8102a", "0-", "sj", "smoney", 2) + ") t ORDER BY oid, bdate, noid"});
    out.push_back({"204 purchase summary, by supplier", "reports/golden/qxck204.sql", "by supplier, no dates, no sizes",
                   "SELECT kg_name, SUM(q), SUM(m) FROM (" + purchaseLines("d8101", "d8101a", "", "money") + " UNION ALL " +
                       purchaseLines("d8102", "d8102a", "0-", "smoney") + ") t GROUP BY kg_name"});
    out.push_back({"213 sales detail, by customer", "reports/golden/qxck213.sql", "by customer, tickets and returns",
                   "SELECT * FROM (" + salesDetail("d8201", "d8201a", "", 0) + " UNION ALL " + salesDetail("d8202", "d8202a", "0-", 2) +
                       ") t ORDER BY oid, bdate, noid"});
    out.push_back(
        {"214 sales summary, by customer, all sources", "reports/golden/qxck214.sql", "by customer, all sources",
         "SELECT kg_name, SUM(q), SUM(m), SUM(ly) FROM (" + salesLines("d8201", "d8201a", "", "l.smoney - l.money") + " UNION ALL " +
             salesLines("d8202", "d8202a", "0-", "l.money - l.smoney") + " UNION ALL " +
             pointOfSale("d1800 st JOIN d1801 w ON w.k_id = st.k_id JOIN d1009 p ON p.pp_id = st.pp_id JOIN d712a l ON l.wl_id = "
                         "w.wl_id JOIN d1005 c ON c.col_id = w.col_id") +
             " UNION ALL " +
             pointOfSale("(VALUES ('Z'), ('ZZZZZ'), ('ZZZZC')) AS st(k_id) JOIN d712a l ON l.wl_id = st.k_id") +
             ") t(kg_name, q, m, ly) GROUP BY kg_name"});
    const std::string k = "(k.k0+k.k1+k.k2+k.k3+k.k4+k.k5+k.k6+k.k7+k.k8+k.k9)";
    out.push_back({"255 stock query summary, in stock only", "reports/golden/qxck255.sql",
                   "summary, all warehouses, in stock only, cost shown",
                   "SELECT st.k_id, c.col_id, st.m_id, c.col_name, st.wl_name, st.dw_name, p.pp_name, SUM(k.k0), SUM(k.k1), SUM(k.k2), "
                   "SUM(k.k3), SUM(k.k4), SUM(k.k5), SUM(k.k6), SUM(k.k7), SUM(k.k8), SUM(k.k9), SUM(" + k + "), st.pfj, SUM(" + k +
                       " * st.pfj), st.dj, SUM(" + k + " * st.dj), 'zz', '汇总值' FROM d1801 w JOIN d1802 k ON k.wl_id = w.wl_id JOIN d1800 "
                       "st ON st.k_id = w.k_id JOIN d1009 p ON p.pp_id = st.pp_id JOIN d1006 z ON z.m_id = st.m_id JOIN d1005 c ON c.col_id "
                       "= w.col_id GROUP BY st.k_id, c.col_id, st.m_id, st.pfj, c.col_name, p.pp_name, st.wl_name, st.dw_name, st.dj "
                       "HAVING SUM(" + k + ") > 0 ORDER BY st.k_id, c.col_id"});
    // the ranking's lines sold (sales tickets, returns negative, point of sale) in the warehouses
    // of `shops` (an alias c with ck_id)
    auto soldLines = [&](const std::string& shops) {
        return "SELECT h.ck_id, NULL AS vipid, l.wl_id, " + q + " AS sl, l.smoney AS money, l.smoney - l.money AS ly, st.class_id, "
               "p.pp_name AS pp, l.col_id FROM d8201 h JOIN d8201a l ON l.noid = h.noid JOIN d1800 st ON st.k_id = l.k_id JOIN d1009 p "
               "ON p.pp_id = st.pp_id JOIN " + shops + " ON c.ck_id = h.ck_id WHERE h.t = 1" + range + " UNION ALL SELECT h.ck_id, NULL, "
               "l.wl_id, -" + q + ", -l.smoney, l.money - l.smoney, st.class_id, p.pp_name, l.col_id FROM d8202 h JOIN d8202a l ON "
               "l.noid = h.noid JOIN d1800 st ON st.k_id = l.k_id JOIN d1009 p ON p.pp_id = st.pp_id JOIN " + shops + " ON c.ck_id = "
               "h.ck_id WHERE h.t = 1" + range + " UNION ALL SELECT h.ck_id, h.vipid, l.wl_id, " + q + ", l.smoney, l.smoney - l.money, "
               "st.class_id, p.pp_name, w.col_id FROM d712a l JOIN d712 h ON h.noid = l.noid JOIN " + shops + " ON c.ck_id = h.ck_id "
               "JOIN d1801 w ON w.wl_id = l.wl_id JOIN d1800 st ON st.k_id = w.k_id JOIN d1009 p ON p.pp_id = st.pp_id WHERE TRUE" + range;
    };
    // The ranking's batch as a PostgreSQL developer ports it, statement for statement: the same
    // temp tables (numbered by row_number() where the batch numbers by IDENTITY, an added row
    // after the last number), each list's stock totalled by its own pass over the stock rows
    // (eight: the styles', then an INSERT and an UPDATE for each of warehouses, classes, colours
    // and brands), the places filled by UPDATE … FROM and read in place order, one transaction.
    std::string batch =
        "BEGIN; CREATE TEMP TABLE tck AS SELECT ck_id FROM d1007; CREATE TEMP TABLE t AS " + soldLines("tck c") + "; "
        "CREATE TEMP TABLE phb (id int, k_id varchar(20), wl_name varchar(80), k1 int, s1 int, m1 numeric(18,2), ck_id varchar(20), "
        "ck_name varchar(80), s2 int, m2 numeric(18,2), class_id varchar(20), class_name varchar(80), s3 int, m3 numeric(18,2), "
        "col_id varchar(20), col_name varchar(80), s4 int, m4 numeric(18,2), pp_name varchar(80), s5 int, m5 numeric(18,2), "
        "zs_id varchar(20), zs_name varchar(80), s6 int, vipid varchar(20), vipname varchar(80), s7 int, m7 numeric(18,2), k2 int, "
        "k3 int, k4 int, k5 int); "
        "CREATE TEMP TABLE kc AS SELECT w.k_id, SUM(" + k + ") AS kc FROM d1802 k JOIN d1801 w ON w.wl_id = k.wl_id JOIN tck c ON "
        "c.ck_id = k.ck_id GROUP BY w.k_id; "
        "CREATE TEMP TABLE w AS SELECT row_number() OVER (ORDER BY SUM(t.sl) DESC) AS id, w.k_id, SUM(t.sl) AS sl, SUM(t.money) AS "
        "smoney FROM t JOIN d1801 w ON w.wl_id = t.wl_id GROUP BY w.k_id; "
        "CREATE TEMP TABLE zs AS SELECT row_number() OVER (ORDER BY kc.kc DESC) AS id, kc.k_id, st.wl_name, kc.kc FROM kc JOIN d1800 "
        "st ON st.k_id = kc.k_id WHERE NOT EXISTS (SELECT 1 FROM w WHERE w.k_id = kc.k_id); ";
    // warehouses, classes, colours, brands: the list sold, the keys in stock that sold nothing
    // added, then each key's stock
    struct List {
        const char* table;
        const char* column;    // in t and the list
        const char* stockKey;  // the same key over the stock rows
        const char* join;      // what the stock key needs beyond the style
    };
    for (const List& list : {List{"ck", "ck_id", "k.ck_id", ""}, List{"cl", "class_id", "st.class_id", ""},
                             List{"col", "col_id", "w.col_id", ""}, List{"pp", "pp", "p.pp_name", " JOIN d1009 p ON p.pp_id = st.pp_id"}}) {
        const std::string table = list.table, column = list.column, key = list.stockKey;
        const std::string stockRows = "FROM d1800 st" + std::string(list.join) + " JOIN d1801 w ON w.k_id = st.k_id JOIN d1802 k ON "
                                      "k.wl_id = w.wl_id JOIN tck c ON c.ck_id = k.ck_id GROUP BY " + key;
        const std::string keys = table == "ck" ? "SELECT ck_id AS key FROM tck" : "SELECT " + key + " AS key " + stockRows;
        batch += "CREATE TEMP TABLE " + table + " AS SELECT row_number() OVER (ORDER BY SUM(sl) DESC) AS id, " + column + ", SUM(sl) "
                 "AS sl, SUM(money) AS smoney, 0 AS kc FROM t GROUP BY " + column + "; INSERT INTO " + table + " (id, " + column +
                 ", kc) SELECT (SELECT coalesce(max(id), 0) FROM " + table + ") + row_number() OVER (ORDER BY a.key), a.key, 0 FROM (" +
                 keys + ") a WHERE NOT EXISTS (SELECT 1 FROM " + table + " x WHERE x." + column + " = a.key); UPDATE " + table +
                 " SET kc = a.kc FROM (SELECT " + key + " AS key, SUM(" + k + ") AS kc " + stockRows + ") a WHERE " + table + "." +
                 column + " = a.key; ";
    }
    batch += "CREATE TEMP TABLE vip AS SELECT row_number() OVER (ORDER BY SUM(t.sl) DESC) AS id, v.vipid, v.vipname, SUM(t.sl) AS sl, "
             "SUM(t.money) AS smoney FROM t JOIN d702 v ON v.vipid = t.vipid GROUP BY v.vipid, v.vipname; "
             "INSERT INTO phb (id) SELECT id FROM w UNION SELECT id FROM ck UNION SELECT id FROM cl UNION SELECT id FROM col UNION "
             "SELECT id FROM pp UNION SELECT id FROM zs; ";
    // the places, list by list in the batch's order, then the names
    for (const char* fill : {"pp_name = c.pp, s5 = c.sl, k5 = c.kc, m5 = c.smoney FROM pp c WHERE phb.id = c.id",
                             "ck_id = c.ck_id, s2 = c.sl, k2 = c.kc, m2 = c.smoney FROM ck c WHERE phb.id = c.id",
                             "zs_id = c.k_id, s6 = c.kc FROM zs c WHERE phb.id = c.id",
                             "k_id = c.k_id, s1 = c.sl, m1 = c.smoney FROM w c WHERE phb.id = c.id",
                             "k1 = c.kc FROM kc c WHERE phb.k_id = c.k_id",
                             "col_id = c.col_id, s4 = c.sl, k4 = c.kc, m4 = c.smoney FROM col c WHERE phb.id = c.id",
                             "class_id = c.class_id, s3 = c.sl, k3 = c.kc, m3 = c.smoney FROM cl c WHERE phb.id = c.id",
                             "vipid = c.vipid, s7 = c.sl, m7 = c.smoney FROM vip c WHERE phb.id = c.id",
                             "wl_name = c.wl_name FROM d1800 c WHERE phb.k_id = c.k_id",
                             "zs_name = c.wl_name FROM d1800 c WHERE phb.zs_id = c.k_id",
                             "ck_name = c.ck_name FROM d1007 c WHERE phb.ck_id = c.ck_id",
                             "class_name = c.class_name FROM d1004 c WHERE phb.class_id = c.class_id",
                             "col_name = c.col_name FROM d1005 c WHERE phb.col_id = c.col_id",
                             "vipname = c.vipname FROM d702 c WHERE phb.vipid = c.vipid"})
        batch += "UPDATE phb SET " + std::string(fill) + "; ";
    batch += "SELECT * FROM phb ORDER BY id; DROP TABLE vip, phb, ck, t, cl, col, pp, tck, w, kc, zs; COMMIT";
    // The same ranking rewritten as one query (CTEs and row_number()): it totals the stock rows
    // once where the batch does eight times. Shown beside the batch, not held to the target.
    // Each list (styles sold, warehouses, classes, colours, brands, styles in stock not sold,
    // members) numbered by what it sold (the lists of the shop's warehouses, classes, colours
    // and brands then go on with those in stock that sold nothing), side by side by place.
    const std::string stock = "SELECT w.k_id, w.col_id, k.ck_id, " + k + " AS kc FROM d1802 k JOIN d1801 w ON w.wl_id = k.wl_id JOIN "
                              "d1007 c ON c.ck_id = k.ck_id";
    // one of the lists with the keys in stock after those sold: the key's sales, then its stock
    auto ranked = [&](const std::string& key, const std::string& inStock) {
        return "SELECT row_number() OVER (ORDER BY s.key IS NULL, s.sl DESC, a.key) AS id, coalesce(s.key, a.key) AS key, s.sl, s.smoney, "
               "coalesce(a.kc, 0) AS kc FROM (SELECT " + key + " AS key, SUM(sl) AS sl, SUM(money) AS smoney FROM t GROUP BY " + key +
               ") s FULL JOIN (" + inStock + ") a ON a.key = s.key";
    };
    const std::string oneQuery =
        "WITH t AS (" + soldLines("d1007 c") + "), "
        "stock AS (" + stock + "), "
        "kc AS (SELECT k_id, SUM(kc) AS kc FROM stock GROUP BY k_id), "
        "sold AS (SELECT row_number() OVER (ORDER BY SUM(t.sl) DESC) AS id, w.k_id, SUM(t.sl) AS sl, SUM(t.money) AS smoney FROM t "
        "JOIN d1801 w ON w.wl_id = t.wl_id GROUP BY w.k_id), "
        "unsold AS (SELECT row_number() OVER (ORDER BY kc.kc DESC) AS id, kc.k_id, st.wl_name, kc.kc FROM kc JOIN d1800 st ON st.k_id = "
        "kc.k_id WHERE NOT EXISTS (SELECT 1 FROM sold WHERE sold.k_id = kc.k_id)), "
        "ck AS (" + ranked("ck_id", "SELECT c.ck_id AS key, k.kc FROM d1007 c LEFT JOIN (SELECT s.ck_id, SUM(s.kc) AS kc FROM stock s "
                                    "JOIN d1800 st ON st.k_id = s.k_id GROUP BY s.ck_id) k ON k.ck_id = c.ck_id") + "), "
        "cl AS (" + ranked("class_id", "SELECT st.class_id AS key, SUM(s.kc) AS kc FROM stock s JOIN d1800 st ON st.k_id = s.k_id "
                                       "GROUP BY st.class_id") + "), "
        "col AS (" + ranked("col_id", "SELECT s.col_id AS key, SUM(s.kc) AS kc FROM stock s JOIN d1800 st ON st.k_id = s.k_id "
                                      "GROUP BY s.col_id") + "), "
        "pp AS (" + ranked("pp", "SELECT p.pp_name AS key, SUM(s.kc) AS kc FROM stock s JOIN d1800 st ON st.k_id = s.k_id JOIN d1009 p "
                                 "ON p.pp_id = st.pp_id GROUP BY p.pp_name") + "), "
        "vip AS (SELECT row_number() OVER (ORDER BY SUM(t.sl) DESC) AS id, v.vipid, v.vipname, SUM(t.sl) AS sl, SUM(t.money) AS smoney "
        "FROM t JOIN d702 v ON v.vipid = t.vipid GROUP BY v.vipid, v.vipname), "
        "ids AS (SELECT id FROM sold UNION SELECT id FROM ck UNION SELECT id FROM cl UNION SELECT id FROM col UNION SELECT id FROM pp "
        "UNION SELECT id FROM unsold) "
        "SELECT i.id, sold.k_id, st.wl_name, kc.kc, sold.sl, round(sold.smoney, 2), ck.key, c.ck_name, ck.sl, round(ck.smoney, 2), "
        "cl.key, d4.class_name, cl.sl, round(cl.smoney, 2), col.key, d5.col_name, col.sl, round(col.smoney, 2), pp.key, pp.sl, "
        "round(pp.smoney, 2), unsold.k_id, unsold.wl_name, unsold.kc, vip.vipid, vip.vipname, vip.sl, round(vip.smoney, 2), ck.kc, "
        "cl.kc, col.kc, pp.kc FROM ids i LEFT JOIN sold ON sold.id = i.id LEFT JOIN d1800 st ON st.k_id = sold.k_id LEFT JOIN kc ON "
        "kc.k_id = sold.k_id LEFT JOIN ck ON ck.id = i.id LEFT JOIN d1007 c ON c.ck_id = ck.key LEFT JOIN cl ON cl.id = i.id LEFT JOIN "
        "d1004 d4 ON d4.class_id = cl.key LEFT JOIN col ON col.id = i.id LEFT JOIN d1005 d5 ON d5.col_id = col.key LEFT JOIN pp ON "
        "pp.id = i.id LEFT JOIN unsold ON unsold.id = i.id LEFT JOIN vip ON vip.id = i.id";
    Case ranking("281 sales ranking (its batch by hand)", "reports/golden/qxck281.sql", "all sources, both kinds, items without sales",
                 batch);
    ranking.sameColumns = true;
    ranking.alsoName = "281 ranking rewritten as one query";
    ranking.also = oneQuery;
    out.push_back(ranking);
    // the cross-tabs: the procedure pivots what its query gives; written by hand, the query's
    // figures summed per row key and column key (283 with each style's stock, as the report shows)
    const std::string year = " h.bdate >= '2026-01-01' AND h.bdate < '2026-03-19'";
    const std::string month = " h.bdate >= '2026-03-01' AND h.bdate < '2026-04-01'";
    const std::string days = " h.bdate >= '2026-02-15' AND h.bdate < '2026-03-19'";
    const std::string m = "extract(month FROM h.bdate)::int";
    out.push_back({"263 annual purchases, current year", "reports/golden/qxck263.sql", "current year",
                   "SELECT to_char(h.bdate, 'YYYY') || '进', " + m + ", SUM(l.money) FROM d8101 h JOIN d8101a l ON l.noid = h.noid WHERE" +
                       year + " GROUP BY 1, 2 UNION ALL SELECT to_char(h.bdate, 'YYYY') || '退', " + m +
                       ", -SUM(l.smoney) FROM d8102 h JOIN d8102a l ON l.noid = h.noid WHERE" + year + " GROUP BY 1, 2",
                   true, "1920"});
    out.push_back({"273 annual sales, current year", "reports/golden/qxck273.sql", "current year",
                   "SELECT to_char(h.bdate, 'YYYY') || ' 销售', " + m + ", SUM(l.smoney) FROM d8201 h JOIN d8201a l ON l.noid = h.noid WHERE" +
                       year + " GROUP BY 1, 2 UNION ALL SELECT to_char(h.bdate, 'YYYY') || '退换', " + m +
                       ", -SUM(l.smoney) FROM d8202 h JOIN d8202a l ON l.noid = h.noid WHERE" + year +
                       " GROUP BY 1, 2 UNION ALL SELECT to_char(h.bdate, 'YYYY') || CASE WHEN " + q + " > 0 THEN ' 销售' ELSE '退换' END, " +
                       m + ", SUM(l.smoney) FROM d712 h JOIN d712a l ON l.noid = h.noid WHERE " + q + " <> 0 AND" + year +
                       " GROUP BY 1, 2",
                   true, "1920"});
    out.push_back({"282 business analysis, daily by warehouse, quantity sold", "reports/golden/qxck282.sql",
                   "daily, warehouse, measure 1 (销售)销量",
                   "SELECT '11-' || w.ck_name, h.bdate::date, SUM(" + q +
                       ") FROM d8201 h JOIN d8201a l ON l.noid = h.noid JOIN d1800 k ON k.k_id = l.k_id JOIN d1009 p ON p.pp_id = "
                       "k.pp_id JOIN d1007 w ON w.ck_id = h.ck_id WHERE" + month + " GROUP BY 1, 2 UNION ALL SELECT '11-' || w.ck_name, "
                       "h.bdate::date, SUM(" + q + ") FROM d712 h JOIN d712a l ON l.noid = h.noid JOIN d1801 s ON s.wl_id = l.wl_id "
                       "JOIN d1800 k ON k.k_id = s.k_id JOIN d1009 p ON p.pp_id = k.pp_id JOIN d1007 w ON w.ck_id = h.ck_id WHERE" +
                       month + " GROUP BY 1, 2",
                   true, ""});
    out.push_back({"283 progress, styles per day, all warehouses", "reports/golden/qxck283.sql", "all warehouses",
                   "SELECT x.k_id, x.d, SUM(x.q) FROM (SELECT l.k_id, h.bdate::date AS d, " + q +
                       " AS q FROM d8201 h JOIN d8201a l ON l.noid = h.noid WHERE" + days + " UNION ALL SELECT l.k_id, h.bdate::date, -" +
                       q + " FROM d8202 h JOIN d8202a l ON l.noid = h.noid WHERE" + days + " UNION ALL SELECT w.k_id, h.bdate::date, " +
                       q + " FROM d712 h JOIN d712a l ON l.noid = h.noid JOIN d1801 w ON w.wl_id = l.wl_id WHERE" + days +
                       ") x JOIN (SELECT s.k_id, SUM(k.k0 + k.k1 + k.k2 + k.k3 + k.k4 + k.k5 + k.k6 + k.k7 + k.k8 + k.k9) AS kc FROM "
                       "d1802 k JOIN d1801 s ON s.wl_id = k.wl_id GROUP BY s.k_id) c ON c.k_id = x.k_id JOIN d1800 st ON st.k_id = x.k_id "
                       "GROUP BY x.k_id, st.wl_name, st.dw_name, c.kc, x.d",
                   true, ""});
    return out;
}

// A cross-tab's value columns: a month number, or "yyyymm|dd".
bool valueColumn(const std::string& name) {
    if (name.find('|') != std::string::npos) return true;
    char* end = nullptr;
    const long month = std::strtol(name.c_str(), &end, 10);
    return !name.empty() && *end == 0 && month >= 1 && month <= 12;
}
double number(const qx::db::Value& v) {
    if (auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
    if (auto* d = std::get_if<double>(&v)) return *d;
    if (auto* t = std::get_if<std::string>(&v)) return std::strtod(t->c_str(), nullptr);
    return 0;
}
// The total of a cross-tab's value cells, and of the hand-written long form's last column.
double crossTabTotal(const qx::db::ResultSet& r, const std::string& skipRow) {
    double total = 0;
    for (const auto& row : r.rows) {
        if (!skipRow.empty() && !row.empty() && std::holds_alternative<std::string>(row[0]) && std::get<std::string>(row[0]) == skipRow)
            continue;
        for (std::size_t c = 0; c < row.size() && c < r.columns.size(); ++c)
            if (valueColumn(r.columns[c].name)) total += number(row[c]);
    }
    return total;
}
// Each cell of a cross-tab against the hand-written long form: every (row key, column key) of
// the long form is a cell holding its value, and every other value cell is empty or zero. The
// long form's column key is a month number, or a day ("2026-03-05 …", named "202603|05" in the
// pivot). "" when they agree, else the first difference.
std::string differingCell(const qx::db::ResultSet& pivot, const qx::db::ResultSet& hand, const std::string& skipRow) {
    auto text = [](const qx::db::Value& v) {
        if (auto* s = std::get_if<std::string>(&v)) return *s;
        if (auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
        return std::string();
    };
    std::map<std::pair<std::string, std::string>, double> cells;
    for (const auto& row : pivot.rows) {
        const std::string key = text(row.at(0));
        if (!skipRow.empty() && key == skipRow) continue;
        for (std::size_t c = 1; c < row.size() && c < pivot.columns.size(); ++c)
            if (valueColumn(pivot.columns[c].name) && !std::holds_alternative<std::monostate>(row[c]))
                cells[{key, pivot.columns[c].name}] += number(row[c]);
    }
    std::map<std::pair<std::string, std::string>, double> wanted;  // a pair may come from several branches
    for (const auto& row : hand.rows) {
        std::string column = text(row.at(1));
        if (column.size() >= 10 && column[4] == '-' && column[7] == '-') column = column.substr(0, 4) + column.substr(5, 2) + "|" + column.substr(8, 2);
        wanted[{text(row.at(0)), column}] += number(row.back());
    }
    for (const auto& [key, want] : wanted) {
        const auto at = cells.find(key);
        if (at == cells.end()) {
            if (want != 0) return "no cell " + key.first + " / " + key.second;
            continue;
        }
        if (std::fabs(at->second - want) > 0.005 * std::max(1.0, std::fabs(want)))
            return "cell " + key.first + " / " + key.second + ": " + std::to_string(at->second) + " against " + std::to_string(want);
        cells.erase(at);
    }
    for (const auto& [key, value] : cells)
        if (value != 0) return "cell " + key.first + " / " + key.second + " has " + std::to_string(value) + ", the long form nothing";
    return {};
}

double longTotal(const qx::db::ResultSet& r) {
    double total = 0;
    for (const auto& row : r.rows) total += number(row.back());
    return total;
}

// Row count and the sum of every number column: two queries giving the same rows agree.
struct Shape {
    std::size_t rows = 0;
    std::vector<double> sums;
};
Shape shapeOf(const qx::db::ResultSet& r) {
    Shape s;
    s.rows = r.rows.size();
    s.sums.assign(r.columns.size(), 0.0);
    for (const auto& row : r.rows)
        for (std::size_t c = 0; c < row.size() && c < s.sums.size(); ++c) {
            if (auto* i = std::get_if<std::int64_t>(&row[c])) s.sums[c] += static_cast<double>(*i);
            else if (auto* d = std::get_if<double>(&row[c])) s.sums[c] += *d;
        }
    return s;
}
bool same(const Shape& a, const Shape& b) {
    if (a.rows != b.rows || a.sums.size() != b.sums.size()) return false;
    for (std::size_t i = 0; i < a.sums.size(); ++i)
        if (std::fabs(a.sums[i] - b.sums[i]) > 0.005 * std::max(1.0, std::fabs(b.sums[i]))) return false;
    return true;
}
std::string text(const Shape& s) {
    std::string out = std::to_string(s.rows) + " rows;";
    for (double v : s.sums) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, " %.2f", v);
        out += buffer;
    }
    return out;
}

// The first column whose values differ between two results, taken as a bag (a number to four
// places, NULL, a text as it is), or "" when every column holds the same values.
std::string differingColumn(const qx::db::ResultSet& a, const qx::db::ResultSet& b) {
    auto valuesOf = [](const qx::db::ResultSet& r, std::size_t column) {
        std::vector<std::string> values;
        for (const auto& row : r.rows) {
            const qx::db::Value& v = row.at(column);
            char buffer[48];
            if (std::holds_alternative<std::monostate>(v)) values.push_back("NULL");
            else if (auto* t = std::get_if<std::string>(&v)) values.push_back(*t);
            else values.push_back((std::snprintf(buffer, sizeof buffer, "%.4f", number(v)), buffer));
        }
        std::sort(values.begin(), values.end());
        return values;
    };
    if (a.columns.size() != b.columns.size()) return "the column counts";
    for (std::size_t c = 0; c < a.columns.size(); ++c)
        if (valuesOf(a, c) != valuesOf(b, c)) return "column " + std::to_string(c + 1) + " (" + a.columns[c].name + ")";
    return {};
}

// Wall times of bodies run in turn (so all see the same load on a shared machine), after one
// warm-up run each (the server's caches, the translator's catalog reads): each sorted, so the
// median is in the middle and the fastest run (the least disturbed by other work) first.
std::vector<std::vector<double>> timesMs(const std::vector<std::function<void()>>& bodies, int runs) {
    for (const auto& body : bodies) body();
    std::vector<std::vector<double>> times(bodies.size());
    for (int i = 0; i < runs; ++i)
        for (std::size_t b = 0; b < bodies.size(); ++b) {
            const auto start = std::chrono::steady_clock::now();
            bodies[b]();
            times[b].push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        }
    for (auto& t : times) std::sort(t.begin(), t.end());
    return times;
}

}  // namespace

int main(int argc, char** argv) {
    std::string from, uri;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (!std::strcmp(argv[i], "--from")) from = argv[i + 1];
        else if (!std::strcmp(argv[i], "--db")) uri = argv[i + 1];
        else die("usage: bench_pg_report [--from FILE | --db URI]");
    }
    try {
        if (uri.empty()) {
            if (from.empty() && std::getenv("QXCK_REPORT_DB")) from = std::getenv("QXCK_REPORT_DB");
            if (from.empty()) {
                from = (std::filesystem::temp_directory_path() / "qxck-bench-lines1000000.db").string();
                if (!std::filesystem::exists(from)) {
                    qx::demo::BulkOptions o;
                    o.lines = 1000000;
                    o.seed = 1;
                    o.endDate = "2026-06-30";
                    qx::demo::createBulkShop(from, o);
                }
            }
            auto* server = qx::test::PostgresServer::instance();
            if (!server) die("PostgreSQL server binaries not installed");
            uri = server->freshDatabase();
            const auto start = std::chrono::steady_clock::now();
            qx::copy::copyShop(from, uri);
            std::printf("%s copied to a private server in %.1f s\n", from.c_str(),
                        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
        qx::db::PostgresDatabase db(uri);
        db.runNative("ANALYZE");
        const auto lines = db.runNative(
            "SELECT (SELECT count(*) FROM d8101a) + (SELECT count(*) FROM d8102a) + (SELECT count(*) FROM d8201a) + "
            "(SELECT count(*) FROM d8202a) + (SELECT count(*) FROM d8301a) + (SELECT count(*) FROM d8303a) + (SELECT count(*) FROM d712a)");
        std::printf("Reports on PostgreSQL, translated beside hand-written (wall ms, median of runs in turn; %lld document lines):\n",
                    static_cast<long long>(std::get<std::int64_t>(lines.rows.at(0).at(0))));
        const std::string only = std::getenv("QXCK_REPORT_CASES") ? std::getenv("QXCK_REPORT_CASES") : "";
        int slower = 0, failing = 0;
        const int runs = std::getenv("QXCK_REPORT_RUNS") ? std::max(1, std::atoi(std::getenv("QXCK_REPORT_RUNS"))) : 21;
        for (const Case& c : cases()) {
            if (!only.empty() && only.find(c.name.substr(0, 3)) == std::string::npos) continue;
            const auto golden = goldenCases(c.golden);
            const auto it = golden.find(c.goldenCase);
            if (it == golden.end()) die(c.golden + " has no case '" + c.goldenCase + "'");
            const std::string& batch = it->second;
            qx::db::ResultSet translatedRows;
            try {
                translatedRows = db.open(batch);
            } catch (const qx::db::Error& e) {
                ++failing;
                std::printf("  %-44s FAILS on PostgreSQL: %s\n", c.name.c_str(), e.what());
                continue;
            }
            const auto handRows = db.runNative(c.hand);
            const Shape translated = shapeOf(translatedRows), hand = shapeOf(handRows);
            if (c.crossTab) {
                const double t = crossTabTotal(translatedRows, c.skipRow), h = longTotal(handRows);
                if (std::fabs(t - h) > 0.005 * std::max(1.0, std::fabs(h)) || handRows.rows.empty())
                    die(c.name + ": the totals differ: translated " + std::to_string(t) + " (" + std::to_string(translatedRows.rows.size()) +
                        " rows), hand-written " + std::to_string(h) + " (" + std::to_string(handRows.rows.size()) + " rows)");
                if (const std::string difference = differingCell(translatedRows, handRows, c.skipRow); !difference.empty())
                    die(c.name + ": the cells differ: " + difference);
            } else if (!same(translated, hand)) {
                die(c.name + ": the rows differ\n  translated:   " + text(translated) + "\n  hand-written: " + text(hand));
            } else if (c.sameColumns) {
                if (const std::string column = differingColumn(translatedRows, handRows); !column.empty())
                    die(c.name + ": the values of " + column + " differ");
            }
            std::vector<std::function<void()>> bodies{[&] { db.open(batch); }, [&] { db.runNative(c.hand); }};
            if (!c.also.empty()) {
                const auto alsoRows = db.runNative(c.also);
                if (!same(translated, shapeOf(alsoRows)))
                    die(c.alsoName + ": the rows differ\n  translated:   " + text(translated) + "\n  hand-written: " + text(shapeOf(alsoRows)));
                if (const std::string column = c.sameColumns ? differingColumn(translatedRows, alsoRows) : ""; !column.empty())
                    die(c.alsoName + ": the values of " + column + " differ");
                bodies.push_back([&] { db.runNative(c.also); });
            }
            const auto times = timesMs(bodies, runs);
            const auto& ts = times[0];
            const double t = ts[ts.size() / 2];
            for (std::size_t i = 1; i < times.size(); ++i) {
                const auto& hs = times[i];
                const double h = hs[hs.size() / 2];
                const double speed = t > 0 ? h / t : 0;  // translated speed relative to hand-written
                const double fastest = ts.front() > 0 ? hs.front() / ts.front() : 0;
                if (speed < 0.9 && i == 1) ++slower;
                std::printf("  %-44s translated %8.1f (fastest %7.1f)   hand-written %8.1f (fastest %7.1f)   speed %5.2f (fastest runs %5.2f)   rows %zu%s\n",
                            (i == 1 ? c.name : c.alsoName).c_str(), t, ts.front(), h, hs.front(), speed, fastest, translated.rows,
                            i == 1 ? "" : "   (shown only, not held to the target)");
            }
        }
        std::printf("  (speed: hand-written median / translated median; the target is at least 0.90; %d below, %d failing)\n", slower,
                    failing);
        return 0;
    } catch (const std::exception& e) {
        die(e.what());
    }
}
