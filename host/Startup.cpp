#include "host/Startup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstdio>
#include <stdexcept>

#include "db/Database.h"
#include "db/tools/DemoData.h"

namespace qx::host {

QString defaultDatabasePath() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath("qxck/demo-shop.db");
}

std::shared_ptr<qx::db::Database> openShopDatabase(const QString& path, bool createDemoIfMissing) {
    if (qx::db::isServerLocation(path.toStdString())) {
        // A shop on a PostgreSQL server: no file to check or create (qxck-demo --db URI makes one).
        try {
            return std::shared_ptr<qx::db::Database>(qx::db::openDatabase(path.toStdString(), false));
        } catch (const std::exception& e) {
            throw std::runtime_error(QString("无法打开数据库 %1: %2").arg(path, QString::fromUtf8(e.what())).toStdString());
        }
    }
    const QFileInfo file(path);
    if (!file.exists()) {
        if (!createDemoIfMissing)
            throw std::runtime_error(
                QString("数据库文件不存在: %1 (the shop database file does not exist; give an "
                        "existing file with --db, or create a demo shop with qxck-demo --db %1)")
                    .arg(path)
                    .toStdString());
        QDir().mkpath(file.absolutePath());
        std::fprintf(stderr, "Creating the demo shop database %s ...\n", path.toUtf8().constData());
        // Built under a temporary name: an interrupted first start leaves no half-filled shop.
        const QString partial = path + ".part";
        for (const char* suffix : {"", "-wal", "-shm", "-journal"}) QFile::remove(partial + suffix);
        const auto summary = qx::demo::createDemoDatabase(partial.toStdString(), {});
        if (!QFile::rename(partial, path))
            throw std::runtime_error(QString("无法创建演示数据库 %1").arg(path).toStdString());
        std::fprintf(stderr,
                     "Demo shop ready: %d styles, %d SKUs, %d documents (%s to %s). "
                     "Sign in as admin / admin.\n",
                     summary.styles, summary.skus, summary.documents, summary.firstDate.c_str(),
                     summary.lastDate.c_str());
    }
    if (file.exists() && !file.isFile())
        throw std::runtime_error(QString("%1 不是数据库文件 (not a file)").arg(path).toStdString());
    try {
        return std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
    } catch (const std::exception& e) {
        throw std::runtime_error(
            QString("无法打开数据库 %1: %2").arg(path, QString::fromUtf8(e.what())).toStdString());
    }
}

}  // namespace qx::host
