#include "framework/U_function.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>
#include <QWidget>
#include <cmath>

#include "db/Database.h"

EDatabaseError::EDatabaseError(const QString& message, const QString& statement)
    : std::runtime_error(message.toStdString()), message_(message), statement_(statement) {}

void Abort() { throw EAbort(); }

namespace qx::ui {
namespace {
std::shared_ptr<MessageSink>& currentSink() {
    static std::shared_ptr<MessageSink> sink = std::make_shared<MessageBoxSink>();
    return sink;
}
QWidget* dialogParent() { return QApplication::activeWindow(); }
}  // namespace

void MessageBoxSink::inform(const QString& text, int) {
    QMessageBox::information(dialogParent(), QObject::tr("提示"), text);
}

bool MessageBoxSink::ask(const QString& text) {
    return QMessageBox::question(dialogParent(), QObject::tr("询问"), text,
                                 QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void MessageBoxSink::error(const QString& text) {
    QMessageBox::critical(dialogParent(), QObject::tr("错误"), text);
}

void ScriptedMessageSink::inform(const QString& text, int kind) {
    messages.push_back({Message::Kind::Info, text, kind, false});
}

bool ScriptedMessageSink::ask(const QString& text) {
    bool answer = defaultAnswer;
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    } else {
        ++unexpectedQuestions;
    }
    messages.push_back({Message::Kind::Question, text, 2, answer});
    return answer;
}

void ScriptedMessageSink::error(const QString& text) {
    messages.push_back({Message::Kind::Error, text, 0, false});
}

QStringList ScriptedMessageSink::texts() const {
    QStringList out;
    for (const auto& m : messages) out << m.text;
    return out;
}

QStringList ScriptedMessageSink::errors() const {
    QStringList out;
    for (const auto& m : messages)
        if (m.kind == Message::Kind::Error) out << m.text;
    return out;
}

void ScriptedMessageSink::clear() {
    messages.clear();
    answers.clear();
    unexpectedQuestions = 0;
}

std::shared_ptr<MessageSink> setMessageSink(std::shared_ptr<MessageSink> sink) {
    auto previous = currentSink();
    currentSink() = sink ? std::move(sink) : std::make_shared<MessageBoxSink>();
    return previous;
}

MessageSink& messageSink() { return *currentSink(); }

ScopedScriptedSink::ScopedScriptedSink()
    : sink_(std::make_shared<ScriptedMessageSink>()), previous_(setMessageSink(sink_)) {}

ScopedScriptedSink::~ScopedScriptedSink() { setMessageSink(previous_); }

}  // namespace qx::ui

AnsiString DISPINFO(AnsiString text, int kind) {
    if (kind == 2) return qx::ui::messageSink().ask(text) ? "y" : "n";
    qx::ui::messageSink().inform(text, kind);
    return {};
}

QString ControlText(QObject* control) {
    if (!control) return {};
    if (auto* e = qobject_cast<QLineEdit*>(control)) return e->text();
    if (auto* c = qobject_cast<QComboBox*>(control)) return c->currentText();
    if (auto* s = qobject_cast<QAbstractSpinBox*>(control)) return s->property("text").toString();
    if (auto* l = qobject_cast<QLabel*>(control)) return l->text();
    if (auto* t = qobject_cast<QPlainTextEdit*>(control)) return t->toPlainText();
    if (auto* t = qobject_cast<QTextEdit*>(control)) return t->toPlainText();
    return control->property("text").toString();
}

namespace {
void focusControl(QObject* control) {
    if (auto* w = qobject_cast<QWidget*>(control)) {
        if (w->isEnabled() && w->isVisible()) w->setFocus();
        if (auto* e = qobject_cast<QLineEdit*>(w)) e->selectAll();
    }
}

[[noreturn]] void refuse(QObject* control, const QString& message) {
    DISPINFO(message, 5);
    focusControl(control);
    Abort();
}
}  // namespace

void CheckText(QObject* edit, AnsiString caption) {
    const QString text = ControlText(edit);
    for (QChar c : text) {
        if (c == '\'' || c == '"')
            refuse(edit, caption + "不能包含引号!");
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            refuse(edit, caption + "不能包含控制字符!");
    }
    CheckBlankInstr(edit, caption);
}

void CheckBlankInstr(QObject* edit, AnsiString caption) {
    const QString text = ControlText(edit);
    for (QChar c : text)
        if (c.isSpace()) refuse(edit, caption + "不能包含空格!");
}

AnsiString boltos(bool value) { return value ? "True" : "False"; }

AnsiString SqlStr(const AnsiString& value) {
    QString out = value;
    out.replace('\'', "''");
    return out;
}

AnsiString QuotedStr(const AnsiString& value) { return "'" + SqlStr(value) + "'"; }

AnsiString FloatToStr(double value) {
    if (value == 0) return "0";
    if (std::isfinite(value) && value == std::floor(value) && std::fabs(value) < 1e15)
        return QString::number(static_cast<qint64>(value));
    // 15 significant digits, as a currency-like amount prints (no binary noise: 0.1 + 0.2 -> 0.3).
    QString s = QString::number(value, 'g', 15);
    if (s.contains('e')) s = QString::number(value, 'f', 6);
    if (s.contains('.')) {
        while (s.endsWith('0')) s.chop(1);
        if (s.endsWith('.')) s.chop(1);
    }
    return s;
}

double StrToFloat(const AnsiString& text) {
    bool ok = false;
    const QString t = text.trimmed();
    double v = t.toDouble(&ok);
    if (!ok) {
        DISPINFO("'" + text + "' 不是有效的数值", 5);
        Abort();
    }
    return v;
}

int StrToInt(const AnsiString& text) {
    bool ok = false;
    int v = text.trimmed().toInt(&ok);
    if (!ok) {
        DISPINFO("'" + text + "' 不是有效的整数", 5);
        Abort();
    }
    return v;
}

namespace qx {

bool guard(const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const EAbort&) {
        return false;
    } catch (const EDatabaseError& e) {
        ui::messageSink().error(e.Message());
    } catch (const db::Error& e) {
        ui::messageSink().error(QString::fromStdString(e.what()));
    } catch (const std::exception& e) {
        ui::messageSink().error(QString::fromUtf8(e.what()));
    } catch (...) {
        ui::messageSink().error(QObject::tr("未知错误"));
    }
    return false;
}

}  // namespace qx
