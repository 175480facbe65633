// The stock distribution (256): its procedure call for each dialog choice, one column per
// warehouse in key order plus the total, blank cells for zero and missing stock, the warehouse
// range compared as text, warehouse rights, and hostile input.
#include "framework/Screenshot.h"
#include "reports/Frmqxck256.h"
#include "reports/Frmqxck256f.h"
#include "tests/reports/ReportFixture.h"

namespace {

class StockDistributionTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        golden = qx::test::goldenStatements("qxck256.sql");
        openingStock("K0101", "01", {2, 3});
        openingStock("K0102", "01", {3});
        openingStock("K0101", "02", {0, -5});
        openingStock("K0201", "02", {0, 0, 4});
        openingStock("K0201", "AB01", {1, -1});  // nets to zero
    }
    TQXCK256* open(std::function<void(TQXCK256F*)> fill = {}) { return openReport<TQXCK256, TQXCK256F>(256, fill); }
    static QStringList titles(TQXCK256* r) {
        QStringList out;
        for (int i = 0; i < r->DBGridEh->ColumnCount(); ++i) out << r->DBGridEh->Columns(i)->Title;
        return out;
    }
    // the text drawn in a cell
    static QString shown(TQXCK256* r, int row, const QString& field) {
        return r->DBGridEh->DisplayedText(row, r->DBGridEh->ColumnByField(field)->Index());
    }
    QMap<QString, QString> golden;
};

TEST_F(StockDistributionTest, OneColumnPerWarehouseInKeyOrderThenTheTotal) {
    auto* r = open();
    EXPECT_EQ(lastStatement(), golden["every style, default range"]);
    EXPECT_EQ(titles(r), (QStringList{"款号", "名称", "单位", "品牌", "01-总仓", "02-东门店", "AB01-仓AB", "小计"}));
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"K01", "K02"}));
    EXPECT_EQ(column(r->AdoQry_Main, "total"), (QStringList{"3", "4"}));
    EXPECT_EQ(r->DBGridEh->Columns(0)->Width, 100);
    EXPECT_EQ(r->DBGridEh->Columns(1)->Width, 200);
    EXPECT_EQ(r->DBGridEh->Columns(2)->Width, 60);
    EXPECT_EQ(r->DBGridEh->Columns(2)->Alignment, Qt::AlignCenter);
    EXPECT_NE(r->DBGridEh->Columns(3)->Width, 60) << "the brand column keeps its default width";
    EXPECT_EQ(r->DBGridEh->Columns(7)->FontColor, QColor(Qt::blue));
    EXPECT_EQ(r->Lab_Head->text(), "物料资料：");
    r->resize(900, 320);
    EXPECT_FALSE(qx::saveScreenshot(r, "stock_distribution").isEmpty());
    r->close();
}

TEST_F(StockDistributionTest, AStyleInOneWarehouseShowsBlankCellsElsewhere) {
    auto* r = open();
    // K02: nothing in 01 (NULL), 4 in 02, zero in AB01
    EXPECT_EQ(shown(r, 1, "01-总仓"), "");
    EXPECT_EQ(shown(r, 1, "02-东门店"), "4");
    EXPECT_EQ(shown(r, 1, "AB01-仓AB"), "") << "zero stock is drawn blank";
    EXPECT_EQ(shown(r, 0, "02-东门店"), "-5");
    EXPECT_EQ(shown(r, 0, "wl_id"), "K01");
    r->close();
}

TEST_F(StockDistributionTest, RangeIsComparedAsTextAndStyleFilters) {
    G_CHKCK = 1;
    exec("INSERT INTO sys_user_ck VALUES ('U1', 'AB01', 1)");
    auto* r = open([](TQXCK256F* f) {
        f->WL_ID->setText("K01");
        f->CK_ID1->setText("A");
        f->CK_ID2->setText("B");
    });
    EXPECT_EQ(lastStatement(), golden["style K01, range A to B, rights"]);
    EXPECT_EQ(r->Lab_Condition->text(), " ●款    号: = K01 ●仓库从:A 至 B");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0) << "K01 has no stock in AB01";
    r->close();
    auto* k2 = open([](TQXCK256F* f) {
        f->CK_ID1->setText("A");
        f->CK_ID2->setText("B");
    });
    EXPECT_EQ(titles(k2).mid(4), (QStringList{"AB01-仓AB", "小计"})) << "'AB01' lies between 'A' and 'B'";
    k2->close();
}

TEST_F(StockDistributionTest, WithRightsOnlyTheUsersWarehousesBecomeColumns) {
    G_CHKCK = 1;
    auto* r = open();
    EXPECT_EQ(titles(r).mid(4), (QStringList{"01-总仓", "小计"}));
    r->close();
}

TEST_F(StockDistributionTest, AnEmptiedUpperBoundShowsNoRows) {
    auto* r = open([](TQXCK256F* f) { f->CK_ID2->setText(""); });
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty());
    r->close();
}

TEST_F(StockDistributionTest, RefreshBeforeAnyQueryIsRefused) {
    auto* r = openCancelled<TQXCK256>(256);
    r->Act_Refresh->trigger();
    ASSERT_EQ(sink->messages.size(), 1u);
    EXPECT_EQ(sink->messages[0].text, "您还没选择任何查询参数,请按【F3】呼出查询选项!");
    EXPECT_TRUE(statements().empty());
    r->close();
}

TEST_F(StockDistributionTest, HostileStyleTextIsQuotedTwice) {
    auto* r = open([](TQXCK256F* f) { f->WL_ID->setText("K'01"); });
    EXPECT_EQ(lastStatement(), golden["quoted style"]);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(r->Filter->WL_ID->maxLength(), 20);
    EXPECT_EQ(r->Filter->CK_ID1->maxLength(), 6);
    r->close();
}

TEST_F(StockDistributionTest, OneReadableWarehouseLocksTheRange) {
    G_CKCOUNT_R = 1;
    auto* r = open();
    EXPECT_FALSE(r->Filter->CK_ID1->isEnabled());
    EXPECT_FALSE(r->Filter->CK_ID2->isEnabled());
    EXPECT_EQ(r->Filter->LowLink, nullptr);
    r->close();
}

}  // namespace
