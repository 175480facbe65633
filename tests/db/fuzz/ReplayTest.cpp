// Replays the fuzzing seeds and every crash case the fuzzer found through the same entry as
// the fuzzer, without libFuzzer: the statement corpus, the statements of the conformance files
// and tests/db/fuzz/crashes/*.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "FuzzTarget.h"

namespace qx::fuzz {
namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void run(const std::string& input) { runInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size()); }

// Entries of the statement corpus, split at its "-- @entry" markers.
std::vector<std::string> corpusEntries() {
    std::vector<std::string> entries;
    std::istringstream in(readFile(QX_CORPUS_FILE));
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("-- @entry", 0) == 0) entries.emplace_back();
        else if (!entries.empty() && line.rfind("-- ", 0) != 0) entries.back() += line + "\n";
    }
    return entries;
}

TEST(FuzzReplay, StatementCorpusRunsThroughTheFuzzingEntry) {
    const auto entries = corpusEntries();
    ASSERT_GT(entries.size(), 100u);
    for (const auto& entry : entries) run(entry);
}

TEST(FuzzReplay, ConformanceStatementsRunThroughTheFuzzingEntry) {
    std::size_t files = 0;
    for (const auto& file : std::filesystem::directory_iterator(QX_CONFORMANCE_DIR)) {
        if (file.path().extension() != ".test") continue;
        ++files;
        std::istringstream in(readFile(file.path()));
        std::string sql;
        for (std::string line; std::getline(in, line);) {
            if (line.rfind("statement", 0) == 0 || line.rfind("query", 0) == 0) sql.clear();
            else if (line == "----" || line.empty()) {
                if (!sql.empty()) run(sql);
                sql.clear();
            } else if (line[0] != '#') sql += line + "\n";
        }
    }
    EXPECT_GT(files, 5u);
}

TEST(FuzzReplay, EveryCrashCaseFoundSoFarRunsClean) {
    std::size_t cases = 0;
    for (const auto& file : std::filesystem::directory_iterator(QX_FUZZ_CRASH_DIR)) {
        if (!file.is_regular_file() || file.path().filename() == "README.md") continue;
        ++cases;
        SCOPED_TRACE(file.path().filename().string());
        run(readFile(file.path()));
    }
    SUCCEED() << cases << " crash cases replayed";
}

}  // namespace
}  // namespace qx::fuzz
