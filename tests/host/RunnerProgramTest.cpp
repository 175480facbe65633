// qxck-run as a user runs it: a separate process, the module loaded from the build tree.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "host/ShopFixture.h"
#include "host/TestEnvironment.h"

namespace {

struct ProgramRun {
    int exitCode = -1;
    QString out;
    QString err;
};

ProgramRun runProgram(const QStringList& args, const QString& script) {
    QTemporaryDir dir;
    const QString scriptPath = dir.filePath("test.qxs");
    QFile file(scriptPath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(script.toUtf8());
    file.close();
    QProcess process;
    process.start(QDir(qx::test::binaryDir()).filePath("bin/qxck-run"), QStringList(args)
                                                                            << scriptPath);
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

TEST(RunnerProgram, RunsAScriptThroughTheLoadedModule) {
    qx::test::ShopFixture shop(1, "1,1,6,0");
    shop.db.reset();  // the program opens the file itself
    const ProgramRun run =
        runProgram({"--db", shop.path(), "--user", "admin", "--password", "admin"},
                   "open 216\nopen 217\ndump messages\necho done\n");
    EXPECT_EQ(run.exitCode, 0) << run.out.toStdString() << run.err.toStdString();
    EXPECT_EQ(run.out,
              "== messages\nmessage: "
              "系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!\ndone\n")
        << run.err.toStdString();
}

TEST(RunnerProgram, FailingLineGivesExitCodeOne) {
    qx::test::ShopFixture shop;
    shop.db.reset();
    const ProgramRun run =
        runProgram({"--db", shop.path()}, "login admin admin\nclick NoSuchButton\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.contains(
        "error at line 2 (click NoSuchButton): no button or action 'NoSuchButton'"))
        << run.out.toStdString();
}

TEST(RunnerProgram, MissingDatabaseOrRefusedLoginGivesExitCodeTwo) {
    ProgramRun run = runProgram({"--db", "/nonexistent/shop.db"}, "echo x\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains("数据库文件不存在: /nonexistent/shop.db"))
        << run.err.toStdString();

    qx::test::ShopFixture shop;
    shop.db.reset();
    run = runProgram({"--db", shop.path(), "--today", "2026-02-30"}, "echo x\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains("--today 2026-02-30 is not a date")) << run.err.toStdString();

    run = runProgram({"--db", shop.path(), "--user", "admin", "--password", "x"}, "echo x\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains("用户名或密码错误!")) << run.err.toStdString();
}

}  // namespace
