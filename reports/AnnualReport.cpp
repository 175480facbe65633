#include "reports/AnnualReport.h"

#include <QAction>
#include <QToolButton>
#include <QVBoxLayout>

#include "documents/common/DocumentCommon.h"
#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/LinkForms.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "reports/ReportCommon.h"

namespace qx::reports {

QString pseudoYearRows() {
    return " SELECT convert(varchar(20)," + kPseudoYear +
           ") as YY, SHOW_WIDTH, 0 as MONEY  FROM SYS_GROUP  where(GROUP_ID = 263)  UNION  ALL ";
}

QString whereClause(const QString& condition) { return condition.isEmpty() ? QString() : " where " + condition; }

QStringList monthFields() {
    QStringList out;
    for (int m = 1; m <= 12; ++m) out << QString::number(m);
    return out;
}

QStringList monthTitles() {
    return {"一月", "二月", "三月", "四月", "五月", "六月", "七月", "八月", "九月", "十月", "十一月", "十二月"};
}

}  // namespace qx::reports

// ---------------------------------------------------------------- the condition dialog

TFrm_AnnualFilter::TFrm_AnnualFilter(QWidget* Owner, const QString& name, const QString& caption) : TFrm_Sys_Filter(Owner) {
    setObjectName(name);
    SetCaption(caption);
    const auto range = qx::reports::addDateRange(this, Panel_Condition, "帐目日期", "至：", "时段选择");
    BDATE = range.from;
    EDATE = range.to;
    titDATE = range.span;
    btn_dateset = range.presets;
    K_ID = Panel_Condition->AddLinkEdit("K_ID", "款    号", 20, "K_NAME");
    K_NAME = K_ID->NameLabel();
    FormCreate();
}

void TFrm_AnnualFilter::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    // the current year up to today
    const QDate today = qx::ui::today();
    BDATE->SetText(today.toString("yyyy") + "-01-01");
    EDATE->SetDate(today);
    auto* link = new TQX_LINK_K(this);
    link->init(K_ID);
    StyleLink = link;
    K_ID->CheckOnExit = true;
}

void TFrm_AnnualFilter::InitForm() {
    TFrm_Sys_Filter::InitForm();
    datechange(BDATE);
}

void TFrm_AnnualFilter::datechange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TFrm_AnnualFilter::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape && StyleLink && StyleLink->Visible()) {
        StyleLink->Close();
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

void TFrm_AnnualFilter::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    Condition = " (BDATE>='" + SqlStr(BDATE->Text()) + "' AND BDATE<'" + qx::reports::nextDay(EDATE->Date()) + "')";
    const QString style = K_ID->text().trimmed();
    Condition_t("=", "K_ID", style);
    const QLabel* dateLabel = Panel_Condition->CaptionOf(BDATE);
    const QLabel* styleLabel = Panel_Condition->CaptionOf(K_ID);
    Description = "●" + (dateLabel ? dateLabel->text() : QString("帐目日期")) + BDATE->Text() + " 至 " + EDATE->Text();
    if (!style.isEmpty()) Description += " ●" + (styleLabel ? styleLabel->text() : QString("款    号")) + "=" + style;
    SetModalResult(mrOk);
}

// ---------------------------------------------------------------- the report form

TFrm_AnnualReport::TFrm_AnnualReport(QWidget* Owner, const QString& name, const QString& caption) : TFrm_Base_Qry(Owner) {
    setObjectName(name);
    SetCaption(caption);
    Lab_Head = new QLabel("物料资料：", this);
    Lab_Head->setObjectName("Lab_Head");
    MainLayout()->insertWidget(0, Lab_Head);
    FormCreate();
}

void TFrm_AnnualReport::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    Act_Locate->setText("汇总");
    Act_Locate->setToolTip("汇总");
    DBGridEh->SetFooterRowVisible(true);
    AdoQry_Main->AfterOpen = [this](TDataSet*) { DropPseudoYear(); };
}

void TFrm_AnnualReport::Start(const Trecord& rec, TFrm_AnnualFilter* dialog) {
    TFrm_Base_Qry::InitForm(rec);
    WlField = "wl_id";
    SumFields = qx::reports::monthFields();
    Filter = dialog;
    FilterForm = dialog;
    Filter->FuncNo = FuncNo;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TFrm_AnnualReport::BuildSql() const {
    return "EXEC SYS_JX @param1=" + QuotedStr(RowSource(Filter->Condition)) + ",@param2='" + "wl_id" + "',@param3='" + "ck_name" +
           "',@param4='" + "kc" + "',@selectstr='" + "',@innerstr='" + "order by wl_id" + "'";
}

void TFrm_AnnualReport::GetData() {
    TFrm_Base_Qry::GetData();
    if (AdoQry_Main->Active()) ShowColumns();
}

void TFrm_AnnualReport::DropPseudoYear() {
    // the pseudo-year only guarantees the month columns; it is no year of the shop. Dropped as
    // the rows arrive, so that the grid, its footers and the chart never see it.
    if (!AdoQry_Main->FindField("wl_id")) return;
    ScopedDisableControls frozen(AdoQry_Main);
    while (AdoQry_Main->Locate("wl_id", qx::reports::kPseudoYear)) AdoQry_Main->Delete();
    if (!AdoQry_Main->IsEmpty()) AdoQry_Main->First();
}

void TFrm_AnnualReport::ShowColumns() {
    TDBGridEh* g = DBGridEh;
    if (TColumnEh* c = g->ColumnByField("wl_id")) {
        c->Title = "年份";
        c->Width = 90;
    }
    const QStringList fields = qx::reports::monthFields();
    const QStringList titles = qx::reports::monthTitles();
    for (int i = 0; i < fields.size(); ++i)
        if (TColumnEh* c = g->ColumnByField(fields[i])) {
            c->Title = titles[i];
            c->Width = 84;  // a month of a busy shop: 235288.45
            c->DisplayFormat = "0.00";  // amounts, to the cent
        }
    if (TColumnEh* c = g->ColumnByField("total")) {
        c->Title = "本年合计";
        c->Width = 104;
        c->DisplayFormat = "0.00";
        c->FontColor = Qt::blue;
    }
    g->ColumnsChanged();
}

void TFrm_AnnualReport::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Lab_Condition->setText(Filter->Description);
    QrySql = BuildSql();
    TProgressRun::Run(this, "正在汇总…", [this] { GetData(); });
}

void TFrm_AnnualReport::Act_RefreshExecute(QObject*) {
    if (!qx::reports::hasQuery(this, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!")) return;
    TProgressRun::Run(this, "正在汇总…", [this] { GetData(); });
}

qx::chart::ChartSpec TFrm_AnnualReport::ChartSpec() const {
    if (!AdoQry_Main->Active()) return {};
    const TField* label = AdoQry_Main->FindField("wl_id");
    if (!label) return {};
    QStringList values;
    for (const QString& month : qx::reports::monthFields())
        if (const TField* f = AdoQry_Main->FindField(month)) values << f->FieldName;
    if (values.isEmpty()) return {};
    return {qx::chart::ChartKind::Bars, qx::chart::Axis::Columns, label->FieldName, values};
}
