// The login dialog: a wrong password keeps it open with the message, the right one accepts.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "host/LoginDialog.h"
#include "host/ShopFixture.h"

namespace {

TEST(LoginDialog, WrongPasswordKeepsTheDialogOpenWithTheMessage) {
    qx::test::ShopFixture shop;
    qx::host::LoginDialog dialog(*shop.db, "测试服饰", "admin");
    dialog.show();
    dialog.findChild<QLineEdit*>("PASSWORD")->setText("nimda");
    dialog.findChild<QPushButton*>("btn_ok")->click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(dialog.findChild<QLabel*>("LoginError")->text(), "用户名或密码错误!");
    EXPECT_TRUE(dialog.findChild<QLineEdit*>("PASSWORD")->text().isEmpty())
        << "cleared for the next try";
}

TEST(LoginDialog, RightPasswordAcceptsWithTheUser) {
    qx::test::ShopFixture shop;
    qx::host::LoginDialog dialog(*shop.db, "测试服饰");
    QTimer::singleShot(0, &dialog, [&] {
        dialog.findChild<QLineEdit*>("USER_ID")->setText(" clerk ");
        dialog.findChild<QLineEdit*>("PASSWORD")->setText("secret");
        dialog.findChild<QPushButton*>("btn_ok")->click();
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(dialog.userId(), "clerk");
}

}  // namespace
