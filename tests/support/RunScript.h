#pragma once
// Runs lines of the script runner's language against a host window and its database; the
// calling test fails when a line failed. Returns what the runner printed.
#include <gtest/gtest.h>

#include <QString>
#include <QTextStream>

#include "host/MainWindow.h"
#include "host/ScriptRunner.h"

namespace qx::test {

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
