#pragma once
// Signing in: the password check against sys_user and the login globals of U_glo.
//
// Where each global comes from:
//   G_UserId, G_UserName   sys_user.USER_ID, USER_NAME of the signed-in user
//   G_CoName               sys_co.CO
//   G_CHKCK                sys_co.param position 3 (warehouse rights per user): on unless "0"
//   GKH4_2                 sys_co.param position 34 (free barcodes kept per SKU and size): on if
//   "1" G_CKCOUNT_C            at most one warehouse in d1007 G_CKCOUNT_R            fewer than two
//   warehouses readable by the user (with rights enforced:
//                          the user's sys_user_ck rows, else every warehouse)
//   G_CKCOUNT_W            at most one warehouse writable by the user (rows with W <> 0)
//   G_ckid, G_CkName       the first writable warehouse of the user by code (every warehouse
//                          counts as writable when rights are not enforced)
//   G_CM                   the last size position named in any size group (d1006.M0..M9)
//   G_SK, G_SKSTR          the host has no approval workflow of its own: approval is off and new
//                          documents are effective at once ("1"), unless the host is started
//                          with approval on (then "0": documents wait for approval)
#include <QString>
#include <optional>

#include "framework/U_glo.h"

namespace qx::db {
class Database;
}

namespace qx::host {

// Lower-case hex SHA-256 of salt followed by the password (UTF-8), as sys_user.PWD_HASH keeps it.
QString passwordHash(const QString& salt, const QString& password);

// Shown for an unknown user and for a wrong password alike.
inline constexpr const char* kLoginFailedMessage = "用户名或密码错误!";

// Checks the password of userId; an empty optional on success, else the message to show.
std::optional<QString> checkLogin(qx::db::Database& db, const QString& userId,
                                  const QString& password);

struct SessionOptions {
    bool approval = false;  // documents need approval (G_SK)
};

// Sets every login global for userId from the database, and G_record's user texts.
// Throws qx::db::Error when the database cannot answer.
void signIn(qx::db::Database& db, const QString& userId, const SessionOptions& options = {});

// The record handed to QXProc2 for a menu pick, built from the globals.
Trecord recordFor(int funcCode, const QString& databaseName);

}  // namespace qx::host
