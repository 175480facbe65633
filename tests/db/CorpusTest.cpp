// Every statement the module hands to the database, as assembled in corpus/statements.sql,
// must translate and run on the demo shop; calls of procedures not registered yet must be
// refused with "unknown procedure". Each entry runs on its own copy of the demo database.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "DbTestSupport.h"

namespace qx::dbtest {
namespace {

struct CorpusEntry {
    std::string name;
    std::string mode;    // open | exec | maintenance
    std::string refuse;  // text the error must contain; empty = must succeed
    std::string sql;
    int line = 0;
};

// Shown by GoogleTest for a failing entry.
void PrintTo(const CorpusEntry& entry, std::ostream* out) { *out << entry.name << " (line " << entry.line << ")"; }

std::vector<CorpusEntry> loadCorpus() {
    std::ifstream in(QX_CORPUS_FILE);
    std::vector<CorpusEntry> entries;
    const std::string marker = "-- @entry ";
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.rfind(marker, 0) == 0) {
            std::istringstream header(line.substr(marker.size()));
            CorpusEntry entry;
            header >> entry.name >> entry.mode;
            std::string rest;
            std::getline(header, rest);
            if (auto at = rest.find("refuse="); at != std::string::npos) entry.refuse = rest.substr(at + 7);
            entry.line = number;
            entries.push_back(entry);
        } else if (!entries.empty() && line.rfind("-- ", 0) != 0) {
            entries.back().sql += line + "\n";
        }
    }
    return entries;
}

class Corpus : public ::testing::TestWithParam<CorpusEntry> {};

TEST_P(Corpus, RunsOnTheDemoShop) {
    const CorpusEntry& entry = GetParam();
    TempDir dir;
    const std::string copy = dir.file("shop.db");
    std::filesystem::copy_file(sharedDemoShop(), copy);  // the demo shop the sample values come from
    auto db = db::openSqlite(copy);
    SCOPED_TRACE("corpus/statements.sql:" + std::to_string(entry.line) + " " + entry.name);
    try {
        if (entry.mode == "open") {
            auto result = db->open(entry.sql);
            EXPECT_TRUE(entry.refuse.empty()) << "expected a refusal containing \"" << entry.refuse << "\"";
            EXPECT_FALSE(result.columns.empty()) << "opensql must hand back a result set";
        } else {
            db->execute(entry.sql, db::ExecOptions{entry.mode == "maintenance"});
            EXPECT_TRUE(entry.refuse.empty()) << "expected a refusal containing \"" << entry.refuse << "\"";
            if (entry.mode == "exec") {
                EXPECT_EQ(count(*db, "V_CHECKKC"), 0) << "the books no longer balance";
            }
        }
    } catch (const db::Error& e) {
        if (entry.refuse.empty())
            ADD_FAILURE() << e.what() << "\n  statement (line " << e.line() << ", column " << e.column() << "): " << e.statement();
        else
            EXPECT_NE(std::string(e.what()).find(entry.refuse), std::string::npos) << e.what();
    }
}

std::string entryName(const ::testing::TestParamInfo<CorpusEntry>& info) {
    std::string name;
    for (char c : info.param.name) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Statements, Corpus, ::testing::ValuesIn(loadCorpus()), entryName);

TEST(CorpusFile, CoversTheDocumentsReportsAndMaintenance) {
    const auto entries = loadCorpus();
    EXPECT_GE(entries.size(), 120u);
    int procedureCalls = 0;
    for (const auto& e : entries) {
        EXPECT_TRUE(e.mode == "open" || e.mode == "exec" || e.mode == "maintenance") << e.name;
        EXPECT_FALSE(e.sql.empty()) << e.name;
        if (e.sql.rfind("EXEC SYS_", 0) == 0) ++procedureCalls;
    }
    EXPECT_GE(procedureCalls, 10) << "calls of SYS_ZM, SYS_JX, SYS_JD and SYS_CBKS are listed";
}

}  // namespace
}  // namespace qx::dbtest
