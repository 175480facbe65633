#include "reports/Frmqxck283f.h"

#include <QLabel>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/LinkForms.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/ReportCommon.h"

TQXCK283F* QXCK283F = nullptr;

TQXCK283F::TQXCK283F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK283F");
    SetCaption("销售进度表");
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "仓库代号:", 6, "CK_NAME");
    CK_NAME = CK_ID->NameLabel();
    Panel_Condition->NewRow();
    WL_ID = Panel_Condition->AddLinkEdit("WL_ID", "款    号:", 20, "WL_NAME");
    WL_NAME = WL_ID->NameLabel();
    Panel_Condition->NewRow();
    const qx::reports::DateRange dates = qx::reports::addDateRange(this, "销售日期:", "至：", "时段选择");
    BDATE = dates.from;
    EDATE = dates.to;
    titDATE = dates.span;
    btn_dateset = dates.presets;
    Lab_Note = new QLabel("系统提示：销售日期要在60天内。", Panel_Condition);
    Lab_Note->setObjectName("Lab_Note");
    Panel_Condition->AddControl(Lab_Note, QString(), 2);
    Panel_Condition->NewRow();
    chk_Sunday = Panel_Condition->AddCheckBox("chk_Sunday", "星期天深红色突出显示");
    chk_Sunday->setChecked(true);

    TFrm_Sys_Filter::FormCreate();
    auto* warehouses = new TFrm_Sys_LINK_CK(this);
    warehouses->init(AdoQry_Work, CK_ID, WL_ID, FuncNo, "", "");
    warehouseLink_ = warehouses;
    auto* styles = new TQX_LINK_K(this);
    styles->init(WL_ID, "");
    styleLink_ = styles;
}

void TQXCK283F::InitForm() {
    TFrm_Sys_Filter::InitForm();
    qx::reports::setMonthToToday(BDATE, EDATE);
    BDATEChange(BDATE);
}

void TQXCK283F::BDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TQXCK283F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape && qx::documents::closeFirstVisiblePickList({warehouseLink_, styleLink_})) {
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

void TQXCK283F::btn_okClick(QObject* Sender) {
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    if (BDATE->Date().daysTo(EDATE->Date()) > 60) {
        DISPINFO("日期范围 请填写在60天之内, 超60天表格栏数将无法显示!", 5);
        BDATE->setFocus();
        Abort();
    }
    CK_ID->CheckId();
    WL_ID->CheckId();
    TFrm_Sys_Filter::btn_okClick(Sender);
    const QString warehouse = CK_ID->text().trimmed();
    const QString style = WL_ID->text().trimmed();
    Condition = " (M.BDATE>='" + BDATE->Date().toString("yyyy-MM-dd") + "' AND M.BDATE<'" + qx::reports::nextDay(EDATE->Date()) +
                "') ";
    if (!warehouse.isEmpty()) Condition += "AND  (M.ck_id='" + SqlStr(warehouse) + "')";
    Description = " ●日期:" + BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd") + " ";
    if (!style.isEmpty()) Description += " ●款号:" + style;
    if (!warehouse.isEmpty()) Description += " ●仓库:" + warehouse;
    SetModalResult(mrOk);
}
