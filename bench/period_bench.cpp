// What the period routines cost on a large shop: the cost recalculation (EXEC SYS_CBKS) beside
// one ordered scan of the lines it values, the balance view (V_CHECKKC) beside one sequential
// aggregate of the lines, and the stock before the open month read with and without the
// closing snapshot. Data: a copy of QXCK_PERIOD_BENCH_DB (a demo shop, e.g. qxck-demo --scale 20),
// or of the scale-10 bench shop, with its open month closed once.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "bench/BenchShop.h"
#include "db/procedures/ClosingSnapshots.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/SqliteDatabase.h"

namespace {

std::string sourcePath() {
    if (const char* path = std::getenv("QXCK_PERIOD_BENCH_DB")) return path;
    return qx::bench::benchShopPath();
}

// A private copy with its open month closed once (so there is a snapshot to read from).
qx::db::SqliteDatabase& shop() {
    static auto db = [] {
        const auto copy = std::filesystem::temp_directory_path() / ("qxck-period-bench-" + std::to_string(::getpid()) + ".db");
        std::filesystem::copy_file(sourcePath(), copy, std::filesystem::copy_options::overwrite_existing);
        auto opened = qx::db::openSqlite(copy.string());
        // A shop made before the snapshot table took its present form gets it afresh.
        auto& sqlite = dynamic_cast<qx::db::SqliteDatabase&>(*opened);
        if (qx::db::procedures::latestSnapshotAtOrBefore(*opened, "9999-12-31").empty()) {
            sqlite.runNative("DROP TRIGGER IF EXISTS qx_snapshot_closing; DROP TRIGGER IF EXISTS qx_snapshot_reopening; "
                             "DROP TABLE IF EXISTS sys_ck_snapshot; DROP TABLE IF EXISTS sys_ck_snapshot_sku; "
                             "DROP TABLE IF EXISTS sys_ck_snapshot_period");
            for (const auto& statement : qx::db::procedures::closingSnapshotStatements()) sqlite.runNative(statement);
        }
        opened->execute(
            "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ");
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove(std::filesystem::temp_directory_path() /
                                        ("qxck-period-bench-" + std::to_string(::getpid()) + ".db"),
                                    ignored);
        });
        return opened;
    }();
    return dynamic_cast<qx::db::SqliteDatabase&>(*db);
}

long long stepAll(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
    long long rows = 0;
    const int columns = sqlite3_column_count(stmt);
    double sink = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        ++rows;
        for (int i = 0; i < columns; ++i) sink += sqlite3_column_double(stmt, i);
    }
    sqlite3_finalize(stmt);
    benchmark::DoNotOptimize(sink);
    return rows;
}

// Every effective line of the posting rules with what valuing needs, in style and date order.
std::string orderedLineScan() {
    std::string sql;
    for (const auto& rule : qx::db::posting::rules()) {
        if (!sql.empty()) sql += " UNION ALL ";
        std::string qty;
        for (int i = 0; i < 10; ++i) qty += std::string(i ? "+" : "") + "l." + rule.quantity + std::to_string(i);
        sql += std::string("SELECT ") + (rule.lineHasStyle ? "l.K_ID" : "s.K_ID") + ", h." + rule.dateColumn + ", l.NOID, " + qty + ", " +
               (rule.priceColumn ? std::string("l.") + rule.priceColumn : std::string("0")) + " FROM " + rule.lineTable + " l JOIN " +
               rule.headTable + " h ON h.NOID = l.NOID" + (rule.lineHasStyle ? "" : " LEFT JOIN d1801 s ON s.WL_ID = l.WL_ID") +
               " WHERE " + (rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : std::string("1 = 1"));
    }
    return sql + " ORDER BY 1, 2";
}

// One pass over every line: the quantity per size summed.
std::string sequentialAggregate() {
    std::string sql = "SELECT ";
    for (int i = 0; i < 10; ++i) sql += std::string(i ? ", " : "") + "sum(Q" + std::to_string(i) + ")";
    sql += " FROM (";
    bool first = true;
    for (const auto& rule : qx::db::posting::rules()) {
        sql += first ? "" : " UNION ALL ";
        first = false;
        sql += "SELECT ";
        for (int i = 0; i < 10; ++i) sql += std::string(i ? ", " : "") + rule.quantity + std::to_string(i) + " AS Q" + std::to_string(i);
        sql += std::string(" FROM ") + rule.lineTable;
    }
    return sql + ")";
}

void CostRecalculation(benchmark::State& state) {
    auto& db = shop();
    for (auto _ : state) {
        // Every run from the same state: the whole valuation is written, then rolled back.
        db.runNative("BEGIN");
        auto result = db.open("EXEC SYS_CBKS");
        benchmark::DoNotOptimize(result);
        db.runNative("ROLLBACK");
        state.counters["rows"] = static_cast<double>(result.rows.size());
    }
}
BENCHMARK(CostRecalculation)->Unit(benchmark::kMillisecond)->Iterations(3);

void OrderedScanOfTheValuedLines(benchmark::State& state) {
    auto& db = shop();
    const std::string sql = orderedLineScan();
    for (auto _ : state) state.counters["lines"] = static_cast<double>(stepAll(db.handle(), sql));
}
BENCHMARK(OrderedScanOfTheValuedLines)->Unit(benchmark::kMillisecond)->Iterations(3);

void BalanceView(benchmark::State& state) {
    auto& db = shop();
    for (auto _ : state) {
        auto result = db.open("select *  from V_CHECKKC");
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(BalanceView)->Unit(benchmark::kMillisecond)->Iterations(3);

void BalanceFromTheSnapshot(benchmark::State& state) {
    auto& db = shop();
    const std::string sql = qx::db::procedures::balanceFromSnapshotQuery(db);
    for (auto _ : state) {
        auto result = db.open(sql);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(BalanceFromTheSnapshot)->Unit(benchmark::kMillisecond)->Iterations(3);

void SequentialAggregateOfTheLines(benchmark::State& state) {
    auto& db = shop();
    const std::string sql = sequentialAggregate();
    for (auto _ : state) benchmark::DoNotOptimize(stepAll(db.handle(), sql));
}
BENCHMARK(SequentialAggregateOfTheLines)->Unit(benchmark::kMillisecond)->Iterations(3);

void StockAtOpenMonth(benchmark::State& state) {
    auto& db = shop();
    const bool snapshots = state.range(0) != 0;
    const std::string date = qx::db::procedures::latestSnapshotAtOrBefore(db, "9999-12-31").substr(0, 10);
    const std::string sql = qx::db::procedures::stockBeforeQuery(db, date.empty() ? "2026-06-01" : date, snapshots);
    for (auto _ : state) {
        auto result = db.open(sql);
        benchmark::DoNotOptimize(result);
        state.counters["rows"] = static_cast<double>(result.rows.size());
    }
    state.SetLabel(snapshots ? "from the snapshot" : "from every movement");
}
BENCHMARK(StockAtOpenMonth)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
