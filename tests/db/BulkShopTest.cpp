// The large shop for measuring: as many lines as asked, every document kind dated in the order
// written, stock rows that the recomputation from the documents confirms, and closing stock =
// book stock.
#include <gtest/gtest.h>

#include <map>

#include "DbTestSupport.h"
#include "db/tools/BulkShop.h"

namespace qx::dbtest {
namespace {

TEST(BulkShop, WritesTheLinesAskedForWithConsistentStock) {
    TempDir dir;
    demo::BulkOptions options;
    options.lines = 30000;
    options.seed = 11;
    options.endDate = "2026-06-30";
    long long reported = 0;
    options.progress = [&](long long written) { reported = written; };
    const auto summary = demo::createBulkShop(dir.file("bulk.db"), options);
    EXPECT_EQ(summary.lines, 30000);
    EXPECT_GT(reported, 0);
    auto db = db::openSqlite(dir.file("bulk.db"));
    long long lines = 0;
    for (const char* t : {"D8101A", "D8102A", "D8201A", "D8202A", "d8301A", "D8303A", "d712a"}) {
        const long long n = count(*db, t);
        EXPECT_GT(n, 0) << t << " has lines";
        lines += n;
    }
    lines += count(*db, "D8203A") + count(*db, "d8300A");
    EXPECT_EQ(lines, 30000);
    EXPECT_GT(count(*db, "D8101", "T=0"), 0) << "some documents are not effective";
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0) << "stock rows agree with the documents";
    EXPECT_GT(summary.skus, summary.demo.skus);
    // dated in the order written, as a shop enters its documents: numbers follow the days (a
    // till's tickets of one day come at any hour), and the year is covered
    for (const char* head : {"D8101", "D8201", "d712"}) {
        const std::string bulk = std::string("NOID LIKE '%B%'");
        EXPECT_EQ(integer(scalar(*db, "SELECT count(*) FROM " + std::string(head) + " a JOIN " + head +
                                          " b ON a.NOID < b.NOID AND CONVERT(varchar(10), a.BDATE, 120) > CONVERT(varchar(10), b.BDATE, 120) WHERE a." + bulk + " AND b." + bulk)),
                  0)
            << head;
        EXPECT_EQ(text(scalar(*db, "SELECT CONVERT(varchar(7), MIN(BDATE), 120) FROM " + std::string(head) + " WHERE " + bulk)), "2025-07")
            << head;
        EXPECT_EQ(text(scalar(*db, "SELECT CONVERT(varchar(7), MAX(BDATE), 120) FROM " + std::string(head) + " WHERE " + bulk)), "2026-06")
            << head;
    }
    // closing at a date after the last movement = the stock rows
    auto r = db->open("EXEC SYS_ZM @param3=1,@BDATE='2026-01-01',@EDATE='2030-01-01',@ck_id1=''");
    std::map<std::string, long long> closing;
    std::size_t end = 0;
    for (std::size_t i = 0; i < r.columns.size(); ++i)
        if (r.columns[i].name == "END_KC") end = i;
    for (const auto& row : r.rows) closing[text(row[0])] = integer(row[end]);
    auto book = db->open("SELECT s.K_ID, SUM(k.KC) FROM d1802 k JOIN d1801 s ON s.WL_ID = k.WL_ID GROUP BY s.K_ID");
    for (const auto& row : book.rows) EXPECT_EQ(closing[text(row[0])], integer(row[1])) << text(row[0]);
    // and the triggers are back: a new receipt posts
    auto kc = [&] {
        auto v = db->open("SELECT KC FROM d1802 WHERE WL_ID='BK000000101' AND CK_ID='ZC'");
        return v.rows.empty() ? 0LL : integer(v.rows[0][0]);
    };
    const long long before = kc();
    db->execute("INSERT INTO D8101 (T, NOID, CK_ID, BDATE) VALUES (1, 'X1', 'ZC', '2026-06-30');"
                "INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('X1', 'BK000000101', 'BK0000001', '01', 'ZC', 1)");
    EXPECT_EQ(kc(), before + 1);
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0);
}

}  // namespace
}  // namespace qx::dbtest
