#include "reports/Frmqxck201m.h"

#include <QAction>

#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "reports/ReportCommon.h"

TQXCK201M* QXCK201M = nullptr;

TQXCK201M::TQXCK201M(QWidget* Owner)
    : TQXCK201M(Owner, "QXCK201M", "采购进货明细查询", "正在查询采购明细…", {{"DJ", "单价", 60}, {"MONEY", "金额", 80}}) {}

TQXCK201M::TQXCK201M(QWidget* Owner, const QString& name, const QString& caption, const QString& progress,
                     const QList<Column>& amounts)
    : TFrm_Base_Qry(Owner), progress_(progress) {
    setObjectName(name);
    SetCaption(caption);
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
    for (const Column& c : amounts) {
        DBGridEh->AddColumn(c.field, c.title, c.width);
        amountFields_ << c.field;
    }
    DBGridEh->SetFooterRowVisible(true);
}

TQXCK201MF* TQXCK201M::NewFilter() {
    QXCK201MF = new TQXCK201MF(this);
    return QXCK201MF;
}

void TQXCK201M::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    KeyField = "NOID";
    // the price and the amount are the first two amount columns
    if (AmountsAreCost()) CostFields = amountFields_.mid(0, 2);
    SumFields = SplitFields("S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT");
    for (const QString& f : amountFields_)
        if (f.contains("MONEY", Qt::CaseInsensitive)) SumFields << f;
    Filter = NewFilter();
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
    TProgressRun::Run(this, progress_, [this] { GetData(); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201M::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何查询参数,请按【F3】呼出查询选项!")) return;
    Refreshing = true;
    TProgressRun::Run(this, progress_, [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    Refreshing = false;
    AdoQry_MainAfterOpen();
}

void TQXCK201M::AdoQry_MainAfterOpen() {
    if (!AdoQry_Main->Active() || !AdoQry_Main->FindField("STOT")) return;
    // The rows take their column names from the first block: returns alone name the price and
    // the amount as returns do (SJ, SMONEY). The price and amount columns follow the names.
    bool renamed = false;
    for (const auto& [first, returned] : {std::pair<QString, QString>{"DJ", "SJ"}, {"MONEY", "SMONEY"}}) {
        TColumnEh* c = DBGridEh->ColumnByField(first);
        if (!c) c = DBGridEh->ColumnByField(returned);
        if (!c) continue;
        const QString name = AdoQry_Main->FindField(first) ? first : AdoQry_Main->FindField(returned) ? returned : QString();
        if (name.isEmpty() || c->FieldName.compare(name, Qt::CaseInsensitive) == 0) continue;
        for (QStringList* list : {&SumFields, &CostFields})
            if (list->contains(c->FieldName, Qt::CaseInsensitive) && !list->contains(name, Qt::CaseInsensitive)) *list << name;
        c->FieldName = name;
        renamed = true;
    }
    if (renamed) ApplyColumnRules();
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
