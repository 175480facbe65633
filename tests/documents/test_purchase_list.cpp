// The purchase receipt list and its filter: head statement with and without warehouse rights,
// the filter's condition and description, approval columns and tint.
#include <QLabel>
#include <QTest>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "tests/documents/ExpectedStatements.h"
#include "tests/documents/PurchaseFixture.h"

namespace {

using qx::test::PurchaseTest;
namespace expected = qx::test::expected;

QStringList listedNumbers(TQXCK201* list) {
    QStringList numbers;
    TClientDataSet* heads = list->AdoQry_Main;
    for (int r = 0; r < heads->RecordCount(); ++r) numbers << qx::documents::lineText(heads, r, "noid");
    numbers.sort();
    return numbers;
}

class PurchaseListTest : public PurchaseTest {
protected:
    void SetUp() override {
        PurchaseTest::SetUp();
        addReceipt("R0301", "2026-03-01", "01", 1);
        addReceipt("R0305", "2026-03-05", "01", 1);
        addReceipt("R0305B", "2026-03-05", "02", 0, "G02");
        addReceipt("R0306", "2026-03-06", "02", 1);
        addReceipt("R0220", "2026-02-20", "01", 1);
        calls.clear();
    }
};

TEST_F(PurchaseListTest, OpensOnThisMonthWithTheHeadStatementAndItsCondition) {
    TQXCK201* list = openList();
    EXPECT_EQ(list->Caption(), "采购进货");
    EXPECT_EQ(list->filter()->titDATE->text(), "(18天)");
    const auto opened = statements(qx::dataop::Call::Kind::OpenSql);
    ASSERT_FALSE(opened.empty());
    EXPECT_EQ(opened.front(), expected::headQuery() +
                                  " WHERE (D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18') ");
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-01 至 03-18 (18天)");
    EXPECT_EQ(listedNumbers(list), QStringList({"R0301", "R0305", "R0305B", "R0306"}));
    // The lines of the current receipt are asked for with its quoted number.
    EXPECT_EQ(opened[1], expected::lineQuery("'" + list->AdoQry_Main->FieldByName("noid")->AsString() + "'"));
    delete list;
}

TEST_F(PurchaseListTest, TheDayCountLabelStartsAtThirtyDays) {
    TQXCK201F filter(nullptr);
    EXPECT_EQ(filter.titDATE->text(), "(30天)");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.BDATE)->text(), "开单日期");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.EDATE)->text(), "至：");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.ExtEdit1)->text(), "送货单号");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit1)->text(), "进货单号");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit2)->text(), "至：");
    EXPECT_EQ(filter.btn_Period->text(), "时段选择");
}

TEST_F(PurchaseListTest, ReversedDatesAreRefusedAndNothingIsQueried) {
    TQXCK201* list = openList([](TQXCK201F* f) {
        f->BDATE->SetText("2026-03-10");
        f->EDATE->SetText("2026-03-02");
    });
    EXPECT_EQ(sink->texts(), QStringList{"<开始日期> 不能大于 <结束日期>!"});
    EXPECT_EQ(list->filter()->focusWidget(), list->filter()->BDATE);
    EXPECT_NE(list->filter()->ModalResult(), mrOk);
    EXPECT_TRUE(statements(qx::dataop::Call::Kind::OpenSql).empty());
    delete list;
}

TEST_F(PurchaseListTest, OneDayCountsAsOneDayAndListsThatDaysReceipts) {
    TQXCK201* list = openList([](TQXCK201F* f) {
        f->BDATE->SetText("2026-03-05");
        f->EDATE->SetText("2026-03-05");
    });
    EXPECT_EQ(list->filter()->titDATE->text(), "(1天)");
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-05 至 03-05 (1天)");
    EXPECT_EQ(list->Condition, "(D8101.BDATE>='2026-03-05') AND (D8101.BDATE<='2026-03-05') ");
    EXPECT_EQ(listedNumbers(list), QStringList({"R0305", "R0305B"}));
    delete list;
}

TEST_F(PurchaseListTest, OnlyTheUpperNumberLimitsFromAboveAlone) {
    TQXCK201* list = openList([](TQXCK201F* f) { f->Edit2->setText("R0305"); });
    EXPECT_EQ(list->Condition,
              "(D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18')   AND (D8101.NOID<='R0305')");
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-01 至 03-18 (18天) ●进货单号： 至 R0305");
    EXPECT_EQ(listedNumbers(list), QStringList({"R0301", "R0305"}));
    delete list;
}

TEST_F(PurchaseListTest, OnlyTheLowerNumberLimitsFromBelowAlone) {
    TQXCK201* list = openList([](TQXCK201F* f) { f->Edit1->setText("R0305B"); });
    EXPECT_TRUE(list->Condition.endsWith("  AND (D8101.NOID>='R0305B')"));
    EXPECT_FALSE(list->Condition.contains("<='R"));
    EXPECT_EQ(listedNumbers(list), QStringList({"R0305B", "R0306"}));
    delete list;
}

TEST_F(PurchaseListTest, EveryConditionOfTheFilterAddsToConditionAndDescription) {
    TQXCK201* list = openList([](TQXCK201F* f) {
        f->KH_ID->setText("G01");
        f->ExtEdit1->setText(" SN-R0305 ");
        f->CK_ID->setText("01");
        f->Edit1->setText("R0300");
        f->Edit2->setText("R0399");
    });
    EXPECT_EQ(list->Condition,
              "(D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18')  AND (d1103.KH_gys_ID = 'G01') AND "
              "(d8101.SEND_NO = 'SN-R0305') AND (d1007.ck_ID = '01')  AND (D8101.NOID>='R0300')  AND "
              "(D8101.NOID<='R0399')");
    EXPECT_EQ(list->Lab_Condition->text(),
              " ●开单日期:03-01 至 03-18 (18天)●供应商：G01●供应商送货单：SN-R0305●仓库：01 ●进货单号：R0300 至 R0399");
    EXPECT_EQ(listedNumbers(list), QStringList({"R0305"}));
    delete list;
}

TEST_F(PurchaseListTest, AQuoteInAFilterFieldIsATextNotTheEndOfOne) {
    TQXCK201* list = openList([](TQXCK201F* f) { f->ExtEdit1->setText("x') OR ('1'='1"); });
    EXPECT_TRUE(list->Condition.contains("(d8101.SEND_NO = 'x'') OR (''1''=''1')"));
    EXPECT_TRUE(sink->errors().isEmpty());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 0);
    delete list;
}

TEST_F(PurchaseListTest, WithoutApprovalTheApprovalColumnsAreGone) {
    TQXCK201* list = openList();
    const QStringList titles = list->DBGridEh->VisibleTitles();
    EXPECT_FALSE(titles.contains("审批"));
    EXPECT_FALSE(titles.contains("审批日期"));
    EXPECT_EQ(titles, QStringList({"单号", "供应商简称", "业务员", "仓库", "开单日期", "最后更改", "结算方式", "送货单号",
                                   "进货方式", "开单", "备注"}));
    // And nothing is tinted.
    TCellParams params;
    params.Row = 0;
    const QColor before = params.Background;
    list->DBGridEhGetCellParams(list->DBGridEh, list->DBGridEh->Columns(0), params);
    EXPECT_EQ(params.Background, before);
    delete list;
}

TEST_F(PurchaseListTest, InApprovalModeReceiptsNotYetEffectiveAreTinted) {
    G_SK = 1;
    TQXCK201* list = openList();
    const QStringList titles = list->DBGridEh->VisibleTitles();
    EXPECT_TRUE(titles.contains("审批"));
    EXPECT_TRUE(titles.contains("审批日期"));
    TClientDataSet* heads = list->AdoQry_Main;
    int tinted = 0, plain = 0;
    for (int r = 0; r < heads->RecordCount(); ++r) {
        TCellParams params;
        params.Row = r;
        params.Background = QColor(Qt::white);
        // Through the grid's own hook, as when it draws the cell.
        list->DBGridEh->OnGetCellParams(list->DBGridEh->Columns(0), params);
        const bool effective = qx::documents::lineText(heads, r, "t") == "1";
        if (effective) {
            EXPECT_EQ(params.Background, QColor(Qt::white));
            ++plain;
        } else {
            EXPECT_EQ(params.Background, QColor(0x80, 0xFF, 0xFF));
            EXPECT_EQ(qx::documents::lineText(heads, r, "noid"), "R0305B");
            ++tinted;
        }
    }
    EXPECT_EQ(tinted, 1);
    EXPECT_EQ(plain, 3);
    delete list;
}

TEST_F(PurchaseListTest, WithWarehouseRightsOtherWarehousesReceiptsNeverAppear) {
    G_CHKCK = 1;
    TQXCK201* list = openList();
    EXPECT_EQ(statements(qx::dataop::Call::Kind::OpenSql).front(),
              expected::headQuery("U1") + " WHERE (D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18') ");
    EXPECT_EQ(listedNumbers(list), QStringList({"R0301", "R0305"}));
    delete list;
    // Asking for the other warehouse explicitly changes nothing.
    list = openList([](TQXCK201F* f) { f->CK_ID->setText("02"); });
    EXPECT_TRUE(list->AdoQry_Main->IsEmpty());
    delete list;
}

TEST_F(PurchaseListTest, TheWarehouseConditionIsOffWhenOnlyOneWarehouseIsReadable) {
    G_CKCOUNT_R = 1;
    TQXCK201F filter(nullptr);
    EXPECT_FALSE(filter.CK_ID->isEnabled());
    EXPECT_FALSE(filter.CK_NAME->isEnabled());
    EXPECT_EQ(filter.WarehouseLink, nullptr);
    G_CKCOUNT_R = 0;
    TQXCK201F open(nullptr);
    EXPECT_TRUE(open.CK_ID->isEnabled());
    EXPECT_NE(open.WarehouseLink, nullptr);
}

TEST_F(PurchaseListTest, EscapeClosesAnOpenPickListBeforeTheDialog) {
    TQXCK201F filter(nullptr);
    filter.InitForm();
    filter.show();
    filter.KH_ID->ButtonClick();
    EXPECT_TRUE(filter.PartnerLink->Visible());
    int key = Qt::Key_Escape;
    filter.FormKeyDown(&filter, key, Qt::NoModifier);
    EXPECT_FALSE(filter.PartnerLink->Visible());
    EXPECT_NE(filter.ModalResult(), mrCancel);
    filter.CK_ID->ButtonClick();
    EXPECT_TRUE(filter.WarehouseLink->Visible());
    key = Qt::Key_Escape;
    filter.FormKeyDown(&filter, key, Qt::NoModifier);
    EXPECT_FALSE(filter.WarehouseLink->Visible());
    key = Qt::Key_Escape;
    filter.FormKeyDown(&filter, key, Qt::NoModifier);
    EXPECT_EQ(filter.ModalResult(), mrCancel);
}

TEST_F(PurchaseListTest, TheEntryScreenIsConfiguredWithTheListsTexts) {
    TQXCK201* list = openList();
    TQXCK201_1* e = list->entry();
    EXPECT_EQ(QXCK201_1, e);
    EXPECT_EQ(QXCK201F, list->filter());
    EXPECT_EQ(e->HeadSql, expected::headQuery());
    EXPECT_EQ(e->BodySql, expected::lineQuery("%s"));
    EXPECT_EQ(e->MoneyFields, "money,smoney");
    EXPECT_EQ(e->PriceFields, "dj,sj");
    EXPECT_EQ(e->QtyFields, "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT");
    EXPECT_EQ(e->WlField, "wl_id");
    EXPECT_EQ(e->KeyField, "NOID");
    EXPECT_EQ(e->DeleteSql, "delete from d8101 Where NOID=%S");
    for (const QString& free : e->BodyText) EXPECT_EQ(free, "");
    EXPECT_EQ(e->FuncNo, "201");
    EXPECT_EQ(e->PartnerLink->FuncNo, "201");
    EXPECT_EQ(e->WarehouseLink->FuncNo, "201");
    EXPECT_EQ(list->filter()->FuncNo, "201");
    EXPECT_EQ(list->filter()->PartnerLink->FuncNo, "201");
    delete list;
}

TEST_F(PurchaseListTest, DeletingAReceiptRemovesItsLinesAndItsStock) {
    TQXCK201* list = openList([](TQXCK201F* f) { f->Edit1->setText("R0301"); f->Edit2->setText("R0301"); });
    exec("INSERT INTO D8101A VALUES ('R0301','K0101','K01','01','01',2,0,0,0,0,0,0,0,0,0,10,20,'')");
    EXPECT_EQ(scalar("SELECT KC FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "2");
    sink->queueAnswer(true);
    list->Act_Delete->trigger();
    EXPECT_EQ(lastBatch(), "delete from d8101 Where NOID='R0301'");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8101 WHERE NOID='R0301'"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8101A WHERE NOID='R0301'"), 0);
    EXPECT_EQ(scalar("SELECT KC FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "0");
    delete list;
}

}  // namespace

namespace {

class PurchaseListLinesTest : public qx::test::PurchaseTest {
protected:
    void SetUp() override {
        PurchaseTest::SetUp();
        exec("UPDATE d1006 SET M8='48', M9='50' WHERE M_ID='01'");
        addReceipt("R0305", "2026-03-05", "01", 1);
        exec("INSERT INTO D1801 VALUES ('K0101','K01','01')");
        exec("INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',1,2,0,0,0,0,0,0,4,5,10,120,'')");
    }
};

TEST_F(PurchaseListLinesTest, SizesStandInPositionOrderWhateverOrderTheQueryGivesThem) {
    G_CM = 9;
    TQXCK201* list = openList();
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", "R0305"));
    list->RefreshDetail();
    const QStringList titles = list->DBGridEh_Detail->VisibleTitles();
    // The query returns S9 before S8; the grid shows the positions in order, the unused ones blank.
    EXPECT_EQ(titles, QStringList({"款号", "品名", "单位", "颜色", "尺码|S", "尺码|M", "尺码|L", "尺码|XL", "尺码|2XL",
                                   "尺码|", "尺码|", "尺码|", "尺码|48", "尺码|50", "合计", "进货价", "金额", "备注"}));
    EXPECT_EQ(list->DBGridEh_Detail->ColumnByField("S8")->Index() + 1, list->DBGridEh_Detail->ColumnByField("S9")->Index());
    delete list;
}

TEST_F(PurchaseListLinesTest, ThePriceHasTheEntrysCaptionAndTheAmountsFitA1200PixelScreen) {
    TQXCK201* list = openList();
    list->resize(1200, 700);
    list->show();
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", "R0305"));
    list->RefreshDetail();
    TDBGridEh* lines = list->DBGridEh_Detail;
    EXPECT_EQ(lines->ColumnByField("sj")->Title, "进货价");
    for (const char* field : {"STOT", "smoney"}) {
        const int x = lines->columnViewportPosition(lines->ColumnByField(field)->Index());
        EXPECT_GE(x, 0) << field;
        EXPECT_LT(x + lines->columnWidth(lines->ColumnByField(field)->Index()), lines->viewport()->width()) << field;
    }
    delete list;
}

}  // namespace
