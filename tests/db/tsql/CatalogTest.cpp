// The live catalog and the typing of result columns.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

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
