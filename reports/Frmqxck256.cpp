#include "reports/Frmqxck256.h"

#include <QAction>
#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>

#include "reports/Frmqxck256f.h"
#include "framework/ProgressDialog.h"
#include "reports/ReportCommon.h"

TQXCK256* QXCK256 = nullptr;

TQXCK256::TQXCK256(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK256");
    SetCaption("库存分布查询");
    Lab_Head = new QLabel("物料资料：", this);
    Lab_Head->setObjectName("Lab_Head");
    MainLayout()->insertWidget(0, Lab_Head);
    FormCreate();
}

void TQXCK256::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    Act_ShowReport->setEnabled(false);
    Act_ShowReport->setVisible(false);
    AdoQry_Main->AfterOpen = [this](TDataSet* ds) { AdoQry_MainAfterOpen(ds); };
}

void TQXCK256::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    KeyField = "NOID";  // document key
    WlField = "wl_id";  // article key
    Filter = new TQXCK256F(this);
    QXCK256F = Filter;
    FilterForm = Filter;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TQXCK256::InnerSql() const {
    QString sql =
        "SELECT D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME AS CK_NAME, SUM(D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + "
        "D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9) as KC FROM D1802 INNER JOIN D1801 on D1802.WL_ID = "
        "D1801.WL_ID  INNER JOIN D1007 on D1802.CK_ID = D1007.CK_ID INNER JOIN " +
        qx::reports::rightsJoin("d1007") + "D1800 on D1801.K_ID = D1800.K_ID ";
    if (!Filter->Condition.isEmpty()) sql += " where " + Filter->Condition;
    sql += " GROUP BY D1800.K_ID, D1007.CK_ID+'-'+D1007.CK_NAME";
    return sql;
}

QString TQXCK256::BuildSql() const {
    return "EXEC SYS_JX @param1=" + QuotedStr(InnerSql()) + ",@param2='" + "wl_id" + "',@param3='" + "ck_name" +
           "',@param4='" + "kc" + "',@selectstr='" + ",D1800.WL_NAME,D1800.DW_NAME, D1009.PP_NAME" + "',@innerstr='" +
           "INNER JOIN D1800 ON D1800.K_ID=D.WL_ID INNER JOIN D1009 ON D1800.PP_ID=D1009.PP_ID   ORDER BY D1800.K_ID'";
}

void TQXCK256::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Lab_Condition->setText(Filter->Description);
    QrySql = BuildSql();
    Refreshing = true;
    TProgressRun::Run(this, "正在查询库存分布…", [this] { GetData(); });
    Refreshing = false;
    AdoQry_MainAfterOpen(AdoQry_Main);
}

void TQXCK256::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何查询参数,请按【F3】呼出查询选项!")) return;
    TProgressRun::Run(this, "正在查询库存分布…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    AdoQry_MainAfterOpen(AdoQry_Main);
}

void TQXCK256::AdoQry_MainAfterOpen(TDataSet*) {
    TDBGridEh* g = DBGridEh;
    if (g->ColumnCount() == 0) return;
    // wl_ID, wl_NAME, dw_name, PP_name first, then the warehouses and the total as they came
    QStringList order{"wl_ID", "wl_NAME", "dw_name", "PP_name"};
    QStringList fields;
    for (const QString& f : order)
        if (g->ColumnByField(f)) fields << g->ColumnByField(f)->FieldName;
    for (int i = 0; i < g->ColumnCount(); ++i)
        if (!fields.contains(g->Columns(i)->FieldName, Qt::CaseInsensitive)) fields << g->Columns(i)->FieldName;
    g->AutoColumns = false;
    g->ClearColumns();
    for (const QString& f : fields) g->AddColumn(f, f);
    auto at = [g](int i) { return i < g->ColumnCount() ? g->Columns(i) : nullptr; };
    if (TColumnEh* c = at(0)) {
        c->Title = "款号";
        c->Width = 100;
    }
    if (TColumnEh* c = at(1)) {
        c->Title = "名称";
        c->Width = 200;
    }
    if (TColumnEh* c = at(2)) {
        c->Title = "单位";
        c->Width = 60;
        c->Alignment = Qt::AlignCenter;
    }
    if (TColumnEh* c = at(3)) c->Title = "品牌";
    // the brand column keeps its default width: the width and centring go to position 2 again
    if (TColumnEh* c = at(2)) {
        c->Width = 60;
        c->Alignment = Qt::AlignCenter;
    }
    if (TColumnEh* c = g->ColumnByField("total")) c->Title = "小计";
    g->Columns(g->ColumnCount() - 1)->FontColor = Qt::blue;
    g->ColumnsChanged();
    g->AutoColumns = true;
}

void TQXCK256::Drawzert(TColumnEh* Column, TCellParams& Params) {
    TField* f = Column->Field();
    if (!f || f->IsNull()) return;
    static const QStringList text{"WL_ID", "PP_NAME", "WL_NAME", "DW_NAME"};
    if (text.contains(Column->FieldName, Qt::CaseInsensitive)) return;
    bool numeric = false;
    const double v = f->Value().toDouble(&numeric);
    if (!numeric || v != 0) return;
    if (Params.Selected) Params.Background = QColor(0xC9, 0xD0, 0xE2);  // $E2D0C9 (BGR)
    else if (AdoQry_Main->RecNo() % 2 == 0) Params.Background = DBGridEh->palette().color(QPalette::AlternateBase);
    else Params.Background = DBGridEh->palette().color(QPalette::Base);
    Params.Text = "";
}

void TQXCK256::DBGridEhGetCellParams(QObject*, TColumnEh* Column, TCellParams& Params) { Drawzert(Column, Params); }
