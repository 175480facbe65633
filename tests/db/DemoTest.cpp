// The demo shop: deterministic for a seed and end date, posted through the database's own
// triggers (so its books balance), with the settings rows the module expects.
#include <gtest/gtest.h>

#include "DbTestSupport.h"
#include "db/tools/DemoData.h"

namespace qx::dbtest {
namespace {

// FNV-1a over every row of the tables the generator writes, in key order.
std::uint64_t checksum(db::Database& db) {
    const std::vector<std::string> queries = {
        "SELECT * FROM D1800 ORDER BY K_ID",          "SELECT * FROM D1801 ORDER BY WL_ID",
        "SELECT * FROM D1802 ORDER BY WL_ID, CK_ID",  "SELECT * FROM D8101 ORDER BY NOID",
        "SELECT * FROM D8101A ORDER BY NOID, WL_ID",  "SELECT * FROM D8201A ORDER BY NOID, WL_ID",
        "SELECT * FROM D8303 ORDER BY NOID",          "SELECT * FROM D8303A ORDER BY NOID, WL_ID",
        "SELECT * FROM D712A ORDER BY NOID, WL_ID",   "SELECT * FROM d8301A ORDER BY NOID, WL_ID",
        "SELECT * FROM d8300A ORDER BY NOID, WL_ID",  "SELECT * FROM sys_user ORDER BY USER_ID",
        "SELECT * FROM D1809 ORDER BY WL_ID, M_INDEX"};
    std::uint64_t hash = 1469598103934665603ull;
    for (const auto& q : queries)
        for (const auto& row : db.open(q).rows)
            for (const auto& v : row)
                for (char c : text(v) + "\x1f") hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    return hash;
}

class Demo : public ::testing::Test {
protected:
    static void SetUpTestSuite() { db_ = db::openSqlite(sharedDemoShop()).release(); }
    static void TearDownTestSuite() { delete db_; }
    static db::Database* db_;
};
db::Database* Demo::db_ = nullptr;

TEST_F(Demo, SameSeedGivesTheSameDatabaseAndAnotherSeedAnother) {
    TempDir dir;
    demo::Options options;
    options.endDate = "2026-06-30";
    options.seed = 7;
    const auto summary = demo::createDemoDatabase(dir.file("again.db"), options);
    EXPECT_EQ(summary.firstDate, "2025-07-01");
    EXPECT_EQ(summary.lastDate, "2026-06-30");
    EXPECT_EQ(summary.styles, 200);
    options.seed = 8;
    demo::createDemoDatabase(dir.file("other.db"), options);
    auto again = db::openSqlite(dir.file("again.db"));
    auto other = db::openSqlite(dir.file("other.db"));
    const auto reference = checksum(*db_);
    EXPECT_EQ(checksum(*again), reference);
    EXPECT_NE(checksum(*other), reference);
}

TEST_F(Demo, BooksBalance) {
    EXPECT_EQ(count(*db_, "V_CHECKKC"), 0);
    EXPECT_EQ(count(*db_, "D1802", "CHECK_KC=1 AND (K0<0 OR K1<0 OR K2<0 OR K3<0 OR K4<0 OR K5<0 OR K6<0 OR K7<0 OR K8<0 OR K9<0)"), 0);
}

TEST_F(Demo, AYearOfEveryDocumentKind) {
    EXPECT_EQ(text(scalar(*db_, "SELECT MIN(BDATE) FROM D8101")).substr(0, 10), "2025-07-01");
    EXPECT_EQ(text(scalar(*db_, "SELECT MAX(BDATE) FROM d712")).substr(0, 10), "2026-06-30");
    EXPECT_EQ(count(*db_, "D1800"), 200);
    EXPECT_EQ(count(*db_, "D1007"), 5);
    for (const char* table : {"D8101", "D8102", "D8201", "D8202", "D8203", "d8300", "d8301", "D8303", "d712", "D1102", "D1103", "d702",
                              "d1805", "d704", "d704a"})
        EXPECT_GT(count(*db_, table), 0) << table;
    EXPECT_GE(count(*db_, "D8303", "T=1 AND Y=0"), 2) << "transfers in transit";
    EXPECT_EQ(count(*db_, "d8300", "T=0"), 1) << "the open stocktake";
    EXPECT_GT(count(*db_, "D1809"), 0);
    for (const char* size : {"M0='S'", "M0='26'", "M0='90'", "M0='35'"}) EXPECT_EQ(count(*db_, "D1006", size), 1) << size;
}

TEST_F(Demo, DocumentDatesAreDaysAsTheEntryScreensWriteThem) {
    // A filter that ends on a day compares BDATE<='YYYY-MM-DD': a time of day would drop that day.
    for (const char* head : {"D8101", "D8102", "D8201", "D8202", "D8203", "D8303", "d8301", "d8300"})
        EXPECT_EQ(text(scalar(*db_, std::string("SELECT COUNT(*) FROM ") + head + " WHERE LEN(CONVERT(varchar(30), BDATE, 20)) > 10 AND RIGHT(CONVERT(varchar(30), BDATE, 20), 8) <> '00:00:00'")), "0")
            << head;
}

TEST_F(Demo, SettingsRowsTheModuleReads) {
    EXPECT_EQ(count(*db_, "sys_co"), 1);
    EXPECT_EQ(text(scalar(*db_, "SELECT CK_END_DATE FROM sys_co")).substr(0, 10), "2026-05-01");
    EXPECT_EQ(count(*db_, "sys_GROUP", "GROUP_ID=263"), 12);
    EXPECT_EQ(integer(scalar(*db_, "SELECT SUM(SHOW_WIDTH) FROM sys_GROUP WHERE GROUP_ID=263")), 78);
    EXPECT_EQ(count(*db_, "sys_web", "field_type='m'"), 10);
    EXPECT_GT(count(*db_, "sys_group", "GROUP_ID=204"), 0);
    EXPECT_EQ(count(*db_, "sys_group", "GROUP_ID=204 AND A=1 AND GROUP_SQL='KG_NAME'"), 1) << "preset A groups by supplier";
}

TEST_F(Demo, AdminLogsInWithTheDemoPassword) {
    auto r = db_->open("SELECT PWD_SALT, PWD_HASH FROM sys_user WHERE USER_ID='admin'");
    ASSERT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(text(r.rows[0][1]), demo::passwordHash(text(r.rows[0][0]), "admin"));
    EXPECT_NE(text(r.rows[0][1]), demo::passwordHash(text(r.rows[0][0]), "Admin"));
    EXPECT_EQ(demo::passwordHash("", "abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(count(*db_, "sys_user_ck", "USER_ID='admin' AND W=1"), 5);
}

TEST_F(Demo, NumbersContinueAfterTheDemoDocuments) {
    auto r = db_->open("SELECT MAX(NOID) FROM D8101 WHERE NOID LIKE '2012606%'");
    const std::string last = text(r.rows[0][0]);
    ASSERT_EQ(last.size(), 12u);
    EXPECT_EQ(integer(scalar(*db_, "SELECT SEQ FROM sys_noid WHERE FUNC_NO='201' AND PERIOD='2606'")), std::stoll(last.substr(7)));
}

}  // namespace
}  // namespace qx::dbtest
