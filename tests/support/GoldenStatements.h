#pragma once
// Expected statements as data: one golden file per screen, a block per case.
//
//   -- case: Add
//   INSERT INTO D8102(T,NOID,...) VALUES ('1','${number}',...);
//   INSERT INTO D8102A  VALUES ('${number}',...);
//
// A case's statements are its lines in order, joined with nothing between them (a batch is its
// statements written one after the other); a line keeps its leading blanks. "${name}" is
// replaced by the value the test gives for it (a number the database handed out, say). Lines
// starting with "#" are notes.
//
// Statements are compared token by token through the translator's own lexer, and the blanks
// before each token count: a failure names the first token that differs, with its position and
// the text around it, so a changed blank is reported as exactly that.
#include <gtest/gtest.h>

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

namespace qx::test {

class GoldenStatements {
public:
    // A file under tests/ of the source tree, e.g. "documents/golden/Frmqxck202_1.sql".
    explicit GoldenStatements(const QString& relativePath);

    bool hasCase(const QString& name) const { return cases_.contains(name); }
    QStringList caseNames() const { return cases_.keys(); }
    // The statements of a case as one text, with the variables filled in.
    QString text(const QString& name, const QHash<QString, QString>& variables = {}) const;

private:
    QString path_;
    QMap<QString, QStringList> cases_;
};

// A golden file holding one whole batch (a file under tests/, e.g. "setup/golden/clear_all.sql"):
// its text, UTF-8, without the file's last line break; a marker text when it is missing.
QString goldenBatch(const QString& relativePath);

// Same tokens and the same blanks before each token; otherwise the first difference.
::testing::AssertionResult sameStatements(const QString& expected, const QString& actual);

}  // namespace qx::test
