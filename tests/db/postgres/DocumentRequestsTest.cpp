// The typical requests of the document screens, end to end on both engines: the exact batches
// the entry and list screens send (their golden files) run on a shop database, and the stock
// rows, barcodes, costs and documents they leave are the same on SQLite and PostgreSQL.
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

TEST_P(DocumentRequests, ATablesColumnsComeBackWithTheirDeclaredNames) {
    // the server folds names to lower case; the shop's tables and views are read as declared
    auto groups = db->open("SELECT * FROM D1006");
    ASSERT_GE(groups.columns.size(), 3u);
    EXPECT_EQ(groups.columns[0].name, "M_ID");
    EXPECT_EQ(groups.columns[1].name, "M_NAME");
    auto balance = db->open("select * from V_CHECKKC");
    ASSERT_GT(balance.columns.size(), 6u);
    EXPECT_EQ(balance.columns[0].name, "ck_id");
    EXPECT_EQ(balance.columns[5].name, "COL_NAME");
    // a temp table's columns as the batch declared them
    auto temp = db->open("CREATE TABLE #Picked (ItemNo varchar(20), Qty int); INSERT INTO #Picked VALUES ('A', 1); SELECT * FROM #Picked");
    ASSERT_EQ(temp.columns.size(), 2u);
    EXPECT_EQ(temp.columns[0].name, "ItemNo");
    EXPECT_EQ(temp.columns[1].name, "Qty");
}

// One request of a screen, from its golden file, with the value of its "${number}".
struct Request {
    const char* golden;
    const char* caseName;
    const char* number;
};

// Every document kind's typical requests in an order that keeps checked stock above zero:
// receipts, a purchase return, a sales return, a transfer and its arrival, a sale, an order,
// a loss/gain sheet, a count sheet and the loss/gain sheet its summary writes, and deletes.
const Request kEveryKind[] = {
    {"documents/golden/Frmqxck201_1.sql", "Add", "R1"},
    {"documents/golden/Frmqxck201_1.sql", "Add", "R2"},
    {"documents/golden/Frmqxck202_1.sql", "Add", "P1"},
    {"documents/golden/Frmqxck212_1.sql", "Add", "T1"},
    {"documents/golden/Frmqxck233_1.sql", "Add", "D1"},
    {"documents/golden/Frmqxck234_1.sql", "Confirm", ""},
    {"documents/golden/Frmqxck211_1.sql", "Add", "S1"},
    {"documents/golden/Frmqxck213_1.sql", "Add", "O1"},
    {"documents/golden/Frmqxck231_1.sql", "Add", "L1"},
    {"documents/golden/Frmqxck235_1.sql", "Add", "C1"},
    {"documents/golden/Frmqxck235_2.sql", "Generate", "L2"},
    {"documents/golden/Frmqxck211.sql", "Delete", "'S1'"},
    {"documents/golden/Frmqxck212.sql", "Delete", "'T1'"},
    {"documents/golden/Frmqxck202.sql", "Delete", "'P1'"},
};

// What the requests leave behind, engine against engine: the stock rows whole, and the heads
// and lines of every document table.
const char* const kComparedQueries[] = {
    "SELECT * FROM d1802",
    "SELECT WL_ID, K_ID, COL_ID FROM D1801",
    "SELECT NOID, CK_ID, BDATE FROM D8101", "SELECT * FROM D8101A",
    "SELECT NOID, CK_ID, BDATE FROM D8102", "SELECT * FROM D8102A",
    "SELECT NOID, CK_ID, BDATE FROM D8201", "SELECT * FROM D8201A",
    "SELECT NOID, CK_ID, BDATE FROM D8202", "SELECT * FROM D8202A",
    "SELECT NOID, CK_ID, BDATE FROM D8203", "SELECT * FROM D8203A",
    "SELECT NOID, T, CK_ID, BDATE, d8301noid FROM d8300", "SELECT * FROM d8300A",
    "SELECT NOID, CK_ID, BDATE FROM d8301", "SELECT * FROM d8301A",
    "SELECT NOID, CK_ID, CK_ID_IN, BDATE, Y, YNAME, Y_WC FROM D8303", "SELECT * FROM D8303A",
};

// The shop the golden requests are written against: the documents' master data, a second
// warehouse, and the transfer T0305 of K0101 the arrival check confirms, made from stock.
constexpr const char* kTransferToConfirm =
    "INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('02','东门店');"
    "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES ('1','R0305','G01','01','2026-03-05','U1','');"
    "INSERT INTO D1801 VALUES ('K0101','K01','01');"
    "INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',5,5,0,0,0,0,0,0,0,0,10,100,'');"
    "INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE,STRPARAM1,USER_ID,NOTE) VALUES ('T0305','1','01','02','2026-03-06','','U1','');"
    "INSERT INTO D8303A VALUES ('T0305','K0101','K01','01','01','02',3,2,0,0,0,0,0,0,0,0,0,0,25,125,'',0,0,0,0,0,0,0,0,0,0);";

TEST(DocumentKindsOnBothEngines, EveryKindsTypicalRequestsLeaveTheSameShopOnAServerAsInAFile) {
    TempDir fileDir, serverDir;
    auto file = newShopDatabase("sqlite", fileDir);
    auto server = newShopDatabase("postgresql", serverDir);
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
    for (db::Database* shop : {file.get(), server.get()}) {
        shop->execute(kDocumentMasterData);
        shop->execute(kTransferToConfirm);
    }
    for (const Request& request : kEveryKind) {
        const qx::test::GoldenStatements golden{request.golden};
        const std::string batch = golden.text(request.caseName, {{"number", request.number}}).toStdString();
        const std::string what = std::string(request.golden) + " " + request.caseName;
        ASSERT_FALSE(batch.empty()) << what;
        EXPECT_NO_THROW(file->execute(batch)) << what << " in the file";
        EXPECT_NO_THROW(server->execute(batch)) << what << " on the server";
        for (const char* query : kComparedQueries)
            EXPECT_EQ(sortedRows(server->open(query)), sortedRows(file->open(query))) << what << ": " << query;
    }
    // the requests did move stock: every kind posted, the deletes took their documents back
    EXPECT_EQ(count(*server, "D8101"), 3);
    EXPECT_EQ(count(*server, "D8303", "NOID='T0305' AND Y=1"), 1) << "the arrival was confirmed";
    EXPECT_EQ(count(*server, "d8301"), 2) << "the loss/gain sheet and the one the count summary wrote";
    EXPECT_EQ(count(*server, "D8201"), 0);
    EXPECT_EQ(stock(*server, "K0101", "02"), stock(*file, "K0101", "02"));
    EXPECT_NE(stock(*server, "K0101", "02"), sizes({})) << "the confirmed transfer arrived";
    EXPECT_EQ(count(*server, "V_CHECKKC"), 0) << "stock equals its recomputation on the server";
    EXPECT_EQ(count(*file, "V_CHECKKC"), 0);
}

}  // namespace
}  // namespace qx::dbtest
