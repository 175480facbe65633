#pragma once
// The four import sheets (goods with opening stock, customers, suppliers, members) as data: each
// column's title, target, kind and length, in sheet order; and the scan that checks a read sheet
// row by row before anything is written.
#include <QString>
#include <QStringList>
#include <functional>
#include <set>
#include <vector>

#include "setup/SheetReader.h"

namespace qx::setup {

enum class ColumnKind {
    Text,         // stored as text, at most maxLength characters
    Quantity,     // a whole number of pieces, 0 or more (empty = 0)
    Number,       // a price or amount (empty = 0)
    Date,         // "YYYY-MM-DD" (a date cell of the sheet is accepted)
    BarcodeRule,  // empty, 0, 1, 3 or 5
};

struct ColumnSpec {
    const char* field;  // staging or table column
    const char* title;  // the sheet's column title
    ColumnKind kind = ColumnKind::Text;
    int maxLength = 0;  // Text: characters allowed by the column the value ends in
    bool required = false;
};

struct SheetSpec {
    const char* name;          // "商品资料"
    const char* templateName;  // file name of the blank template without extension ("imp_cl")
    std::vector<ColumnSpec> columns;
    std::vector<int> keyColumns;  // a row's identity; two rows with the same key are duplicates
    const char* keyName;          // what the key is called in messages ("SKU")
};

const SheetSpec& goodsSheet();
const SheetSpec& customerSheet();
const SheetSpec& supplierSheet();
const SheetSpec& memberSheet();

struct Problem {
    int sheetRow = 0;  // 1-based row number as the spreadsheet shows it
    QString column;    // the column's title
    QString reason;
};

struct ScanResult {
    std::vector<QStringList> rows;   // data rows, one text per column of the sheet
    std::vector<std::vector<bool>> numeric;  // cells that came as numbers
    std::vector<int> sheetRows;      // the sheet row number of each data row
    std::vector<Problem> problems;   // in row order
    std::set<int> badRows;           // indexes into rows
    int goodRows() const { return int(rows.size() - badRows.size()); }
};

// Checks every data row (the first sheet row holds the titles; empty rows are skipped).
// progress(done, total) is called now and then.
ScanResult scanSheet(const SheetSpec& spec, const SheetRows& sheet,
                     const std::function<void(int, int)>& progress = {});

// The rows to write: all of them when clean, else the good ones (skipBad) or none.
std::vector<int> acceptedRows(const ScanResult& scan, bool skipBad);

// The sheet's titles as one CSV line (templates).
QString titleLine(const SheetSpec& spec);

}  // namespace qx::setup
