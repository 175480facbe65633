// The PostgreSQL engine on a private test server: connection, atomic batches, the last result
// set, value types, errors, a cancelled statement, and T-SQL translated with SQL Server's meaning on both engines.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <cctype>
#include <chrono>
#include <thread>
#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>

#include "db/Database.h"
#include "db/Interrupt.h"
#include "db/Progress.h"
#include "db/postgres/PostgresDatabase.h"
#include "db/tsql/Translator.h"
#include "support/PostgresServer.h"

namespace {

using qx::db::FieldType;
using qx::db::Value;

// A table of a shop-like shape, created the same way on either engine.
constexpr const char* kItems =
    "CREATE TABLE Items (ItemNo varchar(20) NOT NULL, Name varchar(40), Qty int, Price decimal(18,2), Sold datetime)";

std::string text(const Value& v) { return std::get<std::string>(v); }

class PostgresDatabaseTest : public ::testing::Test {
protected:
    std::unique_ptr<qx::db::Database> connect() {
        return qx::db::openPostgres(uri_);
    }
    // The message a batch fails with, or "no error".
    std::string errorOf(const std::string& batch) {
        try {
            db_->execute(batch);
        } catch (const qx::db::Error& e) {
            return e.what();
        }
        return "no error";
    }
    void SetUp() override {
        server_ = qx::test::PostgresServer::instance();
        if (!server_) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
        uri_ = server_->freshDatabase();
        db_ = connect();
        db_->execute(kItems);
    }
    qx::test::PostgresServer* server_ = nullptr;
    std::string uri_;
    std::unique_ptr<qx::db::Database> db_;
};

TEST_F(PostgresDatabaseTest, ConnectsByUriAndNamesItself) {
    EXPECT_EQ(db_->engineName(), "postgresql");
    EXPECT_EQ(db_->location(), uri_);
    EXPECT_NE(uri_.find("postgresql://"), std::string::npos);
}

TEST_F(PostgresDatabaseTest, AnUnreachableServerIsAClearError) {
    try {
        qx::db::openPostgres("postgresql://qx@/nothing?host=/nonexistent-folder");
        FAIL() << "connected to nothing";
    } catch (const qx::db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("cannot connect to the PostgreSQL server"), std::string::npos) << e.what();
    }
}

TEST_F(PostgresDatabaseTest, AFailingStatementLeavesNothingOfItsBatch) {
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A1', 1)");
    EXPECT_THROW(db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A2', 2); UPDATE Items SET Qty = 9; "
                              "INSERT INTO Items (ItemNo, Qty) VALUES (NULL, 3)"),
                 qx::db::Error);
    const auto rows = db_->open("SELECT ItemNo, Qty FROM Items ORDER BY ItemNo").rows;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(text(rows[0][0]), "A1");
    EXPECT_EQ(std::get<std::int64_t>(rows[0][1]), 1);
    // The connection is usable again after the rollback.
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A3', 3)");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM Items").rows[0][0], Value(std::int64_t{2}));
}

TEST_F(PostgresDatabaseTest, AnErrorCarriesTheServersMessageAndTheStatement) {
    try {
        db_->execute("INSERT INTO Items (ItemNo) VALUES ('B1')\nSELECT NoSuchColumn FROM Items");
        FAIL() << "no error";
    } catch (const qx::db::Error& e) {
        EXPECT_STREQ(e.what(), "Invalid column name 'NoSuchColumn'.");
        EXPECT_EQ(e.statement(), "SELECT NoSuchColumn FROM Items");
        EXPECT_EQ(e.line(), 2);
    }
    EXPECT_TRUE(db_->open("SELECT * FROM Items").rows.empty());
}

// The messages the module and its users know, in SQL Server's words.
TEST_F(PostgresDatabaseTest, ErrorsReadAsSqlServersDo) {
    const auto message = [&](const std::string& batch) { return errorOf(batch); };
    EXPECT_EQ(message("SELECT * FROM NoTable"), "Invalid object name 'NoTable'.");
    EXPECT_EQ(message("SELECT * FROM #none"), "Invalid object name '#none'.");
    EXPECT_EQ(message("SELECT 1 / 0"), "Divide by zero error encountered.");
    EXPECT_EQ(message("SELECT 2147483647 + 1"), "Arithmetic overflow error converting expression to data type int.");
    EXPECT_EQ(message("INSERT INTO Items (ItemNo) VALUES ('a'); INSERT INTO Items (ItemNo) VALUES ('b'); "
                      "SELECT (SELECT ItemNo FROM Items)"),
              "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
              "when the subquery is used as an expression.");
    EXPECT_EQ(message(("INSERT INTO Items (ItemNo) VALUES ('" + std::string(10000, 'x') + "')").c_str())
                  .rfind("String or binary data would be truncated in table 'Items', column 'itemno'. Truncated value: 'xxx", 0),
              0u);
    EXPECT_EQ(message("INSERT INTO Items (ItemNo, Price) VALUES ('p', 1e20)"), "Arithmetic overflow error converting numeric to data type numeric.");
    EXPECT_TRUE(db_->open("SELECT * FROM Items").rows.empty());
}

TEST_F(PostgresDatabaseTest, ABatchReturnsItsLastResultSetAndTempTablesStayPrivate) {
    db_->execute("INSERT INTO Items (ItemNo, Name, Qty, Price, Sold) VALUES ('C1', 'Shirt', 5, 12.345, '2024-01-05')");
    const auto result = db_->open(
        "SELECT ItemNo, Qty INTO #t FROM Items; SELECT 1 AS first; "
        "SELECT ItemNo, Name, Qty, Price, Sold, Qty * 2 AS Twice FROM Items; DROP TABLE #t");
    ASSERT_EQ(result.columns.size(), 6u);
    EXPECT_EQ(result.columns[0].name, "ItemNo");  // case kept
    EXPECT_EQ(result.columns[0].type, FieldType::Text);
    EXPECT_EQ(result.columns[0].size, 20);
    EXPECT_EQ(result.columns[2].type, FieldType::Integer);
    EXPECT_EQ(result.columns[3].type, FieldType::Float);
    EXPECT_EQ(result.columns[4].type, FieldType::DateTime);
    ASSERT_EQ(result.rows.size(), 1u);
    const auto& row = result.rows[0];
    EXPECT_EQ(text(row[1]), "Shirt");
    EXPECT_EQ(std::get<std::int64_t>(row[2]), 5);
    EXPECT_DOUBLE_EQ(std::get<double>(row[3]), 12.35);  // decimal(18,2) keeps two places
    EXPECT_EQ(text(row[4]), "2024-01-05 00:00:00");
    EXPECT_EQ(std::get<std::int64_t>(row[5]), 10);

    // #t of one connection is not seen by another, and survives between its own batches.
    db_->execute("SELECT ItemNo INTO #mine FROM Items");
    auto other = connect();
    EXPECT_THROW(other->open("SELECT * FROM #mine"), qx::db::Error);
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #mine").rows[0][0], Value(std::int64_t{1}));
    EXPECT_TRUE(db_->open("SELECT * FROM Items WHERE 1 = 0").rows.empty());
}

// The columns the translator read are kept between batches; a temp table made again with other
// columns, one made by a batch that failed, and a table another connection altered are read
// afresh.
TEST_F(PostgresDatabaseTest, KeptTableColumnsFollowEveryChangeOfATable) {
    db_->execute("INSERT INTO Items (ItemNo, Name, Qty) VALUES ('A1', 'Coat', 3)");
    db_->execute("SELECT ItemNo, Qty INTO #x FROM Items");
    EXPECT_EQ(db_->open("SELECT * FROM #x").columns.size(), 2u);
    db_->execute("DROP TABLE #x; SELECT Name INTO #x FROM Items");
    auto columns = db_->open("SELECT * FROM #x").columns;
    ASSERT_EQ(columns.size(), 1u);
    EXPECT_EQ(columns[0].name, "name");

    // made, read and then rolled back with its batch: not there afterwards
    EXPECT_NE(errorOf("SELECT ItemNo, Name, Qty INTO #y FROM Items; INSERT INTO #y VALUES ('B1', 'Hat', 1); SELECT * FROM Nowhere"),
              "no error");
    EXPECT_NE(errorOf("INSERT INTO #y VALUES ('B2', 'Cap', 2)"), "no error");
    db_->execute("SELECT ItemNo INTO #y FROM Items");
    db_->execute("INSERT INTO #y VALUES ('B3')");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #y").rows[0][0], Value(std::int64_t{2}));

    // another terminal adds a column: a positional insert with the new column goes through
    db_->execute("INSERT INTO Items VALUES ('A2', 'Scarf', 1, 5, '2024-02-01')");
    qx::db::PostgresDatabase(uri_).runNative("ALTER TABLE items ADD colour VARCHAR(10) COLLATE qx");
    db_->execute("INSERT INTO Items VALUES ('A3', 'Belt', 2, 8, '2024-02-02', 'black')");
    EXPECT_EQ(text(db_->open("SELECT Colour FROM Items WHERE ItemNo = 'A3'").rows.at(0).at(0)), "black");
}

// A batch goes to the server in as few round trips as it can (its BEGIN with the first
// statement, its COMMIT with the last) and still keeps nothing of a failure, also one found
// only at COMMIT, nor leaves a transaction open after a batch with nothing to run.
TEST_F(PostgresDatabaseTest, ABatchIsOneTransactionAlsoWhenItsEndsTravelWithItsStatements) {
    auto* server = dynamic_cast<qx::db::PostgresDatabase*>(db_.get());
    ASSERT_NE(server, nullptr);
    server->runNative("CREATE TABLE later (n INTEGER)");
    server->runNative("CREATE FUNCTION later_check() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN IF NEW.n > 5 THEN RAISE "
                      "EXCEPTION 'too many at commit'; END IF; RETURN NULL; END $$");
    server->runNative("CREATE CONSTRAINT TRIGGER later_guard AFTER INSERT ON later DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
                      "EXECUTE FUNCTION later_check()");
    EXPECT_EQ(errorOf("INSERT INTO Items (ItemNo) VALUES ('K1'); INSERT INTO later VALUES (9)"), "too many at commit");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM Items WHERE ItemNo = 'K1'").rows[0][0], Value(std::int64_t{0}));
    EXPECT_EQ(errorOf("INSERT INTO later VALUES (7)"), "too many at commit") << "the only statement, COMMIT with it";
    EXPECT_EQ(errorOf("INSERT INTO later VALUES (2)"), "no error");
    EXPECT_EQ(errorOf("-- nothing to run"), "no error");
    EXPECT_EQ(db_->open("SELECT n FROM later").rows.size(), 1u);
    EXPECT_EQ(server->runNative("SELECT 1").rows.size(), 1u);
    // no transaction left open: another connection sees the row at once
    EXPECT_EQ(connect()->open("SELECT COUNT(*) FROM later").rows[0][0], Value(std::int64_t{1}));
    const auto last = db_->open("SELECT ItemNo INTO #z FROM Items; SELECT 1 AS one; SELECT 2 AS two");
    ASSERT_EQ(last.rows.size(), 1u);
    EXPECT_EQ(last.columns.at(0).name, "two");
}

TEST_F(PostgresDatabaseTest, NullsComeBackAsNull) {
    db_->execute("INSERT INTO Items (ItemNo) VALUES ('D1')");
    const auto row = db_->open("SELECT Name, Qty, Price, Sold FROM Items").rows.at(0);
    for (const auto& v : row) EXPECT_TRUE(std::holds_alternative<std::monostate>(v));
}

TEST_F(PostgresDatabaseTest, QuotesInValuesAreData) {
    db_->execute("INSERT INTO Items (ItemNo, Name) VALUES ('E1', 'O''Brien''; DROP TABLE Items; --')");
    EXPECT_EQ(text(db_->open("SELECT Name FROM Items").rows.at(0).at(0)), "O'Brien'; DROP TABLE Items; --");
}

// The same T-SQL on SQLite and on PostgreSQL gives the same rows.
struct Case {
    const char* name;
    const char* setup;  // run first (maintenance), may be empty
    const char* query;
    std::vector<std::vector<Value>> rows;
};

std::vector<Case> bothEngineCases() {
    using S = std::string;
    using I = std::int64_t;
    return {
        {"text plus text concatenates", "INSERT INTO Items (ItemNo, Name) VALUES ('F1', 'Red')",
         "SELECT ItemNo + '-' + Name FROM Items", {{S("F1-Red")}}},
        {"top takes the first rows in order",
         "INSERT INTO Items (ItemNo, Qty) VALUES ('G1', 3); INSERT INTO Items (ItemNo, Qty) VALUES ('G2', 1); "
         "INSERT INTO Items (ItemNo, Qty) VALUES ('G3', 2)",
         "SELECT TOP 2 ItemNo FROM Items ORDER BY Qty", {{S("G2")}, {S("G3")}}},
        {"isnull falls back", "INSERT INTO Items (ItemNo) VALUES ('H1')", "SELECT ISNULL(Name, 'none'), ISNULL(Qty, 0) FROM Items",
         {{S("none"), I{0}}}},
        {"text compares without case", "INSERT INTO Items (ItemNo, Name) VALUES ('J1', 'Blue')",
         "SELECT ItemNo FROM Items WHERE Name = 'BLUE'", {{S("J1")}}},
        {"mixed-case names reach the same column", "INSERT INTO Items (ItemNo, Qty) VALUES ('K1', 4)",
         "SELECT Qty FROM Items WHERE ItemNo = 'K1'", {{I{4}}}},
        {"getdate is today", "", "SELECT CONVERT(varchar(10), GETDATE(), 120)", {}},
        {"temp table numbers and reads back", "",
         "CREATE TABLE #n (k int, v varchar(10)); INSERT INTO #n VALUES (2, 'b'); INSERT INTO #n VALUES (1, 'a'); "
         "SELECT v FROM #n ORDER BY k",
         {{S("a")}, {S("b")}}},
        {"integer division stays integer", "", "SELECT 7 / 2, 7 % 2", {{I{3}, I{1}}}},
        {"like matches without case", "INSERT INTO Items (ItemNo, Name) VALUES ('L1', 'Jacket')",
         "SELECT ItemNo FROM Items WHERE Name LIKE 'jack%'", {{S("L1")}}},
    };
}

std::vector<std::vector<Value>> runOn(qx::db::Database& db, const Case& c) {
    db.execute(kItems, {.maintenance = true});
    if (*c.setup) db.execute(c.setup, {.maintenance = true});
    return db.open(c.query).rows;
}

TEST_F(PostgresDatabaseTest, TheSameTsqlGivesTheSameRowsOnBothEngines) {
    const auto folder = std::filesystem::temp_directory_path() / ("qx-pg-cases-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    int index = 0;
    for (const auto& c : bothEngineCases()) {
        SCOPED_TRACE(c.name);
        auto sqlite = qx::db::openSqlite((folder / ("case" + std::to_string(++index) + ".db")).string(), true);
        sqlite->execute("DROP TABLE IF EXISTS Items", {.maintenance = true});
        auto postgres = qx::db::openPostgres(server_->freshDatabase());
        std::vector<std::vector<Value>> fromSqlite, fromPostgres;
        try {
            fromSqlite = runOn(*sqlite, c);
        } catch (const qx::db::Error& e) {
            ADD_FAILURE() << "sqlite: " << e.what();
        }
        try {
            fromPostgres = runOn(*postgres, c);
        } catch (const qx::db::Error& e) {
            ADD_FAILURE() << "postgresql: " << e.what();
        }
        EXPECT_EQ(fromSqlite, fromPostgres);
        if (!c.rows.empty()) EXPECT_EQ(fromPostgres, c.rows);
        else ASSERT_EQ(fromPostgres.size(), 1u);
    }
    std::filesystem::remove_all(folder);
}

// Table name → its column names in order.
using Tables = std::map<std::string, std::vector<std::string>>;

// PostgreSQL keeps names folded to lower case (names ignore case, as on SQL Server).
std::string lower(std::string name) {
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

Tables sqliteTables(const std::string& path) {
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    Tables tables;
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT m.name, p.name FROM sqlite_master m, pragma_table_info(m.name) p "
                       "WHERE m.type = 'table' AND m.name NOT LIKE 'sqlite%' ORDER BY m.name, p.cid",
                       -1, &stmt, nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        tables[lower(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)))].push_back(
            lower(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1))));
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return tables;
}

Tables postgresTables(qx::db::PostgresDatabase& db) {
    Tables tables;
    const auto rows = db.runNative(
        "SELECT c.relname, a.attname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
        "JOIN pg_attribute a ON a.attrelid = c.oid WHERE n.nspname = 'public' AND c.relkind = 'r' "
        "AND a.attnum > 0 AND NOT a.attisdropped ORDER BY c.relname, a.attnum");
    for (const auto& row : rows.rows) tables[text(row[0])].push_back(text(row[1]));
    return tables;
}

TEST(PostgresShopTest, AFreshShopHasEveryTableAndColumnOfTheSqliteShop) {
    auto* server = qx::test::PostgresServer::instance();
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    const auto folder = std::filesystem::temp_directory_path() / ("qx-pg-shop-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "shop.db").string();
    qx::db::openSqlite(file, true).reset();
    Tables expected = sqliteTables(file);
    std::filesystem::remove_all(folder);
    // The month-closing snapshots belong to the procedures, not to the table definitions
    // (createShop() adds them).
    for (const char* snapshots : {"sys_ck_snapshot", "sys_ck_snapshot_sku", "sys_ck_snapshot_period"})
        ASSERT_EQ(expected.erase(snapshots), 1u) << snapshots;
    ASSERT_GT(expected.size(), 30u);
    ASSERT_TRUE(expected.count("d1004"));

    qx::db::PostgresDatabase postgres(server->freshDatabase());
    postgres.createShopTables();
    const Tables created = postgresTables(postgres);
    for (const auto& [table, columns] : expected) {
        SCOPED_TRACE(table);
        const auto found = created.find(table);
        ASSERT_NE(found, created.end()) << "missing on PostgreSQL";
        EXPECT_EQ(found->second, columns);
    }
    EXPECT_EQ(created.size(), expected.size());

    // The tables take the module's statements: quotes are data, codes compare ignoring case.
    postgres.execute("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('ab', 'O''Neil')");
    const auto rows = postgres.open("SELECT CLASS_NAME FROM d1004 WHERE CLASS_ID = 'AB'");
    ASSERT_EQ(rows.rows.size(), 1u);
    EXPECT_EQ(text(rows.rows[0][0]), "O'Neil");
    // The codes' primary key holds.
    EXPECT_THROW(postgres.execute("INSERT INTO d1004 (CLASS_ID) VALUES ('AB')"), qx::db::Error);
}

TEST_F(PostgresDatabaseTest, SysMRunsTheTextItIsHandedAndTheRegisteredProceduresAreFound) {
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('M1', 4)");
    const auto rows =
        db_->open("EXEC SYS_M @param=1, @sqltext='SELECT ItemNo, Qty * 2 AS Twice FROM Items WHERE ItemNo = ''m1'''").rows;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(text(rows[0][0]), "M1");
    EXPECT_EQ(std::get<std::int64_t>(rows[0][1]), 8);
    EXPECT_EQ(errorOf("EXEC no_such_thing @a=1"), "unknown procedure: no_such_thing");
    EXPECT_EQ(errorOf("EXEC SYS_ZM @param3='9'"), "SYS_ZM: @param3 must be 0, 1 or 2, not 9")
        << "the stock procedures answer on the server too";
    EXPECT_EQ(errorOf("EXEC SYS_M @param=1"), "SYS_M needs the argument @sqltext");
}

// The server ends the connection while a batch runs (an administrator, a restart): the batch
// fails clearly, nothing of it is kept, and the next batch opens the connection again.
TEST_F(PostgresDatabaseTest, ACancelStopsAStatementOnTheServerAndKeepsNothingOfItsBatch) {
    std::string rows = "CREATE TABLE k (x int);";
    for (int i = 0; i < 1000; ++i) rows += "INSERT INTO k VALUES (" + std::to_string(i) + ");";
    db_->execute(rows);
    int asked = 0;
    const auto started = std::chrono::steady_clock::now();
    {
        // a billion rows: runs far longer than any test unless the server stops it
        qx::db::ProgressScope cancel([&] { return ++asked < 3; });
        try {
            db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('C1', 1); SELECT count(*) FROM k a, k b, k c");
            ADD_FAILURE() << "the statement ran to its end";
        } catch (const qx::db::Error& e) {
            EXPECT_STREQ(e.what(), qx::db::kCancelledMessage);
        }
    }
    EXPECT_EQ(asked, 3) << "asked while the server works, until the first no";
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(60)) << "stopped, not waited out";
    EXPECT_TRUE(db_->open("SELECT ItemNo FROM Items WHERE ItemNo = 'C1'").rows.empty()) << "the batch was rolled back";
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('C2', 2)");
    EXPECT_EQ(db_->open("SELECT ItemNo FROM Items WHERE ItemNo = 'C2'").rows.size(), 1u) << "the connection goes on working";
}

TEST_F(PostgresDatabaseTest, TheUserInterfacesInterruptCheckCancelsToo) {
    std::string rows = "CREATE TABLE k (x int);";
    for (int i = 0; i < 1000; ++i) rows += "INSERT INTO k VALUES (" + std::to_string(i) + ");";
    db_->execute(rows);
    const auto previous = qx::db::setInterruptCheck([] { return true; });
    std::string message = "no error";
    try {
        db_->open("SELECT count(*) FROM k a, k b, k c");
    } catch (const qx::db::Error& e) {
        message = e.what();
    }
    qx::db::setInterruptCheck(previous);
    EXPECT_EQ(message, qx::db::kCancelledMessage);
    EXPECT_EQ(std::get<std::int64_t>(db_->open("SELECT count(*) FROM k").rows.at(0).at(0)), 1000);
}

TEST_F(PostgresDatabaseTest, AConnectionKilledMidBatchKeepsNothingAndTheNextBatchReconnects) {
    const auto pid = std::to_string(std::get<std::int64_t>(db_->open("SELECT pg_backend_pid()").rows.at(0).at(0)));
    auto admin = connect();
    std::thread killer([&] {
        // once the batch is in its pause, after its first insert
        for (int i = 0; i < 200; ++i) {
            if (!admin->open("SELECT 1 FROM pg_stat_activity WHERE pid = " + pid + " AND query LIKE '%pg[_]sleep%'").rows.empty()) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        admin->open("SELECT pg_terminate_backend(" + pid + ")");
    });
    const std::string message =
        errorOf("INSERT INTO Items (ItemNo, Qty) VALUES ('K1', 1); SELECT pg_sleep(30); INSERT INTO Items (ItemNo, Qty) VALUES ('K2', 2)");
    killer.join();
    EXPECT_EQ(message.rfind("the connection to the database server was lost; nothing of the unfinished batch was kept", 0), 0u)
        << message;
    EXPECT_EQ(admin->open("SELECT COUNT(*) FROM Items").rows[0][0], Value(std::int64_t{0}));
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('K3', 3)");
    EXPECT_EQ(admin->open("SELECT ItemNo FROM Items").rows.at(0).at(0), Value(std::string("K3")));
}

// ---- temp tables kept for reuse: what any statement sees is a table made and dropped --------

// The oid of the connection's temp table of that name (0 when there is none on the server).
long long tempOid(qx::db::Database& db, const std::string& name) {
    const auto rows = dynamic_cast<qx::db::PostgresDatabase&>(db)
                          .runNative("SELECT oid::int8 FROM pg_class WHERE relname = '" + name + "' AND relpersistence = 't' AND "
                                     "pg_table_is_visible(oid)")
                          .rows;
    return rows.empty() ? 0 : std::get<std::int64_t>(rows[0][0]);
}

TEST_F(PostgresDatabaseTest, ATempTableMadeAgainAfterItsDropIsEmptyAndHasItsNewColumns) {
    db_->execute("INSERT INTO Items (ItemNo, Name, Qty) VALUES ('A1', 'Coat', 3); INSERT INTO Items (ItemNo, Name, Qty) VALUES ('A2', 'Hat', 4)");
    const std::string report = "SELECT ItemNo, Qty INTO #t FROM Items; SELECT ItemNo AS Code, Qty FROM #t ORDER BY ItemNo; DROP TABLE #t";
    long long oid = 0;
    for (int run = 0; run < 5; ++run) {
        const auto result = db_->open(report);
        ASSERT_EQ(result.rows.size(), 2u) << "run " << run << ": the rows of this run only";
        EXPECT_EQ(result.columns.at(0).name, "Code");
        EXPECT_EQ(text(result.rows[1][0]), "A2");
        EXPECT_EQ(std::get<std::int64_t>(result.rows[1][1]), 4);
        if (run == 1) oid = tempOid(*db_, "#t");
        if (run > 1) EXPECT_EQ(tempOid(*db_, "#t"), oid) << "the same table serves every run: no catalog work";
    }
    EXPECT_NE(oid, 0);
    // made again with the same columns and no rows: empty
    EXPECT_EQ(db_->open("SELECT ItemNo, Qty INTO #t FROM Items WHERE 1 = 0; SELECT COUNT(*) FROM #t").rows[0][0], Value(std::int64_t{0}));
    db_->execute("DROP TABLE #t");
    // made again with other columns: those columns, no rows
    const auto other = db_->open("CREATE TABLE #t (Code varchar(5), Amount decimal(10,2)); SELECT * FROM #t");
    ASSERT_EQ(other.columns.size(), 2u);
    EXPECT_EQ(other.columns[1].name, "Amount") << "as the batch declared it";
    EXPECT_TRUE(other.rows.empty());
    db_->execute("INSERT INTO #t VALUES ('x', 1.5)");
    EXPECT_EQ(db_->open("SELECT Amount FROM #t").rows.at(0).at(0), Value(1.5));
    // SELECT … INTO over a table that is there replaces it, rows and all
    db_->execute("SELECT Code, Amount INTO #t FROM #t WHERE 1 = 0");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #t").rows[0][0], Value(std::int64_t{0}));
}

TEST_F(PostgresDatabaseTest, ADroppedTempTableIsGoneForEveryStatement) {
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A1', 3)");
    db_->execute("SELECT ItemNo, Qty INTO #gone FROM Items; DROP TABLE #gone");
    EXPECT_EQ(errorOf("SELECT * FROM #gone"), "Invalid object name '#gone'.");
    EXPECT_EQ(errorOf("SELECT Qty FROM #GONE"), "Invalid object name '#GONE'.") << "named as written";
    EXPECT_EQ(errorOf("INSERT INTO #gone (ItemNo, Qty) VALUES ('B', 1)"), "Invalid object name '#gone'.");
    EXPECT_EQ(errorOf("INSERT INTO #gone VALUES ('B', 1)"), "Invalid object name '#gone'.");
    EXPECT_EQ(errorOf("UPDATE Items SET Qty = 1 WHERE ItemNo IN (SELECT ItemNo FROM #gone)"), "Invalid object name '#gone'.");
    EXPECT_EQ(errorOf("DELETE FROM #gone"), "Invalid object name '#gone'.");
    EXPECT_EQ(errorOf("DROP TABLE #gone"), errorOf("DROP TABLE #gone")) << "as a table never made";
    EXPECT_EQ(errorOf("DROP TABLE #gone"), "Invalid object name '#gone'.");
    EXPECT_NE(errorOf("SELECT * INTO #copy FROM #gone"), "no error");
    EXPECT_EQ(errorOf("SELECT '#gone' AS x, 'pg_temp.\"#gone\"' AS y"), "no error") << "a text that only looks like the name";
    // within one batch, and nothing of the batch is kept
    EXPECT_EQ(errorOf("INSERT INTO Items (ItemNo, Qty) VALUES ('A2', 1); SELECT ItemNo INTO #g2 FROM Items; DROP TABLE #g2;\n"
                      "SELECT * FROM #g2"),
              "Invalid object name '#g2'.");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM Items").rows[0][0], Value(std::int64_t{1}));
    try {
        db_->execute("SELECT ItemNo INTO #g3 FROM Items; DROP TABLE #g3\nSELECT * FROM #g3");
        FAIL() << "no error";
    } catch (const qx::db::Error& e) {
        EXPECT_EQ(e.statement(), "SELECT * FROM #g3");
        EXPECT_EQ(e.line(), 2);
    }
    // a statement failing before the one naming the dropped table is the one reported
    EXPECT_EQ(errorOf("SELECT ItemNo INTO #g4 FROM Items; DROP TABLE #g4; SELECT NoSuchColumn FROM Items; SELECT * FROM #g4"),
              "Invalid column name 'NoSuchColumn'.");
    // DROP TABLE IF EXISTS of a dropped one is no error; the name can be made again
    db_->execute("DROP TABLE IF EXISTS #gone");
    db_->execute("SELECT ItemNo INTO #gone FROM Items");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #gone").rows[0][0], Value(std::int64_t{1}));
}

TEST_F(PostgresDatabaseTest, AFailingBatchLeavesTheTempTablesAsTheyWereBeforeIt) {
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A1', 3); INSERT INTO Items (ItemNo, Qty) VALUES ('A2', 4)");
    db_->execute("SELECT ItemNo, Qty INTO #k FROM Items");
    // dropped by a batch that then fails: still there, with its rows
    EXPECT_NE(errorOf("DROP TABLE #k; SELECT * FROM Nowhere"), "no error");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #k").rows[0][0], Value(std::int64_t{2}));
    // emptied and refilled by a batch that then fails: its rows as before
    EXPECT_NE(errorOf("SELECT ItemNo, Qty INTO #k FROM Items WHERE ItemNo = 'A1'; SELECT * FROM Nowhere"), "no error");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #k").rows[0][0], Value(std::int64_t{2}));
    db_->execute("DROP TABLE #k");
    // made again by a batch that then fails: still gone
    EXPECT_NE(errorOf("SELECT ItemNo, Qty INTO #k FROM Items; INSERT INTO #k VALUES ('A9', 9); SELECT * FROM Nowhere"), "no error");
    EXPECT_EQ(errorOf("SELECT * FROM #k"), "Invalid object name '#k'.");
    // and once more for good: only this batch's rows
    db_->execute("SELECT ItemNo, Qty INTO #k FROM Items WHERE ItemNo = 'A2'");
    const auto rows = db_->open("SELECT ItemNo FROM #k").rows;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(text(rows[0][0]), "A2");
}

TEST_F(PostgresDatabaseTest, KeptTempTablesArePrivateToTheirConnection) {
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A1', 3)");
    auto other = connect();
    db_->execute("SELECT ItemNo, Qty INTO #p FROM Items; DROP TABLE #p");  // kept, hidden, on this connection
    EXPECT_EQ(other->open("SELECT ItemNo, Qty INTO #p FROM Items WHERE 1 = 0; SELECT COUNT(*) FROM #p").rows[0][0],
              Value(std::int64_t{0}));
    db_->execute("SELECT ItemNo, Qty INTO #p FROM Items");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #p").rows[0][0], Value(std::int64_t{1}));
    EXPECT_EQ(other->open("SELECT COUNT(*) FROM #p").rows[0][0], Value(std::int64_t{0})) << "each its own";
    other->execute("DROP TABLE #p; CREATE TABLE #p (Other int)");
    EXPECT_EQ(db_->open("SELECT * FROM #p").columns.size(), 2u);
    EXPECT_EQ(other->open("SELECT * FROM #p").columns.size(), 1u);
    // a fresh connection sees none of them
    EXPECT_EQ(qx::db::openPostgres(uri_)->open("SELECT 1 AS one").rows.size(), 1u);
    EXPECT_NE([&] {
        try {
            qx::db::openPostgres(uri_)->open("SELECT * FROM #p");
        } catch (const qx::db::Error& e) {
            return std::string(e.what());
        }
        return std::string("no error");
    }(),
              "no error");
}

TEST_F(PostgresDatabaseTest, AReusedTempTableNumbersAndHoldsItsRowsAsANewOne) {
    for (int i = 0; i < 20; ++i) db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('I" + std::to_string(i) + "', " + std::to_string(i) + ")");
    // an IDENTITY column numbers from its seed every time the table is made
    for (int run = 0; run < 3; ++run) {
        const auto rows = db_->open("SELECT IDENTITY(int, 1, 1) AS n, ItemNo INTO #i FROM Items ORDER BY ItemNo; SELECT MIN(n), MAX(n) FROM #i; DROP TABLE #i").rows;
        EXPECT_EQ(rows.at(0).at(0), Value(std::int64_t{1})) << "run " << run;
        EXPECT_EQ(rows.at(0).at(1), Value(std::int64_t{20}));
    }
    // many rows through a kept table, run after run: each run counts its own
    for (int run = 0; run < 4; ++run) {
        const auto rows = db_->open("SELECT a.ItemNo, b.Qty INTO #big FROM Items a, Items b, Items c WHERE c.Qty < " +
                                    std::to_string(10 + run) + "; SELECT COUNT(*) FROM #big; DROP TABLE #big")
                              .rows;
        EXPECT_EQ(rows.at(0).at(0), Value(std::int64_t{400 * (10 + run)})) << "run " << run;
    }
    // a table that held many rows is dropped for real, not kept
    std::string more;
    for (int i = 20; i < 50; ++i) more += "INSERT INTO Items (ItemNo, Qty) VALUES ('I" + std::to_string(i) + "', 1);";
    db_->execute(more);
    db_->execute("SELECT a.ItemNo INTO #huge FROM Items a, Items b, Items c");  // 125,000 rows
    const long long huge = tempOid(*db_, "#huge");
    db_->execute("DROP TABLE #huge");
    EXPECT_EQ(tempOid(*db_, "#huge"), 0) << "no longer on the server";
    EXPECT_EQ(db_->open("SELECT a.ItemNo INTO #huge FROM Items a WHERE 1 = 0; SELECT COUNT(*) FROM #huge").rows[0][0], Value(std::int64_t{0}));
    EXPECT_NE(tempOid(*db_, "#huge"), huge);
    // a table changed after it was made (an index) is not taken for a new one
    db_->execute("SELECT ItemNo INTO #u FROM Items WHERE 1 = 0; CREATE UNIQUE INDEX u_item ON #u (ItemNo); DROP TABLE #u");
    db_->execute("SELECT ItemNo INTO #u FROM Items WHERE 1 = 0; INSERT INTO #u VALUES ('same'); INSERT INTO #u VALUES ('same')");
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM #u").rows[0][0], Value(std::int64_t{2}));
}

// A statement run again is translated again whenever what it reads may have changed: a temp
// table dropped or made anew, a table this connection altered, a table another one created.
TEST_F(PostgresDatabaseTest, AStatementRunAgainFollowsTheTablesItReads) {
    db_->execute("INSERT INTO Items (ItemNo, Name, Qty) VALUES ('A1', 'Coat', 3)");
    const std::string count = "SELECT COUNT(*) AS n FROM #c";
    db_->execute("SELECT ItemNo, Qty INTO #c FROM Items");
    EXPECT_EQ(db_->open(count).rows[0][0], Value(std::int64_t{1}));
    EXPECT_EQ(db_->open(count).rows[0][0], Value(std::int64_t{1}));
    db_->execute("DROP TABLE #c");
    EXPECT_EQ(errorOf(count), "Invalid object name '#c'.");
    db_->execute("SELECT Name INTO #c FROM Items");
    const auto all = db_->open("SELECT * FROM #c");
    EXPECT_EQ(all.columns.size(), 1u);
    EXPECT_EQ(db_->open(count).rows[0][0], Value(std::int64_t{1}));
    db_->execute("DROP TABLE #c; CREATE TABLE #c (a int, b int, c int)");
    EXPECT_EQ(db_->open("SELECT * FROM #c").columns.size(), 3u) << "the same text, another table";

    const std::string star = "SELECT * FROM Items";
    EXPECT_EQ(db_->open(star).columns.size(), 5u);
    dynamic_cast<qx::db::PostgresDatabase&>(*db_).runNative("ALTER TABLE items ADD colour VARCHAR(10) COLLATE qx");
    EXPECT_EQ(db_->open(star).columns.size(), 6u);

    const std::string later = "SELECT COUNT(*) FROM Later";
    EXPECT_NE(errorOf(later), "no error");
    connect()->execute("CREATE TABLE Later (n int); INSERT INTO Later VALUES (1)");
    EXPECT_EQ(db_->open(later).rows[0][0], Value(std::int64_t{1})) << "made by another connection meanwhile";
}

// A procedure's INSERT … VALUES rows go to the server many at a time, in the order written, before
// anything else reaches it; a row the server refuses fails there with the statement's text.
TEST_F(PostgresDatabaseTest, AProceduresInsertedRowsArriveInOrderBeforeAnythingElse) {
    auto& server = dynamic_cast<qx::db::PostgresDatabase&>(*db_);
    server.runNative("CREATE TABLE written (id SERIAL PRIMARY KEY, tag TEXT NOT NULL, n INTEGER, x DOUBLE PRECISION)");
    server.runNative("BEGIN");  // a procedure runs inside its batch's transaction
    auto a = server.prepareNative("INSERT INTO written (tag, n, x) VALUES (?1, ?2, ?3)");
    auto b = server.prepareNative("INSERT INTO written (tag, n) VALUES ('b', ?1)");
    for (int i = 0; i < 25000; ++i) {  // more values than one statement takes
        a->bind(1, std::string_view(i % 2 ? "odd's" : "even"));
        a->bind(2, std::int64_t{i});
        a->bind(3, i * 0.5);
        EXPECT_FALSE(a->step());
        a->reset(false);
    }
    a->bindNull(1);
    a->reset(false);
    b->bind(1, std::int64_t{-1});
    b->step();
    b->reset(false);
    a->bind(1, std::string_view("last"));
    a->bindNull(2);
    a->bind(3, 1.25);
    a->step();
    auto read = server.prepareNative("SELECT count(*), sum(n), sum(x) FROM written");
    ASSERT_TRUE(read->step()) << "a query sees every row written before it";
    EXPECT_EQ(read->integer(0), 25002);
    EXPECT_EQ(read->integer(1), 25000LL * 24999 / 2 - 1);
    EXPECT_DOUBLE_EQ(read->real(2), 25000.0 * 24999 / 4 + 1.25);
    const auto order = server.runNative("SELECT tag, n FROM written WHERE id > 24999 ORDER BY id").rows;
    ASSERT_EQ(order.size(), 3u);
    EXPECT_EQ(text(order[0][0]), "odd's");
    EXPECT_EQ(text(order[1][0]), "b");
    EXPECT_EQ(text(order[2][0]), "last");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(order[2][1]));
    read.reset();
    server.runNative("COMMIT");
    // a refused row: the next thing sent to the server fails with the insert's text
    server.runNative("BEGIN");
    a->reset(false);
    a->bindNull(1);
    a->step();
    try {
        server.runNative("SELECT 1");
        FAIL() << "no error";
    } catch (const qx::db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("null value"), std::string::npos) << e.what();
        EXPECT_NE(e.statement().find("INSERT INTO written (tag, n, x)"), std::string::npos) << e.statement();
    }
    server.runNative("ROLLBACK");
    EXPECT_EQ(server.runNative("SELECT count(*) FROM written").rows[0][0], Value(std::int64_t{25002}));
}

// A procedure's rows into a temp table of its own travel by COPY: every value arrives as bound,
// whatever it holds, NULLs stay NULL, and a refused row fails with the statement's text.
TEST_F(PostgresDatabaseTest, AProceduresRowsIntoItsTempTableArriveExactly) {
    auto& server = dynamic_cast<qx::db::PostgresDatabase&>(*db_);
    server.runNative("BEGIN");
    server.runNative("CREATE TEMP TABLE pivot (k VARCHAR(20000) COLLATE qx, a BIGINT, b FLOAT)");
    auto write = server.prepareNative("INSERT INTO pg_temp.pivot VALUES (?1, ?2, ?3)");
    const std::vector<std::string> hostile = {"tab\there", "line\nbreak\r\n", "back\\slash\\N", "\\N", "it's \"quoted\"",
                                              "汉字，全角", std::string(10000, 'x'), "", "  blanks inside  x"};
    for (std::size_t i = 0; i < hostile.size(); ++i) {
        write->bind(1, std::string_view(hostile[i]));
        write->bind(2, std::int64_t{static_cast<std::int64_t>(i) - 4000000000LL});
        write->bind(3, 0.1 * static_cast<double>(i));
        EXPECT_FALSE(write->step());
        write->reset(false);
    }
    write->bindNull(1);
    write->bindNull(2);
    write->bindNull(3);
    write->step();
    write->reset(false);
    const auto rows = server.runNative("SELECT k, a, b FROM pivot ORDER BY a NULLS LAST").rows;
    ASSERT_EQ(rows.size(), hostile.size() + 1);
    for (std::size_t i = 0; i < hostile.size(); ++i) {
        EXPECT_EQ(text(rows[i][0]), hostile[i]) << i;
        EXPECT_EQ(rows[i][1], Value(static_cast<std::int64_t>(i) - 4000000000LL));
        EXPECT_DOUBLE_EQ(std::get<double>(rows[i][2]), 0.1 * static_cast<double>(i));
    }
    for (const auto& v : rows.back()) EXPECT_TRUE(std::holds_alternative<std::monostate>(v)) << "NULL, not the text \\N";
    server.runNative("COMMIT");

    server.runNative("BEGIN");
    write->bind(1, std::string_view("K1"));
    write->bind(2, std::string_view("not a number"));
    write->bindNull(3);
    write->step();
    try {
        server.runNative("SELECT 1");
        FAIL() << "no error";
    } catch (const qx::db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("bigint"), std::string::npos) << e.what();
        EXPECT_NE(e.statement().find("INSERT INTO pg_temp.pivot"), std::string::npos) << e.statement();
    }
    server.runNative("ROLLBACK");
    write.reset();
    server.runNative("BEGIN");
    EXPECT_EQ(server.runNative("SELECT count(*) FROM pivot").rows[0][0], Value(std::int64_t{10})) << "the connection goes on";
    server.runNative("COMMIT");
}

// The helpers the translation calls are marked for parallel workers: one unmarked function in a
// query keeps the whole of it in one process.
TEST_F(PostgresDatabaseTest, AQueryCallingTheHelpersMayStillRunInParallel) {
    auto& server = dynamic_cast<qx::db::PostgresDatabase&>(*db_);
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('A1', 1)");
    EXPECT_EQ(server.runNative("SELECT count(*) FROM pg_proc WHERE proname LIKE 'qx\\_%' AND prorettype <> 'trigger'::regtype "
                               "AND proparallel = 'u'").rows[0][0],
              Value(std::int64_t{0}));
    EXPECT_EQ(text(server.runNative("SELECT proparallel FROM pg_proc WHERE proname = 'qx_divisor' LIMIT 1").rows[0][0]), "r")
        << "a reader of the transaction's maintenance setting stays with the leader";
    server.runNative("CREATE TABLE many AS SELECT n FROM generate_series(1, 50000) n");
    server.runNative("ANALYZE many");
    server.runNative("SET parallel_setup_cost = 0; SET parallel_tuple_cost = 0; SET min_parallel_table_scan_size = 0");
    std::string plan;
    for (const auto& row : server.runNative("EXPLAIN SELECT qx_int_text(n, 20, 0) FROM many WHERE qx_round(n, 0) > 7").rows)
        plan += text(row[0]) + "\n";
    EXPECT_NE(plan.find("Gather"), std::string::npos) << plan;
}

// A query run again and again is prepared on the server once; what it reads may still change
// under it, by this connection or another, and each run answers from the tables as they are.
TEST_F(PostgresDatabaseTest, AQueryRunAgainAndAgainAnswersFromTheTablesAsTheyAre) {
    db_->execute("INSERT INTO Items (ItemNo, Name, Qty) VALUES ('A1', 'Coat', 3)");
    const std::string query = "SELECT ItemNo, Qty FROM Items ORDER BY ItemNo";
    for (int run = 0; run < 4; ++run) {
        db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('R" + std::to_string(run) + "', " + std::to_string(run) + ")");
        EXPECT_EQ(db_->open(query).rows.size(), static_cast<std::size_t>(run + 2)) << "run " << run;
    }
    // another connection changes the column's type: the next run gives the new type
    connect()->execute("DELETE FROM Items WHERE ItemNo LIKE 'R%'");
    qx::db::PostgresDatabase(uri_).runNative("ALTER TABLE items ALTER COLUMN qty TYPE NUMERIC(10,2)");
    auto after = db_->open(query);
    ASSERT_EQ(after.rows.size(), 1u);
    EXPECT_EQ(after.rows[0][1], Value(3.0));
    EXPECT_EQ(db_->open(query).rows[0][1], Value(3.0));
    // a temp table made again with another type under the same query text
    const std::string temp = "SELECT v FROM #v";
    for (int run = 0; run < 3; ++run) {
        db_->execute("DROP TABLE IF EXISTS #v; CREATE TABLE #v (v int); INSERT INTO #v VALUES (7)");
        EXPECT_EQ(db_->open(temp).rows.at(0).at(0), Value(std::int64_t{7}));
    }
    db_->execute("DROP TABLE #v; CREATE TABLE #v (v varchar(10)); INSERT INTO #v VALUES ('seven')");
    EXPECT_EQ(db_->open(temp).rows.at(0).at(0), Value(std::string("seven")));
    // a failing run between two good ones
    EXPECT_NE(errorOf("SELECT ItemNo, Qty FROM Items ORDER BY ItemNo; SELECT * FROM Nowhere"), "no error");
    EXPECT_EQ(db_->open(query).rows.size(), 1u);
}

// The statements of a batch travel together; each failure and each result set still belongs to
// its own statement.
TEST_F(PostgresDatabaseTest, StatementsSentTogetherKeepTheirOwnResultsAndErrors) {
    try {
        db_->execute("SELECT ItemNo INTO #r FROM Items; INSERT INTO Items (ItemNo) VALUES ('X1');\n"
                     "INSERT INTO Items (ItemNo) VALUES (NULL); INSERT INTO Items (ItemNo) VALUES ('X2')");
        FAIL() << "no error";
    } catch (const qx::db::Error& e) {
        EXPECT_EQ(e.statement(), "INSERT INTO Items (ItemNo) VALUES (NULL)");
        EXPECT_EQ(e.line(), 2);
    }
    EXPECT_EQ(db_->open("SELECT COUNT(*) FROM Items").rows[0][0], Value(std::int64_t{0}));
    db_->execute("INSERT INTO Items (ItemNo, Qty) VALUES ('M1', 4)");
    auto last = db_->open("SELECT ItemNo AS First FROM Items; SELECT Qty AS Second FROM Items; INSERT INTO Items (ItemNo) VALUES ('M2')");
    ASSERT_EQ(last.columns.size(), 1u);
    EXPECT_EQ(last.columns[0].name, "Second");
    EXPECT_EQ(last.rows.at(0).at(0), Value(std::int64_t{4}));
    // SYS_M's text runs in place: its result set is the EXEC's, an empty one when the text has none
    last = db_->open("SELECT ItemNo AS First FROM Items; EXEC SYS_M @param=1, @sqltext='SELECT Qty AS Doubled FROM Items WHERE ItemNo = ''M1'''");
    ASSERT_EQ(last.columns.size(), 1u);
    EXPECT_EQ(last.columns[0].name, "Doubled");
    last = db_->open("SELECT ItemNo AS First FROM Items; EXEC SYS_M @param=1, @sqltext='UPDATE Items SET Qty = 5'");
    EXPECT_TRUE(last.columns.empty());
    EXPECT_TRUE(last.rows.empty());
    EXPECT_EQ(db_->open("SELECT SUM(Qty) FROM Items").rows[0][0], Value(std::int64_t{10}));
    EXPECT_EQ(errorOf("EXEC SYS_M @param=1, @sqltext='SELECT Nope FROM Items'"), "Invalid column name 'Nope'.");
}

TEST(PostgresShopTest, CreatingTheTablesTwiceFailsAndKeepsTheFirstOnes) {
    auto* server = qx::test::PostgresServer::instance();
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    qx::db::PostgresDatabase postgres(server->freshDatabase());
    postgres.createShopTables();
    const Tables first = postgresTables(postgres);
    EXPECT_THROW(postgres.createShopTables(), qx::db::Error);
    EXPECT_EQ(postgresTables(postgres), first);
}

TEST(PostgresShopTest, ANewShopStartsWithTheSameRowsAsOnSqlite) {
    auto* server = qx::test::PostgresServer::instance();
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    // made as every tool makes a shop on a server (qxck-demo, qxck --db on an empty database)
    qx::db::PostgresDatabase postgres(server->freshDatabase());
    postgres.createShop();
    auto groups = [&](const char* where) {
        const auto rows = postgres.open(std::string("SELECT COUNT(*) FROM sys_group WHERE ") + where);
        return std::get<std::int64_t>(rows.rows.at(0).at(0));
    };
    EXPECT_EQ(groups("GROUP_ID=204"), 11);
    EXPECT_EQ(groups("GROUP_ID=214"), 12);
    EXPECT_EQ(groups("GROUP_ID=263"), 12);
    EXPECT_EQ(groups("GROUP_ID=214 AND A=1 AND GROUP_NAME='客户'"), 1);
}

TEST(PostgresDialectTest, WritesTheDifferencesOfPostgresql) {
    struct NoTables final : qx::tsql::Catalog {
        std::optional<std::vector<qx::tsql::CatalogColumn>> tableColumns(std::string_view) const override { return std::nullopt; }
    } catalog;
    auto emit = [&](const char* tsql) {
        std::string all;
        for (const auto& s : qx::tsql::emitPostgres(qx::tsql::parseBatch(tsql).at(0), catalog)) all += s + ";";
        return all;
    };
    EXPECT_NE(emit("SELECT TOP 3 a FROM T").find("LIMIT 3"), std::string::npos);
    EXPECT_NE(emit("SELECT GETDATE()").find("LOCALTIMESTAMP(0)"), std::string::npos);
    EXPECT_NE(emit("SELECT ISNULL(a, 0) FROM T").find("COALESCE("), std::string::npos);
    EXPECT_NE(emit("SELECT 'a' + 'b'").find("||"), std::string::npos);
    EXPECT_NE(emit("CREATE TABLE #x (a int)").find("pg_temp.\"#x\""), std::string::npos);
    EXPECT_NE(emit("SELECT MixedCase FROM T").find("\"mixedcase\""), std::string::npos) << "names ignore case";
    EXPECT_EQ(emit("SELECT a FROM T").find("qx_"), std::string::npos);
    // every branch gives the decimal column's own type, so the server plans the UNION as one
    // (parallel) scan of its branches
    EXPECT_NE(emit("SELECT 0 AS v UNION ALL SELECT 1.5").find("SELECT CAST(0 AS NUMERIC) AS \"v\" UNION ALL"), std::string::npos)
        << emit("SELECT 0 AS v UNION ALL SELECT 1.5");
    EXPECT_EQ(emit("SELECT 0 AS v UNION ALL SELECT 2").find("CAST(0"), std::string::npos) << "whole numbers stay as written";
}

}  // namespace
