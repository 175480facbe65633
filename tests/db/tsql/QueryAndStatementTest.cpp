// Queries and data statements: joins, unions, TOP, INSERT/UPDATE/DELETE, DDL.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, SelectWithJoinWhereGroupAndOrder) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K101', 'A1', 1, 2, 3);"
           "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K102', 'A1', 4, 0, 4);"
           "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K101', 'B2', 5, 5, 10)");
    EXPECT_EQ(db.run("SELECT D.CK_ID, d1007.CK_NAME, SUM(D.K0+D.K1) AS QTY FROM d1802 D INNER JOIN d1007 ON d1007.CK_ID=D.CK_ID "
                     "WHERE (D.KC>0) GROUP BY D.CK_ID, d1007.CK_NAME HAVING (SUM(D.K0)>0) ORDER BY D.CK_ID DESC"),
              "B2|Shop|10\nA1|Head|7");
}

TEST_F(TsqlTest, QuotedStringAndChineseAliases) {
    EXPECT_EQ(db.columnNames("SELECT SUM(KC) as '尺码|0', K_ID 款号, WL_NAME AS 品名, 0.00 SMONEY, d1800.PP_ID AS NO FROM d1800 GROUP BY K_ID, WL_NAME, d1800.PP_ID"),
              "尺码|0|款号|品名|SMONEY|NO");
}

TEST_F(TsqlTest, AliasEqualsExpressionForm) {
    EXPECT_EQ(db.columnNames("SELECT Q = KC + 1 FROM d1800"), "Q");
}

TEST_F(TsqlTest, BlankBeforeDot) {
    EXPECT_EQ(db.run("SELECT d .WL_NAME FROM d1800 d WHERE d .K_ID='K1'"), "Shirt");
}

TEST_F(TsqlTest, TopOnOuterSelectAfterOrderBy) {
    EXPECT_EQ(db.run("SELECT top 1 K_ID FROM d1800 ORDER BY K_ID DESC"), "K2");
    EXPECT_EQ(db.run("select top 1 K_ID from d1800 where (1<0) or (KC = 0)"), "K2");
}

TEST_F(TsqlTest, TopInsideDerivedTableAndSubquery) {
    EXPECT_EQ(db.run("SELECT kc.K_ID, (SELECT TOP 1 CK_ID FROM d1007 ORDER BY CK_ID DESC) FROM (select TOP 1 K_ID FROM d1800 ORDER BY K_ID DESC)kc"), "K2|B2");
    EXPECT_EQ(db.run("SELECT t.K_ID, d1007.CK_ID FROM d1800 t CROSS JOIN (select top 1 CK_ID from d1007) d1007 WHERE t.K_ID='K1'"), "K1|A1");
}

TEST_F(TsqlTest, TopZeroFixesUnionColumnNames) {
    const char* sql = " select top 0 K_ID as wl_id,K_ID AS M,0 as sl,0.00 as smoney from d1800  "
                      " union all SELECT CK_ID, CK_NAME, 1, 2.5 FROM d1007 WHERE CK_ID='A1'";
    EXPECT_EQ(db.run(sql), "A1|Head|1|2.5");
    EXPECT_EQ(db.columnNames(sql), "wl_id|M|sl|smoney");
}

TEST_F(TsqlTest, UnionRemovesDuplicatesUnionAllKeepsThem) {
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM (SELECT 'Z' AS K_ID union SELECT 'Z' union SELECT 'ZZZZC') D1800"), "2");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM (SELECT 'Z' AS K_ID union all SELECT 'Z') D1800"), "2");
}

TEST_F(TsqlTest, UnionOrderedByQualifiedColumn) {
    EXPECT_EQ(db.run("SELECT d1800.K_ID FROM d1800 UNION ALL SELECT d1007.CK_ID FROM d1007 ORDER BY d1800.K_ID"), "A1\nB2\nK1\nK2");
}

TEST_F(TsqlTest, RightCrossAndLeftJoins) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, KC) VALUES ('K101', 'A1', 3)");
    EXPECT_EQ(db.run("SELECT d1007.CK_ID, d1802.KC FROM d1802 RIGHT JOIN d1007 ON d1802.CK_ID=d1007.CK_ID ORDER BY d1007.CK_ID"), "A1|3\nB2|NULL");
    EXPECT_EQ(db.run("SELECT d1007.CK_ID, d1802.KC FROM d1007 LEFT OUTER JOIN d1802 ON d1802.CK_ID=d1007.CK_ID WHERE d1802.WL_ID IS NULL"), "B2|NULL");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1800 CROSS JOIN d1007"), "4");
}

TEST_F(TsqlTest, UnqualifiedOnColumnResolvesToTablesJoinedSoFar) {
    db.run("CREATE TABLE sys_user_ck (USER_ID varchar(10), CK_ID varchar(4), W int)"
           " INSERT INTO sys_user_ck VALUES ('u1', 'A1', 1)"
           " CREATE TABLE d1800u (K_ID varchar(10), USER_ID varchar(10)) INSERT INTO d1800u VALUES ('K1', 'other')");
    EXPECT_EQ(db.run("SELECT d1007.CK_ID FROM d1007 INNER JOIN sys_USER_CK u on u.ck_id=d1007.ck_id and (user_id='u1') inner join d1800u ON 1=1"),
              "A1");
}

TEST_F(TsqlTest, StarMixedWithColumnsAndQualifiedStars) {
    EXPECT_EQ(db.run("select * , 1 as X from d1007 WHERE CK_ID='A1'"), "A1|Head|0|1");
    EXPECT_EQ(db.run("SELECT d1007.*, B.* FROM (SELECT K_ID FROM d1800 WHERE K_ID='K1') B CROSS JOIN d1007 WHERE d1007.CK_ID='B2'"), "B2|Shop|1|K1");
}

TEST_F(TsqlTest, ExistsInAndNotIn) {
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE K_ID IN ('k1', 'x') AND EXISTS (SELECT 1 FROM d1007 WHERE CK_ID='A1') AND K_ID NOT IN (SELECT CK_ID FROM d1007)"), "K1");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE WL_NAME LIKE '%ir%' AND KC NOT BETWEEN 5 AND 9"), "K1");
}

TEST_F(TsqlTest, CorrelatedSubquery) {
    EXPECT_EQ(db.run("SELECT K_ID, (SELECT COUNT(*) FROM d1007 c WHERE c.G1 < d1800.KC) FROM d1800 ORDER BY K_ID"), "K1|2\nK2|0");
}

TEST_F(TsqlTest, GroupByColumnAliasedLikeIt) {
    db.run("CREATE TABLE D1801IMP (B varchar(20)) INSERT INTO D1801IMP VALUES ('x') INSERT INTO D1801IMP VALUES ('X') INSERT INTO D1801IMP VALUES ('y')");
    EXPECT_EQ(db.run("SELECT COUNT(B) AS B FROM D1801IMP GROUP BY B HAVING (COUNT(B) > 1)"), "2");
}

TEST_F(TsqlTest, PositionalInsertCheckedAgainstColumnCount) {
    try {
        db.run("INSERT INTO D8101A VALUES ('N1','K101','K1')");
        FAIL() << "expected an error";
    } catch (const TranslationError& e) {
        EXPECT_EQ(e.reason(), "Column name or number of supplied values does not match table definition.");
        EXPECT_EQ(e.line(), 1);
        EXPECT_EQ(e.column(), 28);
    }
}

TEST_F(TsqlTest, InsertSelectPositional) {
    db.run("CREATE TABLE D1801 (WL_ID varchar(21), K_ID varchar(17), COL_ID varchar(4))"
           " INSERT INTO D8101A VALUES ('N1','K101','K1','01','A1','1','0','10','10','')"
           " INSERT INTO D1801 SELECT D8101A.WL_ID, D8101A.K_ID, D8101A.COL_ID FROM D8101A LEFT JOIN D1801 ON D1801.WL_ID=D8101A.WL_ID WHERE D1801.WL_ID IS NULL");
    EXPECT_EQ(db.run("SELECT * FROM D1801"), "K101|K1|01");
}

TEST_F(TsqlTest, InsertSelectConvertsTextForNumericColumns) {
    db.run("CREATE TABLE imp (A varchar(10), B varchar(10)) INSERT INTO imp VALUES ('K9', '')"
           " INSERT INTO d1800 (K_ID, KC) SELECT A, B FROM imp");
    EXPECT_EQ(db.run("SELECT KC, typeof(KC) FROM d1800 WHERE K_ID='K9'"), "0|integer");
}

TEST_F(TsqlTest, UpdateFromAnotherTable) {
    db.run("INSERT INTO D8101A (NOID, WL_ID, K_ID, S0, S1) VALUES ('N1', 'K101', 'K1', 2, 1)");
    db.run("UPDATE D8101A SET DJ=M.DJ,MONEY=(S0+S1)*M.DJ FROM d1800 M WHERE (D8101A.K_ID=M.K_ID) AND (D8101A.NOID='N1');");
    EXPECT_EQ(db.run("SELECT DJ, MONEY FROM D8101A"), "10|30");
}

TEST_F(TsqlTest, UpdateFromDerivedTable) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, KC) VALUES ('K101', 'A1', 4)"
           " INSERT INTO d1802 (WL_ID, CK_ID, KC) VALUES ('K102', 'B2', 5)");
    db.run("UPDATE  d1800 SET KC=T.K FROM ( SELECT substring(WL_ID,1,2) AS K_ID,SUM(KC) AS k FROM d1802 GROUP BY substring(WL_ID,1,2)) t WHERE D1800.K_ID=T.K_ID AND D1800.KC<>T.K ");
    EXPECT_EQ(db.run("SELECT K_ID, KC FROM d1800 ORDER BY K_ID"), "K1|9\nK2|0");
}

TEST_F(TsqlTest, DeleteWithAndWithoutFrom) {
    db.run("DELETE d1007 WHERE CK_ID='B2'");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007"), "A1");
    db.run("DELETE FROM[d1007];DELETE FROM [d1800]");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1007"), "0");
}

TEST_F(TsqlTest, DeleteJoinedRows) {
    db.run("DELETE d1800 FROM d1800 INNER JOIN d1007 ON d1007.CK_ID='A1' WHERE d1800.K_ID='K1'");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800"), "K2");
}

TEST_F(TsqlTest, CreateTableTypesDefaultsAndCompositeKey) {
    db.run("CREATE TABLE t1 (A varchar(10) NOT NULL, B char(2) NOT NULL, C smallint DEFAULT 0, D tinyint DEFAULT '', E real,"
           " F decimal(18,2) DEFAULT 0, G numeric(9,3), H money, I text, J datetime DEFAULT getdate(), K bit DEFAULT 1,"
           " CONSTRAINT PK_T1 PRIMARY KEY (A, B))");
    db.run("INSERT INTO t1 (A, B) VALUES ('x', 'y')");
    EXPECT_EQ(db.run("SELECT C, D, F, K, length(J) FROM t1"), "0|0|0|1|19");
    EXPECT_THROW(db.run("INSERT INTO t1 (A, B) VALUES ('X ', 'Y')"), std::runtime_error);
    db.run("INSERT INTO t1 (A, B, F) VALUES ('x', 'z', '100')");
    EXPECT_EQ(db.run("SELECT F/3 FROM t1 WHERE B='z'"), "33.33333333");
}

TEST_F(TsqlTest, CreateTableWithIdentityColumn) {
    db.run("CREATE TABLE t2 (ID int IDENTITY(1,1) PRIMARY KEY, NAME varchar(10)) INSERT INTO t2 VALUES ('a') INSERT INTO t2 (NAME) VALUES ('b')");
    EXPECT_EQ(db.run("SELECT ID, NAME FROM t2 ORDER BY ID"), "1|a\n2|b");
}

TEST_F(TsqlTest, CreateViewIndexAndDrop) {
    db.run("CREATE VIEW V_KC AS SELECT K_ID, KC+1 AS K FROM d1800 WHERE KC>0");
    db.run("CREATE UNIQUE INDEX IX_NAME ON d1800 (WL_NAME)");
    EXPECT_EQ(db.run("SELECT K_ID, K FROM V_KC"), "K1|4");
    db.run("DROP VIEW V_KC DROP TABLE IF EXISTS nothing_here");
    EXPECT_THROW(db.run("SELECT * FROM V_KC"), std::runtime_error);
}

TEST_F(TsqlTest, UnionColumnTakesTheHighestTypeOfItsBranches) {
    // The header row's '' meets integer week numbers: SQL Server makes it 0.
    const char* sql =
        "SELECT WL_ID, convert(varchar(6),M) + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME FROM ("
        " select top 0 K_ID as wl_id,K_ID AS M,K_ID AS D from d1800"
        " union all SELECT '11-'+CK_NAME, DATEPART(YEAR,'2024-01-07'), DATEPART(WK,'2024-01-07') FROM d1007 WHERE CK_ID='A1'"
        " union all select '10--仓库-','','' ) T ORDER BY 1";
    EXPECT_EQ(db.run(sql), "10--仓库-|0|00\n11-Head|2024|02");
}

TEST_F(TsqlTest, MoreStatementForms) {
    db.run("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('C1', 'x'), ('C2', 'y')");
    db.run("CREATE INDEX IX_G1 ON d1007 (G1 DESC, CK_NAME) DROP INDEX IX_G1 ON d1007");
    db.run("CREATE TABLE #T (ID int IDENTITY(1,1), N varchar(4) DEFAULT 'n') INSERT INTO #T DEFAULT VALUES CREATE INDEX IX_T ON #T (N)");
    EXPECT_EQ(db.run("SELECT ID, N FROM #T"), "1|n");
    db.run("TRUNCATE TABLE #T");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM #T"), "0");
    EXPECT_EQ(db.run("SELECT DISTINCT G1 FROM d1007 ORDER BY G1"), "0\n1");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007 EXCEPT SELECT CK_ID FROM d1007 WHERE G1=0 ORDER BY CK_ID"), "B2");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007 INTERSECT SELECT 'a1'"), "A1");
}

TEST_F(TsqlTest, DeleteWithFromNotNamingTheTarget) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('K101', 'B2')");
    db.run("DELETE FROM d1007 FROM d1802 WHERE d1802.CK_ID=d1007.CK_ID");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007"), "A1");
}

TEST_F(TsqlTest, ColumnAliasesNamedLikeTableAliases) {
    db.run("INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N1', '2024-03-07', 5)");
    EXPECT_EQ(db.run("SELECT M, D FROM (SELECT convert(char(6),M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D FROM D8101 M) D"), "202403|7");
}

TEST_F(TsqlTest, OrderByNameOfAnUnaliasedSelectColumn) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('K101', 'B2') INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('K102', 'A1')");
    EXPECT_EQ(db.run("SELECT d1802.WL_ID, d1007.CK_ID FROM d1802 INNER JOIN d1007 ON d1007.CK_ID=d1802.CK_ID ORDER BY CK_ID"), "K102|A1\nK101|B2");
    EXPECT_EQ(db.run("SELECT d1802.WL_ID AS W, d1007.CK_ID FROM d1802 INNER JOIN d1007 ON d1007.CK_ID=d1802.CK_ID ORDER BY W DESC"), "K102|A1\nK101|B2");
}

}  // namespace
}  // namespace qx::tsql::testing
