#include "host/ModuleLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace qx::host {

QString ModuleLoader::defaultPath() {
    return QDir(QCoreApplication::applicationDirPath()).filePath("libqx_ck.so");
}

bool ModuleLoader::load(const QString& path) {
    entry_ = nullptr;
    if (!QFileInfo::exists(path)) {
        error_ = QString(
                     "找不到库存模块 %1 (the stock module library is missing; build it or "
                     "put it beside the program)")
                     .arg(path);
        return false;
    }
    library_.setFileName(path);
    // Resolve every symbol now: a module built against another framework fails here, not later.
    library_.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!library_.load()) {
        error_ = QString("无法加载库存模块 %1: %2").arg(path, library_.errorString());
        return false;
    }
    entry_ = reinterpret_cast<QXProc2Function>(library_.resolve("QXProc2"));
    if (!entry_) {
        error_ = QString("库存模块 %1 中没有入口 QXProc2 (the library is not the stock module): %2")
                     .arg(path, library_.errorString());
        return false;
    }
    error_.clear();
    return true;
}

}  // namespace qx::host
