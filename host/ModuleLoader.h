#pragma once
// Loads the stock module (libqx_ck.so beside the host) at run time and finds its entry by name.
#include <QLibrary>
#include <QString>

#include "framework/U_glo.h"

class QWidget;

namespace qx::host {

using QXProc2Function = void (*)(const Trecord& rec, QWidget* mainForm);

class ModuleLoader {
public:
    // The module file the host looks for: "libqx_ck.so" in the host's own folder.
    static QString defaultPath();

    // Loads the library and resolves "QXProc2". On failure entry() is null and error() says why,
    // in words the user can act on.
    bool load(const QString& path = defaultPath());
    QXProc2Function entry() const { return entry_; }
    QString error() const { return error_; }
    QString path() const { return library_.fileName(); }

private:
    QLibrary library_;
    QXProc2Function entry_ = nullptr;
    QString error_;
};

}  // namespace qx::host
