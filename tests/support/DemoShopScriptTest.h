#pragma once
// A demo shop in a temporary folder with the host's main window over it, driven by the headless
// script runner: run() executes script lines (the test fails when a line fails) and returns
// what the runner printed.
#include <gtest/gtest.h>

#include <QDate>
#include <QTemporaryDir>
#include <memory>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "host/MainWindow.h"
#include "tests/support/RunScript.h"
#include "tests/support/ScreenTestEnvironment.h"

namespace qx::test {

class DemoShopScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        path = dir.filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-29"});
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        environment.install(db, nullptr, QDate(2026, 6, 30), {});
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->resize(1280, 800);
        window->show();
    }
    void TearDown() override {
        window.reset();
        environment.restore();
    }
    QString run(const QString& script) { return runScript(*window, *db, script); }
    QString scalar(const QString& sql) { return scalarOf(*db, sql); }

    QTemporaryDir dir;
    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
    ScreenTestEnvironment environment;
};

}  // namespace qx::test
