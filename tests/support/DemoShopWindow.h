#pragma once
// The demo shop opened in the host's main window, for tests that drive the module the way a
// user or a script does: a fresh demo database in a folder, the data operations on it, "today"
// fixed, the main window shown; everything put back when the object goes.
//
//   qx::test::DemoShopWindow shop(dir.path());
//   const QString output = shop.run("login admin admin\nopen 299\n");
//   EXPECT_EQ(shop.scalar("SELECT COUNT(*) FROM d1805"), "20");
#include <QDate>
#include <QDir>
#include <QString>
#include <gtest/gtest.h>
#include <memory>

#include "db/Database.h"
#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_glo.h"
#include "host/MainWindow.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/RunScript.h"

namespace qx::test {

class DemoShopWindow {
public:
    explicit DemoShopWindow(const QString& folder, const char* endDate = "2026-06-29",
                            const QDate& today = QDate(2026, 6, 30))
        : path(QDir(folder).filePath("demo.db")) {
        ResetGlobals();
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = endDate});
        qx::ui::setToday(today);
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        qx::dataop::setDatabase(db);
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->resize(1280, 800);
        window->show();
    }
    ~DemoShopWindow() {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        qx::ui::setToday(QDate());
        ResetGlobals();
    }
    DemoShopWindow(const DemoShopWindow&) = delete;
    DemoShopWindow& operator=(const DemoShopWindow&) = delete;

    QString run(const QString& script) { return runScript(*window, *db, script); }
    QString scalar(const QString& sql) { return scalarText(*db, sql); }

    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
};

}  // namespace qx::test
