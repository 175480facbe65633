#pragma once
// Print, preview, PDF, spreadsheet (XLSX) and CSV of any grid: the visible columns with their
// titles, the displayed rows and the footer row, under a title line and the condition line.
// This is the one print and export path of every screen: lists, reports, documents and their
// line grids all come here (their toolbar actions, and every grid's context menu).
//
// How screens use it
//   qx::grid::preview(DBGridEh, Caption(), {Lab_Condition->text()});
//   qx::grid::exportXlsx(DBGridEh, Caption(), fileName);   // merged two-level titles, numbers
//                                                          // as numbers, footers as totals row
//   qx::grid::exportCsv(DBGridEh, fileName);                // UTF-8 with BOM, comma-separated
//   qx::grid::exportWithDialog(DBGridEh, Caption());        // the chooser offers XLSX, CSV, PDF;
//                                                          // the file's extension decides
// Two-level titles ("本期入库数量|销售退": band|title) become a band cell over the neighbouring
// columns with the same band and a title cell under each; a column without a band spans both
// title rows. Hidden columns are left out everywhere.
#include <QList>
#include <QString>
#include <functional>

#include "framework/Export.h"

class TDBGridEh;
class QPrinter;
class QPainter;
class QRect;
class QWidget;

namespace qx::grid {

// What a printed or exported grid carries besides its rows.
struct PrintOptions {
    QString condition;  // the condition line under the title (reports: Lab_Condition)
    // Paints one more page after the table (a report's chart); the rectangle is the page's
    // printable area in the painter's coordinates. Printing, preview and PDF only.
    std::function<void(QPainter& painter, const QRect& page)> lastPage = nullptr;
};

// One cell of the title rows: row 0 or 1, column = position among the visible columns.
struct HeaderCell {
    int row = 0;
    int column = 0;
    int rowSpan = 1;
    int columnSpan = 1;
    QString text;
};
// The title rows of the grid's visible columns: one row, or two when any title has a band.
QX_FRAMEWORK_EXPORT QList<HeaderCell> headerCells(const TDBGridEh* grid);
QX_FRAMEWORK_EXPORT int headerRowCount(const TDBGridEh* grid);

// The grid as an HTML table (what printing renders).
QX_FRAMEWORK_EXPORT QString toHtml(const TDBGridEh* grid, const QString& title, const PrintOptions& options = {});
QX_FRAMEWORK_EXPORT QString toCsv(const TDBGridEh* grid);
QX_FRAMEWORK_EXPORT bool exportCsv(const TDBGridEh* grid, const QString& fileName);
QX_FRAMEWORK_EXPORT bool exportXlsx(const TDBGridEh* grid, const QString& title, const QString& fileName,
                                    const PrintOptions& options = {});
QX_FRAMEWORK_EXPORT bool exportPdf(const TDBGridEh* grid, const QString& title, const QString& fileName,
                                   const PrintOptions& options = {});
// By the file's extension: .xlsx, .pdf, anything else CSV.
QX_FRAMEWORK_EXPORT bool exportFile(const TDBGridEh* grid, const QString& title, const QString& fileName,
                                    const PrintOptions& options = {});
QX_FRAMEWORK_EXPORT void print(const TDBGridEh* grid, const QString& title, QPrinter* printer,
                               const PrintOptions& options = {});

// Dialogs (file chooser / print dialog / print preview) for the toolbar actions.
QX_FRAMEWORK_EXPORT void printWithDialog(const TDBGridEh* grid, const QString& title, const PrintOptions& options = {});
QX_FRAMEWORK_EXPORT void preview(const TDBGridEh* grid, const QString& title, const PrintOptions& options = {});
QX_FRAMEWORK_EXPORT void exportWithDialog(const TDBGridEh* grid, const QString& title, const PrintOptions& options = {});
// The same chooser (kept for screens written before the spreadsheet export).
QX_FRAMEWORK_EXPORT void exportCsvWithDialog(const TDBGridEh* grid, const QString& title);

// Tests and scripts answer these dialogs instead of showing them: the handler receives what the
// dialog would have printed or exported; for Export and SaveChart it returns the file to write
// ("" cancels), for Print and Preview its answer is not used. Returns the previous handler.
enum class Dialog { Print, Preview, Export, SaveChart };
using DialogHandler =
    std::function<QString(Dialog dialog, const TDBGridEh* grid, const QString& title, const PrintOptions& options)>;
QX_FRAMEWORK_EXPORT DialogHandler setDialogHandler(DialogHandler handler);
// The save-file chooser of these dialogs (or the handler's answer): `filters` as Qt writes them
// ("Excel (*.xlsx);;CSV (*.csv)"), the first one suggested with the title as the file's name; a
// name typed without an extension takes the chosen filter's. "" when cancelled.
QX_FRAMEWORK_EXPORT QString chooseFile(Dialog dialog, const TDBGridEh* grid, const QString& title,
                                       const PrintOptions& options, const QString& filters);

}  // namespace qx::grid
