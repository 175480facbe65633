// The host on the demo shop, end to end: sign in, open the purchase receipts from the menu the
// way a user does, confirm the filter, and look at the window.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "host/MainWindow.h"
#include "host/ScriptRunner.h"
#include "host/Session.h"
#include "host/TestEnvironment.h"

namespace {

class DemoShopTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir = new QTemporaryDir;
        path = dir->filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-30"});
    }
    static void TearDownTestSuite() {
        delete dir;
        dir = nullptr;
    }
    void SetUp() override {
        ResetGlobals();
        qx::ui::setToday(QDate(2026, 6, 30));
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        qx::dataop::setDatabase(db);
    }
    void TearDown() override {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        qx::ui::setToday(QDate());
        ResetGlobals();
    }

    static inline QTemporaryDir* dir = nullptr;
    static inline QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
};

TEST_F(DemoShopTest, TheDemoUserSignsIn) {
    EXPECT_EQ(qx::host::checkLogin(*db, "admin", "admin"), std::nullopt);
    qx::host::signIn(*db, "admin");
    EXPECT_EQ(G_UserId, "admin");
    EXPECT_FALSE(G_CoName.isEmpty());
    EXPECT_FALSE(G_ckid.isEmpty());
    EXPECT_EQ(G_CKCOUNT_C, 0) << "the demo shop has a head warehouse and shops";
}

TEST_F(DemoShopTest, PurchaseReceiptsOpenAsATabThroughTheScriptRunner) {
    QString output;
    QTextStream out(&output);
    window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
    window->resize(1280, 800);
    window->show();
    const QString shot =
        QDir(qx::test::binaryDir()).filePath("screenshots/host_main_window_receipts.png");
    QFile::remove(shot);
    qx::host::ScriptRunner runner(*window, *db, out);
    const int rc = runner.run(qx::host::parseScript(QString(R"(login admin admin
click func201
click btn_ok
expect screen 采购进货
dump grid DBGridEh
screenshot %1 main
)")
                                                        .arg(shot)));
    out.flush();
    ASSERT_EQ(rc, 0) << output.toStdString();
    ASSERT_EQ(window->screens().size(), 1);
    EXPECT_EQ(window->tabs()->tabText(1), "采购进货");
    EXPECT_TRUE(output.contains("== grid DBGridEh of QXCK201: ")) << output.toStdString();
    EXPECT_FALSE(output.contains(": 0 rows")) << "June has receipts" << output.toStdString();
    EXPECT_FALSE(QImage(shot).isNull());
}

}  // namespace
