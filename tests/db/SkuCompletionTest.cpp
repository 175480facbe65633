// The database completes the SKU row (d1801) of every document line it is given: a line of a
// SKU never received before still has its row, so the lists (which join their lines to d1801)
// show it and saving the document again keeps it. An existing row is never changed.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <sstream>

#include "DbTestSupport.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::dbtest {
namespace {

// A text between quotes, its quotes doubled.
std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) out += c == '\'' ? std::string("''") : std::string(1, c);
    return out + "'";
}

// A line of one quantity of `sku` in the document line table `table`.
std::string line(const std::string& table, const std::string& noid, const std::string& sku, const std::string& style,
                 const std::string& colour) {
    return "INSERT INTO " + table + " (NOID, WL_ID, K_ID, COL_ID, S0) VALUES (" + quoted(noid) + "," + quoted(sku) + "," +
           quoted(style) + "," + quoted(colour) + ",1)";
}

std::vector<std::string> styledLineTables() {
    return {"D8101A", "D8102A", "D8201A", "D8202A", "d8301A", "D8303A", "D8203A", "d8300A"};
}

class SkuCompletion : public ::testing::TestWithParam<std::string> {
protected:
    Shop shop{GetParam()};
    db::Database& db = *shop.db;
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }

    std::string skuRow(const std::string& sku) {
        auto r = db.open("SELECT WL_ID, K_ID, COL_ID FROM d1801 WHERE WL_ID=" + quoted(sku));
        std::string out;
        for (const auto& row : r.rows) out += text(row[0]) + "|" + text(row[1]) + "|" + text(row[2]) + ";";
        return out;
    }
};

TEST_P(SkuCompletion, ALineOfEveryDocumentKindAddsItsMissingSkuRowOnce) {
    int n = 0;
    for (const auto& table : styledLineTables()) {
        SCOPED_TRACE(table);
        const std::string sku = "N" + std::to_string(++n) + "09";
        const std::string style = "N" + std::to_string(n);
        ASSERT_EQ(count(db, "d1801", "WL_ID='" + sku + "'"), 0);
        db.execute(line(table, "X1", sku, style, "09"));
        EXPECT_EQ(skuRow(sku), sku + "|" + style + "|09;") << "the style and colour the line names";
        // A second line of the same SKU, in the same and in another document, adds nothing.
        db.execute(line(table, "X1", sku, style, "09") + ";" + line(table, "X2", sku, style, "09"));
        EXPECT_EQ(count(db, "d1801", "WL_ID='" + sku + "'"), 1);
    }
}

TEST_P(SkuCompletion, AnExistingSkuRowIsLeftAsItIs) {
    const std::string before = skuRow("K101");
    ASSERT_EQ(before, "K101|K1|01;");
    for (const auto& table : styledLineTables()) {
        SCOPED_TRACE(table);
        // A line that names another style and colour for the code: the row keeps its own.
        db.execute(line(table, "X1", "K101", "K7", "77"));
        EXPECT_EQ(skuRow("K101"), before);
    }
    EXPECT_EQ(count(db, "d1801"), 8) << "the small shop's eight SKUs, nothing added";
}

TEST_P(SkuCompletion, ASavedSaleOfANeverReceivedSkuHasItsRowAndItsListedLine) {
    // The sales ticket's save batch writes no SKU row itself.
    db.execute(
        "INSERT INTO D8201(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES "
        "('1','S1','C1','MD1','2026-05-12','1','01','1','admin','','80');"
        "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9,   SJ, SMONEY,ZK,ODJ,"
        "OMONEY, NOTE,DJ,MONEY) VALUES ('S1','K102','K1','02','MD1','1','0','0','0','0','0','0','0','0','0','80','80','0.00',"
        "'99','99','',0,0);"
        "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9,   SJ, SMONEY,ZK,ODJ,"
        "OMONEY, NOTE,DJ,MONEY) VALUES ('S1','K103','K1','03','MD1','2','0','0','0','0','0','0','0','0','0','80','160','0.00',"
        "'99','198','',0,0);");
    EXPECT_EQ(skuRow("K103"), "K103|K1|03;");
    // The lines as a list reads them: joined to d1801.
    EXPECT_EQ(count(db, "D1801 INNER JOIN D8201A ON D1801.WL_ID = D8201A.WL_ID", "D8201A.NOID='S1'"), 2);
    EXPECT_EQ(stock(db, "K103", "MD1"), sizes({-2})) << "the sale still posts";
}

TEST_P(SkuCompletion, TheReceiptsOwnCompletionFindsTheRowAlreadyThere) {
    db.execute(
        "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, USER_ID, NOTE) VALUES ('1','R1','G1','ZC','2026-05-10','admin','');"
        "INSERT INTO D8101A  VALUES ('R1','K104','K1','04','ZC','1','0','0','0','0','0','0','0','0','0','10','10','');"
        "INSERT INTO D1801 SELECT D8101A.WL_ID, D8101A.K_ID, D8101A.COL_ID FROM D8101A LEFT OUTER JOIN D1801 ON D8101A.WL_ID = "
        "D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (D8101A.NOID='R1');");
    EXPECT_EQ(skuRow("K104"), "K104|K1|04;");
}

TEST_P(SkuCompletion, ALineABatchTakesBackTakesItsSkuRowWithIt) {
    EXPECT_THROW(db.execute(line("D8201A", "X1", "K105", "K1", "05") + ";SELECT 1/0"), db::Error);
    EXPECT_EQ(count(db, "d1801", "WL_ID='K105'"), 0);
}

TEST_P(SkuCompletion, PointOfSaleLinesCarryOnlyTheCodeAndAddNoRow) {
    db.execute("INSERT INTO d712a (NOID, WL_ID, S0) VALUES ('P1','K106',1)");
    EXPECT_EQ(count(db, "d1801", "WL_ID='K106'"), 0);
}

TEST_P(SkuCompletion, HostileCodesArriveAsTheyAreAndInjectNothing) {
    db.execute(line("D8201A", "X1", "K1';DROP TABLE x--", "K1'", "; D"));
    EXPECT_EQ(skuRow("K1';DROP TABLE x--"), "K1';DROP TABLE x--|K1'|; D;");
    EXPECT_EQ(count(db, "d1801"), 9);
    // A code longer than the line's column is refused with the line; no row is left behind.
    EXPECT_THROW(db.execute(line("D8201A", "X1", std::string(10000, 'K'), "K1", "01")), db::Error);
    EXPECT_EQ(count(db, "d1801"), 9);
}

INSTANTIATE_TEST_SUITE_P(Engines, SkuCompletion, ::testing::ValuesIn(engines()), engineTestName);

// ---- a shop made before lines completed their SKU rows ------------------------------------------

// Lines whose SKUs have no row, written while the shop has no completion: K107 twice, K108.
std::string linesWithoutSkuRows() {
    return line("D8201A", "S1", "K107", "K1", "07") + ";" + line("D8203A", "O1", "K107", "K1", "07") + ";" +
           line("D8203A", "O1", "K108", "K1", "08");
}

// The shop once this build opened it: the rows those lines lacked are there, and a new line
// completes its own.
void expectUpgraded(db::Database& db) {
    EXPECT_EQ(count(db, "d1801", "WL_ID='K107' AND K_ID='K1' AND COL_ID='07'"), 1);
    EXPECT_EQ(count(db, "d1801", "WL_ID='K108' AND K_ID='K1' AND COL_ID='08'"), 1);
    db.execute(line("D8202A", "T1", "K109", "K1", "09"));
    EXPECT_EQ(count(db, "d1801", "WL_ID='K109'"), 1) << "the triggers are there";
    EXPECT_EQ(count(db, "d1801"), 11);
}

TEST(SkuCompletionUpgrade, AnOlderShopFileGetsTheTriggersAndTheRowsItsLinesLack) {
    TempDir dir;
    const std::string file = dir.file("old.db");
    {
        auto db = db::openSqlite(file, true);
        seedSmallShop(*db);
    }
    {
        // The shop as an earlier build left it: an older mark, no completion, lines whose SKUs
        // have no row.
        auto db = db::openSqlite(file);
        auto& sqlite = dynamic_cast<db::SqliteDatabase&>(*db);
        for (const auto& completion : db::posting::skuCompletions()) sqlite.runNative("DROP TRIGGER " + completion.triggerName);
        sqlite.runNative("PRAGMA user_version=1");
        db->execute(linesWithoutSkuRows());
        ASSERT_EQ(count(*db, "d1801", "WL_ID='K107'"), 0);
    }
    expectUpgraded(*db::openSqlite(file));
    EXPECT_EQ(count(*db::openSqlite(file), "d1801"), 11) << "opening it again changes nothing";
    EXPECT_EQ(integer(scalar(*db::openSqlite(file), "SELECT user_version FROM pragma_user_version")), kSchemaVersion);
}

// The mark says what a shop has: opening a shop with the current mark does not look for the
// completion triggers (a shop without them and with that mark is no shop this program made).
TEST(SkuCompletionUpgrade, AShopFileWithTheCurrentMarkIsNotLookedAt) {
    TempDir dir;
    const std::string file = dir.file("current.db");
    {
        auto db = db::openSqlite(file, true);
        seedSmallShop(*db);
        auto& sqlite = dynamic_cast<db::SqliteDatabase&>(*db);
        for (const auto& completion : db::posting::skuCompletions()) sqlite.runNative("DROP TRIGGER " + completion.triggerName);
    }
    auto db = db::openSqlite(file);
    for (const auto& completion : db::posting::skuCompletions())
        EXPECT_EQ(integer(scalar(*db, "SELECT COUNT(*) FROM sqlite_master WHERE type='trigger' AND name='" + completion.triggerName + "'")), 0)
            << completion.triggerName;
    db->execute(linesWithoutSkuRows());
    EXPECT_EQ(count(*db, "d1801", "WL_ID='K107'"), 0);
}

// A new small shop on the test server, its SKU completion triggers dropped.
void dropCompletion(db::PostgresDatabase& shop) {
    shop.createShop();
    seedSmallShop(shop);
    for (const auto& completion : db::posting::skuCompletions())
        shop.runNative("DROP TRIGGER " + completion.triggerName + " ON " + completion.lineTable);
}

TEST(SkuCompletionUpgrade, AnOlderShopOnAServerGetsTheTriggersAndTheRowsItsLinesLack) {
    auto* server = test::PostgresServer::instance();
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    const std::string uri = server->freshDatabase();
    {
        db::PostgresDatabase old(uri);
        dropCompletion(old);
        old.runNative("CREATE OR REPLACE VIEW qx_schema_version AS SELECT 1 AS version");
        old.execute(linesWithoutSkuRows());
        ASSERT_EQ(count(old, "d1801", "WL_ID='K107'"), 0);
    }
    expectUpgraded(*db::openDatabase(uri));
    EXPECT_EQ(count(*db::openDatabase(uri), "d1801"), 11) << "opening it again changes nothing";
    EXPECT_EQ(dynamic_cast<db::PostgresDatabase&>(*db::openDatabase(uri)).schemaVersion(), kSchemaVersion);
}

TEST(SkuCompletionUpgrade, AShopOnAServerWithTheCurrentMarkIsNotLookedAt) {
    auto* server = test::PostgresServer::instance();
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    const std::string uri = server->freshDatabase();
    {
        db::PostgresDatabase shop(uri);
        dropCompletion(shop);
    }
    auto db = db::openDatabase(uri);
    auto& onServer = dynamic_cast<db::PostgresDatabase&>(*db);
    for (const auto& completion : db::posting::skuCompletions()) {
        std::string name = completion.triggerName;
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        EXPECT_TRUE(onServer.runNative("SELECT 1 FROM pg_trigger WHERE tgname = '" + name + "'").rows.empty()) << name;
    }
    db->execute(linesWithoutSkuRows());
    EXPECT_EQ(count(*db, "d1801", "WL_ID='K107'"), 0);
}

// ---- the generated text ----------------------------------------------------------------------

// The statements of a golden file: each ends with a line "----"; lines starting with "#" before
// the first statement describe the file.
std::vector<std::string> goldenStatements(const std::string& path) {
    std::ifstream in(path);
    std::vector<std::string> out;
    std::string lineText, current;
    bool started = false;
    while (std::getline(in, lineText)) {
        if (!started && lineText.rfind("#", 0) == 0) continue;
        started = true;
        if (lineText == "----") {
            out.push_back(current);
            current.clear();
        } else {
            current += (current.empty() ? "" : "\n") + lineText;
        }
    }
    return out;
}

TEST(SkuCompletionText, TheOtherSqliteTriggersAreGeneratedAsBefore) {
    const auto golden = goldenStatements(QX_TRIGGER_GOLDEN);
    ASSERT_GT(golden.size(), 100u);
    const auto generated = db::posting::sqliteTriggerStatements();
    const auto& completions = db::posting::skuCompletions();
    ASSERT_EQ(generated.size(), golden.size() + completions.size());
    for (std::size_t i = 0; i < golden.size(); ++i) EXPECT_EQ(generated[i], golden[i]) << "statement " << i;
    for (std::size_t i = 0; i < completions.size(); ++i) EXPECT_EQ(generated[golden.size() + i], completions[i].sqliteTrigger);
}

TEST(SkuCompletionText, EveryDocumentLineTableButThePointOfSaleLinesCompletesItsSkuRows) {
    std::vector<std::string> tables;
    for (const auto& completion : db::posting::skuCompletions()) tables.push_back(completion.lineTable);
    EXPECT_EQ(tables, styledLineTables());
    const auto& sale = db::posting::skuCompletions()[2];
    EXPECT_EQ(sale.sqliteTrigger,
              "CREATE TRIGGER qx_sku_D8201A AFTER INSERT ON D8201A FOR EACH ROW\nBEGIN\n"
              "INSERT INTO d1801 (WL_ID, K_ID, COL_ID) SELECT NEW.WL_ID, NEW.K_ID, NEW.COL_ID WHERE NOT EXISTS "
              "(SELECT 1 FROM d1801 s WHERE s.WL_ID=NEW.WL_ID) ON CONFLICT (WL_ID) DO NOTHING;\nEND");
    EXPECT_NE(sale.postgresTrigger.find("CREATE OR REPLACE FUNCTION qx_sku_D8201A() RETURNS trigger LANGUAGE plpgsql"),
              std::string::npos);
    EXPECT_NE(sale.postgresTrigger.find("CREATE TRIGGER qx_sku_D8201A AFTER INSERT ON D8201A FOR EACH ROW EXECUTE FUNCTION"),
              std::string::npos);
}

}  // namespace
}  // namespace qx::dbtest
