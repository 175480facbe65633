// The script runner: parsing, and a script that signs in, fills a grid, drives a modal dialog
// and dumps what the screens showed, said and sent.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTextStream>

#include "frame/DispatchTesting.h"
#include "frame/Qxfunc2.h"
#include "framework/DataSet.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "host/MainWindow.h"
#include "host/ScriptRunner.h"
#include "host/ShopFixture.h"
#include "host/TestEnvironment.h"
#include "host/TestScreens.h"

namespace {

using qx::host::parseScript;
using qx::host::splitScriptLine;
using qx::test::ShopFixture;

TEST(ScriptParsing, SplitsWordsAndKeepsQuotedTextTogether) {
    EXPECT_EQ(splitScriptLine("set  Edit1   K001"), (QStringList{"set", "Edit1", "K001"}));
    EXPECT_EQ(splitScriptLine(R"(set NOTE "a b  c")"), (QStringList{"set", "NOTE", "a b  c"}));
    EXPECT_EQ(splitScriptLine(R"(set NOTE "")"), (QStringList{"set", "NOTE", ""}));
    EXPECT_EQ(splitScriptLine(R"(set NOTE "say \"hi\" \\ ok")"),
              (QStringList{"set", "NOTE", R"(say "hi" \ ok)"}));
    EXPECT_EQ(splitScriptLine("set NOTE O'Neil"), (QStringList{"set", "NOTE", "O'Neil"}));
    EXPECT_THROW(splitScriptLine(R"(set NOTE "open)"), std::invalid_argument);
}

TEST(ScriptParsing, SkipsCommentsAndBlankLinesAndKeepsLineNumbers) {
    const auto commands =
        parseScript("# a comment\n\nlogin admin admin\n  # indented comment\nopen 201\n");
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].line, 3);
    EXPECT_EQ(commands[0].words, (QStringList{"login", "admin", "admin"}));
    EXPECT_EQ(commands[1].line, 5);
    EXPECT_THROW(parseScript("open 201\nset X \"unterminated\n"), std::invalid_argument);
}

class ScriptRunnerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        qx::dataop::setDatabase(shop.db);
        qx::frame::testing::setFactory(
            255, &qx::frame::screen<qx::test::TQXTESTQRY, &qx::test::QXTESTQRY>);
        qx::frame::testing::setFactory(
            901, &qx::frame::screen<qx::test::TQXTESTSET, &qx::test::QXTESTSET>);
    }
    void TearDown() override {
        window.reset();
        qx::frame::testing::clearFactories();
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }

    // Runs the script; returns the exit code, output in `output`.
    int run(const QString& script) {
        output.clear();
        QTextStream out(&output);
        // The window outlives the run, so the test can look at the screens the script left.
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, shop.path());
        window->show();
        qx::host::ScriptRunner runner(*window, *shop.db, out);
        runner.setTrace(qEnvironmentVariableIsSet("QXCK_TRACE"));
        const int rc = runner.run(parseScript(script));
        if (qEnvironmentVariableIsSet("QXCK_TRACE"))
            fprintf(stderr, "%s", output.toUtf8().constData());
        out.flush();
        return rc;
    }

    ShopFixture shop{3, "1,1,6,0"};
    QString output;
    std::unique_ptr<qx::host::MainWindow> window;
};

TEST_F(ScriptRunnerTest, RunsAScriptAgainstTheRealEntry) {
    const QString shot = QDir(qx::test::binaryDir()).filePath("screenshots/script_runner_main.png");
    QFile::remove(shot);
    const int rc = run(QString(R"(login admin admin
open 255
expect screen 测试仓库表
dump grid
append
cell CK_ID 09
cell CK_NAME "新 仓"
post
expect rows 4
locate ck_id 02
cell CK_NAME 二号仓
post
dump sql
open 901
expect screen 测试设置
expect text Edit1 测试服饰
set Edit1 "O'Neil 服饰"
check Chk
answer y
click btn_ok
echo back
dump messages
screenshot %1 main
)")
                           .arg(shot));
    EXPECT_EQ(rc, 0) << output.toStdString();
    EXPECT_TRUE(output.contains("signed in as admin 系统管理员\n")) << output.toStdString();
    EXPECT_TRUE(output.contains("== grid DBGridEh of QXTESTQRY: 3 rows\n")) << output.toStdString();
    EXPECT_TRUE(output.contains("1: 01 | 仓库1\n2: 02 | 仓库2\n3: 03 | 仓库3\n"))
        << output.toStdString();
    EXPECT_TRUE(
        output.contains("== sql\nopensql 255: SELECT CK_ID, CK_NAME FROM d1007 ORDER BY CK_ID\n"))
        << output.toStdString();
    EXPECT_TRUE(output.contains("back\n== messages\nquestion: 是否保存设置? -> y\n"))
        << output.toStdString();
    EXPECT_EQ(qx::test::TQXTESTSET::savedText, "O'Neil 服饰");
    EXPECT_TRUE(qx::test::TQXTESTSET::savedChecked);
    TClientDataSet* ds = qx::test::QXTESTQRY->AdoQry_Main;
    EXPECT_EQ(ds->RecordCount(), 4);
    ASSERT_TRUE(ds->Locate("CK_ID", "02"));
    EXPECT_EQ(ds->FieldByName("CK_NAME")->AsString(), "二号仓");
    ASSERT_TRUE(ds->Locate("CK_ID", "09"));
    EXPECT_EQ(ds->FieldByName("CK_NAME")->AsString(), "新 仓");
    EXPECT_FALSE(QImage(shot).isNull()) << shot.toStdString();
}

TEST_F(ScriptRunnerTest, ExportsGridsSavesChartsAndReportsPrinting) {
    qx::frame::testing::setFactory(255, &qx::frame::screen<qx::test::TQXTESTCHART, &qx::test::QXTESTCHART>);
    QDir out(QDir(qx::test::binaryDir()).filePath("script_export"));
    out.removeRecursively();
    const int rc = run(QString(R"(login admin admin
open 255
export %1
export %2
export %3
chart %4
click Act_Preview
click Act_Chart
click Act_Print
click Act_Export
)")
                           .arg(out.filePath("仓库.xlsx"), out.filePath("仓库.pdf"), out.filePath("仓库.csv"),
                                out.filePath("仓库.png")));
    EXPECT_EQ(rc, 0) << output.toStdString();
    QFile xlsx(out.filePath("仓库.xlsx"));
    ASSERT_TRUE(xlsx.open(QIODevice::ReadOnly));
    EXPECT_TRUE(xlsx.read(2) == "PK") << "a zip package";
    QFile pdf(out.filePath("仓库.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    QFile csv(out.filePath("仓库.csv"));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(csv.readAll().mid(3)), "仓库,N\r\n仓库1,32\r\n仓库2,32\r\n仓库3,32\r\n,96\r\n");
    EXPECT_FALSE(QImage(out.filePath("仓库.png")).isNull());
    EXPECT_TRUE(output.contains("preview 测试图表 | 全部仓库 | with chart\n")) << output.toStdString();
    EXPECT_TRUE(output.contains("print 测试图表 | 全部仓库\n")) << "the chart was hidden: " << output.toStdString();
    EXPECT_TRUE(output.contains("file dialog cancelled")) << output.toStdString();
    // A report without a chart has none to save.
    qx::frame::testing::setFactory(255, &qx::frame::screen<qx::test::TQXTESTQRY, &qx::test::QXTESTQRY>);
    EXPECT_EQ(run(QString("login admin admin\nopen 255\nchart %1\n").arg(out.filePath("none.png"))), 1);
    EXPECT_TRUE(output.contains("shows no chart")) << output.toStdString();
}

TEST_F(ScriptRunnerTest, PreconditionMessagesCanBeDumpedAndExpected) {
    shop.exec("DELETE FROM d1007 WHERE CK_ID <> '01'");
    const int rc = run(R"(login admin admin
open 217
dump messages
expect message 系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!
)");
    EXPECT_EQ(rc, 0) << output.toStdString();
    EXPECT_TRUE(output.contains(
        "== messages\nmessage: 系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!\n"))
        << output.toStdString();
}

TEST_F(ScriptRunnerTest, FailingCommandStopsWithItsLine) {
    const int rc = run("login admin admin\nopen 255\nset NoSuchEdit x\necho never\n");
    EXPECT_EQ(rc, 1);
    EXPECT_TRUE(output.contains("error at line 3 (set NoSuchEdit x): no control 'NoSuchEdit'"))
        << output.toStdString();
    EXPECT_FALSE(output.contains("never"));
}

TEST_F(ScriptRunnerTest, LocatingAMissingRowFails) {
    EXPECT_EQ(run("login admin admin\nopen 255\nlocate CK_ID 77\n"), 1);
    EXPECT_TRUE(output.contains(
        "error at line 3 (locate CK_ID 77): no row with CK_ID = 77 in grid DBGridEh"))
        << output.toStdString();
}

TEST_F(ScriptRunnerTest, WrongPasswordFails) {
    EXPECT_EQ(run("login admin wrong\n"), 1);
    EXPECT_TRUE(output.contains("用户名或密码错误!")) << output.toStdString();
}

TEST_F(ScriptRunnerTest, OpeningBeforeSigningInFails) {
    EXPECT_EQ(run("open 255\n"), 1);
    EXPECT_TRUE(output.contains("not signed in")) << output.toStdString();
}

TEST_F(ScriptRunnerTest, DialogLeftOpenIsClosedAtTheEnd) {
    EXPECT_EQ(run("login admin admin\nopen 901\nset Edit1 x\n"), 0) << output.toStdString();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
