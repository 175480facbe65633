#include "reports/Frmqxck201g.h"

#include <QAction>

#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "reports/ReportCommon.h"

TQXCK201G* QXCK201G = nullptr;

TQXCK201G::TQXCK201G(QWidget* Owner) : TQXCK201G(Owner, "QXCK201G", "采购汇总表", "正在汇总采购数据…") {}

TQXCK201G::TQXCK201G(QWidget* Owner, const QString& name, const QString& caption, const QString& progress)
    : TFrm_Base_Qry(Owner), progress_(progress) {
    setObjectName(name);
    SetCaption(caption);
    CDS_M = new TClientDataSet(this);
    CDS_M->setObjectName("CDS_M");
    gtime = CreateSizeTitleTimer([this] { gtimeTimer(); });
    FormCreate();
}

void TQXCK201G::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    for (QAction* a : {Act_Filter, Act_ShowReport}) {
        a->setEnabled(false);
        a->setVisible(false);
    }
    Act_Locate->setText("汇总");
    AdoQry_Main->AfterScroll = [this](TDataSet*) { gtime->start(); };
    Lab_Condition->setVisible(true);
    DBGridEh->SetFooterRowVisible(true);
}

void TQXCK201G::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    SumFields = SplitFields("尺码|0,尺码|1,尺码|2,尺码|3,尺码|4,尺码|5,尺码|6,尺码|7,尺码|8,尺码|9,尺码|STOT");
    Filter = NewFilter();
    FilterForm = Filter;
    Filter->FuncNo = FuncNo;
    Filter->InitForm();
    Act_Locate->trigger();
}

TQXCK201GF* TQXCK201G::NewFilter() {
    QXCK201GF = new TQXCK201GF(this);
    return QXCK201GF;
}

void TQXCK201G::Act_LocateExecute(QObject*) {
    Filter->MoneyRight = ShowCost ? "1" : "0";
    if (Filter->ShowModal() != mrOk) return;
    QrySql = Filter->SqlText;
    Lab_Condition->setText(Filter->Description);
    if (!CDS_M->Active()) opensql(CDS_M, FuncNo, "SELECT * FROM D1006");
    Refreshing = true;
    TProgressRun::Run(this, progress_, [this] { GetData(); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201G::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!")) return;
    Refreshing = true;
    TProgressRun::Run(this, progress_, [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201G::AdoQry_MainAfterOpen() {
    // the sum footers of the quantity, amount and size columns; widths from the grouping items
    for (int i = 0; i < DBGridEh->ColumnCount(); ++i) {
        TColumnEh* c = DBGridEh->Columns(i);
        const QString f = c->FieldName;
        if (f.startsWith("尺码|") || f == "数量" || f == "金额" || f == "毛利") c->Footer.ValueType = fvtSum;
        if (f.startsWith("尺码|") && f != "尺码|合计") c->Width = 40;
        if (Filter && Filter->group_main->Locate("group_name", f)) {
            const int width = Filter->group_main->FieldByName("SHOW_WIDTH")->AsInteger();
            if (width > 0) c->Width = width;
        }
        if (f == "金额") c->Visible = ShowCost;
    }
    DBGridEh->ColumnsChanged();
    gtimeTimer();
}

void TQXCK201G::gtimeTimer() {
    gtime->stop();
    if (CDS_M->Active() && AdoQry_Main->Active() && !AdoQry_Main->IsEmpty() && AdoQry_Main->FindField("码"))
        qx::reports::setSizeTitlesOfGroup(DBGridEh, CDS_M, AdoQry_Main->FieldByName("码")->AsString(), "尺码|");
}
