#include "reports/ReportCommon.h"

#include <QDate>
#include <QLabel>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/Controls.h"
#include "framework/Frm_Base.h"
#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace qx::reports {

bool hasQuery(const TFrm_Base_Qry* report, const QString& message) {
    if (!report->QrySql.trimmed().isEmpty()) return true;
    DISPINFO(message, 5);
    return false;
}

bool setSizeTitlesOfGroup(TDBGridEh* grid, TClientDataSet* sizeGroups, const QString& groupId, const QString& fieldPrefix) {
    if (!sizeGroups || !sizeGroups->Active()) return false;
    if (!sizeGroups->Locate("M_ID", groupId)) return false;
    for (int i = 0; i <= 9; ++i) {
        TColumnEh* c = grid->ColumnByField(fieldPrefix + QString::number(i));
        TField* name = sizeGroups->FindField("m" + QString::number(i));
        if (c && name) c->Title = QStringLiteral("尺码|") + name->AsString();
    }
    grid->ColumnsChanged();
    return true;
}

QString rightsJoin(const QString& warehouseColumnTable) {
    if (!G_CHKCK) return {};
    return " sys_USER_CK ON " + warehouseColumnTable + ".CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" +
           SqlStr(G_UserId) + "') INNER JOIN ";
}

void setMonthToToday(TDateEdit* from, TDateEdit* to) {
    const QDate today = qx::ui::today();
    to->SetDate(today);
    from->SetDate(today);
    while (from->Date().toString("dd") != "01") from->SetDate(from->Date().addDays(-1));
}

DateRange addDateRange(TFrm_Base_Common* form, TFormPanel* panel, const QString& fromCaption, const QString& toCaption,
                       const QString& presetCaption, bool presetsOnNewRow) {
    DateRange r;
    r.from = panel->AddDateEdit("BDATE", fromCaption);
    r.to = panel->AddDateEdit("EDATE", toCaption);
    r.span = new QLabel("(30天)", panel);
    r.span->setObjectName("titDATE");
    panel->AddControl(r.span, QString());
    if (presetsOnNewRow) panel->NewRow();
    r.presets = form->CreateDatePresetButton(panel);
    r.presets->setObjectName("btn_dateset");
    r.presets->setText(presetCaption);
    panel->AddControl(r.presets, QString());
    panel->NewRow();
    form->SetDateEdits(r.from, r.to);
    for (TDateEdit* date : {r.from, r.to})
        qx::connectGuarded(date, &QDateEdit::dateChanged, form,
                           [r] { qx::documents::updateDayCount(r.from, r.to, r.span); });
    return r;
}

QString nextDay(const QDate& date) { return date.addDays(1).toString("yyyy-MM-dd"); }

DateRange addDateRange(TFrm_Sys_Filter* dialog, const QString& fromCaption, const QString& toCaption,
                       const QString& presetsCaption) {
    return addDateRange(dialog, dialog->Panel_Condition, fromCaption, toCaption, presetsCaption, false);
}

}  // namespace qx::reports
