// Choosing the engine by the location a tool is given: a postgresql:// URI opens a shop on a
// server, anything else an SQLite file; qxck-sql and the demo generator take either.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "db/DbTestSupport.h"
#include "db/sqlite/Schema.h"
#include "db/tools/ShopCopy.h"

namespace qx::dbtest {
namespace {

class ServerLocation : public ::testing::Test {
protected:
    test::PostgresServer* server = nullptr;
    void SetUp() override {
        server = test::PostgresServer::instance();
        if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    }
};

TEST(Location, AUriNamesAServerAnythingElseAFile) {
    EXPECT_TRUE(db::isServerLocation("postgresql://qx@db.example:5432/shop"));
    EXPECT_TRUE(db::isServerLocation("postgres://qx@/shop?host=/run/postgresql"));
    EXPECT_FALSE(db::isServerLocation("/srv/shop.db"));
    EXPECT_FALSE(db::isServerLocation("shop.db"));
    EXPECT_FALSE(db::isServerLocation("postgresql.db"));
    TempDir dir;
    EXPECT_EQ(db::openDatabase(dir.file("shop.db"), true)->engineName(), "sqlite");
    EXPECT_THROW(db::openDatabase(dir.file("missing.db")), db::Error);
}

TEST_F(ServerLocation, AnEmptyServerDatabaseIsRefusedUnlessAShopIsToBeCreated) {
    const std::string uri = server->freshDatabase();
    try {
        db::openDatabase(uri);
        FAIL() << "an empty database was opened as a shop";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("is not a shop database"), std::string::npos) << e.what();
    }
    auto created = db::openDatabase(uri, true);
    EXPECT_EQ(created->engineName(), "postgresql");
    EXPECT_EQ(created->location(), uri);
    created->execute(kSmallShopBatch);
    created.reset();
    auto reopened = db::openDatabase(uri);
    EXPECT_EQ(count(*reopened, "D1007"), 3) << "opening again keeps the shop";
    EXPECT_EQ(db::openDatabase(uri, true)->engineName(), "postgresql") << "create on an existing shop just opens it";
    EXPECT_EQ(count(*reopened, "D1007"), 3);
}

TEST_F(ServerLocation, AShopMadeBeforeTheClosingSnapshotsGetsThemWhenOpened) {
    const std::string uri = server->freshDatabase();
    {
        auto created = db::openDatabase(uri, true);
        created->execute(kSmallShopBatch);
        auto& server = dynamic_cast<db::PostgresDatabase&>(*created);
        server.runNative("DROP TRIGGER qx_snapshot_closing ON sys_co; DROP TRIGGER qx_snapshot_reopening ON sys_co; "
                         "DROP TRIGGER qx_snapshot_opening_added ON d1802; DROP TRIGGER qx_snapshot_opening_changed ON d1802; "
                         "DROP TABLE sys_ck_snapshot; DROP TABLE sys_ck_snapshot_sku; DROP TABLE sys_ck_snapshot_period; "
                         "CREATE OR REPLACE VIEW qx_schema_version AS SELECT 1 AS version");  // as a build before them marked it
    }
    auto reopened = db::openDatabase(uri);
    reopened->execute("INSERT INTO d1802 (WL_ID, CK_ID, B0, K0) VALUES ('K101', 'ZC', 4, 4)", {true});
    reopened->execute("UPDATE sys_co SET CK_END_DATE = '2026-05-01'");
    EXPECT_EQ(integer(scalar(*reopened, "SELECT K0 FROM sys_ck_snapshot WHERE PERIOD = '2026-05-01' AND WL_ID = 'K101'")), 4);
    reopened->execute("UPDATE sys_co SET CK_END_DATE = NULL");
    EXPECT_EQ(count(*reopened, "sys_ck_snapshot"), 0) << "a reopen drops the snapshot";
}

TEST_F(ServerLocation, QxckSqlRunsABatchOnAServerShop) {
    const std::string uri = server->freshDatabase();
    db::openDatabase(uri, true)->execute(kSmallShopBatch);
    const std::string command = "echo \"SELECT CK_ID, CK_NAME FROM d1007 WHERE ck_id = 'md1'\" | '" QXCK_SQL_TOOL "' --db '" + uri + "'";
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    ASSERT_TRUE(pipe);
    std::string out;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe.get())) out += buffer;
    EXPECT_EQ(out, "CK_ID\tCK_NAME\nMD1\t一店\n");
}

// qxck-demo --db postgresql://…: the demo shop goes into an empty server database, with the same
// stock as the same demo in an SQLite file; a database that holds a shop is refused.
TEST_F(ServerLocation, TheDemoShopOnAServerHasTheSameStockAsInAFile) {
    const std::string uri = server->freshDatabase();
    demo::Options options;
    options.seed = 7;
    options.endDate = "2026-06-30";
    const auto summary = demo::createDemoDatabase(uri, options);
    auto onServer = db::openDatabase(uri);
    auto inFile = db::openSqlite(sharedDemoShop());
    const std::string totals = "SELECT COUNT(*) AS n, SUM(KC) AS kc, SUM(K0 + 2*K1 + 3*K2 + 4*K3) AS w FROM d1802";
    const auto server = onServer->open(totals).rows.at(0);
    const auto file = inFile->open(totals).rows.at(0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(integer(server[i]), integer(file[i])) << "column " << i;
    EXPECT_EQ(count(*onServer, "D8101"), count(*inFile, "D8101"));
    EXPECT_EQ(count(*onServer, "V_CHECKKC"), 0);
    EXPECT_EQ(rowsOf(*onServer, "sys_group"), rowsOf(*inFile, "sys_group")) << "the reports' groupings a new shop starts with";
    EXPECT_GT(summary.documents, 100);
    EXPECT_THROW(demo::createDemoDatabase(uri, options), db::Error) << "a second demo into the same shop";
}

// qxck-copy --from shop.db --to postgresql://…: every row of every table, the number counters and
// the stock rows arrive as they are; the copy balances; a target that holds a shop is refused.
TEST_F(ServerLocation, AShopMovesFromItsFileToAServerWithEveryRow) {
    const std::string uri = server->freshDatabase();
    const auto summary = copy::copyShop(sharedDemoShop(), uri);
    auto file = db::openSqlite(sharedDemoShop());
    auto copy = db::openDatabase(uri);
    ASSERT_GT(summary.tables.size(), 30u);
    for (const auto& t : summary.tables) {
        EXPECT_EQ(count(*copy, t.table), count(*file, t.table)) << t.table;
        EXPECT_EQ(t.rows, count(*file, t.table)) << t.table;
    }
    const std::string stockTotals = "SELECT COUNT(*), SUM(KC), SUM(K0 + 2*K1 + 3*K2 + 4*K3), SUM(B0 + B1), SUM(BEGIN_MONEY) FROM d1802";
    const auto copied = copy->open(stockTotals).rows.at(0), original = file->open(stockTotals).rows.at(0);
    for (std::size_t i = 0; i < copied.size(); ++i) EXPECT_EQ(text(copied[i]), text(original[i])) << "column " << i;
    const std::string money = "SELECT SUM(a.MONEY), MAX(a.NOTE), MIN(h.BDATE) FROM D8101A a JOIN D8101 h ON h.NOID = a.NOID";
    const auto copiedMoney = copy->open(money).rows.at(0), originalMoney = file->open(money).rows.at(0);
    for (std::size_t i = 0; i < copiedMoney.size(); ++i) EXPECT_EQ(text(copiedMoney[i]), text(originalMoney[i])) << "column " << i;
    EXPECT_EQ(text(scalar(*copy, "SELECT MAX(SEQ) FROM sys_noid")), text(scalar(*file, "SELECT MAX(SEQ) FROM sys_noid")))
        << "the number counters came along";
    EXPECT_EQ(count(*copy, "V_CHECKKC"), 0) << "the stock rows equal the documents' recomputation";
    EXPECT_THROW(copy::copyShop(sharedDemoShop(), uri), db::Error) << "a target that holds a shop";
}


// The schema version mark of a shop on a server.
long long markOf(db::PostgresDatabase& server) { return integer(server.runNative("SELECT version FROM qx_schema_version").rows.at(0).at(0)); }

std::string definitionOf(db::PostgresDatabase& server, const std::string& view) {
    return text(server.runNative("SELECT pg_get_viewdef('" + view + "'::regclass)").rows.at(0).at(0));
}

long long triggersNamed(db::PostgresDatabase& server, const std::string& name) {
    return integer(server.runNative("SELECT count(*) FROM pg_trigger WHERE tgname = '" + name + "'").rows.at(0).at(0));
}

// A shop with a sale posted, then its generated objects made stale: its views gone and the
// balance view replaced, the sale lines' posting trigger gone, the stock total trigger doing
// nothing, the reopen snapshot trigger gone, a date column to the second and a helper's old body;
// and its mark set to `mark` (none for 0).
void makeItAShopOfVersion(const std::string& uri, int mark) {
    auto db = db::openDatabase(uri, true);
    db->execute(kSmallShopBatch);
    db->execute("INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID) VALUES (1,'S1','G1','ZC','2026-05-05','admin');"
                "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0) VALUES ('S1','K101','K1','01','ZC',2)");
    ASSERT_EQ(stock(*db, "K101", "ZC"), sizes({-2}));
    auto& server = dynamic_cast<db::PostgresDatabase&>(*db);
    // what a build before the 1/300 s datetimes made: dates to the second, a helper's old body
    server.runNative("DO $$ DECLARE v record; BEGIN FOR v IN SELECT viewname FROM pg_views WHERE schemaname = current_schema() "
                     "AND viewname <> 'qx_schema_version' LOOP EXECUTE 'DROP VIEW IF EXISTS ' || quote_ident(v.viewname) || ' CASCADE'; "
                     "END LOOP; END $$");
    server.runNative("ALTER TABLE d8201 ALTER COLUMN bdate TYPE TIMESTAMP(0)");
    server.runNative("CREATE OR REPLACE FUNCTION qx_fail(text) RETURNS text LANGUAGE plpgsql STABLE AS "
                     "$q$BEGIN RAISE EXCEPTION USING MESSAGE = 'an old body'; END $q$");
    server.runNative("ALTER FUNCTION qx_int_text(bigint, integer, integer) PARALLEL UNSAFE");  // as helpers were made before
    server.runNative("DELETE FROM sys_group");  // made before a new server shop got the reports' groupings
    server.runNative("DROP VIEW IF EXISTS v_checkkc; CREATE VIEW v_checkkc AS SELECT 'stale'::text AS ck_id; "
                     "DROP FUNCTION qx_post_sale_line_ins CASCADE; DROP TRIGGER qx_snapshot_reopening ON sys_co; "
                     "CREATE OR REPLACE FUNCTION qx_d1802_total() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RETURN NEW; END $$");
    if (mark == 0) server.runNative("DROP VIEW qx_schema_version");
    else server.runNative("CREATE OR REPLACE VIEW qx_schema_version AS SELECT " + std::to_string(mark) + " AS version");
    ASSERT_EQ(triggersNamed(server, "qx_post_sale_line_ins"), 0);
}

TEST_F(ServerLocation, ANewShopCarriesTheSchemaVersionMark) {
    const std::string uri = server->freshDatabase();
    auto created = db::openDatabase(uri, true);
    auto& shop = dynamic_cast<db::PostgresDatabase&>(*created);
    EXPECT_EQ(markOf(shop), kSchemaVersion);
    EXPECT_EQ(shop.schemaVersion(), kSchemaVersion);
    EXPECT_EQ(kSchemaVersion, 4) << "the same mark as a shop file's";
    created.reset();
    auto reopened = db::openDatabase(uri);
    EXPECT_EQ(dynamic_cast<db::PostgresDatabase&>(*reopened).schemaVersion(), kSchemaVersion);
}

class OlderServerShop : public ServerLocation, public ::testing::WithParamInterface<int> {};

TEST_P(OlderServerShop, GetsItsGeneratedObjectsRenewedAndKeepsItsRows) {
    const std::string uri = server->freshDatabase();
    makeItAShopOfVersion(uri, GetParam());
    if (HasFatalFailure()) return;
    auto db = db::openDatabase(uri);
    auto& shop = dynamic_cast<db::PostgresDatabase&>(*db);
    EXPECT_EQ(shop.schemaVersion(), kSchemaVersion);
    EXPECT_EQ(definitionOf(shop, "v_checkkc").find("stale"), std::string::npos);
    EXPECT_EQ(triggersNamed(shop, "qx_post_sale_line_ins"), 1) << "a missing trigger is made again";
    EXPECT_EQ(triggersNamed(shop, "qx_snapshot_reopening"), 1) << "and the snapshots' one";
    EXPECT_EQ(text(shop.runNative("SELECT format_type(atttypid, atttypmod) FROM pg_attribute WHERE attrelid = 'd8201'::regclass "
                                  "AND attname = 'bdate'").rows.at(0).at(0)),
              "timestamp(3) without time zone")
        << "dates keep 1/300 s again";
    EXPECT_EQ(text(shop.runNative("SELECT prosrc FROM pg_proc WHERE proname = 'qx_fail'").rows.at(0).at(0)).find("an old body"),
              std::string::npos)
        << "the helpers in this build's bodies";
    EXPECT_EQ(text(shop.runNative("SELECT proparallel FROM pg_proc WHERE proname = 'qx_int_text'").rows.at(0).at(0)), "s")
        << "the helpers may run in parallel workers again";
    EXPECT_EQ(text(scalar(*db, "SELECT CONVERT(varchar(23), BDATE, 121) FROM D8201 WHERE NOID = 'S1'")), "2026-05-05 00:00:00.000");
    EXPECT_EQ(count(*db, "sys_group", "GROUP_ID=214"), 12) << "the reports' groupings it lacked";
    EXPECT_EQ(count(*db, "D8201A"), 1) << "rows stay";
    EXPECT_EQ(count(*db, "D1007"), 3);
    EXPECT_EQ(stock(*db, "K101", "ZC"), sizes({-2}));
    db->execute("INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID) VALUES (1,'S2','G1','ZC','2026-05-06','admin');"
                "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0) VALUES ('S2','K101','K1','01','ZC',1)");
    EXPECT_EQ(stock(*db, "K101", "ZC"), sizes({-3})) << "the renewed triggers post";
    EXPECT_EQ(integer(scalar(*db, "SELECT KC FROM d1802 WHERE WL_ID = 'K101' AND CK_ID = 'ZC'")), -3) << "the total is kept again";
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0) << "the renewed balance view";
    db->execute("UPDATE d1802 SET K1 = 5 WHERE WL_ID = 'K101' AND CK_ID = 'ZC'", {true});
    EXPECT_EQ(count(*db, "V_CHECKKC"), 1);
    db.reset();
    EXPECT_EQ(dynamic_cast<db::PostgresDatabase&>(*db::openDatabase(uri)).schemaVersion(), kSchemaVersion) << "opening again changes nothing";
}

INSTANTIATE_TEST_SUITE_P(Mark, OlderServerShop, ::testing::Values(0, 1, 2, 3), [](const ::testing::TestParamInfo<int>& info) {
    return info.param ? "Version" + std::to_string(info.param) : std::string("None");
});

TEST_F(ServerLocation, AShopWithANewerMarkIsRefusedAndLeftAsItIs) {
    const std::string uri = server->freshDatabase();
    makeItAShopOfVersion(uri, 99);
    if (HasFatalFailure()) return;
    try {
        db::openDatabase(uri);
        ADD_FAILURE() << "a newer shop must not be opened";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find(uri + " was made by a newer version of the program (schema version 99, this version knows up to 4); "
                                              "open it with that version"),
                  std::string::npos)
            << e.what();
    }
    EXPECT_THROW(db::openDatabase(uri, true), db::Error) << "create on it refuses it too";
    db::PostgresDatabase shop(uri);
    EXPECT_EQ(markOf(shop), 99);
    EXPECT_NE(definitionOf(shop, "v_checkkc").find("stale"), std::string::npos) << "nothing renewed";
    EXPECT_EQ(triggersNamed(shop, "qx_post_sale_line_ins"), 0);
    EXPECT_EQ(triggersNamed(shop, "qx_snapshot_reopening"), 0) << "nor the snapshots";
    EXPECT_EQ(count(shop, "D8201A"), 1);
}

}  // namespace
}  // namespace qx::dbtest
