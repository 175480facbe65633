#pragma once
// The hang-tag label list: one row per physical tag, the source lines both tag dialogs read
// (style, colour, counts, size names and one barcode per size), the expansion of source lines
// into tag rows, and the file that keeps the list on this machine between runs.
//
// How screens use it
//   qx::labels::DefineLabelList(AdoQry_Main);                       // fields in grid order
//   opensql(AdoQry_Lines, FuncNo, qx::labels::ReceiptLinesSql(noid), ...);
//   qx::labels::AppendTags(AdoQry_Lines, list);                     // rows per size and count
//   const auto r = qx::labels::LoadLabelFile(path, list);           // r.ok, r.problem
//   qx::labels::SaveLabelFile(path, list);
//
// The label file ("CLTZ" in the program folder) is UTF-8 text of our own:
//   line 1: "QXCK-LABELS 1"                      (magic and format version)
//   line 2: the field names, tab-separated       (must be exactly the list's fields, in order)
//   then one line per tag: the values, tab-separated; in each value "\\" stands for a
//   backslash, "\t" for a tab, "\n" for a newline, "\r" for a carriage return, and "\N" alone
//   for an empty (null) value
//   last line: "END {row count}"                 (a file cut short has no such line)
// A file that breaks any of these rules is refused as a whole: the list starts empty and the
// caller shows why.
#include <QString>
#include <QStringList>

class TClientDataSet;

namespace qx::labels {

// The list's fields in grid order: tm, K_ID, WL_NAME, DW_NAME, M, m_index (hidden), col_ID,
// COL_NAME, PP, PFJ, cl.
void DefineLabelList(TClientDataSet* list);
QStringList LabelFieldNames();

// The source lines of one purchase receipt: received quantities as counts.
QString ReceiptLinesSql(const QString& noid);
// Every colour of one style with counts 0.
QString StyleLinesSql(const QString& styleCode);
// The barcode a size column k (0-9) gets by the style's rule, as the SELECT computes it
// (exposed for tests and documentation).
QString BarcodeExpression(int k);

// Appends, for each source line and size column k with count S{k} > 0, S{k} tag rows (posted one
// by one). Returns the number of rows appended.
int AppendTags(TClientDataSet* source, TClientDataSet* list);

struct LoadResult {
    bool ok = true;
    QString problem;  // why the file was refused (empty when ok or when there was no file)
};
// Replaces the list's rows with the file's. A missing file gives an empty list and ok; a file
// that is not a complete label file gives an empty list, ok = false and the reason.
LoadResult LoadLabelFile(const QString& path, TClientDataSet* list);
// Writes the list's rows (throws EDatabaseError when the file cannot be written).
void SaveLabelFile(const QString& path, TClientDataSet* list);
// The file's text for a list (the format above).
QString LabelFileText(TClientDataSet* list);

}  // namespace qx::labels
