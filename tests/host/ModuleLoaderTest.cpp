// The module is loaded the way the host loads it: QLibrary on libqx_ck.so, QXProc2 by name.
// This test does not link the module, so everything it sees comes through the loaded library.
#include <gtest/gtest.h>

#include <QDir>
#include <QWidget>

#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "host/ModuleLoader.h"
#include "host/TestEnvironment.h"

namespace {

using qx::host::ModuleLoader;

QString binDir() {
    return QDir(qx::test::binaryDir()).filePath("bin");
}

TEST(ModuleLoader, FindsQXProc2ByNameAndCallsIt) {
    ModuleLoader loader;
    ASSERT_TRUE(loader.load(QDir(binDir()).filePath("libqx_ck.so")))
        << loader.error().toStdString();
    ASSERT_NE(loader.entry(), nullptr);

    ResetGlobals();
    qx::ui::ScopedScriptedSink sink;
    QWidget mainForm;
    Trecord rec;
    rec.UserId = "admin";

    rec.FuncCode = 216;  // between the order and transfer codes: nothing
    loader.entry()(rec, &mainForm);
    EXPECT_TRUE(sink->messages.empty());
    EXPECT_TRUE(mainForm.findChildren<QWidget*>().isEmpty());

    // The module reads the host's globals and speaks through the host's message sink.
    G_CKCOUNT_C = 1;
    rec.FuncCode = 217;
    loader.entry()(rec, &mainForm);
    ASSERT_EQ(sink->messages.size(), 1u);
    EXPECT_EQ(sink->messages[0].text,
              "系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!");
    EXPECT_TRUE(mainForm.findChildren<QWidget*>().isEmpty());
    ResetGlobals();
}

TEST(ModuleLoader, MissingLibraryIsAClearError) {
    ModuleLoader loader;
    EXPECT_FALSE(loader.load(QDir(binDir()).filePath("libqx_missing.so")));
    EXPECT_EQ(loader.entry(), nullptr);
    EXPECT_TRUE(loader.error().contains("libqx_missing.so")) << loader.error().toStdString();
    EXPECT_TRUE(loader.error().contains("找不到库存模块"));
}

TEST(ModuleLoader, LibraryWithoutQXProc2IsAClearError) {
    ModuleLoader loader;
    EXPECT_FALSE(loader.load(QDir(binDir()).filePath("libqx_db.so")));
    EXPECT_EQ(loader.entry(), nullptr);
    EXPECT_TRUE(loader.error().contains("QXProc2")) << loader.error().toStdString();
}

TEST(ModuleLoader, FileThatIsNoLibraryIsAClearError) {
    ModuleLoader loader;
    const QString notALibrary = QDir(qx::test::sourceDir()).filePath("CMakeLists.txt");
    EXPECT_FALSE(loader.load(notALibrary));
    EXPECT_TRUE(loader.error().contains("无法加载库存模块")) << loader.error().toStdString();
}

}  // namespace
