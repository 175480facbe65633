// Translation time per statement: T-SQL text → parsed tree → SQLite text, against the catalog
// of a shop database created from the real table definitions.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "db/sqlite/Schema.h"
#include "db/tsql/SqliteCatalog.h"
#include "db/tsql/Translator.h"

namespace {

struct NamedStatement {
    const char* name;
    const char* tsql;
};

// Statements as the module's screens and reports send them.
const std::vector<NamedStatement>& statements() {
    static const std::vector<NamedStatement> list = {
        {"line_insert_positional",
         "INSERT INTO D8101A  VALUES ('201261100001','K10001','K100','01','ZC','1','2','3','','0','0','0','0','0','0','59.5','357','')"},
        {"head_update_getdate",
         "UPDATE D8101 SET EDATE=GETDATE(), KH_GYS_ID='G001',CK_ID='ZC',BDATE='2026-03-01',TOLMONEY='' WHERE NOID='201261100001'"},
        {"update_from_price",
         "UPDATE D8102A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (D8102A.K_ID=M.K_ID) AND (D8102A.NOID='201261100001');"},
        {"stock_row_completion",
         " INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT D8101A.WL_ID, D8101.CK_ID, D1800.CHECK_KC FROM D8101A INNER JOIN D8101 ON "
         "D8101.NOID=D8101A.NOID INNER JOIN D1800 ON D1800.K_ID=D8101A.K_ID LEFT JOIN D1802 ON D1802.WL_ID=D8101A.WL_ID AND "
         "D1802.CK_ID=D8101.CK_ID WHERE (D8101A.NOID='201261100001') AND (D1802.WL_ID IS NULL);"},
        {"list_filter",
         "SELECT top 10000 D8101.NOID, D8101.BDATE, D1103.KG_NAME, D1007.CK_NAME, D8101.TOLMONEY FROM D8101 LEFT JOIN D1103 ON "
         "D1103.KH_GYS_ID=D8101.KH_GYS_ID LEFT JOIN D1007 ON D1007.CK_ID=D8101.CK_ID WHERE (D8101.BDATE>='2026-01-01') AND "
         "(D8101.BDATE<='2026-03-31') ORDER BY D8101.NOID DESC"},
        {"stock_distribution_source",
         "SELECT D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME AS CK_NAME, SUM(K0+K1+K2+K3+K4+K5+K6+K7+K8+K9) as KC FROM D1802 INNER "
         "JOIN D1801 ON D1801.WL_ID=D1802.WL_ID INNER JOIN D1800 ON D1800.K_ID=D1801.K_ID INNER JOIN D1007 ON "
         "D1007.CK_ID=D1802.CK_ID WHERE (d1802.ck_id>='') and (d1802.ck_id<='ZZZZZZ') GROUP BY D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME"},
        {"sales_progress_source",
         "SELECT  K_ID AS WL_ID,M + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME,SL AS KC FROM (SELECT D.K_ID,convert(char(6),"
         "M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D, SUM(D.S0 + D.S1 + D.S2 + D.S3 + D.S4 + D.S5 + D.S6 + D.S7 + D.S8 + D.S9) AS SL "
         "FROM D8201 M INNER JOIN D8201A D ON M.NOID = D.NOID  where  (M.BDATE>='2026-01-01' AND M.BDATE<'2026-02-01')  GROUP BY "
         "D.K_ID, DATEPART([day], M.BDATE), convert(char(6),M.BDATE,112) UNION ALL SELECT D.K_ID,convert(char(6),M.BDATE,112) AS M,"
         "DATEPART([DAY],M.BDATE) AS D, 0-SUM(D.S0 + D.S1 + D.S2 + D.S3 + D.S4 + D.S5 + D.S6 + D.S7 + D.S8 + D.S9) AS SL FROM D8202 M "
         "INNER JOIN D8202A D ON M.NOID = D.NOID  where  (M.BDATE>='2026-01-01' AND M.BDATE<'2026-02-01')  GROUP BY D.K_ID, "
         "DATEPART([day], M.BDATE),convert(char(6),M.BDATE,112)) T  "},
        {"ranking_identity_into",
         "SELECT IDENTITY (INT, 1, 1) AS ID, D1801.K_ID,SUM(B.S0) AS SL,SUM(B.SMONEY) AS SMONEY INTO #w FROM D8201A B INNER JOIN "
         "D1801 ON B.WL_ID = D1801.WL_ID GROUP BY D1801.K_ID ORDER BY SUM(B.S0) DESC;"},
        {"month_close",
         "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) "},
        {"settings_glued_where", "update sys_web set field_width=80,field_show=1where id=3;"},
    };
    return list;
}

// One in-memory shop database for every benchmark.
struct ShopCatalog {
    ShopCatalog() {
        if (sqlite3_open(":memory:", &db) != SQLITE_OK) throw std::runtime_error("cannot open memory database");
        qx::tsql::installSqliteRuntime(db);
        qx::tsql::SqliteCatalog catalog(db);
        for (const auto& file : qx::tableDefinitions())
            for (const auto& statement : qx::tsql::parseBatch(file.text))
                for (const auto& sql : qx::tsql::emitSqlite(statement, catalog))
                    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
                        throw std::runtime_error(std::string(sqlite3_errmsg(db)) + " in " + sql);
    }
    ~ShopCatalog() { sqlite3_close(db); }
    sqlite3* db = nullptr;
};

ShopCatalog& shop() {
    static ShopCatalog instance;
    return instance;
}

void parseOnly(benchmark::State& state, const char* tsql) {
    for (auto _ : state) benchmark::DoNotOptimize(qx::tsql::parseBatch(tsql));
}

void parseAndEmit(benchmark::State& state, const char* tsql) {
    qx::tsql::SqliteCatalog catalog(shop().db);
    for (auto _ : state) {
        for (const auto& statement : qx::tsql::parseBatch(tsql)) benchmark::DoNotOptimize(qx::tsql::emitSqlite(statement, catalog));
    }
}

const bool registered = [] {
    for (const auto& s : statements()) {
        benchmark::RegisterBenchmark((std::string("parse/") + s.name).c_str(), parseOnly, s.tsql)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((std::string("translate/") + s.name).c_str(), parseAndEmit, s.tsql)->Unit(benchmark::kMicrosecond);
    }
    return true;
}();

}  // namespace

BENCHMARK_MAIN();
