// The stock and purchase reports from the host's menu, driven headless through the script runner on the
// demo shop: each opens with its dialog, runs, and shows its rows; the stock query's drill-down
// and the movement detail agree with the stock rows.
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
