// The purchase return entry screen: opening in the three modes, what a return locks, lines
// typed by hand or taken from an order, the save batch of every mode against its golden file,
// cost prices from the style, the stock the database posts, and hostile input.
#include <QLabel>
#include <QTest>

#include "tests/documents/DocumentEntryTest.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class PurchaseReturnEntryTest : public qx::test::KindScreensTest<TQXCK202, 202> {
protected:
    void SetUp() override {
        KindScreensTest::SetUp();
        existingDocument("D8102", "P0305", "G01", "首批退货", [this] {
            addReturnLine("D8102A", "P0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "10", "30");
        });
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck202_1.sql"};
};

// ---- opening

TEST_F(PurchaseReturnEntryTest, ANewReturnHasReturnPricesNoDeliveryNoteAndNoBarcodes) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    EXPECT_EQ(e->Caption(), "采购退货");
    EXPECT_EQ(e->DBGridEh->ColumnByField("sj")->Title, "退货价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("smoney")->Title, "金额");
    EXPECT_EQ(e->DBGridEh->ColumnByField("smoney")->Footer.ValueType, fvtSum);
    EXPECT_EQ(e->findChild<QLineEdit*>("send_no"), nullptr);
    EXPECT_EQ(e->BarcodeDataSet, nullptr);
    delete l;
}

TEST_F(PurchaseReturnEntryTest, HeadControlsHaveTheirCaptionsAndLengths) {
    TQXCK202_1 e(nullptr);
    expectTradingHeadCaptions(e, "退货单号", "供 应 商", "采 购 员");
    EXPECT_EQ(e.WarehouseEdit, e.CK_ID);
    EXPECT_EQ(e.PartnerEdit, e.KH_GYS_ID);
    EXPECT_EQ(e.LineSourceField, "NOID");
}

TEST_F(PurchaseReturnEntryTest, EditShowsTheReturnAndLocksNumberSupplierAndWarehouse) {
    TQXCK202* l = list();
    TQXCK202_1* e = edit(l);
    EXPECT_EQ(e->EditMode, "Edit");
    EXPECT_EQ(e->Edit1->text(), "P0305");
    EXPECT_EQ(e->KH_GYS_ID->text(), "G01");
    EXPECT_EQ(e->KG_NAME->text(), "华美制衣");
    EXPECT_EQ(e->NOTE->text(), "首批退货");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-05");
    EXPECT_EQ(e->EDATE->text(), "2026-03-07");
    EXPECT_EQ(e->LockName, "EDIT1,kh_gys_id,ck_id");
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->KH_GYS_ID->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_TRUE(e->NOTE->isEnabled());
    EXPECT_EQ(e->focusWidget(), e->BDATE);
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    // Typing into the locked edits changes nothing; the saved return keeps supplier and warehouse.
    QTest::keyClicks(e->KH_GYS_ID, "2");
    QTest::keyClicks(e->CK_ID, "2");
    EXPECT_EQ(e->KH_GYS_ID->text(), "G01");
    EXPECT_EQ(e->CK_ID->text(), "01");
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT KH_GYS_ID + '|' + CK_ID FROM D8102 WHERE NOID='P0305'"), "G01|01");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8102"), 1);
    delete l;
}

// ---- lines

TEST_F(PurchaseReturnEntryTest, TheAmountFollowsQuantityAndPriceButNotTheOtherWay) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    addLine(e, "K01", "02", {"3", "1"}, "12");
    EXPECT_EQ(cell(e, "STOT"), "4");
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 48);
    ASSERT_TRUE(typeCell(e, "SMONEY", "40"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SJ")->AsFloat(), 12);
    ASSERT_TRUE(typeCell(e, "S2", "1"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 60);
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete l;
}

TEST_F(PurchaseReturnEntryTest, ATypedStyleClearsTheLinesOrderNumberSoItsUnitMayChange) {
    exec(
        "INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('O1', '01', '2026-03-10', "
        "'U1', '')");
    exec(
        "INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, "
        "S9, DJ, MONEY, NOTE) "
        "VALUES ('O1', 'K0102', 'K01', '02', '01', 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 15, 30, '')");
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    e->PickOrderLines("O1");
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(cell(e, "NOID"), "O1");
    // A line taken from an order keeps its unit.
    typeCell(e, "DW_NAME", "箱");
    EXPECT_EQ(sink->texts(), QStringList{"从订单取的销售记录不可更改单位!"});
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(cell(e, "DW_NAME"), "件");
    bool handled = false;
    sink->clear();
    e->showdw(e->DBGridEh, handled);
    EXPECT_TRUE(handled);
    EXPECT_EQ(sink->texts(), QStringList{"从订单取的销售记录不可更改单位!"});
    // A style typed into it makes it a line of its own: the order number goes, the unit may change.
    ASSERT_TRUE(typeCell(e, "K_ID", "K02"));
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(cell(e, "NOID"), "");
    sink->clear();
    EXPECT_TRUE(typeCell(e, "DW_NAME", "箱"));
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(cell(e, "DW_NAME"), "箱");
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    handled = true;
    e->showdw(e->DBGridEh, handled);
    EXPECT_FALSE(handled);
    e->Modified = false;
    delete l;
}

TEST_F(PurchaseReturnEntryTest, ALineTypedByHandHasNoOrderNumber) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    addLine(e, "K01", "02", {"1"}, "10");
    EXPECT_EQ(cell(e, "NOID"), "");
    EXPECT_TRUE(typeCell(e, "DW_NAME", "包"));
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete l;
}

// ---- the save batch

TEST_F(PurchaseReturnEntryTest, AddSendsItsBatch) {
    expectAddSends(golden, "G01", "退货", [this](TQXCK202_1* e) { addLine(e, "K01", "02", {"3", "1"}, "12"); });
}

TEST_F(PurchaseReturnEntryTest, CopyAddSendsAnInsertBatchUnderTheNewNumber) {
    EXPECT_EQ(lines(expectCopyAddSends(golden)), 1);
}

TEST_F(PurchaseReturnEntryTest, EditSendsTheUpdateWithTheLinesReplaced) {
    expectEditSends(golden, [this](TQXCK202_1* e) { addLine(e, "K02", "03", {"", "2"}, "50"); });
}

// ---- what the database holds

TEST_F(PurchaseReturnEntryTest, FourPiecesOfAStyleCostingTwentyFiveAreSavedAtCostOneHundred) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"3", "1"}, "12");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) + '|' + CAST(SJ AS "
                     "VARCHAR) + '|' + "
                     "CAST(SMONEY AS VARCHAR) FROM D8102A WHERE NOID='" +
                     noid + "'"),
              "25.00|100.00|12.00|48.00");
    EXPECT_EQ(scalar("SELECT TOLMONEY FROM D8102 WHERE NOID='" + noid + "'"), "48");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, AReturnTakesStockOutOfItsWarehouseWhenEffective) {
    addStock("K0102", "01", {5, 5});
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"3", "1"}, "12");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT T FROM D8102 WHERE NOID='" + noid + "'"), "1");
    EXPECT_EQ(scalar("SELECT CAST(K0 AS VARCHAR) + ',' + CAST(K1 AS VARCHAR) FROM D1802 WHERE "
                     "WL_ID='K0102' AND "
                     "CK_ID='01'"),
              "2,4");
    EXPECT_EQ(stock("K0102", "01"), "6");
    // Edit: one piece less goes back.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    e = edit(l);
    ASSERT_TRUE(typeCell(e, "S0", "2"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_EQ(stock("K0102", "01"), "7");
    // Deleted, the stock is whole again.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    sink->queueAnswer(true);
    l->Act_Delete->trigger();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8102 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(lines(noid), 0);
    EXPECT_EQ(stock("K0102", "01"), "10");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, AReturnNotYetApprovedLeavesTheStock) {
    G_SKSTR = "0";
    addStock("K0102", "01", {5});
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"3"}, "12");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT T FROM D8102 WHERE NOID='" + noid + "'"), "0");
    EXPECT_EQ(stock("K0102", "01"), "5");
    exec("UPDATE D8102 SET T=1 WHERE NOID='" + noid + "'");
    EXPECT_EQ(stock("K0102", "01"), "2");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, TheBatchWritesNoStockRowButPostingMakesOneWhenEffective) {
    G_SKSTR = "0";
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K02", "03", {"2"}, "50");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_FALSE(lastBatch().contains("D1802"));
    EXPECT_FALSE(lastBatch().contains("d1809", Qt::CaseInsensitive));
    EXPECT_EQ(stockRows("K0203"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0203'"), 1);
    // Made effective, the movement needs a stock row: the database creates it.
    exec("UPDATE D8102 SET T=1 WHERE NOID='" + noid + "'");
    EXPECT_EQ(stockRows("K0203"), 1);
    EXPECT_EQ(stock("K0203", "01"), "-2");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, TheListRowShowsTheSavedReturn) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G02");
    addLine(e, "K01", "02", {"1"}, "10");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_FALSE(e->isVisible());
    EXPECT_EQ(l->AdoQry_Main->FieldByName("noid")->AsString(), noid);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("KG_NAME")->AsString(), "利达服饰");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("SEND_NAME")->AsString(), "物流");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("USER_NAME")->AsString(), "王经理");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t")->AsInteger(), 0);
    delete l;
}

}  // namespace

namespace qx::test {
INSTANTIATE_TEST_SUITE_P(PurchaseReturns, DocumentEntryTest,
                         ::testing::Values(purchaseReturnEntry()), entryName);
}  // namespace qx::test
