#include "host/Session.h"

#include <QCryptographicHash>
#include <QStringList>
#include <algorithm>

#include "db/Database.h"
#include "framework/U_function.h"

namespace qx::host {
namespace {

using qx::db::ResultSet;
using qx::db::Value;

QString text(const Value& v) {
    if (const auto* s = std::get_if<std::string>(&v)) return QString::fromStdString(*s);
    if (const auto* i = std::get_if<std::int64_t>(&v)) return QString::number(*i);
    if (const auto* d = std::get_if<double>(&v)) return QString::number(*d);
    return {};
}

long long number(const Value& v) {
    if (const auto* i = std::get_if<std::int64_t>(&v)) return *i;
    if (const auto* d = std::get_if<double>(&v)) return static_cast<long long>(*d);
    if (const auto* s = std::get_if<std::string>(&v))
        return QString::fromStdString(*s).toLongLong();
    return 0;
}

// The first column of the first row, or an empty value.
Value scalar(qx::db::Database& db, const QString& sql) {
    const ResultSet rs = db.open(sql.toStdString());
    if (rs.rows.empty() || rs.rows.front().empty()) return {};
    return rs.rows.front().front();
}

// The option list of sys_co, padded with "1" the way the settings screen reads it.
QStringList companyOptions(const QString& param) {
    QStringList items = param.split(',');
    while (items.size() < 50) items << "1";
    return items;
}

int lastSizePositionInUse(qx::db::Database& db) {
    for (int position = 9; position > 0; --position) {
        const QString m = QString("M%1").arg(position);
        const QString sql =
            QString("SELECT COUNT(*) FROM d1006 WHERE LTRIM(RTRIM(ISNULL(%1,''))) <> ''").arg(m);
        if (number(scalar(db, sql)) > 0) return position;
    }
    return 0;
}

}  // namespace

QString passwordHash(const QString& salt, const QString& password) {
    return QString::fromLatin1(
        QCryptographicHash::hash((salt + password).toUtf8(), QCryptographicHash::Sha256).toHex());
}

std::optional<QString> checkLogin(qx::db::Database& db, const QString& userId,
                                  const QString& password) {
    const ResultSet rs = db.open(
        ("SELECT PWD_SALT, PWD_HASH FROM sys_user WHERE USER_ID=" + QuotedStr(userId.trimmed()))
            .toStdString());
    if (rs.rows.empty()) return QString(kLoginFailedMessage);
    const QString salt = text(rs.rows[0][0]);
    const QString hash = text(rs.rows[0][1]).trimmed().toLower();
    if (hash.isEmpty() || passwordHash(salt, password) != hash) return QString(kLoginFailedMessage);
    return std::nullopt;
}

void signIn(qx::db::Database& db, const QString& userId, const SessionOptions& options) {
    const QString user = QuotedStr(userId.trimmed());
    const ResultSet who =
        db.open(("SELECT USER_ID, USER_NAME FROM sys_user WHERE USER_ID=" + user).toStdString());
    if (who.rows.empty()) throw qx::db::Error("no user " + userId.toStdString() + " in sys_user");
    G_UserId = text(who.rows[0][0]);
    G_UserName = text(who.rows[0][1]);

    const ResultSet co = db.open("SELECT CO, PARAM FROM sys_co");
    const QString param = co.rows.empty() ? QString() : text(co.rows[0][1]);
    G_CoName = co.rows.empty() ? QString() : text(co.rows[0][0]);
    const QStringList options_ = companyOptions(param);
    G_CHKCK = options_.at(3).trimmed() != "0";
    GKH4_2 = options_.at(34).trimmed() == "1";

    const long long warehouses = number(scalar(db, "SELECT COUNT(*) FROM d1007"));
    G_CKCOUNT_C = warehouses <= 1;
    // The warehouses the user may read and write: his rights rows when rights are enforced.
    const QString granted =
        " FROM d1007 INNER JOIN sys_user_ck ON d1007.CK_ID = sys_user_ck.CK_ID"
        " WHERE sys_user_ck.USER_ID=" +
        user;
    long long readable = warehouses;
    long long writable = warehouses;
    QString firstWritable = "SELECT CK_ID, CK_NAME FROM d1007 ORDER BY CK_ID";
    if (G_CHKCK) {
        readable = number(scalar(db, "SELECT COUNT(DISTINCT d1007.CK_ID)" + granted));
        writable = number(
            scalar(db, "SELECT COUNT(DISTINCT d1007.CK_ID)" + granted + " AND sys_user_ck.W <> 0"));
        firstWritable = "SELECT d1007.CK_ID, d1007.CK_NAME" + granted +
                        " AND sys_user_ck.W <> 0 ORDER BY d1007.CK_ID";
    }
    G_CKCOUNT_R = readable < 2;
    G_CKCOUNT_W = writable <= 1;
    const ResultSet ck = db.open(firstWritable.toStdString());
    G_ckid = ck.rows.empty() ? QString() : text(ck.rows[0][0]);
    G_CkName = ck.rows.empty() ? QString() : text(ck.rows[0][1]);

    G_CM = lastSizePositionInUse(db);
    G_SK = options.approval ? 1 : 0;
    G_SKSTR = options.approval ? "0" : "1";

    G_record = Trecord{};
    G_record.UserId = G_UserId;
    G_record.UserName = G_UserName;
    G_record.CkId = G_ckid;
    G_record.CkName = G_CkName;
    G_record.CoName = G_CoName;
}

Trecord recordFor(int funcCode, const QString& databaseName) {
    Trecord rec = G_record;
    rec.DbName = databaseName;
    rec.FuncCode = funcCode;
    return rec;
}

}  // namespace qx::host
