#pragma once
// What a stocktake count sheet and a loss/gain sheet share: one warehouse, a date, who handled
// it and a note in the head; lines of signed quantities only (only an all-zero line is refused),
// inserted by position with the cost left to the style's cost price; the same list columns and
// line query on their own tables. Each kind states its own head statements.
#include "documents/common/DocumentKind.h"

namespace qx::documents {

struct CountSheetTexts {
    QString caption;          // "盘点录入", "损溢单"
    QString table;            // "d8300", "d8301": lines in table + "A"
    QString numberCaption;    // the number edit's caption
    QString checkCaption;     // the caption the number checks report with
};

// The entry description without its head statements (insertHead, updateHead).
DocumentKind countSheetKind(const CountSheetTexts& texts);

// The list columns of such sheets, the state columns of a stocktake before the note.
QList<ListColumn> countSheetListColumns(const QList<ListColumn>& stateColumns = {});

// The lines of a sheet with the prices fixed to zero ("%s" for the quoted number).
QString countSheetLineQuery(const QString& lineTable);

}  // namespace qx::documents
