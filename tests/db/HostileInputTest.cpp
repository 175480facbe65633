// Hostile statements through the data operations and qxck-sql: unterminated quotes and
// comments, megabyte statements, deep nesting, invalid UTF-8, NUL bytes. Each gets a clear
// error (or its plain answer) and leaves the database working; none crashes or hangs.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>

#include "DbTestSupport.h"

namespace qx::dbtest {
namespace {

std::string repeat(const std::string& unit, std::size_t times) {
    std::string out;
    out.reserve(unit.size() * times);
    for (std::size_t i = 0; i < times; ++i) out += unit;
    return out;
}

struct Hostile {
    const char* name;
    std::string batch;
    const char* message;  // part of the error
};

std::vector<Hostile> hostileBatches() {
    return {
        {"unterminated quote", "SELECT 'abc", "unterminated"},
        {"unterminated quote after a doubled one", "SELECT 'it''s", "unterminated"},
        {"unterminated comment", "SELECT 1 /* never closed", "unterminated"},
        {"unterminated bracket", "SELECT [abc FROM d1007", "unterminated"},
        {"deep parentheses", "SELECT " + repeat("(", 100000) + "1" + repeat(")", 100000), "nested too deeply"},
        {"deep subqueries", "SELECT " + repeat("(SELECT ", 20000) + "1" + repeat(")", 20000), "nested too deeply"},
        {"long chain of operators", "SELECT " + repeat("1+", 500000) + "1", "nested too deeply"},
        {"long chain of NOT", "SELECT 1 WHERE " + repeat("NOT ", 300000) + "1=1", "nested too deeply"},
        {"long chain of signs", "SELECT " + repeat("- ", 300000) + "1", "nested too deeply"},
        {"long chain of AND", "SELECT 1 WHERE " + repeat("1=1 AND ", 200000) + "1=1", "nested too deeply"},
        {"NUL byte", std::string("SELECT 1\0; DROP TABLE d1007", 28), ""},
        {"invalid UTF-8 in a name", "SELECT \xff\xfe FROM d1007", "Invalid column name"},
        {"megabyte of garbage", repeat("@#$% ", 200000), ""},
        {"unknown statement", "FROBNICATE d1007", "unknown statement"},
        {"nested EXEC texts", "EXEC('EXEC(''EXEC(''''SELECT x FROM'''')'')')", ""},
    };
}

class HostileBatch : public ::testing::TestWithParam<Hostile> {};

TEST_P(HostileBatch, IsRefusedWithAClearErrorAndTheShopStillWorks) {
    const Hostile& h = GetParam();
    Shop shop;
    for (const bool execute : {false, true}) {
        try {
            if (execute) shop.db->execute(h.batch);
            else shop.db->open(h.batch);
            ADD_FAILURE() << h.name << ": accepted";
        } catch (const db::Error& e) {
            EXPECT_FALSE(std::string(e.what()).empty());
            EXPECT_NE(std::string(e.what()).find(h.message), std::string::npos) << h.name << ": " << e.what();
        }
    }
    EXPECT_EQ(integer(shop.db->open("SELECT COUNT(*) FROM D1007").rows.at(0).at(0)), 3);
}

INSTANTIATE_TEST_SUITE_P(Inputs, HostileBatch, ::testing::ValuesIn(hostileBatches()), [](const auto& info) {
    std::string name = info.param.name;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
});

TEST(HostileValues, MegabyteTextsAndHugeRepeatsAnswerPlainly) {
    Shop shop;
    const std::string big(1 << 20, 'x');
    auto r = shop.db->open("SELECT LEN('" + big + "'), LEN(REPLICATE('ab', 2000000000)), DATALENGTH(SPACE(2000000000))");
    EXPECT_EQ(integer(r.rows.at(0).at(0)), 1 << 20);
    EXPECT_EQ(integer(r.rows.at(0).at(1)), 8000);  // a built text stops at varchar's 8000
    EXPECT_EQ(integer(r.rows.at(0).at(2)), 8000);
    r = shop.db->open("SELECT PATINDEX('%y%', '" + std::string(60000, 'x') + "y'), CHARINDEX('y', '" + std::string(60000, 'x') + "y')");
    EXPECT_EQ(integer(r.rows.at(0).at(0)), 60001);
    EXPECT_EQ(integer(r.rows.at(0).at(1)), 60001);
    r = shop.db->open("SELECT CASE WHEN '" + std::string(5000, 'a') + "' LIKE '" + repeat("%a", 40) + "%b' THEN 1 ELSE 0 END");
    EXPECT_EQ(integer(r.rows.at(0).at(0)), 0);
}

TEST(HostileValues, InvalidUtf8AndNulInsideTextsAreKeptOrRefusedNeverCrash) {
    Shop shop;
    EXPECT_NO_THROW(shop.db->open("SELECT '\xff\xfe\xc3' AS x, UPPER('\xe6\xac'), LEN('\xf0\x9f'), REPLACE('a\xffb', '\xff', '-')"));
    EXPECT_NO_THROW(shop.db->open("SELECT CK_ID FROM D1007 WHERE CK_NAME = '\xff' OR CK_NAME LIKE '%\xe6%' ORDER BY CK_NAME"));
    EXPECT_THROW(shop.db->execute("INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('X1', '" + std::string(10000, 'n') + "')"), db::Error);
    EXPECT_EQ(integer(shop.db->open("SELECT COUNT(*) FROM D1007").rows.at(0).at(0)), 3);
}

std::string runTool(const std::string& path, const std::string& input, int& status) {
    TempDir dir;
    const std::string file = dir.file("in.sql");
    std::ofstream(file, std::ios::binary) << input;
    const std::string command = std::string(QXCK_SQL_TOOL) + " --db " + path + " < " + file + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string out;
    char buffer[4096];
    while (pipe && fgets(buffer, sizeof buffer, pipe)) out += buffer;
    status = pipe ? WEXITSTATUS(pclose(pipe)) : -1;
    return out;
}

TEST(HostileTool, QxckSqlAnswersHostileInputWithAnErrorAndExitCodeOne) {
    Shop shop;
    const std::string path = shop.db->location();
    shop.db.reset();
    for (const auto& h : hostileBatches()) {
        int status = 0;
        const std::string out = runTool(path, h.batch, status);
        EXPECT_EQ(status, 1) << h.name;
        EXPECT_EQ(out.rfind("qxck-sql: ", 0), 0u) << h.name << ": " << out.substr(0, 200);
    }
}

TEST(HostileTool, QxckSqlPrintsNullApartFromEmptyText) {
    Shop shop;
    const std::string path = shop.db->location();
    shop.db.reset();
    int status = 0;
    const std::string out = runTool(path, "SELECT NULL AS a, '' AS b, 'x\ty\\z' AS c, 'NULL' AS d", status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(out, "a\tb\tc\td\n\\N\t\tx\\ty\\\\z\tNULL\n");
}

}  // namespace
}  // namespace qx::dbtest
