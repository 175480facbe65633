#pragma once
// Print, preview, PDF and CSV of any grid: the visible columns with their titles (bands as
// "band title"), the displayed rows and the footer row, under a title line.
//
// How screens use it
//   qx::grid::preview(DBGridEh, Caption());
//   qx::grid::exportCsv(DBGridEh, fileName);      // UTF-8 with BOM, comma-separated
#include <QString>

#include "framework/Export.h"

class TDBGridEh;
class QPrinter;
class QPainter;

namespace qx::grid {

// The grid as an HTML table (what printing renders).
QX_FRAMEWORK_EXPORT QString toHtml(const TDBGridEh* grid, const QString& title);
QX_FRAMEWORK_EXPORT QString toCsv(const TDBGridEh* grid);
QX_FRAMEWORK_EXPORT bool exportCsv(const TDBGridEh* grid, const QString& fileName);
QX_FRAMEWORK_EXPORT bool exportPdf(const TDBGridEh* grid, const QString& title, const QString& fileName);
QX_FRAMEWORK_EXPORT void print(const TDBGridEh* grid, const QString& title, QPrinter* printer);
// Dialogs (file chooser / print preview) for the toolbar actions.
QX_FRAMEWORK_EXPORT void printWithDialog(const TDBGridEh* grid, const QString& title);
QX_FRAMEWORK_EXPORT void preview(const TDBGridEh* grid, const QString& title);
QX_FRAMEWORK_EXPORT void exportCsvWithDialog(const TDBGridEh* grid, const QString& title);

}  // namespace qx::grid
