// The stock, purchase and sales reports from the host's menu, driven headless through the script
// runner on the demo shop: each opens with its dialog, runs, and shows its rows; the stock query's
// drill-down and the movement detail agree with the stock rows; the sales reports' example runs.
#include <QDir>
#include <QFile>

#include "framework/Frm_Base_Qry.h"
#include "tests/support/DemoShopScript.h"

namespace {

class ReportScriptTest : public qx::test::DemoShopScriptTest {
protected:
    void SetUp() override {
        DemoShopScriptTest::SetUp();
        run("login admin admin\n");
    }
    QString run(const QString& script) { return runOk(script); }
    long long number(const QString& sql) {
        const auto r = db->open(sql.toStdString());
        if (r.rows.empty()) return 0;
        if (auto* i = std::get_if<std::int64_t>(&r.rows[0][0])) return *i;
        return 0;
    }
};

TEST_F(ReportScriptTest, EveryStockReportOpensFromTheMenuAndShowsRows) {
    const QString out = run(
        "click func255\ncheck BSCHK2_1\nclick btn_ok\nexpect screen 库存查询\nclose\n"
        "click func256\nclick btn_ok\nexpect screen 库存分布查询\nclose\n"
        "click func252\nset BDATE 2026-06-01\nclick btn_ok\nexpect screen 进销存分类表\nclose\n"
        "click func253\nset BDATE 2026-06-01\nclick btn_ok\nexpect screen 进销存汇总表\nclose\n"
        "click func254\nset BDATE 2026-06-01\nclick btn_ok\nexpect screen 进销存明细表\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
}

TEST_F(ReportScriptTest, SummaryClosingEqualsTheStockOfEveryStyle) {
    // the movement summary by style up to today closes at the stock rows' total
    run("click func253\nset BDATE 2026-06-01\nuncheck YS\ncheck c1\nclick btn_ok\n");
    const long long stock = number("SELECT SUM(KC) FROM d1802");
    auto* report = dynamic_cast<TFrm_Base_Qry*>(window->findChild<TFrm_Base_Qry*>("QXCK253"));
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(static_cast<long long>(report->DBGridEh->GetSumValue("END_KC")), stock);
}

}  // namespace

TEST_F(ReportScriptTest, PurchaseSummaryAndDetailAgreeOnTheDemoShop) {
    // every preset of the summary runs on the demo shop; by supplier its quantity equals the
    // detail's lines (receipts less returns) over the same range
    for (int tag = 1; tag <= 7; ++tag) {
        const QString out = run("click func204\nset BDATE 2026-06-01\nclick btn_group" + QString::number(tag) +
                                "\nexpect screen 采购汇总表\ndump messages\nclose\n");
        EXPECT_FALSE(out.contains("error")) << tag << out.toStdString();
    }
    run("click func204\nset BDATE 2026-06-01\ncheck RB4\ncheck BSCHK3_2\nclick btn_group1\n");
    auto* summary = window->findChild<TFrm_Base_Qry*>("QXCK201G");
    ASSERT_NE(summary, nullptr);
    EXPECT_GT(summary->AdoQry_Main->RecordCount(), 0);
    const double quantity = summary->DBGridEh->GetSumValue("数量");
    EXPECT_NE(quantity, 0.0);
    run("click func203\nset BDATE 2026-06-01\nclick btn_group1\nexpect screen 采购进货明细查询\n");
    auto* detail = window->findChild<TFrm_Base_Qry*>("QXCK201M");
    ASSERT_NE(detail, nullptr);
    EXPECT_GT(detail->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(detail->DBGridEh->GetSumValue("STOT"), quantity);
}

TEST_F(ReportScriptTest, TheSalesReportsExampleRunsAndItsTwoReportsAgree) {
    QFile file(QDir(QString::fromUtf8(qgetenv("QXCK_SOURCE_DIR"))).filePath("scripts/examples/sales_reports.qxs"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const QString out = run(QString::fromUtf8(file.readAll()));
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    auto* summary = window->findChild<TFrm_Base_Qry*>("QXCK211G");
    auto* detail = window->findChild<TFrm_Base_Qry*>("QXCK211M");
    ASSERT_EQ(summary, nullptr) << "the example closes the summary";
    ASSERT_NE(detail, nullptr);
    EXPECT_GT(detail->AdoQry_Main->RecordCount(), 0);
    // the titles of the three grids: by customer, by brand with the sizes, the detail
    QStringList titles;
    for (const QString& line : out.split('\n'))
        if (line.startsWith("titles: ")) titles << line;
    ASSERT_EQ(titles.size(), 3) << out.left(2000).toStdString();
    EXPECT_TRUE(titles[0].startsWith("titles: 客户 | 数量 | 金额 | 毛利")) << titles[0].toStdString();
    EXPECT_TRUE(titles[1].contains("品牌") && titles[1].contains("款号") && titles[1].contains("尺码"))
        << "the brand column beside the sizes: " << titles[1].toStdString();
    EXPECT_TRUE(titles[2].contains("代号 | 名称")) << titles[2].toStdString();
    // the detail's quantity: sales tickets and point-of-sale lines less returns of June
    const auto sum = [this](const QString& sql) { return number(sql); };
    const long long tickets = sum("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D8201A A INNER JOIN D8201 H ON A.NOID=H.NOID "
                                  "WHERE H.T=1 AND H.BDATE>='2026-06-01' AND H.BDATE<'2026-07-01'");
    const long long returns = sum("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D8202A A INNER JOIN D8202 H ON A.NOID=H.NOID "
                                  "WHERE H.T=1 AND H.BDATE>='2026-06-01' AND H.BDATE<'2026-07-01'");
    const long long pos = sum("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D712A A INNER JOIN D712 H ON A.NOID=H.NOID "
                              "WHERE H.BDATE>='2026-06-01' AND H.BDATE<'2026-07-01'");
    EXPECT_NE(tickets + pos, 0);
    EXPECT_EQ(static_cast<long long>(detail->DBGridEh->GetSumValue("STOT")), tickets + pos - returns);
}

TEST_F(ReportScriptTest, SalesSummaryByCustomerEqualsTheDetailOnTheDemoShop) {
    run("click func214\nset BDATE 2026-06-01\ncheck RB4\ncheck BSCHK3_2\nclick btn_group1\nexpect screen 销售汇总表\n");
    auto* summary = window->findChild<TFrm_Base_Qry*>("QXCK211G");
    ASSERT_NE(summary, nullptr);
    EXPECT_GT(summary->AdoQry_Main->RecordCount(), 0);
    run("click func213\nset BDATE 2026-06-01\nclick btn_group1\nexpect screen 销售明细查询\n");
    auto* detail = window->findChild<TFrm_Base_Qry*>("QXCK211M");
    ASSERT_NE(detail, nullptr);
    EXPECT_EQ(detail->DBGridEh->GetSumValue("STOT"), summary->DBGridEh->GetSumValue("数量"));
    EXPECT_NEAR(detail->DBGridEh->GetSumValue("SMONEY"), summary->DBGridEh->GetSumValue("金额"), 0.005);
}

TEST_F(ReportScriptTest, AnnualReportsOpenFromTheMenuAndAddUpToTheDocuments) {
    // both annual reports over two years of the demo shop: the year totals of the receipts and of
    // the sales equal the amounts of the documents they stand for
    const QString out = run("click func263\nset BDATE 2025-01-01\nclick btn_ok\nexpect screen 采购年报表(金额)\n"
                            "click func273\nset BDATE 2025-01-01\nclick btn_ok\nexpect screen 销售年报表(销售额)\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    auto* purchases = window->findChild<TFrm_Base_Qry*>("QXCK263");
    auto* sales = window->findChild<TFrm_Base_Qry*>("QXCK273");
    ASSERT_NE(purchases, nullptr);
    ASSERT_NE(sales, nullptr);
    ASSERT_GT(purchases->AdoQry_Main->RecordCount(), 0);
    ASSERT_GT(sales->AdoQry_Main->RecordCount(), 0);
    // the end of the range: the day after the dialog's end date
    const QString end = qx::ui::today().addDays(1).toString("yyyy-MM-dd");
    auto totalOf = [](TFrm_Base_Qry* r, const QString& suffix) {
        double sum = 0;
        TClientDataSet* ds = r->AdoQry_Main;
        for (int row = 0; row < ds->RecordCount(); ++row)
            if (ds->CellValue(row, ds->FieldIndex("wl_id")).toString().endsWith(suffix))
                sum += ds->CellValue(row, ds->FieldIndex("total")).toDouble();
        return sum;
    };
    auto amount = [this](const QString& sql) {
        const auto r = db->open(sql.toStdString());
        if (r.rows.empty()) return 0.0;
        if (auto* d = std::get_if<double>(&r.rows[0][0])) return *d;
        if (auto* i = std::get_if<std::int64_t>(&r.rows[0][0])) return double(*i);
        return 0.0;
    };
    const QString range = " BDATE>='2025-01-01' AND BDATE<'" + end + "'";
    EXPECT_NEAR(totalOf(purchases, "进"),
                amount("SELECT SUM(a.MONEY) FROM D8101A a JOIN D8101 h ON h.NOID=a.NOID WHERE" + range), 0.005);
    EXPECT_NEAR(totalOf(sales, " 销售"),
                amount("SELECT SUM(a.SMONEY) FROM D8201A a JOIN D8201 h ON h.NOID=a.NOID WHERE" + range) +
                    amount("SELECT SUM(SMONEY) FROM v_D712 WHERE S0+S1+S2+S3+S4+S5+S6+S7+S8+S9>0 AND" + range),
                0.005);
    EXPECT_NE(totalOf(sales, " 销售"), 0.0);
}

TEST_F(ReportScriptTest, RankingAndProgressCountWhatWasSoldInJune) {
    // what the shop sold in June, less returns, point of sale included
    const QString range = " BETWEEN '2026-06-01' AND '2026-06-30 23:59:59'";
    const QString qty = "SUM(D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+D.S7+D.S8+D.S9)";
    auto sold = [&](const QString& effective) {
        return number("SELECT " + qty + " FROM D8201 M JOIN D8201A D ON D.NOID=M.NOID JOIN D1801 W ON W.WL_ID=D.WL_ID WHERE " +
                      effective + "M.BDATE" + range) -
               number("SELECT " + qty + " FROM D8202 M JOIN D8202A D ON D.NOID=M.NOID JOIN D1801 W ON W.WL_ID=D.WL_ID WHERE " +
                      effective + "M.BDATE" + range) +
               number("SELECT " + qty + " FROM D712 M JOIN D712A D ON D.NOID=M.NOID JOIN D1801 W ON W.WL_ID=D.WL_ID WHERE M.BDATE" +
                      range);
    };
    const QString out = run("click func281\nset BDATE 2026-06-01\nclick btn_ok\nexpect screen 销售排行\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    auto* ranking = window->findChild<TFrm_Base_Qry*>("QXCK281");
    ASSERT_NE(ranking, nullptr);
    EXPECT_GT(ranking->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(static_cast<long long>(ranking->DBGridEh->GetSumValue("S1")), sold("M.T=1 AND "));
    const QString progress = run("click func283\nset BDATE 2026-06-01\nclick btn_ok\nexpect screen 销售进度表\ndump messages\n");
    EXPECT_FALSE(progress.contains("error")) << progress.toStdString();
    auto* report = window->findChild<TFrm_Base_Qry*>("QXCK283");
    ASSERT_NE(report, nullptr);
    EXPECT_GT(report->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(static_cast<long long>(report->DBGridEh->GetSumValue("total")), sold(""));
}
