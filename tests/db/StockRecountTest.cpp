// The balance view on SQLite recounts the stock through qx_stock_recount: it must list exactly
// the rows, values and columns of the plain view the posting rules define (the one PostgreSQL
// keeps), on a generated shop with broken stock rows and on keys that only the tables'
// comparison makes equal (case, trailing blanks), unapproved and orphan lines, transfers not
// yet arrived and point-of-sale lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "DbTestSupport.h"
#include "db/sqlite/PostingRules.h"

namespace qx::dbtest {
namespace {

// The plain view of the posting rules beside the recounting one, under another name.
void addPlainView(db::Database& db) {
    std::string sql = db::posting::tsqlBalanceViewStatement();
    const std::string name = "CREATE VIEW V_CHECKKC";
    ASSERT_EQ(sql.rfind(name, 0), 0u);
    sql.replace(0, name.size(), "CREATE VIEW V_CHECKKC_PLAIN");
    db.execute(sql, {true});
}

db::ResultSet ordered(db::Database& db, const std::string& view) {
    return db.open("SELECT * FROM " + view + " ORDER BY wl_id, ck_id");
}

// Both views: the same columns (names and types) and the same rows.
void expectSameAsThePlainView(db::Database& db) {
    const auto recounted = ordered(db, "V_CHECKKC");
    const auto plain = ordered(db, "V_CHECKKC_PLAIN");
    ASSERT_EQ(recounted.columns.size(), plain.columns.size());
    for (std::size_t c = 0; c < plain.columns.size(); ++c) {
        EXPECT_EQ(recounted.columns[c].name, plain.columns[c].name);
        if (!plain.rows.empty()) EXPECT_EQ(recounted.columns[c].type, plain.columns[c].type) << plain.columns[c].name;
    }
    EXPECT_EQ(recounted.rows, plain.rows);
}

std::string q(const std::string& v) { return "'" + v + "'"; }

TEST(StockRecount, AGeneratedShopWithBrokenStockRowsListsWhatThePlainViewLists) {
    TempDir dir;
    std::filesystem::copy_file(sharedDemoShop(), dir.file("shop.db"));
    auto db = db::openSqlite(dir.file("shop.db"));
    addPlainView(*db);
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0) << "the demo shop balances";
    expectSameAsThePlainView(*db);

    // Stock rows broken by hand: sizes raised and lowered, openings changed, a row removed.
    const auto keys = db->open("SELECT WL_ID, CK_ID FROM d1802 ORDER BY WL_ID, CK_ID").rows;
    ASSERT_GT(keys.size(), 100u);
    std::mt19937 random(11);
    std::set<std::pair<std::string, std::string>> broken;
    std::string batch;
    for (int n = 0; n < 60; ++n) {
        const auto& key = keys[random() % keys.size()];
        const std::string wl = text(key[0]), ck = text(key[1]);
        const int size = static_cast<int>(random() % 10);
        const int delta = static_cast<int>(random() % 7) - 3;
        if (delta == 0) continue;
        const std::string column = (n % 3 == 0 ? "B" : "K") + std::to_string(size);
        batch += "UPDATE d1802 SET " + column + " = " + column + " + " + std::to_string(delta) + " WHERE WL_ID = " + q(wl) +
                 " AND CK_ID = " + q(ck) + ";";
        broken.insert({wl, ck});
    }
    db->execute(batch, {true});
    const std::string removed = text(keys[7][0]);
    db->execute("DELETE FROM d1802 WHERE WL_ID = " + q(removed) + " AND CK_ID = " + q(text(keys[7][1])), {true});
    broken.erase({removed, text(keys[7][1])});

    // A size raised by 2 and lowered by 2 again balances: count what differs now.
    const long long listed = count(*db, "V_CHECKKC");
    EXPECT_GT(listed, 20);
    EXPECT_LE(listed, static_cast<long long>(broken.size()));
    expectSameAsThePlainView(*db);

    // The repair through the view mends every listed row at once.
    db->execute("update d1802 set k0=t.c0,k1=t.c1, k2=t.c2,k3=t.c3,k4=t.c4,k5=t.c5,k6=t.c6,k7=t.c7,k8=t.c8,k9=t.c9 from V_CHECKKC t "
                "where d1802.wl_id=t.wl_id and d1802.ck_id=t.ck_id",
                {true});
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0);
    EXPECT_EQ(count(*db, "V_CHECKKC_PLAIN"), 0);
}

class StockRecountKeys : public ::testing::Test {
protected:
    void SetUp() override {
        addPlainView(db);
        db.execute(
            // approved receipts; the second's keys differ from the stock row's in case and blanks
            "INSERT INTO D8101 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'P1','G1','ZC','2026-05-01','admin','');"
            "INSERT INTO D8101A VALUES ('P1','K101','K1','01','ZC',5,4,3,0,0,0,0,0,0,0,10,120,'');"
            "INSERT INTO D8101 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'P2','G1','ZC','2026-05-02','admin','');"
            "INSERT INTO D8101A VALUES ('P2','k101 ','K1','01','zc',1,1,1,0,0,0,0,0,0,0,10,30,'');"
            // a line whose document number is written in another case than its head's
            "INSERT INTO D8101 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'PX3','G1','ZC','2026-05-03','admin','');"
            "INSERT INTO D8101A VALUES ('px3','K102','K1','02','ZC',2,0,0,0,0,0,0,0,0,0,10,20,'');"
            // an unapproved receipt, and a line with no head at all
            "INSERT INTO D8101 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (0,'P4','G1','ZC','2026-05-04','admin','');"
            "INSERT INTO D8101A VALUES ('P4','K101','K1','01','ZC',50,0,0,0,0,0,0,0,0,0,10,500,'');"
            "INSERT INTO D8101A VALUES ('P9','K101','K1','01','ZC',70,0,0,0,0,0,0,0,0,0,10,700,'');"
            // a sale with an empty size
            "INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'S1','G1','ZC','2026-05-05','admin','');"
            "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0,S1,S2) VALUES ('S1','K101','K1','01','ZC',1,NULL,1);"
            // a transfer sent but not yet arrived, and one arrived
            "INSERT INTO D8303 (NOID,T,CK_ID,CK_ID_IN,BDATE,USER_ID,Y,YDATE) VALUES ('T1',1,'ZC','MD1','2026-05-06','admin',0,NULL);"
            "INSERT INTO D8303A (NOID,WL_ID,K_ID,COL_ID,CK_ID,CK_ID_IN,S0,Y0) VALUES ('T1','K101','K1','01','ZC','MD1',2,2);"
            "INSERT INTO D8303 (NOID,T,CK_ID,CK_ID_IN,BDATE,USER_ID,Y,YDATE) VALUES ('T2',1,'ZC','MD2','2026-05-06','admin',1,'2026-05-07');"
            "INSERT INTO D8303A (NOID,WL_ID,K_ID,COL_ID,CK_ID,CK_ID_IN,S1,Y1) VALUES ('T2','K101','K1','01','ZC','MD2',1,1);"
            // point of sale: a sale and a return on one ticket, the warehouse on the head
            "INSERT INTO d712 (NOID,BDATE,CK_ID) VALUES ('R1','2026-05-08','MD2');"
            "INSERT INTO d712a (NOID,WL_ID,S0,S1) VALUES ('R1','K101',-1,1);");
    }
    Shop shop;
    db::Database& db = *shop.db;
};

TEST_F(StockRecountKeys, LinesCountWhereTheirPostingPutThem) {
    EXPECT_EQ(count(db, "d1802", "WL_ID = 'K101' AND CK_ID = 'ZC'"), 1) << "the blank and case variants posted into one row";
    EXPECT_EQ(count(db, "V_CHECKKC"), 0) << "every stock row equals its recount";
    expectSameAsThePlainView(db);
}

TEST_F(StockRecountKeys, ABrokenRowIsListedWithTheRightPairs) {
    db.execute("UPDATE d1802 SET K3 = K3 + 4 WHERE WL_ID = 'K101' AND CK_ID = 'ZC';"
               "UPDATE d1802 SET K1 = 9 WHERE WL_ID = 'K101' AND CK_ID = 'MD2'",
               {true});
    const auto rows = db.open("SELECT wl_id, ck_id, C0, C1, C2, C3, K3, k_id, wl_name, COL_NAME, ck_name, m0 FROM V_CHECKKC ORDER BY ck_id").rows;
    ASSERT_EQ(rows.size(), 2u);
    // MD2: size 0 returned at the till; size 1 arrived by transfer and sold at the till; book 9
    EXPECT_EQ(text(rows[0][1]), "MD2");
    EXPECT_EQ(integer(rows[0][2]), 1);
    EXPECT_EQ(integer(rows[0][3]), 0);
    // ZC: 5+1-1-2 in size 0, 4+1-1 in size 1 (the empty size counts nothing), 3+1-1 in size 2
    EXPECT_EQ(text(rows[1][0]), "K101");
    EXPECT_EQ(text(rows[1][1]), "ZC");
    EXPECT_EQ(integer(rows[1][2]), 3);
    EXPECT_EQ(integer(rows[1][3]), 4);
    EXPECT_EQ(integer(rows[1][4]), 3);
    EXPECT_EQ(integer(rows[1][5]), 0);
    EXPECT_EQ(integer(rows[1][6]), 4);
    EXPECT_EQ(text(rows[1][7]), "K1");
    EXPECT_EQ(text(rows[1][8]), "款一");
    EXPECT_EQ(text(rows[1][9]), "黑色");
    EXPECT_EQ(text(rows[1][10]), "总仓");
    EXPECT_EQ(text(rows[1][11]), "S");
    expectSameAsThePlainView(db);
}

TEST_F(StockRecountKeys, ApprovingAndArrivingChangeTheRecountAsThePostingDoes) {
    // Changing the stock row behind the posting's back, then letting the documents post.
    db.execute("UPDATE D8101 SET T = 1 WHERE NOID = 'P4'; UPDATE D8303 SET Y = 1, YDATE = '2026-05-09' WHERE NOID = 'T1'");
    EXPECT_EQ(count(db, "V_CHECKKC"), 0);
    db.execute("DELETE FROM d1802 WHERE WL_ID = 'K101' AND CK_ID = 'MD1'", {true});
    EXPECT_EQ(count(db, "V_CHECKKC"), 0) << "lines of a SKU and warehouse without a stock row are not listed";
    expectSameAsThePlainView(db);
}

TEST_F(StockRecountKeys, SumsBeyondThirtyTwoBitsOnTheWayStillCount) {
    // Purchases of 3,000,000,000 in all, each sold again: the stock never leaves the int range,
    // the sums of one kind do.
    std::string batch;
    for (const std::string n : {"1", "2"}) {
        batch += "INSERT INTO D8101 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'BP" + n + "','G1','MD1','2026-05-0" + n + "','admin','');"
                 "INSERT INTO D8101A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S4) VALUES ('BP" + n + "','K102','K1','02','MD1',1500000000);"
                 "INSERT INTO D8201 (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1,'BS" + n + "','G1','MD1','2026-05-0" + n + "','admin','');"
                 "INSERT INTO D8201A (NOID,WL_ID,K_ID,COL_ID,CK_ID,S4) VALUES ('BS" + n + "','K102','K1','02','MD1',1500000000);";
    }
    db.execute(batch);
    EXPECT_EQ(count(db, "V_CHECKKC"), 0);
    // an opening at the bottom of the range: stored minus opening is beyond 32 bits from the start
    db.execute("UPDATE d1802 SET B4 = -2147483648, K4 = 5 WHERE WL_ID = 'K102' AND CK_ID = 'MD1'", {true});
    EXPECT_EQ(integer(scalar(db, "SELECT C4 FROM V_CHECKKC WHERE wl_id = 'K102'")), -2147483648LL);
    expectSameAsThePlainView(db);
}

TEST_F(StockRecountKeys, ARecountBeyondTheIntegerRangeFailsAsThePlainViewDoes) {
    db.execute("UPDATE d1802 SET B0 = 2147483647 WHERE WL_ID = 'K101' AND CK_ID = 'ZC'", {true});
    for (const std::string view : {"V_CHECKKC", "V_CHECKKC_PLAIN"}) {
        SCOPED_TRACE(view);
        try {
            db.open("SELECT * FROM " + view);
            ADD_FAILURE() << "2147483647 + 3 is no int";
        } catch (const db::Error& e) {
            EXPECT_NE(std::string(e.what()).find("Arithmetic overflow error converting expression to data type int."), std::string::npos)
                << e.what();
        }
    }
}

}  // namespace
}  // namespace qx::dbtest
