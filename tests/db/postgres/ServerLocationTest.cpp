// Choosing the engine by the location a tool is given: a postgresql:// URI opens a shop on a
// server, anything else an SQLite file; qxck-sql and the demo generator take either.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "db/DbTestSupport.h"
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
        server.runNative("DROP TRIGGER qx_snapshot_close ON sys_co; DROP TRIGGER qx_snapshot_reopen ON sys_co; "
                         "DROP TABLE sys_ck_snapshot");
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

}  // namespace
}  // namespace qx::dbtest
