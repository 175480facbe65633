// The stock movement procedure on a shop on a PostgreSQL server, beside hand-written PostgreSQL
// aggregates over the same lines on the same connection: SYS_ZM's summary of a month by SKU and
// size and by style, its detail of the busiest SKU, the warehouse cross-tab (SYS_JX) beside the
// GROUP BY it pivots.
//   bench_stock --lines 1000000        (or qxck-demo): a shop file of a million document lines
//   qxck-copy --from FILE --to postgresql://user@host/shop
//   bench_postgres_stock --db postgresql://user@host/shop
// Times are the median of three runs: the wall clock, and the processor time of this process
// (the server's work is not in it).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "bench/StockCalls.h"
#include "bench/Timing.h"
#include "db/postgres/PostgresDatabase.h"

namespace {

using qx::bench::millis;
using qx::bench::Timing;

void line(const char* what, Timing measured, Timing floor, const char* floorWhat, long long rows) {
    std::printf("  %-34s %9.1f ms (cpu %8.1f)   floor %9.1f ms (%s)   ratio %5.2f   rows %lld\n", what, measured.wall, measured.cpu,
                floor.wall, floorWhat, floor.wall > 0 ? measured.wall / floor.wall : 0.0, rows);
}

constexpr const char* kLineTables[] = {"d8101a", "d8102a", "d8201a", "d8202a", "d8301a", "d8303a", "d712a"};

}  // namespace

int main(int argc, char** argv) {
    std::string uri;
    for (int i = 1; i + 1 < argc; i += 2)
        if (std::string(argv[i]) == "--db") uri = argv[i + 1];
    if (uri.empty()) {
        std::fprintf(stderr, "usage: bench_postgres_stock --db postgresql://user@host/shop\n");
        return 2;
    }
    qx::db::PostgresDatabase db(uri);
    std::string all;
    for (const char* t : kLineTables) all += std::string(all.empty() ? "" : " + ") + "(SELECT count(*) FROM " + t + ")";
    const auto total = std::get<std::int64_t>(db.runNative("SELECT " + all).rows.at(0).at(0));
    std::printf("%s: %lld posting lines\n", uri.c_str(), static_cast<long long>(total));

    // 1. SYS_ZM's summary beside one aggregate over the line tables (the same floor as on SQLite)
    std::string floorSql;
    for (const char* t : kLineTables)
        floorSql += std::string(floorSql.empty() ? "" : " UNION ALL ") + "SELECT wl_id, SUM(s0+s1+s2+s3+s4+s5+s6+s7+s8+s9) FROM " + t +
                    " GROUP BY wl_id";
    const Timing aggregate = millis([&] { db.runNative(floorSql); });
    // ... and beside what the procedure reads, summed by the server: each posting rule's effective
    // lines joined to their heads, per SKU and size, split at the first day
    std::string streamSql;
    const char* rules[][4] = {{"d8101a", "d8101", "h.t = 1", "s"}, {"d8102a", "d8102", "h.t = 1", "s"},
                              {"d8201a", "d8201", "h.t = 1", "s"}, {"d8202a", "d8202", "h.t = 1", "s"},
                              {"d8301a", "d8301", "h.t = 1", "s"}, {"d8303a", "d8303", "h.t = 1", "s"},
                              {"d8303a", "d8303", "h.y = 1", "y"}, {"d712a", "d712", "true", "s"}};
    for (const auto& r : rules) {
        std::string sums;
        for (int i = 0; i < 10; ++i) {
            const std::string q = std::string("l.") + r[3] + std::to_string(i);
            sums += ", SUM(CASE WHEN h.bdate < '2026-06-01' THEN " + q + " END), SUM(CASE WHEN h.bdate >= '2026-06-01' THEN " + q + " END)";
        }
        streamSql += std::string(streamSql.empty() ? "" : " UNION ALL ") + "SELECT l.wl_id" + sums + " FROM " + r[0] + " l JOIN " + r[1] +
                     " h ON h.noid = l.noid WHERE " + r[2] + " AND h.bdate < '2026-07-01' GROUP BY l.wl_id";
    }
    const Timing stream = millis([&] { db.runNative(streamSql); });
    long long rows = 0;
    const Timing zm = millis([&] {
        rows = static_cast<long long>(
            db.open(qx::bench::kJuneSummaryBySize).rows.size());
    });
    line("SYS_ZM summary, all lines", zm, aggregate, "GROUP BY over the line tables", rows);
    line("SYS_ZM summary, all lines", zm, stream, "the stream summed by the server", rows);
    const Timing byStyle = millis([&] {
        rows = static_cast<long long>(
            db.open(qx::bench::kJuneSummaryByStyle).rows.size());
    });
    line("SYS_ZM summary by style", byStyle, aggregate, "GROUP BY over the line tables", rows);

    // 2. the detail of the busiest SKU
    const std::string sku = std::get<std::string>(
        db.runNative("SELECT wl_id FROM d712a GROUP BY wl_id ORDER BY count(*) DESC LIMIT 1").rows.at(0).at(0));
    const Timing detail = qx::bench::timeArticleDetail(db, sku, rows);
    line("SYS_ZM detail of the busiest SKU", detail, Timing{50, 50}, "the target", rows);

    // 3. the warehouse cross-tab beside the GROUP BY it pivots
    const std::string k = "D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9";
    const std::string source =
        "SELECT D1801.WL_ID AS K_ID, D1007.CK_ID+'-'+D1007.CK_NAME AS CK_NAME, SUM(" + k + ") as KC FROM D1802 INNER JOIN D1801 on "
        "D1802.WL_ID = D1801.WL_ID  INNER JOIN D1007 on D1802.CK_ID = D1007.CK_ID GROUP BY D1801.WL_ID, D1007.CK_ID+'-'+D1007.CK_NAME";
    std::string quoted;
    for (char c : source) quoted += c == '\'' ? std::string("''") : std::string(1, c);
    const Timing grouped = millis([&] { db.open(source); });
    const Timing pivot = millis([&] {
        rows = static_cast<long long>(db.open("EXEC SYS_JX @param1='" + quoted + "',@param2='wl_id',@param3='ck_name',@param4='kc'").rows.size());
    });
    line("SYS_JX per SKU and warehouse", pivot, grouped, "the GROUP BY it pivots", rows);
    return 0;
}
