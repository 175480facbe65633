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

// ---- batches

TEST_F(TsqlTest, StatementsFollowingEachOtherWithoutSemicolon) {
    db.run("INSERT INTO D8101(NOID,T,CK_ID,BDATE,NOTE)  VALUES ('N1','1','A1','2024-03-01','x')"
           "INSERT INTO D8101A  VALUES ('N1','K101','K1','01','A1','2','3','10','50','')"
           "UPDATE D8101 SET NOTE='y' WHERE NOID='N1' SELECT NOTE FROM D8101");
    EXPECT_EQ(db.run("SELECT NOID, S0, S1, DJ, MONEY, NOTE FROM D8101A"), "N1|2|3|10|50|");
    EXPECT_EQ(db.run("SELECT NOTE FROM D8101"), "y");
}

TEST(TsqlBatch, SplitsStatementsAndKeepsTheirPositions) {
    auto statements = parseBatch("INSERT INTO a VALUES (1) INSERT INTO a VALUES (2);\n  UPDATE a SET x=1 WHERE y=2 SELECT * FROM a");
    ASSERT_EQ(statements.size(), 4u);
    EXPECT_EQ(statements[0].text, "INSERT INTO a VALUES (1)");
    EXPECT_EQ(statements[1].text, "INSERT INTO a VALUES (2)");
    EXPECT_EQ(statements[2].text, "UPDATE a SET x=1 WHERE y=2");
    EXPECT_EQ(statements[2].line, 2);
    EXPECT_EQ(statements[2].column, 3);
    EXPECT_TRUE(statements[3].returnsRows);
    EXPECT_FALSE(statements[0].returnsRows);
}

TEST(TsqlBatch, InsertSelectUnionStaysOneStatement) {
    auto statements = parseBatch("INSERT INTO [#phb](ID) SELECT ID FROM #w UNION SELECT ID FROM #CK SELECT * FROM [#phb];DROP TABLE [#phb]");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(statements[0].text, "INSERT INTO [#phb](ID) SELECT ID FROM #w UNION SELECT ID FROM #CK");
}

TEST_F(TsqlTest, CommentsOutsideLiteralsAndDashesInsideThem) {
    EXPECT_EQ(db.run("SELECT '10--仓库-' AS A, /* a comment */ 'x' -- trailing comment\n AS B"), "10--仓库-|x");
}

TEST_F(TsqlTest, NumberGluedToKeyword) {
    db.run("UPDATE d1800 SET KC=7,DJ=1where K_ID='K1'");
    EXPECT_EQ(db.run("SELECT KC, DJ FROM d1800 WHERE K_ID='K1'"), "7|1");
}

TEST_F(TsqlTest, LineBreaksInsideStatements) {
    EXPECT_EQ(db.run("SELECT K_ID,\n\rWL_NAME\r\nFROM d1800\n WHERE K_ID='K2'"), "K2|Jeans");
}

// ---- literals and names

TEST_F(TsqlTest, NationalLiteralsAndBracketIdentifiers) {
    EXPECT_EQ(db.run("SELECT [K_ID], N'款' AS [名 称] FROM [d1800] WHERE [K_ID]=N'K1'"), "K1|款");
    EXPECT_EQ(db.columnNames("SELECT [K_ID], N'款' AS [名 称] FROM [d1800]"), "K_ID|名 称");
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

// ---- + on text and numbers

TEST_F(TsqlTest, PlusJoinsTextColumnsAndLiterals) {
    EXPECT_EQ(db.run("SELECT CK_ID+'-'+CK_NAME AS CK_NAME FROM d1007 ORDER BY CK_ID"), "A1-Head\nB2-Shop");
}

TEST_F(TsqlTest, PlusJoinsQuotedDigitsAsText) {
    EXPECT_EQ(db.run("SELECT '0'+'5' AS A, 'A1'+'-'+'Shop' AS B"), "05|A1-Shop");
}

TEST_F(TsqlTest, PlusAddsNumbers) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, K0, K1) VALUES ('K101', 'A1', 2, 3)");
    EXPECT_EQ(db.run("SELECT K0+K1, 1+2, 0-K0 FROM d1802"), "5|3|-2");
}

TEST_F(TsqlTest, PlusJoinsSkuFromStyleAndColour) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('A1201', 'A1')");
    EXPECT_EQ(db.run("SELECT WL_ID+CK_ID AS ID FROM d1802"), "A1201A1");
    db.run("delete from d1802 WHERE (WL_ID + CK_ID ='A1201A1')");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1802"), "0");
}

TEST_F(TsqlTest, ConcatenatedTextComparedWithNumber) {
    db.run("CREATE TABLE d1801imp (J varchar(10), K varchar(10), L varchar(10))"
           " INSERT INTO d1801imp (J,K,L) VALUES ('0','0','0') INSERT INTO d1801imp (J,K,L) VALUES ('1','0','0')");
    db.run("delete d1801imp where (j+k+l)=0;");
    EXPECT_EQ(db.run("SELECT J+K+L FROM d1801imp"), "100");
}

TEST_F(TsqlTest, NullJoinedWithTextIsNull) {
    EXPECT_EQ(db.run("SELECT 'a'+NULL"), "NULL");
}

// ---- CONVERT / CAST

TEST_F(TsqlTest, ConvertDateStyles) {
    db.run("UPDATE d1800 SET BDATE='2024-03-07 15:04:05' WHERE K_ID='K1'");
    EXPECT_EQ(db.run("SELECT convert(char(10),BDATE,20), convert(char(6),BDATE,112), CONVERT(varchar(8), BDATE, 112), convert(varchar(19),BDATE,120) FROM d1800 WHERE K_ID='K1'"),
              "2024-03-07|202403|20240307|2024-03-07 15:04:05");
}

TEST_F(TsqlTest, ConvertGroupsByDay) {
    db.run("INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N1', '2024-03-07 10:00:00', 5)"
           " INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N2', '2024-03-07 18:00:00', 6)"
           " INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N3', '2024-03-08', 1)");
    EXPECT_EQ(db.run("SELECT convert(char(10),BDATE,20) as 开单日期, SUM(TOLMONEY) FROM D8101 GROUP BY convert(char(10),BDATE,20) ORDER BY 1"),
              "2024-03-07|11\n2024-03-08|1");
}

TEST_F(TsqlTest, ConvertNumbersToText) {
    EXPECT_EQ(db.run("SELECT convert(varchar(20),1920)+'进', RIGHT('0'+CONVERT(VARCHAR(2),7),2), CONVERT(tinyint,'3')+1, CAST('12' AS int)*2"),
              "1920进|07|4|24");
}

TEST_F(TsqlTest, ConvertYearToTextJoinsSuffix) {
    EXPECT_EQ(db.run("SELECT convert(varchar(20),YEAR(BDATE))+'进' as YY FROM d1800 ORDER BY K_ID"), "2024进\n2024进");
}

TEST_F(TsqlTest, ConvertToCharPadsAndDecimalRounds) {
    EXPECT_EQ(db.run("SELECT '['+CONVERT(char(4),'ab')+']', CONVERT(decimal(18,2), 1.005*10), CAST(2.7 AS int)"), "[ab  ]|10.05|2");
}

// ---- dates

TEST_F(TsqlTest, DatePartWithBareParts) {
    db.run("UPDATE d1800 SET BDATE='2024-03-07 15:04:05' WHERE K_ID='K1'");
    EXPECT_EQ(db.run("SELECT DATEPART([DAY],M.BDATE) AS D, DATEPART(day, M.BDATE), DATEPART(YEAR,M.BDATE), DATEPART(MONTH,M.BDATE), DATEPART(m, M.BDATE), DATEPART(hh, M.BDATE) FROM d1800 M WHERE M.K_ID='K1'"),
              "7|7|2024|3|3|15");
}

TEST_F(TsqlTest, WeekNumbersStartOnSunday) {
    EXPECT_EQ(db.run("SELECT DATEPART(WK,'2024-01-01'), DATEPART(WK,'2024-01-06'), DATEPART(WK,'2024-01-07'), DATEPART(WK,'2024-12-31'),"
                     " DATEPART(wk,'2023-01-01'), DATEPART(wk,'2023-01-07'), DATEPART(wk,'2023-01-08')"),
              "1|1|2|53|1|1|2");
}

TEST_F(TsqlTest, MonthArithmeticFromDateZero) {
    db.run("CREATE TABLE sys_co (CO varchar(40), CK_END_DATE datetime) INSERT INTO sys_co (CO, CK_END_DATE) VALUES ('x', '2024-12-15')");
    db.run("UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ");
    EXPECT_EQ(db.run("SELECT CK_END_DATE FROM sys_co"), "2025-01-01 00:00:00");
    db.run("UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ");
    EXPECT_EQ(db.run("SELECT CK_END_DATE FROM sys_co"), "2024-12-01 00:00:00");
}

TEST_F(TsqlTest, DateAddClampsToMonthEnd) {
    EXPECT_EQ(db.run("SELECT DATEADD(month, 1, '2024-01-31'), DATEADD(DAY, 1, '2024-02-28'), DATEADD(yy, 1, '2024-02-29'), DATEADD(wk, -1, '2024-01-03')"),
              "2024-02-29 00:00:00|2024-02-29 00:00:00|2025-02-28 00:00:00|2023-12-27 00:00:00");
}

TEST_F(TsqlTest, DateDiffCountsBoundaries) {
    EXPECT_EQ(db.run("SELECT DATEDIFF(yy,'2023-12-31','2024-01-01'), DATEDIFF(mm,'2024-01-31','2024-02-01'), DATEDIFF(dd,'2024-01-01 23:00','2024-01-02 01:00'),"
                     " DATEDIFF(wk,'2024-01-06','2024-01-07'), DATEDIFF(mm, 0, '2024-03-05')"),
              "1|1|1|1|1490");
}

TEST_F(TsqlTest, YearMonthDayFunctions) {
    EXPECT_EQ(db.run("select year(BDATE) as 年,month(BDATE) as 月, day(BDATE) from d1800 group by year(BDATE),month(BDATE),day(BDATE) order by 2"),
              "2024|1|5\n2024|2|10");
}

TEST_F(TsqlTest, GetDateIsLocalIsoText) {
    const std::string now = db.run("SELECT GETDATE()");
    ASSERT_EQ(now.size(), 19u);
    EXPECT_EQ(now[4], '-');
    EXPECT_EQ(now[10], ' ');
    sqlite3* db2 = db.handle();
    sqlite3_stmt* stmt;
    sqlite3_prepare_v2(db2, "SELECT strftime('%Y-%m-%d %H','now','localtime')", -1, &stmt, nullptr);
    sqlite3_step(stmt);
    const std::string hour = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
    sqlite3_finalize(stmt);
    EXPECT_EQ(now.substr(0, 13), hour);
    db.run("UPDATE D8101 SET EDATE=GETDATE()");
}

TEST_F(TsqlTest, DatesStoredAsIsoTextCompareWithDateOnlyText) {
    EXPECT_EQ(db.run("SELECT BDATE FROM d1800 WHERE K_ID='K1'"), "2024-01-05 00:00:00");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE (BDATE>='2024-01-05') AND (BDATE<='2024-02-10') ORDER BY K_ID"), "K1\nK2");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE BDATE<'2024-02-10'"), "K1");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE BDATE BETWEEN '2024-01-01' AND '2024-01-05'"), "K1");
}

TEST_F(TsqlTest, EmptyTextIntoDateIsBaseDate) {
    db.run("UPDATE d1800 SET BDATE='' WHERE K_ID='K2'");
    EXPECT_EQ(db.run("SELECT BDATE FROM d1800 WHERE K_ID='K2'"), "1900-01-01 00:00:00");
}

// ---- functions

TEST_F(TsqlTest, IsNullRightLeftLenSubstringUpperLower) {
    EXPECT_EQ(db.run("SELECT ISNULL(NULL, 0 - 5), isnull('a','b'), RIGHT('ABCDE', 2), RIGHT('款号', 1), LEFT('ABCDE', 2), LEN('ab  '), SUBSTRING('ABCDE', 2, 3), UPPER('ab'), LOWER('AB'), ABS(-3), ROUND(2.456, 2)"),
              "-5|a|DE|号|AB|2|BCD|AB|ab|3|2.46");
}

TEST_F(TsqlTest, Aggregates) {
    EXPECT_EQ(db.run("SELECT COUNT(*), COUNT(DISTINCT PP_ID), SUM(KC), AVG(KC), MIN(K_ID), MAX(DJ), AVG(DJ) FROM d1800"), "2|2|3|1|K1|20|15");
}

TEST_F(TsqlTest, CaseSimpleAndSearched) {
    db.run("INSERT INTO D8101 (NOID, T) VALUES ('N1', '0') INSERT INTO D8101 (NOID, T) VALUES ('N2', '1')");
    EXPECT_EQ(db.run("SELECT NOID, CASE D8101.T WHEN 0 THEN '盘点中' else '已汇总' end as T_NAME, case when T=0 then 0 else 1 end FROM D8101 ORDER BY NOID"),
              "N1|盘点中|0\nN2|已汇总|1");
}

TEST_F(TsqlTest, CaseOnTextUsesCollation) {
    db.run("CREATE TABLE sys_web (id int, field_table varchar(10)) INSERT INTO sys_web VALUES (1, 'cg') INSERT INTO sys_web VALUES (2, 'KC')");
    EXPECT_EQ(db.run("SELECT CASE field_table WHEN 'CG' THEN '进货明细' WHEN 'kc' THEN '库存' END FROM sys_web ORDER BY id"), "进货明细\n库存");
}

// ---- collation and numeric storage

TEST_F(TsqlTest, TextComparesCaseInsensitiveIgnoringTrailingBlanks) {
    EXPECT_EQ(db.run("SELECT CK_NAME FROM d1007 WHERE CK_ID='a1 '"), "Head");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1007 WHERE (CK_ID>='') and (CK_ID<='ZZZZZZ')"), "2");
    EXPECT_EQ(db.run("SELECT CASE WHEN 'cg'='CG' THEN 1 ELSE 0 END, CASE WHEN 'A1 '='A1' THEN 1 ELSE 0 END"), "1|1");
}

TEST_F(TsqlTest, TextKeysDifferingInCaseAreOneKey) {
    EXPECT_THROW(db.run("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('a1', 'dup')"), std::runtime_error);
}

TEST_F(TsqlTest, QuotedNumbersStoredAsNumbers) {
    db.run("INSERT INTO D8101A VALUES ('N1','K101','K1','01','A1','10','2','9.5','95','')");
    EXPECT_EQ(db.run("SELECT typeof(S0), S0+S1, typeof(DJ) FROM D8101A"), "integer|12|real");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM D8101A WHERE S0=10 AND S0>9"), "1");
}

TEST_F(TsqlTest, EmptyTextIntoNumbersIsZero) {
    db.run("INSERT INTO D8101A VALUES ('N1','K101','K1','01','A1','','','','','')");
    db.run("UPDATE D8101 SET TOLMONEY=''");
    EXPECT_EQ(db.run("SELECT S0, typeof(S0), DJ, COUNT(*) FROM D8101A WHERE S0=0 AND NOT (S0>0)"), "0|integer|0|1");
}

TEST_F(TsqlTest, TextIntoNumberColumnIsRefused) {
    try {
        db.run("INSERT INTO D8101A (NOID, S0) VALUES ('N1', 'abc')");
        FAIL() << "expected a conversion error";
    } catch (const TranslationError& e) {
        EXPECT_NE(std::string(e.what()).find("Conversion failed"), std::string::npos);
    }
}

TEST_F(TsqlTest, DivisionFollowsColumnTypes) {
    db.run("UPDATE d1800 SET DJ=MONEY/KC WHERE MONEY>0 AND KC>0");
    EXPECT_EQ(db.run("SELECT DJ FROM d1800 WHERE K_ID='K1'"), "33.33333333");
    EXPECT_EQ(db.run("SELECT 100/3, 100/3.0, KC/2 FROM d1800 WHERE K_ID='K1'"), "33|33.33333333|1");
}

// ---- TOP

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

// ---- unions, joins, derived tables

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

// ---- INSERT, UPDATE, DELETE

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

// ---- temp tables

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

// ---- EXEC and nested SQL

TEST(TsqlExec, ProcedureCallWithUnquotedValues) {
    auto statements = parseBatch("exec SYS_M @param=1,@sqltext=' SELECT isnull(VIPID,''<空>'') AS oid, isnull(VIPNAME,'''') AS oname FROM d702 WHERE NOTE=''a--b'' ', @x=-2, @flag=Y");
    ASSERT_EQ(statements.size(), 1u);
    ASSERT_TRUE(statements[0].procedure.has_value());
    const auto& call = *statements[0].procedure;
    EXPECT_EQ(call.name, "SYS_M");
    ASSERT_EQ(call.arguments.size(), 4u);
    EXPECT_EQ(call.arguments[0].name, "param");
    EXPECT_EQ(call.arguments[0].value, "1");
    EXPECT_FALSE(call.arguments[0].quoted);
    EXPECT_EQ(call.arguments[1].value, " SELECT isnull(VIPID,'<空>') AS oid, isnull(VIPNAME,'') AS oname FROM d702 WHERE NOTE='a--b' ");
    EXPECT_TRUE(call.arguments[1].quoted);
    EXPECT_EQ(call.arguments[2].value, "-2");
    EXPECT_EQ(call.arguments[3].value, "Y");
    EXPECT_TRUE(statements[0].returnsRows);
    Connection db;
    SqliteCatalog catalog(db.handle());
    EXPECT_TRUE(emitSqlite(statements[0], catalog).empty());
}

TEST_F(TsqlTest, NestedSqlRunsAfterOneUndoubling) {
    auto statements = parseBatch("EXEC SYS_JX @param1='SELECT CK_ID+''-''+CK_NAME AS CK_NAME, RIGHT(''0''+CONVERT(VARCHAR(2),G1),2) AS D FROM d1007 WHERE CK_ID=''A1''', @param2='wl_id'");
    EXPECT_EQ(db.run(statements[0].procedure->arguments[0].value), "A1-Head|00");
}

TEST(TsqlExec, ExecWithoutArgumentsFollowedByStatement) {
    auto statements = parseBatch("EXEC SYS_CBKS SELECT 1");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_TRUE(statements[0].procedure->arguments.empty());
}

// ---- errors

TEST(TsqlErrors, SyntaxErrorCarriesLineAndColumn) {
    try {
        parseBatch("SELECT 1;\nSELECT K_ID FROM d1800 WHERE (K_ID = 'x'");
        FAIL() << "expected an error";
    } catch (const TranslationError& e) {
        EXPECT_EQ(e.line(), 2);
        EXPECT_EQ(e.column(), 41);
        EXPECT_EQ(e.statement(), "SELECT K_ID FROM d1800 WHERE (K_ID = 'x'");
        const qx::db::Error& base = e;
        EXPECT_NE(std::string(base.what()).find("line 2"), std::string::npos);
    }
}

TEST(TsqlErrors, UnterminatedLiteral) {
    try {
        parseBatch("SELECT 'abc");
        FAIL() << "expected an error";
    } catch (const TranslationError& e) {
        EXPECT_EQ(e.reason(), "unterminated string literal");
        EXPECT_EQ(e.line(), 1);
        EXPECT_EQ(e.column(), 8);
    }
}

TEST(TsqlErrors, ColumnCountedInCharacters) {
    try {
        parseBatch("SELECT '款号' AS 款 FROM");
        FAIL() << "expected an error";
    } catch (const TranslationError& e) {
        EXPECT_EQ(e.line(), 1);
        EXPECT_EQ(e.column(), 22);
    }
}

TEST(TsqlErrors, UnknownStatementAndDatePart) {
    EXPECT_THROW(parseBatch("FROBNICATE d1800"), TranslationError);
    Connection db;
    SqliteCatalog catalog(db.handle());
    auto statements = parseBatch("SELECT DATEPART(fortnight, '2024-01-01')");
    EXPECT_THROW(emitSqlite(statements[0], catalog), TranslationError);
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, DecimalAndMoneyColumnsKeepTheirPlaces) {
    db.run("CREATE TABLE [#phb](ID INT, M1 DECIMAL(18, 2), M2 numeric(9), F float)"
           " INSERT INTO [#phb] VALUES (1, 37293.429999999986, '2.5', 1.005)"
           " UPDATE D8101 SET TOLMONEY=1 INSERT INTO D8101 (NOID, TOLMONEY) VALUES ('N1', 1.234567)");
    EXPECT_EQ(db.run("SELECT M1, M2, F, M1/4 FROM #phb"), "37293.43|3|1.005|9323.3575");
    EXPECT_EQ(db.run("SELECT TOLMONEY FROM D8101"), "1.2346");
}

TEST_F(TsqlTest, ResultColumnsAreTypedFromTheCatalog) {
    SqliteCatalog catalog(db.handle());
    auto statements = parseBatch("SELECT K_ID, KC*DJ AS V, CK_ID+'-' AS C, COUNT(*) AS N, BDATE, NULL AS X, 1.5 Y FROM d1800, d1007");
    auto columns = resultColumns(statements[0], catalog);
    ASSERT_EQ(columns.size(), 7u);
    EXPECT_EQ(columns[0].name, "K_ID");
    EXPECT_EQ(columns[0].type, SqlType::Text);
    EXPECT_EQ(columns[1].type, SqlType::Real);
    EXPECT_EQ(columns[2].type, SqlType::Text);
    EXPECT_EQ(columns[3].type, SqlType::Integer);
    EXPECT_EQ(columns[4].type, SqlType::DateTime);
    EXPECT_EQ(columns[5].type, SqlType::Unknown);
    EXPECT_EQ(columns[6].name, "Y");
    EXPECT_EQ(columns[6].type, SqlType::Real);
    EXPECT_TRUE(resultColumns(parseBatch("DELETE FROM d1800")[0], catalog).empty());
}

TEST(TsqlCatalog, DeclaredTypesMapToSqlTypes) {
    EXPECT_EQ(sqlTypeFromDeclaredType("VARCHAR(20)"), SqlType::Text);
    EXPECT_EQ(sqlTypeFromDeclaredType("INT"), SqlType::Integer);
    EXPECT_EQ(sqlTypeFromDeclaredType("bit"), SqlType::Integer);
    EXPECT_EQ(sqlTypeFromDeclaredType("REAL DECIMAL(18,2)"), SqlType::Real);
    EXPECT_EQ(sqlTypeFromDeclaredType("money"), SqlType::Real);
    EXPECT_EQ(sqlTypeFromDeclaredType("DATETIME TEXT"), SqlType::DateTime);
    EXPECT_EQ(sqlTypeFromDeclaredType(""), SqlType::Unknown);
    EXPECT_EQ(decimalScaleOfDeclaredType("REAL DECIMAL(18,2)"), 2);
    EXPECT_EQ(decimalScaleOfDeclaredType("REAL"), -1);
}

TEST(TsqlCatalog, SeesMainTempAndViews) {
    Connection db;
    db.run("CREATE TABLE d1 (A varchar(4), B int IDENTITY(1,1), C decimal(18,2)) CREATE VIEW v1 AS SELECT A, C FROM d1 CREATE TABLE #t (X datetime)");
    SqliteCatalog catalog(db.handle());
    auto table = catalog.tableColumns("D1");
    ASSERT_TRUE(table.has_value());
    ASSERT_EQ(table->size(), 3u);
    EXPECT_TRUE((*table)[1].identity);
    EXPECT_EQ((*table)[2].scale, 2);
    auto view = catalog.tableColumns("v1");
    ASSERT_TRUE(view.has_value());
    EXPECT_EQ((*view)[0].type, SqlType::Text);
    auto temp = catalog.tableColumns("#T");
    ASSERT_TRUE(temp.has_value());
    EXPECT_EQ((*temp)[0].type, SqlType::DateTime);
    EXPECT_FALSE(catalog.tableColumns("#missing").has_value());
    EXPECT_FALSE(catalog.tableColumns("missing").has_value());
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, UnionColumnTakesTheHighestTypeOfItsBranches) {
    // The header row's '' meets integer week numbers: SQL Server makes it 0.
    const char* sql =
        "SELECT WL_ID, convert(varchar(6),M) + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME FROM ("
        " select top 0 K_ID as wl_id,K_ID AS M,K_ID AS D from d1800"
        " union all SELECT '11-'+CK_NAME, DATEPART(YEAR,'2024-01-07'), DATEPART(WK,'2024-01-07') FROM d1007 WHERE CK_ID='A1'"
        " union all select '10--仓库-','','' ) T ORDER BY 1";
    EXPECT_EQ(db.run(sql), "10--仓库-|0|00\n11-Head|2024|02");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, LikeMatchesAsSqlServerDoes) {
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE WL_NAME LIKE '%IR%'"), "K1");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE K_ID LIKE 'k[0-1]' AND K_ID NOT LIKE '[^k]%'"), "K1");
    EXPECT_EQ(db.run("SELECT CASE WHEN '款号A ' LIKE '款_a' THEN 1 ELSE 0 END, CASE WHEN 'a%b' LIKE 'a!%%' ESCAPE '!' THEN 1 ELSE 0 END,"
                     " CASE WHEN 'axb' LIKE 'a!%%' ESCAPE '!' THEN 1 ELSE 0 END, CASE WHEN 'abc' LIKE '%' THEN 1 ELSE 0 END"),
              "1|1|0|1");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, DivisionByZeroFailsTheStatement) {
    db.run("UPDATE d1800 SET DJ=0");
    EXPECT_THROW(db.run("UPDATE d1800 SET DJ=MONEY/DJ WHERE KC>0 AND MONEY>0"), std::runtime_error);
    EXPECT_EQ(db.run("SELECT DJ FROM d1800 ORDER BY K_ID"), "0\n0");
    EXPECT_EQ(db.run("SELECT 7 % 3, -7 / 2, '100' / 3, 7.5 / 2, NULL / 0"), "1|-3|33|3.75|NULL");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, ChineseTextSortsByPinyinAndWidthIsIgnored) {
    db.run("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('C1', '张三') INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('C2', '李四')"
           " INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('C3', '王五')");
    EXPECT_EQ(db.run("SELECT CK_NAME FROM d1007 WHERE CK_ID LIKE 'C%' ORDER BY CK_NAME"), "李四\n王五\n张三");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007 WHERE CK_NAME='ｈｅａｄ'"), "A1");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1007 WHERE CK_ID>'a1' AND CK_ID<'C2 '"), "2");
    // Latin letters sort before Chinese, so a range up to 'ZZZZZZ' leaves Chinese codes out
    db.run("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('仓1', 'x') INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('zz', 'y')");
    EXPECT_EQ(db.run("SELECT CK_ID FROM d1007 WHERE (CK_ID>='') and (CK_ID<='ZZZZZZ') AND CK_ID NOT LIKE 'C%' ORDER BY CK_ID"), "A1\nB2\nzz");
    EXPECT_EQ(db.run("SELECT MAX(CK_ID) FROM d1007"), "仓1");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

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

TEST_F(TsqlTest, DateConversionsAndDayArithmetic) {
    EXPECT_EQ(db.run("SELECT CONVERT(datetime, '20240105'), CAST('2024-1-5 7:08' AS datetime), CONVERT(char(10), CONVERT(datetime, '2024/02/03'), 111)"),
              "2024-01-05 00:00:00|2024-01-05 07:08:00|2024/02/03");
    EXPECT_EQ(db.run("SELECT BDATE + 1, BDATE - 5, DATEADD(day, 1, BDATE) FROM d1800 WHERE K_ID='K1'"),
              "2024-01-06 00:00:00|2023-12-31 00:00:00|2024-01-06 00:00:00");
    EXPECT_EQ(db.run("SELECT DATEPART(dw, '2024-01-07'), DATEPART(dy, '2024-02-01'), DATEPART(qq, '2024-05-01'), DATEDIFF(day, BDATE, '2024-01-15') FROM d1800 WHERE K_ID='K1'"),
              "1|32|2|10");
}

TEST(TsqlErrors, TranslationErrorsPointAtTheNode) {
    Connection db;
    db.run("CREATE TABLE t (A int, D datetime)");
    SqliteCatalog catalog(db.handle());
    auto statements = parseBatch("SELECT 1\nINSERT INTO t (A, D) VALUES (1,\n   'not a date')");
    try {
        emitSqlite(statements[1], catalog);
        FAIL() << "expected an error";
    } catch (const TranslationError& e) {
        EXPECT_EQ(e.line(), 3);
        EXPECT_EQ(e.column(), 4);
        EXPECT_EQ(e.statement(), "INSERT INTO t (A, D) VALUES (1,\n   'not a date')");
    }
}

TEST(TsqlErrors, SelectIntoNeedsColumnNames) {
    Connection db;
    SqliteCatalog catalog(db.handle());
    auto statements = parseBatch("SELECT 1+1 INTO #x");
    EXPECT_THROW(emitSqlite(statements[0], catalog), TranslationError);
}

TEST(TsqlBatch, NestedBlockCommentsAndBracketsWithQuotes) {
    auto statements = parseBatch("/* outer /* inner */ still comment */ SELECT [a]]b] FROM [x y]");
    ASSERT_EQ(statements.size(), 1u);
    Connection db;
    db.run("CREATE TABLE [x y] ([a]]b] int) INSERT INTO [x y] VALUES (4)");
    EXPECT_EQ(db.run("/* outer /* inner */ still comment */ SELECT [a]]b] FROM [x y]"), "4");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, ConstantPredicatesGluedToWhere) {
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1800 where(1 > 0)"), "2");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1800 WHERE(1<0)"), "0");
}

TEST_F(TsqlTest, ColumnAliasesNamedLikeTableAliases) {
    db.run("INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N1', '2024-03-07', 5)");
    EXPECT_EQ(db.run("SELECT M, D FROM (SELECT convert(char(6),M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D FROM D8101 M) D"), "202403|7");
}

TEST_F(TsqlTest, SelectThenDropInOneBatchKeepsTheRows) {
    EXPECT_EQ(db.run("SELECT CK_ID INTO #TCK FROM d1007;SELECT COUNT(*) FROM #TCK;DROP TABLE #TCK "), "2");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

// Every cut of a statement either parses or is refused with a TranslationError: no other
// exception, no crash.
TEST(TsqlBatch, EveryPrefixParsesOrIsRefusedCleanly) {
    const std::string statements[] = {
        "SELECT IDENTITY (INT, 1, 1) AS ID, #kc.k_id, d .wl_name, #kc.kc INTO #zs FROM #kc INNER JOIN d1800 d ON #kc.k_id = d .k_id "
        "LEFT JOIN #w ON #kc.k_id = #w.k_id WHERE #w.k_id IS NULL ORDER BY #kc.kc DESC;",
        "SELECT  K_ID AS WL_ID,M + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME,SL AS KC FROM (SELECT D.K_ID,convert(char(6),"
        "M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D, SUM(D.S0 + D.S1) AS SL FROM D8201 M INNER JOIN D8201A D ON M.NOID = D.NOID "
        "where (M.BDATE>='2026-01-01') GROUP BY D.K_ID, DATEPART([day], M.BDATE), convert(char(6),M.BDATE,112)) T",
        "exec SYS_M @param=1,@sqltext=' SELECT isnull(D702.VIPID,''<空>'') AS oid FROM d702 ',@x=-1",
        "CREATE TABLE t (A varchar(10) NOT NULL DEFAULT '', B decimal(18,2) IDENTITY(1,1), CONSTRAINT PK PRIMARY KEY (A))",
        "UPDATE sys_CO SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) "
        "DELETE d1801imp where (j+k)=0 AND x NOT LIKE '[^a]%' ESCAPE '!' AND y NOT BETWEEN 1 AND 2 AND z NOT IN (1, 2) "
        "AND CASE WHEN a IS NOT NULL THEN 1 ELSE 0 END = 1",
        "SELECT TOP 99999999999999999999999 CONVERT(varchar(99999999999), x, 1.5) FROM t",
    };
    for (const auto& statement : statements) {
        for (std::size_t length = 0; length <= statement.size(); ++length) {
            const std::string prefix = statement.substr(0, length);
            try {
                parseBatch(prefix);
            } catch (const TranslationError&) {
            } catch (const std::exception& e) {
                ADD_FAILURE() << "unexpected " << e.what() << " for: " << prefix;
            }
        }
    }
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, OrderByNameOfAnUnaliasedSelectColumn) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('K101', 'B2') INSERT INTO d1802 (WL_ID, CK_ID) VALUES ('K102', 'A1')");
    EXPECT_EQ(db.run("SELECT d1802.WL_ID, d1007.CK_ID FROM d1802 INNER JOIN d1007 ON d1007.CK_ID=d1802.CK_ID ORDER BY CK_ID"), "K102|A1\nK101|B2");
    EXPECT_EQ(db.run("SELECT d1802.WL_ID AS W, d1007.CK_ID FROM d1802 INNER JOIN d1007 ON d1007.CK_ID=d1802.CK_ID ORDER BY W DESC"), "K102|A1\nK101|B2");
}

}  // namespace
}  // namespace qx::tsql::testing

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, DecimalArithmeticIsExact) {
    db.run("CREATE TABLE L (A decimal(18,2), B decimal(18,2), Q int, F float)"
           " INSERT INTO L VALUES (10.1, 3.3, 3, 10.1) INSERT INTO L VALUES (0.1, 0.2, 1, 0.1) INSERT INTO L VALUES (0.1, 0.2, 1, 0.1)");
    // compared with the literal: equal only when no float noise is left
    EXPECT_EQ(db.run("SELECT (A-B) = 6.8, (A*Q) = 30.3, (A+B) = 13.4 FROM L WHERE Q=3"), "1|1|1");
    EXPECT_EQ(db.run("SELECT SUM(A+B) = 14.0, SUM(A) = 10.3 FROM L"), "1|1");
    EXPECT_EQ(db.run("SELECT SUM(A) = 30.9 FROM (SELECT A FROM L UNION ALL SELECT A FROM L UNION ALL SELECT A FROM L) T"), "1");
    EXPECT_EQ(db.run("SELECT T.X = 33.33 FROM (SELECT A*B AS X FROM L WHERE Q=3) T"), "1");
    // float columns keep float arithmetic, as in SQL Server
    EXPECT_EQ(db.run("SELECT TOP 1 (F+B) = 0.3, (A+B) = 0.3 FROM L WHERE Q=1"), "0|1");
    EXPECT_EQ(db.run("SELECT CONVERT(varchar(20), A*Q) + '元', CONVERT(varchar(20), F), CONVERT(varchar(20), Q) FROM L WHERE Q=3"), "30.30元|10.1|3");
}

}  // namespace
}  // namespace qx::tsql::testing
