// The live catalog and the typing of result columns.
#include <algorithm>

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

TEST(TsqlCatalog, UniqueKeysAreThoseOfNotNullColumnsComparedAsTheTranslationCompares) {
    Connection db;
    db.run("CREATE TABLE k1 (A varchar(4) NOT NULL, B int NOT NULL, C varchar(4) NULL, D varchar(4) NOT NULL, E int NULL, PRIMARY KEY (A, B)) "
           "CREATE UNIQUE INDEX k1_c ON k1 (C) CREATE UNIQUE INDEX k1_e ON k1 (E) CREATE INDEX k1_d ON k1 (D) "
           "CREATE TABLE k2 (N int IDENTITY(1,1), T varchar(10) NULL) CREATE TABLE #k3 (X varchar(4) NOT NULL PRIMARY KEY)");
    // a text key compared byte for byte would let 'a' and 'A' both in
    ASSERT_EQ(sqlite3_exec(db.handle(), "CREATE UNIQUE INDEX k1_d_binary ON k1 (D COLLATE BINARY)", nullptr, nullptr, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db.handle(), "CREATE UNIQUE INDEX k1_b_d ON k1 (B, D)", nullptr, nullptr, nullptr), SQLITE_OK);
    SqliteCatalog catalog(db.handle());
    auto keys = catalog.uniqueKeys("K1");
    std::sort(keys.begin(), keys.end());
    ASSERT_EQ(keys.size(), 2u);  // the primary key and (B, D); not the NULL-able C and E, not D under BINARY
    EXPECT_EQ(keys[0], (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(keys[1], (std::vector<std::string>{"B", "D"}));
    EXPECT_EQ(catalog.uniqueKeys("k2"), (std::vector<std::vector<std::string>>{{"N"}}));  // the row number
    EXPECT_EQ(catalog.uniqueKeys("#k3"), (std::vector<std::vector<std::string>>{{"X"}}));
    EXPECT_TRUE(catalog.uniqueKeys("missing").empty());
}

}  // namespace
}  // namespace qx::tsql::testing
