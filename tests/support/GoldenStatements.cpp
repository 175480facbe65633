#include "tests/support/GoldenStatements.h"

#include <QFile>
#include <QTextStream>
#include <stdexcept>

#include "db/tsql/Lexer.h"

namespace qx::test {

GoldenStatements::GoldenStatements(const QString& relativePath) {
    const QByteArray root = qgetenv("QXCK_SOURCE_DIR");
    path_ = QString::fromUtf8(root) + "/tests/" + relativePath;
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw std::runtime_error("golden file not found: " + path_.toStdString());
    QString current;
    QTextStream in(&file);
    in.setEncoding(QStringConverter::Utf8);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.startsWith("-- case:")) {
            current = line.mid(8).trimmed();
            cases_[current];
        } else if (!current.isEmpty() && !line.trimmed().isEmpty() && !line.startsWith('#')) {
            cases_[current] << line;
        }
    }
}

QString goldenBatch(const QString& relativePath) {
    QFile file(QString::fromUtf8(qgetenv("QXCK_SOURCE_DIR")) + "/tests/" + relativePath);
    if (!file.open(QIODevice::ReadOnly)) return "<missing golden file " + relativePath + ">";
    QString text = QString::fromUtf8(file.readAll());
    if (text.endsWith('\n')) text.chop(1);
    return text;
}

QString GoldenStatements::text(const QString& name, const QHash<QString, QString>& variables) const {
    if (!cases_.contains(name)) throw std::runtime_error("no case '" + name.toStdString() + "' in " + path_.toStdString());
    QString out = cases_.value(name).join(QString());
    for (auto it = variables.begin(); it != variables.end(); ++it) out.replace("${" + it.key() + "}", it.value());
    return out;
}

namespace {

struct Spaced {
    std::string before;  // the blanks between the previous token and this one
    qx::tsql::Token token;
};

std::vector<Spaced> spacedTokens(const std::string& batch) {
    std::vector<Spaced> out;
    std::size_t end = 0;
    for (const qx::tsql::Token& t : qx::tsql::tokenize(batch)) {
        if (t.kind == qx::tsql::TokenKind::End) {
            out.push_back({batch.substr(end), t});
            break;
        }
        out.push_back({batch.substr(end, t.offset - end), t});
        end = t.offset + t.length;
    }
    return out;
}

std::string around(const std::string& text, std::size_t offset) {
    const std::size_t from = offset > 40 ? offset - 40 : 0;
    return "…" + text.substr(from, 80) + "…";
}

std::string shown(const std::string& blanks) { return "\"" + blanks + "\" (" + std::to_string(blanks.size()) + " chars)"; }

}  // namespace

::testing::AssertionResult sameStatements(const QString& expected, const QString& actual) {
    if (expected == actual) return ::testing::AssertionSuccess();
    const std::string e = expected.toStdString(), a = actual.toStdString();
    std::vector<Spaced> et, at;
    try {
        et = spacedTokens(e);
        at = spacedTokens(a);
    } catch (const std::exception& error) {
        return ::testing::AssertionFailure() << "statements differ and do not tokenize (" << error.what()
                                             << ")\n expected: " << e << "\n   actual: " << a;
    }
    for (std::size_t i = 0; i < std::min(et.size(), at.size()); ++i) {
        const Spaced& x = et[i];
        const Spaced& y = at[i];
        if (x.token.text != y.token.text || x.token.kind != y.token.kind)
            return ::testing::AssertionFailure()
                   << "token " << i + 1 << " differs: expected '" << x.token.text << "', got '" << y.token.text
                   << "' at line " << y.token.line << " column " << y.token.column << "\n expected near: "
                   << around(e, x.token.offset) << "\n   actual near: " << around(a, y.token.offset);
        if (x.before != y.before)
            return ::testing::AssertionFailure()
                   << "blanks before token " << i + 1 << " ('" << y.token.text << "') differ: expected "
                   << shown(x.before) << ", got " << shown(y.before) << " at line " << y.token.line << " column "
                   << y.token.column << "\n actual near: " << around(a, y.token.offset);
    }
    return ::testing::AssertionFailure() << "one batch ends early: expected " << et.size() << " tokens, got "
                                         << at.size() << "\n expected: " << e << "\n   actual: " << a;
}

}  // namespace qx::test
