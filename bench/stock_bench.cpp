// The stock reports at scale, each beside its physical floor measured in the same run on the
// same connection: the stock movement procedure's summary beside one sequential aggregate over
// the line tables, its detail of one article (the target is 50 ms), the stock query's summary
// beside a hand-written GROUP BY over the stock rows, and the warehouse cross-tab over the
// stock rows beside the GROUP BY it pivots.
//   bench_stock --db FILE         a shop made by qxck-demo --lines N
//   bench_stock --lines N         makes one in the temp folder first (kept for the next run)
//   --only query                  only the stock query's summary (with the translated text run
//                                 bare, to part the engine's work from handing rows back)
//   --only snapshot               only the month's summary from every movement and from the
//                                 closing snapshot (`--only fromsnapshot`: the latter alone)
//   --keep-closed 1               leave the months closed for the snapshot reading closed (for
//                                 profiling it again without closing; the shop's readings from
//                                 every movement of June then start from the snapshot too)
//   --explain 1                   also print the translated text and its query plan
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "bench/StockCalls.h"
#include "bench/Timing.h"
#include "db/sqlite/SqliteDatabase.h"
#include "db/tsql/SqliteCatalog.h"
#include "db/tsql/Translator.h"
#include "db/tools/BulkShop.h"

namespace {

using qx::bench::millis;
using qx::bench::Timing;

// Runs native SQLite text and steps through every row (the floor's cost of reading them).
long long native(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s\n%s\n", sqlite3_errmsg(db), sql.c_str());
        std::exit(1);
    }
    long long rows = 0;
    while (sqlite3_step(st) == SQLITE_ROW) ++rows;
    sqlite3_finalize(st);
    return rows;
}

// Runs native SQLite text and copies every value into the rows a screen's dataset is built from
// (db::Value: null, integer, real or text), as the module's own reading does: the floor for a
// query whose rows are handed back, not only stepped through.
long long collected(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s\n%s\n", sqlite3_errmsg(db), sql.c_str());
        std::exit(1);
    }
    const int columns = sqlite3_column_count(st);
    std::vector<std::vector<qx::db::Value>> rows;
    while (sqlite3_step(st) == SQLITE_ROW) {
        auto& row = rows.emplace_back();
        row.reserve(static_cast<std::size_t>(columns));
        for (int i = 0; i < columns; ++i) {
            switch (sqlite3_column_type(st, i)) {
                case SQLITE_INTEGER: row.emplace_back(static_cast<std::int64_t>(sqlite3_column_int64(st, i))); break;
                case SQLITE_FLOAT: row.emplace_back(sqlite3_column_double(st, i)); break;
                case SQLITE_NULL: row.emplace_back(std::monostate{}); break;
                default:
                    row.emplace_back(std::string(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                                 static_cast<std::size_t>(sqlite3_column_bytes(st, i))));
            }
        }
    }
    sqlite3_finalize(st);
    return static_cast<long long>(rows.size());
}

void line(const char* what, Timing measured, Timing floor, const char* floorWhat, long long rows) {
    std::printf("  %-34s %9.1f ms (cpu %9.1f)   floor %9.1f ms (cpu %9.1f, %s)   ratio %5.2f (cpu %5.2f)   rows %lld\n", what,
                measured.wall, measured.cpu, floor.wall, floor.cpu, floorWhat, floor.wall > 0 ? measured.wall / floor.wall : 0.0,
                floor.cpu > 0 ? measured.cpu / floor.cpu : 0.0, rows);
}

}  // namespace

int main(int argc, char** argv) {
    std::string path, only;
    long long lines = 0;
    bool explain = false;
    bool keepClosed = false;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string a = argv[i];
        if (a == "--db") path = argv[i + 1];
        else if (a == "--lines") lines = std::atoll(argv[i + 1]);
        else if (a == "--only") only = argv[i + 1];
        else if (a == "--explain") explain = std::string(argv[i + 1]) != "0";
        else if (a == "--keep-closed") keepClosed = std::string(argv[i + 1]) != "0";
    }
    if (path.empty() && lines <= 0) {
        std::fprintf(stderr, "usage: bench_stock --db FILE | --lines N\n");
        return 2;
    }
    if (path.empty()) {
        path = (std::filesystem::temp_directory_path() / ("qxck-bench-lines" + std::to_string(lines) + ".db")).string();
        if (!std::filesystem::exists(path)) {
            qx::demo::BulkOptions o;
            o.lines = lines;
            o.seed = 1;
            o.endDate = "2026-06-30";
            const auto start = std::chrono::steady_clock::now();
            const auto s = qx::demo::createBulkShop(path, o);
            std::printf("shop of %lld lines written in %.1f s (bulk part %.1f s)\n", s.lines,
                        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), s.seconds);
        }
    }
    auto database = qx::db::openSqlite(path);
    auto& db = dynamic_cast<qx::db::SqliteDatabase&>(*database);
    sqlite3* h = db.handle();
    const long long total = native(h, "SELECT 1 FROM D8101A UNION ALL SELECT 1 FROM D8102A UNION ALL SELECT 1 FROM D8201A UNION ALL "
                                      "SELECT 1 FROM D8202A UNION ALL SELECT 1 FROM d8301A UNION ALL SELECT 1 FROM D8303A UNION ALL "
                                      "SELECT 1 FROM d712a");
    std::printf("%s: %lld posting lines\n", path.c_str(), total);

    long long rows = 0;
    const bool snapshotOnly = only == "snapshot" || only == "fromsnapshot";
    if (only.empty() || snapshotOnly) {
    // 1. SYS_ZM summary over every line beside one sequential aggregate over the line tables
    Timing zm{1, 1}, aggregate{1, 1};
    if (only != "fromsnapshot") {
        zm = millis([&] { rows = static_cast<long long>(db.open(qx::bench::kJuneSummaryBySize).rows.size()); });
        std::string floorSql;
        for (const char* t : {"D8101A", "D8102A", "D8201A", "D8202A", "d8301A", "D8303A", "d712a"})
            floorSql += std::string(floorSql.empty() ? "" : " UNION ALL ") + "SELECT WL_ID, SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM " +
                        t + " GROUP BY WL_ID";
        aggregate = millis([&] { native(h, floorSql); });
        line("SYS_ZM summary, all lines", zm, aggregate, "GROUP BY over the line tables", rows);
    }
    // the same by style: the stream read and summed alike, far fewer result rows to hand back
    if (!snapshotOnly) {
        const Timing byStyle = millis([&] { rows = static_cast<long long>(db.open(qx::bench::kJuneSummaryByStyle).rows.size()); });
        line("SYS_ZM summary by style", byStyle, aggregate, "GROUP BY over the line tables", rows);
    }

    // the same month's summary once the month before it is closed: the opening read from its
    // closing snapshot plus the movements since, beside the same floor (the shop is reopened after)
    {
        const std::string close =
            "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";
        const std::string reopen =
            "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";
        int closed = 0;
        const auto snapshotDate = [&] {
            const auto r = db.open("SELECT MAX(PERIOD) FROM sys_ck_snapshot WHERE PERIOD <= '2026-06-01'");
            const auto* text = r.rows.empty() ? nullptr : std::get_if<std::string>(&r.rows[0][0]);
            return text ? text->substr(0, 10) : std::string();
        };
        const auto started = std::chrono::steady_clock::now();
        while (snapshotDate() != "2026-06-01" && closed < 12) {
            db.execute(close);
            ++closed;
        }
        if (closed)
            std::printf("  (closed %d month(s) up to 2026-06-01 in %.1f s to have a snapshot)\n", closed,
                        std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count());
        const Timing fromSnapshot = millis([&] {
            rows = static_cast<long long>(
                db.open(qx::bench::kJuneSummaryBySize).rows.size());
        });
        line("SYS_ZM summary, from the snapshot", fromSnapshot, aggregate, "GROUP BY over the line tables", rows);
        std::printf("  (from the snapshot vs from every movement: %.1f %%, cpu %.1f %%)\n", 100.0 * fromSnapshot.wall / zm.wall,
                    100.0 * fromSnapshot.cpu / zm.cpu);
        if (!keepClosed)
            for (int i = 0; i < closed; ++i) db.execute(reopen);
    }
    if (snapshotOnly) return 0;

    // 2. SYS_ZM detail of one article
    std::string sku = "BK000000101";
    {
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(h, "SELECT WL_ID FROM d712a GROUP BY WL_ID ORDER BY count(*) DESC LIMIT 1", -1, &st, nullptr);
        if (sqlite3_step(st) == SQLITE_ROW) sku = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
        sqlite3_finalize(st);
    }
    const Timing detail = qx::bench::timeArticleDetail(db, sku, rows);
    line("SYS_ZM detail of the busiest SKU", detail, Timing{50, 50}, "the target", rows);
    }

    // 3. the stock query's summary beside a hand-written GROUP BY over the stock rows
    const std::string k = "D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9";
    const std::string summary =
        " SELECT D1800.K_ID, D1005.COL_ID, D1800.M_ID, D1005.COL_NAME, D1800.WL_NAME, D1800.DW_NAME,D1009.PP_NAME, SUM(D1802.K0) as S0, "
        "SUM(D1802.K1) as S1, SUM(D1802.K2) as S2, SUM(D1802.K3) as S3, SUM(D1802.K4) as S4, SUM(D1802.K5) as S5, SUM(D1802.K6) as S6, "
        "SUM(D1802.K7) as S7, SUM(D1802.K8) as S8, SUM(D1802.K9) as S9,  SUM(" + k + ")as STOT, d1800.pfj,  SUM((" + k +
        ")*d1800.pfj) as Smoney, 0.00 as DJ,0.00 AS MONEY , 'zz' AS ck_id,'汇总值' AS CK_NAME  FROM D1801 INNER JOIN  D1802 on "
        "D1801.WL_ID = D1802.WL_ID INNER JOIN D1800 on D1801.K_ID = D1800.K_ID INNER JOIN  D1009 on D1800.PP_ID = D1009.PP_ID INNER "
        "JOIN  D1006 on D1800.M_ID = D1006.M_ID INNER JOIN  D1005 on D1801.COL_ID = D1005.COL_ID  GROUP BY D1800.K_ID, D1005.COL_ID, "
        "D1800.M_ID,D1800.pfj, D1005.COL_NAME,D1009.PP_NAME, D1800.WL_NAME, D1800.DW_NAME, D1800.DJ HAVING (SUM(D1802.K0+D1802.K1+"
        "D1802.K2+D1802.K3+D1802.K4+D1802.K5+D1802.K6+ D1802.K7+D1802.K8+D1802.K9) > 0)  ORDER BY  D1800.K_ID, D1005.COL_ID";
    const Timing query = millis([&] { rows = static_cast<long long>(db.open(summary).rows.size()); });
    // the same rows by a hand-written SQLite GROUP BY over the stock rows
    const std::string handWritten = "SELECT st.K_ID, s.COL_ID, st.M_ID, c.COL_NAME, st.WL_NAME, st.DW_NAME, p.PP_NAME, SUM(k.K0), SUM(k.K1), SUM(k.K2), "
                  "SUM(k.K3), SUM(k.K4), SUM(k.K5), SUM(k.K6), SUM(k.K7), SUM(k.K8), SUM(k.K9), SUM(k.KC), st.PFJ, SUM(k.KC * st.PFJ), "
                  "0.0, 0.0, 'zz', '汇总值' FROM d1801 s JOIN d1802 k ON k.WL_ID = s.WL_ID JOIN d1800 st ON st.K_ID = s.K_ID "
                  "JOIN d1009 p ON p.PP_ID = st.PP_ID JOIN d1006 z ON z.M_ID = st.M_ID JOIN d1005 c ON c.COL_ID = s.COL_ID "
                  "GROUP BY st.K_ID, s.COL_ID HAVING SUM(k.KC) > 0 ORDER BY st.K_ID, s.COL_ID";
    const Timing group = millis([&] { native(h, handWritten); });
    line("stock query summary", query, group, "same rows, hand-written GROUP BY", rows);
    // the same hand-written query with its rows handed back as the screen's are
    const Timing groupCollected = millis([&] { collected(h, handWritten); });
    line("stock query summary", query, groupCollected, "hand-written GROUP BY, rows handed back", rows);
    if (!only.empty() || explain) {
        // the translated text stepped through bare: what the engine costs without the values
        qx::tsql::SqliteCatalog catalog(h);
        const auto statements = qx::tsql::parseBatch(summary);
        const auto sqls = qx::tsql::emitSqlite(statements.front(), catalog);
        const Timing bare = millis([&] { native(h, sqls.back()); });
        line("  the translated text, rows stepped", bare, group, "same rows, hand-written GROUP BY", rows);
        if (explain) {
            for (const std::string* text : {&sqls.back(), &handWritten}) {
                std::printf("\n%s\n", text->c_str());
                sqlite3_stmt* st = nullptr;
                sqlite3_prepare_v2(h, ("EXPLAIN QUERY PLAN " + *text).c_str(), -1, &st, nullptr);
                while (sqlite3_step(st) == SQLITE_ROW) std::printf("  %s\n", reinterpret_cast<const char*>(sqlite3_column_text(st, 3)));
                sqlite3_finalize(st);
            }
        }
    }
    if (!only.empty()) return 0;

    // 4. the warehouse cross-tab beside the GROUP BY it pivots
    const std::string source =
        "SELECT D1801.WL_ID AS K_ID, D1007.CK_ID+'-'+D1007.CK_NAME AS CK_NAME, SUM(" + k + ") as KC FROM D1802 INNER JOIN D1801 on "
        "D1802.WL_ID = D1801.WL_ID  INNER JOIN D1007 on D1802.CK_ID = D1007.CK_ID GROUP BY D1801.WL_ID, D1007.CK_ID+'-'+D1007.CK_NAME";
    std::string quoted;
    for (char c : source) quoted += c == '\'' ? std::string("''") : std::string(1, c);
    long long sourceRows = 0;
    const Timing grouped = millis([&] { sourceRows = static_cast<long long>(db.open(source).rows.size()); });
    const Timing pivot = millis([&] {
        rows = static_cast<long long>(db.open("EXEC SYS_JX @param1='" + quoted + "',@param2='wl_id',@param3='ck_name',@param4='kc'").rows.size());
    });
    line("SYS_JX per SKU and warehouse", pivot, grouped, "the GROUP BY it pivots", rows);
    std::printf("  (the cross-tab's source has %lld rows)\n", sourceRows);
    return 0;
}
