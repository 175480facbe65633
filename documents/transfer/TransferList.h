#pragma once
// What the transfer list and the arrival-check list share: the configuration texts, the line
// query, the head columns, and the discrepancy column Y_WC whose 0 is shown as an empty cell.
#include "documents/common/DocumentKind.h"
#include "framework/Types.h"

class TCellParams;
class TColumnEh;
class TClientDataSet;
class TDBGridEh;
class TFrm_Base_Entry_Head;

namespace qx::transfer {

// The configuration of a transfer list ("调拨单" or "调拨到货点收") with its line query.
qx::documents::DocumentListKind listKind(const QString& caption, const QString& lineQuery);
// The transfer's line query, "%s" standing for the quoted number; the arrival check's differs
// only in two blanks before "D8303A.SMONEY".
QString lineQuery(bool arrival);
// The filter of both lists: date, sending and receiving warehouse, number range.
const qx::documents::DocumentFilterKind& filterKind(const QString& caption);
// The received quantities Y0..Y9 (and their total YTOT where the lines have it) as the last
// columns of a line grid, titled "收货填写|-", each shown exactly when the size column of the
// same position is; `typed`: whether their cells take typing.
void addReceiptColumns(TDBGridEh* grid, const TClientDataSet* lines, bool typed);
// The list's lines grid shows the amount summed and the received quantities too (once its
// columns are built).
void showReceiptsInLines(TFrm_Base_Entry_Head* list);
// A discrepancy of 0 is shown as an empty cell (DEROZERO).
void blankZeroDiscrepancy(const TClientDataSet* heads, TColumnEh* column, TCellParams& params);

}  // namespace qx::transfer
