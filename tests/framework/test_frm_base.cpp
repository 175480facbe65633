// Frm_Base.h: dialogs and their conditions, date presets, filter keys and stored options.
#include "tests/framework/FrameworkScreenFixture.h"

namespace {

using namespace qx::test::framework_screens;

// --- dialogs

TEST_F(FrameworkScreenTest, ConditionAppendsQuotedComparisons) {
    TFrm_Base_Dialog dialog;
    dialog.Condition = "(D8101.BDATE>='2026-03-01') ";
    dialog.Condition_t("=", "d1103.KH_gys_ID", "G01");
    dialog.Condition_t("=", "d8101.SEND_NO", "  ");
    dialog.Condition_t(">=", "d8101.NOTE", "O'Neil");
    EXPECT_EQ(dialog.Condition,
              "(D8101.BDATE>='2026-03-01')  AND (d1103.KH_gys_ID = 'G01') AND (d8101.NOTE >= 'O''Neil')");
}

TEST_F(FrameworkScreenTest, OkRunsCheckAllAndStartsAFreshCondition) {
    struct Refusing : TFrm_Base_Dialog {
        bool CheckAll() override { return false; }
    } refusing;
    refusing.Condition = "old";
    EXPECT_THROW(refusing.btn_okClick(nullptr), EAbort);
    EXPECT_EQ(refusing.Condition, "old");
    TFrm_Base_Dialog dialog;
    dialog.Condition = "old";
    dialog.Description = "old";
    dialog.btn_okClick(nullptr);
    EXPECT_EQ(dialog.Condition, "");
    EXPECT_EQ(dialog.Description, "");
}

TEST_F(FrameworkScreenTest, DatePresetsCoverTheUsualPeriods) {
    const QDate wednesday(2026, 3, 18);
    using R = std::pair<QDate, QDate>;
    EXPECT_EQ(TFrm_Base_Common::PresetRange(1, wednesday), R(wednesday, wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(2, wednesday), R(QDate(2026, 3, 17), QDate(2026, 3, 17)));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(3, wednesday), R(QDate(2026, 3, 16), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(4, wednesday), R(QDate(2026, 3, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(5, wednesday), R(QDate(2026, 2, 1), QDate(2026, 2, 28)));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(6, wednesday), R(QDate(2026, 1, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(7, wednesday), R(QDate(2026, 1, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(8, wednesday), R(QDate(2025, 1, 1), QDate(2025, 12, 31)));
    DemoFilter filter(nullptr);
    filter.setdate05click(nullptr);
    EXPECT_EQ(filter.BDATE->Text(), "2026-02-01");
    EXPECT_EQ(filter.EDATE->Text(), "2026-02-28");
    filter.InitForm();  // the fourth preset
    EXPECT_EQ(filter.BDATE->Text(), "2026-03-01");
    EXPECT_EQ(filter.EDATE->Text(), "2026-03-18");
}

TEST_F(FrameworkScreenTest, FilterKeysConfirmClearAndCancel) {
    DemoFilter filter(nullptr);
    filter.InitForm();
    filter.KH_ID->setText("G09");
    filter.show();
    QTest::keyClick(&filter, Qt::Key_F3);
    EXPECT_EQ(filter.KH_ID->text(), "");
    QTest::keyClick(&filter, Qt::Key_F2);
    EXPECT_EQ(filter.ModalResult(), mrOk);
    EXPECT_EQ(filter.Condition, "(D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18') ");
    filter.show();
    QTest::keyClick(&filter, Qt::Key_Escape);
    EXPECT_EQ(filter.ModalResult(), mrCancel);
}

TEST_F(FrameworkScreenTest, CheckBlankAndCheckDateReportWithTheCaption) {
    DemoEntry entry(nullptr);
    entry.Edit1->clear();
    EXPECT_THROW(entry.CheckBlank(entry.Edit1), EAbort);
    EXPECT_EQ(sink->texts(), QStringList{"进货单号不能为空!"});
    entry.Edit1->setText("D1");
    EXPECT_NO_THROW(entry.CheckBlank(entry.Edit1));
}

TEST_F(FrameworkScreenTest, FilterOptionsSurviveARestart) {
    QTemporaryDir dir;
    qx::settings::setProgramFolder(dir.path());
    G_CoName = "示范服装店";
    {
        DemoFilter filter(nullptr);
        filter.StoredProps = {"KH_ID"};
        filter.InitForm();
        filter.KH_ID->setText("G07");
        filter.btn_ok->click();
    }
    DemoFilter again(nullptr);
    again.StoredProps = {"KH_ID"};
    again.InitForm();
    EXPECT_EQ(again.KH_ID->text(), "G07");
    EXPECT_TRUE(QFile::exists(dir.filePath("示范服装店.ini")));
    qx::settings::setProgramFolder({});
}

}  // namespace
