#pragma once
// Runs a line-based script against the real module, on whatever platform Qt runs (the runner
// program uses the offscreen one): sign in, open function codes through QXProc2, drive the
// screens' controls by objectName, and dump grids, messages and the statements sent.
// The language is described in host/ScriptRunner.md.
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTextStream>
#include <memory>
#include <vector>

#include "framework/GridExport.h"
#include "framework/U_dataop.h"
#include "host/Session.h"

class QTimer;
class QWidget;
class TDBGridEh;

namespace qx::db {
class Database;
}
namespace qx::ui {
class ScriptedMessageSink;
class MessageSink;
}  // namespace qx::ui

namespace qx::host {

class MainWindow;

struct ScriptCommand {
    int line = 0;
    QStringList words;  // the verb first
};

// Splits one line into words: blanks separate, "double quotes" group (\" and \\ inside).
// Throws std::invalid_argument on an unterminated quote.
QStringList splitScriptLine(const QString& line);
// The commands of a script; blank lines and lines starting with # are skipped.
std::vector<ScriptCommand> parseScript(const QString& text);

class ScriptRunner : public QObject {
    Q_OBJECT
public:
    ScriptRunner(MainWindow& mainWindow, qx::db::Database& db, QTextStream& out);
    ~ScriptRunner() override;

    // Runs the commands in the application's event loop (modal dialogs opened by a command are
    // driven by the commands after it) and returns 0, or 1 when a command failed.
    int run(std::vector<ScriptCommand> commands);
    // How `login` signs in (approval mode).
    void setSessionOptions(const SessionOptions& options) { options_ = options; }
    // Echo every command to standard error before it runs ("> LINE: command").
    void setTrace(bool on) { trace_ = on; }

private:
    void tick();
    void execute(const ScriptCommand& command);
    void finish(int code);
    [[noreturn]] void fail(const QString& message) const;

    // --- what commands work on
    QWidget* currentScreen() const;
    QObject* findObject(const QString& name) const;
    QWidget* findControl(const QString& name) const;
    TDBGridEh* currentGrid() const;

    // --- commands
    void login(const QStringList& args);
    void open(const QStringList& args);
    void selectScreen(const QStringList& args);
    void setText(const QStringList& args);
    void setChecked(const QStringList& args, bool checked);
    void click(const QStringList& args);
    void key(const QStringList& args);
    void doubleClick(const QStringList& args);
    void answer(const QStringList& args);
    void selectGrid(const QStringList& args);
    void gridCommand(const QString& verb, const QStringList& args);
    void dump(const QStringList& args);
    void dumpGrid(TDBGridEh* grid);
    void dumpMessages();
    void dumpSql();
    void dumpControls();
    void screenshot(const QStringList& args);
    void exportGrid(const QStringList& args);
    void saveChart(const QStringList& args);
    void wait(const QStringList& args);
    void expect(const QStringList& args);
    void closeScreen();

    MainWindow& main_;
    qx::db::Database& db_;
    QTextStream& out_;
    std::shared_ptr<qx::ui::ScriptedMessageSink> sink_;
    std::shared_ptr<qx::ui::MessageSink> previousSink_;
    std::vector<qx::dataop::Call> calls_;
    qx::grid::DialogHandler previousDialogs_;
    size_t messagesShown_ = 0;
    size_t callsShown_ = 0;
    size_t unansweredReported_ = 0;

    std::vector<ScriptCommand> commands_;
    size_t next_ = 0;
    int currentLine_ = 0;
    QTimer* ticker_ = nullptr;
    std::vector<QWidget*> modalAtStart_;  // per running command: the modal widget when it began
    int exitCode_ = 0;
    bool finished_ = false;
    bool waiting_ = false;
    QPointer<QWidget> selectedScreen_;
    QPointer<TDBGridEh> selectedGrid_;
    SessionOptions options_;
    bool trace_ = false;
};

}  // namespace qx::host
