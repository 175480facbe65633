// The SQLite engine behind the Database interface: atomic batches, the result set of a batch,
// result column types, procedures, document numbers and the stocktake rule.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <set>

#include "DbTestSupport.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::dbtest {
namespace {

class Engine : public ::testing::Test {
protected:
    Shop shop;
    db::Database& db = *shop.db;
};

TEST_F(Engine, ABatchWhoseThirdStatementFailsLeavesNothing) {
    try {
        db.execute("INSERT INTO D1009 (PP_ID, PP_NAME) VALUES ('P1','一');\n"
                   "INSERT INTO D1009 (PP_ID, PP_NAME) VALUES ('P2','二');\n"
                   "INSERT INTO D1009 (PP_ID, PP_NAME) VALUES ('P1','重复');");
        FAIL() << "a duplicate key went through";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("UNIQUE"), std::string::npos) << e.what();
        EXPECT_NE(e.statement().find("重复"), std::string::npos) << "the error names the failing statement";
        EXPECT_EQ(e.line(), 3);
    }
    EXPECT_EQ(count(db, "D1009"), 0);
}

TEST_F(Engine, OpenReturnsTheResultSetEvenWhenStatementsFollowIt) {
    auto r = db.open("SELECT CK_ID INTO #TCK  FROM D1007;\nSELECT D1007.CK_NAME FROM D1007 INNER JOIN #TCK ON #TCK.CK_ID = "
                     "D1007.CK_ID ORDER BY D1007.CK_ID;DROP TABLE #TCK ");
    ASSERT_EQ(r.rows.size(), 3u);
    EXPECT_EQ(text(r.rows[0][0]), "一店");
    // the temp table is gone, so the same batch runs again
    EXPECT_EQ(db.open("SELECT CK_ID INTO #TCK  FROM D1007;SELECT COUNT(*) FROM #TCK;DROP TABLE #TCK").rows.size(), 1u);
}

TEST_F(Engine, ResultColumnsAreTypedFromTheSchemaAndFromValues) {
    db.execute("INSERT INTO D8101(T,NOID,CK_ID,BDATE,TOLMONEY) VALUES ('0','R1','ZC','2026-05-10','12.5')");
    auto r = db.open("SELECT NOID, T, BDATE, TOLMONEY, COUNT(*) AS N, 'x' AS C FROM D8101 GROUP BY NOID, T, BDATE, TOLMONEY");
    ASSERT_EQ(r.columns.size(), 6u);
    EXPECT_EQ(r.columns[0].type, db::FieldType::Text);
    EXPECT_EQ(r.columns[0].size, 12);
    EXPECT_EQ(r.columns[1].type, db::FieldType::Integer);
    EXPECT_EQ(r.columns[2].type, db::FieldType::DateTime);
    EXPECT_EQ(r.columns[3].type, db::FieldType::Float);
    EXPECT_EQ(r.columns[4].type, db::FieldType::Integer);
    EXPECT_EQ(r.columns[5].type, db::FieldType::Text);
    EXPECT_EQ(r.columns[4].name, "N");
    EXPECT_DOUBLE_EQ(std::get<double>(r.rows[0][3]), 12.5);
}

// A report's blocks are united: the first block may carry a whole 0 where the later ones carry
// amounts with cents; the column is a number column with fractions, not an integer one.
TEST_F(Engine, AnExpressionColumnWithAnyFractionIsFloatWhateverItsFirstValue) {
    auto r = db.open("SELECT K, LY FROM (SELECT 1 AS K, 0 AS LY UNION ALL SELECT 2, NULL UNION ALL SELECT 3, 12.5 "
                     "UNION ALL SELECT 4, 7) T ORDER BY K");
    ASSERT_EQ(r.rows.size(), 4u);
    EXPECT_EQ(r.columns[0].type, db::FieldType::Integer);
    EXPECT_EQ(r.columns[1].type, db::FieldType::Float);
    EXPECT_DOUBLE_EQ(std::get<double>(r.rows[2][1]), 12.5);
    // whole numbers only stay an integer column, text stays text
    auto whole = db.open("SELECT 0 AS A, 'x' AS B UNION ALL SELECT 7, 'y'");
    EXPECT_EQ(whole.columns[0].type, db::FieldType::Integer);
    EXPECT_EQ(whole.columns[1].type, db::FieldType::Text);
}

TEST_F(Engine, SysMRunsTheStatementItIsHanded) {
    auto r = db.open("exec SYS_M @param=1,@sqltext=' SELECT * FROM (SELECT K_ID, WL_NAME FROM D1800 WHERE K_ID=''K1'' "
                     "UNION ALL SELECT K_ID, WL_NAME FROM D1800 WHERE K_ID=''K2'') TMP order by K_ID '");
    ASSERT_EQ(r.rows.size(), 2u);
    EXPECT_EQ(text(r.rows[0][1]), "款一");
    EXPECT_EQ(r.columns[0].name, "K_ID");
}

TEST_F(Engine, AnUnknownProcedureIsRefused) {
    try {
        db.open("EXEC SYS_NOSUCH @param=1");
        FAIL();
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("unknown procedure"), std::string::npos) << e.what();
    }
}

TEST_F(Engine, AQuoteDoubledByTheCallerIsStoredAsTyped) {
    db.execute("INSERT INTO D1102 (KH_GYS_ID, KG_NAME) VALUES ('K9','O''Neil')");
    EXPECT_EQ(text(scalar(db, "SELECT KG_NAME FROM D1102 WHERE KH_GYS_ID='K9'")), "O'Neil");
    EXPECT_EQ(count(db, "D1102", "KG_NAME='O''Neil'"), 1);
    // one level deeper: inside a procedure's text argument the quote is doubled twice
    auto r = db.open("exec SYS_M @param=1,@sqltext=' SELECT KH_GYS_ID FROM D1102 WHERE KG_NAME=''O''''Neil'' '");
    ASSERT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(text(r.rows[0][0]), "K9");
}

TEST_F(Engine, CodesCompareCaseInsensitivelyIgnoringTrailingBlanks) {
    EXPECT_EQ(count(db, "D1007", "CK_ID='zc'"), 1);
    EXPECT_EQ(count(db, "D1007", "CK_ID='ZC '"), 1);
}

TEST_F(Engine, DocumentNumbersHaveTwelveCharactersAndCountUp) {
    const std::string first = db.nextDocumentNumber("201");
    const std::string second = db.nextDocumentNumber("201");
    EXPECT_EQ(first.size(), 12u);
    EXPECT_EQ(first.substr(0, 3), "201");
    EXPECT_EQ(std::stoll(second.substr(7)), std::stoll(first.substr(7)) + 1);
    EXPECT_EQ(db.nextDocumentNumber("217").substr(7), "00001") << "each function code counts on its own";
    EXPECT_EQ(db::formatDocumentNumber("218", "2611", 42), "218261100042");
}

TEST(DocumentNumbers, TwoProcessesNeverGetTheSameNumber) {
    TempDir dir;
    const std::string path = dir.file("shop.db");
    db::openSqlite(path, true);
    constexpr int kEach = 1000;
    std::vector<pid_t> children;
    for (int p = 0; p < 2; ++p) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            int status = 0;
            try {
                auto db = db::openSqlite(path);
                std::ofstream out(dir.file("numbers" + std::to_string(p)));
                for (int i = 0; i < kEach; ++i) out << db->nextDocumentNumber("201") << "\n";
            } catch (...) {
                status = 1;
            }
            _exit(status);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    std::set<std::string> seen;
    int total = 0;
    for (int p = 0; p < 2; ++p) {
        std::ifstream in(dir.file("numbers" + std::to_string(p)));
        for (std::string line; std::getline(in, line); ++total) {
            EXPECT_LE(line.size(), 12u);
            EXPECT_TRUE(seen.insert(line).second) << "number handed out twice: " << line;
        }
    }
    EXPECT_EQ(total, 2 * kEach);
}

TEST_F(Engine, StocktakeMayNotBeSummarisedWhileATransferOfItsWarehouseIsInTransit) {
    EXPECT_TRUE(db.maySummariseStocktake("MD1"));
    db.execute("INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE) VALUES ('T1','1','ZC','MD1','2026-05-10');"
               "INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE) VALUES ('T2','0','MD2','ZC','2026-05-10');");
    EXPECT_FALSE(db.maySummariseStocktake("MD1"));
    EXPECT_FALSE(db.maySummariseStocktake("zc")) << "sending warehouse, any case";
    EXPECT_TRUE(db.maySummariseStocktake("MD2")) << "an unapproved transfer has not left";
    db.execute("UPDATE D8303 SET y=1 WHERE NOID='T1'");
    EXPECT_TRUE(db.maySummariseStocktake("MD1"));
}

TEST(OpenSqlite, AMissingFileIsAnErrorUnlessCreating) {
    TempDir dir;
    EXPECT_THROW(db::openSqlite(dir.file("none.db")), db::Error);
    auto created = db::openSqlite(dir.file("new.db"), true);
    EXPECT_EQ(created->engineName(), "sqlite");
    EXPECT_EQ(created->location(), dir.file("new.db"));
    created.reset();
    auto reopened = db::openSqlite(dir.file("new.db"));
    EXPECT_EQ(count(*reopened, "D1800"), 0);
}

}  // namespace
}  // namespace qx::dbtest
