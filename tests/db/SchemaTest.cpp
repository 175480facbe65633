// The table definitions: tables the module inserts into without a column list have exactly
// the listed columns in the listed order; quantities default to 0.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

#include <sqlite3.h>

#include "DbTestSupport.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::dbtest {
namespace {

std::vector<std::string> columnsOf(db::Database& db, const std::string& table) {
    std::vector<std::string> names;
    for (const auto& c : db.open("SELECT * FROM " + table + " WHERE 1=0").columns) names.push_back(c.name);
    return names;
}

std::vector<std::string> withSizes(std::vector<std::string> head, const std::string& prefix, std::vector<std::string> tail) {
    for (int i = 0; i < 10; ++i) head.push_back(prefix + std::to_string(i));
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

TEST(Schema, PositionalInsertTablesHaveExactlyTheirColumnsInOrder) {
    Shop shop;
    auto& db = *shop.db;
    const std::vector<std::string> key = {"NOID", "WL_ID", "K_ID", "COL_ID", "CK_ID"};
    EXPECT_EQ(columnsOf(db, "D8101A"), withSizes(key, "S", {"DJ", "MONEY", "NOTE"}));
    EXPECT_EQ(columnsOf(db, "D8102A"), withSizes(key, "S", {"DJ", "MONEY", "SJ", "SMONEY", "NOTE"}));
    EXPECT_EQ(columnsOf(db, "D8202A"), withSizes(key, "S", {"DJ", "MONEY", "SJ", "SMONEY", "NOTE"}));
    EXPECT_EQ(columnsOf(db, "d8300A"), withSizes(key, "S", {"DJ", "MONEY", "NOTE"}));
    EXPECT_EQ(columnsOf(db, "d8301A"), withSizes(key, "S", {"DJ", "MONEY", "NOTE"}));
    auto transfer = withSizes({"NOID", "WL_ID", "K_ID", "COL_ID", "CK_ID", "CK_ID_IN"}, "S", {"DJ", "MONEY", "SJ", "SMONEY", "NOTE"});
    EXPECT_EQ(columnsOf(db, "D8303A"), withSizes(transfer, "Y", {}));
    EXPECT_EQ(columnsOf(db, "D8303A").size(), 31u);
    EXPECT_EQ(columnsOf(db, "d1801"), (std::vector<std::string>{"WL_ID", "K_ID", "COL_ID"}));
    EXPECT_EQ(columnsOf(db, "d1804"), (std::vector<std::string>{"K_ID", "COL_ID"}));
    EXPECT_EQ(columnsOf(db, "sys_user_ck"), (std::vector<std::string>{"USER_ID", "CK_ID", "W"}));
    EXPECT_EQ(columnsOf(db, "d704"), (std::vector<std::string>{"CK_ID", "I", "T", "FA", "CLA", "CLAZK", "F1", "F2", "F3", "BDATE", "EDATE"}));
}

TEST(Schema, EveryTableTheModuleNamesExists) {
    Shop shop;
    for (const char* table :
         {"d1004", "d1005", "d1006", "d1007", "d1008", "d1009", "d1010", "d1011", "d1101", "d1102", "d1103", "d1800", "d1801",
          "d1802", "d1803", "d1804", "d1805", "d1809", "d1801imp", "d702", "d704", "d704a", "d712", "d712a", "d631", "d641", "d701",
          "d703", "d713", "D8101", "D8101A", "D8102", "D8102A", "D8201", "D8201A", "D8202", "D8202A", "D8203", "D8203A", "d8300",
          "d8300A", "d8301", "d8301A", "D8303", "D8303A", "sys_co", "sys_user", "sys_user_ck", "sys_group", "sys_web", "sys_log_iud",
          "sys_log_err", "sys_log_login", "sys_back", "V1809", "V_D8303A", "V_CHECKKC", "v_D712"})
        EXPECT_NO_THROW(shop.db->open(std::string("SELECT * FROM ") + table + " WHERE 1=0")) << table;
    for (const char* column : {"D8303A.CK_ID_IN", "D1007.G1", "D1006.BS9", "d1800.DYEAR", "d1800.JJ", "d1800.VIPF", "d1800.TMI"}) {
        const std::string name(column);
        const auto dot = name.find('.');
        EXPECT_NO_THROW(shop.db->open("SELECT " + name.substr(dot + 1) + " FROM " + name.substr(0, dot) + " WHERE 1=0")) << column;
    }
}

TEST(Schema, ANewShopStartsWithTheReportsGroupingItemsAndMonthColumns) {
    TempDir dir;
    auto db = db::openSqlite(dir.file("new.db"), true);
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=204"), 11);
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=214"), 12);
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=263"), 12);
    EXPECT_EQ(integer(scalar(*db, "SELECT SUM(SHOW_WIDTH) FROM sys_GROUP WHERE GROUP_ID=263")), 78) << "months 1 to 12";
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=204 AND A=1 AND GROUP_CLASS<>'S'"), 1) << "preset A: the supplier alone";
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=204 AND A=1 AND GROUP_SQL='KG_NAME' AND GROUP_NAME='供应商'"), 1);
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=214 AND A=1 AND GROUP_SQL='KG_NAME' AND GROUP_NAME='客户'"), 1);
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=214 AND GROUP_SQL='LY' AND GROUP_CLASS='S'"), 1) << "the gross profit of sales";
    EXPECT_EQ(count(*db, "sys_GROUP", "GROUP_ID=214 AND H=1 AND GROUP_CLASS<>'S'"), 1) << "preset H: the brand alone";
    // every preset of both summaries has at least one dimension, and the custom one too
    for (const char* letter : {"A", "B", "C", "D", "E", "F", "G", "H", "I", "group_show"})
        for (const char* id : {"204", "214"})
            EXPECT_GE(count(*db, "sys_GROUP", std::string("GROUP_ID=") + id + " AND " + letter + "=1 AND GROUP_CLASS<>'S'"), 1)
                << id << " " << letter;
    // the summary dialog's own statement reads them in order
    const auto rows = db->open(
        "SELECT group_name, group_sql, group_class, group_show, SHOW_WIDTH,A,B,C,D,E,F,G,H,I,J,K,L,M,N,O,P FROM sys_GROUP WHERE "
        "(group_id = 214) ORDER BY orderby");
    ASSERT_EQ(rows.rows.size(), 12u);
    EXPECT_EQ(text(rows.rows[0][0]), "部门");
    EXPECT_EQ(text(rows.rows[11][1]), "LY");
}

TEST(Schema, StockRowsInsertedWithOnlyTheirKeyStartAtZero) {
    Shop shop;
    shop.db->execute("INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) VALUES ('K101','ZC',0)");
    auto r = shop.db->open("SELECT K0+K1+K2+K3+K4+K5+K6+K7+K8+K9, KC, B0+B9, BEGIN_SL, BEGIN_MONEY FROM D1802");
    ASSERT_EQ(r.rows.size(), 1u);
    for (const auto& v : r.rows[0]) EXPECT_EQ(integer(v), 0);
}

std::string definitionOf(db::Database& db, const std::string& name) {
    return text(scalar(db, "SELECT sql FROM sqlite_master WHERE name = '" + name + "'"));
}

// The view a shop made by the first version holds: the plain T-SQL balance view.
void makeItAFirstVersionShop(const std::string& file) {
    auto db = db::openSqlite(file);
    auto& sqlite = dynamic_cast<db::SqliteDatabase&>(*db);
    sqlite.runNative("DROP VIEW V_CHECKKC; DROP TRIGGER qx_post_sale_line_ins");
    db->execute(db::posting::tsqlBalanceViewStatement(), {true});
    sqlite.runNative("PRAGMA user_version=1");
    ASSERT_EQ(definitionOf(*db, "V_CHECKKC").find("qx_stock_recount"), std::string::npos);
}

TEST(SchemaVersion, AShopOfAnEarlierVersionGetsTheCurrentViewsAndTriggersWhenOpened) {
    TempDir dir;
    const std::string file = dir.file("shop.db");
    {
        auto db = db::openSqlite(file, true);
        seedSmallShop(*db);
        db->execute("INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID) VALUES (1,'S1','G1','ZC','2026-05-05','admin');"
                    "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0) VALUES ('S1','K101','K1','01','ZC',2)");
    }
    makeItAFirstVersionShop(file);
    auto db = db::openSqlite(file);
    EXPECT_EQ(integer(scalar(*db, "SELECT user_version FROM pragma_user_version")), kSchemaVersion);
    EXPECT_NE(definitionOf(*db, "V_CHECKKC").find("qx_stock_recount"), std::string::npos);
    EXPECT_FALSE(definitionOf(*db, "qx_post_sale_line_ins").empty()) << "a missing trigger is made again";
    EXPECT_EQ(stock(*db, "K101", "ZC"), sizes({-2})) << "rows stay";
    db->execute("INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID) VALUES (1,'S2','G1','ZC','2026-05-06','admin');"
                "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0) VALUES ('S2','K101','K1','01','ZC',1)");
    EXPECT_EQ(stock(*db, "K101", "ZC"), sizes({-3})) << "the renewed triggers post";
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0);
    db->execute("UPDATE d1802 SET K1 = 5 WHERE WL_ID = 'K101' AND CK_ID = 'ZC'", {true});
    EXPECT_EQ(count(*db, "V_CHECKKC"), 1);
}

TEST(SchemaVersion, AShopOfANewerVersionIsRefusedAndLeftAsItIs) {
    TempDir dir;
    const std::string file = dir.file("shop.db");
    {
        auto db = db::openSqlite(file, true);
        dynamic_cast<db::SqliteDatabase&>(*db).runNative("PRAGMA user_version=99");
    }
    try {
        db::openSqlite(file);
        ADD_FAILURE() << "a newer shop must not be opened";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("was made by a newer version of the program (schema version 99, this version knows up to 4)"),
                  std::string::npos)
            << e.what();
    }
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open_v2(file.c_str(), &raw, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(raw, "PRAGMA user_version", -1, &st, nullptr);
    ASSERT_EQ(sqlite3_step(st), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(st, 0), 99);
    sqlite3_finalize(st);
    sqlite3_close(raw);
}

TEST(Tools, QxckSqlPrintsTheResultSetAsTabSeparatedText) {
    Shop shop;
    const std::string path = shop.db->location();
    shop.db.reset();
    const std::string command = std::string("echo \"SELECT CK_ID, CK_NAME FROM D1007 WHERE CK_ID<>'ZC' ORDER BY CK_ID\" | ") +
                                QXCK_SQL_TOOL + " --db " + path;
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string out;
    char buffer[256];
    while (fgets(buffer, sizeof buffer, pipe)) out += buffer;
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(out, "CK_ID\tCK_NAME\nMD1\t一店\nMD2\t二店\n");
    const std::string failing = std::string("echo 'SELECT * FROM nosuch' | ") + QXCK_SQL_TOOL + " --db " + path + " 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(system(failing.c_str())), 1);
}

}  // namespace
}  // namespace qx::dbtest
