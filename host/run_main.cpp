// qxck-run: runs a script against the stock module without a display.
//   qxck-run --db FILE|postgresql://… [--user ID --password PW] [--approval] [--today DATE] [--trace] [--out FILE]
//   SCRIPT
// The script language is described in ScriptRunner.md. Exit code 0 when every command ran,
// 1 when one failed (the output says which line and why), 2 when the run could not start.
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QTextStream>
#include <cstdio>

#include "db/Database.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "host/MainWindow.h"
#include "host/ModuleLoader.h"
#include "host/ScriptRunner.h"
#include "host/Session.h"
#include "host/Startup.h"

namespace {

// The offscreen platform warns about every window feature it lacks; none of it concerns a script.
void quietPlatformNotes(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && (message.startsWith("This plugin does not support") ||
                                 message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return;
    std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, message).toUtf8().constData());
}

int fail(const QString& message) {
    std::fprintf(stderr, "qxck-run: %s\n", message.toUtf8().constData());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    // No display needed: the offscreen platform, unless the caller chose one.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietPlatformNotes);
    QApplication app(argc, argv);
    QApplication::setApplicationName("qxck-run");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Runs a QX_CK script (see ScriptRunner.md) on a shop database.");
    parser.addHelpOption();
    parser.addOption({"db", "The shop database: an SQLite file or a PostgreSQL URI (postgresql://user@host:port/shop).", "file"});
    parser.addOption({"user", "Sign in as this user before the script runs.", "id"});
    parser.addOption({"password", "The user's password.", "password"});
    parser.addOption({"approval", "Documents need approval (new documents wait with T=0)."});
    parser.addOption({"today", "The day the screens take as today (YYYY-MM-DD).", "date"});
    parser.addOption({"trace", "Echo every command before it runs."});
    parser.addOption({"out", "Write the output to this file instead of standard output.", "file"});
    parser.addPositionalArgument("script", "The script file ('-' reads standard input).");
    parser.process(app);

    if (!parser.isSet("db")) return fail("--db FILE is required");
    if (parser.positionalArguments().size() != 1) return fail("give exactly one script file");

    QFile scriptFile(parser.positionalArguments().first());
    const bool fromStdin = scriptFile.fileName() == "-";
    if (!(fromStdin ? scriptFile.open(stdin, QIODevice::ReadOnly)
                    : scriptFile.open(QIODevice::ReadOnly)))
        return fail(QString("cannot read the script %1").arg(scriptFile.fileName()));
    std::vector<qx::host::ScriptCommand> commands;
    try {
        commands = qx::host::parseScript(QString::fromUtf8(scriptFile.readAll()));
    } catch (const std::exception& e) {
        return fail(QString::fromUtf8(e.what()));
    }

    if (parser.isSet("today")) {
        const QDate today = QDate::fromString(parser.value("today"), Qt::ISODate);
        if (!today.isValid())
            return fail(
                QString("--today %1 is not a date (YYYY-MM-DD)").arg(parser.value("today")));
        qx::ui::setToday(today);
    }

    std::shared_ptr<qx::db::Database> db;
    try {
        db = qx::host::openShopDatabase(parser.value("db"), false);
    } catch (const std::exception& e) {
        return fail(QString::fromUtf8(e.what()));
    }
    qx::dataop::setDatabase(db);

    qx::host::ModuleLoader module;
    if (!module.load()) return fail(module.error());

    QFile outFile;
    if (parser.isSet("out")) {
        outFile.setFileName(parser.value("out"));
        if (!outFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return fail(QString("cannot write %1").arg(outFile.fileName()));
    } else {
        outFile.open(stdout, QIODevice::WriteOnly);
    }
    QTextStream out(&outFile);

    const qx::host::SessionOptions options{.approval = parser.isSet("approval")};
    if (parser.isSet("user")) {
        try {
            if (const auto failure =
                    qx::host::checkLogin(*db, parser.value("user"), parser.value("password")))
                return fail(*failure);
            qx::host::signIn(*db, parser.value("user"), options);
        } catch (const std::exception& e) {
            return fail(QString::fromUtf8(e.what()));
        }
    }

    int rc = 0;
    {
        qx::host::MainWindow window(module.entry(), parser.value("db"));
        window.show();
        qx::host::ScriptRunner runner(window, *db, out);
        runner.setSessionOptions(options);
        runner.setTrace(parser.isSet("trace"));
        rc = runner.run(std::move(commands));
    }
    out.flush();
    qx::dataop::setDatabase(nullptr);
    return rc;
}
