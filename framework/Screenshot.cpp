#include "framework/Screenshot.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QWidget>

namespace qx {

QString saveScreenshot(QWidget* widget, const QString& name) {
    QString base = qEnvironmentVariable("QXCK_BINARY_DIR");
    if (base.isEmpty()) base = QDir::currentPath();
    QDir dir(base);
    if (!dir.mkpath("screenshots")) return {};
    const QString file = dir.filePath("screenshots/" + name + ".png");
    const bool wasVisible = widget->isVisible();
    if (!wasVisible) widget->show();
    if (!widget->testAttribute(Qt::WA_Resized)) widget->adjustSize();
    QApplication::processEvents();
    const bool ok = widget->grab().save(file, "PNG");
    if (!wasVisible) widget->hide();
    return ok ? file : QString();
}

}  // namespace qx
