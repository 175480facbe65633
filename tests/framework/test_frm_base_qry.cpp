// Frm_Base_Qry.h: the report base: statement with sums and cost visibility, drill-down, sort order.
#include "tests/framework/FrameworkScreenFixture.h"

namespace {

using namespace qx::test::framework_screens;

// --- report base

TEST_F(FrameworkScreenTest, ReportRefreshesItsStatementWithSumsAndCostVisibility) {
    db->answer("FROM d1802", table({"WL_ID", "K0", "KC", "CBJ"}, {{s("K0101"), n(2), n(2), 10.0}, {s("K0102"), n(3), n(3), 12.0}}));
    TFrm_Base_Qry report;
    Trecord rec;
    rec.FuncCode = 255;
    report.InitForm(rec);
    report.QrySql = "SELECT WL_ID, K0, KC, CBJ FROM d1802";
    report.SumFields = {"KC"};
    report.CostFields = {"CBJ"};
    report.ShowCost = false;
    report.Act_Refresh->trigger();
    EXPECT_FALSE(report.Refreshing);
    EXPECT_EQ(report.FuncNo, "255");
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(), "SELECT WL_ID, K0, KC, CBJ FROM d1802");
    EXPECT_DOUBLE_EQ(report.DBGridEh->GetSumValue("KC"), 5);
    EXPECT_EQ(report.DBGridEh->VisibleTitles(), QStringList({"商品编号", "K0", "库存"}));
    report.Act_Locate->setEnabled(true);
    EXPECT_EQ(report.Act_Locate->shortcut(), QKeySequence(Qt::Key_F3));
    EXPECT_EQ(report.Act_Refresh->shortcut(), QKeySequence(Qt::Key_F5));
}

class CountingDetail : public TFrm_Base_Detail {
public:
    using TFrm_Base_Detail::TFrm_Base_Detail;
    void InitForm(AnsiString key, TClientDataSet* master) override {
        TFrm_Base_Detail::InitForm(key, master);
        opened << key + "@" + master->FieldByName("WL_ID")->AsString();
    }
    QStringList opened;
};

TEST_F(FrameworkScreenTest, ReportDrillsDownSortsAndOrders) {
    db->answer("FROM d1802", table({"WL_ID", "KC"}, {{s("K0101"), n(2)}, {s("K0102"), n(7)}, {s("K0103"), n(5)}}));
    TFrm_Base_Qry report;
    Trecord rec;
    rec.FuncCode = 255;
    report.InitForm(rec);
    auto* detail = new CountingDetail(&report);
    report.DetailForm = detail;
    report.KeyField = "WL_ID";
    report.QrySql = "SELECT WL_ID, KC FROM d1802";
    report.Act_Refresh->trigger();
    report.AdoQry_Main->SetRecNo(2);
    qx::ui::setModalHandler([](TFrm_Base* d) {
        d->SetModalResult(mrCancel);
        return int(mrCancel);
    });
    report.DBGridEhDblClick(report.DBGridEh);
    EXPECT_EQ(detail->opened, QStringList{"K0102@K0102"});
    EXPECT_EQ(detail->FuncNo, "255");
    // A title click sorts, again descending.
    report.DBGridEh->SortByColumn(report.DBGridEh->ColumnByField("KC"));
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("KC")->AsInteger(), 2);
    report.DBGridEh->SortByColumn(report.DBGridEh->ColumnByField("KC"));
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("KC")->AsInteger(), 7);
    // The sort dialog.
    qx::ui::setModalHandler([](TFrm_Base* d) {
        auto* order = dynamic_cast<TFrm_Sys_SortOrder*>(d);
        if (!order) return int(mrCancel);
        order->Cmb_Field->setCurrentIndex(order->Cmb_Field->findData("WL_ID"));
        order->Chk_Desc->setChecked(true);
        order->btn_ok->click();
        return order->ModalResult();
    });
    report.Act_Order->trigger();
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("WL_ID")->AsString(), "K0103");
}

}  // namespace
