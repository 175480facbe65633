// The reports with a time or ranking axis from the host's menu on the demo shop: each draws its
// chart beside its grid, saves it as a picture and exports its grid to a spreadsheet, all through
// the script runner as a nightly job would.
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include "framework/ChartPane.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/Screenshot.h"
#include "tests/support/DemoShopScript.h"

namespace {

struct ChartedReport {
    const char* name;    // test name
    const char* screen;  // object name of the report
    const char* script;  // opens and runs it
};

void PrintTo(const ChartedReport& r, std::ostream* out) { *out << r.name; }

class ReportChartScriptTest : public qx::test::DemoShopScriptTest, public ::testing::WithParamInterface<ChartedReport> {
protected:
    void SetUp() override {
        DemoShopScriptTest::SetUp();
        runOk("login admin admin\n");
    }
};

// Pixels of the picture that are not the background of its top-left corner.
int drawnPixels(const QImage& image) {
    const QRgb background = image.pixel(0, 0);
    int drawn = 0;
    for (int y = 0; y < image.height(); y += 4)
        for (int x = 0; x < image.width(); x += 4)
            if (image.pixel(x, y) != background) ++drawn;
    return drawn;
}

TEST_P(ReportChartScriptTest, DrawsItsChartSavesItAndExportsItsGrid) {
    const ChartedReport& r = GetParam();
    QTemporaryDir dir;
    const QString png = dir.filePath("chart.png"), xlsx = dir.filePath("report.xlsx");
    const QString out = runOk(QString::fromUtf8(r.script) + "chart " + png + "\nexport " + xlsx + "\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    auto* report = window->findChild<TFrm_Base_Qry*>(r.screen);
    ASSERT_NE(report, nullptr) << out.toStdString();
    ASSERT_GT(report->AdoQry_Main->RecordCount(), 0);
    ASSERT_FALSE(report->ChartSpec().isNone());
    ASSERT_NE(report->ChartPane, nullptr) << "the chart stands beside the grid";
    report->UpdateChart();
    EXPECT_FALSE(report->ChartPane->Data().isEmpty());
    EXPECT_TRUE(report->Act_Chart->isVisible());
    const QImage picture(png);
    ASSERT_FALSE(picture.isNull()) << png.toStdString();
    EXPECT_GT(drawnPixels(picture), 500) << "bars or lines are drawn";
    EXPECT_GT(QFileInfo(xlsx).size(), 2000) << "the spreadsheet holds the report";
    report->resize(1400, 700);
    EXPECT_FALSE(qx::saveScreenshot(report, QString("chart_") + r.name).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Reports, ReportChartScriptTest,
    ::testing::Values(
        ChartedReport{"PurchaseAnnual", "QXCK263", "click func263\nset BDATE 2025-01-01\nclick btn_ok\n"},
        ChartedReport{"SalesAnnual", "QXCK273", "click func273\nset BDATE 2025-01-01\nclick btn_ok\n"},
        ChartedReport{"Ranking", "QXCK281", "click func281\nset BDATE 2026-06-01\nclick btn_ok\n"},
        ChartedReport{"Progress", "QXCK283", "click func283\nset BDATE 2026-06-01\nclick btn_ok\n"},
        ChartedReport{"BusinessAnalysis", "QXCK282",
                      "click func282\nset BDATE 2025-07-01\nset EDATE 2026-06-29\ncheck R3\nset CB1 (销售)销量\nclick btn_refresh\n"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
