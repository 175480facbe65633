#pragma once
// The number of pages of a PDF file Qt wrote (its page objects), -1 when it cannot be read.
#include <QFile>
#include <QString>

namespace qx::test {

inline int pdfPageCount(const QString& fileName) {
    QFile f(fileName);
    if (!f.open(QIODevice::ReadOnly)) return -1;
    const QByteArray bytes = f.readAll();
    if (!bytes.startsWith("%PDF")) return -1;
    int pages = 0;
    for (const char* end : {"\n", "\r", "/", " "}) pages += int(bytes.count(QByteArray("/Type /Page") + end));
    return pages;
}

}  // namespace qx::test
