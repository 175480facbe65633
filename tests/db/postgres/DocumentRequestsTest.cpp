// The typical requests of the document screens, end to end on both engines: the exact batches
// the purchase receipt and sales ticket entries send (their golden files) run on a shop
// database, and the stock rows, barcodes and costs they leave are the same on SQLite and
// PostgreSQL.
#include <gtest/gtest.h>

#include "db/DbTestSupport.h"
#include "support/GoldenStatements.h"
#include "support/TerminalRace.h"

namespace qx::dbtest {
namespace {

// The master data the golden batches are written against (tests/support/TerminalRace.h).
using test::kDocumentMasterData;

class DocumentRequests : public ::testing::TestWithParam<std::string> {
protected:
    TempDir dir;
    std::unique_ptr<db::Database> db = newShopDatabase(GetParam(), dir);
    qx::test::GoldenStatements purchase{"documents/golden/Frmqxck201_1.sql"};
    qx::test::GoldenStatements sales{"documents/golden/Frmqxck211_1.sql"};

    void SetUp() override {
        if (!db) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
        db->execute(kDocumentMasterData);
    }
    std::string batch(const qx::test::GoldenStatements& golden, const char* name, const std::string& number = {}) {
        return golden.text(name, {{"number", QString::fromStdString(number)}}).toStdString();
    }
};

TEST_P(DocumentRequests, PurchaseReceiptsAndASaleMoveStockAsTheScreensSendThem) {
    // A new receipt, as the entry screen saves it.
    db->execute(batch(purchase, "Add", "201260300001"));
    EXPECT_EQ(stock(*db, "K0102", "01"), sizes({3, 2}));
    EXPECT_EQ(integer(scalar(*db, "SELECT CHECK_KC FROM d1802 WHERE WL_ID='K0102' AND CK_ID='01'")), 1);
    EXPECT_EQ(count(*db, "D1801", "WL_ID='K0102' AND K_ID='K01' AND COL_ID='02'"), 1) << "the new SKU is registered";
    auto barcodes = db->open("SELECT TM FROM D1809 WHERE WL_ID='K0102' ORDER BY M_INDEX");
    ASSERT_EQ(barcodes.rows.size(), 3u) << "one barcode per size of the size group";
    EXPECT_EQ(text(barcodes.rows[0][0]), "K01WHs");
    EXPECT_EQ(text(barcodes.rows[2][0]), "K01WHl");

    // An earlier receipt edited with a second line: its lines are rewritten whole.
    db->execute("INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES ('1','R0305','G01','01','2026-03-05','U1','');"
                "INSERT INTO D1801 VALUES ('K0101','K01','01');"
                "INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',1,2,0,0,0,0,0,0,0,0,10,30,'');");
    EXPECT_EQ(stock(*db, "K0101", "01"), sizes({1, 2}));
    db->execute(batch(purchase, "Edit"));
    EXPECT_EQ(stock(*db, "K0101", "01"), sizes({1, 2})) << "the unchanged line moves nothing";
    EXPECT_EQ(stock(*db, "K0203", "01"), sizes({0, 1}));
    EXPECT_EQ(integer(scalar(*db, "SELECT CHECK_KC FROM d1802 WHERE WL_ID='K0203' AND CK_ID='01'")), 0);
    EXPECT_EQ(count(*db, "D8101A", "NOID='R0305'"), 2);

    // A new sales ticket: K0102 from 3/2 to 0/1; K0203 (not checked) from 0/1 to 0/-1; the
    // lines take the style's cost.
    db->execute(batch(sales, "Add", "211260300001"));
    EXPECT_EQ(stock(*db, "K0102", "01"), sizes({0, 1}));
    EXPECT_EQ(stock(*db, "K0203", "01"), sizes({0, -1}));
    auto costs = db->open("SELECT WL_ID, DJ, MONEY FROM D8201A WHERE NOID='211260300001' ORDER BY WL_ID");
    ASSERT_EQ(costs.rows.size(), 2u);
    EXPECT_EQ(integer(costs.rows[0][1]), 25);
    EXPECT_EQ(integer(costs.rows[0][2]), 100);
    EXPECT_EQ(integer(costs.rows[1][2]), 80);
    EXPECT_EQ(count(*db, "V_CHECKKC"), 0) << "stock equals its recomputation";

    // The same ticket again would sell the checked K0102 below zero: refused, nothing kept.
    try {
        db->execute(batch(sales, "Add", "211260300002"));
        FAIL() << "a sale below zero of checked stock went through";
    } catch (const db::Error& e) {
        EXPECT_STREQ(e.what(), "库存不足支持本次出库业务");
    }
    EXPECT_EQ(count(*db, "D8201", "NOID='211260300002'"), 0);
    EXPECT_EQ(count(*db, "D8201A", "NOID='211260300002'"), 0);
    EXPECT_EQ(stock(*db, "K0102", "01"), sizes({0, 1}));
    EXPECT_EQ(stock(*db, "K0203", "01"), sizes({0, -1}));
}

INSTANTIATE_TEST_SUITE_P(Engines, DocumentRequests, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
