// Text and number semantics: + on text, conversions, collation, numeric storage, division.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, NationalLiteralsAndBracketIdentifiers) {
    EXPECT_EQ(db.run("SELECT [K_ID], N'款' AS [名 称] FROM [d1800] WHERE [K_ID]=N'K1'"), "K1|款");
    EXPECT_EQ(db.columnNames("SELECT [K_ID], N'款' AS [名 称] FROM [d1800]"), "K_ID|名 称");
}

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

TEST_F(TsqlTest, DecimalAndMoneyColumnsKeepTheirPlaces) {
    db.run("CREATE TABLE [#phb](ID INT, M1 DECIMAL(18, 2), M2 numeric(9), F float)"
           " INSERT INTO [#phb] VALUES (1, 37293.429999999986, '2.5', 1.005)"
           " UPDATE D8101 SET TOLMONEY=1 INSERT INTO D8101 (NOID, TOLMONEY) VALUES ('N1', 1.234567)");
    EXPECT_EQ(db.run("SELECT M1, M2, F, M1/4 FROM #phb"), "37293.43|3|1.005|9323.3575");
    EXPECT_EQ(db.run("SELECT TOLMONEY FROM D8101"), "1.2346");
}

TEST_F(TsqlTest, LikeMatchesAsSqlServerDoes) {
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE WL_NAME LIKE '%IR%'"), "K1");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE K_ID LIKE 'k[0-1]' AND K_ID NOT LIKE '[^k]%'"), "K1");
    EXPECT_EQ(db.run("SELECT CASE WHEN '款号A ' LIKE '款_a' THEN 1 ELSE 0 END, CASE WHEN 'a%b' LIKE 'a!%%' ESCAPE '!' THEN 1 ELSE 0 END,"
                     " CASE WHEN 'axb' LIKE 'a!%%' ESCAPE '!' THEN 1 ELSE 0 END, CASE WHEN 'abc' LIKE '%' THEN 1 ELSE 0 END"),
              "1|1|0|1");
}

TEST_F(TsqlTest, DivisionByZeroFailsTheStatement) {
    db.run("UPDATE d1800 SET DJ=0");
    EXPECT_THROW(db.run("UPDATE d1800 SET DJ=MONEY/DJ WHERE KC>0 AND MONEY>0"), std::runtime_error);
    EXPECT_EQ(db.run("SELECT DJ FROM d1800 ORDER BY K_ID"), "0\n0");
    EXPECT_EQ(db.run("SELECT 7 % 3, -7 / 2, '100' / 3, 7.5 / 2, NULL / 0"), "1|-3|33|3.75|NULL");
}

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

TEST_F(TsqlTest, IsNullAndCaseTakeTheTypeSqlServerGivesThem) {
    EXPECT_EQ(db.run("SELECT ISNULL(NULL + KC, ''), typeof(ISNULL(NULL + KC, '')), CASE WHEN KC > 0 THEN KC ELSE '' END FROM d1800 ORDER BY K_ID"),
              "0|integer|3\n0|integer|0");
    EXPECT_EQ(db.run("SELECT ISNULL(NULL + WL_NAME, '') FROM d1800 WHERE K_ID='K1'"), "");
}

}  // namespace
}  // namespace qx::tsql::testing
