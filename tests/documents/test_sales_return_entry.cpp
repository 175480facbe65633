// The sales return entry screen: opening, two-way price arithmetic, the total from the column
// titled "总额", the save batch of every mode against its golden file, cost prices, SKU rows
// without stock rows, stock coming back, and hostile input.
#include <QLabel>
#include <QTest>

#include "tests/documents/DocumentEntryTest.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class SalesReturnEntryTest : public qx::test::KindScreensTest<TQXCK212, 212> {
protected:
    void SetUp() override {
        KindScreensTest::SetUp();
        existingDocument("D8202", "T0305", "C01", "尺码不合", [this] {
            addReturnLine("D8202A", "T0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
        });
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck212_1.sql"};
};

// ---- opening

TEST_F(SalesReturnEntryTest, ANewReturnHasReturnPricesAndNoTagPriceOrDiscount) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    EXPECT_EQ(e->Caption(), "销售退货");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ")->Title, "退货价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Title, "总额");
    EXPECT_EQ(e->AdoQry_Main->FindField("ODJ"), nullptr);
    EXPECT_EQ(e->AdoQry_Main->FindField("ZK"), nullptr);
    delete l;
}

TEST_F(SalesReturnEntryTest, HeadControlsHaveTheirCaptionsAndLengths) {
    TQXCK212_1 e(nullptr);
    expectTradingHeadCaptions(e, "退货单号", "客    户", "业 务 员");
    EXPECT_EQ(e.PartnerLink->Table().toLower(), "d1102");
}

TEST_F(SalesReturnEntryTest, EditLocksNumberAndWarehouse) {
    TQXCK212* l = list();
    TQXCK212_1* e = edit(l);
    EXPECT_EQ(e->Edit1->text(), "T0305");
    EXPECT_EQ(e->KG_NAME->text(), "城东专卖");
    EXPECT_EQ(e->NOTE->text(), "尺码不合");
    EXPECT_EQ(e->EDATE->text(), "2026-03-07");
    EXPECT_EQ(e->LockName, "EDIT1,ck_id");
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_TRUE(e->KH_GYS_ID->isEnabled());
    delete l;
}

TEST_F(SalesReturnEntryTest, TheSettlementListOffersEveryMethodButTwo) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    e->JY_ID->ButtonClick();
    QStringList offered;
    TClientDataSet* rows = e->SettlementLink->DataSet();
    for (int r = 0; r < rows->RecordCount(); ++r)
        offered << qx::documents::lineText(rows, r, "JY_ID");
    EXPECT_EQ(offered, QStringList{"1"});
    e->SettlementLink->Close();
    delete l;
}

TEST_F(SalesReturnEntryTest, ChoosingAnOrderNeedsAWarehouseFirst) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    e->CK_ID->clear();
    e->DBGridEhDblClick1(e->DBGridEh);
    EXPECT_EQ(sink->texts(), QStringList{"在选择订单前应先填写一个有效的仓库!"});
    EXPECT_TRUE(e->AdoQry_Main->IsEmpty());
    e->Modified = false;
    delete l;
}

// ---- price arithmetic and the total

TEST_F(SalesReturnEntryTest, QuantitiesAndPriceMakeTheAmountAndTheAmountMakesThePrice) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    addLine(e, "K01", "02", {"3", "1"}, "80");
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 320);
    ASSERT_TRUE(typeCell(e, "SMONEY", "300"));
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 75);
    ASSERT_TRUE(typeCell(e, "S0", "4"));
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 375);
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete l;
}

TEST_F(SalesReturnEntryTest, TheTotalIsTheFooterOfTheColumnTitledTotalWhateverItShows) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    addLine(e, "K01", "02", {"3", "1"}, "80");
    addLine(e, "K02", "03", {"2"}, "150");
    EXPECT_EQ(e->TotalText(), "620");
    // Titles moved: the column now titled "总额" gives the total, whatever field it shows.
    e->DBGridEh->ColumnByField("SMONEY")->Title = "金额";
    e->DBGridEh->ColumnByField("SJ")->Title = "总额";
    e->DBGridEh->ColumnByField("SJ")->Footer.ValueType = fvtSum;
    EXPECT_EQ(e->TotalText(), "230");
    e->DBGridEh->ColumnByField("SJ")->Title = "退货价";
    EXPECT_EQ(e->TotalText(), "");
    e->Modified = false;
    delete l;
}

// ---- the save batch

TEST_F(SalesReturnEntryTest, AddSendsItsBatch) {
    expectAddSends(golden, "C01", "退货", [this](TQXCK212_1* e) { addLine(e, "K01", "02", {"3", "1"}, "80"); });
}

TEST_F(SalesReturnEntryTest, CopyAddSendsAnInsertBatchUnderTheNewNumber) { expectCopyAddSends(golden); }

TEST_F(SalesReturnEntryTest, EditSendsTheUpdateWithTheLinesReplaced) {
    expectEditSends(golden, [this](TQXCK212_1* e) { addLine(e, "K02", "03", {"1"}, "150"); });
}

// ---- what the database holds

TEST_F(SalesReturnEntryTest, ASavedReturnWritesCostAndPutsTheGoodsBack) {
    addStock("K0102", "01", {1, 1});
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C02");
    addLine(e, "K01", "02", {"3", "1"}, "80");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT KH_GYS_ID + '|' + CK_ID + '|' + SEND_ID + '|' + YW_ID + '|' + JY_ID + "
                     "'|' + NOTE + '|' + "
                     "CAST(TOLMONEY AS VARCHAR) FROM D8202 WHERE NOID='" +
                     noid + "'"),
              "C02|01|2|01|1|退货|320.00");
    EXPECT_EQ(
        scalar("SELECT WL_ID + '|' + CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) + '|' + "
               "CAST(SJ AS VARCHAR) + '|' + CAST(SMONEY AS VARCHAR) FROM D8202A WHERE NOID='" +
               noid + "'"),
        "K0102|25.00|100.00|80.00|320.00");
    EXPECT_EQ(scalar("SELECT CAST(K0 AS VARCHAR) + ',' + CAST(K1 AS VARCHAR) FROM D1802 WHERE "
                     "WL_ID='K0102' AND "
                     "CK_ID='01'"),
              "4,2");
    // Edited to one piece less, then deleted: the stock follows.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    e = edit(l);
    ASSERT_TRUE(typeCell(e, "S0", "2"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_EQ(stock("K0102", "01"), "5");
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    sink->queueAnswer(true);
    l->Act_Delete->trigger();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8202 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(lines(noid), 0);
    EXPECT_EQ(stock("K0102", "01"), "2");
    delete l;
}

TEST_F(SalesReturnEntryTest, ANeverStockedStyleColourGetsItsSkuRowButNoStockRowFromTheBatch) {
    G_SKSTR = "0";
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K02", "03", {"2"}, "150");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0203'"), 1);
    EXPECT_EQ(stockRows("K0203"), 0);
    EXPECT_FALSE(lastBatch().contains("D1802"));
    // Made effective, the goods come back into a stock row the database creates.
    exec("UPDATE D8202 SET T=1 WHERE NOID='" + noid + "'");
    EXPECT_EQ(stockRows("K0203"), 1);
    EXPECT_EQ(stock("K0203", "01"), "2");
    delete l;
}

}  // namespace

namespace qx::test {
INSTANTIATE_TEST_SUITE_P(SalesReturns, DocumentEntryTest, ::testing::Values(salesReturnEntry()),
                         entryName);
}  // namespace qx::test
