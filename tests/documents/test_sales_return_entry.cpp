// The sales return entry screen: opening, two-way price arithmetic, the total from the column
// titled "总额", the save batch of every mode against its golden file, cost prices, SKU rows
// without stock rows, stock coming back, and hostile input.
#include <QLabel>
#include <QTest>

#include "tests/documents/StockDocumentFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class SalesReturnEntryTest : public qx::test::StockDocumentTest {
protected:
    void SetUp() override {
        StockDocumentTest::SetUp();
        setCost("K01", "25");
        setCost("K02", "40");
        addHead("D8202", "T0305", "2026-03-05", "01", 1, "C01", "尺码不合");
        exec("UPDATE D8202 SET EDATE='2026-03-07 10:00:00' WHERE NOID='T0305'");
        addReturnLine("D8202A", "T0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
        calls.clear();
    }
    TQXCK212* list() {
        auto* l = open<TQXCK212>(212);
        l->AdoQry_Main->Locate("noid", "T0305");
        return l;
    }
    TQXCK212_1* add(TQXCK212* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    TQXCK212_1* edit(TQXCK212* l) {
        l->Act_Edit->trigger();
        return l->entry();
    }
    double value(TQXCK212_1* e, const char* field) { return e->AdoQry_Main->FieldByName(field)->AsFloat(); }
    int lines(const QString& noid) { return count("SELECT COUNT(*) FROM D8202A WHERE NOID='" + noid + "'"); }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck212_1.sql"};
};

// ---- opening

TEST_F(SalesReturnEntryTest, AddStartsANewReturnWithCashAndTheUsersWarehouse) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    EXPECT_EQ(e->Caption(), "销售退货");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->JY_ID->text(), "1");
    EXPECT_EQ(e->JY_NAME->text(), "现金");
    EXPECT_EQ(e->KH_GYS_ID->text(), "");
    EXPECT_EQ(e->EDATE->text(), "");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ")->Title, "退货价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Title, "总额");
    // A return has no tag price and no discount.
    EXPECT_EQ(e->AdoQry_Main->FindField("ODJ"), nullptr);
    EXPECT_EQ(e->AdoQry_Main->FindField("ZK"), nullptr);
    delete l;
}

TEST_F(SalesReturnEntryTest, HeadControlsHaveTheirCaptionsAndLengths) {
    TQXCK212_1 e(nullptr);
    struct Expect {
        QWidget* control;
        const char* caption;
        int max;
    };
    for (const Expect& x : {Expect{e.Edit1, "退货单号", 12}, Expect{e.KH_GYS_ID, "客    户", 10},
                            Expect{e.CK_ID, "仓    库", 4}, Expect{e.YW_ID, "业 务 员", 4},
                            Expect{e.SEND_ID, "送货方式", 2}, Expect{e.JY_ID, "结算方式", 2},
                            Expect{e.NOTE, "备    注", 100}}) {
        ASSERT_NE(e.Panel_Head->CaptionOf(x.control), nullptr) << x.caption;
        EXPECT_EQ(e.Panel_Head->CaptionOf(x.control)->text(), x.caption);
        EXPECT_EQ(qobject_cast<QLineEdit*>(x.control)->maxLength(), x.max) << x.caption;
    }
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.BDATE)->text(), "开单日期");
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.EDATE)->text(), "更改日期");
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

TEST_F(SalesReturnEntryTest, ATakenNumberIsReplacedSilently) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    e->Edit1->setText("T0305");
    calls.clear();
    e->Edit1Exit(e->Edit1);
    EXPECT_NE(e->Edit1->text(), "T0305");
    EXPECT_TRUE(sink->texts().isEmpty());
    ASSERT_FALSE(statements(Call::Kind::OpenSql).empty());
    EXPECT_EQ(statements(Call::Kind::OpenSql).front(), "SELECT NOID FROM d8202 WHERE NOID='T0305'");
    e->Edit1->setText("T'1");
    EXPECT_ANY_THROW(e->Edit1Exit(e->Edit1));
    EXPECT_EQ(sink->texts().back(), "出货单号不能包含引号!");
    delete l;
}

TEST_F(SalesReturnEntryTest, SettlementMethodTwoIsNotOffered) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    EXPECT_FALSE(e->SettlementLink->Pick("2"));
    e->JY_ID->ButtonClick();
    QStringList offered;
    TClientDataSet* rows = e->SettlementLink->DataSet();
    for (int r = 0; r < rows->RecordCount(); ++r) offered << qx::documents::lineText(rows, r, "JY_ID");
    EXPECT_EQ(offered, QStringList{"1"});
    e->SettlementLink->Close();
    fillHead(e, "C01");
    addLine(e, "K01", "02", {"1"}, "80");
    e->JY_ID->setFocus();
    e->JY_ID->clear();
    QTest::keyClicks(e->JY_ID, "2");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_FALSE(sink->texts().isEmpty());
    EXPECT_EQ(sink->texts().back(), "结算方式代码 2 不存在!");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8202 WHERE NOID='" + noid + "'"), 0);
    e->Modified = false;
    delete l;
}

TEST_F(SalesReturnEntryTest, TheWarehouseIsFixedByTheFirstLine) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    EXPECT_TRUE(e->CK_ID->isEnabled());
    addLine(e, "K01", "02", {"1"}, "80");
    EXPECT_FALSE(e->CK_ID->isEnabled());
    e->Modified = false;
    e->AdoQry_Main->Cancel();
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

TEST_F(SalesReturnEntryTest, AnAmountOnALineWithoutQuantityIsKeptAndSaysNothing) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    addLine(e, "K01", "02", {}, "80");
    sink->clear();
    ASSERT_TRUE(typeCell(e, "STOT", "0"));
    EXPECT_TRUE(typeCell(e, "SMONEY", "150"));
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 80);
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(sink->errors().isEmpty());
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
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K01", "02", {"3", "1"}, "80");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().mode, "Add");
    delete l;
}

TEST_F(SalesReturnEntryTest, CopyAddSendsAnInsertBatchUnderTheNewNumber) {
    TQXCK212* l = list();
    l->Act_CopyAdd->trigger();
    TQXCK212_1* e = l->entry();
    const QString noid = e->Edit1->text();
    EXPECT_NE(noid, "T0305");
    EXPECT_EQ(e->EDATE->text(), "");
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    delete l;
}

TEST_F(SalesReturnEntryTest, EditSendsTheUpdateWithTheLinesReplaced) {
    TQXCK212* l = list();
    TQXCK212_1* e = edit(l);
    addLine(e, "K02", "03", {"1"}, "150");
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    delete l;
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
    EXPECT_EQ(scalar("SELECT KH_GYS_ID + '|' + CK_ID + '|' + SEND_ID + '|' + YW_ID + '|' + JY_ID + '|' + NOTE + '|' + "
                     "CAST(TOLMONEY AS VARCHAR) FROM D8202 WHERE NOID='" + noid + "'"),
              "C02|01|2|01|1|退货|320.00");
    EXPECT_EQ(scalar("SELECT WL_ID + '|' + CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) + '|' + "
                     "CAST(SJ AS VARCHAR) + '|' + CAST(SMONEY AS VARCHAR) FROM D8202A WHERE NOID='" + noid + "'"),
              "K0102|25.00|100.00|80.00|320.00");
    EXPECT_EQ(scalar("SELECT CAST(K0 AS VARCHAR) + ',' + CAST(K1 AS VARCHAR) FROM D1802 WHERE WL_ID='K0102' AND "
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

TEST_F(SalesReturnEntryTest, EditRecomputesTheCostFromTheStylesCurrentPrice) {
    setCost("K01", "30");
    TQXCK212* l = list();
    edit(l)->Act_Save->trigger();
    EXPECT_EQ(lines("T0305"), 1);
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM D8202A WHERE NOID='T0305'"),
              "30.00|90.00");
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

TEST_F(SalesReturnEntryTest, NegativeOrZeroLinesAreRefused) {
    const QString message =
        "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
        "请修正以上问题后再次尝试保存!";
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K01", "02", {}, "80");
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{message});
    sink->clear();
    ASSERT_TRUE(typeCell(e, "S3", "-2"));
    ASSERT_TRUE(typeCell(e, "S4", "3"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{message});
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    e->Modified = false;
    delete l;
}

// ---- hostile input

TEST_F(SalesReturnEntryTest, QuotesInHeadAndLinesAreStoredAsTyped) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K01", "02", {"1"}, "80");
    expectQuotesStoredAsTyped(e, "D8202");
    delete l;
}

TEST_F(SalesReturnEntryTest, VeryLongTextsAreCutToTheirLengths) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K01", "02", {"1"}, "80");
    expectLongTextsCut(e, "D8202");
    delete l;
}

TEST_F(SalesReturnEntryTest, LettersInNumberCellsAreRefusedAndTheCellsKeepTheirValues) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    addLine(e, "K01", "02", {"3"}, "80");
    expectLettersRefused(e, {"S0", "S5", "STOT", "SJ", "SMONEY"});
    e->AdoQry_Main->Cancel();
    e->Modified = false;
    delete l;
}

TEST_F(SalesReturnEntryTest, UnknownCodesAreRefusedWithTheLookupsMessage) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01");
    expectUnknownWarehouseRefused(e);
    addLine(e, "K01", "02", {"1"}, "80");
    expectUnknownCodesRefused(e, "D8202",
                              {{e->KH_GYS_ID, "客 户代码 Z' 不存在!"}, {e->SEND_ID, "送货方式代码 Z' 不存在!"},
                               {e->YW_ID, "业 务 员代码 Z' 不存在!"}, {e->JY_ID, "结算方式代码 Z' 不存在!"}});
    delete l;
}

TEST_F(SalesReturnEntryTest, LettersInTheDateChangeNothing) {
    TQXCK212* l = list();
    expectDateKeepsADate(add(l));
    delete l;
}

// ---- how it looks

TEST_F(SalesReturnEntryTest, AScreenshotOfANewDocumentWithThreeLines) {
    TQXCK212* l = list();
    TQXCK212_1* e = add(l);
    fillHead(e, "C01", "换季整理");
    addLine(e, "K01", "02", {"3", "2", "4", "1"}, "80");
    addLine(e, "K02", "03", {"", "2", "3", "1"}, "150");
    addLine(e, "K01", "01", {"1", "1", "1", "1", "1"}, "80");
    EXPECT_EQ(e->DBGridEh->GetSumValue("STOT"), 21);
    expectScreenshot(e, "sales_return_entry");
    e->AdoQry_Main->Cancel();
    delete l;
}

}  // namespace
