#pragma once
// Reads a PDF back with Poppler: its page count and a page as a picture.
#include <poppler-qt6.h>

#include <QImage>
#include <QString>

namespace qx::test {

// -1 when the file is not a readable PDF.
inline int pdfPageCount(const QString& fileName) {
    const auto document = Poppler::Document::load(fileName);
    return document && !document->isLocked() ? document->numPages() : -1;
}

// Page `index` (0-based) at `dpi`; a null image when there is no such page.
inline QImage pdfPage(const QString& fileName, int index, int dpi) {
    const auto document = Poppler::Document::load(fileName);
    if (!document || index >= document->numPages()) return {};
    const auto page = document->page(index);
    return page ? page->renderToImage(dpi, dpi) : QImage();
}

}  // namespace qx::test
