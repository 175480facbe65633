// The period functions driven through the headless script runner on the demo shop, as the menu
// opens them: the month-end close with its balance check, cost recalculation, close and reopen,
// then the opening stock list.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_glo.h"
#include "host/MainWindow.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/RunScript.h"

namespace {

class PeriodScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        path = dir.filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-29"});
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        qx::dataop::setDatabase(db);
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->show();
    }
    void TearDown() override {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
    QString run(const QString& script) { return qx::test::runScript(*window, *db, script); }
    QString scalar(const QString& sql) { return qx::test::scalarText(*db, sql); }

    QTemporaryDir dir;
    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
};

TEST_F(PeriodScriptTest, MonthEndCloseAndOpeningStockFromTheMenu) {
    run("login admin admin\n");
    run("click func242\n"
        "expect screen 库存期间月结\n"
        "expect text BDATE 5月份\n"
        "expect text EDATE 6月份\n"
        "click bth_kcchk\n"
        "expect message 帐目平衡!\n"
        "click bsSkinButton1\n"
        "expect message 全部成本重算->>操作完成!\n"
        "click btn_ok\n"
        "expect message 月结->>操作完成!\n"
        "expect text BDATE 6月份\n"
        "click btn_cancel\n");
    EXPECT_EQ(scalar("SELECT CK_END_DATE FROM sys_co").left(10), "2026-06-01");
    EXPECT_EQ(scalar("SELECT COUNT(DISTINCT PERIOD) FROM sys_ck_snapshot"), "1") << "the close kept a snapshot";
    run("click func242\nclick btn_c\nexpect message 反月结->>操作完成!\nexpect text BDATE 5月份\nclick btn_cancel\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM sys_ck_snapshot"), "0") << "the reopen dropped it";

    const QString rows = scalar("SELECT COUNT(*) FROM d1802");
    const QString output = run("click func241\nclick btn_ok\nexpect screen 商品库存期初\nexpect rows " + rows + "\n");
    EXPECT_TRUE(output.isEmpty() || !output.contains("error")) << output.toStdString();
}

}  // namespace
