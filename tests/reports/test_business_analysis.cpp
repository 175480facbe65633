// The business analysis (282): the statement of every head-panel choice against the golden file,
// hand-computed cells on a small shop (daily by section, weekly across a year boundary, monthly
// by style), the limits and their messages, the measure kept between uses, the header rows of
// the sections, the chart it describes, and hostile input in the panel's edits.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include "framework/Frm_Base.h"
#include "framework/Screenshot.h"
#include "framework/Settings.h"
#include "reports/Frmqxck282.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;
using Period = TQXCK282::Period;

class BusinessAnalysisTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        qx::ui::setToday(QDate(2026, 3, 20));
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P2', '简约')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('A1', '上衣')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('B1', '裤子')");
        exec("UPDATE d1800 SET CLASS_ID = 'A1' WHERE K_ID = 'K01'");
        exec("UPDATE d1800 SET CLASS_ID = 'B1', PP_ID = 'P2' WHERE K_ID = 'K02'");
        exec("INSERT INTO d1101 (YW_ID, YW_NAME) VALUES ('Y1', '李四')");
        exec("INSERT INTO d1101 (YW_ID, YW_NAME) VALUES ('Y2', '王五')");
        openingStock("K0101", "01", {5, 5});
        openingStock("K0102", "01", {5});
        openingStock("K0201", "02", {5});
    }
    void TearDown() override {
        qx::ui::setToday(QDate());
        QFile::remove(qx::settings::dialogOptionsFile());
        ReportTest::TearDown();
    }

    // One document of one line. Sales and returns carry amount and cost; receipts their cost;
    // purchase returns their cost and return amount.
    void line(const QString& table, const QString& noid, const QString& warehouse, const QString& date, const QString& salesperson,
              const QString& sku, int quantity, double amount, double cost) {
        exec("INSERT INTO " + table + " (T, NOID, CK_ID, BDATE, USER_ID, YW_ID, NOTE) VALUES (1,'" + noid + "','" + warehouse + "','" +
             date + "','U1','" + salesperson + "','')");
        const QString common = "NOID, WL_ID, K_ID, COL_ID, CK_ID, S0";
        const QString values = "'" + noid + "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','" + warehouse + "'," +
                               QString::number(quantity);
        if (table == "D8101")
            exec("INSERT INTO D8101A (" + common + ", DJ, MONEY) VALUES (" + values + "," + QString::number(cost / quantity) + "," +
                 QString::number(cost) + ")");
        else
            exec("INSERT INTO " + table + "A (" + common + ", SMONEY, MONEY) VALUES (" + values + "," + QString::number(amount) + "," +
                 QString::number(cost) + ")");
    }
    void pointOfSale(const QString& noid, const QString& warehouse, const QString& date, const QString& salesperson,
                     const QString& sku, int quantity, double amount, double cost) {
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('" + noid + "','" + date + "','" + warehouse + "',NULL,'" +
             salesperson + "')");
        exec("INSERT INTO d712a (NOID, WL_ID, S0, SMONEY, MONEY) VALUES ('" + noid + "','" + sku + "'," + QString::number(quantity) +
             "," + QString::number(amount) + "," + QString::number(cost) + ")");
    }

    // The March shop: two sales on the 2nd (总仓 by 李四: 3 red shirts for 300 at a cost of 120;
    // 东门店 by 王五: 2 red trousers for 400 at a cost of 120) and a point-of-sale red shirt at
    // 东门店 by 王五 for 90 at a cost of 40 (and a points line without an article); on the 15th
    // 总仓 sells 2 black shirts for 200 at a cost of 80 and takes 1 red shirt back (100, cost 40).
    // Purchases on the 1st (10 red shirts at 40) and the 20th (2 returned, cost 80, refund 70).
    // Outside the month: trousers sold on 28 February and 10 April.
    void marchShop() {
        line("D8201", "S1", "01", "2026-03-02", "Y1", "K0101", 3, 300, 120);
        line("D8201", "S2", "02", "2026-03-02", "Y2", "K0201", 2, 400, 120);
        pointOfSale("P1", "02", "2026-03-02", "Y2", "K0101", 1, 90, 40);
        exec("INSERT INTO d712a (NOID, WL_ID, S0, SMONEY, MONEY, NOTE) VALUES ('P1', 'Z', 1, 0, 20, '积分200')");
        line("D8201", "S3", "01", "2026-03-15", "Y1", "K0102", 2, 200, 80);
        line("D8202", "T1", "01", "2026-03-15", "Y1", "K0101", 1, 100, 40);
        line("D8101", "R1", "01", "2026-03-01", "Y1", "K0101", 10, 0, 400);
        line("D8102", "B1", "01", "2026-03-20", "Y1", "K0101", 2, 70, 80);
        line("D8201", "S0", "02", "2026-02-28", "Y2", "K0201", 1, 200, 60);
        line("D8201", "S4", "02", "2026-04-10", "Y2", "K0201", 1, 200, 60);
    }

    TQXCK282* open() { return startReport<TQXCK282>(282, {}); }

    // Sets the head panel: period, report type, ticked sections (names of C1..C5, K1), measure.
    static void choose(TQXCK282* r, const QString& from, const QString& to, Period period, const QStringList& boxes, int measure) {
        r->BDATE->SetText(from);
        r->EDATE->SetText(to);
        (period == Period::Daily ? r->R1 : period == Period::Weekly ? r->R2 : r->R3)->setChecked(true);
        for (QCheckBox* c : {r->C1, r->C2, r->C3, r->C4, r->C5, r->K1}) c->setChecked(boxes.contains(c->objectName()));
        r->CB1->setCurrentIndex(measure);
    }
    TQXCK282* run(const QString& from, const QString& to, Period period, const QStringList& boxes, int measure) {
        TQXCK282* r = open();
        choose(r, from, to, period, boxes, measure);
        r->btn_refresh->click();
        return r;
    }
    TQXCK282* march(const QStringList& boxes, int measure) { return run("2026-03-01", "2026-03-31", Period::Daily, boxes, measure); }

    void expectGolden(const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/qxck282.sql");
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name), lastStatement())) << name.toStdString();
    }

    // The row keys in the order shown, and one cell by row key and column.
    static QStringList keys(TQXCK282* r) { return column(r->AdoQry_Main, "wl_ID"); }
    static QVariant cell(TQXCK282* r, const QString& key, const QString& field) {
        TClientDataSet* ds = r->AdoQry_Main;
        const int k = ds->FieldIndex("wl_ID"), f = ds->FieldIndex(field);
        if (f < 0) return QStringLiteral("(no column %1)").arg(field);
        for (int row = 0; row < ds->RecordCount(); ++row)
            if (ds->CellValue(row, k).toString() == key) return ds->CellValue(row, f);
        return QStringLiteral("(no row %1)").arg(key);
    }
    QStringList messages() { return sink->texts(); }
};

// ------------------------------------------------------------------ statements

TEST_F(BusinessAnalysisTest, EveryHeadPanelChoiceSendsItsStatement) {
    struct Choice {
        const char* name;
        const char* from;
        const char* to;
        Period period;
        QStringList boxes;
        int measure;
    };
    const QStringList all{"C1", "C2", "C3", "C4", "C5", "K1"};
    std::vector<Choice> choices{
        {"daily, every box ticked: styles only", "2026-03-01", "2026-03-31", Period::Daily, all, 0},
        {"daily, the five sections", "2026-03-01", "2026-03-31", Period::Daily, all.mid(0, 5), 0},
        {"weekly, brand", "2026-12-20", "2027-01-10", Period::Weekly, {"C2"}, 0},
        {"monthly, category", "2026-02-01", "2026-04-30", Period::Monthly, {"C3"}, 0},
        {"daily, colour", "2026-03-01", "2026-03-31", Period::Daily, {"C4"}, 0},
        {"daily, salesperson", "2026-03-01", "2026-03-31", Period::Daily, {"C5"}, 0},
        {"daily, colour and salesperson", "2026-03-01", "2026-03-31", Period::Daily, {"C5", "C4"}, 0},
        {"daily, warehouse and style ticked: styles only", "2026-03-01", "2026-03-31", Period::Daily, {"C1", "K1"}, 0},
        {"weekly, styles, sales quantity", "2026-12-20", "2027-01-10", Period::Weekly, {"K1"}, 1},
        {"monthly, styles, profit", "2026-02-01", "2026-04-30", Period::Monthly, {"K1"}, 12},
    };
    const QStringList measures{"(销售)销量-退货量", "(销售)销量",   "(销售)退货量", "(销售)销售额-退货额", "(销售)销售额",
                               "(销售)退货额",       "(进货)进货量-退货量", "(进货)进货量", "(进货)退货量",   "(进货)采购额-退货额",
                               "(进货)采购额",       "(进货)退货额", "利润"};
    std::vector<std::string> names;  // keep the case names alive for the table below
    for (int m = 1; m <= 12; ++m) names.push_back(("daily, warehouse, measure " + QString::number(m) + " " + measures[m]).toStdString());
    for (int m = 1; m <= 12; ++m) choices.push_back({names[size_t(m - 1)].c_str(), "2026-03-01", "2026-03-31", Period::Daily, {"C1"}, m});

    for (const Choice& c : choices) {
        SCOPED_TRACE(c.name);
        calls.clear();
        TQXCK282* r = run(c.from, c.to, c.period, c.boxes, c.measure);
        EXPECT_TRUE(messages().isEmpty()) << messages().join(" / ").toStdString();
        ASSERT_EQ(statements().size(), 1u);
        expectGolden(c.name);
        EXPECT_TRUE(r->AdoQry_Main->Active()) << "the statement runs on the shop";
        delete r;
    }
}

TEST_F(BusinessAnalysisTest, TheMeasuresAreTheThirteenOfTheList) {
    TQXCK282* r = open();
    QStringList items;
    for (int i = 0; i < r->CB1->count(); ++i) items << r->CB1->itemText(i);
    EXPECT_EQ(items, (QStringList{"(销售)销量-退货量", "(销售)销量", "(销售)退货量", "(销售)销售额-退货额", "(销售)销售额",
                                  "(销售)退货额", "(进货)进货量-退货量", "(进货)进货量", "(进货)退货量", "(进货)采购额-退货额",
                                  "(进货)采购额", "(进货)退货额", "利润"}));
    delete r;
}

TEST_F(BusinessAnalysisTest, WithWarehouseRightsOnlyTheUsersWarehousesCountAndAQuotedUserCodeIsDoubled) {
    marchShop();
    exec("INSERT INTO sys_user_ck VALUES ('U''1', '01', 1)");
    G_CHKCK = true;
    G_UserId = "U'1";
    TQXCK282* r = march({"C1"}, 0);
    expectGolden("daily, warehouse, rights of a user whose code holds a quote");
    EXPECT_EQ(keys(r), (QStringList{"10--仓库-", "11-总仓"})) << "东门店 is not the user's";
    delete r;
    calls.clear();
    r = march({"K1"}, 0);
    expectGolden("daily, styles, rights of a user whose code holds a quote");
    EXPECT_EQ(keys(r), QStringList{"K01"}) << "the trousers sold at 东门店 only";
    G_CHKCK = false;
    G_UserId = "U1";
    delete r;
}

// ------------------------------------------------------------------ hand-computed results

TEST_F(BusinessAnalysisTest, DailyBySectionsCountsQuantitiesPerWarehouseBrandCategoryColourAndSalesperson) {
    marchShop();
    TQXCK282* r = march({"C1", "C2", "C3", "C4", "C5"}, 0);
    EXPECT_EQ(keys(r), (QStringList{"10--仓库-", "11-东门店", "11-总仓", "20--品牌-", "21-简约", "21-雅牌", "30--类别-", "31-上衣",
                                    "31-裤子", "40--颜色-", "41-红色", "41-黑色", "50--营业员-", "51-李四", "51-王五"}));
    EXPECT_EQ(r->PeriodFields(), (QStringList{"202603|02", "202603|15"})) << "days with movements only, outside days left out";
    // 总仓: 3 shirts on the 2nd; 2 sold and 1 returned on the 15th
    EXPECT_EQ(cell(r, "11-总仓", "202603|02").toInt(), 3);
    EXPECT_EQ(cell(r, "11-总仓", "202603|15").toInt(), 1);
    EXPECT_EQ(cell(r, "11-总仓", "total").toInt(), 4);
    // 东门店: 2 trousers and a point-of-sale shirt; the points line has no article and is left out
    EXPECT_EQ(cell(r, "11-东门店", "202603|02").toInt(), 3);
    EXPECT_TRUE(cell(r, "11-东门店", "202603|15").isNull());
    EXPECT_EQ(cell(r, "21-雅牌", "202603|02").toInt(), 4);
    EXPECT_EQ(cell(r, "21-雅牌", "202603|15").toInt(), 1);
    EXPECT_EQ(cell(r, "21-简约", "total").toInt(), 2);
    EXPECT_EQ(cell(r, "31-上衣", "total").toInt(), 5);
    EXPECT_EQ(cell(r, "31-裤子", "total").toInt(), 2);
    EXPECT_EQ(cell(r, "41-红色", "202603|02").toInt(), 6);
    EXPECT_EQ(cell(r, "41-红色", "202603|15").toInt(), -1) << "the returned red shirt";
    EXPECT_EQ(cell(r, "41-黑色", "202603|15").toInt(), 2);
    EXPECT_EQ(cell(r, "51-李四", "total").toInt(), 4);
    EXPECT_EQ(cell(r, "51-王五", "total").toInt(), 3);
    for (const QString& header : {"10--仓库-", "20--品牌-", "30--类别-", "40--颜色-", "50--营业员-"}) {
        EXPECT_TRUE(cell(r, header, "202603|02").isNull()) << header.toStdString();
        EXPECT_TRUE(cell(r, header, "total").isNull()) << header.toStdString();
    }
    delete r;
}

TEST_F(BusinessAnalysisTest, DailyByStyleShowsNameUnitPeriodsAndTotalWithTheirTitles) {
    marchShop();
    TQXCK282* r = march({"K1"}, 4);
    EXPECT_EQ(keys(r), (QStringList{"K01", "K02"}));
    EXPECT_EQ(cell(r, "K01", "wl_NAME").toString(), "衬衫");
    EXPECT_EQ(cell(r, "K01", "dw_name").toString(), "件");
    // sales amount: 300 + 90 on the 2nd, 200 on the 15th (the return does not count in 销售额)
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|02").toDouble(), 390);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|15").toDouble(), 200);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "total").toDouble(), 590);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "total").toDouble(), 400);
    EXPECT_EQ(r->DBGridEh->VisibleTitles(),
              (QStringList{"款号", "名称", "单位", "2026年03月|02日", "2026年03月|15日", "合计"}));
    EXPECT_DOUBLE_EQ(r->DBGridEh->GetSumValue("total"), 990) << "styles add up in the footer";
    EXPECT_EQ(r->DBGridEh->DisplayedRows().at(0), (QStringList{"K01", "衬衫", "件", "390.00", "200.00", "590.00"}))
        << "amounts with two decimals";
    delete r;
}

TEST_F(BusinessAnalysisTest, SalesLessReturnsTakesTheReturnedAmountOff) {
    marchShop();
    TQXCK282* r = march({"K1"}, 3);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|15").toDouble(), 100) << "200 sold, 100 returned";
    delete r;
    r = march({"K1"}, 5);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|15").toDouble(), -100) << "returns only, as a negative amount";
    EXPECT_EQ(r->PeriodFields(), QStringList{"202603|15"});
    delete r;
}

TEST_F(BusinessAnalysisTest, ReturnsAreCountedAsWritten_AReturnsMarginIsAddedToTheProfitNotTakenOff) {
    marchShop();
    TQXCK282* r = march({"K1"}, 12);
    // the 2nd: 300 - 120 and the point of sale's 90 - 40; the 15th: 200 - 80 for the black
    // shirts and the return's 100 - 40 added as it stands, not negated
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|02").toDouble(), 230);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "202603|15").toDouble(), 180);
    EXPECT_DOUBLE_EQ(cell(r, "K01", "total").toDouble(), 410);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "total").toDouble(), 280);
    delete r;
    r = march({"K1"}, 2);
    EXPECT_EQ(cell(r, "K01", "202603|15").toInt(), -1) << "while the returned quantity is negative";
    delete r;
}

TEST_F(BusinessAnalysisTest, ProfitOverPurchasesContributesNothing) {
    marchShop();
    TQXCK282* r = march({"C1"}, 12);
    // the receipt on the 1st and the purchase return on the 20th bring no day and no profit
    EXPECT_EQ(r->PeriodFields(), (QStringList{"202603|02", "202603|15"}));
    EXPECT_DOUBLE_EQ(cell(r, "11-总仓", "total").toDouble(), 180 + 120 + 60);
    delete r;
    // purchase blocks carry 0 as their profit: a purchase-only period has nothing to show
    exec("DELETE FROM D8201A");
    exec("DELETE FROM D8201");
    exec("DELETE FROM D8202A");
    exec("DELETE FROM D8202");
    exec("DELETE FROM d712a");
    exec("DELETE FROM d712");
    r = march({"C1"}, 12);
    EXPECT_TRUE(r->PeriodFields().isEmpty());
    EXPECT_EQ(keys(r), QStringList{"10--仓库-"});
    delete r;
    // while the same purchases are there for the purchase measures
    r = march({"C1"}, 6);
    EXPECT_EQ(cell(r, "11-总仓", "202603|01").toInt(), 10);
    EXPECT_EQ(cell(r, "11-总仓", "202603|20").toInt(), -2);
    delete r;
    r = march({"C1"}, 9);
    EXPECT_DOUBLE_EQ(cell(r, "11-总仓", "202603|01").toDouble(), 400) << "a receipt counts at its cost";
    EXPECT_DOUBLE_EQ(cell(r, "11-总仓", "202603|20").toDouble(), -70) << "a purchase return at its refund";
    delete r;
}

TEST_F(BusinessAnalysisTest, WeeklyAcrossTheYearBoundarySplitsTheWeekOfNewYearAsSqlServerNumbersIt) {
    // Saturday 26 December 2026 is in week 52; Sunday the 27th starts week 53, which the 31st
    // (Thursday) ends; Friday 1 January 2027 is week 1 of 2027 and Sunday the 3rd starts week 2
    line("D8201", "W1", "01", "2026-12-26", "Y1", "K0101", 1, 100, 40);
    line("D8201", "W2", "01", "2026-12-27", "Y1", "K0101", 2, 200, 80);
    line("D8201", "W3", "01", "2026-12-31", "Y1", "K0101", 3, 300, 120);
    line("D8201", "W4", "01", "2027-01-01", "Y1", "K0101", 4, 400, 160);
    line("D8201", "W5", "01", "2027-01-03", "Y1", "K0101", 5, 500, 200);
    TQXCK282* r = run("2026-12-20", "2027-01-10", Period::Weekly, {"K1"}, 1);
    EXPECT_EQ(r->PeriodFields(), (QStringList{"2026|52", "2026|53", "2027|01", "2027|02"}));
    EXPECT_EQ(cell(r, "K01", "2026|52").toInt(), 1);
    EXPECT_EQ(cell(r, "K01", "2026|53").toInt(), 5);
    EXPECT_EQ(cell(r, "K01", "2027|01").toInt(), 4);
    EXPECT_EQ(cell(r, "K01", "2027|02").toInt(), 5);
    EXPECT_EQ(cell(r, "K01", "total").toInt(), 15);
    EXPECT_EQ(r->DBGridEh->VisibleTitles().mid(3),
              (QStringList{"2026年|第52周", "2026年|第53周", "2027年|第01周", "2027年|第02周", "合计"}));
    delete r;
}

TEST_F(BusinessAnalysisTest, MonthlyByStyleAddsUpEachMonth) {
    marchShop();
    TQXCK282* r = run("2026-02-01", "2026-04-30", Period::Monthly, {"K1"}, 4);
    EXPECT_EQ(r->PeriodFields(), (QStringList{"2026|02", "2026|03", "2026|04"}));
    EXPECT_TRUE(cell(r, "K01", "2026|02").isNull());
    EXPECT_DOUBLE_EQ(cell(r, "K01", "2026|03").toDouble(), 590);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "2026|02").toDouble(), 200);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "2026|03").toDouble(), 400);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "2026|04").toDouble(), 200);
    EXPECT_DOUBLE_EQ(cell(r, "K02", "total").toDouble(), 800);
    EXPECT_EQ(r->DBGridEh->VisibleTitles().mid(3), (QStringList{"2026年|02月", "2026年|03月", "2026年|04月", "合计"}));
    delete r;
}

// ------------------------------------------------------------------ edge cases

TEST_F(BusinessAnalysisTest, TheLimitsAcceptADifferenceOfExactly31Or366DaysAndRefuseOneMore) {
    struct Range {
        const char* from;
        const char* to;
        Period period;
        const char* refusal;  // nullptr: accepted
    };
    const char* daily = "报表类型是【日报表】请将日期限制在31天范围内!";
    const char* year = "请将日期限制在366天(约一年)范围内!";
    const std::vector<Range> ranges{
        {"2026-03-01", "2026-04-01", Period::Daily, nullptr},   // 31
        {"2026-03-01", "2026-04-02", Period::Daily, daily},     // 32
        {"2026-01-01", "2027-01-02", Period::Weekly, nullptr},  // 366
        {"2026-01-01", "2027-01-03", Period::Weekly, year},     // 367
        {"2026-01-01", "2027-01-02", Period::Monthly, nullptr},
        {"2026-01-01", "2027-01-03", Period::Monthly, year},
        {"2026-01-01", "2027-01-03", Period::Daily, daily},  // the daily limit is checked first
        {"2026-03-01", "2026-03-01", Period::Daily, nullptr},
    };
    for (const Range& range : ranges) {
        SCOPED_TRACE(std::string(range.from) + " to " + range.to);
        calls.clear();
        sink->clear();
        TQXCK282* r = run(range.from, range.to, range.period, {"K1"}, 0);
        if (range.refusal) {
            EXPECT_EQ(messages(), QStringList{range.refusal});
            EXPECT_TRUE(statements().empty()) << "nothing is queried";
        } else {
            EXPECT_TRUE(messages().isEmpty());
            EXPECT_EQ(statements().size(), 1u);
        }
        delete r;
    }
}

TEST_F(BusinessAnalysisTest, SectionHeaderRowsSortBeforeTheirSectionsRows) {
    marchShop();
    // names that would sort before a header without the prefixes
    exec("UPDATE d1007 SET CK_NAME = '-' WHERE CK_ID = '02'");
    exec("UPDATE d1009 SET PP_NAME = '' WHERE PP_ID = 'P2'");
    TQXCK282* r = march({"C1", "C2"}, 0);
    EXPECT_EQ(keys(r), (QStringList{"10--仓库-", "11--", "11-总仓", "20--品牌-", "21-", "21-雅牌"}));
    delete r;
}

TEST_F(BusinessAnalysisTest, RefreshChecksTheChoicesInOrderAndQueriesNothingAfterARefusal) {
    TQXCK282* r = open();
    choose(r, "2026-03-10", "2026-03-01", Period::Daily, {}, 0);
    r->btn_refresh->click();
    EXPECT_EQ(messages(), QStringList{"开始日期不能大于结束日期!"}) << "reversed dates come first";
    sink->clear();
    choose(r, "2026-03-01", "2026-03-10", Period::Daily, {}, 0);
    r->btn_refresh->click();
    EXPECT_EQ(messages(), QStringList{"汇总项目至少勾选一项!"});
    EXPECT_TRUE(statements().empty());
    EXPECT_FALSE(r->AdoQry_Main->Active());
    delete r;
}

// ------------------------------------------------------------------ the panel

TEST_F(BusinessAnalysisTest, ThePanelOpensOnTheMonthSoFarWithEveryBoxTickedAndDailyChosenAndQueriesNothingYet) {
    TQXCK282* r = open();
    EXPECT_EQ(r->Caption(), "经营综合分析");
    EXPECT_EQ(r->BDATE->Text(), "2026-03-01");
    EXPECT_EQ(r->EDATE->Text(), "2026-03-20");
    EXPECT_EQ(r->titDATE->text(), "(20天)");
    EXPECT_TRUE(r->R1->isChecked());
    EXPECT_EQ((QStringList{r->R1->text(), r->R2->text(), r->R3->text()}), (QStringList{"日报表", "周报表", "月报表"}));
    QStringList boxes;
    for (QCheckBox* c : {r->C1, r->C2, r->C3, r->C4, r->C5, r->K1}) {
        EXPECT_TRUE(c->isChecked());
        boxes << c->text();
    }
    EXPECT_EQ(boxes, (QStringList{"仓库", "品牌", "类别", "颜色", "营业员", "款号"}));
    EXPECT_EQ(r->CB1->currentIndex(), 0);
    EXPECT_EQ(r->btn_refresh->text(), "( F5 ) 刷新");
    EXPECT_EQ(r->btn_dateset->text(), "时段");
    EXPECT_FALSE(r->Act_Locate->isVisible()) << "no condition dialog";
    EXPECT_TRUE(statements().empty());
    EXPECT_TRUE(r->ChartSpec().isNone()) << "no chart before a run";
    delete r;
}

TEST_F(BusinessAnalysisTest, F5RefreshesWithTheChoicesAsTheyStandNow) {
    marchShop();
    TQXCK282* r = open();
    EXPECT_EQ(r->Act_Refresh->shortcut(), QKeySequence(Qt::Key_F5));
    choose(r, "2026-03-01", "2026-03-31", Period::Daily, {"K1"}, 1);
    r->show();
    QApplication::setActiveWindow(r);
    ASSERT_TRUE(QTest::qWaitForWindowActive(r));
    QTest::keyClick(r->DBGridEh, Qt::Key_F5);
    ASSERT_EQ(statements().size(), 1u);
    EXPECT_EQ(cell(r, "K01", "total").toInt(), 6);
    r->R3->setChecked(true);
    r->CB1->setCurrentIndex(4);
    r->Act_Refresh->trigger();
    ASSERT_EQ(statements().size(), 2u);
    EXPECT_EQ(r->PeriodFields(), QStringList{"2026|03"});
    EXPECT_DOUBLE_EQ(cell(r, "K01", "2026|03").toDouble(), 590);
    delete r;
}

TEST_F(BusinessAnalysisTest, TheMeasureIsKeptForTheNextTimeTheReportOpens) {
    TQXCK282* r = open();
    r->CB1->setCurrentIndex(7);
    delete r;
    r = open();
    EXPECT_EQ(r->CB1->currentIndex(), 7);
    r->CB1->setCurrentIndex(12);
    delete r;
    r = open();
    EXPECT_EQ(r->CB1->currentIndex(), 12);
    delete r;
}

TEST_F(BusinessAnalysisTest, TheSpanLabelAndTheDatePresetsFollowTheDates) {
    TQXCK282* r = open();
    r->BDATE->SetText("2026-01-01");
    r->EDATE->SetText("2026-12-31");
    EXPECT_EQ(r->titDATE->text(), "(365天)");
    QAction* lastMonth = r->btn_dateset->menu()->findChild<QAction*>("setdate05");
    ASSERT_NE(lastMonth, nullptr);
    lastMonth->trigger();
    EXPECT_EQ(r->BDATE->Text(), "2026-02-01");
    EXPECT_EQ(r->EDATE->Text(), "2026-02-28");
    EXPECT_EQ(r->titDATE->text(), "(28天)");
    delete r;
}

TEST_F(BusinessAnalysisTest, HeaderRowsAreDrawnAsBandsAndEmptyOrZeroCellsBlank) {
    marchShop();
    line("D8201", "S9", "02", "2026-03-15", "Y2", "K0201", 1, 100, 30);
    line("D8202", "T9", "02", "2026-03-15", "Y2", "K0201", 1, 100, 30);
    TQXCK282* r = march({"C1"}, 0);
    const QList<QStringList> rows = r->DBGridEh->DisplayedRows();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0], (QStringList{"10--仓库-", "", "", ""}));
    EXPECT_EQ(rows[1], (QStringList{"11-东门店", "3", "", "3"})) << "a sale and a return of one on the 15th make 0, shown blank; "
                                                                    "quantities without decimals";
    auto* model = r->DBGridEh->model();
    EXPECT_TRUE(model->data(model->index(0, 0), Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(model->data(model->index(1, 0), Qt::FontRole).value<QFont>().bold());
    delete r;
    r = march({"C4"}, 0);
    const int negative = int(keys(r).indexOf("41-红色"));
    ASSERT_GE(negative, 0);
    auto* m = r->DBGridEh->model();
    EXPECT_EQ(m->data(m->index(negative, 2), Qt::DisplayRole).toString(), "-1");
    EXPECT_EQ(m->data(m->index(negative, 2), Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
    delete r;
}

// ------------------------------------------------------------------ the chart

TEST_F(BusinessAnalysisTest, TheChartPlotsThePeriodsOfTheLastRunAsBarsForMonthsAndLinesForDaysAndWeeks) {
    marchShop();
    TQXCK282* r = run("2026-02-01", "2026-04-30", Period::Monthly, {"K1"}, 4);
    qx::chart::ChartSpec spec = r->ChartSpec();
    EXPECT_EQ(spec.kind, qx::chart::ChartKind::Bars);
    EXPECT_EQ(spec.axis, qx::chart::Axis::Columns);
    const QStringList fields = r->AdoQry_Main->FieldNames();
    EXPECT_TRUE(fields.contains(spec.labelField)) << spec.labelField.toStdString();
    EXPECT_EQ(spec.valueFields, (QStringList{"2026|02", "2026|03", "2026|04"}));
    for (const QString& f : spec.valueFields) EXPECT_TRUE(fields.contains(f)) << f.toStdString();
    EXPECT_FALSE(spec.valueFields.contains("total")) << "the total is no period";
    // choosing another type changes nothing until the next refresh
    r->R1->setChecked(true);
    EXPECT_EQ(r->ChartSpec().kind, qx::chart::ChartKind::Bars);
    delete r;

    r = march({"C1", "C2"}, 0);
    spec = r->ChartSpec();
    EXPECT_EQ(spec.kind, qx::chart::ChartKind::Lines);
    EXPECT_TRUE(r->AdoQry_Main->FieldNames().contains(spec.labelField));
    EXPECT_EQ(spec.valueFields, (QStringList{"202603|02", "202603|15"}));
    delete r;

    r = run("2026-02-23", "2026-03-22", Period::Weekly, {"K1"}, 0);
    spec = r->ChartSpec();
    EXPECT_EQ(spec.kind, qx::chart::ChartKind::Lines);
    for (const QString& f : spec.valueFields) EXPECT_TRUE(r->AdoQry_Main->FieldNames().contains(f)) << f.toStdString();
    EXPECT_EQ(spec.valueFields.size(), 3) << "the weeks of 28 Feb, 2 Mar and 15 Mar";
    delete r;
}

// ------------------------------------------------------------------ hostile input

TEST_F(BusinessAnalysisTest, HostileTextInTheDateEditsIsIgnoredAndNothingIsInjected) {
    marchShop();
    TQXCK282* r = open();
    choose(r, "2026-03-01", "2026-03-31", Period::Daily, {"K1"}, 0);
    // a date edit holds a date whatever is put into it: text that does not start with one is
    // refused, and of text that does only the date is taken
    const QStringList hostile{"2026-03-05' OR '1'='1", "abc", QString(10000, QChar('9')), "2026-13-45", "'; DROP TABLE d1800 --",
                              QString(10000, QChar('\''))};
    for (TDateEdit* edit : {r->BDATE, r->EDATE}) {
        for (const QString& text : hostile) {
            const QString before = edit->Text();
            edit->SetText(text);
            const QString after = edit->Text();
            EXPECT_TRUE(after == before || after == "2026-03-05") << text.left(40).toStdString() << " gave " << after.toStdString();
        }
        r->show();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, "x'y;");
        EXPECT_TRUE(QDate::fromString(edit->Text(), "yyyy-MM-dd").isValid()) << "typing letters leaves a date";
    }
    r->BDATE->SetText("2026-03-01");
    r->EDATE->SetText("2026-03-31");
    r->btn_refresh->click();
    ASSERT_EQ(statements().size(), 1u);
    EXPECT_FALSE(lastStatement().contains("DROP")) << "nothing typed reaches the statement";
    EXPECT_FALSE(lastStatement().contains("OR ''1''")) << "nothing typed reaches the statement";
    EXPECT_EQ(cell(r, "K01", "total").toInt(), 5);
    EXPECT_EQ(query("SELECT COUNT(*) FROM d1800").rows.at(0).at(0), qx::db::Value(std::int64_t(2))) << "the styles are all there";
    delete r;
}

TEST_F(BusinessAnalysisTest, NamesWithQuotesReachTheGridAsTheyAre) {
    marchShop();
    exec("UPDATE d1007 SET CK_NAME = 'O''Neil店' WHERE CK_ID = '01'");
    exec("UPDATE d1101 SET YW_NAME = '李'');--' WHERE YW_ID = 'Y1'");
    TQXCK282* r = march({"C1", "C5"}, 0);
    EXPECT_TRUE(keys(r).contains("11-O'Neil店"));
    EXPECT_TRUE(keys(r).contains("51-李');--"));
    EXPECT_EQ(query("SELECT COUNT(*) FROM d1800").rows.at(0).at(0), qx::db::Value(std::int64_t(2)));
    delete r;
}

// ------------------------------------------------------------------ screenshot

TEST_F(BusinessAnalysisTest, Screenshot) {
    marchShop();
    TQXCK282* r = march({"C1", "C2", "C3", "C4", "C5"}, 0);
    r->resize(1200, 560);
    EXPECT_FALSE(qx::saveScreenshot(r, "business_analysis").isEmpty());
    delete r;
}

}  // namespace
