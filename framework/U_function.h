#pragma once
// Helpers every screen uses: messages, input checks, the quoting helper, and the error model.
//
// How screens use it
//   DISPINFO("请输入款号!", 5);                       // a message
//   if (DISPINFO("是否保存?", 2) == "y") ...          // a yes/no question
//   CheckText(Edit1, "进货单号");                      // aborts the operation on bad input
//   sql += "NOTE='" + SqlStr(NOTE->text()) + "'";     // every value between single quotes
//   sql += "NOID=" + QuotedStr(noid);                  // the same, with the quotes
//   Abort();                                           // end the operation silently
//
// Error model. A failed check "aborts": it reports its message and throws EAbort, which the
// framework swallows. A database error (EDatabaseError) propagates out of the screen's handler
// and is reported once by the framework through the message sink. Qt lets no exception cross
// its event loop, so every entry point the framework wires (actions, buttons, grid edits, key
// handlers) runs the screen's code inside qx::guard(); screens wiring their own controls use
// qx::connectGuarded() (or wrap the body in qx::guard()).
//
// Message sink. Every message and question goes to one sink: a QMessageBox in the GUI, a
// ScriptedMessageSink in tests and in the script runner (records messages, answers questions
// from a queue).
#include <QObject>
#include <QString>
#include <QStringList>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "framework/Export.h"
#include "framework/Types.h"

class QWidget;

// Ends the calling operation without a message (the message, if any, was shown already).
class QX_FRAMEWORK_EXPORT EAbort : public std::exception {
public:
    const char* what() const noexcept override { return "Operation aborted"; }
};

// An error of the database (or of the data operations): ends the operation and is reported.
class QX_FRAMEWORK_EXPORT EDatabaseError : public std::runtime_error {
public:
    explicit EDatabaseError(const QString& message, const QString& statement = {});
    QString Message() const { return message_; }
    QString Statement() const { return statement_; }

private:
    QString message_;
    QString statement_;
};

// Throws EAbort.
[[noreturn]] QX_FRAMEWORK_EXPORT void Abort();

// Shows text (kind 5 and any other kind: a message; kind 2: a yes/no question). Returns "y" when
// a kind 2 question is answered yes, "n" when answered no, "" for messages.
QX_FRAMEWORK_EXPORT AnsiString DISPINFO(AnsiString text, int kind);

// Validates a control's text before it goes into SQL: refuses single and double quotes, control
// characters and blanks ("{caption}不能包含..."), reports with the caption, focuses the control
// and aborts. `edit` is any control with a text (QLineEdit, TLinkEdit, TDateEdit, QComboBox).
QX_FRAMEWORK_EXPORT void CheckText(QObject* edit, AnsiString caption);
// Refuses blanks inside the text (leading and trailing ones included): report, focus, abort.
QX_FRAMEWORK_EXPORT void CheckBlankInstr(QObject* edit, AnsiString caption);
// The text of a control as CheckText sees it (QLineEdit, QComboBox, QAbstractSpinBox, QLabel,
// QTextEdit/QPlainTextEdit, or the "text" property).
QX_FRAMEWORK_EXPORT QString ControlText(QObject* control);

// "True" / "False".
QX_FRAMEWORK_EXPORT AnsiString boltos(bool value);

// The quoting helper: every value placed between single quotes in SQL goes through one of these.
// SqlStr doubles embedded single quotes (no surrounding quotes): "O'Neil" -> "O''Neil".
QX_FRAMEWORK_EXPORT AnsiString SqlStr(const AnsiString& value);
// "'" + SqlStr(value) + "'".
QX_FRAMEWORK_EXPORT AnsiString QuotedStr(const AnsiString& value);

// Float to text as the module prints amounts into SQL: shortest exact form, "." decimal point,
// no thousands separator ("50", "45.5", "0.1").
QX_FRAMEWORK_EXPORT AnsiString FloatToStr(double value);
// Text to float/int; on failure throw EAbort after reporting "'{text}' 不是有效的数值".
QX_FRAMEWORK_EXPORT double StrToFloat(const AnsiString& text);
QX_FRAMEWORK_EXPORT int StrToInt(const AnsiString& text);

namespace qx::ui {

// One message as the sink received it.
struct Message {
    enum class Kind { Info, Question, Error } kind = Kind::Info;
    QString text;
    int dispKind = 5;     // the DISPINFO kind (0 for errors reported by the framework)
    bool answer = false;  // for questions: the answer given
};

class QX_FRAMEWORK_EXPORT MessageSink {
public:
    virtual ~MessageSink() = default;
    virtual void inform(const QString& text, int kind) = 0;
    virtual bool ask(const QString& text) = 0;
    // An error the framework caught at an entry point (database errors, unexpected exceptions).
    virtual void error(const QString& text) = 0;
};

// Message boxes on the active window.
class QX_FRAMEWORK_EXPORT MessageBoxSink : public MessageSink {
public:
    void inform(const QString& text, int kind) override;
    bool ask(const QString& text) override;
    void error(const QString& text) override;
};

// Records every message; answers questions from a queue (when the queue is empty the question
// is answered with defaultAnswer and recorded as unexpected).
class QX_FRAMEWORK_EXPORT ScriptedMessageSink : public MessageSink {
public:
    void inform(const QString& text, int kind) override;
    bool ask(const QString& text) override;
    void error(const QString& text) override;

    void queueAnswer(bool yes) { answers.push_back(yes); }
    // Texts of every message, question and error in order.
    QStringList texts() const;
    QStringList errors() const;
    void clear();

    std::vector<Message> messages;
    std::deque<bool> answers;
    bool defaultAnswer = false;
    int unexpectedQuestions = 0;
};

// Installs the sink (nullptr puts the message-box sink back). Returns the previous one.
QX_FRAMEWORK_EXPORT std::shared_ptr<MessageSink> setMessageSink(std::shared_ptr<MessageSink> sink);
QX_FRAMEWORK_EXPORT MessageSink& messageSink();

// Installs a ScriptedMessageSink for the lifetime of the object (tests).
class QX_FRAMEWORK_EXPORT ScopedScriptedSink {
public:
    ScopedScriptedSink();
    ~ScopedScriptedSink();
    ScriptedMessageSink& operator*() { return *sink_; }
    ScriptedMessageSink* operator->() { return sink_.get(); }

private:
    std::shared_ptr<ScriptedMessageSink> sink_;
    std::shared_ptr<MessageSink> previous_;
};

}  // namespace qx::ui

namespace qx {

// Runs body; EAbort ends it silently, EDatabaseError, qx::db::Error and any other exception are
// reported through the message sink (kind Error). Returns true when body ran to its end.
QX_FRAMEWORK_EXPORT bool guard(const std::function<void()>& body);

// connect() whose slot (a functor taking no arguments) runs inside guard(). Use for every
// control a screen wires itself: qx::connectGuarded(btn_ok, &QPushButton::clicked, this,
// [this] { btn_okClick(this); });
template <typename Sender, typename Signal, typename Functor>
QMetaObject::Connection connectGuarded(Sender* sender, Signal signal, QObject* context, Functor f) {
    return QObject::connect(sender, signal, context, [f]() { guard([&] { f(); }); });
}

}  // namespace qx
