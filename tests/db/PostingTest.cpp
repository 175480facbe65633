// Stock posting by the database: every effective document line moves d1802 exactly once, edits
// move only the difference, and V_CHECKKC recomputes the same stock from the documents.
#include <gtest/gtest.h>

#include "DbTestSupport.h"

namespace qx::dbtest {
namespace {

struct DocLine {
    std::string sku, style, colour;
    Sizes qty;
};

std::string receiptHead(const std::string& table, const std::string& noid, int t, const std::string& ck,
                        const std::string& date = "2026-05-10 10:00:00") {
    return "INSERT INTO " + table + "(T,NOID,KH_GYS_ID,CK_ID, BDATE, USER_ID, NOTE) VALUES ('" + std::to_string(t) + "','" + noid +
           "','G1','" + ck + "','" + date + "','admin','');";
}

// Purchase receipt lines, positional as the entry screen writes them.
std::string receiptLine(const std::string& noid, const DocLine& l, const std::string& ck) {
    return "INSERT INTO D8101A  VALUES ('" + noid + "','" + l.sku + "','" + l.style + "','" + l.colour + "','" + ck + "'," +
           quotedSizes(l.qty) + ",'10','100','');";
}

std::string receipt(const std::string& noid, int t, const std::string& ck, const std::vector<DocLine>& lines) {
    std::string batch = receiptHead("D8101", noid, t, ck);
    for (const auto& l : lines) batch += receiptLine(noid, l, ck);
    return batch;
}

std::string sale(const std::string& noid, int t, const std::string& ck, const DocLine& l) {
    return receiptHead("D8201", noid, t, ck) +
           "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, SJ, SMONEY, ZK, ODJ, "
           "OMONEY, NOTE, DJ, MONEY) VALUES ('" + noid + "','" + l.sku + "','" + l.style + "','" + l.colour + "','" + ck + "'," +
           quotedSizes(l.qty) + ",'50','50','100','50','50','','20','20');";
}

std::string transfer(const std::string& noid, int t, const std::string& out, const std::string& in, const DocLine& l) {
    return "INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('" + noid + "','" + std::to_string(t) +
           "','" + out + "','" + in + "','2026-05-11','','admin','')" + "INSERT INTO D8303A  VALUES ('" + noid + "','" + l.sku + "','" +
           l.style + "','" + l.colour + "','" + out + "','" + in + "'," + quotedSizes(l.qty) + ",0,0,'50','100','',0,0,0,0,0,0,0,0,0,0);";
}

class Posting : public ::testing::TestWithParam<std::string> {
protected:
    Shop shop{GetParam()};
    db::Database& db = *shop.db;
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }

    void expectBalanced() { EXPECT_EQ(count(db, "V_CHECKKC"), 0) << "V_CHECKKC lists rows whose stock differs"; }
};

TEST_P(Posting, ApprovedPurchaseReceiptAddsItsLinesToTheLineWarehouse) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({5, 3})}, {"K201", "K2", "01", sizes({0, 0, 2})}}));
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({5, 3}));
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({0, 0, 2}));
    EXPECT_EQ(integer(scalar(db, "SELECT CHECK_KC FROM d1802 WHERE WL_ID='K201' AND CK_ID='ZC'")), 1)
        << "a stock row created on demand takes the style's CHECK_KC";
    expectBalanced();
}

TEST_P(Posting, UnapprovedReceiptPostsOnApprovalAndUnpostsWhenApprovalIsWithdrawn) {
    db.execute(receipt("R1", 0, "ZC", {{"K101", "K1", "01", sizes({4})}}));
    EXPECT_EQ(stock(db, "K101", "ZC")[0], -1) << "nothing posted, no stock row";
    db.execute("UPDATE D8101 SET T=1 WHERE NOID='R1'");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({4}));
    db.execute("UPDATE D8101 SET T=0 WHERE NOID='R1'");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({0}));
    db.execute("UPDATE D8101 SET NOTE='x' WHERE NOID='R1'");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({0})) << "a head change that keeps T moves nothing";
    expectBalanced();
}

TEST_P(Posting, PurchaseReturnSalesAndSalesReturnsMoveTheirWarehouse) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({10, 10})}}));
    db.execute(receiptHead("D8102", "P1", 1, "ZC") +
               "INSERT INTO D8102A  VALUES ('P1','K101','K1','01','ZC','1','2','0','0','0','0','0','0','0','0',0,0,'10','30','');");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({9, 8}));
    db.execute(sale("S1", 1, "ZC", {"K101", "K1", "01", sizes({3, 1})}));
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({6, 7}));
    db.execute(receiptHead("D8202", "B1", 1, "ZC") +
               "INSERT INTO D8202A  VALUES ('B1','K101','K1','01','ZC','0','1','0','0','0','0','0','0','0','0','20','20','50','50','');");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({6, 8}));
    expectBalanced();
}

TEST_P(Posting, LossGainSheetPostsSignedQuantities) {
    db.execute(receipt("R1", 1, "MD1", {{"K101", "K1", "01", sizes({5, 5})}}));
    db.execute("INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('L1','1','MD1','2026-05-12','','admin','')"
               "INSERT INTO d8301A  VALUES ('L1','K101','K1','01','MD1','2','-1','0','0','0','0','0','0','0','0','10','10','');");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({7, 4}));
    expectBalanced();
}

TEST_P(Posting, TransferLeavesOnApprovalAndArrivesWithTheCountedQuantities) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({10, 10})}}));
    db.execute(transfer("T1", 1, "ZC", "MD1", {"K101", "K1", "01", sizes({4, 2})}));
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({6, 8}));
    EXPECT_EQ(stock(db, "K101", "MD1")[0], -1) << "in transit: nothing arrived yet";
    // The arrival check: head first, then the counted quantities per line.
    db.execute("UPDATE D8303 SET y=1,YDATE=GETDATE(),YNAME='张',y_note='',y_wc='1' WHERE NOID='T1';"
               "update D8303A  set  y0=4 ,y1=1 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T1') and (wl_id='K101');");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({4, 1}));
    db.execute("update D8303A  set  y0=4 ,y1=2 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T1') and (wl_id='K101');");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({4, 2})) << "a corrected count moves only the difference";
    db.execute("UPDATE D8303 SET y=0 WHERE NOID='T1'");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({0, 0}));
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({6, 8}));
    expectBalanced();
}

TEST_P(Posting, PointOfSaleTicketsPostAlwaysSalesOutReturnsIn) {
    db.execute(receipt("R1", 1, "MD1", {{"K101", "K1", "01", sizes({5, 5})}}));
    db.execute("INSERT INTO D712 (NOID, BDATE, CK_ID, VIPID, VIPZK, YW_ID) VALUES ('P1','2026-05-12 12:00:00','MD1','',100,'');"
               "INSERT INTO D712A (NOID, WL_ID, S0, S1, SJ, SMONEY) VALUES ('P1','K101',2,-1,50,50);");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({3, 6}));
    expectBalanced();
}

TEST_P(Posting, OrdersAndStocktakeSheetsNeverPost) {
    db.execute("INSERT INTO D8203(NOID,CK_ID, BDATE,  USER_ID, NOTE) VALUES ('O1','ZC','2026-05-12','admin','');"
               "INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ, MONEY, NOTE) "
               "VALUES ('O1','K101','K1','01','ZC','5','0','0','0','0','0','0','0','0','0','10','50','');"
               "INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('C1','1','ZC','2026-05-12','','admin','');"
               "INSERT INTO d8300A  VALUES ('C1','K101','K1','01','ZC','5','0','0','0','0','0','0','0','0','0','10','50','');");
    EXPECT_EQ(count(db, "d1802"), 0);
    expectBalanced();
}

TEST_P(Posting, EditingLinesPostsOnlyTheDifference) {
    db.execute(receipt("R1", 1, "ZC", {{"K201", "K2", "01", sizes({5})}}));
    db.execute(sale("S1", 1, "ZC", {"K201", "K2", "01", sizes({4})}));
    ASSERT_EQ(stock(db, "K201", "ZC"), sizes({1}));
    // The entry screen's edit: update the head, delete every line, insert the current ones.
    // Between the delete and the insert the checked row is at -4; only the batch's end counts.
    db.execute("UPDATE D8101 SET EDATE=GETDATE(),NOTE='改' WHERE NOID='R1';delete from D8101A WHERE NOID='R1';" +
               receiptLine("R1", {"K201", "K2", "01", sizes({7})}, "ZC"));
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({3}));
    db.execute("UPDATE D8101A SET S1=2 WHERE NOID='R1'");
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({3, 2}));
    expectBalanced();
}

TEST_P(Posting, DeletingAHeadDeletesAndUnpostsItsLines) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({5})}, {"K102", "K1", "02", sizes({1, 1})}}));
    db.execute("delete from D8101 Where (noid='R1')");
    EXPECT_EQ(count(db, "D8101A"), 0);
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({0}));
    EXPECT_EQ(stock(db, "K102", "ZC"), sizes({0}));
    expectBalanced();
}

TEST_P(Posting, BalanceViewShowsADirectStockEditAndTheRepairClearsIt) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({5, 2})}}));
    db.execute("UPDATE d1802 SET K1=K1+3 WHERE WL_ID='K101'", db::ExecOptions{true});
    auto rows = db.open("SELECT ck_id, ck_name, wl_id, k_id, wl_name, COL_NAME, C0, C1, K0, K1, m0, m1 FROM V_CHECKKC");
    ASSERT_EQ(rows.rows.size(), 1u);
    EXPECT_EQ(text(rows.rows[0][0]), "ZC");
    EXPECT_EQ(text(rows.rows[0][1]), "总仓");
    EXPECT_EQ(text(rows.rows[0][2]), "K101");
    EXPECT_EQ(text(rows.rows[0][3]), "K1");
    EXPECT_EQ(text(rows.rows[0][5]), "黑色");
    EXPECT_EQ(integer(rows.rows[0][6]), 5);
    EXPECT_EQ(integer(rows.rows[0][7]), 2);
    EXPECT_EQ(integer(rows.rows[0][9]), 5);
    EXPECT_EQ(text(rows.rows[0][11]), "M");
    // The balance repair of the month-end close.
    db.execute("update d1802 set k0=t.c0,k1=t.c1, k2=t.c2,k3=t.c3,k4=t.c4,k5=t.c5,k6=t.c6,k7=t.c7,k8=t.c8,k9=t.c9 from V_CHECKKC t "
               "where d1802.wl_id=t.wl_id and d1802.ck_id=t.ck_id",
               db::ExecOptions{true});
    expectBalanced();
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({5, 2}));
}

TEST_P(Posting, OpeningStockCountsInTheBalance) {
    db.execute("INSERT INTO D1802 (WL_ID, CK_ID, BDATE, B0, B1, B2, B3, B4, B5, B6, B7, B8, B9, BEGIN_MONEY,CHECK_KC) "
               "VALUES ('K101','MD2','2026-01-01',3,0,0,0,0,0,0,0,0,0,30,0);update d1802 set k0=b0,k1=b1,k2=b2,k3=b3,k4=b4,"
               "k5=b5,k6=b6,k7=b7,k8=b8,k9=b9",
               db::ExecOptions{true});
    db.execute(sale("S1", 1, "MD2", {"K101", "K1", "01", sizes({1})}));
    EXPECT_EQ(stock(db, "K101", "MD2"), sizes({2}));
    expectBalanced();
}

TEST_P(Posting, MovementStreamNamesEveryKind) {
    db.execute(receipt("R1", 1, "ZC", {{"K101", "K1", "01", sizes({5})}}));
    db.execute(sale("S1", 1, "ZC", {"K101", "K1", "01", sizes({1})}));
    db.execute("INSERT INTO d8301(NOID,T,CK_ID,BDATE) VALUES ('L1','1','ZC','2026-05-12')"
               "INSERT INTO d8301A  VALUES ('L1','K101','K1','01','ZC','1','-1','0','0','0','0','0','0','0','0','10','10','');");
    auto r = db.open("SELECT NOID, mytype, TYPE_NAME, QTY FROM V_QX_MOVES ORDER BY NOID, QTY");
    ASSERT_EQ(r.rows.size(), 4u);
    EXPECT_EQ(text(r.rows[0][2]), "盘亏");
    EXPECT_EQ(integer(r.rows[0][3]), -1);
    EXPECT_EQ(text(r.rows[1][2]), "盘盈");
    EXPECT_EQ(text(r.rows[2][2]), "采购进货");
    EXPECT_EQ(integer(r.rows[2][1]), 6);
    EXPECT_EQ(text(r.rows[3][2]), "销售开单");
    EXPECT_EQ(integer(r.rows[3][3]), -1);
}

INSTANTIATE_TEST_SUITE_P(Engines, Posting, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
