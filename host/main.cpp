// qxck: the host application of the stock module.
//   qxck [--db FILE|postgresql://…] [--user ID] [--approval]
// Without --db it opens the demo shop at the default path, generating it on the first start.
#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <cstdio>

#include "db/Database.h"
#include "framework/U_dataop.h"
#include "host/LoginDialog.h"
#include "host/MainWindow.h"
#include "host/ModuleLoader.h"
#include "host/Session.h"
#include "host/Startup.h"

namespace {

int fail(const QString& message) {
    std::fprintf(stderr, "qxck: %s\n", message.toUtf8().constData());
    QMessageBox::critical(nullptr, "QX_CK", message);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("qxck");
    QApplication::setApplicationDisplayName("QX_CK 库存管理");

    QCommandLineParser parser;
    parser.setApplicationDescription("QX_CK: warehouse and stock management of a garment shop.");
    parser.addHelpOption();
    parser.addOption({"db",
                      "The shop database: an SQLite file or a PostgreSQL URI (postgresql://user@host:port/shop). Default: the demo shop at " +
                          qx::host::defaultDatabasePath() + ", created on first start.",
                      "file"});
    parser.addOption({"user", "User code to preset in the login dialog.", "id"});
    parser.addOption({"approval", "Documents need approval (new documents wait with T=0)."});
    parser.process(app);

    const bool useDefault = !parser.isSet("db");
    const QString path = useDefault ? qx::host::defaultDatabasePath() : parser.value("db");
    std::shared_ptr<qx::db::Database> db;
    try {
        db = qx::host::openShopDatabase(path, useDefault);
    } catch (const std::exception& e) {
        return fail(QString::fromUtf8(e.what()));
    }
    qx::dataop::setDatabase(db);

    qx::host::ModuleLoader module;
    if (!module.load()) return fail(module.error());

    QString coName;
    try {
        const auto co = db->open("SELECT CO FROM sys_co");
        if (!co.rows.empty())
            if (const auto* s = std::get_if<std::string>(&co.rows[0][0]))
                coName = QString::fromStdString(*s);
    } catch (const std::exception& e) {
        return fail(
            QString("数据库 %1 不是有效的店铺数据库: %2").arg(path, QString::fromUtf8(e.what())));
    }

    qx::host::LoginDialog login(*db, coName, parser.value("user"));
    if (login.exec() != QDialog::Accepted) return 0;
    try {
        qx::host::signIn(*db, login.userId(), {.approval = parser.isSet("approval")});
    } catch (const std::exception& e) {
        return fail(QString("登录失败: %1").arg(QString::fromUtf8(e.what())));
    }

    qx::host::MainWindow window(module.entry(), path);
    window.show();
    const int rc = app.exec();
    qx::dataop::setDatabase(nullptr);
    return rc;
}
