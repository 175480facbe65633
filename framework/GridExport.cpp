#include "framework/GridExport.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocument>

#include "framework/DBGridEh.h"
#include "framework/U_function.h"

namespace qx::grid {
namespace {
QString csvField(QString text) {
    if (text.contains(',') || text.contains('"') || text.contains('\n')) {
        text.replace("\"", "\"\"");
        return "\"" + text + "\"";
    }
    return text;
}

QString titleText(const QString& title) {
    // "尺码|S" prints as "尺码 S".
    QString t = title;
    return t.replace('|', ' ');
}

void render(const TDBGridEh* grid, const QString& title, QPagedPaintDevice* device) {
    QTextDocument doc;
    doc.setHtml(toHtml(grid, title));
    doc.setPageSize(device->pageLayout().paintRectPixels(device->logicalDpiX()).size());
    doc.print(device);
}
}  // namespace

QString toHtml(const TDBGridEh* grid, const QString& title) {
    QString html = "<html><body><h3 align=center>" + title.toHtmlEscaped() + "</h3>";
    html += "<table border=1 cellspacing=0 cellpadding=2 width=100% style='border-collapse:collapse;font-size:9pt'><tr>";
    for (const QString& t : grid->VisibleTitles()) html += "<th>" + titleText(t).toHtmlEscaped() + "</th>";
    html += "</tr>";
    for (const QStringList& row : grid->DisplayedRows()) {
        html += "<tr>";
        for (const QString& cell : row) html += "<td>" + cell.toHtmlEscaped() + "</td>";
        html += "</tr>";
    }
    if (grid->FooterRowVisible()) {
        html += "<tr>";
        for (const QString& cell : grid->FooterTexts()) html += "<td><b>" + cell.toHtmlEscaped() + "</b></td>";
        html += "</tr>";
    }
    html += "</table><p align=right style='font-size:8pt'>" +
            QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm") + "</p></body></html>";
    return html;
}

QString toCsv(const TDBGridEh* grid) {
    QStringList lines;
    QStringList titles;
    for (const QString& t : grid->VisibleTitles()) titles << csvField(titleText(t));
    lines << titles.join(',');
    for (const QStringList& row : grid->DisplayedRows()) {
        QStringList cells;
        for (const QString& c : row) cells << csvField(c);
        lines << cells.join(',');
    }
    if (grid->FooterRowVisible()) {
        QStringList cells;
        for (const QString& c : grid->FooterTexts()) cells << csvField(c);
        lines << cells.join(',');
    }
    return lines.join("\r\n") + "\r\n";
}

bool exportCsv(const TDBGridEh* grid, const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    file.write("\xEF\xBB\xBF");  // BOM: spreadsheet programs then read the Chinese titles right
    file.write(toCsv(grid).toUtf8());
    return true;
}

bool exportPdf(const TDBGridEh* grid, const QString& title, const QString& fileName) {
    QPdfWriter writer(fileName);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Landscape);
    writer.setTitle(title);
    render(grid, title, &writer);
    return QFile::exists(fileName);
}

void print(const TDBGridEh* grid, const QString& title, QPrinter* printer) { render(grid, title, printer); }

void printWithDialog(const TDBGridEh* grid, const QString& title) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, const_cast<TDBGridEh*>(grid));
    if (dialog.exec() == QDialog::Accepted) print(grid, title, &printer);
}

void preview(const TDBGridEh* grid, const QString& title) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintPreviewDialog dialog(&printer, const_cast<TDBGridEh*>(grid));
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, [&](QPrinter* p) { print(grid, title, p); });
    dialog.exec();
}

void exportCsvWithDialog(const TDBGridEh* grid, const QString& title) {
    const QString name = QFileDialog::getSaveFileName(const_cast<TDBGridEh*>(grid), QObject::tr("导出"),
                                                      title + ".csv", "CSV (*.csv)");
    if (name.isEmpty()) return;
    if (!exportCsv(grid, name)) DISPINFO(QObject::tr("无法写入文件 ") + name, 5);
}

}  // namespace qx::grid
