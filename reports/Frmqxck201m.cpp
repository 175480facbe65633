#include "reports/Frmqxck201m.h"

#include <QAction>

#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "reports/ReportCommon.h"

TQXCK201M* QXCK201M = nullptr;

TQXCK201M::TQXCK201M(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK201M");
    SetCaption("采购进货明细查询");
    for (QAction* a : {Act_Filter, Act_ShowReport}) {
        a->setEnabled(false);
        a->setVisible(false);
    }
    DBGridEh->AutoColumns = false;
    DBGridEh->ClearColumns();
    DBGridEh->AddColumn("oid", "代号", 80);
    DBGridEh->AddColumn("oname", "名称", 110);
    DBGridEh->AddColumn("BDATE", "日期", 80);
    DBGridEh->AddColumn("NOID", "单号", 110);
    DBGridEh->AddColumn("K_id", "款号", 90);
    DBGridEh->AddColumn("WL_NAME", "品名", 110);
    DBGridEh->AddColumn("DW_NAME", "单位", 40);
    DBGridEh->AddColumn("COL_NAME", "颜色", 60);
    for (int i = 0; i <= 9; ++i) DBGridEh->AddColumn("S" + QString::number(i), "尺码|" + QString::number(i), 40);
    DBGridEh->AddColumn("STOT", "尺码|合计", 50);
    DBGridEh->AddColumn("DJ", "单价", 60);
    DBGridEh->AddColumn("MONEY", "金额", 80);
    DBGridEh->SetFooterRowVisible(true);
}

void TQXCK201M::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    KeyField = "NOID";
    CostFields = QStringList{"DJ", "MONEY"};
    SumFields = SplitFields("S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,MONEY");
    Filter = new TQXCK201MF(this);
    QXCK201MF = Filter;
    FilterForm = Filter;
    Filter->FuncNo = FuncNo;
    Filter->InitForm();
    Act_Locate->trigger();
}

void TQXCK201M::Act_LocateExecute(QObject*) {
    Filter->MoneyRight = ShowCost ? "1" : "0";
    if (Filter->ShowModal() != mrOk) return;
    QrySql = Filter->SqlText;
    Lab_Condition->setText(Filter->Description);
    Refreshing = true;
    TProgressRun::Run(this, "正在查询采购明细…", [this] { GetData(); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201M::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何查询参数,请按【F3】呼出查询选项!")) return;
    Refreshing = true;
    TProgressRun::Run(this, "正在查询采购明细…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201M::AdoQry_MainAfterOpen() {
    if (!AdoQry_Main->Active() || !AdoQry_Main->FindField("STOT")) return;
    for (AdoQry_Main->First(); !AdoQry_Main->Eof(); AdoQry_Main->Next()) {
        int total = 0;
        for (int i = 0; i <= 9; ++i) total += AdoQry_Main->FieldByName("S" + QString::number(i))->AsInteger();
        AdoQry_Main->Edit();
        AdoQry_Main->FieldByName("STOT")->SetAsInteger(total);
        AdoQry_Main->Post();
    }
    AdoQry_Main->First();
    DBGridEh->ColumnsChanged();
}
