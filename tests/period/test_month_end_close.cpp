// The month-end close: month labels, close and reverse close with their exact statements and
// messages, the hand-over to the balance check and to the cost recalculation, the dispatch.
#include <QGroupBox>
#include <QLabel>
#include <QTest>

#include "frame/Qxfunc2.h"
#include "period/Frmqxck342.h"
#include "period/Frmqxck342_1.h"
#include "period/Frmqxck342_2.h"
#include "period/PeriodCommon.h"
#include "support/CancelledProgress.h"
#include "tests/framework/FakeDatabase.h"
#include "tests/period/PeriodFixture.h"

namespace {

using qx::test::golden;
using qx::test::PeriodTest;

class MonthEndClose : public PeriodTest {
protected:
    std::unique_ptr<TQXCK342> open(qint32 flags = HostFlagMayWrite) {
        auto screen = std::make_unique<TQXCK342>(nullptr);
        Trecord rec;
        rec.HostFlags = flags;
        screen->SetUserParam("U1", "王经理", "01", "总仓", "测试服饰", "shop.db");
        screen->InitForm(rec);
        calls.clear();
        return screen;
    }
    void setPeriod(const QString& date) { exec("UPDATE sys_co SET CK_END_DATE='" + date + "'"); }
};

QStringList labelTexts(QWidget* screen) {
    QStringList out;
    for (QLabel* label : screen->findChildren<QLabel*>()) out << label->text();
    return out;
}

TEST_F(MonthEndClose, ShowsTheMonthWithoutLeadingZeroAndTheMonthAfterTheClose) {
    auto screen = open();
    EXPECT_EQ(screen->Caption(), "库存期间月结");
    EXPECT_EQ(screen->titBDATE->text(), "当前进销存月份为:");
    EXPECT_EQ(screen->BDATE->text(), "3月份");
    EXPECT_EQ(screen->titEDATE->text(), "-->>月结后将转入：");
    EXPECT_EQ(screen->EDATE->text(), "4月份");
    EXPECT_EQ(screen->btn_ok->text(), "月结(F2)");
    EXPECT_EQ(screen->btn_c->text(), "反结");
    EXPECT_EQ(screen->bth_kcchk->text(), "帐目平衡检查");
    EXPECT_EQ(screen->bsSkinButton1->text(), "开始进行成本重算");
    const QStringList texts = labelTexts(screen.get());
    for (const char* text : {"注意事项：", "1、月结后期间的单据将不可以进行任何（新增，修改，删除）操作",
                             "2、如发现上期的单据有错误，需要更改，请进行反结后再操作", "成本重算：",
                             "1、如关心成本及利润的处理，可进行成本重算，否则请直接跳过",
                             "2、单据经常改动，有先填写出库的单据，然后再填写入库的单据",
                             "3、如产生负库存，请按系统提示修改单据日期后再重新重算", "4、成本重算是按款号(不分色码)，移动加权法计算",
                             "5、重算需要进行大量的运算，如界面暂时无响应请等待。"})
        EXPECT_TRUE(texts.contains(text)) << text;
}

TEST_F(MonthEndClose, ReadsThePeriodWithItsStatement) {
    calls.clear();
    TQXCK342 screen(nullptr);
    screen.InitForm(Trecord());
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].sql, golden("open-period"));
    EXPECT_EQ(calls[0].funcNo, "242");
}

TEST_F(MonthEndClose, MonthLabelsDropTheLeadingZero) {
    EXPECT_EQ(TQXCK342::MonthLabel(QDate(2026, 3, 1)), "3月份");
    EXPECT_EQ(TQXCK342::MonthLabel(QDate(2026, 10, 1)), "10月份");
    EXPECT_EQ(TQXCK342::MonthLabel(QDate(2027, 1, 31)), "1月份");
}

TEST_F(MonthEndClose, CloseFromTheMiddleOfAMonthStoresTheFirstOfTheNext) {
    auto screen = open();
    screen->btn_ok->click();
    EXPECT_EQ(periodEnd(), "2026-04-01");
    const auto exec = lastExec();
    EXPECT_EQ(exec.sql, golden("close"));
    EXPECT_EQ(exec.funcNo, "242");
    EXPECT_EQ(exec.noid, "月结");
    EXPECT_EQ(exec.mode, "Edit");
    EXPECT_EQ(sink->texts(), QStringList({"月结->>操作完成!"}));
    EXPECT_EQ(screen->BDATE->text(), "4月份") << "labels are read again";
    EXPECT_EQ(screen->EDATE->text(), "5月份");
}

TEST_F(MonthEndClose, ReverseCloseFromTheMiddleOfAMonthStoresTheFirstOfThePrevious) {
    auto screen = open();
    screen->btn_c->click();
    EXPECT_EQ(periodEnd(), "2026-02-01");
    EXPECT_EQ(lastExec().sql, golden("reverse-close"));
    EXPECT_EQ(lastExec().noid, "反月结");
    EXPECT_EQ(sink->texts(), QStringList({"反月结->>操作完成!"}));
    EXPECT_EQ(screen->BDATE->text(), "2月份");
}

TEST_F(MonthEndClose, CloseInDecemberMovesIntoJanuaryOfTheNextYearAndBack) {
    setPeriod("2026-12-01");
    auto screen = open();
    EXPECT_EQ(screen->EDATE->text(), "1月份");
    screen->btn_ok->click();
    EXPECT_EQ(periodEnd(), "2027-01-01");
    EXPECT_EQ(screen->BDATE->text(), "1月份");
    EXPECT_EQ(screen->EDATE->text(), "2月份");
    screen->btn_c->click();
    EXPECT_EQ(periodEnd(), "2026-12-01");
    EXPECT_EQ(screen->BDATE->text(), "12月份");
}

TEST_F(MonthEndClose, EachClickMovesOneMonthWithoutAsking) {
    auto screen = open();
    screen->btn_ok->click();
    screen->btn_ok->click();
    EXPECT_EQ(periodEnd(), "2026-05-01");
    screen->btn_c->click();
    screen->btn_c->click();
    screen->btn_c->click();
    EXPECT_EQ(periodEnd(), "2026-02-01");
    EXPECT_EQ(sink->unexpectedQuestions, 0);
    EXPECT_EQ(sink->texts().size(), 5);
}

TEST_F(MonthEndClose, WithoutAnOpenPeriodTheLabelsStayEmptyAndACloseSetsNone) {
    exec("UPDATE sys_co SET CK_END_DATE=NULL");
    auto screen = open();
    EXPECT_EQ(screen->BDATE->text(), "");
    EXPECT_EQ(screen->EDATE->text(), "");
    EXPECT_TRUE(screen->btn_ok->isEnabled());
    screen->btn_ok->click();
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM sys_co WHERE CK_END_DATE IS NULL"), "1");
}

TEST_F(MonthEndClose, F2Closes) {
    auto screen = open();
    QTest::keyClick(screen.get(), Qt::Key_F2);
    EXPECT_EQ(periodEnd(), "2026-04-01");
}

TEST_F(MonthEndClose, DocumentsOfAClosedMonthAreRefusedThoseOfTheOpenMonthAccepted) {
    auto screen = open();
    screen->btn_ok->click();  // March is closed now
    EXPECT_THROW(receive("R0320", "2026-03-20", "K0101", {5}), qx::db::Error);
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101"), "0");
    EXPECT_NO_THROW(receive("R0402", "2026-04-02", "K0101", {5}));
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101"), "1");
    screen->btn_c->click();  // and open again
    EXPECT_NO_THROW(receive("R0320", "2026-03-20", "K0101", {5}));
}

TEST_F(MonthEndClose, AFailedCloseSaysSoAndKeepsTheLabels) {
    auto fake = std::make_shared<qx::test::FakeDatabase>();
    fake->answer("CK_END_DATE", qx::test::table({"CK_END_DATE"}, {{std::string("2026-03-15 00:00:00")}}));
    qx::dataop::setDatabase(fake);
    auto screen = open();
    fake->failExecute = true;
    screen->btn_ok->click();
    const QStringList texts = sink->texts();
    ASSERT_GE(texts.size(), 2);
    EXPECT_EQ(texts[0], "月结->>操作失败!");
    EXPECT_TRUE(texts[1].contains("forced failure")) << "and the database's reason";
    EXPECT_EQ(screen->BDATE->text(), "3月份");
    sink->clear();
    screen->btn_c->click();
    EXPECT_EQ(sink->texts().value(0), "反月结->>操作失败!");
}

TEST_F(MonthEndClose, TheCloseButtonFollowsTheRightsFlagUntilThePeriodIsRead) {
    qx::dataop::setDatabase(nullptr);  // the period cannot be read
    TQXCK342 without(nullptr);
    EXPECT_FALSE(qx::guard([&] { without.InitForm(Trecord()); }));
    EXPECT_FALSE(without.btn_ok->isEnabled());
    TQXCK342 with(nullptr);
    Trecord rec;
    rec.HostFlags = HostFlagMayWrite;
    EXPECT_FALSE(qx::guard([&] { with.InitForm(rec); }));
    EXPECT_TRUE(with.btn_ok->isEnabled());
    qx::dataop::setDatabase(db);
    without.InitForm(Trecord());
    EXPECT_TRUE(without.btn_ok->isEnabled()) << "reading the period enables the close";
}

TEST_F(MonthEndClose, BalancedBooksSayBalancedAndOpenNoScreen) {
    receive("R1", "2026-03-16", "K0101", {5});
    auto screen = open();
    screen->bth_kcchk->click();
    EXPECT_EQ(statements(qx::dataop::Call::Kind::OpenSql), std::vector<QString>({golden("balance-check")}));
    EXPECT_EQ(sink->texts(), QStringList({"帐目平衡!"}));
    EXPECT_TRUE(modalDialogs.isEmpty());
}

TEST_F(MonthEndClose, UnbalancedBooksOpenTheBalanceCheckModally) {
    receive("R1", "2026-03-16", "K0101", {5});
    maintain("UPDATE d1802 SET K0=4 WHERE WL_ID='K0101'");
    auto screen = open();
    int rows = -1;
    onModal = [&](TFrm_Base* dialog) {
        if (auto* check = dynamic_cast<TQXCK342_1*>(dialog)) rows = check->AdoQry_Tmp->RecordCount();
        return int(mrCancel);
    };
    screen->bth_kcchk->click();
    EXPECT_EQ(modalDialogs, QStringList({"QXCK342_1"}));
    EXPECT_EQ(rows, 1);
    EXPECT_TRUE(sink->texts().isEmpty());
}

TEST_F(MonthEndClose, ACostRecalculationWithoutNegativeStockSaysDone) {
    receive("R1", "2026-03-16", "K0101", {10}, 20);
    sell("S1", "2026-03-17", "K0101", 5);
    auto screen = open();
    screen->bsSkinButton1->click();
    EXPECT_EQ(statements(qx::dataop::Call::Kind::OpenSql).front(), golden("cost-recalculation"));
    EXPECT_EQ(sink->texts(), QStringList({"全部成本重算->>操作完成!"}));
    EXPECT_TRUE(modalDialogs.isEmpty());
    EXPECT_EQ(scalar("SELECT DJ FROM D8201A WHERE NOID='S1'"), "20");
    EXPECT_EQ(statements(qx::dataop::Call::Kind::OpenSql).back(), golden("open-period")) << "labels read again";
}

TEST_F(MonthEndClose, ACostRecalculationWithNegativeStockShowsTheNoticeAndNoCompletion) {
    sell("S1", "2026-03-16", "K0101", 5);
    receive("R1", "2026-03-17", "K0101", {10}, 20);
    auto screen = open();
    int rows = -1;
    QString firstParam;
    onModal = [&](TFrm_Base* dialog) {
        if (auto* notice = dynamic_cast<TQXCK342_2*>(dialog)) {
            rows = notice->AdoQry_Main->RecordCount();
            firstParam = notice->FormParam[0];
        }
        return int(mrCancel);
    };
    screen->bsSkinButton1->click();
    EXPECT_EQ(modalDialogs, QStringList({"QXCK342_2"}));
    EXPECT_EQ(rows, 1);
    EXPECT_EQ(firstParam, "242") << "the notice gets the close screen's form parameters";
    EXPECT_TRUE(sink->texts().isEmpty());
}

TEST_F(MonthEndClose, AFailedCostRecalculationSaysSo) {
    auto fake = std::make_shared<qx::test::FakeDatabase>();
    fake->answer("CK_END_DATE", qx::test::table({"CK_END_DATE"}, {{std::string("2026-03-15 00:00:00")}}));
    fake->failUnknown = true;
    qx::dataop::setDatabase(fake);
    auto screen = open();
    screen->bsSkinButton1->click();
    EXPECT_EQ(sink->texts().value(0), "全部成本重算->>操作失败!");
}

TEST_F(MonthEndClose, ACancelledCostRecalculationWritesNothingAndSaysNothing) {
    receive("R1", "2026-03-16", "K0101", {10}, 20);
    sell("S1", "2026-03-17", "K0101", 5);
    const QString before = scalar("SELECT DJ FROM D8201A WHERE NOID='S1'");
    auto screen = open();
    {
        qx::test::CancelledProgress user;
        screen->bsSkinButton1->click();
    }
    EXPECT_EQ(scalar("SELECT DJ FROM D8201A WHERE NOID='S1'"), before);
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(modalDialogs.isEmpty());
}

TEST_F(MonthEndClose, Code242OpensTheDialogModallyAndReleasesIt) {
    QWidget mainForm;
    Trecord rec;
    rec.UserId = "U1";
    rec.FuncCode = 242;
    onModal = [](TFrm_Base* dialog) {
        EXPECT_NE(dynamic_cast<TQXCK342*>(dialog), nullptr);
        EXPECT_EQ(static_cast<TQXCK342*>(dialog)->BDATE->text(), "3月份");
        return int(mrCancel);
    };
    QXProc2(rec, &mainForm);
    EXPECT_EQ(modalDialogs, QStringList({"QXCK342"}));
}

}  // namespace
