// The screens' typical requests on a shop on a PostgreSQL server, as a user runs them: qxck-run
// with the repository's document scripts on the demo shop, once on a file and once on a server;
// both runs print the same lines (grids, footers, messages, questions).
#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include "db/tools/DemoData.h"
#include "host/TestEnvironment.h"
#include "support/PostgresServer.h"

namespace {

struct ScriptRun {
    int exitCode = -1;
    QString out;
};

ScriptRun runScript(const QString& database, const QString& script) {
    QProcess process;
    process.start(QDir(qx::test::binaryDir()).filePath("bin/qxck-run"),
                  {"--db", database, "--today", "2026-06-30", QDir(qx::test::sourceDir()).filePath(script)});
    EXPECT_TRUE(process.waitForFinished(120000)) << script.toStdString();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError())};
}

// Each script on the demo shop in a file and on a server (made alike): both runs succeed, print
// at least `lines` lines, and print the same.
void expectTheSameOutput(std::initializer_list<const char*> scripts, int lines) {
    QX_REQUIRE_POSTGRES(server);
    QTemporaryDir dir;
    const QString file = dir.filePath("demo.db");
    const QString uri = QString::fromStdString(server->freshDatabase());
    const qx::demo::Options options{.endDate = "2026-06-29"};
    qx::demo::createDemoDatabase(file.toStdString(), options);
    qx::demo::createDemoDatabase(uri.toStdString(), options);
    for (const char* script : scripts) {
        SCOPED_TRACE(script);
        const ScriptRun onFile = runScript(file, script);
        const ScriptRun onServer = runScript(uri, script);
        EXPECT_EQ(onFile.exitCode, 0) << onFile.out.toStdString();
        EXPECT_EQ(onServer.exitCode, 0) << onServer.out.toStdString();
        EXPECT_GT(onServer.out.count('\n'), lines) << "the script printed what it saw";
        EXPECT_EQ(onServer.out.toStdString(), onFile.out.toStdString());
    }
}

TEST(PostgresScripts, DocumentScriptsPrintTheSameOnAServerAsOnAFile) {
    expectTheSameOutput({"host/scripts/sales_ticket.qxs", "host/scripts/sales_return.qxs", "host/scripts/purchase_return.qxs",
                         "documents/transfer/transfer-arrival.qxs"},
                        5);
}

// The stock reports (the stock query and its drill-down, the stock distribution's cross-tab, the
// movement classification, summary and detail through SYS_ZM) and the month-end close (balance
// check, cost recalculation, close with its snapshot, the next month's summary with cost amounts
// read from it, reopen) print the same on a server as on a file.
TEST(PostgresScripts, StockReportsAndTheMonthEndClosePrintTheSameOnAServerAsOnAFile) {
    expectTheSameOutput({"scripts/examples/stock_reports.qxs", "scripts/examples/month_end.qxs"}, 1000);
}

}  // namespace
