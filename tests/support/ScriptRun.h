#pragma once
// Runs script lines through the host's headless script runner on an open main window.
//
//   const QString output = qx::test::runScript(*window, *db, "login admin admin\nopen 299\n");
#include <QString>
#include <QTextStream>
#include <gtest/gtest.h>

#include "host/MainWindow.h"
#include "host/ScriptRunner.h"

namespace qx::test {

// The runner's output; the calling test fails when a line failed.
inline QString runScript(qx::host::MainWindow& window, qx::db::Database& db, const QString& script) {
    QString output;
    QTextStream out(&output);
    qx::host::ScriptRunner runner(window, db, out);
    const int rc = runner.run(qx::host::parseScript(script));
    out.flush();
    EXPECT_EQ(rc, 0) << output.toStdString();
    return output;
}

}  // namespace qx::test
