// Closing snapshots: a close stores the stock per SKU and warehouse at the new open month's
// first day, a reopen drops it, and stock read from a snapshot plus the movements since equals
// stock read from the opening quantities plus every movement, on a generated shop.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "DbTestSupport.h"
#include "db/procedures/ClosingSnapshots.h"

namespace qx::dbtest {
namespace {

namespace procedures = db::procedures;

// The close and reopen statements exactly as the month-end close sends them.
const std::string kClose =
    "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";
const std::string kReopen =
    "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";

std::vector<std::vector<db::Value>> sortedRows(db::ResultSet r) {
    std::sort(r.rows.begin(), r.rows.end());
    return r.rows;
}

class ClosingSnapshots : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        db = demoShopDatabase(GetParam(), dir);
        if (!db) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    }
    std::vector<std::string> periods() {
        std::vector<std::string> out;
        for (const auto& row : db->open("SELECT DISTINCT PERIOD FROM sys_ck_snapshot ORDER BY PERIOD").rows)
            out.push_back(text(row[0]).substr(0, 10));
        return out;
    }
    using Results = std::vector<std::vector<std::vector<db::Value>>>;
    Results resultsOf(const std::vector<std::string>& calls) {
        Results out;
        for (const auto& call : calls) out.push_back(db->open(call).rows);
        return out;
    }
    // Drops every snapshot: each call gives again the rows it gave with them.
    void expectTheSameWithoutSnapshots(const std::vector<std::string>& calls, const Results& with) {
        db->execute("DELETE FROM sys_ck_snapshot");
        for (std::size_t i = 0; i < calls.size(); ++i) {
            SCOPED_TRACE(calls[i]);
            const auto without = db->open(calls[i]).rows;
            EXPECT_FALSE(without.empty());
            EXPECT_EQ(with[i], without);
        }
    }
    TempDir dir;
    std::unique_ptr<db::Database> db;
};

TEST_P(ClosingSnapshots, ACloseStoresTheStockOfEverySkuAndWarehouseAndAReopenDropsIt) {
    const std::string open = text(scalar(*db, "SELECT CK_END_DATE FROM sys_co")).substr(0, 10);
    ASSERT_EQ(open, "2026-05-01");
    EXPECT_TRUE(periods().empty());
    db->execute(kClose);
    db->execute(kClose);
    EXPECT_EQ(periods(), (std::vector<std::string>{"2026-06-01", "2026-07-01"}));
    EXPECT_EQ(count(*db, "sys_ck_snapshot", "PERIOD >= '2026-07-01'"), count(*db, "d1802"));
    // Nothing moves after the last business day: the last snapshot is the stock itself.
    EXPECT_EQ(integer(scalar(*db, "SELECT COUNT(*) FROM sys_ck_snapshot s INNER JOIN d1802 k ON k.WL_ID = s.WL_ID AND "
                                  "k.CK_ID = s.CK_ID WHERE s.PERIOD >= '2026-07-01' AND (s.K0 <> k.K0 OR s.K5 <> k.K5 OR s.QTY <> k.KC)")),
              0);
    EXPECT_EQ(integer(scalar(*db, "SELECT COUNT(*) FROM sys_ck_snapshot s INNER JOIN d1801 x ON x.WL_ID = s.WL_ID INNER JOIN d1800 st "
                                  "ON st.K_ID = x.K_ID WHERE ABS(s.MONEY - s.QTY * st.DJ) > 0.01")),
              0)
        << "valued at the style's cost price";
    db->execute(kReopen);
    EXPECT_EQ(periods(), (std::vector<std::string>{"2026-06-01"}));
    db->execute(kReopen);
    EXPECT_TRUE(periods().empty());
}

// "PERIOD|WL_ID|K0,K1,...,K9" of each SKU: the snapshot's sums over the warehouses as stored, or
// summed from its rows.
std::vector<std::string> skuSums(db::Database& db, const std::string& sql) {
    std::vector<std::string> out;
    for (const auto& row : db.open(sql).rows) {
        std::string line = text(row[0]).substr(0, 10) + "|" + text(row[1]) + "|";
        for (std::size_t i = 2; i < row.size(); ++i) line += std::to_string(integer(row[i])) + ",";
        out.push_back(line);
    }
    std::sort(out.begin(), out.end());
    return out;
}

TEST_P(ClosingSnapshots, ACloseAlsoStoresTheSumsPerSkuOverTheWarehousesAndAReopenDropsThem) {
    const std::string k = "K0, K1, K2, K3, K4, K5, K6, K7, K8, K9";
    const std::string stored = "SELECT PERIOD, WL_ID, " + k + " FROM sys_ck_snapshot_sku";
    const std::string summed = "SELECT PERIOD, WL_ID, SUM(K0), SUM(K1), SUM(K2), SUM(K3), SUM(K4), SUM(K5), SUM(K6), SUM(K7), SUM(K8), "
                               "SUM(K9) FROM sys_ck_snapshot GROUP BY PERIOD, WL_ID";
    const auto closed = [&] {
        std::vector<std::string> out;
        for (const auto& row : db->open("SELECT PERIOD, ROWS_ADDED FROM sys_ck_snapshot_period ORDER BY PERIOD").rows)
            out.push_back(text(row[0]).substr(0, 10) + "|" + std::to_string(integer(row[1])));
        return out;
    };
    db->execute(kClose);
    db->execute(kClose);
    const auto sums = skuSums(*db, stored);
    EXPECT_EQ(static_cast<long long>(sums.size()), 2 * integer(scalar(*db, "SELECT COUNT(DISTINCT WL_ID) FROM d1802")));
    EXPECT_EQ(sums, skuSums(*db, summed));
    EXPECT_EQ(closed(), (std::vector<std::string>{"2026-06-01|0", "2026-07-01|0"}));
    db->execute(kReopen);
    EXPECT_EQ(closed(), (std::vector<std::string>{"2026-06-01|0"}));
    EXPECT_EQ(skuSums(*db, stored), skuSums(*db, summed));
    EXPECT_EQ(count(*db, "sys_ck_snapshot_sku", "PERIOD >= '2026-07-01'"), 0);
    db->execute(kReopen);
    EXPECT_TRUE(closed().empty());
    EXPECT_EQ(count(*db, "sys_ck_snapshot_sku"), 0);
}

// Postings make stock rows without opening quantities: the stock rows need no look after a
// close until a row with opening quantities is made or opening quantities change.
TEST_P(ClosingSnapshots, AStockRowWithOpeningQuantitiesMadeAfterTheCloseIsNoted) {
    const auto rowsAdded = [&] { return integer(scalar(*db, "SELECT ROWS_ADDED FROM sys_ck_snapshot_period WHERE PERIOD = '2026-06-01'")); };
    db->execute(kClose);  // open month: June
    EXPECT_EQ(rowsAdded(), 0);
    const std::string ck = text(scalar(*db, "SELECT TOP 1 CK_ID FROM d1007 ORDER BY CK_ID"));
    const std::string wl = text(scalar(*db, "SELECT TOP 1 s.WL_ID FROM d1801 s WHERE NOT EXISTS (SELECT 1 FROM d1802 k WHERE "
                                            "k.WL_ID = s.WL_ID AND k.CK_ID = '" + ck + "') ORDER BY s.WL_ID"));
    ASSERT_FALSE(wl.empty());
    db->execute("INSERT INTO D8101 (T, NOID, CK_ID, BDATE, USER_ID) VALUES (1, 'SNAP3', '" + ck + "', '2026-06-03', 'admin');"
                "INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S2) SELECT 'SNAP3', WL_ID, K_ID, COL_ID, '" + ck +
                "', 5 FROM d1801 WHERE WL_ID = '" + wl + "'");
    ASSERT_EQ(count(*db, "d1802", "WL_ID = '" + wl + "' AND CK_ID = '" + ck + "'"), 1) << "the receipt made the stock row";
    EXPECT_EQ(rowsAdded(), 0);
    const std::vector<std::string> calls = {"EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1",
                                            "EXEC SYS_ZM @param3=1,@BDATE='2026-06-02',@EDATE='2026-06-30',@ck_id1='',@param2=0"};
    const auto with = resultsOf(calls);
    db->execute("UPDATE sys_ck_snapshot_period SET ROWS_ADDED = 1");
    EXPECT_EQ(resultsOf(calls), with) << "looking at the stock rows finds nothing more";
    db->execute("UPDATE sys_ck_snapshot_period SET ROWS_ADDED = 0");
    db->execute("UPDATE d1802 SET B2 = B2 WHERE WL_ID = '" + wl + "' AND CK_ID = '" + ck + "'", {true});
    EXPECT_EQ(rowsAdded(), 1) << "opening quantities written";
    db->execute("UPDATE sys_ck_snapshot_period SET ROWS_ADDED = 0");
    db->execute("INSERT INTO d1802 (WL_ID, CK_ID, B3, K3) SELECT TOP 1 s.WL_ID, '" + ck + "', 4, 4 FROM d1801 s WHERE NOT EXISTS (SELECT 1 "
                "FROM d1802 k WHERE k.WL_ID = s.WL_ID AND k.CK_ID = '" + ck + "') ORDER BY s.WL_ID",
                {true});
    EXPECT_EQ(rowsAdded(), 1) << "a stock row made with opening quantities";
    const auto made = resultsOf(calls);
    EXPECT_NE(made[0], with[0]) << "its opening quantities count";
    expectTheSameWithoutSnapshots(calls, made);
}

// A snapshot stored before the sums per SKU existed (a shop closed by an earlier version) is
// read row by row, with the same results.
TEST_P(ClosingSnapshots, ASnapshotWithoutSumsIsReadRowByRow) {
    db->execute(kClose);
    const std::vector<std::string> calls = {"EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1",
                                            "EXEC SYS_ZM @param3=2,@BDATE='2026-06-11',@EDATE='2026-07-01',@ck_id1='',@param2=1"};
    const auto with = resultsOf(calls);
    db->execute("DELETE FROM sys_ck_snapshot_sku; DELETE FROM sys_ck_snapshot_period");
    EXPECT_EQ(resultsOf(calls), with);
    const std::string wl = text(scalar(*db, "SELECT TOP 1 WL_ID FROM sys_ck_snapshot WHERE K0 <> 0 ORDER BY WL_ID"));
    db->execute("UPDATE sys_ck_snapshot SET K0 = K0 + 1000 WHERE WL_ID = '" + wl + "'");
    EXPECT_NE(db->open(calls[0]).rows, with[0]) << "read from the rows";
    expectTheSameWithoutSnapshots(calls, with);
}

TEST_P(ClosingSnapshots, ClosingTheSameMonthAgainReplacesItsSnapshot) {
    db->execute(kClose);
    const auto rows = count(*db, "sys_ck_snapshot");
    const auto sums = count(*db, "sys_ck_snapshot_sku");
    db->execute(kReopen);
    db->execute(kClose);
    EXPECT_EQ(count(*db, "sys_ck_snapshot"), rows);
    EXPECT_EQ(count(*db, "sys_ck_snapshot_sku"), sums);
    EXPECT_EQ(count(*db, "sys_ck_snapshot_period"), 1);
}

TEST_P(ClosingSnapshots, StockBeforeADateIsTheSameWithAndWithoutSnapshots) {
    db->execute(kClose);
    db->execute(kClose);
    for (const std::string date : {"2026-01-15", "2026-05-20", "2026-06-01", "2026-06-17", "2026-07-01", "9999-12-31"}) {
        SCOPED_TRACE(date);
        const auto with = sortedRows(db->open(procedures::stockBeforeQuery(*db, date, true)));
        const auto without = sortedRows(db->open(procedures::stockBeforeQuery(*db, date, false)));
        EXPECT_FALSE(with.empty());
        EXPECT_EQ(with, without);
    }
    EXPECT_EQ(procedures::latestSnapshotAtOrBefore(*db, "2026-06-17").substr(0, 10), "2026-06-01");
    EXPECT_EQ(procedures::latestSnapshotAtOrBefore(*db, "2026-05-31"), "");
}

TEST_P(ClosingSnapshots, StockMovementsOpenFromTheSnapshotWithTheSameResultsAsFromEveryMovement) {
    db->execute(kClose);
    db->execute(kClose);  // snapshots at June 1st and July 1st
    // a document of the open month after the snapshots, so the movements since them count too
    const std::string wl = text(scalar(*db, "SELECT TOP 1 WL_ID FROM d1802 ORDER BY WL_ID"));
    const std::string ck = text(scalar(*db, "SELECT TOP 1 CK_ID FROM d1802 WHERE WL_ID = '" + wl + "' ORDER BY CK_ID"));
    db->execute("INSERT INTO D8201 (T, NOID, CK_ID, BDATE, USER_ID) VALUES (1, 'SNAP2', '" + ck + "', '2026-07-03', 'admin');"
                "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) SELECT 'SNAP2', WL_ID, K_ID, COL_ID, '" + ck +
                "', 2 FROM d1801 WHERE WL_ID = '" + wl + "'");
    const std::vector<std::string> calls = {
        "EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1",
        "EXEC SYS_ZM @param3=1,@BDATE='2026-06-10',@EDATE='2026-06-20',@ck_id1='',@param2=1",
        "EXEC SYS_ZM @param3=2,@BDATE='2026-07-01',@EDATE='2026-08-01',@ck_id1='',@param2=0",
        "EXEC SYS_ZM @param3=0,@BDATE='2026-07-02',@EDATE='2026-08-01',@ck_id1='" + ck + "',@param2=1,@param1=1",
        "EXEC SYS_ZM @param=1,@BDATE='2026-06-15',@EDATE='2026-08-01',@wl_id='" + wl + "',@param2=1",
        "EXEC SYS_ZM @param3=1,@BDATE='2026-05-20',@EDATE='2026-06-20',@ck_id1='',@param2=1",  // starts before any snapshot
    };
    const auto with = resultsOf(calls);
    // the opening is read from the snapshot: a changed snapshot changes it (a report of every
    // warehouse reads its sums per SKU, one of a warehouse its rows)
    db->execute("UPDATE sys_ck_snapshot_sku SET K0 = K0 + 1000 WHERE PERIOD = '2026-06-01' AND WL_ID = '" + wl + "'");
    EXPECT_NE(db->open(calls[0]).rows, with[0]);
    EXPECT_EQ(db->open(calls[3]).rows, with[3]) << "not read from the sums";
    db->execute("UPDATE sys_ck_snapshot SET K0 = K0 + 1000 WHERE PERIOD = '2026-07-01' AND WL_ID = '" + wl + "' AND CK_ID = '" + ck + "'");
    EXPECT_NE(db->open(calls[3]).rows, with[3]);
    expectTheSameWithoutSnapshots(calls, with);
}

// The opening from a snapshot counts every stock row the snapshot holds, and the opening
// quantities of stock rows made after the close: a stock row deleted after the close (its
// movements still count without the snapshot) and a new one with an opening quantity give the
// same results with and without the snapshot.
TEST_P(ClosingSnapshots, StockRowsDeletedOrMadeAfterTheCloseOpenAsWithoutTheSnapshot) {
    db->execute(kClose);  // open month: June
    const std::string gone = text(scalar(*db, "SELECT TOP 1 WL_ID + '|' + CK_ID FROM d1802 WHERE B0 + B1 + B2 + B3 + B4 + B5 + B6 + B7 + "
                                              "B8 + B9 = 0 AND KC <> 0 ORDER BY WL_ID DESC"));
    const std::string goneWl = gone.substr(0, gone.find('|')), goneCk = gone.substr(gone.find('|') + 1);
    db->execute("DELETE FROM d1802 WHERE WL_ID = '" + goneWl + "' AND CK_ID = '" + goneCk + "'", {true});
    const std::string madeWl = text(scalar(*db, "SELECT TOP 1 s.WL_ID FROM d1801 s WHERE NOT EXISTS (SELECT 1 FROM d1802 k WHERE "
                                                "k.WL_ID = s.WL_ID AND k.CK_ID = '" + goneCk + "') ORDER BY s.WL_ID"));
    ASSERT_FALSE(madeWl.empty());
    db->execute("INSERT INTO d1802 (WL_ID, CK_ID, B1, K1) VALUES ('" + madeWl + "', '" + goneCk + "', 7, 7)", {true});
    const std::vector<std::string> calls = {
        "EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1",
        "EXEC SYS_ZM @param3=1,@BDATE='2026-06-05',@EDATE='2026-07-01',@ck_id1='" + goneCk + "',@param2=1",
        "EXEC SYS_ZM @param=1,@BDATE='2026-06-01',@EDATE='2026-07-01',@wl_id='" + goneWl + "',@param2=1",
        "EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@wl_id='" + madeWl + "',@ck_id1='" + goneCk + "',@param2=1",
    };
    const auto with = resultsOf(calls);
    const auto made = db->open(calls[3]).rows;
    ASSERT_EQ(made.size(), 1u);
    EXPECT_EQ(integer(made[0][6]), 1) << "size position 1";
    EXPECT_EQ(integer(made[0][7]), 7) << "the new row's opening quantity";
    expectTheSameWithoutSnapshots(calls, with);
}

// A shop enters its documents about in the order of their dates, so the movement summary from
// a snapshot reads the lines written since the first document of the open month in one pass;
// documents of the open month written long before (entered late, or moved to a later date)
// and a line whose number differs from its head's in letter case count once, as without it.
TEST_P(ClosingSnapshots, LinesWrittenOutOfTheOrderOfTheirDatesCountOnceFromTheSnapshot) {
    // two of the first documents written move into June, before the close
    for (const char* head : {"D8201", "D8101"})
        db->execute(std::string("UPDATE ") + head + " SET BDATE = '2026-06-15' WHERE NOID = (SELECT MIN(NOID) FROM " + head + ")",
                    {true});
    db->execute(kClose);  // open month: June
    const std::string wl = text(scalar(*db, "SELECT TOP 1 WL_ID FROM d1802 WHERE CHECK_KC = 0 ORDER BY WL_ID"));
    const std::string ck = text(scalar(*db, "SELECT TOP 1 CK_ID FROM d1802 WHERE WL_ID = '" + wl + "' ORDER BY CK_ID"));
    db->execute("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, USER_ID) VALUES (1, 'SNAPCASE', 'G1', '" + ck +
                "', '2026-06-21', 'admin');"
                "INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S3) SELECT 'snapcase', WL_ID, K_ID, COL_ID, '" + ck +
                "', 4 FROM d1801 WHERE WL_ID = '" + wl + "'");
    const std::vector<std::string> calls = {
        "EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1",
        "EXEC SYS_ZM @param3=1,@BDATE='2026-06-16',@EDATE='2026-07-01',@ck_id1='',@param2=1",
        "EXEC SYS_ZM @param3=2,@BDATE='2026-06-01',@EDATE='2026-06-15',@ck_id1='" + ck + "',@param2=0",
    };
    const auto with = resultsOf(calls);
    // the late line counts in June's purchases (IN6) of its SKU's size 3
    bool seen = false;
    for (const auto& row : with[0])
        if (text(row[0]) == wl && integer(row[6]) == 3) seen = integer(row[12]) >= 4;
    EXPECT_TRUE(seen) << "the line of another letter case counts";
    expectTheSameWithoutSnapshots(calls, with);
}

TEST_P(ClosingSnapshots, TheBalanceCheckFromASnapshotListsWhatTheBalanceViewLists) {
    db->execute(kClose);
    db->execute(kClose);
    EXPECT_TRUE(db->open(procedures::balanceFromSnapshotQuery(*db)).rows.empty()) << "the demo shop balances";
    const std::string broken = "WL_ID IN (SELECT TOP 2 WL_ID FROM d1802 ORDER BY WL_ID)";
    db->execute("UPDATE d1802 SET K1 = K1 + 3 WHERE " + broken, {true});
    const auto view = sortedRows(db->open("select *  from V_CHECKKC"));
    const auto fromSnapshot = sortedRows(db->open(procedures::balanceFromSnapshotQuery(*db)));
    EXPECT_EQ(static_cast<long long>(view.size()), count(*db, "d1802", broken));
    EXPECT_FALSE(view.empty());
    EXPECT_EQ(fromSnapshot, view);
}

TEST_P(ClosingSnapshots, ADocumentOfTheOpenMonthAfterTheSnapshotCountsFromIt) {
    db->execute(kClose);  // open month: June
    const std::string wl = text(scalar(*db, "SELECT TOP 1 WL_ID FROM d1802 WHERE CHECK_KC = 0 ORDER BY WL_ID"));
    const std::string ck = text(scalar(*db, "SELECT TOP 1 CK_ID FROM d1802 WHERE WL_ID = '" + wl + "' ORDER BY CK_ID"));
    db->execute("INSERT INTO D8201 (T, NOID, CK_ID, BDATE, USER_ID) VALUES (1, 'SNAP1', '" + ck + "', '2026-06-20', 'admin');"
                "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) SELECT 'SNAP1', WL_ID, K_ID, COL_ID, '" + ck +
                "', 2 FROM d1801 WHERE WL_ID = '" + wl + "'");
    const auto with = sortedRows(db->open(procedures::stockBeforeQuery(*db, "2026-06-21", true)));
    const auto without = sortedRows(db->open(procedures::stockBeforeQuery(*db, "2026-06-21", false)));
    EXPECT_EQ(with, without);
}

INSTANTIATE_TEST_SUITE_P(Engines, ClosingSnapshots, ::testing::ValuesIn(engines()), engineTestName);

// The same shop closed on both engines keeps the same snapshot, row for row.
TEST(ClosingSnapshotsOnBothEngines, TheSameShopKeepsTheSameSnapshot) {
    TempDir dir;
    auto file = demoShopDatabase("sqlite", dir);
    auto server = demoShopDatabase("postgresql", dir);
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    const std::string rows = "SELECT PERIOD, WL_ID, CK_ID, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9, QTY, MONEY FROM sys_ck_snapshot";
    std::vector<std::vector<std::vector<db::Value>>> snapshots;
    for (db::Database* db : {file.get(), server.get()}) {
        db->execute("UPDATE d1800 SET DJ = 12.35 WHERE K_ID IN (SELECT TOP 5 K_ID FROM d1800 ORDER BY K_ID)");
        db->execute(kClose);
        auto r = db->open(rows);
        for (auto& row : r.rows) {
            row[0] = text(row[0]).substr(0, 10);
            const auto* money = std::get_if<double>(&row.back());
            row.back() = std::round((money ? *money : static_cast<double>(integer(row.back()))) * 100) / 100;  // to the cent
            for (std::size_t i = 3; i + 1 < row.size(); ++i) row[i] = integer(row[i]);
        }
        snapshots.push_back(sortedRows(std::move(r)));
    }
    EXPECT_GT(snapshots[0].size(), 100u);
    EXPECT_EQ(snapshots[0], snapshots[1]);
}

}  // namespace
}  // namespace qx::dbtest
