// Hang tags for the newest purchase receipt of the demo shop, made headless by the example
// script of the docs: the tags follow the receipt's quantities piece by piece, the PDF has the
// pages they need, and the printed barcodes read back as the codes of the tags.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include "framework/DataSet.h"
#include "framework/Frm_Base.h"
#include "framework/Screenshot.h"
#include "framework/Settings.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "labels/LabelList.h"
#include "labels/TagPrint.h"
#include "support/DemoShopWindow.h"
#include "tests/labels/BarcodeReader.h"
#include "tests/labels/PdfReader.h"

namespace {

class LabelsScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        qx::settings::setProgramFolder(dir.path());
        previousFolder = QDir::currentPath();
        QDir::setCurrent(dir.path());
        shop = std::make_unique<qx::test::DemoShopWindow>(dir.path());
    }
    void TearDown() override {
        shop.reset();
        qx::settings::setProgramFolder({});
        QDir::setCurrent(previousFolder);
    }
    QString run(const QString& script) { return shop->run(script); }
    QString scalar(const QString& sql) { return shop->scalar(sql); }

    QTemporaryDir dir;
    QString previousFolder;
    std::unique_ptr<qx::test::DemoShopWindow> shop;
};

TEST_F(LabelsScriptTest, TagsOfTheNewestReceiptAsAPdfWhoseBarcodesReadBack) {
    QFile script(QString(QXCK_TEST_SOURCE_DIR) + "/docs/scripts/hang_tags.qxs");
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    const QString output = run(QString::fromUtf8(script.readAll()));
    EXPECT_FALSE(output.contains("error")) << output.toStdString();

    const QString noid = scalar("SELECT MAX(NOID) FROM D8101");
    const int pieces = scalar("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D8101A WHERE NOID='" + noid + "'").toInt();
    ASSERT_GT(pieces, 0);
    EXPECT_TRUE(output.contains("共" + QString::number(pieces) + "张")) << output.toStdString();
    EXPECT_TRUE(output.contains("message: 已输出" + QString::number(pieces) + "张吊牌到 hang_tags.pdf"));

    // The list kept for the next run holds one row per piece.
    TClientDataSet list;
    const auto loaded = qx::labels::LoadLabelFile(dir.filePath("CLTZ"), &list);
    ASSERT_TRUE(loaded.ok) << loaded.problem.toStdString();
    ASSERT_EQ(list.RecordCount(), pieces);

    // The PDF has a page per nine tags.
    const qx::labels::TagLayout layout = qx::labels::LoadTagLayout();
    EXPECT_EQ(layout.columns, 3);
    EXPECT_EQ(qx::test::pdfPageCount(dir.filePath("hang_tags.pdf")), (pieces + 8) / 9);

    // The first page of the PDF, read back tag by tag, gives the barcodes of the first nine tags.
    const auto tags = qx::labels::TagsOf(&list);
    const QImage page = qx::test::pdfPage(dir.filePath("hang_tags.pdf"), 0, 300);
    ASSERT_FALSE(page.isNull());
    const auto grid = qx::labels::PageGridFor(layout, 210, 297);
    EXPECT_EQ(grid.perPage(), 9);
    const double mm = 300 / 25.4;
    for (int i = 0; i < grid.perPage() && i < int(tags.size()); ++i) {
        const QRectF r = qx::labels::TagRectMm(layout, grid, i);
        const QStringList read =
            qx::test::readBarcodes(page.copy(QRectF(r.x() * mm, r.y() * mm, r.width() * mm, r.height() * mm).toRect()));
        ASSERT_EQ(read.size(), 1) << "tag " << i << " " << tags[size_t(i)].barcode.toStdString();
        EXPECT_TRUE(read.first().endsWith(":" + tags[size_t(i)].barcode)) << read.first().toStdString();
    }
    // The last page too.
    const int last = (pieces - 1) / 9;
    QStringList expected, lastTags;
    for (int i = last * 9; i < pieces; ++i) expected << tags[size_t(i)].barcode;
    for (const QString& code : qx::test::readBarcodes(qx::test::pdfPage(dir.filePath("hang_tags.pdf"), last, 300)))
        lastTags << code.section(':', 1);
    expected.removeDuplicates();
    expected.sort();
    lastTags.removeDuplicates();
    lastTags.sort();
    EXPECT_EQ(lastTags, expected);
    const QString shots = qEnvironmentVariable("QXCK_BINARY_DIR", ".") + "/screenshots";
    QDir().mkpath(shots);
    EXPECT_TRUE(page.scaledToWidth(1240, Qt::SmoothTransformation).save(shots + "/hang_tags_page.png"));

    // Opened again, the screen shows the kept list.
    const QString again = run("open 299\nexpect rows " + QString::number(pieces) + "\nscreenshot \"" + shots +
                              "/hang_tags_list.png\"\nclose\n");
    EXPECT_FALSE(again.contains("error")) << again.toStdString();
}

TEST_F(LabelsScriptTest, SupervisionCodesOpenFromTheMenuFilterAndDispatch) {
    const QString output = run("login admin admin\nopen 297\nset Edit1 0000000001\nclick btn_ok\nexpect screen 监管码\n"
                               "expect rows 1\ndump grid DBGridEh\nclick Act_Add\nset CK_ID MD01\n"
                               "set Memo1 JG0000000001\nclick btn_ok\ndump messages\nclose\n");
    EXPECT_TRUE(output.contains("message: 操作成功执行!")) << output.toStdString();
    EXPECT_EQ(scalar("SELECT CK_ID FROM d1805 WHERE JGM='JG0000000001'"), "MD01");
}

}  // namespace
