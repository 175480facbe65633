#pragma once
// Sign-in against sys_user: user code and password, checked against the salted hash.
#include <QDialog>

class QLineEdit;
class QLabel;

namespace qx::db {
class Database;
}

namespace qx::host {

class LoginDialog : public QDialog {
    Q_OBJECT
public:
    LoginDialog(qx::db::Database& db, const QString& coName, const QString& user = {},
                QWidget* parent = nullptr);
    // The user who signed in (after exec() returned Accepted).
    QString userId() const;

private:
    void tryLogin();
    qx::db::Database& db_;
    QLineEdit* user_;
    QLineEdit* password_;
    QLabel* error_;
};

}  // namespace qx::host
