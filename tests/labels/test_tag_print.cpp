// Printing hang tags: the symbology a code gets, one tag per piece, the page layout, and the
// barcodes on a rendered page read back by a barcode reader as exactly the codes of the tags.
#include <QDoubleSpinBox>
#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QSpinBox>

#include "framework/DataSet.h"
#include "labels/LabelList.h"
#include "labels/TagPrint.h"
#include "tests/labels/BarcodeReader.h"
#include "tests/labels/PdfReader.h"
#include "tests/labels/LabelsFixture.h"

namespace qx::test {
namespace {

using qx::labels::HangTag;

class TagPrintTest : public LabelsTest {
protected:
    // A label list with one tag.
    static void oneTag(TClientDataSet& list) {
        qx::labels::DefineLabelList(&list);
        list.Append();
        list.FieldByName("tm")->SetAsString("P2R1");
        list.Post();
    }
    static HangTag tag(const QString& code) { return {code, "K2", "夹克", "红色", "L", "海风", "199.00", "100%棉"}; }
    // The tag cells of page 0 rendered at `dpi`, each read back on its own.
    QStringList readEachTag(const std::vector<HangTag>& tags, const qx::labels::TagLayout& layout, int dpi) {
        return readEachTag(qx::labels::RenderTagPage(tags, layout, 0, dpi), int(tags.size()), layout, dpi);
    }
    // The same from a picture of the page (a PDF page, for one).
    QStringList readEachTag(const QImage& page, int count, const qx::labels::TagLayout& layout, int dpi) {
        const auto grid = qx::labels::PageGridFor(layout, 210, 297);
        QStringList out;
        const double mm = dpi / 25.4;
        for (int i = 0; i < count && i < grid.perPage(); ++i) {
            const QRectF r = qx::labels::TagRectMm(layout, grid, i);
            const QImage cell = page.copy(QRectF(r.x() * mm, r.y() * mm, r.width() * mm, r.height() * mm).toRect());
            const QStringList codes = readBarcodes(cell);
            out << (codes.isEmpty() ? QString("<none>") : codes.join(" "));
        }
        return out;
    }
};

TEST_F(TagPrintTest, ThirteenDigitsWithTheirCheckDigitAreEan13AndEverythingElseCode128) {
    using qx::labels::Symbology;
    EXPECT_EQ(qx::labels::SymbologyFor("6901234567892"), Symbology::Ean13);
    EXPECT_EQ(qx::labels::SymbologyFor("6901234567893"), Symbology::Code128);  // wrong check digit
    EXPECT_EQ(qx::labels::SymbologyFor("690123456789"), Symbology::Code128);   // twelve digits
    EXPECT_EQ(qx::labels::SymbologyFor("P2R1"), Symbology::Code128);
    EXPECT_EQ(qx::labels::SymbologyFor("690123456789２"), Symbology::Code128);  // a full-width digit
    EXPECT_EQ(qx::labels::SymbologyFor(""), Symbology::None);
}

TEST_F(TagPrintTest, EveryBarcodeOnAPageReadsBackAsItsCode) {
    const std::vector<HangTag> tags = {tag("6901234567892"), tag("P2R1"), tag("K31R"), tag("FREE-M-01"),
                                       tag("YG25010017043"), tag("TQ250700120911"), tag("4006381333931"),
                                       tag("a-b_c.d/e+f"), tag("")};
    const qx::labels::TagLayout layout;  // 50 x 80 mm, three a row
    EXPECT_EQ(readEachTag(tags, layout, 300),
              (QStringList{"EAN-13:6901234567892", "CODE-128:P2R1", "CODE-128:K31R", "CODE-128:FREE-M-01",
                           "CODE-128:YG25010017043", "CODE-128:TQ250700120911", "EAN-13:4006381333931",
                           "CODE-128:a-b_c.d/e+f", "<none>"}));
    // The whole page at once gives the same codes.
    QStringList expected;
    for (const char* code : {"6901234567892", "4006381333931"}) expected << QString("EAN-13:") + code;
    for (const char* code : {"P2R1", "K31R", "FREE-M-01", "YG25010017043", "TQ250700120911", "a-b_c.d/e+f"})
        expected << QString("CODE-128:") + code;
    expected.sort();
    EXPECT_EQ(readBarcodes(qx::labels::RenderTagPage(tags, layout, 0, 300)), expected);

    // And from the PDF, page rendered by a PDF reader.
    const QString pdf = dir.filePath("page.pdf");
    qx::labels::WriteTagsPdf(pdf, tags, layout);
    ASSERT_EQ(pdfPageCount(pdf), 1);
    const QImage page = pdfPage(pdf, 0, 300);
    EXPECT_EQ(readEachTag(page, int(tags.size()), layout, 300), readEachTag(tags, layout, 300));
    EXPECT_EQ(readBarcodes(page), expected);
}

TEST_F(TagPrintTest, SmallTagsInFourColumnsStillRead) {
    qx::labels::TagLayout layout;
    layout.widthMm = 40;
    layout.heightMm = 60;
    layout.columns = 4;
    EXPECT_EQ(readEachTag({tag("P2R1"), tag("6901234567892"), tag("TQ250700120911")}, layout, 300),
              (QStringList{"CODE-128:P2R1", "EAN-13:6901234567892", "CODE-128:TQ250700120911"}));
}

TEST_F(TagPrintTest, ACodeZintCannotEncodeIsReportedNotDrawn) {
    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QString error;
    EXPECT_FALSE(qx::labels::DrawBarcode(painter, QRectF(0, 0, 400, 200), "款号", &error));
    EXPECT_FALSE(error.isEmpty());
    painter.end();
    EXPECT_TRUE(readBarcodes(image).isEmpty());
}

TEST_F(TagPrintTest, OneTagPerPieceAndAsManyPagesAsNeeded) {
    TClientDataSet list;
    qx::labels::DefineLabelList(&list);
    TClientDataSet lines;
    opensql(&lines, "299", qx::labels::StyleLinesSql("K2"), 0, 0, {}, {}, false, "1");
    lines.First();
    lines.Edit();
    lines.FieldByName("S2")->SetAsInteger(3);
    lines.Post();
    qx::labels::AppendTags(&lines, &list);
    const auto tags = qx::labels::TagsOf(&list);
    ASSERT_EQ(tags.size(), 3u);
    for (const HangTag& t : tags) EXPECT_EQ(t.barcode, "P2R3");
    EXPECT_EQ(tags[0].price, "199.00");
    EXPECT_EQ(tags[0].size, "L");

    const qx::labels::TagLayout layout;  // 3 x 3 on A4
    EXPECT_EQ(qx::labels::PageGridFor(layout, 210, 297).perPage(), 9);
    EXPECT_EQ(qx::labels::PageCount(layout, 9, 210, 297), 1);
    EXPECT_EQ(qx::labels::PageCount(layout, 10, 210, 297), 2);

    const QString pdf = dir.filePath("tags.pdf");
    std::vector<HangTag> many(10, tags[0]);
    qx::labels::WriteTagsPdf(pdf, many, layout);
    EXPECT_EQ(pdfPageCount(pdf), 2);
}

TEST_F(TagPrintTest, APrinterGetsTheSamePagesAsThePdf) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath("printed.pdf"));
    qx::labels::PaintTags(&printer, std::vector<HangTag>(19, tag("P2R1")), qx::labels::TagLayout());
    EXPECT_EQ(pdfPageCount(dir.filePath("printed.pdf")), 3);
}

TEST_F(TagPrintTest, TheDialogRemembersSizeAndColumnsAndRefusesWhatDoesNotFit) {
    TClientDataSet list;
    oneTag(list);
    {
        qx::labels::TagPrintDialog dialog(nullptr, &list);
        dialog.WidthMm->setValue(60);
        dialog.HeightMm->setValue(40);
        dialog.Columns->setValue(4);  // 4 x 60 mm is wider than A4
        dialog.PdfFile->setText(dir.filePath("a.pdf"));
        dialog.btn_Pdf->click();
        EXPECT_EQ(sink->texts(), QStringList{"吊牌宽度乘以每行张数超出了纸张宽度!"});
        EXPECT_FALSE(QFile::exists(dir.filePath("a.pdf")));
        sink->clear();
        dialog.Columns->setValue(3);
        dialog.btn_Pdf->click();
        EXPECT_EQ(sink->texts(), QStringList{"已输出1张吊牌到 " + dir.filePath("a.pdf")});
        EXPECT_TRUE(QFile::exists(dir.filePath("a.pdf")));
    }
    const auto layout = qx::labels::LoadTagLayout();
    EXPECT_DOUBLE_EQ(layout.widthMm, 60);
    EXPECT_DOUBLE_EQ(layout.heightMm, 40);
    EXPECT_EQ(layout.columns, 3);
    qx::labels::TagPrintDialog again(nullptr, &list);
    EXPECT_DOUBLE_EQ(again.WidthMm->value(), 60);
    EXPECT_EQ(again.Columns->value(), 3);
    EXPECT_EQ(again.PdfFile->text(), dir.filePath("a.pdf"));
}

TEST_F(TagPrintTest, AFileThatCannotBeWrittenIsReportedAndTheDialogStays) {
    TClientDataSet list;
    oneTag(list);
    qx::labels::TagPrintDialog dialog(nullptr, &list);
    dialog.PdfFile->setText(dir.filePath("no/such/folder/'; x.pdf"));
    dialog.btn_Pdf->click();
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_TRUE(sink->errors().first().startsWith("无法写入文件 ")) << sink->errors().first().toStdString();
    EXPECT_EQ(dialog.PdfFile->text(), dir.filePath("no/such/folder/'; x.pdf"));
}

TEST_F(TagPrintTest, NothingToPrintOrNoFileNameIsSaidPlainly) {
    TClientDataSet list;
    qx::labels::DefineLabelList(&list);
    qx::labels::TagPrintDialog dialog(nullptr, &list);
    dialog.PdfFile->clear();
    dialog.btn_Pdf->click();
    dialog.PdfFile->setText(dir.filePath("b.pdf"));
    dialog.btn_Pdf->click();
    EXPECT_EQ(sink->texts(), (QStringList{"请输入PDF文件名!", "没有可打印的吊牌!"}));
}

}  // namespace
}  // namespace qx::test
