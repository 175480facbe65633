// #temp tables: SELECT … INTO, IDENTITY numbering, privacy per connection.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, SelectIntoTempTable) {
    db.run("SELECT CK_ID INTO #TCK  FROM d1007 WHERE (CK_ID='a1');");
    EXPECT_EQ(db.run("SELECT d1007.CK_NAME FROM d1007 INNER JOIN #TCK ON #TCK.CK_ID = d1007.CK_ID"), "Head");
    EXPECT_EQ(db.run("SELECT #tck.ck_id FROM #tck WHERE #TCK.CK_ID='A1 '"), "A1");
    db.run("DROP TABLE #TCK");
    EXPECT_THROW(db.run("SELECT * FROM #TCK"), std::runtime_error);
}

TEST_F(TsqlTest, SelectStarIntoFromDerivedTable) {
    db.run("SELECT * INTO #T FROM( SELECT CK_ID, 0 AS SL, 1.5 AS MONEY FROM d1007 UNION ALL SELECT K_ID, KC, DJ FROM d1800 )TMP ;");
    EXPECT_EQ(db.run("SELECT CK_ID, SL, MONEY FROM #T ORDER BY CK_ID"), "A1|0|1.5\nB2|0|1.5\nK1|3|10\nK2|0|20");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM #T WHERE CK_ID='k1'"), "1");
}

TEST_F(TsqlTest, IdentityNumbersInOrderAndContinues) {
    db.run("INSERT INTO D8101A (NOID, K_ID, S0, MONEY) VALUES ('N1', 'K1', 5, 50)"
           " INSERT INTO D8101A (NOID, K_ID, S0, MONEY) VALUES ('N2', 'K2', 9, 90)"
           " INSERT INTO D8101A (NOID, K_ID, S0, MONEY) VALUES ('N3', 'K1', 1, 10)");
    db.run("SELECT IDENTITY (INT, 1, 1) AS ID, B.K_ID,SUM(B.S0) AS SL,SUM(B.MONEY) AS SMONEY INTO #w FROM D8101A B GROUP BY B.K_ID ORDER BY SUM(B.S0) DESC;");
    EXPECT_EQ(db.run("SELECT ID, K_ID, SL, SMONEY FROM #w ORDER BY ID"), "1|K2|9|90\n2|K1|6|60");
    db.run("insert into #w (K_ID,SL) SELECT CK_ID, 0 FROM d1007 ORDER BY CK_ID;");
    EXPECT_EQ(db.run("SELECT ID, K_ID FROM #w ORDER BY ID"), "1|K2\n2|K1\n3|A1\n4|B2");
}

TEST_F(TsqlTest, BracketTempTableIsTemporaryAndSameAsBareName) {
    db.run("CREATE TABLE [#phb](ID INT,K_ID VARCHAR(20), WL_NAME VARCHAR(80), M1 DECIMAL(18, 2))"
           " INSERT INTO [#phb](ID) SELECT 1 UNION SELECT 2");
    db.run("UPDATE [#phb] SET K_ID='K1' WHERE [#phb].ID=1 UPDATE #phb SET WL_NAME=D.WL_NAME FROM d1800 D WHERE #phb.K_ID=D.K_ID;");
    EXPECT_EQ(db.run("SELECT * FROM [#phb];"), "1|K1|Shirt|NULL\n2|NULL|NULL|NULL");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM sqlite_master WHERE name LIKE '%phb%'"), "0");
    db.run("DROP TABLE [#phb];");
}

TEST(TsqlTempTables, PrivateToEachConnection) {
    const std::string path = ::testing::TempDir() + "tsql_temp_privacy.db";
    std::remove(path.c_str());
    {
        Connection first(path);
        Connection second(path);
        first.run("CREATE TABLE d1007 (CK_ID varchar(4)) INSERT INTO d1007 VALUES ('A1')");
        first.run("CREATE TABLE [#phb](ID INT) INSERT INTO [#phb] VALUES (1)");
        second.run("CREATE TABLE [#phb](ID INT) INSERT INTO [#phb] VALUES (2) INSERT INTO #phb VALUES (3)");
        EXPECT_EQ(first.run("SELECT ID FROM [#phb]"), "1");
        EXPECT_EQ(second.run("SELECT ID FROM #phb ORDER BY ID"), "2\n3");
        EXPECT_EQ(second.run("SELECT COUNT(*) FROM d1007"), "1");
    }
    std::remove(path.c_str());
}

TEST_F(TsqlTest, TempTableRankingBatch) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, KC) VALUES ('K101', 'A1', 5)");
    const std::string rows = db.run(
        "SELECT CK_ID INTO #TCK FROM d1007;"
        "SELECT IDENTITY (INT, 1, 1) AS ID, D.CK_ID,SUM(D.KC) AS SL,0 AS KC INTO #CK FROM d1802 D INNER JOIN #TCK ON #TCK.CK_ID=D.CK_ID GROUP BY D.CK_ID ORDER BY SUM(D.KC) DESC;"
        "insert into #ck (ck_id,kc) SELECT #TCK.ck_id,0 FROM #ck RIGHT JOIN #TCK ON #CK.Ck_id = #TCK.Ck_id WHERE #CK.CK_id IS NULL ORDER BY #TCK.CK_ID;"
        "UPDATE #CK SET KC=A.SL FROM (SELECT CK_ID, SUM(KC) AS SL FROM d1802 GROUP BY CK_ID) A WHERE #CK.CK_ID=A.CK_ID "
        "SELECT ID, CK_ID, KC FROM #CK ORDER BY ID;DROP TABLE #CK;DROP TABLE #TCK");
    EXPECT_EQ(rows, "1|A1|5\n2|B2|0");
}

}  // namespace
}  // namespace qx::tsql::testing
