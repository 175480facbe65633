// The purchase return entry screen: opening in the three modes, what a return locks, lines
// typed by hand or taken from an order, the save batch of every mode against its golden file,
// cost prices from the style, the stock the database posts, and hostile input.
#include <QLabel>
#include <QTest>

#include "tests/documents/StockDocumentFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class PurchaseReturnEntryTest : public qx::test::StockDocumentTest {
protected:
    void SetUp() override {
        StockDocumentTest::SetUp();
        setCost("K01", "25");
        setCost("K02", "40");
        addHead("D8102", "P0305", "2026-03-05", "01", 1, "G01", "首批退货");
        exec("UPDATE D8102 SET EDATE='2026-03-07 10:00:00' WHERE NOID='P0305'");
        addReturnLine("D8102A", "P0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "10", "30");
        calls.clear();
    }
    TQXCK202* list() {
        auto* l = open<TQXCK202>(202);
        l->AdoQry_Main->Locate("noid", "P0305");
        return l;
    }
    TQXCK202_1* add(TQXCK202* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    TQXCK202_1* edit(TQXCK202* l) {
        l->Act_Edit->trigger();
        return l->entry();
    }
    int lines(const QString& noid) { return count("SELECT COUNT(*) FROM D8102A WHERE NOID='" + noid + "'"); }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck202_1.sql"};
};

// ---- opening

TEST_F(PurchaseReturnEntryTest, AddStartsANewReturnWithCashTheUsersWarehouseAndReturnPrices) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    EXPECT_EQ(e->Caption(), "采购退货");
    EXPECT_EQ(e->EditMode, "Add");
    EXPECT_FALSE(e->Edit1->text().isEmpty());
    EXPECT_TRUE(e->Edit1->isEnabled());
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->CK_NAME->text(), "总仓");
    EXPECT_TRUE(e->CK_ID->isEnabled());
    EXPECT_EQ(e->JY_ID->text(), "1");
    EXPECT_EQ(e->JY_NAME->text(), "现金");
    EXPECT_EQ(e->KH_GYS_ID->text(), "");
    EXPECT_EQ(e->NOTE->text(), "");
    EXPECT_EQ(e->EDATE->text(), "");
    EXPECT_EQ(e->focusWidget(), e->KH_GYS_ID);
    EXPECT_EQ(e->DBGridEh->ColumnByField("sj")->Title, "退货价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("smoney")->Title, "金额");
    EXPECT_EQ(e->DBGridEh->ColumnByField("smoney")->Footer.ValueType, fvtSum);
    // A return has no delivery note number and keeps no barcodes.
    EXPECT_EQ(e->send_no, nullptr);
    EXPECT_EQ(e->findChild<QLineEdit*>("send_no"), nullptr);
    EXPECT_EQ(e->BarcodeDataSet, nullptr);
    delete l;
}

TEST_F(PurchaseReturnEntryTest, HeadControlsHaveTheirCaptionsAndLengths) {
    TQXCK202_1 e(nullptr);
    struct Expect {
        QWidget* control;
        const char* caption;
        int max;
    };
    for (const Expect& x : {Expect{e.Edit1, "退货单号", 12}, Expect{e.KH_GYS_ID, "供 应 商", 10},
                            Expect{e.CK_ID, "仓    库", 4}, Expect{e.SEND_ID, "送货方式", 2},
                            Expect{e.YW_ID, "采 购 员", 4}, Expect{e.JY_ID, "结算方式", 2},
                            Expect{e.NOTE, "备    注", 100}}) {
        ASSERT_NE(e.Panel_Head->CaptionOf(x.control), nullptr) << x.caption;
        EXPECT_EQ(e.Panel_Head->CaptionOf(x.control)->text(), x.caption);
        EXPECT_EQ(qobject_cast<QLineEdit*>(x.control)->maxLength(), x.max) << x.caption;
    }
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.BDATE)->text(), "开单日期");
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.EDATE)->text(), "更改日期");
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

TEST_F(PurchaseReturnEntryTest, CopyAddCopiesTheHeadWithANewNumberAndNoChangeDate) {
    TQXCK202* l = list();
    l->Act_CopyAdd->trigger();
    TQXCK202_1* e = l->entry();
    EXPECT_EQ(e->EditMode, "CopyAdd");
    EXPECT_NE(e->Edit1->text(), "P0305");
    EXPECT_EQ(e->KH_GYS_ID->text(), "G01");
    EXPECT_EQ(e->NOTE->text(), "首批退货");
    EXPECT_EQ(e->EDATE->text(), "");
    EXPECT_TRUE(e->KH_GYS_ID->isEnabled());
    EXPECT_EQ(e->LockName, "");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, TheWarehouseIsFixedByTheFirstLine) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    EXPECT_TRUE(e->CK_ID->isEnabled());
    addLine(e, "K01", "02", {"1"}, "10");
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_FALSE(e->CK_NAME->isEnabled());
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    e->Act_Quit->trigger();
    // A new return starts free again.
    l->Act_Add->trigger();
    EXPECT_TRUE(l->entry()->CK_ID->isEnabled());
    delete l;
}

TEST_F(PurchaseReturnEntryTest, TheWarehouseEditGivesTheFocusToTheGridWhenLinesChange) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    addLine(e, "K01", "02", {"1"}, "10");
    e->CK_ID->setEnabled(true);
    e->activateWindow();
    QApplication::setActiveWindow(e);
    e->CK_ID->setFocus();
    ASSERT_TRUE(e->CK_ID->hasFocus());
    e->DataSourceDataChange(e->AdoQry_Main, nullptr);
    EXPECT_FALSE(e->CK_ID->hasFocus());
    EXPECT_TRUE(e->DBGridEh->hasFocus());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    e->Modified = false;
    delete l;
}

TEST_F(PurchaseReturnEntryTest, ATakenNumberIsReplacedSilentlyUnderTheCaptionDispatchNumber) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    e->Edit1->setText("P0305");
    calls.clear();
    e->Edit1Exit(e->Edit1);
    EXPECT_NE(e->Edit1->text(), "P0305");
    EXPECT_TRUE(sink->texts().isEmpty());
    const auto opened = statements(Call::Kind::OpenSql);
    ASSERT_FALSE(opened.empty());
    EXPECT_EQ(opened.front(), "SELECT NOID FROM d8102 WHERE NOID='P0305'");
    // The number's own checks report under "出货单号", as the receipt's do.
    e->Edit1->setText("P 1");
    EXPECT_ANY_THROW(e->Edit1Exit(e->Edit1));
    EXPECT_EQ(sink->texts().back(), "出货单号不能包含空格!");
    e->Edit1->setText("P'1");
    EXPECT_ANY_THROW(e->Edit1Exit(e->Edit1));
    EXPECT_EQ(sink->texts().back(), "出货单号不能包含引号!");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, SettlementMethodTwoIsNotOffered) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    EXPECT_FALSE(e->SettlementLink->Pick("2"));
    EXPECT_TRUE(e->SettlementLink->Pick("1"));
    // Typed, it is refused as an unknown code before anything is saved.
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"1"}, "10");
    e->JY_ID->setFocus();
    e->JY_ID->clear();
    QTest::keyClicks(e->JY_ID, "2");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_FALSE(sink->texts().isEmpty());
    EXPECT_EQ(sink->texts().back(), "结算方式代码 2 不存在!");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8102 WHERE NOID='" + noid + "'"), 0);
    e->Modified = false;
    delete l;
}

TEST_F(PurchaseReturnEntryTest, QuitClosesAnOpenPickListFirst) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    e->KH_GYS_ID->ButtonClick();
    EXPECT_TRUE(e->PartnerLink->Visible());
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->PartnerLink->Visible());
    EXPECT_TRUE(e->isVisible());
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->isVisible());
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
    exec("INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('O1', '01', '2026-03-10', 'U1', '')");
    exec("INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ, MONEY, NOTE) "
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

TEST_F(PurchaseReturnEntryTest, ANegativeQuantityOrALineTotallingZeroStopsTheSave) {
    const QString message =
        "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
        "请修正以上问题后再次尝试保存!";
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"-1", "3"}, "10");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{message});
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8102 WHERE NOID='" + noid + "'"), 0);
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    sink->clear();
    ASSERT_TRUE(typeCell(e, "S0", "0"));
    ASSERT_TRUE(typeCell(e, "S1", "0"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{message});
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    EXPECT_TRUE(e->isVisible());
    e->Modified = false;
    delete l;
}

// ---- the save batch

TEST_F(PurchaseReturnEntryTest, AddSendsItsBatch) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"3", "1"}, "12");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().noid, noid);
    EXPECT_EQ(lastExec().mode, "Add");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, CopyAddSendsAnInsertBatchUnderTheNewNumber) {
    TQXCK202* l = list();
    l->Act_CopyAdd->trigger();
    TQXCK202_1* e = l->entry();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().mode, "CopyAdd");
    EXPECT_EQ(lines(noid), 1);
    delete l;
}

TEST_F(PurchaseReturnEntryTest, EditSendsTheUpdateWithTheLinesReplaced) {
    TQXCK202* l = list();
    TQXCK202_1* e = edit(l);
    addLine(e, "K02", "03", {"", "2"}, "50");
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    EXPECT_EQ(lastExec().mode, "Edit");
    delete l;
}

// ---- what the database holds

TEST_F(PurchaseReturnEntryTest, FourPiecesOfAStyleCostingTwentyFiveAreSavedAtCostOneHundred) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"3", "1"}, "12");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) + '|' + CAST(SJ AS VARCHAR) + '|' + "
                     "CAST(SMONEY AS VARCHAR) FROM D8102A WHERE NOID='" + noid + "'"),
              "25.00|100.00|12.00|48.00");
    EXPECT_EQ(scalar("SELECT TOLMONEY FROM D8102 WHERE NOID='" + noid + "'"), "48");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, EditRecomputesTheCostFromTheStylesCurrentPrice) {
    TQXCK202* l = list();
    ASSERT_EQ(scalar("SELECT DJ FROM D8102A WHERE NOID='P0305'"), "0");  // written by hand without cost
    setCost("K01", "30");
    TQXCK202_1* e = edit(l);
    e->Act_Save->trigger();
    EXPECT_EQ(lines("P0305"), 1);
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM D8102A WHERE NOID='P0305'"),
              "30.00|90.00");
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
    EXPECT_EQ(scalar("SELECT CAST(K0 AS VARCHAR) + ',' + CAST(K1 AS VARCHAR) FROM D1802 WHERE WL_ID='K0102' AND "
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

// ---- hostile input

TEST_F(PurchaseReturnEntryTest, QuotesInHeadAndLinesAreStoredAsTyped) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"1"}, "10");
    expectQuotesStoredAsTyped(e, "D8102");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, VeryLongTextsAreCutToTheirLengths) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    addLine(e, "K01", "02", {"1"}, "10");
    expectLongTextsCut(e, "D8102");
    delete l;
}

TEST_F(PurchaseReturnEntryTest, LettersInNumberCellsAreRefusedAndTheCellsKeepTheirValues) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    addLine(e, "K01", "02", {"3"}, "10");
    expectLettersRefused(e, {"S0", "S1", "S4", "STOT", "SJ", "SMONEY"});
    e->AdoQry_Main->Cancel();
    e->Modified = false;
    delete l;
}

TEST_F(PurchaseReturnEntryTest, UnknownCodesAreRefusedWithTheLookupsMessage) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01");
    expectUnknownWarehouseRefused(e);
    addLine(e, "K01", "02", {"1"}, "10");
    expectUnknownCodesRefused(e, "D8102",
                              {{e->KH_GYS_ID, "供 应 商代码 Z' 不存在!"},
                               {e->SEND_ID, "送货方式代码 Z' 不存在!"}, {e->YW_ID, "采 购 员代码 Z' 不存在!"},
                               {e->JY_ID, "结算方式代码 Z' 不存在!"}});
    delete l;
}

TEST_F(PurchaseReturnEntryTest, AnAmountTypedOnALineWithoutQuantityDerivesNothing) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    addLine(e, "K01", "02", {}, "10");
    sink->clear();
    EXPECT_TRUE(typeCell(e, "SMONEY", "45"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SJ")->AsFloat(), 10);
    EXPECT_TRUE(sink->texts().isEmpty());
    EXPECT_TRUE(sink->errors().isEmpty());
    e->AdoQry_Main->Cancel();
    e->Modified = false;
    delete l;
}

TEST_F(PurchaseReturnEntryTest, LettersInTheDateChangeNothing) {
    TQXCK202* l = list();
    expectDateKeepsADate(add(l));
    delete l;
}

// ---- how it looks

TEST_F(PurchaseReturnEntryTest, AScreenshotOfANewDocumentWithThreeLines) {
    TQXCK202* l = list();
    TQXCK202_1* e = add(l);
    fillHead(e, "G01", "换季整理");
    addLine(e, "K01", "02", {"3", "2", "4", "1"}, "12");
    addLine(e, "K02", "03", {"", "2", "3", "1"}, "82");
    addLine(e, "K01", "01", {"1", "1", "1", "1", "1"}, "12");
    EXPECT_EQ(e->DBGridEh->GetSumValue("STOT"), 21);
    expectScreenshot(e, "purchase_return_entry");
    e->AdoQry_Main->Cancel();
    delete l;
}

}  // namespace
