#pragma once
// What every document list, filter and entry screen shares: the warehouse-rights join, the
// approval columns and tint of lists, the day count and number range of filter dialogs, and the
// line checks and setter handling of entry screens. Written once here; each document family
// calls it with its own tables and texts.
#include <QColor>
#include <QDate>
#include <QString>
#include <QStringList>
#include <initializer_list>

#include "documents/common/DocumentKind.h"
#include "framework/DataSet.h"

class QLabel;
class QWidget;
class TDBGridEh;
class TDateEdit;
class TFrm_Base;
class TFrm_Sys_LINK;
struct TCellParams;

namespace qx::documents {

// ---- lists

// Hands the list's function code to a screen it owns and to that screen's pick lists, so that
// every statement they send carries it.
void handFunctionCode(TFrm_Base* screen, const QString& funcNo);

// The join of the signed-in user's warehouse rights, placed between "INNER JOIN" and the next
// joined table of a head query: with rights enforced (G_CHKCK)
//   " sys_USER_CK ON {warehouseTable}.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='{G_UserId}') INNER JOIN "
// and empty otherwise.
QString warehouseRightsJoin(const QString& warehouseTable = "d1007");

// Without approval (G_SK clear) a list shows no approval columns: removes, walking from the
// last column to the first, every column titled "审批" or "审批日期".
void removeApprovalColumns(TDBGridEh* grid);

// The background of a document that is not yet effective (t = 0) in approval mode: the colour
// value 0xFFFF80 (blue FF, green FF, red 80).
QColor unapprovedColor();
// Tints the cell when approval is on and the drawn row's `t` is 0; leaves it as it is otherwise.
void tintUnapproved(const TClientDataSet* heads, TCellParams& params);

// The head columns of a document list that names a counterparty: number, counterparty (code
// hidden behind its short name), salesperson, warehouse, dates, settlement, delivery method,
// maker, approval and remark; the delivery note number where the document has one.
struct CounterpartyTitles {
    QString code, name;              // "供应商代号", "供应商简称"
    QString deliveryCode, delivery;  // "进货代号", "进货方式"
};
QList<struct ListColumn> counterpartyListColumns(const CounterpartyTitles& titles, bool deliveryNote);

// ---- statements several kinds send alike (templates: "{number}" is the document's number)

// Creates the SKU rows (D1801) the lines of the document name and the register lacks.
QString skuCompletion(const QString& lineTable);
// Every line's cost price becomes its style's current DJ, its cost amount the line's quantity
// times that price.
QString costFill(const QString& lineTable);
// The head of a document with a counterparty and no delivery note: insert and update.
QString counterpartyHeadInsert(const QString& headTable);
QString counterpartyHeadUpdate(const QString& headTable);
// A line written by position with its cost price and amount as 0 (filled by costFill after).
QString lineInsertWithZeroCost(const QString& lineTable);

// ---- filter dialogs

// "(N天)" for the days from `from` to `to`, both counted.
QString dayCountText(const QDate& from, const QDate& to);
// A date as filter descriptions show it: "MM-DD".
QString shortDate(const QDate& date);
// The day-count label follows the two date edits (unless one of them shows the empty mask).
void updateDayCount(const TDateEdit* from, const TDateEdit* to, QLabel* label);
// Refuses a start date after the end date: "<开始日期> 不能大于 <结束日期>!", focus on the start
// date, and the operation ends (Abort).
void refuseReversedDates(TDateEdit* from, TDateEdit* to, const QString& message = "<开始日期> 不能大于 <结束日期>!");
// The document number range of a filter: either end alone works. Appends
// "{label}{from} 至 {to}" to the description and "  AND ({column}>='{from}')" /
// "  AND ({column}<='{to}')" to the condition for the ends that are given.
void appendNumberRange(QString& condition, QString& description, const QString& label,
                       const QString& column, const QString& from, const QString& to);

// ---- entry screens

// Closes the first visible pick list of `lists` (in that order); false when none was open.
bool closeFirstVisiblePickList(std::initializer_list<TFrm_Sys_LINK*> lists);

// The first line (0-based) with a negative size quantity (S0..S9) or a total (STOT) that is not
// above 0; -1 when every line is right.
int firstLineWithBadQuantities(const TClientDataSet* lines);
// The first line (0-based) whose size quantities S0..S9 are all 0; -1 when there is none.
int firstLineWithAllSizesZero(const TClientDataSet* lines);

// The text a line value is written into a batch with: the stored value in shortest form, ""
// for an empty cell.
QString lineText(const TClientDataSet* lines, int row, const QString& field);

// Validates the codes typed (not picked) into the lookup edits under `panel` that were not
// checked yet: an unknown code is reported with the edit's caption and the operation ends.
// Codes chosen from a pick list are not queried again.
void checkTypedCodes(QWidget* panel);

}  // namespace qx::documents
