#pragma once
// The chart view of a report: what a report with a time or ranking axis plots beside its grid.
// A report describes its chart once (TFrm_Base_Qry::ChartSpec); the report base builds the chart
// pane from that description and redraws it when the data or the grid's selection changes.
//
// How reports use it
//   qx::chart::ChartSpec TQXCK263::ChartSpec() const {
//       // the months are the axis, every selected row is one series of bars
//       return {qx::chart::ChartKind::Bars, qx::chart::Axis::Columns, "ITEM", monthFields_};
//   }
//   qx::chart::ChartSpec TQXCK281::ChartSpec() const {
//       // the places are the axis, the sold quantity is the one series
//       return {qx::chart::ChartKind::Bars, qx::chart::Axis::Rows, "WL_NAME", {"SL"}};
//   }
// The pane itself (qx::chart::chartData, TChartPane) is framework/ChartPane.h; the report base
// shows it beside the grid with the actions "图表" (show/hide) and "保存图表" (PNG), and puts it
// on a page of its own after the table when the report is printed, previewed or saved as PDF.
// Value fields that are not visible columns of the grid (hidden cost columns) are not drawn.
#include <QString>
#include <QStringList>

namespace qx::chart {

enum class ChartKind { None, Bars, Lines };

// Columns: the value fields are the categories of the axis (months, days), and each selected row
//          of the grid is one series, named by its label field.
// Rows:    the rows are the categories (labelled by the label field), and each value field is
//          one series over all rows shown (or over the selected rows when more than one is
//          selected).
enum class Axis { Columns, Rows };

struct ChartSpec {
    ChartKind kind = ChartKind::None;
    Axis axis = Axis::Columns;
    QString labelField;       // the field naming a row
    QStringList valueFields;  // the plotted fields, in axis/series order; the grid's column
                              // titles name them. Empty with Axis::Columns: every visible
                              // numeric column except the label field.
    // What the pane draws at most (added; the defaults suit every report): Axis::Rows shows the
    // first maxCategories rows, Axis::Columns the first maxSeries selected rows; the chart's
    // title then says so.
    int maxCategories = 60;
    int maxSeries = 20;
    bool isNone() const { return kind == ChartKind::None; }
};

}  // namespace qx::chart
