#include "framework/Frm_Base_Qry.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/GridExport.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

// ---------------------------------------------------------------- TFrm_Base_Qry

TFrm_Base_Qry::TFrm_Base_Qry(QWidget* Owner) : TFrm_Base_Panel(Owner) {
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Main);
    DBGridEh->SetMultiSelect(true);
    MainLayout()->addWidget(DBGridEh, 1);

    Act_Locate = AddAction("Act_Locate", tr("查询"), QKeySequence(Qt::Key_F3), [this] { Act_LocateExecute(Act_Locate); });
    Act_Filter = AddAction("Act_Filter", tr("过滤"), {}, [this] { Act_LocateExecute(Act_Filter); });
    Act_Refresh = AddAction("Act_Refresh", tr("刷新"), QKeySequence(Qt::Key_F5), [this] { Act_RefreshExecute(Act_Refresh); });
    Act_Print = AddAction("Act_Print", tr("打印"), QKeySequence(Qt::CTRL | Qt::Key_P), [this] { Act_PrintExecute(Act_Print); });
    Act_Preview = AddAction("Act_Preview", tr("预览"), {}, [this] { Act_PreviewExecute(Act_Preview); });
    Act_Export = AddAction("Act_Export", tr("导出"), {}, [this] { Act_ExportExecute(Act_Export); });
    Act_ShowReport = AddAction("Act_ShowReport", tr("报表"), {}, [this] { Act_ShowReportExecute(Act_ShowReport); });
    Act_Order = AddAction("Act_Order", tr("排序"), {}, [this] { Act_OrderExecute(Act_Order); });
    Act_Quit = AddAction("Act_Quit", tr("退出"), QKeySequence(Qt::Key_Escape), [this] { Act_QuitExecute(Act_Quit); });
    for (QAction* a : {Act_Locate, Act_Refresh, Act_Print, Act_Preview, Act_Export, Act_Order, Act_Quit})
        ToolBar->addAction(a);
    DBGridEh->OnGetCellParams = [this](TColumnEh* c, TCellParams& p) { DBGridEhGetCellParams(DBGridEh, c, p); };
    DBGridEh->OnDblClick = [this] { DBGridEhDblClick(DBGridEh); };
    connect(DBGridEh, &TDBGridEh::columnsRebuilt, this, [this] { ApplyColumnRules(); });
    resize(900, 600);
}

void TFrm_Base_Qry::InitForm(const Trecord& rec) {
    OpenScreen(rec);
}

void TFrm_Base_Qry::GetData() {
    if (QrySql.trimmed().isEmpty()) return;
    Refreshing = true;
    AdoQry_Main->DisableControls();
    try {
        opensql(AdoQry_Main, FuncNo, QrySql, 0, 0, {}, {}, false, "1");
    } catch (...) {
        AdoQry_Main->EnableControls();
        Refreshing = false;
        throw;
    }
    AdoQry_Main->EnableControls();
    ApplyColumnRules();
    Refreshing = false;
}

void TFrm_Base_Qry::ApplyColumnRules() {
    for (int i = 0; i < DBGridEh->ColumnCount(); ++i) {
        TColumnEh* c = DBGridEh->Columns(i);
        if (SumFields.contains(c->FieldName, Qt::CaseInsensitive)) c->Footer.ValueType = fvtSum;
        if (CostFields.contains(c->FieldName, Qt::CaseInsensitive)) c->Visible = ShowCost;
    }
    HideSizeColumnsAfterCM(DBGridEh);
}

void TFrm_Base_Qry::FormClose() {}

void TFrm_Base_Qry::Act_LocateExecute(QObject*) {
    if (FilterForm) {
        if (FilterForm->ShowModal() != mrOk) return;
        Lab_Condition->setText(FilterForm->Description);
    }
    GetData();
}

void TFrm_Base_Qry::Act_RefreshExecute(QObject*) { GetData(); }
void TFrm_Base_Qry::Act_PrintExecute(QObject*) {
    qx::grid::printWithDialog(DBGridEh, ReportTitle.isEmpty() ? Caption() : ReportTitle);
}
void TFrm_Base_Qry::Act_PreviewExecute(QObject*) {
    qx::grid::preview(DBGridEh, ReportTitle.isEmpty() ? Caption() : ReportTitle);
}
void TFrm_Base_Qry::Act_ExportExecute(QObject*) { qx::grid::exportCsvWithDialog(DBGridEh, Caption()); }
void TFrm_Base_Qry::Act_ShowReportExecute(QObject*) { Act_PreviewExecute(Act_ShowReport); }
void TFrm_Base_Qry::Act_OrderExecute(QObject*) {
    // The sort dialog over the report's columns.
    auto* order = new TFrm_Sys_SortOrder(this);
    order->InitForm(DBGridEh, "");
    if (TColumnEh* c = DBGridEh->CurrentColumn()) order->Cmb_Field->setCurrentIndex(order->Cmb_Field->findData(c->FieldName));
    order->ShowModal();
    order->Release();
}
void TFrm_Base_Qry::Act_QuitExecute(QObject*) { close(); }
void TFrm_Base_Qry::DBGridEhGetCellParams(QObject*, TColumnEh*, TCellParams&) {}
void TFrm_Base_Qry::DBGridEhDblClick(QObject*) {
    if (!DetailForm || !AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
    const QString key = !KeyField.isEmpty() && AdoQry_Main->FindField(KeyField)
                            ? AdoQry_Main->FieldByName(KeyField)->AsString()
                            : QString();
    DetailForm->InitForm(key, AdoQry_Main);
    DetailForm->ShowModal();
}

// ---------------------------------------------------------------- TFrm_Base_Outer

TFrm_Base_Outer::TFrm_Base_Outer(QWidget* Owner) : TFrm_Base_Panel(Owner) {
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Main);
    DBGridEh->setSelectionBehavior(QAbstractItemView::SelectRows);
    MainLayout()->addWidget(DBGridEh, 1);
    Act_Add = AddAction("Act_Add", tr("新增"), QKeySequence(Qt::Key_Insert), [this] { Act_AddExecute(Act_Add); });
    Act_Modify = AddAction("Act_Modify", tr("修改"), QKeySequence(Qt::CTRL | Qt::Key_E), [this] { Act_ModifyExecute(Act_Modify); });
    Act_Delete = AddAction("Act_Delete", tr("删除"), QKeySequence(Qt::CTRL | Qt::Key_Delete),
                           [this] { Act_DeleteExecute(Act_Delete); });
    Act_Refresh = AddAction("Act_Refresh", tr("刷新"), QKeySequence(Qt::Key_F5), [this] { Act_RefreshExecute(Act_Refresh); });
    Act_Print = AddAction("Act_Print", tr("打印"), QKeySequence(Qt::CTRL | Qt::Key_P), [this] { Act_PrintExecute(Act_Print); });
    Act_Export = AddAction("Act_Export", tr("导出"), {}, [this] { Act_ExportExecute(Act_Export); });
    Act_Quit = AddAction("Act_Quit", tr("退出"), QKeySequence(Qt::Key_Escape), [this] { Act_QuitExecute(Act_Quit); });
    for (QAction* a : {Act_Add, Act_Modify, Act_Delete, Act_Refresh, Act_Print, Act_Export, Act_Quit}) ToolBar->addAction(a);
    DBGridEh->OnGetCellParams = [this](TColumnEh* c, TCellParams& p) { DBGridEhGetCellParams(DBGridEh, c, p); };
    DBGridEh->OnDblClick = [this] { Act_ModifyExecute(Act_Modify); };
    resize(900, 600);
}

void TFrm_Base_Outer::InitForm(const Trecord& rec) {
    OpenScreen(rec);
}

void TFrm_Base_Outer::GetData() {
    if (HeadSql.trimmed().isEmpty()) return;
    const QString sql = Condition.trimmed().isEmpty() ? HeadSql : HeadSql + " WHERE " + Condition;
    opensql(AdoQry_Main, FuncNo, sql, 0, 0, {}, {}, false, "1");
    HideSizeColumnsAfterCM(DBGridEh);
}

void TFrm_Base_Outer::Act_AddExecute(QObject*) {}
void TFrm_Base_Outer::Act_ModifyExecute(QObject*) {}

void TFrm_Base_Outer::Act_DeleteExecute(QObject*) {
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty() || DeleteSql.isEmpty()) return;
    const QString key = AdoQry_Main->FieldByName(KeyField)->AsString();
    if (DISPINFO(tr("确定要删除") + key + tr("吗?"), 2) != "y") return;
    QString sql = DeleteSql;
    sql.replace("%s", QuotedStr(key));
    sql.replace("%S", QuotedStr(key));
    ExecSql(FuncNo, key, "Delete", sql, 65535, false, true, false, true);
    AdoQry_Main->Delete();
}

void TFrm_Base_Outer::Act_RefreshExecute(QObject*) { GetData(); }
void TFrm_Base_Outer::Act_PrintExecute(QObject*) { qx::grid::printWithDialog(DBGridEh, Caption()); }
void TFrm_Base_Outer::Act_ExportExecute(QObject*) { qx::grid::exportCsvWithDialog(DBGridEh, Caption()); }
void TFrm_Base_Outer::Act_QuitExecute(QObject*) { close(); }
void TFrm_Base_Outer::DBGridEhGetCellParams(QObject*, TColumnEh*, TCellParams&) {}

TFrm_Base_Qry::~TFrm_Base_Qry() {
    // The hooks call into this screen, which is going: nothing may run them from here on.
    DBGridEh->ClearHooks();
}

TFrm_Base_Outer::~TFrm_Base_Outer() {
    // The hooks call into this screen, which is going: nothing may run them from here on.
    DBGridEh->ClearHooks();
}
