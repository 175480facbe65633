// The stock query (255): its statements for every dialog choice, the rows they give, the size
// titles of the current row, the drill-down to the movements of one SKU, and hostile input.
#include <QCheckBox>
#include <QRadioButton>

#include "reports/Frmqxck255.h"
#include "reports/Frmqxck255_1.h"
#include "reports/Frmqxck255f.h"
#include "tests/reports/ReportFixture.h"

namespace {

using qx::test::Call;

class StockQueryTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        golden = qx::test::goldenStatements("qxck255.sql");
        // K0101 nets to zero over the warehouses, K0102 to 2, K0201 holds 4 in 02
        openingStock("K0101", "01", {2, 3});
        openingStock("K0101", "02", {0, -5});
        openingStock("K0102", "01", {3});
        openingStock("K0102", "02", {-1});
        openingStock("K0201", "02", {0, 0, 4});
    }
    TQXCK255* open(std::function<void(TQXCK255F*)> fill = {}) { return openReport<TQXCK255, TQXCK255F>(255, fill); }
    static void summary(TQXCK255F* f) { f->BSCHK2_1->setChecked(true); }

    QMap<QString, QString> golden;
};

TEST_F(StockQueryTest, SummaryShowsSkusWhoseStockOverAllWarehousesIsAboveZero) {
    auto* r = open([](TQXCK255F* f) {
        summary(f);
        f->BSCHK2_3->setChecked(true);
    });
    const auto sent = statements();
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent[0], golden["size groups"]);
    EXPECT_EQ(sent[1], golden["summary, all warehouses, in stock only, cost shown"]);
    // negative stock in 02 offsets positive stock in 01
    EXPECT_EQ(column(r->AdoQry_Main, "K_ID"), (QStringList{"K01", "K02"}));
    EXPECT_EQ(column(r->AdoQry_Main, "COL_ID"), (QStringList{"02", "01"}));
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), (QStringList{"2", "4"}));
    EXPECT_EQ(column(r->AdoQry_Main, "CK_NAME"), (QStringList{"汇总值", "汇总值"}));
    EXPECT_EQ(r->DBGridEh->GetSumValue("STOT"), 6);
    EXPECT_EQ(r->DBGridEh->GetSumValue("sMONEY"), 2 * 100 + 4 * 200);
    EXPECT_EQ(r->Lab_Condition->text(), "●显示方式:汇总显示(不区分仓库)");
    EXPECT_FALSE(r->Act_Export->isEnabled());
    r->Act_Refresh->trigger();
    EXPECT_TRUE(r->Act_Export->isEnabled()) << "refresh enables the export";
    EXPECT_EQ(lastStatement(), golden["summary, all warehouses, in stock only, cost shown"]) << "refresh runs the same statement";
    r->close();
}

TEST_F(StockQueryTest, SummaryConditionExtendsTheLastJoinAndCostCanBeHidden) {
    G_CHKCK = 1;
    auto* r = openReport<TQXCK255, TQXCK255F>(
        255,
        [](TQXCK255F* f) {
            summary(f);
            f->BSCHK2_3->setChecked(false);
            f->CK_ID->setText("01");
            f->wl_id->setText("K01");
        },
        [](TQXCK255* report) { report->ShowCost = false; });
    EXPECT_EQ(lastStatement(), golden["summary, warehouse 01 and style K01, every row, cost hidden, rights"]);
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), (QStringList{"5", "3"}));
    EXPECT_EQ(r->Lab_Condition->text(), "●显示方式:汇总显示(不区分仓库) ●仓库=01 ●商品=K01");
    r->close();
}

TEST_F(StockQueryTest, PerWarehouseListingSortsByStyleFirstAndHidesEmptyStock) {
    auto* r = open();
    EXPECT_EQ(lastStatement(), golden["per warehouse, style first, in stock only"]);
    EXPECT_EQ(column(r->AdoQry_Main, "CK_ID"), (QStringList{"01", "01", "02"}));
    EXPECT_EQ(column(r->AdoQry_Main, "DJ"), (QStringList{"0", "0", "0"})) << "the per-warehouse listing never shows cost";
    EXPECT_EQ(r->Lab_Condition->text(), "●显示方式:明细显示(区分仓库) ●排序:以款号优先");
    r->close();
}

TEST_F(StockQueryTest, PerWarehouseListingWithoutTheStockBoxListsZeroAndNegativeRows) {
    G_CHKCK = 1;
    exec("INSERT INTO sys_user_ck VALUES ('U1', '02', 1)");
    auto* r = open([](TQXCK255F* f) {
        f->BSCHK2_3->setChecked(false);
        f->o2->setChecked(true);
        f->CK_ID->setText("02");
    });
    EXPECT_EQ(lastStatement(), golden["per warehouse, warehouse first, every row, warehouse 02, rights"]);
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), (QStringList{"-5", "-1", "4"}));
    EXPECT_TRUE(lastStatement().startsWith("SELECT top 10000 ")) << "the listing is capped";
    r->close();
}

TEST_F(StockQueryTest, WithoutRightsEveryWarehouseIsVisibleAndWithRightsOnlyTheUsers) {
    G_CHKCK = 0;
    auto* all = open([](TQXCK255F* f) { f->BSCHK2_3->setChecked(false); });
    EXPECT_FALSE(lastStatement().contains("sys_USER_CK"));
    EXPECT_TRUE(column(all->AdoQry_Main, "CK_ID").contains("02"));
    all->close();
    G_CHKCK = 1;
    auto* mine = open([](TQXCK255F* f) { f->BSCHK2_3->setChecked(false); });
    EXPECT_TRUE(lastStatement().contains("sys_USER_CK.user_id='U1'"));
    EXPECT_EQ(column(mine->AdoQry_Main, "CK_ID"), (QStringList{"01", "01"}));
    mine->close();
}

TEST_F(StockQueryTest, SizeColumnsFollowGCM) {
    G_CM = 9;
    auto* r = open();
    for (int i = 0; i <= 9; ++i) EXPECT_TRUE(r->DBGridEh->ColumnByField("S" + QString::number(i))->Visible);
    r->close();
    G_CM = 0;
    r = open();
    EXPECT_TRUE(r->DBGridEh->ColumnByField("S0")->Visible);
    for (int i = 1; i <= 9; ++i) EXPECT_FALSE(r->DBGridEh->ColumnByField("S" + QString::number(i))->Visible);
    r->close();
}

TEST_F(StockQueryTest, SizeTitlesFollowTheCurrentRowsSizeGroup) {
    auto* r = open();
    EXPECT_EQ(r->DBGridEh->ColumnByField("S0")->Title, "尺码|-");
    r->AdoQry_Main->First();
    r->gtimeTimer();
    EXPECT_EQ(r->DBGridEh->ColumnByField("S0")->Title, "尺码|S");
    EXPECT_EQ(r->DBGridEh->ColumnByField("S2")->Title, "尺码|L");
    EXPECT_FALSE(r->gtime->isActive());
    r->AdoQry_Main->Last();  // K02, group B
    EXPECT_TRUE(r->gtime->isActive()) << "scrolling restarts the title timer";
    r->gtimeTimer();
    EXPECT_EQ(r->DBGridEh->ColumnByField("S0")->Title, "尺码|28");
    EXPECT_EQ(r->DBGridEh->ColumnByField("S3")->Title, "尺码|31");
    r->close();
}

TEST_F(StockQueryTest, ActionsBeforeAnyQueryAreRefused) {
    auto* r = openCancelled<TQXCK255>(255);
    EXPECT_TRUE(statements().empty());
    r->Act_Refresh->trigger();
    r->Act_Print->trigger();
    ASSERT_EQ(sink->messages.size(), 2u);
    EXPECT_EQ(sink->messages[0].text, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!");
    EXPECT_EQ(sink->messages[0].dispKind, 5);
    EXPECT_TRUE(statements().empty());
    r->close();
}

TEST_F(StockQueryTest, OneReadableWarehouseLocksTheWarehouseChoices) {
    G_CKCOUNT_R = 1;
    auto* r = open();
    auto* f = r->Filter;
    EXPECT_FALSE(f->CK_ID->isEnabled());
    EXPECT_FALSE(f->BSCHK2_1->isEnabled());
    EXPECT_FALSE(f->o1->isEnabled());
    EXPECT_EQ(f->WarehouseLink, nullptr);
    EXPECT_TRUE(f->wl_id->isEnabled());
    r->close();
}

TEST_F(StockQueryTest, SortChoiceIsOnlyForThePerWarehouseListing) {
    auto* r = open();
    auto* f = r->Filter;
    f->BSCHK2_1->click();
    EXPECT_FALSE(f->o1->isEnabled());
    f->BSCHK2_2->click();
    EXPECT_TRUE(f->o2->isEnabled());
    r->close();
}

TEST_F(StockQueryTest, DialogChoicesPersistBetweenUses) {
    auto* r = open([](TQXCK255F* f) {
        summary(f);
        f->BSCHK2_3->setChecked(false);
    });
    r->close();
    auto* again = open();
    EXPECT_TRUE(again->Filter->BSCHK2_1->isChecked());
    EXPECT_FALSE(again->Filter->BSCHK2_3->isChecked());
    again->close();
}

TEST_F(StockQueryTest, HostileTextInTheEditsIsQuotedAndFindsNothing) {
    auto* r = open([](TQXCK255F* f) { f->wl_id->setText("K'01"); });
    EXPECT_EQ(lastStatement(), golden["per warehouse, quoted style"]);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(r->Filter->wl_id->maxLength(), 20);
    EXPECT_EQ(r->Filter->CK_ID->maxLength(), 4);
    r->close();
    auto* unknown = open([](TQXCK255F* f) { f->CK_ID->setText("ZZ"); });
    EXPECT_EQ(unknown->AdoQry_Main->RecordCount(), 0) << "an unknown warehouse simply yields no rows";
    EXPECT_TRUE(sink->errors().isEmpty());
    unknown->close();
}

// ---- drill-down ---------------------------------------------------------------------------------

TEST_F(StockQueryTest, DrillDownFromASummaryRowPassesNoWarehouse) {
    document("D8201", "S1", "01", "2026-03-10", "K0101", {1});
    auto* r = open([](TQXCK255F* f) {
        summary(f);
        f->BSCHK2_3->setChecked(false);
    });
    ASSERT_TRUE(r->AdoQry_Main->Locate("K_ID;COL_ID", QVariantList{"K01", "01"}));
    calls.clear();
    r->DBGridEhDblClick(r->DBGridEh);
    EXPECT_EQ(lastStatement(), golden["drill-down from a summary row"]);
    auto* d = r->Drill;
    EXPECT_EQ(d->Caption(), "进销存明细表");
    EXPECT_EQ(d->Lab_Name->text(), "衬衫 / 红色");
    // opening, the sale, per-size lines S and M with the current stock of their size
    EXPECT_EQ(column(d->AdoQry_Main, "mytype"), (QStringList{"0", "2", "100", "100"}));
    EXPECT_EQ(column(d->AdoQry_Main, "jc"), (QStringList{"0", "-1", "1", "-2"})) << "running over both warehouses";
    EXPECT_EQ(column(d->AdoQry_Main, "wl_gg"), (QStringList{"", "", "1", "-2"}));
    EXPECT_EQ(column(d->AdoQry_Main, "dw_name"), (QStringList{"", "", "S", "M"}));
    TCellParams sizeLine, movement;
    d->AdoQry_Main->SetRecNo(3);
    d->DBGridEh->OnGetCellParams(d->DBGridEh->ColumnByField("jc"), sizeLine);
    EXPECT_EQ(sizeLine.FontColor, QColor(Qt::blue)) << "per-size lines are coloured";
    d->AdoQry_Main->SetRecNo(2);
    d->DBGridEh->OnGetCellParams(d->DBGridEh->ColumnByField("jc"), movement);
    EXPECT_NE(movement.FontColor, QColor(Qt::blue));
    r->close();
}

TEST_F(StockQueryTest, DrillDownFromAWarehouseRowPassesItsWarehouseRightsAndCostFlag) {
    G_CHKCK = 1;
    auto* r = openReport<TQXCK255, TQXCK255F>(255, {}, [](TQXCK255* report) { report->ShowCost = false; });
    ASSERT_TRUE(r->AdoQry_Main->Locate("K_ID;COL_ID", QVariantList{"K01", "01"}));
    r->DBGridEhDblClick(r->DBGridEh);
    EXPECT_EQ(lastStatement(), golden["drill-down from a warehouse row with rights, cost hidden"]);
    r->close();
}

TEST_F(StockQueryTest, DrillDownOverOneDayAndReversedDates) {
    auto* r = open([](TQXCK255F* f) {
        summary(f);
        f->BSCHK2_3->setChecked(false);
    });
    ASSERT_TRUE(r->AdoQry_Main->Locate("K_ID;COL_ID", QVariantList{"K01", "02"}));
    auto* d = r->Drill;
    EXPECT_EQ(d->titDATE->text(), "(30天)");
    EXPECT_EQ(d->BDATE->Text(), "2026-02-16");
    d->BDATE->SetText("2026-03-18");
    EXPECT_EQ(d->titDATE->text(), "(1天)");
    d->BDATE->SetText("2026-03-19");
    calls.clear();
    d->InitForm("K01", r->AdoQry_Main);
    EXPECT_TRUE(statements().empty()) << "a reversed range queries nothing";
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "<开始日期> 不能大于 <结束日期>!");
    d->BDATE->SetText("2026-03-18");
    ASSERT_TRUE(r->AdoQry_Main->Locate("K_ID;COL_ID", QVariantList{"K01", "01"}));
    d->InitForm("K01", r->AdoQry_Main);
    EXPECT_EQ(lastStatement(), golden["drill-down over one day"]);
    r->close();
}

}  // namespace
