// Moving a shop from its SQLite file to a PostgreSQL server: every table row for row, the number
// counters, stock rows as they are (not posted again), a server that already holds a shop, the
// replacement of one, a refused row (nothing stays), and hostile texts, dates and decimals.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "db/DbTestSupport.h"
#include "db/postgres/PostgresDatabase.h"
#include "db/sqlite/SqliteDatabase.h"
#include "db/tools/ShopCopy.h"
#include "support/PostgresServer.h"

namespace qx::dbtest {
namespace {

// Writes straight into the file, past the database's own checks (a row a server would refuse).
void rawSqlite(const std::string& path, const std::string& sql) {
    db::SqliteDatabase file(path, true);
    char* error = nullptr;
    const int rc = sqlite3_exec(file.handle(), ("PRAGMA ignore_check_constraints = ON; " + sql).c_str(), nullptr, nullptr, &error);
    const std::string message = error ? error : "";
    sqlite3_free(error);
    ASSERT_EQ(rc, SQLITE_OK) << message;
}

long long tablesOnServer(db::PostgresDatabase& server) {
    return integer(server.runNative("SELECT count(*) FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                                    "WHERE n.nspname = current_schema() AND c.relkind = 'r'")
                       .rows.at(0)
                       .at(0));
}

class ShopCopy : public ::testing::Test {
protected:
    void SetUp() override {
        server_ = test::PostgresServer::instance();
        if (!server_) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
        uri_ = server_->freshDatabase();
    }
    // A new shop file with the small shop's master data.
    std::string smallShop(const std::string& name) {
        const std::string path = dir_.file(name);
        auto db = db::openSqlite(path, true);
        seedSmallShop(*db);
        return path;
    }
    copy::CopyReport copyQuietly(const std::string& from, bool replace = false) {
        copy::CopyOptions options;
        options.replace = replace;
        options.progress = [this](const std::string& line) { progress_.push_back(line); };
        return copy::copyShop(from, uri_, options);
    }

    test::PostgresServer* server_ = nullptr;
    std::string uri_;
    TempDir dir_;
    std::vector<std::string> progress_;
};

TEST_F(ShopCopy, DemoShopArrivesRowForRowInEveryTable) {
    const auto report = copyQuietly(sharedDemoShop());
    auto file = db::openSqlite(sharedDemoShop());
    auto server = db::openPostgres(uri_);
    ASSERT_GT(report.tables.size(), 40u);
    EXPECT_TRUE(report.skipped.empty()) << report.skipped.front();
    long long rows = 0;
    for (const auto& table : report.tables) {
        const auto expected = rowsOf(*file, table.table);
        EXPECT_EQ(table.rows, static_cast<long long>(expected.size())) << table.table;
        EXPECT_EQ(rowsOf(*server, table.table), expected) << table.table;
        rows += table.rows;
        // one progress line per table
        EXPECT_TRUE(std::any_of(progress_.begin(), progress_.end(),
                                [&](const std::string& l) { return l.rfind(table.table + ": " + std::to_string(table.rows) + " rows", 0) == 0; }))
            << table.table;
    }
    EXPECT_EQ(report.rows, rows);
    EXPECT_GT(count(*server, "D8101A"), 100);
    EXPECT_EQ(count(*server, "d1802"), count(*file, "d1802"));
}

TEST_F(ShopCopy, NumberCountersAreCopiedExactly) {
    const std::string path = smallShop("counters.db");
    rawSqlite(path, "DELETE FROM sys_noid; INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES ('201', '2611', 41), ('211', '2611', 99999), "
                    "('201', '2612', 1);");
    copyQuietly(path);
    db::PostgresDatabase server(uri_);
    const auto rows = server.open("SELECT FUNC_NO, PERIOD, SEQ FROM sys_noid ORDER BY FUNC_NO, PERIOD").rows;
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(text(rows[0][0]) + text(rows[0][1]) + "=" + text(rows[0][2]), "2012611=41");
    EXPECT_EQ(text(rows[1][0]) + text(rows[1][1]) + "=" + text(rows[1][2]), "2012612=1");
    EXPECT_EQ(text(rows[2][0]) + text(rows[2][1]) + "=" + text(rows[2][2]), "2112611=99999");
}

TEST_F(ShopCopy, StockRowsArriveAsTheyAreWithTheServersTriggersKept) {
    const std::string path = smallShop("stock.db");
    // a stock row that no document explains: a re-posting would change or refuse it
    rawSqlite(path, "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC, B0, BEGIN_SL, BEGIN_DJ, BEGIN_MONEY, CHECK_KC) "
                    "VALUES ('ZZ-LONE', '01', 5, -2, 3, 7, 7, 12.5, 87.5, 1);");
    copy::CopyOptions options;
    options.tablesCreated = [](db::PostgresDatabase& server) {
        server.runNative("CREATE FUNCTION refuse_row() RETURNS trigger LANGUAGE plpgsql AS $$BEGIN RAISE EXCEPTION 'posted twice'; END$$");
        server.runNative("CREATE TRIGGER d1802_refuse BEFORE INSERT ON d1802 FOR EACH ROW EXECUTE FUNCTION refuse_row()");
    };
    copy::copyShop(path, uri_, options);
    db::PostgresDatabase server(uri_);
    const auto row = server.open("SELECT K0, K1, KC, B0, BEGIN_MONEY, CHECK_KC FROM d1802 WHERE WL_ID = 'ZZ-LONE'").rows;
    ASSERT_EQ(row.size(), 1u);
    EXPECT_EQ(integer(row[0][0]), 5);
    EXPECT_EQ(integer(row[0][1]), -2);
    EXPECT_EQ(integer(row[0][2]), 3);
    EXPECT_EQ(integer(row[0][3]), 7);
    EXPECT_DOUBLE_EQ(std::get<double>(row[0][4]), 87.5);
    EXPECT_EQ(integer(row[0][5]), 1);
    // the server's own trigger is on again afterwards
    EXPECT_EQ(text(server.runNative("SELECT tgenabled::text FROM pg_trigger WHERE tgname = 'd1802_refuse'").rows.at(0).at(0)), "O");
    EXPECT_THROW(server.execute("INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('NEW', '01')"), db::Error);
}

TEST_F(ShopCopy, AServerHoldingAShopIsRefusedAndKept) {
    const std::string first = smallShop("first.db");
    rawSqlite(first, "INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES ('999', '2611', 7);");
    copyQuietly(first);
    const std::string second = smallShop("second.db");
    rawSqlite(second, "INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES ('999', '2611', 500);");
    try {
        copyQuietly(second);
        FAIL() << "a second copy onto the same server was accepted";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("already holds a shop"), std::string::npos) << e.what();
        EXPECT_NE(std::string(e.what()).find("--replace"), std::string::npos) << e.what();
    }
    db::PostgresDatabase server(uri_);
    EXPECT_EQ(integer(scalar(server, "SELECT SEQ FROM sys_noid WHERE FUNC_NO = '999'")), 7);
}

TEST_F(ShopCopy, ReplaceOverwritesTheShopTheServerHolds) {
    copyQuietly(sharedDemoShop());
    const std::string small = smallShop("small.db");
    rawSqlite(small, "INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES ('999', '2611', 500);");
    const auto report = copyQuietly(small, true);
    db::PostgresDatabase server(uri_);
    auto file = db::openSqlite(small);
    EXPECT_EQ(integer(scalar(server, "SELECT SEQ FROM sys_noid WHERE FUNC_NO = '999'")), 500);
    for (const auto& table : report.tables) EXPECT_EQ(rowsOf(server, table.table), rowsOf(*file, table.table)) << table.table;
    EXPECT_EQ(count(server, "D8101A"), 0);
}

TEST_F(ShopCopy, ARowTheServerRefusesLeavesTheServerEmpty) {
    const std::string path = smallShop("refused.db");
    // sys_noid comes after the documents and stock tables: the copy fails half way through
    rawSqlite(path, "INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES ('201', '2611', 'many');");
    try {
        copyQuietly(path);
        FAIL() << "a number counter that is not a number was copied";
    } catch (const db::Error& e) {
        EXPECT_EQ(std::string(e.what()).rfind("the server refused a row of sys_noid: invalid input syntax for type integer: \"many\"", 0), 0u)
            << e.what();
    }
    ASSERT_TRUE(std::any_of(progress_.begin(), progress_.end(), [](const std::string& l) { return l.rfind("d1802: ", 0) == 0; }))
        << "the failure came before any table was copied";
    db::PostgresDatabase server(uri_);
    EXPECT_EQ(tablesOnServer(server), 0);
    // and the same server takes a good shop afterwards
    copyQuietly(smallShop("good.db"));
    EXPECT_GT(tablesOnServer(server), 40);
}

TEST_F(ShopCopy, HostileTextsSurvive) {
    const std::string path = smallShop("texts.db");
    const std::vector<std::string> names = {"O'Neil \"best\"", "羊毛大衣（冬）", "inner  blanks", "  leading", "back\\slash \\N",
                                            "tab\there", "line\nbreak\r\nend", "''", std::string(80, 'x')};
    std::string sql;
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string quoted;
        for (char c : names[i]) quoted += c == '\'' ? std::string("''") : std::string(1, c);
        sql += "INSERT INTO d1800 (K_ID, WL_NAME) VALUES ('HOSTILE" + std::to_string(i) + "', '" + quoted + "');";
    }
    sql += "INSERT INTO d1800 (K_ID, WL_NAME) VALUES ('HOSTILE-NULL', NULL);";
    sql += "INSERT INTO d1800 (K_ID, WL_NAME) VALUES ('HOSTILE-EMPTY', '');";
    rawSqlite(path, sql);
    copyQuietly(path);
    db::PostgresDatabase server(uri_);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(text(scalar(server, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'HOSTILE" + std::to_string(i) + "'")), names[i]) << i;
    EXPECT_TRUE(std::holds_alternative<std::monostate>(scalar(server, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'HOSTILE-NULL'")));
    EXPECT_EQ(text(scalar(server, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'HOSTILE-EMPTY'")), "");
}

TEST_F(ShopCopy, TrailingBlanksAreLeftBehindSoKeysStillMatch) {
    const std::string path = smallShop("blanks.db");
    rawSqlite(path, "INSERT INTO d1800 (K_ID, WL_NAME) VALUES ('BLANK1  ', 'coat  '), ('BLANK2', '   ');"
                    "INSERT INTO d1802 (WL_ID, CK_ID, BDATE, K0, KC) VALUES ('BLANKSKU ', '01 ', '2026-03-01', 7, 7);");
    // the file's own comparisons ignore the blanks already
    auto file = db::openSqlite(path);
    EXPECT_EQ(text(scalar(*file, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'BLANK1'")), "coat  ");
    file.reset();

    copyQuietly(path);
    db::PostgresDatabase server(uri_);
    EXPECT_EQ(text(scalar(server, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'BLANK1'")), "coat");
    EXPECT_EQ(text(scalar(server, "SELECT K_ID FROM d1800 WHERE K_ID = 'BLANK1'")), "BLANK1");
    EXPECT_EQ(text(scalar(server, "SELECT WL_NAME FROM d1800 WHERE K_ID = 'BLANK2'")), "");  // blanks only: empty, not NULL
    EXPECT_EQ(integer(scalar(server, "SELECT KC FROM d1802 WHERE WL_ID = 'BLANKSKU' AND CK_ID = '01'")), 7);
    EXPECT_EQ(integer(scalar(server, "SELECT count(*) FROM d1802 WHERE WL_ID = 'BLANKSKU ' AND CK_ID = '01'")), 1);
}

TEST_F(ShopCopy, DatesAndDecimalsKeepTheirValues) {
    const std::string path = smallShop("values.db");
    rawSqlite(path, "INSERT INTO d1802 (WL_ID, CK_ID, BDATE, BEGIN_DJ, BEGIN_MONEY) VALUES "
                    "('V1', '01', '2026-02-28 23:59:59', 0.1, 123456789012.34), "
                    "('V2', '01', '2000-01-01 00:00:00', -12.35, -0.01), "
                    "('V3', '01', '2026-03-01', 19.99, 1234567.89), "
                    "('V4', '01', NULL, 0, 0), "
                    "('V5', '01', '2026-03-01 13:02:03.997', 1, 1);");
    copyQuietly(path);
    db::PostgresDatabase server(uri_);
    const auto rows = server.runNative("SELECT \"wl_id\", \"bdate\"::text, \"begin_dj\"::text, \"begin_money\"::text FROM d1802 "
                                       "WHERE \"wl_id\" IN ('V1', 'V2', 'V3', 'V4', 'V5') ORDER BY 1")
                          .rows;
    ASSERT_EQ(rows.size(), 5u);
    const auto line = [&](std::size_t r) {
        std::string s;
        for (const auto& v : rows[r]) s += (std::holds_alternative<std::monostate>(v) ? std::string("NULL") : text(v)) + "|";
        return s;
    };
    EXPECT_EQ(line(0), "V1|2026-02-28 23:59:59|0.10|123456789012.34|");
    EXPECT_EQ(line(1), "V2|2000-01-01 00:00:00|-12.35|-0.01|");
    EXPECT_EQ(line(2), "V3|2026-03-01 00:00:00|19.99|1234567.89|");
    EXPECT_EQ(line(3), "V4|NULL|0.00|0.00|");
    EXPECT_EQ(line(4), "V5|2026-03-01 13:02:03.997|1.00|1.00|");  // milliseconds kept, as the file keeps them
}

TEST_F(ShopCopy, ADifferenceFoundWhenComparingLeavesTheServerEmpty) {
    const std::string path = smallShop("compared.db");
    rawSqlite(path, "INSERT INTO d1800 (K_ID, WL_NAME) VALUES ('CHANGED', '" + std::string(70, 'x') + "');");
    copy::CopyOptions options;
    // a server column that cuts texts at 63 bytes without a word (triggers are off while rows are
    // copied): the rows go in, the comparison must notice
    options.tablesCreated = [](db::PostgresDatabase& server) {
        // the shop's views read the column: they go first (the failed copy drops everything anyway)
        server.runNative("DO $$ DECLARE v record; BEGIN FOR v IN SELECT viewname FROM pg_views WHERE schemaname = current_schema() "
                         "LOOP EXECUTE 'DROP VIEW IF EXISTS ' || quote_ident(v.viewname) || ' CASCADE'; END LOOP; END $$");
        server.runNative("ALTER TABLE d1800 ALTER COLUMN \"wl_name\" TYPE name");
    };
    try {
        copy::copyShop(path, uri_, options);
        FAIL() << "a copy that changed a text was committed";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("d1800 differs from the file: length of the texts in wl_name"), std::string::npos) << e.what();
    }
    db::PostgresDatabase server(uri_);
    EXPECT_EQ(tablesOnServer(server), 0);
}

TEST_F(ShopCopy, ADatabaseTheServerDoesNotHaveYetIsCreated) {
    const std::string uri = server_->uri("newshop" + std::to_string(::getpid()));
    copy::CopyOptions options;
    std::vector<std::string> lines;
    options.progress = [&](const std::string& line) { lines.push_back(line); };
    const auto report = copy::copyShop(smallShop("new.db"), uri, options);
    EXPECT_EQ(lines.front(), "created the database newshop" + std::to_string(::getpid()));
    db::PostgresDatabase server(uri);
    EXPECT_EQ(tablesOnServer(server), static_cast<long long>(report.tables.size()));
}

TEST_F(ShopCopy, TheCommandCopiesRefusesAndReplaces) {
    const std::string path = smallShop("command.db");
    const std::string command = std::string(QXCK_COPY) + " --from '" + path + "' --to '" + uri_ + "'";
    const auto run = [](const std::string& line, std::string& out) {
        out.clear();
        FILE* pipe = ::popen((line + " 2>&1").c_str(), "r");
        char buffer[4096];
        while (std::fgets(buffer, sizeof buffer, pipe)) out += buffer;
        return WEXITSTATUS(::pclose(pipe));
    };
    std::string out;
    EXPECT_EQ(run(std::string(QXCK_COPY), out), 2);
    EXPECT_NE(out.find("usage: qxck-copy --from FILE --to"), std::string::npos) << out;
    EXPECT_EQ(run(command, out), 0) << out;
    EXPECT_NE(out.find("d1802: "), std::string::npos) << out;
    EXPECT_NE(out.find("rows copied and compared"), std::string::npos) << out;
    EXPECT_EQ(run(command, out), 1) << out;
    EXPECT_NE(out.find("qxck-copy: the target database already holds a shop"), std::string::npos) << out;
    EXPECT_EQ(run(command + " --replace", out), 0) << out;
    EXPECT_NE(out.find("removed the shop the target held"), std::string::npos) << out;
}

TEST_F(ShopCopy, IdentityNumberingContinuesPastTheCopiedRows) {
    const std::string path = smallShop("identity.db");
    rawSqlite(path, "INSERT INTO sys_log_iud (ID, USER_ID, NOTE) VALUES (5, 'a', 'x'), (9, 'b', 'y');");
    copy::CopyOptions options;
    options.tablesCreated = [](db::PostgresDatabase& server) {
        server.runNative("ALTER TABLE sys_log_iud ALTER COLUMN \"id\" SET NOT NULL");
        server.runNative("ALTER TABLE sys_log_iud ALTER COLUMN \"id\" ADD GENERATED BY DEFAULT AS IDENTITY");
    };
    copy::copyShop(path, uri_, options);
    db::PostgresDatabase server(uri_);
    server.runNative("INSERT INTO sys_log_iud (\"user_id\") VALUES ('c')");
    EXPECT_EQ(integer(scalar(server, "SELECT ID FROM sys_log_iud WHERE USER_ID = 'c'")), 10);
}

TEST_F(ShopCopy, BitsGoIntoBooleanColumnsOfTheServer) {
    const std::string path = smallShop("bits.db");
    copy::CopyOptions options;
    options.tablesCreated = [](db::PostgresDatabase& server) {
        server.runNative("ALTER TABLE sys_group ALTER COLUMN \"group_show\" DROP DEFAULT");
        server.runNative("ALTER TABLE sys_group ALTER COLUMN \"group_show\" TYPE boolean USING \"group_show\" <> 0");
    };
    copy::copyShop(path, uri_, options);
    db::PostgresDatabase server(uri_);
    auto file = db::openSqlite(path);
    const auto shown = [](db::Database& db) {
        return count(db, "sys_group", "GROUP_SHOW = 1");
    };
    EXPECT_GT(shown(*file), 0);
    EXPECT_EQ(integer(server.runNative("SELECT count(*) FROM sys_group WHERE \"group_show\"").rows.at(0).at(0)), shown(*file));
}

TEST_F(ShopCopy, ATableTheServerHasNotIsReportedNotRefused) {
    const std::string path = smallShop("extra.db");
    rawSqlite(path, "CREATE TABLE local_notes (a TEXT); INSERT INTO local_notes VALUES ('x'), ('y');");
    const auto report = copyQuietly(path);
    ASSERT_EQ(report.skipped.size(), 1u);
    EXPECT_EQ(report.skipped[0], "local_notes (2 rows)");
    EXPECT_EQ(progress_.back(), "not copied, the server has no such table: local_notes (2 rows)");
}

TEST_F(ShopCopy, AFileThatIsNoShopIsRefused) {
    const std::string path = dir_.file("other.db");
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE notes (a TEXT)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
    EXPECT_THROW(copyQuietly(path), db::Error);
    db::PostgresDatabase server(uri_);
    EXPECT_EQ(tablesOnServer(server), 0);
}

}  // namespace
}  // namespace qx::dbtest
