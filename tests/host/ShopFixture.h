#pragma once
// A small shop database for host tests: users with salted passwords, warehouses, rights,
// size groups and the company row, in a temporary SQLite file.
#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <string>

#include "db/Database.h"
#include "host/Session.h"

namespace qx::test {

class ShopFixture {
public:
    // warehouses: how many of "01".."0n" to register. param: sys_co.PARAM.
    explicit ShopFixture(int warehouses = 3, const QString& param = "")
        : path_(dir_.filePath("shop.db")) {
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path_.toStdString(), true));
        exec("INSERT INTO sys_co (CO, PARAM) VALUES ('测试服饰', '" + param + "')");
        addUser("admin", "系统管理员", "s4lt", "admin");
        addUser("clerk", "店员", "c1erk", "secret");
        for (int i = 1; i <= warehouses; ++i)
            exec(QString("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('0%1', '仓库%1')").arg(i));
        exec(
            "INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4) VALUES ('01', '服装', 'S', 'M', "
            "'L', 'XL', '2XL')");
        exec(
            "INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4, M5, M6) VALUES ('02', '裤装', "
            "'26', '27', '28', '29', '30', '31', '32')");
    }

    void exec(const QString& sql) { db->execute(sql.toStdString()); }

    void addUser(const QString& id, const QString& name, const QString& salt,
                 const QString& password) {
        exec(QString("INSERT INTO sys_user (USER_ID, USER_NAME, PWD_SALT, PWD_HASH) VALUES ('%1', "
                     "'%2', '%3', '%4')")
                 .arg(id, name, salt, qx::host::passwordHash(salt, password)));
    }

    void grant(const QString& user, const QString& warehouse, int write) {
        exec(QString("INSERT INTO sys_user_ck (USER_ID, CK_ID, W) VALUES ('%1', '%2', %3)")
                 .arg(user, warehouse)
                 .arg(write));
    }

    QString path() const { return path_; }

    std::shared_ptr<qx::db::Database> db;

private:
    QTemporaryDir dir_;
    QString path_;
};

}  // namespace qx::test
