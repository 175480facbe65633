#include "reports/MovementReport.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/ProgressDialog.h"
#include "reports/ReportCommon.h"

TFrm_MovementFilter::TFrm_MovementFilter(QWidget* Owner, const QString& name, const QString& caption, bool detail,
                                         bool kindColumns)
    : TFrm_Sys_Filter(Owner), detail_(detail) {
    setObjectName(name);
    SetCaption(caption);
    const auto range = qx::reports::addDateRange(this, Panel_Condition, "帐目日期:", "至", "时段选择", true);
    BDATE = range.from;
    EDATE = range.to;
    titDATE = range.span;
    btn_dateset = range.presets;
    CK_ID1 = Panel_Condition->AddLinkEdit("CK_ID1", "仓库代号:", 6, "CK_NAME");
    CK_NAME = CK_ID1->NameLabel();
    Panel_Condition->NewRow();
    wl_id = Panel_Condition->AddEdit("wl_id", "条码/款号:", 30);
    wl_name = new QLabel(Panel_Condition);
    wl_name->setObjectName("wl_name");
    Panel_Condition->AddControl(wl_name, QString());
    Panel_Condition->NewRow();
    Lab_Show = new QLabel("报表显示:", Panel_Condition);
    Lab_Show->setObjectName("Lab_Show");
    Panel_Condition->AddControl(Lab_Show, QString());
    c0 = new QRadioButton("分色分码(默认)", Panel_Condition);
    c0->setObjectName("c0");
    c1 = new QRadioButton("仅按款号", Panel_Condition);
    c1->setObjectName("c1");
    c2 = new QRadioButton("按分类", Panel_Condition);
    c2->setObjectName("c2");
    c0->setChecked(true);
    Panel_Condition->NewRow();
    for (QRadioButton* r : {c0, c1, c2}) Panel_Condition->AddControl(r, QString());
    Panel_Condition->NewRow();
    YS = Panel_Condition->AddCheckBox("YS", "只显示有业务的商品(如输入款号/货号时此项无效)");
    YS->setChecked(true);
    if (kindColumns) {
        Panel_Condition->NewRow();
        showAllDate = Panel_Condition->AddCheckBox("showAllDate", "只显示有业务的类别(栏目)");
        showAllDate->setChecked(true);
    }
    StoredProps = {"c0", "c1", "c2", "YS"};
    FormCreate();
}

void TFrm_MovementFilter::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    qx::connectGuarded(wl_id, &QLineEdit::editingFinished, this, [this] { wl_idExit(wl_id); });
    if (!G_CKCOUNT_R) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Work, CK_ID1, CK_ID1, FuncNo, "", "");
        CK_ID1->OnButtonClick = [this](QObject*) { WarehouseLink->Show(); };
    }
}

void TFrm_MovementFilter::InitForm() {
    TFrm_Sys_Filter::InitForm();
    qx::reports::setMonthToToday(BDATE, EDATE);
    BDATEChange(BDATE);
}

void TFrm_MovementFilter::BDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TFrm_MovementFilter::btn_datesetClick(QObject*) { btn_dateset->showMenu(); }

bool TFrm_MovementFilter::CheckArticle() {
    const QString text = wl_id->text();
    if (text.isEmpty()) return true;
    opensql(AdoQry_Work, FuncNo,
            " SELECT WL_ID,M_INDEX FROM d1809 WHERE tm='" + SqlStr(text) + "' or k_id='" + SqlStr(text) + "'", 0, 0, {}, {},
            false, "1");
    if (!AdoQry_Work->IsEmpty()) return true;
    DISPINFO("该【条码/款号】不存在，请重新输入!(可以为空)", 5);
    wl_id->setFocus();
    return false;
}

void TFrm_MovementFilter::wl_idExit(QObject*) {
    QWidget* next = QApplication::focusWidget();
    if (next && next->objectName() == "btn_Cancel") return;
    if (next == btn_cancel) return;
    CheckArticle();
}

void TFrm_MovementFilter::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape && WarehouseLink && WarehouseLink->Visible()) {
        WarehouseLink->Close();
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

bool TFrm_MovementFilter::FormCloseQuery() {
    SaveProps();
    return true;
}

void TFrm_MovementFilter::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    if (!CheckArticle()) Abort();
    if (showAllDate) HideEmptyKinds = showAllDate->isChecked();
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    const QString grouping = c0->isChecked() ? "0" : c1->isChecked() ? "1" : "2";
    const QString warehouse = CK_ID1->text().trimmed();
    const QString article = wl_id->text().trimmed();
    SqlText = QString(detail_ ? "EXEC SYS_ZM @param=1,@param3=" : "EXEC SYS_ZM @param3=") + grouping + ",@BDATE='" +
              SqlStr(BDATE->Text()) + "',@EDATE='" + qx::reports::nextDay(EDATE->Date()) + "',@ck_id1='" + SqlStr(warehouse) + "'";
    if (!article.isEmpty()) SqlText += ",@wl_id='" + SqlStr(article) + "'";
    if (article.isEmpty() && YS->isChecked()) SqlText += ",@param1=" + boltos(true);
    if (G_CHKCK) SqlText += ",@CheckCk=1,@userid='" + SqlStr(G_UserId) + "'";
    Description = BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd") + " " + titDATE->text();
    if (!article.isEmpty()) Description += " ●条码/款号:" + wl_id->text();
    if (!warehouse.isEmpty()) Description += " ●仓库=" + CK_ID1->text();
    SetModalResult(mrOk);
}

// ---------------------------------------------------------------- the report form

TFrm_MovementReport::TFrm_MovementReport(QWidget* Owner, const QString& name, const QString& caption, bool withCost)
    : TFrm_Base_Qry(Owner), withCost_(withCost) {
    setObjectName(name);
    SetCaption(caption);
    Act_ShowReport->setEnabled(false);
    Act_ShowReport->setVisible(false);
    DBGridEh->AutoColumns = false;
    DBGridEh->ClearColumns();
    DBGridEh->SetFooterRowVisible(true);
}

void TFrm_MovementReport::AddArticleColumns() {
    DBGridEh->AddColumn("wl_id", "条码", 110);
    DBGridEh->AddColumn("K_ID", "款号", 90);
    DBGridEh->AddColumn("wl_name", "商品名称", 120);
    DBGridEh->AddColumn("PP_NAME", "品牌", 60);
    DBGridEh->AddColumn("wl_gg", "颜色", 60);
    DBGridEh->AddColumn("dw_name", "尺码", 50);
}

void TFrm_MovementReport::Start(const Trecord& rec, TFrm_MovementFilter* dialog) {
    TFrm_Base_Qry::InitForm(rec);
    KeyField = "NOID";
    WlField = "wl_id";
    Filter = dialog;
    FilterForm = dialog;
    Filter->FuncNo = FuncNo;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TFrm_MovementReport::BuildSql() const {
    return withCost_ ? Filter->SqlText + ",@param2=" + boltos(ShowCost) : Filter->SqlText;
}

void TFrm_MovementReport::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    QrySql = BuildSql();
    Lab_Condition->setText(Filter->Description);
    Refreshing = true;
    TProgressRun::Run(this, "正在汇总进销存数据…", [this] { GetData(); });
    Refreshing = false;
    AfterQuery();
}

void TFrm_MovementReport::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何查询参数,请按【F3】呼出查询选项!")) return;
    Refreshing = true;
    TProgressRun::Run(this, "正在汇总进销存数据…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    Refreshing = false;
    AfterQuery();
}
