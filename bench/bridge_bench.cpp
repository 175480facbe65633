// What the T-SQL bridge costs: three report statements run through the Database interface
// (parse, translate against the live catalog, run, collect) beside the same questions written
// by hand for SQLite and run on the same connection; and the translation time per statement
// of the whole statement corpus. Data: the demo shop at scale 10 (QXCK_BENCH_DB, or created
// once in the temp folder).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/BenchShop.h"
#include "db/sqlite/SqliteDatabase.h"
#include "db/tools/DemoData.h"
#include "db/tsql/SqliteCatalog.h"
#include "db/tsql/Translator.h"

namespace {

qx::db::SqliteDatabase& shop() {
    static auto db = qx::db::openSqlite(qx::bench::benchShopPath());
    return dynamic_cast<qx::db::SqliteDatabase&>(*db);
}

// Runs hand-written SQLite text and collects the rows the way the engine does.
std::size_t runNative(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
    std::vector<std::vector<qx::db::Value>> rows;
    const int columns = sqlite3_column_count(stmt);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        std::vector<qx::db::Value> row;
        for (int i = 0; i < columns; ++i) {
            switch (sqlite3_column_type(stmt, i)) {
            case SQLITE_INTEGER: row.emplace_back(static_cast<std::int64_t>(sqlite3_column_int64(stmt, i))); break;
            case SQLITE_FLOAT: row.emplace_back(sqlite3_column_double(stmt, i)); break;
            case SQLITE_NULL: row.emplace_back(std::monostate{}); break;
            default: row.emplace_back(std::string(reinterpret_cast<const char*>(sqlite3_column_text(stmt, i))));
            }
        }
        rows.push_back(std::move(row));
    }
    sqlite3_finalize(stmt);
    return rows.size();
}

struct Report {
    const char* name;
    const char* tsql;    // as the module sends it
    const char* native;  // the same question written for SQLite by hand
};

const std::vector<Report>& reports() {
    static const std::vector<Report> list = {
        {"stock_summary",
         " SELECT D1800.K_ID, D1005.COL_ID, D1800.M_ID, D1005.COL_NAME, D1800.WL_NAME, D1800.DW_NAME,D1009.PP_NAME, SUM(D1802.K0) as S0, "
         "SUM(D1802.K1) as S1, SUM(D1802.K2) as S2, SUM(D1802.K3) as S3, SUM(D1802.K4) as S4, SUM(D1802.K5) as S5, SUM(D1802.K6) as S6, "
         "SUM(D1802.K7) as S7, SUM(D1802.K8) as S8, SUM(D1802.K9) as S9,  SUM(D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + "
         "D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9)as STOT, d1800.pfj,  SUM((D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + "
         "D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9)*d1800.pfj) as Smoney, 0.00 as DJ,0.00 AS MONEY , 'zz' AS "
         "ck_id,'汇总值' AS CK_NAME  FROM D1801 INNER JOIN  D1802 on D1801.WL_ID = D1802.WL_ID INNER JOIN D1800 on D1801.K_ID = "
         "D1800.K_ID INNER JOIN  D1009 on D1800.PP_ID = D1009.PP_ID INNER JOIN  D1006 on D1800.M_ID = D1006.M_ID INNER JOIN  D1005 on "
         "D1801.COL_ID = D1005.COL_ID  GROUP BY D1800.K_ID, D1005.COL_ID, D1800.M_ID,D1800.pfj, D1005.COL_NAME,D1009.PP_NAME, "
         "D1800.WL_NAME, D1800.DW_NAME, D1800.DJ ORDER BY  D1800.K_ID, D1005.COL_ID",
         "SELECT s.K_ID, c.COL_ID, s.M_ID, c.COL_NAME, s.WL_NAME, s.DW_NAME, b.PP_NAME, sum(k.K0) AS S0, sum(k.K1) AS S1, sum(k.K2) AS S2, "
         "sum(k.K3) AS S3, sum(k.K4) AS S4, sum(k.K5) AS S5, sum(k.K6) AS S6, sum(k.K7) AS S7, sum(k.K8) AS S8, sum(k.K9) AS S9, "
         "sum(k.KC) AS STOT, s.PFJ, sum(k.KC * s.PFJ) AS SMONEY, 0.0 AS DJ, 0.0 AS MONEY, 'zz' AS CK_ID, '汇总值' AS CK_NAME "
         "FROM d1801 w JOIN d1802 k ON k.WL_ID = w.WL_ID JOIN d1800 s ON s.K_ID = w.K_ID JOIN d1009 b ON b.PP_ID = s.PP_ID "
         "JOIN d1006 z ON z.M_ID = s.M_ID JOIN d1005 c ON c.COL_ID = w.COL_ID "
         "GROUP BY s.K_ID, c.COL_ID, s.M_ID, s.PFJ, c.COL_NAME, b.PP_NAME, s.WL_NAME, s.DW_NAME, s.DJ ORDER BY s.K_ID, c.COL_ID"},
        {"stock_distribution",
         "SELECT D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME AS CK_NAME, SUM(D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + "
         "D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9) as KC FROM D1802 INNER JOIN D1801 on D1802.WL_ID = D1801.WL_ID  INNER "
         "JOIN D1007 on D1802.CK_ID = D1007.CK_ID INNER JOIN  sys_USER_CK ON D1802.CK_ID = sys_USER_CK.CK_ID AND "
         "(sys_USER_CK.user_id='admin') INNER JOIN D1800 on D1801.K_ID = D1800.K_ID  GROUP BY D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME",
         "SELECT s.K_ID, h.CK_ID || '-' || h.CK_NAME AS CK_NAME, sum(k.KC) AS KC FROM d1802 k JOIN d1801 w ON w.WL_ID = k.WL_ID "
         "JOIN d1007 h ON h.CK_ID = k.CK_ID JOIN sys_user_ck r ON r.CK_ID = k.CK_ID AND r.USER_ID = 'admin' "
         "JOIN d1800 s ON s.K_ID = w.K_ID GROUP BY s.K_ID, h.CK_ID || '-' || h.CK_NAME"},
        {"purchase_summary",
         "SELECT CK_ID INTO #TCK  FROM D1007;\nselect convert(char(10),BDATE,20) as 开单日期,\nKG_NAME AS 供应商 ,\n"
         "SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) AS 数量 ,\nSUM(MONEY) AS 金额  from (   SELECT D8101.BDATE, D8101.NOID, "
         "D1008.BM_NAME,D1103.KG_NAME,D1101.YW_NAME,D1007.CK_NAME, D1800.K_ID AS WL_ID, D1800.WL_NAME, D1800.PP AS WL_GG, "
         "D1800.DW_NAME,D1800.m_id,S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, D8101A.MONEY,D1005.COL_ID,D1005.COL_NAME FROM D8101  INNER JOIN "
         "D8101A ON D8101A.NOID = D8101.NOID INNER JOIN D1801 ON D1801.WL_ID = D8101A.WL_ID INNER JOIN D1800 ON D1801.k_ID = "
         "D1800.K_ID INNER JOIN D1101 ON D8101.YW_ID = D1101.YW_ID INNER JOIN D1008 ON D1101.BM_ID = D1008.BM_ID INNER JOIN D1103 ON "
         "D8101.KH_GYS_ID = D1103.KH_GYS_ID INNER JOIN D1007 ON D8101.CK_ID = D1007.CK_ID INNER JOIN #TCK ON #TCK.CK_ID = D1007.CK_ID "
         "INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID where (D8101.T=1)  and (d8101.bdate>='2026-01-01') and "
         "(d8101.bdate<'2026-07-01') ) TMP \ngroup by convert(char(10),BDATE,20),\nKG_NAME;DROP TABLE #TCK ",
         "SELECT substr(h.BDATE, 1, 10) AS 开单日期, g.KG_NAME AS 供应商, sum(l.S0+l.S1+l.S2+l.S3+l.S4+l.S5+l.S6+l.S7+l.S8+l.S9) AS 数量, "
         "sum(l.MONEY) AS 金额 FROM D8101 h JOIN D8101A l ON l.NOID = h.NOID JOIN d1801 w ON w.WL_ID = l.WL_ID "
         "JOIN d1800 s ON s.K_ID = w.K_ID JOIN d1101 y ON y.YW_ID = h.YW_ID JOIN d1008 m ON m.BM_ID = y.BM_ID "
         "JOIN d1103 g ON g.KH_GYS_ID = h.KH_GYS_ID JOIN d1007 k ON k.CK_ID = h.CK_ID JOIN d1005 c ON c.COL_ID = w.COL_ID "
         "WHERE h.T = 1 AND h.BDATE >= '2026-01-01' AND h.BDATE < '2026-07-01' GROUP BY substr(h.BDATE, 1, 10), g.KG_NAME"},
    };
    return list;
}

void bridged(benchmark::State& state, const Report* report) {
    auto& db = shop();
    std::size_t rows = 0;
    for (auto _ : state) rows = db.open(report->tsql).rows.size();
    state.counters["rows"] = static_cast<double>(rows);
}

void handWritten(benchmark::State& state, const Report* report) {
    auto& db = shop();
    std::size_t rows = 0;
    for (auto _ : state) rows = runNative(db.handle(), report->native);
    state.counters["rows"] = static_cast<double>(rows);
}

// Statements of the corpus file (entries' batches), as the module sends them.
std::vector<std::string> corpusBatches() {
    std::ifstream in(QX_CORPUS_FILE);
    std::vector<std::string> batches;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("-- @entry ", 0) == 0) batches.emplace_back();
        else if (!batches.empty() && line.rfind("-- ", 0) != 0) batches.back() += line + "\n";
    }
    return batches;
}

// Parse and translation time per statement over the whole corpus. Each translated statement
// is also run (untimed, rolled back afterwards) so that later statements of a batch see the
// temporary tables the earlier ones create.
void translateCorpus(benchmark::State& state) {
    auto& db = shop();
    sqlite3* handle = db.handle();
    qx::tsql::SqliteCatalog catalog(handle);
    const auto batches = corpusBatches();
    std::size_t statements = 0;
    for (auto _ : state) {
        statements = 0;
        for (const auto& batch : batches) {
            state.PauseTiming();
            sqlite3_exec(handle, "SAVEPOINT bench", nullptr, nullptr, nullptr);
            state.ResumeTiming();
            for (const auto& statement : qx::tsql::parseBatch(batch)) {
                ++statements;
                if (statement.procedure) continue;
                const auto sqls = qx::tsql::emitSqlite(statement, catalog);
                state.PauseTiming();
                for (const auto& sql : sqls) sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr);
                state.ResumeTiming();
            }
            state.PauseTiming();
            sqlite3_exec(handle, "ROLLBACK TO bench; RELEASE bench", nullptr, nullptr, nullptr);
            state.ResumeTiming();
        }
    }
    state.counters["statements"] = static_cast<double>(statements);
    state.counters["per_statement"] =
        benchmark::Counter(static_cast<double>(statements), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

const bool registered = [] {
    for (const auto& r : reports()) {
        benchmark::RegisterBenchmark((std::string("bridged/") + r.name).c_str(), bridged, &r)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("native/") + r.name).c_str(), handWritten, &r)->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("translate/corpus", translateCorpus)->Unit(benchmark::kMillisecond);
    return true;
}();

}  // namespace

BENCHMARK_MAIN();
