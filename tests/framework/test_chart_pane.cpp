// The chart beside a report: a real report over SQLite describing its chart, the pane following
// the grid's selection and data, both axes, rendering offscreen, saving, printing, and reports
// without a chart left as they were.
#include <gtest/gtest.h>

#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSplitter>

#include "framework/ChartPane.h"
#include "framework/Screenshot.h"
#include "tests/framework/SalesReport.h"
#include "tests/labels/PdfReader.h"
#include "tests/support/ScreenTestEnvironment.h"

namespace {

using qx::chart::Axis;
using qx::chart::ChartKind;
using qx::grid::Dialog;

// Pixels that are not the background (white).
int inkOf(const QImage& image) {
    int ink = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF) ++ink;
    return ink;
}

QStringList seriesNames(const qx::chart::ChartData& d) {
    QStringList out;
    for (const auto& s : d.series) out << s.name;
    return out;
}

class ChartPaneTest : public qx::test::SalesReportTest {
protected:
    // Runs the report with a chart and lets the screen settle (titles set after the data).
    void runWith(const qx::chart::ChartSpec& spec, const QString& group = {}) {
        if (!report) open();
        report->Spec = spec;
        report->Run(group);
        QApplication::processEvents();
    }
    const qx::chart::ChartData& data() const { return report->ChartPane->Data(); }
};

TEST_F(ChartPaneTest, ReportWithoutChartIsLeftAsItWas) {
    open()->Run();
    QApplication::processEvents();
    EXPECT_EQ(report->ChartPane, nullptr);
    EXPECT_EQ(report->ChartSplitter, nullptr);
    EXPECT_EQ(report->DBGridEh->parentWidget(), report);
    EXPECT_FALSE(report->Act_Chart->isVisible());
    EXPECT_FALSE(report->Act_SaveChart->isVisible());
    EXPECT_EQ(report->findChild<QChartView*>(), nullptr);
}

TEST_F(ChartPaneTest, ColumnsAreTheAxisAndEachSelectedRowIsASeries) {
    runWith({ChartKind::Bars, Axis::Columns, "ITEM", {"RK_JH", "RK_XT", "CK_XS"}});
    ASSERT_NE(report->ChartPane, nullptr);
    EXPECT_TRUE(report->Act_Chart->isVisible());
    EXPECT_TRUE(report->Act_Chart->isChecked());
    EXPECT_FALSE(report->ChartPane->isHidden());
    EXPECT_EQ(report->DBGridEh->parentWidget(), report->ChartSplitter);
    // Titled by the grid's column titles (under their bands).
    EXPECT_EQ(data().categories, QStringList({"进货", "销售退", "销售"}));
    ASSERT_EQ(data().series.size(), 1);
    EXPECT_EQ(data().series[0].name, "衬衫") << "the current row";
    EXPECT_EQ(data().series[0].values, QList<double>({10, 2, 1234.5}));

    selectRows({1, 2});
    EXPECT_EQ(seriesNames(data()), QStringList({"长裤", "外套"}));
    EXPECT_EQ(data().series[1].values, QList<double>({5, 1, 0}));
    QChart* chart = report->ChartPane->View()->chart();
    ASSERT_EQ(chart->series().size(), 1) << "one bar series with a set per row";
    EXPECT_EQ(chart->title(), "商品进销汇总");
}

TEST_F(ChartPaneTest, WithoutValueFieldsEveryVisibleNumberColumnIsDrawn) {
    runWith({ChartKind::Bars, Axis::Columns, "ITEM", {}});
    EXPECT_EQ(data().categories, QStringList({"进货", "销售退", "销售"}))
        << "the hidden cost column is not drawn, nor the label or the note";
    report->ShowCost = true;
    report->Run();
    QApplication::processEvents();
    EXPECT_EQ(data().categories.size(), 4);
    EXPECT_EQ(data().categories.last(), "成本");
}

TEST_F(ChartPaneTest, RowsAreTheAxisAndEachValueFieldIsASeries) {
    runWith({ChartKind::Lines, Axis::Rows, "ITEM", {"RK_JH", "CK_XS", "COST"}});
    EXPECT_EQ(data().categories, QStringList({"衬衫", "长裤", "外套"}));
    EXPECT_EQ(seriesNames(data()), QStringList({"进货", "销售"}))
        << "the cost, hidden without cost rights, is not drawn";
    EXPECT_EQ(data().series[0].values, QList<double>({10, 20, 5}));
    QChart* chart = report->ChartPane->View()->chart();
    EXPECT_EQ(chart->series().size(), 2) << "a line per value field";
    // Several rows selected: only they are drawn; one row selected: all rows again.
    selectRows({0, 2});
    EXPECT_EQ(data().categories, QStringList({"衬衫", "外套"}));
    selectRows({1});
    EXPECT_EQ(data().categories.size(), 3);
}

TEST_F(ChartPaneTest, ChartFollowsNewDataAndTheSpecOfEachRun) {
    runWith({ChartKind::Bars, Axis::Rows, "ITEM", {"RK_JH"}});
    EXPECT_EQ(data().categories.size(), 3);
    report->Run("A");
    QApplication::processEvents();
    EXPECT_EQ(data().categories, QStringList({"衬衫", "长裤"}));
    // The report's answer changes with its conditions: none now hides the chart and its actions.
    runWith({});
    EXPECT_TRUE(report->ChartPane->isHidden());
    EXPECT_FALSE(report->Act_Chart->isVisible());
    EXPECT_FALSE(report->Act_SaveChart->isVisible());
    runWith({ChartKind::Lines, Axis::Columns, "ITEM", {"RK_JH"}}, "B");
    EXPECT_FALSE(report->ChartPane->isHidden());
    EXPECT_EQ(seriesNames(data()), QStringList({"外套"}));
}

TEST_F(ChartPaneTest, EmptyResultDrawsAnEmptyChart) {
    runWith({ChartKind::Bars, Axis::Rows, "ITEM", {"RK_JH"}}, "没有这个组'; DROP TABLE T_SALES;--");
    EXPECT_TRUE(data().isEmpty());
    EXPECT_EQ(report->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(report->ChartPane->View()->chart()->title().contains("没有可画的数据"));
    EXPECT_EQ(qx::test::scalarOf(*db, "SELECT COUNT(*) FROM T_SALES"), "3") << "the quote stayed inside the text";
}

TEST_F(ChartPaneTest, ManySelectedRowsAreCutAtTheSeriesLimit) {
    QString inserts;
    for (int i = 0; i < 30; ++i) inserts += QString("INSERT INTO T_SALES VALUES (%1,'C','款%1',%1,0,1,1,NULL);").arg(10 + i);
    ExecSql("901", "", "Add", inserts, 65535, false, true, false, true);
    qx::chart::ChartSpec spec{ChartKind::Bars, Axis::Columns, "ITEM", {"RK_JH", "RK_XT"}};
    spec.maxSeries = 5;
    runWith(spec, "C");
    report->DBGridEh->selectAll();
    EXPECT_EQ(data().series.size(), 5);
    EXPECT_EQ(data().note, "只画选中的前 5 行");
    EXPECT_TRUE(report->ChartPane->View()->chart()->title().contains("只画选中的前 5 行"));
}

TEST_F(ChartPaneTest, ChartRendersOffscreenToAPictureWithContent) {
    runWith({ChartKind::Bars, Axis::Rows, "ITEM", {"RK_JH", "RK_XT"}});
    const QString file = dir.filePath("chart.png");
    ASSERT_TRUE(report->ChartPane->SavePng(file, QSize(800, 500)));
    QImage image(file);
    ASSERT_EQ(image.size(), QSize(800, 500));
    const int ink = inkOf(image);
    // An empty chart (title and frame only) for comparison.
    TChartPane empty;
    empty.SetSpec({ChartKind::Bars, Axis::Rows, "ITEM", {"RK_JH"}}, "商品进销汇总");
    const int emptyInk = inkOf(empty.Render(QSize(800, 500)));
    EXPECT_GT(ink, 800 * 500 / 50) << "bars, axes and labels";
    EXPECT_GT(ink, emptyInk * 2);
    // The bars are there in the first set's colour.
    auto* bars = qobject_cast<QBarSeries*>(report->ChartPane->View()->chart()->series().value(0));
    ASSERT_NE(bars, nullptr);
    const QRgb colour = bars->barSets().value(0)->color().rgb() & 0xFFFFFF;
    int barInk = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) == colour) ++barInk;
    EXPECT_GT(barInk, 500);
}

TEST_F(ChartPaneTest, ChartIsShownHiddenAndSavedFromTheToolbar) {
    runWith({ChartKind::Lines, Axis::Rows, "ITEM", {"RK_JH"}});
    report->Act_Chart->trigger();
    EXPECT_FALSE(report->Act_Chart->isChecked());
    EXPECT_TRUE(report->ChartPane->isHidden());
    report->Act_Chart->trigger();
    EXPECT_FALSE(report->ChartPane->isHidden());

    answer = dir.filePath("趋势");
    report->Act_SaveChart->trigger();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].dialog, Dialog::SaveChart);
    EXPECT_EQ(asked[0].title, "商品进销汇总");
    EXPECT_FALSE(QImage(answer, "PNG").isNull());
    EXPECT_GT(inkOf(QImage(answer, "PNG")), 1000);
    answer = dir.filePath("no/folder/x.png");
    report->Act_SaveChart->trigger();
    EXPECT_EQ(sink->texts(), QStringList({"无法写入文件 " + answer}));
}

TEST_F(ChartPaneTest, PrintingCarriesTheShownChartOnAPageOfItsOwn) {
    runWith({ChartKind::Bars, Axis::Columns, "ITEM", {"RK_JH", "RK_XT"}});
    report->Act_Preview->trigger();
    ASSERT_EQ(asked.size(), 1u);
    ASSERT_TRUE(asked[0].options.lastPage);
    const QString file = dir.filePath("with_chart.pdf");
    ASSERT_TRUE(qx::grid::exportPdf(asked[0].grid, asked[0].title, file, asked[0].options));
    ASSERT_EQ(qx::test::pdfPageCount(file), 2);
    EXPECT_GT(inkOf(qx::test::pdfPage(file, 1, 40)), 2000) << "the chart's page is drawn";
    // The PDF export of the toolbar carries it too; a hidden chart is not printed.
    answer = dir.filePath("export.pdf");
    report->Act_Export->trigger();
    EXPECT_EQ(qx::test::pdfPageCount(answer), 2);
    report->Act_Chart->trigger();
    report->Act_Print->trigger();
    EXPECT_FALSE(asked.back().options.lastPage);
}

TEST_F(ChartPaneTest, SameTitlesUnderDifferentBandsKeepTheirBand) {
    runWith({ChartKind::Lines, Axis::Columns, "ITEM", {"RK_JH", "RK_XT", "CK_XS"}});
    // Day columns of two months, titled after the data was opened: the chart follows the titles.
    report->DBGridEh->ColumnByField("RK_JH")->Title = "202603|15";
    report->DBGridEh->ColumnByField("RK_XT")->Title = "202604|15";
    report->DBGridEh->ColumnByField("CK_XS")->Title = "202604|16";
    report->DBGridEh->ColumnsChanged();
    QApplication::processEvents();
    EXPECT_EQ(data().categories, QStringList({"202603 15", "202604 15", "16"}));
}

TEST_F(ChartPaneTest, Screenshot) {
    QString inserts;
    const QStringList items{"衬衫", "长裤", "外套", "针织衫", "连衣裙", "T恤", "风衣", "牛仔裤"};
    for (int i = 0; i < items.size(); ++i)
        inserts += QString("INSERT INTO T_SALES VALUES (%1,'D','%2',%3,%4,%5,0,NULL);")
                       .arg(20 + i).arg(items[i]).arg(40 + (i * 37) % 60).arg(i % 3).arg(25 + (i * 53) % 70);
    ExecSql("901", "", "Add", inserts, 65535, false, true, false, true);
    runWith({ChartKind::Bars, Axis::Rows, "ITEM", {"RK_JH", "CK_XS"}}, "D");
    report->resize(1100, 460);
    const QString file = qx::saveScreenshot(report, "report_chart");
    ASSERT_FALSE(file.isEmpty());
    EXPECT_EQ(data().categories, items);
    EXPECT_GT(inkOf(QImage(file)), 10000);
}

}  // namespace
