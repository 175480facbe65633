// The business analysis from the host's menu, driven headless through the script runner on the
// demo shop: a year by month and by style, and by warehouse, agree with the documents counted
// by hand-written queries.
#include "framework/DBGridEh.h"
#include "reports/Frmqxck282.h"
#include "tests/support/DemoShopScript.h"

namespace {

class BusinessAnalysisScriptTest : public qx::test::DemoShopScriptTest {
protected:
    void SetUp() override {
        DemoShopScriptTest::SetUp();
        runOk("login admin admin\n");
    }
    double number(const QString& sql) {
        const auto r = db->open(sql.toStdString());
        if (r.rows.empty()) return 0;
        if (auto* i = std::get_if<std::int64_t>(&r.rows[0][0])) return double(*i);
        if (auto* d = std::get_if<double>(&r.rows[0][0])) return *d;
        return 0;
    }
    TQXCK282* report() { return window->findChild<TQXCK282*>("QXCK282"); }
    // Pieces sold by tickets, point of sale (article lines) and returned, counted by hand.
    double ticketPieces(const QString& range) {
        return number("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D8201 M JOIN D8201A D ON M.NOID = D.NOID" + range);
    }
    double pointOfSalePieces(const QString& range) {
        return number("SELECT SUM(D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+D.S7+D.S8+D.S9) FROM d712 M JOIN d712a D ON M.NOID = D.NOID "
                      "JOIN D1801 ON D.WL_ID = D1801.WL_ID" + range);
    }
    double returnedPieces(const QString& range) {
        return number("SELECT SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) FROM D8202 M JOIN D8202A D ON M.NOID = D.NOID" + range);
    }
    // the sum of the total column over the rows whose key starts with `prefix`
    static double totalOf(TQXCK282* r, const QString& prefix) {
        double sum = 0;
        const int key = r->AdoQry_Main->FieldIndex("wl_ID"), total = r->AdoQry_Main->FieldIndex("total");
        for (int row = 0; row < r->AdoQry_Main->RecordCount(); ++row)
            if (r->AdoQry_Main->CellValue(row, key).toString().startsWith(prefix))
                sum += r->AdoQry_Main->CellValue(row, total).toDouble();
        return sum;
    }
};

TEST_F(BusinessAnalysisScriptTest, AYearByMonthAndStyleCountsEverySaleOfTheYear) {
    const QString out = runOk(
        "click func282\nexpect screen 经营综合分析\nset BDATE 2025-07-01\nset EDATE 2026-06-29\ncheck R3\n"
        "set CB1 (销售)销量\nclick btn_refresh\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    TQXCK282* r = report();
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->PeriodFields().size(), 12) << r->PeriodFields().join(",").toStdString();
    EXPECT_EQ(r->PeriodFields().first(), "2025|07");
    EXPECT_EQ(r->PeriodFields().last(), "2026|06");
    const QString year = " WHERE M.BDATE >= '2025-07-01' AND M.BDATE < '2026-06-30'";
    const double sold = ticketPieces(year) + pointOfSalePieces(year);
    EXPECT_GT(sold, 0);
    EXPECT_DOUBLE_EQ(r->DBGridEh->GetSumValue("total"), sold);
}

TEST_F(BusinessAnalysisScriptTest, AMonthByWarehouseCountsSalesLessReturnsOfEachWarehouse) {
    const QString out = runOk(
        "click func282\nset BDATE 2026-06-01\nset EDATE 2026-06-29\nuncheck K1\nuncheck C2\nuncheck C3\nuncheck C4\nuncheck C5\n"
        "set CB1 (销售)销量-退货量\nclick btn_refresh\ndump messages\n");
    EXPECT_FALSE(out.contains("error")) << out.toStdString();
    TQXCK282* r = report();
    ASSERT_NE(r, nullptr);
    const QString range = " WHERE M.BDATE >= '2026-06-01' AND M.BDATE < '2026-06-30'";
    const double net = ticketPieces(range) + pointOfSalePieces(range) - returnedPieces(range);
    EXPECT_NE(net, 0);
    EXPECT_DOUBLE_EQ(totalOf(r, "11-"), net);
    EXPECT_EQ(r->AdoQry_Main->CellValue(0, 0).toString(), "10--仓库-");
}

}  // namespace
