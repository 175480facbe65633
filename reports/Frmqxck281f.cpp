#include "reports/Frmqxck281f.h"

#include <QLabel>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/LinkForms.h"
#include "framework/U_function.h"
#include "reports/ReportCommon.h"

TQXCK281F* QXCK281F = nullptr;

TQXCK281F::TQXCK281F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK281F");
    SetCaption("销售排行");
    Panel_Condition->AddControl(new QLabel("数据来源：", Panel_Condition), QString());
    o1 = Panel_Condition->AddCheckBox("o1", "销售单");
    o2 = Panel_Condition->AddCheckBox("o2", "POS销售");
    Panel_Condition->NewRow();
    const qx::reports::DateRange dates = qx::reports::addDateRange(this, "销售日期：", "至", "时段选择");
    BDATE = dates.from;
    EDATE = dates.to;
    titDATE = dates.span;
    btn_dateset = dates.presets;
    Panel_Condition->AddControl(new QLabel("仓库区分：", Panel_Condition), QString());
    o3 = Panel_Condition->AddCheckBox("o3", "本公司仓库");
    o4 = Panel_Condition->AddCheckBox("o4", "分销商仓库");
    Panel_Condition->NewRow();
    CK_ID1 = Panel_Condition->AddLinkEdit("CK_ID1", "仓库代号：", 6, "CK_NAME");
    CK_NAME = CK_ID1->NameLabel();
    Panel_Condition->NewRow();
    Panel_Condition->AddControl(new QLabel("排行项目：", Panel_Condition), QString());
    C1 = Panel_Condition->AddCheckBox("C1", "滞销款");
    C2 = Panel_Condition->AddCheckBox("C2", "仓库");
    Panel_Condition->NewRow();
    C3 = Panel_Condition->AddCheckBox("C3", "类别");
    C4 = Panel_Condition->AddCheckBox("C4", "颜色");
    C5 = Panel_Condition->AddCheckBox("C5", "品牌");
    Panel_Condition->NewRow();
    C6 = Panel_Condition->AddCheckBox("C6", "会员消费");
    Panel_Condition->NewRow();
    D1 = Panel_Condition->AddCheckBox("D1", "汇总未发生销售数据的项目库存<对仓库，类别，颜色，品牌项生效>");
    for (QCheckBox* c : {o1, o2, o3, o4, C1, C2, C3, C4, C5, C6, D1}) c->setChecked(true);

    TFrm_Sys_Filter::FormCreate();
    // a warehouse entered by its id is taken as it is, whatever the user's warehouse rights
    auto* link = new TFrm_Sys_LINK_CK(this);
    link->init(AdoQry_Work, CK_ID1, CK_ID1, FuncNo, "", "");
    link->SetSource("d1007", "CK_ID", "CK_NAME");
    warehouseLink_ = link;
}

void TQXCK281F::InitForm() {
    TFrm_Sys_Filter::InitForm();
    qx::reports::setMonthToToday(BDATE, EDATE);
    BDATEChange(BDATE);
}

void TQXCK281F::BDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TQXCK281F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape && qx::documents::closeFirstVisiblePickList({warehouseLink_})) {
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

QString TQXCK281F::StartValue() const { return "'" + BDATE->Date().toString("yyyy-MM-dd") + "'"; }
QString TQXCK281F::EndValue() const { return "'" + qx::reports::nextDay(EDATE->Date()) + "'"; }

void TQXCK281F::btn_okClick(QObject* Sender) {
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    if (!o1->isChecked() && !o2->isChecked()) {
        DISPINFO("【数据来源】必须选择一项进行查询!", 5);
        Abort();
    }
    if (!o3->isChecked() && !o4->isChecked() && CK_ID1->text().trimmed().isEmpty()) {
        DISPINFO("【仓库区分】必须选择一项进行查询!", 5);
        Abort();
    }
    CK_ID1->CheckId();
    TFrm_Sys_Filter::btn_okClick(Sender);
    QStringList sources;
    if (o1->isChecked()) sources << o1->text();
    if (o2->isChecked()) sources << o2->text();
    Description = "销售日期：" + BDATE->Date().toString("MM-dd") + "至" + EDATE->Date().toString("MM-dd") + " " +
                  " 本排行表的数据来源为：" + sources.join("、");
    SetModalResult(mrOk);
}
