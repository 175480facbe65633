// Batches: statement boundaries, comments, procedure calls, nested SQL and error positions.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

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

TEST_F(TsqlTest, ConstantPredicatesGluedToWhere) {
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1800 where(1 > 0)"), "2");
    EXPECT_EQ(db.run("SELECT COUNT(*) FROM d1800 WHERE(1<0)"), "0");
}

TEST_F(TsqlTest, SelectThenDropInOneBatchKeepsTheRows) {
    EXPECT_EQ(db.run("SELECT CK_ID INTO #TCK FROM d1007;SELECT COUNT(*) FROM #TCK;DROP TABLE #TCK "), "2");
}

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
