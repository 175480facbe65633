// Print, preview, PDF, spreadsheet and CSV of grids through the one print path: a real report
// over SQLite exported to XLSX and read back, its PDF read back as text, and every base screen's
// toolbar going through the same dialogs.
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QTimer>
#include <QPainter>
#include <QPdfWriter>

#include "framework/Frm_Base_Entry_Body.h"
#include "framework/Frm_Base_Entry_Head.h"
#include "tests/framework/SalesReport.h"
#include "tests/framework/XlsxReadBack.h"
#include "tests/labels/PdfReader.h"

namespace {

using qx::grid::Dialog;
using qx::test::XlsxReadBack;

// Every page's text, one after the other.
QString pdfText(const QString& fileName) {
    const auto document = Poppler::Document::load(fileName);
    if (!document) return {};
    QString text;
    for (int i = 0; i < document->numPages(); ++i) text += document->page(i)->text(QRectF()) + "\n";
    return text;
}

class GridExportTest : public qx::test::SalesReportTest {};

TEST_F(GridExportTest, BandsSpanTheirColumnsAndPlainTitlesSpanBothRows) {
    open()->Run();
    const QList<qx::grid::HeaderCell> cells = qx::grid::headerCells(report->DBGridEh);
    EXPECT_EQ(qx::grid::headerRowCount(report->DBGridEh), 2);
    QStringList seen;
    for (const auto& c : cells)
        seen << QString("%1,%2 %3x%4 %5").arg(c.row).arg(c.column).arg(c.rowSpan).arg(c.columnSpan).arg(c.text);
    // The cost column is hidden (no cost rights): it is not among the titles.
    EXPECT_EQ(seen, QStringList({"0,0 2x1 品名", "0,1 1x2 本期入库数量", "0,3 1x1 本期出库", "0,4 2x1 备注",
                                 "1,1 1x1 进货", "1,2 1x1 销售退", "1,3 1x1 销售"}));
    const QString html = qx::grid::toHtml(report->DBGridEh, "商品进销汇总", {"全部商品"});
    EXPECT_TRUE(html.contains("<th rowspan=2>品名</th><th colspan=2>本期入库数量</th>"));
    EXPECT_TRUE(html.contains("<p align=center style='font-size:9pt'>全部商品</p>"));
    EXPECT_FALSE(html.contains("成本"));
}

TEST_F(GridExportTest, ReportAsSpreadsheetReadsBackWithMergedTitlesNumbersAndTotals) {
    open()->Run();
    const QString file = dir.filePath("进销.xlsx");
    ASSERT_TRUE(qx::grid::exportXlsx(report->DBGridEh, "商品进销汇总", file, {"全部商品"}));
    XlsxReadBack x(file);
    EXPECT_EQ(x.sheetName(), "商品进销汇总");
    // Title and condition over the five visible columns.
    EXPECT_EQ(x.text(0, 0), "商品进销汇总");
    EXPECT_EQ(x.mergeAt(0, 0), "A1:E1");
    EXPECT_EQ(x.text(1, 0), "全部商品");
    EXPECT_EQ(x.mergeAt(1, 0), "A2:E2");
    // Two title rows: bands merged across, plain titles merged down.
    EXPECT_EQ(x.text(2, 0), "品名");
    EXPECT_EQ(x.mergeAt(2, 0), "A3:A4");
    EXPECT_EQ(x.text(2, 1), "本期入库数量");
    EXPECT_EQ(x.mergeAt(2, 1), "B3:C3");
    EXPECT_EQ(x.text(3, 1), "进货");
    EXPECT_EQ(x.text(3, 2), "销售退");
    EXPECT_EQ(x.text(2, 3), "本期出库");
    EXPECT_EQ(x.mergeAt(2, 3), "") << "a band over one column is a plain cell";
    EXPECT_EQ(x.text(3, 3), "销售");
    EXPECT_EQ(x.text(2, 4), "备注");
    EXPECT_EQ(x.mergeAt(2, 4), "E3:E4");
    // Rows: numbers as numbers (the formatted 1,234.50 too), texts as texts.
    EXPECT_EQ(x.text(4, 0), "衬衫");
    ASSERT_TRUE(x.isNumber(4, 1));
    EXPECT_DOUBLE_EQ(x.number(4, 1), 10);
    ASSERT_TRUE(x.isNumber(4, 3));
    EXPECT_DOUBLE_EQ(x.number(4, 3), 1234.5);
    EXPECT_EQ(x.text(4, 4), "O'Neil's");
    EXPECT_EQ(x.text(5, 4), "=SUM(A1:A9)") << "a text that looks like a formula stays a text";
    EXPECT_TRUE(x.isNumber(6, 3));
    EXPECT_DOUBLE_EQ(x.number(6, 3), 0);
    EXPECT_TRUE(x.isEmpty(6, 4));
    // The footer's sums as the totals row.
    EXPECT_EQ(x.text(7, 0), "合计");
    ASSERT_TRUE(x.isNumber(7, 1));
    EXPECT_DOUBLE_EQ(x.number(7, 1), 35);
    EXPECT_DOUBLE_EQ(x.number(7, 2), 3);
    EXPECT_DOUBLE_EQ(x.number(7, 3), 1241.75);
    EXPECT_EQ(x.lastRow(), 7);
    EXPECT_EQ(x.lastColumn(), 4) << "the hidden cost column is left out";
}

TEST_F(GridExportTest, CostColumnIsExportedWhenShown) {
    open()->ShowCost = true;
    report->Run();
    const QString file = dir.filePath("cost.xlsx");
    ASSERT_TRUE(qx::grid::exportXlsx(report->DBGridEh, "商品进销汇总", file));
    XlsxReadBack x(file);
    // No condition line: the titles start in the second row.
    EXPECT_EQ(x.text(1, 4), "成本");
    EXPECT_EQ(x.mergeAt(1, 4), "E2:E3");
    EXPECT_DOUBLE_EQ(x.number(6, 4), 170);
}

TEST_F(GridExportTest, HostileTextsAndTitlesExportAsTheyAre) {
    const QString longNote(40000, QChar(u'长'));
    ExecSql("901", "", "Add", "UPDATE T_SALES SET NOTE=" + QuotedStr(longNote) + " WHERE SEQ=3", 65535, false, true,
            false, true);
    open()->Run();
    const QString file = dir.filePath("hostile.xlsx");
    // A title with characters a sheet name may not have, longer than a sheet name may be.
    const QString title = "进销[汇总]/2026:03*?'很长很长很长很长很长很长很长很长很长很长很长";
    ASSERT_TRUE(qx::grid::exportXlsx(report->DBGridEh, title, file));
    XlsxReadBack x(file);
    EXPECT_EQ(x.text(0, 0), title) << "the title row keeps the whole title";
    EXPECT_LE(x.sheetName().size(), 31);
    EXPECT_FALSE(x.sheetName().contains('/'));
    EXPECT_EQ(x.text(5, 4).size(), 32767) << "a cell holds at most 32,767 characters";
    EXPECT_FALSE(qx::grid::exportXlsx(report->DBGridEh, "x", dir.filePath("no/such/folder/a.xlsx")));
}

TEST_F(GridExportTest, TheExtensionDecidesTheKind) {
    open()->Run();
    for (const char* name : {"a.XLSX", "a.pdf", "a.csv", "a"})
        ASSERT_TRUE(qx::grid::exportFile(report->DBGridEh, "商品进销汇总", dir.filePath(name), {"全部商品"})) << name;
    EXPECT_EQ(XlsxReadBack(dir.filePath("a.XLSX")).text(3, 1), "进货");
    EXPECT_EQ(qx::test::pdfPageCount(dir.filePath("a.pdf")), 1);
    QFile csv(dir.filePath("a.csv"));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    const QByteArray bytes = csv.readAll();
    ASSERT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    const QString text = QString::fromUtf8(bytes.mid(3));
    EXPECT_TRUE(text.startsWith("品名,本期入库数量 进货,本期入库数量 销售退,本期出库 销售,备注\r\n"));
    EXPECT_TRUE(text.contains("衬衫,10,2,\"1,234.50\",O'Neil's\r\n"));
    QFile plain(dir.filePath("a"));
    ASSERT_TRUE(plain.open(QIODevice::ReadOnly));
    EXPECT_TRUE(plain.readAll().startsWith("\xEF\xBB\xBF")) << "without an extension: CSV";
}

TEST_F(GridExportTest, ReportExportsThroughItsToolbarWithTitleAndCondition) {
    open()->ReportTitle = "商品进销汇总表";
    report->Run("A");
    answer = dir.filePath("report.xlsx");
    report->Act_Export->trigger();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].dialog, Dialog::Export);
    EXPECT_EQ(asked[0].grid, report->DBGridEh);
    EXPECT_EQ(asked[0].title, "商品进销汇总表");
    EXPECT_EQ(asked[0].options.condition, "商品组:A");
    XlsxReadBack x(answer);
    EXPECT_EQ(x.text(0, 0), "商品进销汇总表");
    EXPECT_EQ(x.text(1, 0), "商品组:A");
    EXPECT_EQ(x.text(5, 0), "长裤");
    EXPECT_EQ(x.text(6, 0), "合计");
    EXPECT_DOUBLE_EQ(x.number(6, 1), 30);

    // Cancelled: nothing written, nothing said.
    answer.clear();
    report->Act_Export->trigger();
    EXPECT_TRUE(sink->texts().isEmpty());
    // A file that cannot be written is reported.
    answer = dir.filePath("missing/folder/report.xlsx");
    report->Act_Export->trigger();
    EXPECT_EQ(sink->texts(), QStringList({"无法写入文件 " + answer}));
}

TEST_F(GridExportTest, ReportPdfHasTitleConditionTitlesAndRowsAsText) {
    open()->Run("A");
    answer = dir.filePath("report.pdf");
    report->Act_Export->trigger();
    ASSERT_EQ(qx::test::pdfPageCount(answer), 1);
    const QString text = pdfText(answer);
    for (const char* expected : {"商品进销汇总", "商品组:A", "本期入库数量", "销售退", "衬衫", "长裤", "1,234.50",
                                    "O'Neil's", "第1页/共1页"})
        EXPECT_TRUE(QString(text).remove(' ').contains(QString::fromUtf8(expected).remove(' ')))
            << expected << "\n" << text.toStdString();
    EXPECT_FALSE(text.contains("外套")) << "the condition left it out";
}

TEST_F(GridExportTest, LongReportPdfRepeatsItsTitlesOnEveryPage) {
    QString inserts;
    for (int i = 0; i < 150; ++i)
        inserts += QString("INSERT INTO T_SALES VALUES (%1,'C','款%1',1,0,1,1,NULL);").arg(10 + i);
    ExecSql("901", "", "Add", inserts, 65535, false, true, false, true);
    open()->Run("C");
    const QString file = dir.filePath("long.pdf");
    ASSERT_TRUE(qx::grid::exportPdf(report->DBGridEh, "商品进销汇总", file, {report->ConditionText()}));
    const int pages = qx::test::pdfPageCount(file);
    ASSERT_GT(pages, 1);
    const auto document = Poppler::Document::load(file);
    const QString last = document->page(pages - 1)->text(QRectF());
    EXPECT_TRUE(last.contains("本期入库数量")) << last.toStdString();
    EXPECT_TRUE(QString(last).remove(' ').contains(QString("第%1页/共%1页").arg(pages)));
    EXPECT_TRUE(pdfText(file).contains("款159"));
}

TEST_F(GridExportTest, PrintAndPreviewOfAReportGoThroughThePrintPath) {
    open()->Run("B");
    report->Act_Preview->trigger();
    report->Act_ShowReport->trigger();
    report->Act_Print->trigger();
    ASSERT_EQ(asked.size(), 3u);
    EXPECT_EQ(asked[0].dialog, Dialog::Preview);
    EXPECT_EQ(asked[1].dialog, Dialog::Preview);
    EXPECT_EQ(asked[2].dialog, Dialog::Print);
    for (const auto& a : asked) {
        EXPECT_EQ(a.title, "商品进销汇总");
        EXPECT_EQ(a.options.condition, "商品组:B");
        EXPECT_FALSE(a.options.lastPage) << "no chart, no chart page";
    }
    // What the preview shows is what the PDF holds.
    const QString file = dir.filePath("preview.pdf");
    ASSERT_TRUE(qx::grid::exportPdf(asked[0].grid, asked[0].title, file, asked[0].options));
    EXPECT_TRUE(pdfText(file).contains("外套"));
}

TEST_F(GridExportTest, ListsDocumentsAndEntryLinesExportThroughTheSameDialog) {
    TFrm_Base_Outer list;
    list.SetCaption("供应商");
    TFrm_Base_Entry_Head documents;
    documents.SetCaption("采购进货单");
    Tfrm_Base_Entry_Body entry;
    entry.SetCaption("采购进货单录入");
    list.Act_Export->trigger();
    documents.Act_Export->trigger();
    entry.Act_Export->trigger();
    list.Act_Print->trigger();
    documents.Act_Preview->trigger();
    entry.Act_Print->trigger();
    ASSERT_EQ(asked.size(), 6u);
    EXPECT_EQ(asked[0].grid, list.DBGridEh);
    EXPECT_EQ(asked[0].title, "供应商");
    EXPECT_EQ(asked[1].grid, documents.DBGridEh);
    EXPECT_EQ(asked[2].grid, entry.DBGridEh);
    EXPECT_EQ(asked[2].title, "采购进货单录入");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(asked[size_t(i)].dialog, Dialog::Export);
    EXPECT_EQ(asked[3].dialog, Dialog::Print);
    EXPECT_EQ(asked[4].dialog, Dialog::Preview);
    EXPECT_EQ(asked[5].dialog, Dialog::Print);
}

TEST_F(GridExportTest, AnyGridExportsFromItsContextMenu) {
    // A grid outside the bases' toolbars (a drill-down's, a preview's) in a window of its own.
    TFrm_Base_Detail detail;
    detail.SetCaption("库存明细");
    TClientDataSet lines;
    lines.AddField("K_ID", ftString, 10, "款号");
    lines.AddField("SL", ftInteger, 0, "数量");
    lines.CreateDataSet();
    lines.Append();
    lines.FieldByName("K_ID")->SetAsString("K01");
    lines.FieldByName("SL")->SetAsInteger(3);
    lines.Post();
    detail.DBGridEh->SetDataSet(&lines);
    detail.show();
    answer = dir.filePath("detail.xlsx");
    QStringList offered;
    QTimer::singleShot(0, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction* a : menu->actions()) offered << a->text();
        for (QAction* a : menu->actions())
            if (a->text() == "导出…") a->trigger();
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), detail.DBGridEh->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(detail.DBGridEh->viewport(), &event);
    EXPECT_EQ(offered, QStringList({"复制", "导出…"}));
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].dialog, Dialog::Export);
    EXPECT_EQ(asked[0].title, "库存明细");
    XlsxReadBack x(answer);
    EXPECT_EQ(x.text(1, 0), "款号");
    EXPECT_EQ(x.text(2, 0), "K01");
    EXPECT_TRUE(x.isNumber(2, 1));
    EXPECT_DOUBLE_EQ(x.number(2, 1), 3);
}

TEST_F(GridExportTest, LastPageIsPaintedAfterTheTable) {
    open()->Run();
    qx::grid::PrintOptions options{"全部商品"};
    int painted = 0;
    options.lastPage = [&](QPainter& painter, const QRect& page) {
        ++painted;
        painter.drawText(page, Qt::AlignCenter, "最后一页");
    };
    const QString file = dir.filePath("last.pdf");
    ASSERT_TRUE(qx::grid::exportPdf(report->DBGridEh, "商品进销汇总", file, options));
    EXPECT_EQ(painted, 1);
    ASSERT_EQ(qx::test::pdfPageCount(file), 2);
    const auto document = Poppler::Document::load(file);
    EXPECT_TRUE(document->page(1)->text(QRectF()).contains("最后一页"));
    EXPECT_TRUE(document->page(1)->text(QRectF()).remove(' ').contains("第2页/共2页"));
}

}  // namespace
