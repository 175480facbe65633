// The screens' typical requests on a shop on a PostgreSQL server, as a user runs them: qxck-run
// with the repository's document scripts on the demo shop, once on a file and once on a server;
// both runs print the same lines (grids, footers, messages, questions).
#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "db/tools/DemoData.h"
#include "host/TestEnvironment.h"
#include "support/PostgresServer.h"

namespace {

struct ScriptRun {
    int exitCode = -1;
    QString out;
};

// The script run in `folder` (where a script writes its files).
ScriptRun runScript(const QString& database, const QString& script, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QDir(qx::test::binaryDir()).filePath("bin/qxck-run"),
                  {"--db", database, "--today", "2026-06-30", QDir(qx::test::sourceDir()).filePath(script)});
    EXPECT_TRUE(process.waitForFinished(120000)) << script.toStdString();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError())};
}

// Rows a statement does not order (no ORDER BY, a GROUP BY alone) may come in another order on
// a server, as they may on SQL Server: such a script's output is compared line by line in any
// order, each grid row without its number.
enum class RowOrder { AsPrinted, Any };

std::string comparable(const QString& out, RowOrder order) {
    if (order == RowOrder::AsPrinted) return out.toStdString();
    QStringList lines = out.split('\n');
    static const QRegularExpression rowNumber("^\\d+: ");
    for (QString& line : lines) line.remove(rowNumber);
    lines.sort();
    return lines.join('\n').toStdString();
}

// Each script on the demo shop in a file and on a server (made alike): both runs succeed, print
// at least `lines` lines, and print the same.
void expectTheSameOutput(std::initializer_list<const char*> scripts, int lines, RowOrder order = RowOrder::AsPrinted) {
    QX_REQUIRE_POSTGRES(server);
    QTemporaryDir dir;
    const QString file = dir.filePath("demo.db");
    const QString uri = QString::fromStdString(server->freshDatabase());
    const qx::demo::Options options{.endDate = "2026-06-29"};
    qx::demo::createDemoDatabase(file.toStdString(), options);
    qx::demo::createDemoDatabase(uri.toStdString(), options);
    for (const char* script : scripts) {
        SCOPED_TRACE(script);
        const ScriptRun onFile = runScript(file, script, dir.path());
        const ScriptRun onServer = runScript(uri, script, dir.path());
        EXPECT_EQ(onFile.exitCode, 0) << onFile.out.toStdString();
        EXPECT_EQ(onServer.exitCode, 0) << onServer.out.toStdString();
        EXPECT_GT(onServer.out.count('\n'), lines) << "the script printed what it saw";
        EXPECT_EQ(comparable(onServer.out, order), comparable(onFile.out, order));
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

// The sales reports (a summary by customer and by brand, the detail) and hang tags made from the
// newest purchase receipt (as a PDF) show the same rows on a server as on a file; the summaries
// group without ordering and the receipt's lines come unordered.
TEST(PostgresScripts, SalesReportsAndHangTagsShowTheSameRowsOnAServerAsOnAFile) {
    expectTheSameOutput({"scripts/examples/sales_reports.qxs", "docs/scripts/hang_tags.qxs"}, 400, RowOrder::Any);
}

}  // namespace
