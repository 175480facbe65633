#include "host/ScriptRunner.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDir>
#include <QDoubleSpinBox>
#include <QEventLoop>
#include <QFileInfo>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "db/Database.h"
#include "framework/ChartPane.h"
#include "framework/DBGridEh.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/DataSet.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "host/MainWindow.h"
#include "host/Session.h"

namespace qx::host {
namespace {

// A command that cannot go on: reported with its line, ends the script with exit code 1.
struct ScriptError : std::runtime_error {
    explicit ScriptError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

void requireArgs(const QStringList& args, int min, int max, const char* usage) {
    if (args.size() < min || args.size() > max)
        throw ScriptError(QString("usage: %1").arg(QString::fromUtf8(usage)));
}

QString describe(const QObject* object) {
    return QString("%1 (%2)").arg(object->objectName(), object->metaObject()->className());
}

QString oneLine(QString text) {
    text.replace("\r\n", "\\n").replace('\n', "\\n").replace('\r', "\\n");
    return text;
}

// Types text into a widget key by key, as a keyboard (or an input method) would: each
// character arrives as a key press carrying its text, so any script is fine, not only ASCII.
void typeText(QWidget* widget, const QString& text) {
    for (const uint codePoint : text.toUcs4()) {
        const QString character =
            QString::fromUcs4(reinterpret_cast<const char32_t*>(&codePoint), 1);
        const int key = codePoint < 0x80 ? QKeySequence(character)[0].key() : Qt::Key_unknown;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, character);
        QApplication::sendEvent(widget, &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, character);
        QApplication::sendEvent(widget, &release);
    }
}

// The text a control shows (for expect and dump controls).
QString controlText(QObject* object) {
    if (auto* w = qobject_cast<QWidget*>(object); w && !qobject_cast<TDBGridEh*>(w))
        return ControlText(object);
    return {};
}

}  // namespace

QStringList splitScriptLine(const QString& line) {
    QStringList words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (quoted) {
            if (c == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\')) {
                word += line[++i];
            } else if (c == '"') {
                quoted = false;
            } else {
                word += c;
            }
        } else if (c == '"') {
            quoted = true;
            inWord = true;
        } else if (c.isSpace()) {
            if (inWord) words << word;
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted) throw std::invalid_argument("unterminated quote");
    if (inWord) words << word;
    return words;
}

std::vector<ScriptCommand> parseScript(const QString& text) {
    std::vector<ScriptCommand> commands;
    const QStringList lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString trimmed = lines[i].trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith('#')) continue;
        try {
            commands.push_back({i + 1, splitScriptLine(trimmed)});
        } catch (const std::invalid_argument& e) {
            throw std::invalid_argument("line " + std::to_string(i + 1) + ": " + e.what());
        }
    }
    return commands;
}

ScriptRunner::ScriptRunner(MainWindow& mainWindow, qx::db::Database& db, QTextStream& out)
    : main_(mainWindow), db_(db), out_(out) {
    sink_ = std::make_shared<qx::ui::ScriptedMessageSink>();
    previousSink_ = qx::ui::setMessageSink(sink_);
    qx::dataop::setObserver([this](const qx::dataop::Call& call) { calls_.push_back(call); });
    // Print, preview and file dialogs never open headless: printing is reported, file choosers
    // are cancelled (`export` and `chart` write files).
    previousDialogs_ = qx::grid::setDialogHandler(
        [this](qx::grid::Dialog dialog, const TDBGridEh*, const QString& title, const qx::grid::PrintOptions& options) {
            if (dialog == qx::grid::Dialog::Print || dialog == qx::grid::Dialog::Preview) {
                out_ << (dialog == qx::grid::Dialog::Print ? "print " : "preview ") << title;
                if (!options.condition.isEmpty()) out_ << " | " << options.condition;
                if (options.lastPage) out_ << " | with chart";
                out_ << "\n";
            } else {
                out_ << "file dialog cancelled (use export FILE or chart FILE.png)\n";
            }
            return QString();
        });
}

ScriptRunner::~ScriptRunner() {
    qx::grid::setDialogHandler(previousDialogs_);
    qx::dataop::setObserver({});
    qx::ui::setMessageSink(previousSink_);
}

int ScriptRunner::run(std::vector<ScriptCommand> commands) {
    commands_ = std::move(commands);
    next_ = 0;
    finished_ = false;
    exitCode_ = 0;
    ticker_ = new QTimer(this);
    ticker_->setInterval(1);
    connect(ticker_, &QTimer::timeout, this, &ScriptRunner::tick);
    ticker_->start();
    while (!finished_)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    // Dialogs the script left open are closed, so the commands blocked in them can return.
    for (int guardCount = 0; guardCount < 20 && !modalAtStart_.empty(); ++guardCount)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    ticker_->stop();
    out_.flush();
    return exitCode_;
}

void ScriptRunner::tick() {
    if (finished_ || waiting_) return;
    // A command still running is blocked in a nested event loop. Go on only when that loop is a
    // modal dialog it opened: the commands after it drive that dialog.
    if (!modalAtStart_.empty() && QApplication::activeModalWidget() == modalAtStart_.back()) return;
    if (next_ >= commands_.size()) {
        finish(0);
        return;
    }
    const ScriptCommand& command = commands_[next_++];
    modalAtStart_.push_back(QApplication::activeModalWidget());
    if (trace_) {
        // To standard error, at once: a command that hangs is the last one shown.
        std::fprintf(stderr, "> %d: %s\n", command.line,
                     command.words.join(' ').toUtf8().constData());
    }
    // Qt does not re-enter a timer while its timeout runs: a command that blocks in a dialog's
    // event loop needs a timer of its own to drive the lines after it.
    QTimer nestedTicker;
    nestedTicker.setInterval(1);
    connect(&nestedTicker, &QTimer::timeout, this, &ScriptRunner::tick);
    nestedTicker.start();
    try {
        execute(command);
    } catch (const std::exception& e) {
        out_ << "error at line " << command.line << " (" << command.words.join(' ')
             << "): " << QString::fromUtf8(e.what()) << "\n";
        finish(1);
    }
    nestedTicker.stop();
    modalAtStart_.pop_back();
}

void ScriptRunner::finish(int code) {
    if (finished_) return;
    finished_ = true;
    exitCode_ = code;
    ticker_->stop();
    out_.flush();
    // Dialogs still open hold commands blocked in their event loops: close them, innermost first.
    QMetaObject::invokeMethod(
        this,
        [] {
            for (int i = 0; i < 20; ++i) {
                QWidget* modal = QApplication::activeModalWidget();
                if (!modal) break;
                if (auto* dialog = qobject_cast<QDialog*>(modal))
                    dialog->reject();
                else
                    modal->close();
            }
        },
        Qt::QueuedConnection);
}

void ScriptRunner::fail(const QString& message) const {
    throw ScriptError(message);
}

void ScriptRunner::execute(const ScriptCommand& command) {
    currentLine_ = command.line;
    const QString verb = command.words.value(0).toLower();
    const QStringList args = command.words.mid(1);
    if (verb == "login")
        login(args);
    else if (verb == "open")
        open(args);
    else if (verb == "screen")
        selectScreen(args);
    else if (verb == "set")
        setText(args);
    else if (verb == "check")
        setChecked(args, true);
    else if (verb == "uncheck")
        setChecked(args, false);
    else if (verb == "click")
        click(args);
    else if (verb == "key")
        key(args);
    else if (verb == "dblclick")
        doubleClick(args);
    else if (verb == "answer")
        answer(args);
    else if (verb == "grid")
        selectGrid(args);
    else if (verb == "row" || verb == "locate" || verb == "append" || verb == "insert" ||
             verb == "edit" || verb == "cell" || verb == "post" || verb == "cancel" ||
             verb == "delete")
        gridCommand(verb, args);
    else if (verb == "dump")
        dump(args);
    else if (verb == "screenshot")
        screenshot(args);
    else if (verb == "export")
        exportGrid(args);
    else if (verb == "chart")
        saveChart(args);
    else if (verb == "wait")
        wait(args);
    else if (verb == "expect")
        expect(args);
    else if (verb == "close")
        closeScreen();
    else if (verb == "echo")
        out_ << args.join(' ') << "\n";
    else
        fail(QString("unknown command '%1'").arg(command.words.value(0)));
}

// --- what commands work on ----------------------------------------------------------------

QWidget* ScriptRunner::currentScreen() const {
    // A modal dialog has the user's attention: commands go to it.
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (selectedScreen_) return selectedScreen_;
    QWidget* tab = main_.tabs()->currentWidget();
    if (tab && tab->objectName() != "HomePage") return tab;
    return &main_;
}

// Whether an object belongs to the screen itself rather than to a window of its own inside it
// (a pick list or a filter dialog the screen keeps as a child).
static bool belongsTo(const QObject* object, const QWidget* screen) {
    for (const QObject* o = object; o && o != screen; o = o->parent()) {
        const auto* w = qobject_cast<const QWidget*>(o);
        if (w && w != object && w->isWindow()) return false;
    }
    return true;
}

QObject* ScriptRunner::findObject(const QString& name) const {
    QWidget* screen = currentScreen();
    if (screen->objectName() == name) return screen;
    const auto found = screen->findChildren<QObject*>(name);
    for (QObject* object : found)
        if (belongsTo(object, screen)) return object;
    if (!found.isEmpty()) return found.first();
    // Menu actions and the main window's own widgets.
    if (QObject* found = main_.findChild<QObject*>(name)) return found;
    return nullptr;
}

QWidget* ScriptRunner::findControl(const QString& name) const {
    QObject* object = findObject(name);
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget)
        fail(QString("no control '%1' on %2 (try: dump controls)")
                 .arg(name, describe(currentScreen())));
    return widget;
}

TDBGridEh* ScriptRunner::currentGrid() const {
    QWidget* screen = currentScreen();
    if (selectedGrid_ && screen->isAncestorOf(selectedGrid_)) return selectedGrid_;
    // The grid that has the focus, else the screen's first grid.
    QList<TDBGridEh*> grids;
    for (TDBGridEh* grid : screen->findChildren<TDBGridEh*>())
        if (belongsTo(grid, screen)) grids << grid;
    for (TDBGridEh* grid : grids)
        if (grid->hasFocus()) return grid;
    if (grids.isEmpty()) fail(QString("no grid on %1").arg(describe(screen)));
    return grids.first();
}

// --- commands -------------------------------------------------------------------------------

void ScriptRunner::login(const QStringList& args) {
    requireArgs(args, 1, 2, "login USER [PASSWORD]");
    if (const auto failure = checkLogin(db_, args[0], args.value(1))) fail(*failure);
    signIn(db_, args[0], options_);
    main_.refreshSession();
    out_ << "signed in as " << G_UserId << " " << G_UserName << "\n";
}

void ScriptRunner::open(const QStringList& args) {
    requireArgs(args, 1, 1, "open CODE");
    bool ok = false;
    const int code = args[0].toInt(&ok);
    if (!ok) fail(QString("'%1' is not a function code").arg(args[0]));
    if (G_UserId.isEmpty()) fail("not signed in (login USER PASSWORD first)");
    selectedScreen_ = nullptr;
    selectedGrid_ = nullptr;
    main_.openFunction(code);
}

void ScriptRunner::selectScreen(const QStringList& args) {
    requireArgs(args, 1, 1, "screen NAME");
    const QString name = args[0];
    QList<QWidget*> candidates = main_.screens();
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible()) candidates << top;
    for (QWidget* w : candidates) {
        if (w->objectName() == name || w->windowTitle() == name ||
            QString(w->metaObject()->className()) == name) {
            selectedScreen_ = w;
            selectedGrid_ = nullptr;
            if (const int index = main_.tabs()->indexOf(w); index >= 0)
                main_.tabs()->setCurrentIndex(index);
            return;
        }
    }
    fail(QString("no open screen '%1'").arg(name));
}

void ScriptRunner::setText(const QStringList& args) {
    requireArgs(args, 2, 2, "set CONTROL TEXT");
    QWidget* control = findControl(args[0]);
    const QString text = args[1];
    if (!control->isEnabled()) fail(QString("%1 is disabled").arg(describe(control)));
    if (auto* date = qobject_cast<QDateTimeEdit*>(control)) {
        // TDateEdit takes "YYYY-MM-DD" through its text property; plain date edits parse it.
        if (date->metaObject()->indexOfProperty("text") >= 0) {
            date->setProperty("text", text);
        } else {
            const QDate d = QDate::fromString(text.left(10), Qt::ISODate);
            if (!d.isValid()) fail(QString("'%1' is not a date (YYYY-MM-DD)").arg(text));
            date->setDate(d);
        }
    } else if (auto* edit = qobject_cast<QLineEdit*>(control)) {
        // Typed like a user: replaces the text, then leaves the field (exit handlers run).
        if (edit->isReadOnly()) fail(QString("%1 is read-only").arg(describe(control)));
        edit->setFocus();
        edit->selectAll();
        if (text.isEmpty())
            QTest::keyClick(edit, Qt::Key_Delete);
        else
            typeText(edit, text);
        QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(edit, &leave);
    } else if (auto* combo = qobject_cast<QComboBox*>(control)) {
        const int index = combo->findText(text);
        if (index >= 0)
            combo->setCurrentIndex(index);
        else if (combo->isEditable())
            combo->setCurrentText(text);
        else
            fail(QString("%1 has no item '%2'").arg(describe(control), text));
    } else if (auto* spin = qobject_cast<QSpinBox*>(control)) {
        spin->setValue(text.toInt());
    } else if (auto* dspin = qobject_cast<QDoubleSpinBox*>(control)) {
        dspin->setValue(text.toDouble());
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(control)) {
        plain->setPlainText(text);
    } else if (auto* rich = qobject_cast<QTextEdit*>(control)) {
        rich->setPlainText(text);
    } else if (control->metaObject()->indexOfProperty("text") >= 0) {
        control->setProperty("text", text);
    } else {
        fail(QString("%1 takes no text").arg(describe(control)));
    }
}

void ScriptRunner::setChecked(const QStringList& args, bool checked) {
    requireArgs(args, 1, 1, checked ? "check CONTROL" : "uncheck CONTROL");
    QObject* object = findObject(args[0]);
    if (auto* action = qobject_cast<QAction*>(object); action && action->isCheckable()) {
        if (action->isChecked() != checked) action->trigger();
        return;
    }
    auto* button = qobject_cast<QAbstractButton*>(object);
    if (!button || !button->isCheckable())
        fail(QString("no check box or radio button '%1' on %2")
                 .arg(args[0], describe(currentScreen())));
    if (!button->isEnabled()) fail(QString("%1 is disabled").arg(describe(button)));
    if (button->isChecked() != checked) button->click();  // as a user's click: signals run
    if (button->isChecked() != checked)
        fail(QString("%1 cannot be %2").arg(describe(button), checked ? "ticked" : "unticked"));
}

void ScriptRunner::click(const QStringList& args) {
    requireArgs(args, 1, 1, "click BUTTON|ACTION");
    const QString name = args[0];
    QObject* object = findObject(name);
    if (!object) {
        // By caption: a button whose text (without the & mnemonic) is the name.
        for (QAbstractButton* b : currentScreen()->findChildren<QAbstractButton*>())
            if (b->text().remove('&') == name && b->isVisible()) {
                object = b;
                break;
            }
    }
    if (auto* action = qobject_cast<QAction*>(object)) {
        if (!action->isEnabled()) fail(QString("action %1 is disabled").arg(name));
        action->trigger();
    } else if (auto* button = qobject_cast<QAbstractButton*>(object)) {
        if (!button->isEnabled()) fail(QString("%1 is disabled").arg(describe(button)));
        button->click();
    } else {
        fail(QString("no button or action '%1' on %2").arg(name, describe(currentScreen())));
    }
}

void ScriptRunner::key(const QStringList& args) {
    requireArgs(args, 1, 2, "key KEY [CONTROL]");
    const QKeySequence sequence = QKeySequence::fromString(args[0]);
    if (sequence.isEmpty())
        fail(QString("'%1' is not a key (F3, Return, Ctrl+S ...)").arg(args[0]));
    QWidget* target = args.size() > 1 ? findControl(args[1]) : nullptr;
    if (!target) {
        QWidget* screen = currentScreen();
        target = screen->focusWidget() ? screen->focusWidget() : screen;
    }
    const QKeyCombination combination = sequence[0];
    QTest::keyClick(target, combination.key(), combination.keyboardModifiers());
}

// A double click on the current row of the current grid (or of the grid named), as the mouse
// gives it: a report opens its detail of that row.
void ScriptRunner::doubleClick(const QStringList& args) {
    requireArgs(args, 0, 1, "dblclick [GRID]");
    TDBGridEh* grid = args.isEmpty() ? currentGrid() : qobject_cast<TDBGridEh*>(findObject(args[0]));
    if (!grid) fail(QString("no grid '%1' on %2").arg(args.value(0), describe(currentScreen())));
    TClientDataSet* ds = grid->DataSet();
    if (!ds || !ds->Active() || ds->IsEmpty()) fail(QString("grid %1 shows no rows").arg(grid->objectName()));
    QModelIndex index = grid->currentIndex();
    if (!index.isValid() || index.row() != ds->RecNo() - 1) index = grid->model()->index(ds->RecNo() - 1, std::max(0, index.column()));
    grid->scrollTo(index);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, grid->visualRect(index).center());
}

void ScriptRunner::answer(const QStringList& args) {
    requireArgs(args, 1, 20, "answer y|n [y|n ...]");
    for (const QString& a : args) {
        const QString lower = a.toLower();
        if (lower != "y" && lower != "n") fail(QString("answer y or n, not '%1'").arg(a));
        sink_->queueAnswer(lower == "y");
    }
}

void ScriptRunner::selectGrid(const QStringList& args) {
    requireArgs(args, 1, 1, "grid NAME");
    auto* grid = qobject_cast<TDBGridEh*>(findObject(args[0]));
    if (!grid) fail(QString("no grid '%1' on %2").arg(args[0], describe(currentScreen())));
    selectedGrid_ = grid;
    grid->setFocus();
}

void ScriptRunner::gridCommand(const QString& verb, const QStringList& args) {
    TDBGridEh* grid = currentGrid();
    TClientDataSet* ds = grid->DataSet();
    if (!ds) fail(QString("grid %1 shows no data").arg(grid->objectName()));
    if (verb == "row") {
        requireArgs(args, 1, 1, "row N|last");
        const int count = ds->RecordCount();
        const int row = args[0] == "last" ? count : args[0].toInt();
        if (row < 1 || row > count)
            fail(QString("row %1 is not between 1 and %2").arg(args[0]).arg(count));
        qx::guard([&] { ds->SetRecNo(row); });
        return;
    }
    if (verb == "locate") {
        requireArgs(args, 2, 2, "locate FIELD VALUE");
        if (!ds->FindField(args[0]))
            fail(QString("grid %1 has no field '%2'").arg(grid->objectName(), args[0]));
        bool found = false;
        qx::guard([&] { found = ds->Locate(args[0], args[1], loCaseInsensitive); });
        if (!found)
            fail(QString("no row with %1 = %2 in grid %3")
                     .arg(args[0], args[1], grid->objectName()));
        return;
    }
    if (verb == "cell") {
        requireArgs(args, 2, 2, "cell FIELD TEXT");
        TField* field = ds->FindField(args[0]);
        if (!field) fail(QString("grid %1 has no field '%2'").arg(grid->objectName(), args[0]));
        TColumnEh* column = grid->ColumnByField(args[0]);
        if (grid->ReadOnly() || (column && column->ReadOnly) || field->ReadOnly)
            fail(QString("field %1 of grid %2 is read-only").arg(args[0], grid->objectName()));
        // As typing into the cell: the field's text setter (and the screen's handler) runs.
        qx::guard([&] {
            if (ds->State() == dsBrowse) ds->Edit();
            field->SetText(args[1]);
        });
        return;
    }
    requireArgs(args, 0, 0, "append|insert|edit|post|cancel|delete");
    qx::guard([&] {
        if (verb == "append")
            ds->Append();
        else if (verb == "insert")
            ds->Insert();
        else if (verb == "edit")
            ds->Edit();
        else if (verb == "post")
            ds->Post();
        else if (verb == "cancel")
            ds->Cancel();
        else if (verb == "delete")
            ds->Delete();
    });
}

void ScriptRunner::dump(const QStringList& args) {
    requireArgs(args, 1, 2, "dump grid [NAME] | messages | sql | controls");
    const QString what = args[0].toLower();
    if (what == "grid") {
        if (args.size() == 2) {
            auto* grid = qobject_cast<TDBGridEh*>(findObject(args[1]));
            if (!grid) fail(QString("no grid '%1' on %2").arg(args[1], describe(currentScreen())));
            dumpGrid(grid);
        } else {
            dumpGrid(currentGrid());
        }
    } else if (what == "messages") {
        dumpMessages();
    } else if (what == "sql") {
        dumpSql();
    } else if (what == "controls") {
        dumpControls();
    } else {
        fail(QString("dump grid|messages|sql|controls, not '%1'").arg(args[0]));
    }
}

void ScriptRunner::dumpGrid(TDBGridEh* grid) {
    const QList<QStringList> rows = grid->DisplayedRows();
    out_ << "== grid " << grid->objectName() << " of " << currentScreen()->objectName() << ": "
         << rows.size() << " rows\n";
    out_ << "titles: " << grid->VisibleTitles().join(" | ") << "\n";
    for (int i = 0; i < rows.size(); ++i) out_ << (i + 1) << ": " << rows[i].join(" | ") << "\n";
    if (grid->FooterRowVisible()) out_ << "footer: " << grid->FooterTexts().join(" | ") << "\n";
}

void ScriptRunner::dumpMessages() {
    out_ << "== messages\n";
    for (size_t i = messagesShown_; i < sink_->messages.size(); ++i) {
        const qx::ui::Message& m = sink_->messages[i];
        switch (m.kind) {
            case qx::ui::Message::Kind::Info:
                out_ << "message: " << oneLine(m.text) << "\n";
                break;
            case qx::ui::Message::Kind::Question:
                out_ << "question: " << oneLine(m.text) << " -> " << (m.answer ? "y" : "n") << "\n";
                break;
            case qx::ui::Message::Kind::Error:
                out_ << "error: " << oneLine(m.text) << "\n";
                break;
        }
    }
    messagesShown_ = sink_->messages.size();
}

void ScriptRunner::dumpSql() {
    out_ << "== sql\n";
    for (size_t i = callsShown_; i < calls_.size(); ++i) {
        const qx::dataop::Call& c = calls_[i];
        switch (c.kind) {
            case qx::dataop::Call::Kind::OpenSql:
                out_ << "opensql " << c.funcNo << ": " << oneLine(c.sql) << "\n";
                break;
            case qx::dataop::Call::Kind::ExecSql:
                out_ << "ExecSql " << c.funcNo << " " << c.noid << " " << c.mode << ": "
                     << oneLine(c.sql) << "\n";
                break;
            case qx::dataop::Call::Kind::GetNOID:
                out_ << "GetNOID " << c.funcNo << "\n";
                break;
        }
    }
    callsShown_ = calls_.size();
}

void ScriptRunner::dumpControls() {
    QWidget* screen = currentScreen();
    out_ << "== controls of " << describe(screen) << " \"" << screen->windowTitle() << "\"\n";
    for (QObject* object : screen->findChildren<QObject*>()) {
        const QString name = object->objectName();
        if (name.isEmpty() || name.startsWith("qt_") || !belongsTo(object, screen)) continue;
        const bool interesting =
            qobject_cast<QAction*>(object) || qobject_cast<QAbstractButton*>(object) ||
            qobject_cast<QLineEdit*>(object) || qobject_cast<QComboBox*>(object) ||
            qobject_cast<QAbstractSpinBox*>(object) || qobject_cast<TDBGridEh*>(object) ||
            qobject_cast<QLabel*>(object) || qobject_cast<QPlainTextEdit*>(object) ||
            qobject_cast<QTextEdit*>(object);
        if (!interesting) continue;
        out_ << name << " " << object->metaObject()->className();
        if (auto* action = qobject_cast<QAction*>(object))
            out_ << " \"" << action->text() << "\"";
        else if (auto* button = qobject_cast<QAbstractButton*>(object)) {
            out_ << " \"" << button->text() << "\"";
            if (button->isCheckable()) out_ << (button->isChecked() ? " [x]" : " [ ]");
        } else if (!qobject_cast<TDBGridEh*>(object)) {
            out_ << " = \"" << oneLine(controlText(object)) << "\"";
        }
        if (auto* w = qobject_cast<QWidget*>(object); w && !w->isEnabled()) out_ << " (disabled)";
        out_ << "\n";
    }
}

void ScriptRunner::screenshot(const QStringList& args) {
    requireArgs(args, 1, 2, "screenshot FILE.png [main]");
    QWidget* target =
        (args.size() == 2 && args[1] == "main") ? static_cast<QWidget*>(&main_) : currentScreen();
    const QFileInfo file(args[0]);
    QDir().mkpath(file.absolutePath());
    if (!target->isVisible()) target->show();
    QApplication::processEvents();
    if (!target->grab().save(file.absoluteFilePath(), "PNG"))
        fail(QString("cannot write %1").arg(file.absoluteFilePath()));
    out_ << "screenshot " << file.absoluteFilePath() << "\n";
}

void ScriptRunner::exportGrid(const QStringList& args) {
    requireArgs(args, 1, 1, "export FILE.xlsx|FILE.csv|FILE.pdf");
    TDBGridEh* grid = currentGrid();
    QWidget* screen = currentScreen();
    // As the screen's own export: a report's title, condition and shown chart.
    QString title = screen->windowTitle();
    qx::grid::PrintOptions options;
    if (auto* report = qobject_cast<TFrm_Base_Qry*>(screen)) {
        title = report->PrintTitle();
        options = report->PrintExtras();
    } else if (auto* panel = qobject_cast<TFrm_Base_Panel*>(screen)) {
        options.condition = panel->ConditionText();
    }
    const QFileInfo file(args[0]);
    QDir().mkpath(file.absolutePath());
    if (!qx::grid::exportFile(grid, title, file.absoluteFilePath(), options))
        fail(QString("cannot write %1").arg(file.absoluteFilePath()));
    out_ << "export " << file.absoluteFilePath() << "\n";
}

void ScriptRunner::saveChart(const QStringList& args) {
    requireArgs(args, 1, 1, "chart FILE.png");
    auto* report = qobject_cast<TFrm_Base_Qry*>(currentScreen());
    if (!report || !report->ChartPane || !report->Act_Chart->isVisible())
        fail(QString("%1 shows no chart").arg(describe(currentScreen())));
    const QFileInfo file(args[0]);
    QDir().mkpath(file.absolutePath());
    if (!report->ChartPane->SavePng(file.absoluteFilePath()))
        fail(QString("cannot write %1").arg(file.absoluteFilePath()));
    out_ << "chart " << file.absoluteFilePath() << "\n";
}

void ScriptRunner::wait(const QStringList& args) {
    requireArgs(args, 1, 1, "wait MILLISECONDS");
    QEventLoop loop;
    QTimer::singleShot(args[0].toInt(), &loop, &QEventLoop::quit);
    waiting_ = true;
    loop.exec();
    waiting_ = false;
}

void ScriptRunner::expect(const QStringList& args) {
    requireArgs(args, 2, 3, "expect message TEXT | rows N | text CONTROL TEXT | screen TITLE");
    const QString what = args[0].toLower();
    if (what == "message") {
        requireArgs(args, 2, 2, "expect message TEXT");
        for (const auto& m : sink_->messages)
            if (m.text == args[1]) return;
        fail(QString("no message \"%1\"; messages: %2").arg(args[1], sink_->texts().join(" / ")));
    } else if (what == "rows") {
        requireArgs(args, 2, 2, "expect rows N");
        const int rows = currentGrid()->DisplayedRows().size();
        if (rows != args[1].toInt())
            fail(QString("grid has %1 rows, expected %2").arg(rows).arg(args[1]));
    } else if (what == "text") {
        requireArgs(args, 3, 3, "expect text CONTROL TEXT");
        const QString actual = controlText(findControl(args[1]));
        if (actual != args[2])
            fail(QString("%1 shows \"%2\", expected \"%3\"").arg(args[1], actual, args[2]));
    } else if (what == "screen") {
        requireArgs(args, 2, 2, "expect screen TITLE");
        const QString title = currentScreen()->windowTitle();
        if (title != args[1])
            fail(QString("the current screen is \"%1\", expected \"%2\"").arg(title, args[1]));
    } else {
        fail(QString("expect message|rows|text|screen, not '%1'").arg(args[0]));
    }
}

void ScriptRunner::closeScreen() {
    QWidget* screen = currentScreen();
    if (screen == &main_) fail("no screen to close");
    selectedScreen_ = nullptr;
    selectedGrid_ = nullptr;
    screen->close();
}

}  // namespace qx::host
