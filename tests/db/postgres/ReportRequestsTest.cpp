// The report screens' statements (their golden files, one per dialog choice) on the demo shop,
// on a server and in a file: the same columns and the same rows, in whatever order the engines
// give rows a statement does not order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "db/DbTestSupport.h"
#include "support/GoldenStatements.h"

namespace qx::dbtest {
namespace {

const char* const kReports[] = {
    "qxck203.sql", "qxck204.sql", "qxck213.sql", "qxck214.sql", "qxck252.sql", "qxck253.sql", "qxck254.sql",
    "qxck255.sql", "qxck256.sql", "qxck263.sql", "qxck273.sql", "qxck281.sql", "qxck282.sql", "qxck283.sql",
};

// A ranking numbers its rows in the order of a quantity; items of equal quantity may come in
// any order (on SQL Server too), so which of them makes the last places may differ. What must
// not differ: the quantities ranked, place by place.
bool ranksWithTies(const std::string& report) { return report == "qxck281.sql"; }

std::vector<std::string> rankedQuantities(const db::ResultSet& result) {
    std::vector<std::size_t> quantities;  // the columns S1..S9
    for (std::size_t c = 0; c < result.columns.size(); ++c) {
        const std::string& name = result.columns[c].name;
        if (name.size() == 2 && (name[0] == 'S' || name[0] == 's') && std::isdigit(static_cast<unsigned char>(name[1]))) quantities.push_back(c);
    }
    std::vector<std::string> rows;
    for (const auto& row : result.rows) {
        std::string line;
        for (std::size_t c : quantities) line += normalised(row[c]) + "|";
        rows.push_back(line);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

// The names of the result's columns, in upper case: a column named by a bare reference
// ("d1800.pfj") comes back as written on the server, as SQL Server gives it, and as declared
// ("PFJ") from SQLite; datasets find fields by name whatever the case. (A table's columns
// through "*" have their declared names on both.)
std::vector<std::string> columnNames(const db::ResultSet& result) {
    std::vector<std::string> names;
    for (const auto& c : result.columns) {
        std::string name = c.name;
        for (char& ch : name) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
        names.push_back(name);
    }
    return names;
}

class ReportRequests : public ::testing::TestWithParam<const char*> {
protected:
    static void SetUpTestSuite() {
        file_ = demoShopDatabase("sqlite", *fileDir_).release();
        server_ = demoShopDatabase("postgresql", *serverDir_).release();
    }
    static void TearDownTestSuite() {
        delete file_;
        delete server_;
        file_ = server_ = nullptr;
    }
    void SetUp() override {
        if (!server_) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    }
    static inline TempDir* fileDir_ = new TempDir;
    static inline TempDir* serverDir_ = new TempDir;
    static inline db::Database* file_ = nullptr;
    static inline db::Database* server_ = nullptr;
};

TEST_P(ReportRequests, GiveTheSameRowsOnAServerAsInAFile) {
    const qx::test::GoldenStatements golden{QString("reports/golden/") + GetParam()};
    ASSERT_FALSE(golden.caseNames().isEmpty());
    std::size_t rows = 0;
    for (const QString& name : golden.caseNames()) {
        const std::string batch = golden.text(name, {{"br", "\r\n"}}).toStdString();
        const std::string what = std::string(GetParam()) + ", " + name.toStdString();
        db::ResultSet inFile, onServer;
        try {
            inFile = file_->open(batch);
            onServer = server_->open(batch);
        } catch (const db::Error& e) {
            ADD_FAILURE() << what << ": " << e.what();
            continue;
        }
        EXPECT_EQ(columnNames(onServer), columnNames(inFile)) << what;
        if (ranksWithTies(GetParam())) {
            EXPECT_EQ(onServer.rows.size(), inFile.rows.size()) << what;
            EXPECT_EQ(rankedQuantities(onServer), rankedQuantities(inFile)) << what;
        } else {
            EXPECT_EQ(sortedRows(onServer), sortedRows(inFile)) << what;
        }
        rows += inFile.rows.size();
    }
    EXPECT_GT(rows, 0u) << "the demo shop gives these reports something to show";
}

INSTANTIATE_TEST_SUITE_P(Reports, ReportRequests, ::testing::ValuesIn(kReports), [](const auto& info) {
    return std::string(info.param).substr(0, 7);
});

}  // namespace
}  // namespace qx::dbtest
