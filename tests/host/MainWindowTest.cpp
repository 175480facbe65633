// The main window: the module's menu, screens as tabs, the status bar, a screenshot.
#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabWidget>
#include <set>

#include "frame/Dispatch.h"
#include "frame/DispatchTesting.h"
#include "frame/Qxfunc2.h"
#include "framework/Screenshot.h"
#include "framework/U_dataop.h"
#include "host/MainWindow.h"
#include "host/Menu.h"
#include "host/ShopFixture.h"
#include "host/TestEnvironment.h"
#include "host/TestScreens.h"

namespace {

using qx::host::MainWindow;
using qx::test::ShopFixture;

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        qx::dataop::setDatabase(shop.db);
        qx::host::signIn(*shop.db, "admin");
    }
    void TearDown() override {
        qx::frame::testing::clearFactories();
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
    ShopFixture shop{3, "1,1,6,0"};
    qx::ui::ScopedScriptedSink sink;
};

TEST_F(MainWindowTest, MenuOffersEveryFunctionOfTheModuleWithItsCaption) {
    MainWindow window(&QXProc2, "shop.db");
    std::set<int> menuCodes;
    for (QAction* action : window.findChildren<QAction*>()) {
        if (!action->objectName().startsWith("func")) continue;
        const int code = action->data().toInt();
        menuCodes.insert(code);
        const auto* row = qx::frame::findFunction(code);
        ASSERT_NE(row, nullptr) << code;
        EXPECT_EQ(action->text(), QString::fromUtf8(row->caption)) << code;
    }
    std::set<int> moduleCodes;
    for (const auto& row : qx::frame::functionTable()) moduleCodes.insert(row.code);
    EXPECT_EQ(menuCodes, moduleCodes);
    // One menu per subsystem.
    QStringList titles;
    for (QAction* a : window.menuBar()->actions()) titles << a->text();
    EXPECT_EQ(titles, (QStringList{"库存单据(&D)", "查询报表(&R)", "期间处理(&P)", "系统维护(&S)",
                                   "标签条码(&L)", "窗口(&W)"}));
}

TEST_F(MainWindowTest, StatusBarShowsUserWarehouseAndDatabase) {
    MainWindow window(&QXProc2, "/data/shop.db");
    EXPECT_EQ(window.findChild<QLabel*>("StatusUser")->text(), "用户: admin 系统管理员");
    EXPECT_EQ(window.findChild<QLabel*>("StatusWarehouse")->text(), "仓库: 01 仓库1");
    EXPECT_EQ(window.findChild<QLabel*>("StatusDatabase")->text(), "数据库: /data/shop.db");
    EXPECT_EQ(window.windowTitle(), "QX_CK 库存管理 - 测试服饰");
}

TEST_F(MainWindowTest, EmbeddedScreensBecomeTabsAndTwoOpensGiveTwoTabs) {
    qx::frame::testing::setFactory(255,
                                   &qx::frame::screen<qx::test::TQXTESTQRY, &qx::test::QXTESTQRY>);
    MainWindow window(&QXProc2, "shop.db");
    window.show();
    window.actionFor(255)->trigger();
    ASSERT_EQ(window.screens().size(), 1);
    QPointer<QWidget> first = window.screens()[0];
    EXPECT_EQ(first.data(), qx::test::QXTESTQRY);
    EXPECT_EQ(window.tabs()->tabText(window.tabs()->indexOf(first)), "测试仓库表");
    EXPECT_EQ(window.tabs()->currentWidget(), first.data());
    EXPECT_EQ(qx::test::QXTESTQRY->Tag, 255);
    EXPECT_EQ(qx::test::QXTESTQRY->AdoQry_Main->RecordCount(), 3);

    window.openFunction(255);
    ASSERT_EQ(window.screens().size(), 2);
    EXPECT_NE(window.screens()[1], first.data());

    qx::test::binaryDir();  // screenshots go under the build tree
    const QString file = qx::saveScreenshot(&window, "host_main_window");
    EXPECT_TRUE(file.startsWith(qx::test::binaryDir() + "/screenshots/")) << file.toStdString();
    ASSERT_FALSE(file.isEmpty());
    EXPECT_FALSE(QImage(file).isNull());

    // Closing a tab closes its screen; the framework frees it.
    window.tabs()->tabCloseRequested(window.tabs()->indexOf(first));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(window.screens().size(), 1);
}

TEST_F(MainWindowTest, PlainWidgetShownDuringTheCallIsTakenInAsATab) {
    struct Handle final : qx::frame::ScreenHandle {
        explicit Handle(QWidget* owner) : widget(new QWidget(owner)) {
            widget->setWindowTitle("普通窗口");
        }
        void setTag(int) override {}
        void setUserParam(const Trecord&) override {}
        void initForm(const Trecord&) override { widget->show(); }
        void initDialog(const Trecord&) override {}
        void showModal() override {}
        void release() override {}
        QWidget* widget;
    };
    qx::frame::testing::setFactory(297,
                                   [](QWidget* owner) -> std::unique_ptr<qx::frame::ScreenHandle> {
                                       return std::make_unique<Handle>(owner);
                                   });
    MainWindow window(&QXProc2, "shop.db");
    window.openFunction(297);
    ASSERT_EQ(window.screens().size(), 1);
    EXPECT_EQ(window.tabs()->tabText(1), "普通窗口");
}

TEST_F(MainWindowTest, ScreenErrorsAreReportedNotThrown) {
    struct Failing final : qx::frame::ScreenHandle {
        explicit Failing(QWidget*) {}
        void setTag(int) override {}
        void setUserParam(const Trecord&) override {}
        void initForm(const Trecord&) override { throw EDatabaseError("no such table: d9999"); }
        void initDialog(const Trecord&) override {}
        void showModal() override {}
        void release() override {}
    };
    qx::frame::testing::setFactory(201,
                                   [](QWidget* owner) -> std::unique_ptr<qx::frame::ScreenHandle> {
                                       return std::make_unique<Failing>(owner);
                                   });
    MainWindow window(&QXProc2, "shop.db");
    EXPECT_NO_THROW(window.openFunction(201));
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_TRUE(sink->errors()[0].contains("no such table: d9999"))
        << sink->errors()[0].toStdString();
}

}  // namespace

namespace {

// A screen that refuses to close while it holds unsaved input.
class TQXTESTBUSY : public TFrm_Base_Qry {
public:
    explicit TQXTESTBUSY(QWidget* owner) : TFrm_Base_Qry(owner) { SetCaption("未保存"); }
    bool busy = true;

protected:
    bool FormCloseQuery() override { return !busy; }
};
TQXTESTBUSY* QXTESTBUSY = nullptr;

TEST_F(MainWindowTest, ClosingTheWindowAsksEveryScreenFirst) {
    qx::frame::testing::setFactory(255, &qx::frame::screen<TQXTESTBUSY, &QXTESTBUSY>);
    MainWindow window(&QXProc2, "shop.db");
    window.show();
    window.openFunction(255);
    ASSERT_EQ(window.screens().size(), 1);
    EXPECT_FALSE(window.close()) << "the screen holds unsaved input";
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.screens().size(), 1);

    QXTESTBUSY->busy = false;
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(window.screens().isEmpty());
}

}  // namespace
