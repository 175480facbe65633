#pragma once
// Reads the first worksheet of a spreadsheet file into rows of cells: .xlsx through liborcus,
// .xls (the old binary format) through FreeXL, .csv (UTF-8 or GB18030, "," separated, RFC 4180 quoting)
// through a small reader here. A file that cannot be read, a merged cell or a formula is a
// SheetError with a message for the user; nothing is half-read.
#include <QString>
#include <QStringList>
#include <stdexcept>
#include <vector>

namespace qx::setup {

struct Cell {
    QString text;          // the value as text (numbers in their shortest form)
    bool numeric = false;  // a number cell (written into SQL without quotes)
    bool empty() const { return text.isEmpty(); }
};

// Row 0 is the sheet's first row (the column titles in the templates).
using SheetRows = std::vector<std::vector<Cell>>;

class SheetError : public std::runtime_error {
public:
    explicit SheetError(const QString& message) : std::runtime_error(message.toStdString()), message_(message) {}
    QString message() const { return message_; }

private:
    QString message_;
};

// Picks the reader by the file's extension (.xlsx, .xls, .csv; case-insensitive).
SheetRows readSheet(const QString& fileName);
SheetRows readXlsx(const QString& fileName);
SheetRows readXls(const QString& fileName);
SheetRows readCsv(const QString& fileName);

// A cell reference as users see it: column 0 row 0 -> "A1".
QString cellName(int row, int column);

}  // namespace qx::setup
