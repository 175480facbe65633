#pragma once
// Screenshots for tests and reviews: grabs a widget (shown offscreen if needed) to
// $QXCK_BINARY_DIR/screenshots/{name}.png (./screenshots when the variable is unset).
#include <QString>

#include "framework/Export.h"

class QWidget;

namespace qx {
// Returns the file written, or an empty string when it could not be written.
QX_FRAMEWORK_EXPORT QString saveScreenshot(QWidget* widget, const QString& name);
}  // namespace qx
