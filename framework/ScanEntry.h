#pragma once
// Scanning: shops count and receive with a barcode scanner that types the code and Enter. Every
// entry screen with a size grid has a scan field above its lines (Tfrm_Base_Entry_Body::Edit_Scan):
// - a barcode of d1809 names a SKU and a size position: 1 is added to that size of the SKU's
//   line, the line made when the document has none yet, and the cursor is back in the scan field
//   for the next code;
// - a style code alone starts a new line with that style, and colour and sizes are asked as when
//   the style is typed;
// - anything else is refused with a clear message and a beep, and nothing changes.
#include <QString>
#include <QStringList>

#include "framework/Export.h"

namespace qx::scan {

struct ScannedCode {
    enum class Kind { Unknown, Barcode, Style } kind = Kind::Unknown;
    QString style;      // K_ID
    QString colour;     // COL_ID (barcodes)
    QString colourName; // COL_NAME (barcodes)
    int position = -1;  // the size position 0..9 (barcodes)
    QStringList sizeNames;  // M0..M9 of the style's size group
};

// What a scanned code names, looked up with the screen's function code.
QX_FRAMEWORK_EXPORT ScannedCode resolve(const QString& funcNo, const QString& code);

}  // namespace qx::scan
