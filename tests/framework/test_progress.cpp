// The progress window of long runs: it shows only after its delay, and cancel stops the
// running statement, rolls back its batch and ends the action silently.
#include <gtest/gtest.h>

#include <QApplication>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTimer>

#include "db/Database.h"
#include "db/Interrupt.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "support/CancelledProgress.h"

namespace {

// a billion rows: runs far longer than any test
const char* const kLong = "SELECT count(*) FROM k a, k b, k c";

class ProgressTest : public ::testing::Test {
protected:
    void SetUp() override {
        db = qx::db::openSqlite(dir.filePath("p.db").toStdString(), true);
        std::string batch = "CREATE TABLE k (x INT);";
        for (int i = 0; i < 1000; ++i) batch += "INSERT INTO k VALUES (" + std::to_string(i) + ");";
        db->execute(batch);
    }
    void TearDown() override { TProgressRun::SetShowDelay(1000); }
    QTemporaryDir dir;
    std::unique_ptr<qx::db::Database> db;
};

TEST_F(ProgressTest, AShortRunShowsNothing) {
    TProgressRun::SetShowDelay(60000);
    TProgressRun progress(nullptr, "正在查询…");
    db->open("SELECT 1");
    EXPECT_EQ(progress.Dialog(), nullptr);
    EXPECT_TRUE(progress.Step());
}

TEST_F(ProgressTest, CancelStopsTheStatementAndRollsBackItsBatch) {
    qx::ui::ScopedScriptedSink sink;
    bool ended = false;
    qx::test::CancelledProgress user;  // presses "取消" once the window is up
    const bool completed = qx::guard([&] {
        TProgressRun::Run(nullptr, "正在查询…", [&] {
            db->execute(std::string("CREATE TABLE t (x INT); INSERT INTO t VALUES (1); ") + kLong);
            ended = true;
        });
    });
    EXPECT_FALSE(completed) << "the action ends";
    EXPECT_FALSE(ended);
    EXPECT_TRUE(sink->errors().isEmpty()) << "a cancel is no error: " << sink->errors().join("\n").toStdString();
    EXPECT_THROW(db->open("SELECT x FROM t"), qx::db::Error) << "the batch was rolled back";
    EXPECT_FALSE(qx::db::interruptRequested()) << "the check is gone with the run";
}

TEST_F(ProgressTest, StepReportsCancel) {
    TProgressRun::SetShowDelay(0);
    TProgressRun progress(nullptr, "正在汇总…");
    EXPECT_TRUE(progress.Step(1, 10));
    ASSERT_NE(progress.Dialog(), nullptr);
    EXPECT_EQ(progress.Dialog()->labelText(), "正在汇总…");
    progress.Dialog()->cancel();
    EXPECT_FALSE(progress.Step(2, 10));
    EXPECT_TRUE(progress.Cancelled());
}

}  // namespace
