// The database refuses what would corrupt the books: checked stock below zero and changes to
// documents of a closed period. Maintenance batches run with both guards off.
#include <gtest/gtest.h>

#include "DbTestSupport.h"

namespace qx::dbtest {
namespace {

class Guards : public ::testing::TestWithParam<std::string> {
protected:
    Shop shop{GetParam()};
    db::Database& db = *shop.db;
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }

    void receive(const std::string& noid, const std::string& sku, const std::string& style, long long qty,
                 const std::string& date = "2026-05-10") {
        db.execute("INSERT INTO D8101(T,NOID,CK_ID,BDATE) VALUES ('1','" + noid + "','ZC','" + date + "');" +
                   "INSERT INTO D8101A  VALUES ('" + noid + "','" + sku + "','" + style + "','01','ZC'," +
                   quotedSizes(sizes({qty})) + ",'10','10','');");
    }
    std::string saleBatch(const std::string& noid, const std::string& sku, const std::string& style, long long qty,
                          const std::string& date = "2026-05-11") {
        return "INSERT INTO D8201(T,NOID,CK_ID,BDATE) VALUES ('1','" + noid + "','ZC','" + date + "');" +
               "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('" + noid + "','" + sku + "','" + style +
               "','01','ZC','" + std::to_string(qty) + "');";
    }
};

TEST_P(Guards, CheckedStockMayNotGoBelowZeroAndNothingOfTheBatchIsKept) {
    receive("R1", "K201", "K2", 2);
    const std::string batch = "INSERT INTO D1009 (PP_ID, PP_NAME) VALUES ('P9','品牌');" + saleBatch("S1", "K201", "K2", 3);
    try {
        db.execute(batch);
        FAIL() << "the sale of 3 from a checked stock of 2 went through";
    } catch (const db::Error& e) {
        EXPECT_STREQ(e.what(), "库存不足支持本次出库业务");
    }
    EXPECT_EQ(count(db, "D1009"), 0);
    EXPECT_EQ(count(db, "D8201"), 0);
    EXPECT_EQ(count(db, "D8201A"), 0);
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({2}));
    db.execute(saleBatch("S1", "K201", "K2", 2));
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({0})) << "selling exactly the stock is fine";
}

TEST_P(Guards, ASaleOfACheckedStyleWithNoStockRowIsRefused) {
    EXPECT_THROW(db.execute(saleBatch("S1", "K202", "K2", 1)), db::Error);
    EXPECT_EQ(stock(db, "K202", "ZC")[0], -1) << "no stock row was left behind";
    EXPECT_THROW(db.execute("INSERT INTO D712 (NOID, BDATE, CK_ID) VALUES ('P1','2026-05-12','MD1');"
                            "INSERT INTO D712A (NOID, WL_ID, S0) VALUES ('P1','K201',1);"),
                 db::Error)
        << "point of sale: the style comes from the SKU";
}

TEST_P(Guards, UncheckedStockMayGoNegative) {
    db.execute(saleBatch("S1", "K101", "K1", 3));
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({-3}));
}

TEST_P(Guards, MaintenanceBatchMayDriveCheckedStockNegativeButOnlyThatBatch) {
    db.execute(saleBatch("S1", "K201", "K2", 1), db::ExecOptions{true});
    EXPECT_EQ(stock(db, "K201", "ZC"), sizes({-1}));
    EXPECT_THROW(db.execute(saleBatch("S2", "K201", "K2", 1)), db::Error) << "the next batch is guarded again";
}

TEST_P(Guards, DocumentsOfAClosedPeriodCannotBeInsertedChangedOrDeleted) {
    receive("R1", "K101", "K1", 5, "2026-02-15");
    db.execute("update SYS_CO SET CK_END_DATE ='2026-03-01'");

    try {
        receive("R2", "K101", "K1", 1, "2026-02-20");
        FAIL() << "a receipt dated in the closed period was accepted";
    } catch (const db::Error& e) {
        const std::string message = e.what();
        EXPECT_EQ(message.rfind("进货单 R2 的日期 2026-02-20 属于已结账期间（2026-03-01 之前）", 0), 0u) << message;
        EXPECT_NE(message.find("R2"), std::string::npos) << message;
        EXPECT_NE(message.find("2026-02-20"), std::string::npos) << message;
        EXPECT_NE(message.find("2026-03-01"), std::string::npos) << message;
    }
    EXPECT_THROW(db.execute("UPDATE D8101 SET NOTE='x' WHERE NOID='R1'"), db::Error);
    EXPECT_THROW(db.execute("UPDATE D8101A SET S0=1 WHERE NOID='R1'"), db::Error);
    EXPECT_THROW(db.execute("delete from D8101 Where (noid='R1')"), db::Error);
    EXPECT_THROW(db.execute("UPDATE D8101 SET BDATE='2026-02-01' WHERE NOID='R1'"), db::Error);
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({5}));

    receive("R3", "K101", "K1", 2, "2026-03-01");
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({7})) << "the open period starts on CK_END_DATE";
    EXPECT_THROW(db.execute("UPDATE D8101 SET BDATE='2026-02-28' WHERE NOID='R3'"), db::Error)
        << "a document cannot be moved into the closed period";

    db.execute("DELETE FROM[D8101]", db::ExecOptions{true});
    EXPECT_EQ(count(db, "D8101"), 0) << "clearing documents is a maintenance batch";
    EXPECT_EQ(stock(db, "K101", "ZC"), sizes({0}));
}

TEST_P(Guards, ATransferOfAClosedMonthMayStillArriveInTheOpenOne) {
    receive("R1", "K101", "K1", 5, "2026-02-10");
    db.execute("INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE) VALUES ('T1','1','ZC','MD1','2026-02-27');"
               "INSERT INTO D8303A  VALUES ('T1','K101','K1','01','ZC','MD1','2','0','0','0','0','0','0','0','0','0',0,0,'1','1','',"
               "0,0,0,0,0,0,0,0,0,0);");
    db.execute("update SYS_CO SET CK_END_DATE ='2026-03-01'");
    db.execute("UPDATE D8303 SET y=1,YDATE='2026-03-02',YNAME='李',y_note='',y_wc='0' WHERE NOID='T1';"
               "update D8303A  set  y0=2 ,y1=0 ,y2=0 ,y3=0 ,y4=0 ,y5=0 ,y6=0 ,y7=0 ,y8=0 ,y9=0 where (noid='T1') and (wl_id='K101');");
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({2}));
    EXPECT_THROW(db.execute("UPDATE D8303 SET CK_ID_IN='MD2' WHERE NOID='T1'"), db::Error) << "what was sent stays closed";
    EXPECT_THROW(db.execute("UPDATE D8303A SET S0=1 WHERE NOID='T1'"), db::Error);

    db.execute("update SYS_CO SET CK_END_DATE ='2026-04-01'");
    EXPECT_THROW(db.execute("UPDATE D8303 SET y=0 WHERE NOID='T1'"), db::Error) << "the arrival of March is closed now";
    EXPECT_THROW(db.execute("update D8303A  set  y0=1 where (noid='T1') and (wl_id='K101');"), db::Error);
    EXPECT_EQ(stock(db, "K101", "MD1"), sizes({2}));
    db.execute("UPDATE D8303 SET y_note='已核对' WHERE NOID='T1'");  // remarks stay editable
}

INSTANTIATE_TEST_SUITE_P(Engines, Guards, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
