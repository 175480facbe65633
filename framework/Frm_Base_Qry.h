#pragma once
// TFrm_Base_Qry: the report base. Toolbar Act_Locate (F3: the condition dialog, then GetData),
// Act_Refresh (F5: GetData again), Act_Print, Act_Preview, Act_Export (CSV), Act_ShowReport,
// Act_Order, Act_Filter, Act_Quit; the condition label Lab_Condition above the grid (DBGridEh
// over AdoQry_Main, read-only, multi-select, Ctrl+C copies, a title click sorts).
// TFrm_Base_Outer: a master list (Act_Add, Act_Modify, Act_Delete, Act_Refresh, Act_Print,
// Act_Export, Act_Quit) over AdoQry_Main / DBGridEh.
//
// How screens use it
//   void TQXCK255::InitForm(const Trecord& rec) {
//       TFrm_Base_Qry::InitForm(rec);
//       QXCK255F = new TQXCK255F(this); QXCK255F->InitForm(); FilterForm = QXCK255F;
//       Act_Locate->trigger();
//   }
//   void TQXCK255::Act_LocateExecute(QObject* s) {
//       if (QXCK255F->ShowModal() != mrOk) return;
//       Lab_Condition->setText(QXCK255F->Description);
//       QrySql = "SELECT ... WHERE " + QXCK255F->Condition; GetData();
//   }
// GetData opens QrySql into AdoQry_Main (with Refreshing set while it runs), applies the size
// column rules (G_CM), sets sum footers on the fields listed in SumFields and hides the cost
// fields listed in CostFields unless ShowCost; then it reads ChartSpec(): a report with a chart
// shows it beside the grid (a splitter; Act_Chart "图表" shows or hides it, Act_SaveChart
// "保存图表" saves it as PNG), redrawn when the grid's selection or data changes.
// Print, preview and export (XLSX, CSV, PDF) go through qx::grid with the report's title
// (ReportTitle, else the caption) and its condition line; a shown chart is printed on a page of
// its own after the table.
#include "framework/Frm_Base.h"
#include "framework/GridExport.h"
#include "framework/ReportChart.h"

class TDBGridEh;
class TChartPane;
class QSplitter;

class QX_FRAMEWORK_EXPORT TFrm_Base_Qry : public TFrm_Base_Panel {
    Q_OBJECT
public:
    explicit TFrm_Base_Qry(QWidget* Owner = nullptr);
    ~TFrm_Base_Qry() override;

    // --- virtual operations, in this order
    virtual void GetData();
    virtual void InitForm(const Trecord& rec);

    void FormCreate() { TFrm_Base::FormCreate(); }
    void FormClose();

    virtual void Act_LocateExecute(QObject* Sender);
    virtual void Act_RefreshExecute(QObject* Sender);
    virtual void Act_PrintExecute(QObject* Sender);
    virtual void Act_PreviewExecute(QObject* Sender);
    virtual void Act_ExportExecute(QObject* Sender);
    virtual void Act_ShowReportExecute(QObject* Sender);
    virtual void Act_OrderExecute(QObject* Sender);
    virtual void Act_QuitExecute(QObject* Sender);
    virtual void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params);
    virtual void DBGridEhDblClick(QObject* Sender);
    virtual void Act_ChartExecute(QObject* Sender);
    virtual void Act_SaveChartExecute(QObject* Sender);

    AnsiString QrySql;      // the statement GetData opens
    bool Refreshing = false;
    QStringList SumFields;  // fields with a sum footer
    QStringList CostFields; // fields hidden unless ShowCost
    bool ShowCost = true;
    AnsiString ReportTitle;  // print title (defaults to the caption)
    TFrm_Sys_Filter* FilterForm = nullptr;
    // The drill-down: a double click on a row calls its InitForm(key of the row (KeyField), the
    // main dataset positioned on the row) and shows it modally.
    TFrm_Base_Detail* DetailForm = nullptr;

    TClientDataSet* AdoQry_Main;
    TDBGridEh* DBGridEh;
    QAction* Act_Locate;
    QAction* Act_Filter;  // the condition dialog again (as Act_Locate)
    QAction* Act_Refresh;
    QAction* Act_Print;
    QAction* Act_Preview;
    QAction* Act_Export;
    QAction* Act_ShowReport;
    QAction* Act_Order;
    QAction* Act_Quit;
    QAction* Act_Chart;      // checkable; shown only while the report has a chart
    QAction* Act_SaveChart;  // shown only while the report has a chart

    // Applies SumFields / CostFields / G_CM to the grid's columns.
    void ApplyColumnRules();

    // The chart a report draws beside its grid; none by default. Read after every GetData, so
    // a report whose columns depend on its conditions (day or month columns) may answer
    // differently each time.
    virtual qx::chart::ChartSpec ChartSpec() const { return {}; }
    // Reads ChartSpec() and shows, hides or redraws the chart (GetData calls it).
    void UpdateChart();
    // The chart pane and the splitter holding grid and chart: created with the first chart.
    TChartPane* ChartPane = nullptr;
    QSplitter* ChartSplitter = nullptr;

    // The title printed and exported (ReportTitle, else the caption) and what goes with it: the
    // condition line and, while the chart is shown, the chart's page.
    AnsiString PrintTitle() const;
    qx::grid::PrintOptions PrintExtras() const;

private:
    void redrawChart();
    void scheduleChart();
    bool chartScheduled_ = false;
};

class QX_FRAMEWORK_EXPORT TFrm_Base_Outer : public TFrm_Base_Panel {
    Q_OBJECT
public:
    explicit TFrm_Base_Outer(QWidget* Owner = nullptr);
    ~TFrm_Base_Outer() override;

    // --- virtual operations, in this order
    virtual void GetData();  // opens HeadSql (+ " WHERE " + Condition) into AdoQry_Main
    virtual void InitForm(const Trecord& rec);

    void FormCreate() { TFrm_Base::FormCreate(); }
    virtual void Act_AddExecute(QObject* Sender);
    virtual void Act_ModifyExecute(QObject* Sender);
    virtual void Act_DeleteExecute(QObject* Sender);  // DeleteSql with %s/%S = quoted key
    virtual void Act_RefreshExecute(QObject* Sender);
    virtual void Act_PrintExecute(QObject* Sender);
    virtual void Act_ExportExecute(QObject* Sender);
    virtual void Act_QuitExecute(QObject* Sender);
    virtual void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params);

    AnsiString Condition;
    TClientDataSet* AdoQry_Main;
    TDBGridEh* DBGridEh;
    QAction* Act_Add;
    QAction* Act_Modify;
    QAction* Act_Delete;
    QAction* Act_Refresh;
    QAction* Act_Print;
    QAction* Act_Export;
    QAction* Act_Quit;
};
