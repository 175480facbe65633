#pragma once
// What the report screens share: the refusal of an action before any query, the size titles
// of the current row's size group, and the warehouse-rights piece of their statements.
#include <QDate>
#include <QString>

class QLabel;
class QToolButton;
class TFrm_Base_Qry;
class TFrm_Base_Common;
class TFormPanel;
class TFrm_Sys_Filter;
class TClientDataSet;
class TDBGridEh;
class TDateEdit;

namespace qx::reports {

// True when the report has a statement; otherwise shows `message` (kind 5) and returns false.
bool hasQuery(const TFrm_Base_Qry* report, const QString& message);

// Sets the titles of S0..S9 to "尺码|" + the size names of the group `groupId` in `sizeGroups`
// (a dataset of d1006 rows); false when the group is not found (titles unchanged). The size
// columns are the fields fieldPrefix + 0..9.
bool setSizeTitlesOfGroup(TDBGridEh* grid, TClientDataSet* sizeGroups, const QString& groupId,
                          const QString& fieldPrefix = QStringLiteral("S"));

// " sys_USER_CK ON {table}.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='{G_UserId}') INNER JOIN "
// when warehouse rights are enforced, else "".
QString rightsJoin(const QString& warehouseColumnTable);

// The default range of a report dialog: the end today, the start stepped back a day at a time
// until its day of month is "01".
void setMonthToToday(TDateEdit* from, TDateEdit* to);

// The date-range row of a report dialog: the date edits BDATE and EDATE, the span label titDATE
// ("(30天)", following every change of either date) and the period preset button btn_dateset,
// on the next row when presetsOnNewRow; the edits become the form's preset targets.
struct DateRange {
    TDateEdit* from;
    TDateEdit* to;
    QLabel* span;
    QToolButton* presets;
};
DateRange addDateRange(TFrm_Base_Common* form, TFormPanel* panel, const QString& fromCaption, const QString& toCaption,
                       const QString& presetCaption, bool presetsOnNewRow = false);

// The day after a date text "YYYY-MM-DD", as "YYYY-MM-DD".
QString nextDay(const QDate& date);

// The date-range row on a condition dialog's own panel (Panel_Condition), presets on the same row.
DateRange addDateRange(TFrm_Sys_Filter* dialog, const QString& fromCaption, const QString& toCaption,
                       const QString& presetsCaption);

}  // namespace qx::reports
