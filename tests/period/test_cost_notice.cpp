// The negative-stock notice of the cost recalculation: a read-only snapshot of the rows the
// recalculation returned, with its fixed texts and titles.
#include <QTest>

#include "period/Frmqxck342_2.h"
#include "tests/period/PeriodFixture.h"

namespace {

using qx::test::golden;
using qx::test::PeriodTest;

class CostNotice : public PeriodTest {
protected:
    void SetUp() override {
        PeriodTest::SetUp();
        sell("S1", "2026-03-16", "K0101", 5);
        sell("S2", "2026-03-18", "K0102", 2, "02");
        receive("R1", "2026-03-20", "K0101", {10}, 20);
        opensql(&source, "242", golden("cost-recalculation"));
    }
    TClientDataSet source;
};

TEST_F(CostNotice, ShowsACopyOfTheNegativeStockRowsWithTheirTitles) {
    TQXCK342_2 notice(nullptr);
    notice.INIT(&source);
    EXPECT_EQ(notice.Caption(), "成本重算负库存提示");
    ASSERT_EQ(notice.AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(notice.DBGridEh->VisibleTitles(),
              QStringList({"款号", "品名", "单号", "日期", "单据类型", "进|数量", "进|成本金额", "出|数量", "进|成本金额", "存|数量",
                           "存|成本金额"}));
    EXPECT_FALSE(notice.DBGridEh->ColumnByField("mytype")->Visible);
    EXPECT_EQ(notice.DBGridEh->DisplayedText(0, notice.DBGridEh->ColumnByField("BDATE")->Index()), "2026-03-16");
    EXPECT_EQ(notice.AdoQry_Main->FieldByName("noid")->AsString(), "S1");
    EXPECT_EQ(notice.AdoQry_Main->FieldByName("C")->AsString(), "销售开单");
    EXPECT_EQ(notice.AdoQry_Main->FieldByName("jc")->AsFloat(), -5);
    EXPECT_TRUE(notice.DBGridEh->ReadOnly());
    EXPECT_FALSE(notice.btn_ok->isVisibleTo(&notice));
    for (QLabel* label : {notice.Label1, notice.Label2, notice.Label4}) EXPECT_FALSE(label->text().isEmpty());
    EXPECT_EQ(notice.Label1->text(), "成本重算出现负库存，造成该原因是：进货的日期迟于销售的日期。");
    EXPECT_EQ(notice.Label2->text(), "解决办法：把出现负库存的进货日期调前，或者把销售单据调后,然后再进行一次成本重算。");
    EXPECT_EQ(notice.Label4->text(), "对其它数据影响：对该商品参与的明细，汇总类利润计算会造成影响，如不关心利润可以直接跳过。");
}

TEST_F(CostNotice, IsASnapshotThatOkCopiesAgain) {
    TQXCK342_2 notice(nullptr);
    notice.INIT(&source);
    source.EmptyDataSet();
    EXPECT_EQ(notice.AdoQry_Main->RecordCount(), 2) << "the notice keeps its copy";
    notice.btn_okClick(notice.btn_ok);
    EXPECT_EQ(notice.AdoQry_Main->RecordCount(), 0) << "OK repeats the copy from the same source";
}

TEST_F(CostNotice, DoubleClickingTheTitleTogglesMaximised) {
    TQXCK342_2 notice(nullptr);
    notice.INIT(&source);
    notice.show();
    notice.Label3DblClick(notice.Label3);
    EXPECT_TRUE(notice.isMaximized());
    QTest::mouseDClick(notice.Label3, Qt::LeftButton);
    EXPECT_FALSE(notice.isMaximized());
}

}  // namespace
