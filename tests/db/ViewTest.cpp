// The views the module reads: barcodes a receipt needs, transfer warehouses, point-of-sale lines.
#include <gtest/gtest.h>

#include "DbTestSupport.h"

namespace qx::dbtest {
namespace {

class Views : public ::testing::TestWithParam<std::string> {
protected:
    Shop shop{GetParam()};
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }
};

TEST_P(Views, V1809GivesTheBarcodesOfEachSizeByTheStylesRule) {
    auto& db = *shop.db;
    db.execute("INSERT INTO D1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K301','1','K3','6900000000017');"
               "INSERT INTO D8101(T,NOID,CK_ID,BDATE) VALUES ('0','R1','ZC','2026-05-10');"
               "INSERT INTO D8101A  VALUES ('R1','K001','K0','01','ZC','1','0','0','0','0','0','0','0','0','0','1','1','');"
               "INSERT INTO D8101A  VALUES ('R1','K101','K1','01','ZC','1','0','0','0','0','0','0','0','0','0','1','1','');"
               "INSERT INTO D8101A  VALUES ('R1','K202','K2','02','ZC','1','0','0','0','0','0','0','0','0','0','1','1','');"
               "INSERT INTO D8101A  VALUES ('R1','K301','K3','01','ZC','1','0','0','0','0','0','0','0','0','0','1','1','');");
    auto r = db.open("SELECT WL_ID, mindex, K_ID, tm FROM V1809 WHERE NOID='R1' ORDER BY WL_ID, mindex");
    std::vector<std::string> got;
    for (const auto& row : r.rows) got.push_back(text(row[0]) + "/" + text(row[1]) + "/" + text(row[3]));
    const std::vector<std::string> expected = {"K001/0/K0",      "K001/1/K0",      "K001/2/K0",      "K101/0/K1BKs",
                                               "K101/1/K1BKm",   "K101/2/K1BKl",   "K202/0/K2sWH",   "K202/1/K2mWH",
                                               "K202/2/K2lWH",   "K301/1/6900000000017"};
    EXPECT_EQ(got, expected);
    // the receipt's barcode completion adds exactly the missing rows, once
    const std::string completion =
        "insert into d1809 (WL_ID, M_INDEX, K_ID, TM) SELECT V1809.WL_ID, V1809.mindex, V1809.K_ID, V1809.tm FROM V1809 LEFT OUTER "
        "JOIN D1809 ON V1809.WL_ID = D1809.WL_ID AND V1809.mindex = D1809.M_INDEX WHERE (V1809.NOID ='R1') AND (D1809.WL_ID IS NULL);";
    db.execute(completion);
    EXPECT_EQ(count(db, "D1809"), 10);
    db.execute(completion);
    EXPECT_EQ(count(db, "D1809"), 10);
}

TEST_P(Views, VD8303AListsBothWarehousesOfEachTransferLine) {
    auto& db = *shop.db;
    db.execute("INSERT INTO D8303A  VALUES ('T1','K201','K2','01','ZC','MD1','1','0','0','0','0','0','0','0','0','0',0,0,'1','1','',"
               "0,0,0,0,0,0,0,0,0,0);");
    auto r = db.open("SELECT NOID, WL_ID, K_ID, CK_ID, CHECK_KC FROM V_D8303A ORDER BY CK_ID");
    ASSERT_EQ(r.rows.size(), 2u);
    EXPECT_EQ(text(r.rows[0][3]), "MD1");
    EXPECT_EQ(text(r.rows[1][3]), "ZC");
    EXPECT_EQ(integer(r.rows[0][4]), 1);
}

TEST_P(Views, VD712JoinsTicketLinesToTheirTicketAndStyle) {
    auto& db = *shop.db;
    db.execute("INSERT INTO D712 (NOID, BDATE, CK_ID) VALUES ('P1','2026-05-12 12:00:00','MD1');"
               "INSERT INTO D712A (NOID, WL_ID, S0, S2, SJ, SMONEY) VALUES ('P1','K101',1,1,50,100);");
    auto r = db.open("SELECT BDATE, K_ID, S0+S1+S2 AS Q, SMONEY FROM V_D712 A WHERE K_ID='k1'");
    ASSERT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(text(r.rows[0][0]), "2026-05-12 12:00:00");
    EXPECT_EQ(integer(r.rows[0][2]), 2);
}

INSTANTIATE_TEST_SUITE_P(Engines, Views, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
