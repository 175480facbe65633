#include "framework/GridExport.h"

#include <QAbstractTextDocumentLayout>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QTextDocument>
#include <optional>

#include <xlsxwriter.h>

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
    // "尺码|S" reads "尺码 S" where there is one title row only.
    QString t = title;
    return t.replace('|', ' ');
}

QList<TColumnEh*> visibleColumns(const TDBGridEh* grid) {
    QList<TColumnEh*> out;
    for (int i = 0; i < grid->ColumnCount(); ++i)
        if (grid->Columns(i)->Visible) out << grid->Columns(i);
    return out;
}

// Does the column hold numbers (by its field's type; a field typed by its values alone counts
// when the value is a number)?
bool numericColumn(const TColumnEh* column, const QVariant& value) {
    const TField* f = column->Field();
    if (!f) return false;
    return IsNumberType(f->DataType) || (f->DataType == ftUnknown && IsNumberValue(value));
}

// The number a cell shows, or nothing when it shows text: a numeric field whose shown text
// reads as a number (a cell hook may show a mark or a word instead; that text is kept).
std::optional<double> cellNumber(const TColumnEh* column, int row, const QString& shown) {
    if (shown.trimmed().isEmpty()) return std::nullopt;
    const TField* f = column->Field();
    if (!f) return std::nullopt;
    const QVariant v = f->DataSet()->CellValue(row, f->Index());
    if (!numericColumn(column, v)) return std::nullopt;
    static const QRegularExpression number(R"(^[^\d\-+.]*([-+]?[\d,]*\.?\d+)[^\d]*$)");
    const auto m = number.match(shown.trimmed());
    if (!m.hasMatch()) return std::nullopt;
    bool ok = false;
    const double value = v.toDouble(&ok);
    if (ok) return value;
    const double read = m.captured(1).remove(',').toDouble(&ok);
    return ok ? std::optional<double>(read) : std::nullopt;
}

bool numericFooter(const TColumnEh* column) {
    const auto t = column->Footer.ValueType;
    return t == fvtSum || t == fvtAvg || t == fvtCount;
}

// A number format of the grid ("#,##0.00", "￥0.00", "0.0#") as a spreadsheet format: the
// digits part as it stands, text before and after it quoted (so "%" stays a mark, as shown).
QString sheetFormat(const QString& displayFormat) {
    QString f = displayFormat;
    if (const int semi = f.indexOf(';'); semi >= 0) f = f.left(semi);
    static const QRegularExpression parts(R"(^([^0#]*)([0#,]+(?:\.[0#]+)?)(.*)$)");
    const auto m = parts.match(f);
    if (!m.hasMatch()) return {};
    auto quoted = [](QString s) { return s.isEmpty() ? s : "\"" + s.remove('"') + "\""; };
    return quoted(m.captured(1)) + m.captured(2) + quoted(m.captured(3));
}

QString fileSafe(QString name) {
    name.replace(QRegularExpression(R"([/\\:*?"<>|\r\n\t])"), "_");
    name = name.trimmed();
    return name.isEmpty() ? QObject::tr("导出") : name.left(80);
}

DialogHandler& dialogHandler() {
    static DialogHandler handler;
    return handler;
}

void drawPageNumber(QPainter& painter, const QRect& page, int footerHeight, int number, int count) {
    const QRect band(page.left(), page.bottom() - footerHeight + 1, page.width(), footerHeight);
    painter.drawText(band, Qt::AlignHCenter | Qt::AlignBottom,
                     QObject::tr("第 %1 页 / 共 %2 页").arg(number).arg(count));
}

// The table page by page (its title rows repeated on every page), then the last page of the
// options, with page numbers at the foot.
bool render(const TDBGridEh* grid, const QString& title, const PrintOptions& options, QPagedPaintDevice* device) {
    QPainter painter;
    if (!painter.begin(device)) return false;
    QFont font = grid->font();
    font.setPointSizeF(8);
    painter.setFont(QFont(font, device));
    const int footerHeight = QFontMetrics(font, device).height() * 2;
    const QRect page(0, 0, device->width(), device->height());
    const int pageHeight = page.height() - footerHeight;

    QTextDocument doc;
    doc.documentLayout()->setPaintDevice(device);
    doc.setDefaultFont(QFont(grid->font(), device));
    doc.setHtml(toHtml(grid, title, options));
    doc.setPageSize(QSizeF(page.width(), pageHeight));
    const int tablePages = doc.pageCount();
    const int pages = tablePages + (options.lastPage ? 1 : 0);
    for (int i = 0; i < tablePages; ++i) {
        if (i > 0) device->newPage();
        painter.save();
        painter.translate(0, -i * pageHeight);
        doc.drawContents(&painter, QRectF(0, i * pageHeight, page.width(), pageHeight));
        painter.restore();
        drawPageNumber(painter, page, footerHeight, i + 1, pages);
    }
    if (options.lastPage) {
        device->newPage();
        painter.save();
        options.lastPage(painter, QRect(0, 0, page.width(), pageHeight));
        painter.restore();
        drawPageNumber(painter, page, footerHeight, pages, pages);
    }
    return painter.end();
}

}  // namespace

int headerRowCount(const TDBGridEh* grid) {
    for (const TColumnEh* c : visibleColumns(grid))
        if (!c->TitleBand().isEmpty()) return 2;
    return 1;
}

QList<HeaderCell> headerCells(const TDBGridEh* grid) {
    const QList<TColumnEh*> columns = visibleColumns(grid);
    const int rows = headerRowCount(grid);
    QList<HeaderCell> bands, titles;
    for (int i = 0; i < columns.size(); ++i) {
        const QString band = columns[i]->TitleBand();
        if (rows == 1 || band.isEmpty()) {
            bands << HeaderCell{0, i, rows, 1, columns[i]->TitleCaption()};
            continue;
        }
        // The band spans the neighbouring columns with the same band.
        if (i == 0 || columns[i - 1]->TitleBand() != band) {
            int last = i;
            while (last + 1 < columns.size() && columns[last + 1]->TitleBand() == band) ++last;
            bands << HeaderCell{0, i, 1, last - i + 1, band};
        }
        titles << HeaderCell{1, i, 1, 1, columns[i]->TitleCaption()};
    }
    return bands + titles;
}

QString toHtml(const TDBGridEh* grid, const QString& title, const PrintOptions& options) {
    QString html = "<html><body><h3 align=center>" + title.toHtmlEscaped() + "</h3>";
    if (!options.condition.trimmed().isEmpty())
        html += "<p align=center style='font-size:9pt'>" + options.condition.toHtmlEscaped() + "</p>";
    html += "<table border=1 cellspacing=0 cellpadding=2 width=100% style='border-collapse:collapse;font-size:9pt'>";
    html += "<thead>";
    const QList<HeaderCell> cells = headerCells(grid);
    for (int row = 0; row < headerRowCount(grid); ++row) {
        html += "<tr>";
        for (const HeaderCell& h : cells) {
            if (h.row != row) continue;
            html += "<th";
            if (h.rowSpan > 1) html += " rowspan=" + QString::number(h.rowSpan);
            if (h.columnSpan > 1) html += " colspan=" + QString::number(h.columnSpan);
            html += ">" + h.text.toHtmlEscaped() + "</th>";
        }
        html += "</tr>";
    }
    html += "</thead>";
    const QList<TColumnEh*> columns = visibleColumns(grid);
    const QList<QStringList> rows = grid->DisplayedRows();
    for (int r = 0; r < rows.size(); ++r) {
        html += "<tr>";
        for (int c = 0; c < rows[r].size() && c < columns.size(); ++c) {
            const bool number = cellNumber(columns[c], r, rows[r][c]).has_value();
            html += (number ? "<td align=right>" : "<td>") + rows[r][c].toHtmlEscaped() + "</td>";
        }
        html += "</tr>";
    }
    if (grid->FooterRowVisible()) {
        html += "<tr>";
        for (const QString& cell : grid->FooterTexts())
            html += "<td align=right><b>" + cell.toHtmlEscaped() + "</b></td>";
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
    return file.error() == QFileDevice::NoError;
}

bool exportXlsx(const TDBGridEh* grid, const QString& title, const QString& fileName, const PrintOptions& options) {
    // A cell takes at most 32,767 characters.
    auto utf8 = [](const QString& s) { return s.left(32767).toUtf8(); };
    lxw_workbook* book = workbook_new(QFile::encodeName(fileName).constData());
    if (!book) return false;
    QString sheetName = title;
    sheetName.replace(QRegularExpression(R"([\[\]:*?/\\'])"), " ");
    sheetName = sheetName.trimmed().left(31);
    lxw_worksheet* sheet = workbook_add_worksheet(book, sheetName.isEmpty() ? nullptr : utf8(sheetName).constData());
    if (!sheet) sheet = workbook_add_worksheet(book, nullptr);

    lxw_format* titleFormat = workbook_add_format(book);
    format_set_bold(titleFormat);
    format_set_font_size(titleFormat, 14);
    format_set_align(titleFormat, LXW_ALIGN_CENTER);
    lxw_format* conditionFormat = workbook_add_format(book);
    format_set_align(conditionFormat, LXW_ALIGN_CENTER);
    lxw_format* headFormat = workbook_add_format(book);
    format_set_bold(headFormat);
    format_set_align(headFormat, LXW_ALIGN_CENTER);
    format_set_align(headFormat, LXW_ALIGN_VERTICAL_CENTER);
    format_set_border(headFormat, LXW_BORDER_THIN);
    format_set_bg_color(headFormat, 0xE8E8E8);
    format_set_text_wrap(headFormat);

    const QList<TColumnEh*> columns = visibleColumns(grid);
    const int count = int(columns.size());
    // Per column: the cell format (its number format) and the same, bold, for the totals row.
    QList<lxw_format*> cellFormats, totalFormats;
    for (int c = 0; c < count; ++c) {
        const TField* f = columns[c]->Field();
        const QString shown = columns[c]->DisplayFormat.isEmpty() && f ? f->DisplayFormat : columns[c]->DisplayFormat;
        const QString footer = columns[c]->Footer.DisplayFormat.isEmpty() ? shown : columns[c]->Footer.DisplayFormat;
        lxw_format* cell = workbook_add_format(book);
        format_set_border(cell, LXW_BORDER_THIN);
        lxw_format* total = workbook_add_format(book);
        format_set_border(total, LXW_BORDER_THIN);
        format_set_bold(total);
        if (const QString s = sheetFormat(shown); !s.isEmpty()) format_set_num_format(cell, utf8(s).constData());
        if (const QString s = sheetFormat(footer); !s.isEmpty()) format_set_num_format(total, utf8(s).constData());
        cellFormats << cell;
        totalFormats << total;
        worksheet_set_column(sheet, lxw_col_t(c), lxw_col_t(c), qBound(4.0, columns[c]->Width / 7.0, 60.0), nullptr);
    }

    auto text = [&](lxw_row_t row, lxw_col_t col, const QString& s, lxw_format* format) {
        worksheet_write_string(sheet, row, col, utf8(s).constData(), format);
    };
    auto merged = [&](int row, int col, int rowSpan, int colSpan, const QString& s, lxw_format* format) {
        if (rowSpan <= 1 && colSpan <= 1) return text(lxw_row_t(row), lxw_col_t(col), s, format);
        worksheet_merge_range(sheet, lxw_row_t(row), lxw_col_t(col), lxw_row_t(row + rowSpan - 1),
                              lxw_col_t(col + colSpan - 1), utf8(s).constData(), format);
    };

    int row = 0;
    merged(row++, 0, 1, qMax(count, 1), title, titleFormat);
    if (!options.condition.trimmed().isEmpty()) merged(row++, 0, 1, qMax(count, 1), options.condition, conditionFormat);
    for (const HeaderCell& h : headerCells(grid)) merged(row + h.row, h.column, h.rowSpan, h.columnSpan, h.text, headFormat);
    row += headerRowCount(grid);
    worksheet_freeze_panes(sheet, lxw_row_t(row), 0);

    const QList<QStringList> rows = grid->DisplayedRows();
    for (int r = 0; r < rows.size(); ++r, ++row) {
        for (int c = 0; c < count && c < rows[r].size(); ++c) {
            const QString& shown = rows[r][c];
            if (const auto number = cellNumber(columns[c], r, shown))
                worksheet_write_number(sheet, lxw_row_t(row), lxw_col_t(c), *number, cellFormats[c]);
            else if (shown.isEmpty())
                worksheet_write_blank(sheet, lxw_row_t(row), lxw_col_t(c), cellFormats[c]);
            else
                text(lxw_row_t(row), lxw_col_t(c), shown, cellFormats[c]);
        }
    }
    if (grid->FooterRowVisible()) {
        for (int c = 0; c < count; ++c) {
            const TColumnEh* column = columns[c];
            const QString footer = column->FooterText();
            if (numericFooter(column) && !footer.isEmpty())
                worksheet_write_number(sheet, lxw_row_t(row), lxw_col_t(c), column->GetSumValue(), totalFormats[c]);
            else if (!footer.isEmpty())
                text(lxw_row_t(row), lxw_col_t(c), footer, totalFormats[c]);
            else if (c == 0)
                text(lxw_row_t(row), 0, QObject::tr("合计"), totalFormats[c]);
            else
                worksheet_write_blank(sheet, lxw_row_t(row), lxw_col_t(c), totalFormats[c]);
        }
    }

    const QByteArray bookTitle = utf8(title);
    lxw_doc_properties properties{};
    properties.title = const_cast<char*>(bookTitle.constData());
    workbook_set_properties(book, &properties);
    return workbook_close(book) == LXW_NO_ERROR;
}

bool exportPdf(const TDBGridEh* grid, const QString& title, const QString& fileName, const PrintOptions& options) {
    {
        QPdfWriter writer(fileName);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageOrientation(QPageLayout::Landscape);
        writer.setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
        writer.setTitle(title);
        writer.setCreator("QX_CK");
        if (!render(grid, title, options, &writer)) return false;
    }
    return QFileInfo(fileName).size() > 0;
}

bool exportFile(const TDBGridEh* grid, const QString& title, const QString& fileName, const PrintOptions& options) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == "xlsx") return exportXlsx(grid, title, fileName, options);
    if (suffix == "pdf") return exportPdf(grid, title, fileName, options);
    return exportCsv(grid, fileName);
}

void print(const TDBGridEh* grid, const QString& title, QPrinter* printer, const PrintOptions& options) {
    render(grid, title, options, printer);
}

DialogHandler setDialogHandler(DialogHandler handler) {
    DialogHandler previous = std::move(dialogHandler());
    dialogHandler() = std::move(handler);
    return previous;
}

void printWithDialog(const TDBGridEh* grid, const QString& title, const PrintOptions& options) {
    if (dialogHandler()) {
        dialogHandler()(Dialog::Print, grid, title, options);
        return;
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setDocName(title);
    QPrintDialog dialog(&printer, const_cast<TDBGridEh*>(grid));
    if (dialog.exec() == QDialog::Accepted) print(grid, title, &printer, options);
}

void preview(const TDBGridEh* grid, const QString& title, const PrintOptions& options) {
    if (dialogHandler()) {
        dialogHandler()(Dialog::Preview, grid, title, options);
        return;
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setDocName(title);
    QPrintPreviewDialog dialog(&printer, const_cast<TDBGridEh*>(grid));
    dialog.setWindowTitle(title);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested,
                     [&](QPrinter* p) { print(grid, title, p, options); });
    dialog.exec();
}

QString chooseFile(Dialog dialog, const TDBGridEh* grid, const QString& title, const PrintOptions& options,
                   const QString& filters) {
    if (dialogHandler()) return dialogHandler()(dialog, grid, title, options);
    static const QRegularExpression pattern(R"(\*\.(\w+))");
    const QStringList kinds = filters.split(";;");
    auto suffixOf = [](const QString& filter) { return pattern.match(filter).captured(1); };
    QString chosen = kinds.value(0);
    QString name = QFileDialog::getSaveFileName(const_cast<TDBGridEh*>(grid), QObject::tr("导出"),
                                                fileSafe(title) + "." + suffixOf(chosen), filters, &chosen);
    if (!name.isEmpty() && QFileInfo(name).suffix().isEmpty()) name += "." + suffixOf(chosen);
    return name;
}

void exportWithDialog(const TDBGridEh* grid, const QString& title, const PrintOptions& options) {
    const QString name = chooseFile(Dialog::Export, grid, title, options,
                                    QObject::tr("Excel 工作簿 (*.xlsx);;CSV (*.csv);;PDF (*.pdf)"));
    if (name.isEmpty()) return;
    if (!exportFile(grid, title, name, options)) DISPINFO(QObject::tr("无法写入文件 ") + name, 5);
}

void exportCsvWithDialog(const TDBGridEh* grid, const QString& title) { exportWithDialog(grid, title); }

}  // namespace qx::grid
