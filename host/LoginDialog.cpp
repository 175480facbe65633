#include "host/LoginDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "db/Database.h"
#include "host/Session.h"

namespace qx::host {

LoginDialog::LoginDialog(qx::db::Database& db, const QString& coName, const QString& user,
                         QWidget* parent)
    : QDialog(parent), db_(db) {
    setObjectName("LoginDialog");
    setWindowTitle("登录 - QX_CK 库存管理");
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(QString("<h3>%1</h3>").arg(coName.toHtmlEscaped()), this);
    layout->addWidget(title);
    auto* form = new QFormLayout;
    user_ = new QLineEdit(user, this);
    user_->setObjectName("USER_ID");
    user_->setMaxLength(10);
    password_ = new QLineEdit(this);
    password_->setObjectName("PASSWORD");
    password_->setEchoMode(QLineEdit::Password);
    form->addRow("用户代码", user_);
    form->addRow("密码", password_);
    layout->addLayout(form);
    error_ = new QLabel(this);
    error_->setObjectName("LoginError");
    error_->setStyleSheet("color: #b00020");
    layout->addWidget(error_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText("登录");
    buttons->button(QDialogButtonBox::Ok)->setObjectName("btn_ok");
    buttons->button(QDialogButtonBox::Cancel)->setText("取消");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("btn_cancel");
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &LoginDialog::tryLogin);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    (user.isEmpty() ? user_ : password_)->setFocus();
}

QString LoginDialog::userId() const {
    return user_->text().trimmed();
}

void LoginDialog::tryLogin() {
    try {
        if (const auto failure = checkLogin(db_, userId(), password_->text())) {
            error_->setText(*failure);
            password_->clear();
            password_->setFocus();
            return;
        }
    } catch (const std::exception& e) {
        error_->setText(QString("数据库错误: %1").arg(QString::fromUtf8(e.what())));
        return;
    }
    accept();
}

}  // namespace qx::host
