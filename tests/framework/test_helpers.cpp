// Helpers, message sink, data operations and settings.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTemporaryDir>

#include "framework/DataSet.h"
#include "framework/Settings.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "framework/Zpy.h"
#include "tests/framework/FakeDatabase.h"

namespace {

using qx::dataop::Call;

TEST(FrameworkQuoting, SqlStrDoublesEmbeddedQuotesOnly) {
    EXPECT_EQ(SqlStr("K01"), "K01");
    EXPECT_EQ(SqlStr("O'Neil"), "O''Neil");
    EXPECT_EQ(SqlStr("''"), "''''");
    EXPECT_EQ(SqlStr(""), "");
}

TEST(FrameworkQuoting, QuotedStrSurroundsTheQuotedValue) {
    EXPECT_EQ(QuotedStr("D0001"), "'D0001'");
    EXPECT_EQ(QuotedStr("a'); DROP TABLE d8101; --"), "'a''); DROP TABLE d8101; --'");
    EXPECT_EQ(QuotedStr(""), "''");
}

TEST(FrameworkPinyin, InitialsOfChineseText) {
    EXPECT_EQ(GetPY("红色"), "HS");
    EXPECT_EQ(GetPY("黑色T恤"), "HSTX");
    EXPECT_EQ(GetPY("abc 12"), "ABC12");
    EXPECT_EQ(GetPY(""), "");
}

TEST(FrameworkMessages, ScriptedSinkRecordsMessagesAndAnswersQuestions) {
    qx::ui::ScopedScriptedSink sink;
    sink->queueAnswer(true);
    sink->queueAnswer(false);
    EXPECT_EQ(DISPINFO("保存成功", 5), "");
    EXPECT_EQ(DISPINFO("删除吗?", 2), "y");
    EXPECT_EQ(DISPINFO("再删除吗?", 2), "n");
    EXPECT_EQ(sink->texts(), QStringList({"保存成功", "删除吗?", "再删除吗?"}));
    EXPECT_EQ(sink->messages[0].dispKind, 5);
    EXPECT_EQ(sink->messages[1].kind, qx::ui::Message::Kind::Question);
    EXPECT_TRUE(sink->messages[1].answer);
    EXPECT_EQ(sink->unexpectedQuestions, 0);
    EXPECT_EQ(DISPINFO("没有准备答案?", 2), "n");
    EXPECT_EQ(sink->unexpectedQuestions, 1);
}

TEST(FrameworkMessages, GuardSwallowsAbortAndReportsErrors) {
    qx::ui::ScopedScriptedSink sink;
    EXPECT_FALSE(qx::guard([] { Abort(); }));
    EXPECT_TRUE(sink->messages.empty());
    EXPECT_FALSE(qx::guard([] { throw EDatabaseError("库存不足支持本次出库业务"); }));
    EXPECT_FALSE(qx::guard([] { throw qx::db::Error("no such table: d9999"); }));
    EXPECT_EQ(sink->errors(), QStringList({"库存不足支持本次出库业务", "no such table: d9999"}));
    EXPECT_TRUE(qx::guard([] {}));
}

class FrameworkCheckTextTest : public ::testing::Test {
protected:
    qx::ui::ScopedScriptedSink sink;
    QLineEdit edit;
};

TEST_F(FrameworkCheckTextTest, AcceptsAPlainCode) {
    edit.setText("K01-2");
    EXPECT_NO_THROW(CheckText(&edit, "款号"));
    EXPECT_TRUE(sink->messages.empty());
}

TEST_F(FrameworkCheckTextTest, RefusesSingleQuotes) {
    edit.setText("K0'1");
    EXPECT_THROW(CheckText(&edit, "款号"), EAbort);
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_TRUE(sink->texts()[0].startsWith("款号"));
    EXPECT_TRUE(sink->texts()[0].contains("引号"));
}

TEST_F(FrameworkCheckTextTest, RefusesDoubleQuotes) {
    edit.setText("K\"01");
    EXPECT_THROW(CheckText(&edit, "进货单号"), EAbort);
    EXPECT_TRUE(sink->texts()[0].startsWith("进货单号"));
}

TEST_F(FrameworkCheckTextTest, RefusesControlCharacters) {
    edit.setText(QString("K01") + QChar(0x07));
    EXPECT_THROW(CheckText(&edit, "款号"), EAbort);
    EXPECT_TRUE(sink->texts()[0].contains("控制字符"));
}

TEST_F(FrameworkCheckTextTest, RefusesBlanksInACode) {
    edit.setText("K 01");
    EXPECT_THROW(CheckText(&edit, "款号"), EAbort);
    EXPECT_TRUE(sink->texts()[0].contains("空格"));
    sink->clear();
    edit.setText(" K01");
    EXPECT_THROW(CheckBlankInstr(&edit, "款号"), EAbort);
    EXPECT_EQ(sink->texts().size(), 1);
}

TEST(FrameworkHelpers, BoltosAndNumbers) {
    EXPECT_EQ(boltos(true), "True");
    EXPECT_EQ(boltos(false), "False");
    EXPECT_EQ(FloatToStr(50), "50");
    EXPECT_EQ(FloatToStr(45.5), "45.5");
    EXPECT_EQ(FloatToStr(0.1 + 0.2), "0.3");
    EXPECT_EQ(FloatToStr(-3), "-3");
    qx::ui::ScopedScriptedSink sink;
    EXPECT_THROW(StrToFloat("abc"), EAbort);
    EXPECT_EQ(sink->texts().size(), 1);
}

class FrameworkDataOps : public ::testing::Test {
protected:
    void SetUp() override {
        db = std::make_shared<qx::test::FakeDatabase>();
        qx::dataop::setDatabase(db);
        qx::dataop::setObserver([this](const Call& c) { calls.push_back(c); });
    }
    void TearDown() override {
        qx::dataop::setObserver({});
        qx::dataop::setDatabase(nullptr);
    }
    std::shared_ptr<qx::test::FakeDatabase> db;
    std::vector<Call> calls;
};

TEST_F(FrameworkDataOps, ObserverRecordsTheExactTexts) {
    db->answer("FROM d8101", qx::test::table({"NOID"}, {{std::string("D1")}}));
    TClientDataSet ds;
    opensql(&ds, "201", "SELECT NOID FROM d8101 WHERE NOID='D1'", 0, 0, {}, {}, false, "1");
    EXPECT_EQ(ExecSql("201", "D1", "Edit", "delete from  d8101A WHERE NOID='D1';", 65535, false, true, false, true), "Y");
    EXPECT_EQ(GetNOID("201", "", 0), "N1");
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].kind, Call::Kind::OpenSql);
    EXPECT_EQ(calls[0].funcNo, "201");
    EXPECT_EQ(calls[0].sql, "SELECT NOID FROM d8101 WHERE NOID='D1'");
    EXPECT_EQ(calls[1].kind, Call::Kind::ExecSql);
    EXPECT_EQ(calls[1].sql, "delete from  d8101A WHERE NOID='D1';");
    EXPECT_EQ(calls[1].noid, "D1");
    EXPECT_EQ(calls[1].mode, "Edit");
    EXPECT_EQ(calls[2].kind, Call::Kind::GetNOID);
    EXPECT_EQ(ds.FieldByName("NOID")->AsString(), "D1");
    EXPECT_EQ(db->executed, std::vector<std::string>{"delete from  d8101A WHERE NOID='D1';"});
}

TEST_F(FrameworkDataOps, DatabaseErrorsBecomeDatabaseExceptions) {
    db->failExecute = true;
    try {
        ExecSql("201", "D1", "Add", "INSERT INTO X VALUES (1);", 65535, false, true, false, true);
        FAIL() << "no error";
    } catch (const EDatabaseError& e) {
        EXPECT_EQ(e.Message(), "forced failure");
        EXPECT_EQ(e.Statement(), "INSERT INTO X VALUES (1);");
    }
}

TEST_F(FrameworkDataOps, MaintenanceBatchesAreRecognisedFromFunctionAndMode) {
    ExecSql("201", "D1", "Add", "x", 65535, false, true, false, true);
    ExecSql("932", "", "", "x", 0, false, true, true, true);
    ExecSql("243", "", qx::dataop::MaintenanceMode::ClearDocuments, "x", 65535, false, true, false, true);
    ExecSql("342", "342", "E", "x", 65535, false, true, false, true);
    EXPECT_EQ(db->maintenance, (std::vector<bool>{false, true, true, false}));
    EXPECT_FALSE(qx::dataop::isMaintenanceBatch("242", "Edit"));
    EXPECT_FALSE(qx::dataop::isMaintenanceBatch("342", "BalanceRepair")) << "the balance repair runs guarded";
}

TEST(FrameworkDataOpsWithoutDatabase, ReportsThatNoneIsOpen) {
    qx::dataop::setDatabase(nullptr);
    TClientDataSet ds;
    EXPECT_THROW(opensql(&ds, "201", "SELECT 1", 0, 0, {}, {}, false, "1"), EDatabaseError);
}

TEST(FrameworkSettings, DialogOptionsRoundTripInTheCompanyIni) {
    QTemporaryDir dir;
    qx::settings::setProgramFolder(dir.path());
    G_CoName = "示范服装店";
    EXPECT_EQ(qx::settings::dialogOptionsFile(), dir.filePath("示范服装店.ini"));
    {
        qx::settings::DialogOptions options(QString("QXCK255F"));
        options.save("KH_ID", "G001");
        options.save("ShowCost", true);
    }
    qx::settings::DialogOptions again(QString("QXCK255F"));
    EXPECT_EQ(again.load("KH_ID").toString(), "G001");
    EXPECT_TRUE(again.load("ShowCost").toBool());
    EXPECT_EQ(again.load("missing", 7).toInt(), 7);
    EXPECT_TRUE(QFile::exists(dir.filePath("示范服装店.ini")));
    ResetGlobals();
    qx::settings::setProgramFolder({});
}

TEST(FrameworkSettings, ControlsAreSavedAndRestoredByName) {
    QTemporaryDir dir;
    qx::settings::setProgramFolder(dir.path());
    QWidget dialog;
    dialog.setObjectName("Filter");
    auto* edit = new QLineEdit(&dialog);
    edit->setObjectName("CK_ID");
    edit->setText("01");
    qx::settings::saveControls(&dialog, {"CK_ID"});
    edit->clear();
    qx::settings::loadControls(&dialog, {"CK_ID"});
    EXPECT_EQ(edit->text(), "01");
    EXPECT_EQ(qx::settings::programFile("VARDO.DLL"), dir.filePath("VARDO.DLL"));
    qx::settings::setProgramFolder({});
}

}  // namespace
