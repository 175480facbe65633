#pragma once
// A demo shop (qxck-demo, ending 2026-06-29, today 2026-06-30) in a temporary file, the host's
// main window on it, and scripts run through the headless script runner as qxck-run runs them.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTextStream>
#include <memory>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "host/MainWindow.h"
#include "host/ScriptRunner.h"
#include "tests/support/ScreenTestEnvironment.h"

namespace qx::test {

class DemoShopScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        path = dir.filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-29"});
        qx::ui::setToday(QDate(2026, 6, 30));
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        SeedShop(*db);
        qx::dataop::setDatabase(db);
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->resize(1280, 800);
        window->show();
    }
    void TearDown() override {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        qx::ui::setToday(QDate());
        ResetGlobals();
    }

    // What a test adds to the demo shop before the host opens it.
    virtual void SeedShop(qx::db::Database&) {}

    // Runs a script; its exit code goes to `rc`, the runner's output is returned.
    QString run(const QString& script, int& rc) {
        QString output;
        QTextStream out(&output);
        qx::host::ScriptRunner runner(*window, *db, out);
        rc = runner.run(qx::host::parseScript(script));
        out.flush();
        return output;
    }

    // Runs a script that must succeed (the test fails when a line failed); the runner's output.
    QString runOk(const QString& script) {
        int rc = 0;
        const QString output = run(script, rc);
        EXPECT_EQ(rc, 0) << output.toStdString();
        return output;
    }

    // The first column of the first row as text ("" when there is none).
    QString scalar(const QString& sql) { return scalarOf(*db, sql); }

    QTemporaryDir dir;
    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
};

}  // namespace qx::test
