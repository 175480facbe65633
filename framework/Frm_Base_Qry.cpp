#include "framework/Frm_Base_Qry.h"

#include <QAction>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/ChartPane.h"
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
    Act_Chart = AddAction("Act_Chart", tr("图表"), {}, [this] { Act_ChartExecute(Act_Chart); });
    Act_Chart->setCheckable(true);
    Act_Chart->setChecked(true);
    Act_SaveChart = AddAction("Act_SaveChart", tr("保存图表"), {}, [this] { Act_SaveChartExecute(Act_SaveChart); });
    for (QAction* a : {Act_Locate, Act_Refresh, Act_Print, Act_Preview, Act_Export, Act_Order, Act_Chart, Act_SaveChart, Act_Quit})
        ToolBar->addAction(a);
    // Only a report with a chart shows the chart's actions.
    Act_Chart->setVisible(false);
    Act_SaveChart->setVisible(false);
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
    UpdateChart();
}

void TFrm_Base_Qry::UpdateChart() {
    const qx::chart::ChartSpec spec = ChartSpec();
    const bool charted = !spec.isNone();
    Act_Chart->setVisible(charted);
    Act_SaveChart->setVisible(charted);
    if (!charted) {
        if (ChartPane) ChartPane->hide();
        return;
    }
    if (!ChartPane) {
        // Grid and chart side by side, where the grid stood.
        const int at = MainLayout()->indexOf(DBGridEh);
        ChartSplitter = new QSplitter(Qt::Horizontal, this);
        ChartSplitter->setObjectName("ChartSplitter");
        ChartSplitter->setChildrenCollapsible(false);
        MainLayout()->insertWidget(at, ChartSplitter, 1);
        ChartSplitter->addWidget(DBGridEh);
        ChartPane = new TChartPane(ChartSplitter);
        ChartSplitter->addWidget(ChartPane);
        ChartSplitter->setStretchFactor(0, 3);
        ChartSplitter->setStretchFactor(1, 2);
        // three fifths for the grid, two for the chart, whatever the grid's many columns ask for
        ChartSplitter->setSizes({3000, 2000});
        // The chart follows the selection at once, and the rows and column titles (which a
        // report may still set after GetData) once the screen is back in its event loop.
        auto follow = [this] { redrawChart(); };
        auto later = [this] { scheduleChart(); };
        connect(DBGridEh->selectionModel(), &QItemSelectionModel::selectionChanged, this, follow);
        connect(DBGridEh->selectionModel(), &QItemSelectionModel::currentRowChanged, this, follow);
        connect(DBGridEh->model(), &QAbstractItemModel::modelReset, this, later);
        connect(DBGridEh->model(), &QAbstractItemModel::headerDataChanged, this, later);
        connect(DBGridEh->model(), &QAbstractItemModel::dataChanged, this, later);
    }
    ChartPane->SetSpec(spec, PrintTitle());
    ChartPane->setVisible(Act_Chart->isChecked());
    ChartPane->Redraw(DBGridEh);
    scheduleChart();
}

void TFrm_Base_Qry::redrawChart() {
    if (Refreshing || !ChartPane || ChartPane->isHidden() || ChartPane->Spec().isNone()) return;
    ChartPane->Redraw(DBGridEh);
}

void TFrm_Base_Qry::scheduleChart() {
    if (chartScheduled_) return;
    chartScheduled_ = true;
    QTimer::singleShot(0, this, [this] {
        chartScheduled_ = false;
        redrawChart();
    });
}

AnsiString TFrm_Base_Qry::PrintTitle() const { return ReportTitle.isEmpty() ? Caption() : ReportTitle; }

qx::grid::PrintOptions TFrm_Base_Qry::PrintExtras() const {
    qx::grid::PrintOptions options;
    options.condition = ConditionText();
    if (ChartPane && !ChartPane->isHidden() && Act_Chart->isVisible()) {
        const TChartPane* pane = ChartPane;
        options.lastPage = [pane](QPainter& painter, const QRect& page) { pane->Paint(painter, page); };
    }
    return options;
}

void TFrm_Base_Qry::Act_ChartExecute(QObject*) {
    if (!ChartPane) return;
    ChartPane->setVisible(Act_Chart->isChecked());
    if (Act_Chart->isChecked()) ChartPane->Redraw(DBGridEh);
}

void TFrm_Base_Qry::Act_SaveChartExecute(QObject*) {
    if (!ChartPane || ChartPane->Spec().isNone()) return;
    const QString name = qx::grid::chooseFile(qx::grid::Dialog::SaveChart, DBGridEh, PrintTitle(), {},
                                              tr("PNG 图片 (*.png)"));
    if (name.isEmpty()) return;
    if (!ChartPane->SavePng(name)) DISPINFO(tr("无法写入文件 ") + name, 5);
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
void TFrm_Base_Qry::Act_PrintExecute(QObject*) { qx::grid::printWithDialog(DBGridEh, PrintTitle(), PrintExtras()); }
void TFrm_Base_Qry::Act_PreviewExecute(QObject*) { qx::grid::preview(DBGridEh, PrintTitle(), PrintExtras()); }
void TFrm_Base_Qry::Act_ExportExecute(QObject*) { qx::grid::exportWithDialog(DBGridEh, PrintTitle(), PrintExtras()); }
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
void TFrm_Base_Outer::Act_PrintExecute(QObject*) { qx::grid::printWithDialog(DBGridEh, Caption(), {ConditionText()}); }
void TFrm_Base_Outer::Act_ExportExecute(QObject*) { qx::grid::exportWithDialog(DBGridEh, Caption(), {ConditionText()}); }
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
