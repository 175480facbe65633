#pragma once
// Reads the barcodes in a picture back with ZBar: "EAN-13:6901234567892", "CODE-128:P2R1", ...
#include <zbar.h>

#include <QImage>
#include <QStringList>

namespace qx::test {

using namespace zbar;

inline QStringList readBarcodes(const QImage& picture) {
    const QImage gray = picture.convertToFormat(QImage::Format_Grayscale8);
    QByteArray pixels;
    pixels.reserve(gray.width() * gray.height());
    for (int y = 0; y < gray.height(); ++y)
        pixels.append(reinterpret_cast<const char*>(gray.constScanLine(y)), gray.width());
    zbar_image_scanner_t* scanner = zbar_image_scanner_create();
    zbar_image_scanner_set_config(scanner, ZBAR_NONE, ZBAR_CFG_ENABLE, 1);
    zbar_image_t* image = zbar_image_create();
    zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
    zbar_image_set_size(image, unsigned(gray.width()), unsigned(gray.height()));
    zbar_image_set_data(image, pixels.constData(), unsigned(pixels.size()), nullptr);
    QStringList found;
    if (zbar_scan_image(scanner, image) > 0) {
        for (const zbar_symbol_t* s = zbar_image_first_symbol(image); s; s = zbar_symbol_next(s))
            found << QString::fromLatin1(zbar_get_symbol_name(zbar_symbol_get_type(s))) + ":" +
                         QString::fromUtf8(zbar_symbol_get_data(s));
    }
    zbar_image_destroy(image);
    zbar_image_scanner_destroy(scanner);
    found.sort();
    return found;
}

}  // namespace qx::test
