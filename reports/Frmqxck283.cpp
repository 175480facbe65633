#include "reports/Frmqxck283.h"

#include <QAction>
#include <QDate>
#include <QLabel>
#include <QMap>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <algorithm>

#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/Frmqxck283f.h"
#include "reports/ReportCommon.h"

TQXCK283* QXCK283 = nullptr;

namespace {

// "YYYYMM|DD" of a day column; an invalid date for any other field.
QDate dayOfField(const QString& field) {
    static const QRegularExpression day("^(\\d{6})\\|(\\d{2})$");
    const auto m = day.match(field);
    if (!m.hasMatch()) return {};
    return QDate::fromString(m.captured(1) + m.captured(2), "yyyyMMdd");
}

const QColor kDarkRed(0x80, 0x00, 0x00);

}  // namespace

TQXCK283::TQXCK283(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK283");
    SetCaption("销售进度表");
    Lab_Note = new QLabel("系统提示：【最近日期】取自【进货单】和【调拨点收日期】", this);
    Lab_Note->setObjectName("Lab_Note");
    MainLayout()->addWidget(Lab_Note);
    FormCreate();
}

void TQXCK283::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    AdoQry_Main->AfterOpen = [this](TDataSet* ds) { AdoQry_MainAfterOpen(ds); };
}

void TQXCK283::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    WlField = "wl_id";
    Filter = new TQXCK283F(this);
    QXCK283F = Filter;
    FilterForm = Filter;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TQXCK283::RowSource() const {
    const QString rights =
        G_CHKCK ? " INNER JOIN  sys_USER_CK ON M.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" + SqlStr(G_UserId) + "') "
                : QString();
    const QString style = Filter->WL_ID->text().trimmed();
    const QString stylePiece = style.isEmpty() ? QString() : " and d.k_id='" + SqlStr(style) + "'";
    const QString posStylePiece = style.isEmpty() ? QString() : " and d1801.k_id='" + SqlStr(style) + "'";
    const QString& condition = Filter->Condition;
    return QString("SELECT  K_ID AS WL_ID,M + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME,SL AS KC FROM (SELECT "
                   "D.K_ID,convert(char(6),M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D, SUM(D.S0 + D.S1 + D.S2 + D.S3 + "
                   "D.S4 + D.S5 + D.S6 + D.S7 + D.S8 + D.S9) AS SL FROM D8201 M INNER JOIN D8201A D ON M.NOID = D.NOID ") +
           rights + " where " + condition + stylePiece +
           " GROUP BY D.K_ID, DATEPART([day], M.BDATE), convert(char(6),M.BDATE,112) " +
           "UNION ALL SELECT D.K_ID,convert(char(6),M.BDATE,112) AS M,DATEPART([DAY],M.BDATE) AS D, " +
           "0-SUM(D.S0 + D.S1 + D.S2 + D.S3 + D.S4 + D.S5 + D.S6 + D.S7 + D.S8 + D.S9) AS SL " +
           "FROM D8202 M INNER JOIN D8202A D ON M.NOID = D.NOID " + rights + " where " + condition + stylePiece +
           " GROUP BY D.K_ID, DATEPART([day], M.BDATE),convert(char(6),M.BDATE,112) " + " UNION ALL " +
           "SELECT D1801.K_ID,convert(char(6),M.BDATE,112) as M, DATEPART([DAY], M.BDATE) as D, " +
           "SUM(D.S0 + D.S1 + D.S2 + D.S3 + D.S4 + D.S5 + D.S6+ D.S7 + D.S8 + D.S9) as SL " + "FROM D712 M INNER JOIN " +
           "D712A D on M.NOID = D.NOID INNER JOIN " + "D1801 on D.WL_ID = D1801.WL_ID " + rights + " where " + condition +
           posStylePiece + "GROUP BY D1801.K_ID,convert(char(6),M.BDATE,112), DATEPART([DAY], M.BDATE)) T  ";
}

QString TQXCK283::BuildSql() const {
    const QString stockSum = "SUM(D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 "
                             "+ D1802.K7 + D1802.K8 + D1802.K9) as KC ";
    const QString warehouse = Filter->CK_ID->text().trimmed();
    QString stock;
    if (!warehouse.isEmpty()) {
        // a text inside the quoted @innerstr: its quotes doubled once more
        const QString w = SqlStr(SqlStr(warehouse));
        stock = QString("SELECT B.K_ID, A.BDATE, B.KC FROM ") + "( " + "SELECT K_ID, MAX(BDATE) as BDATE " +
                "FROM(SELECT D8101A.K_ID, MAX(D8101.BDATE) as BDATE " + "FROM D8101 INNER JOIN " +
                "D8101A on D8101.NOID = D8101A.NOID " + "where D8101.CK_ID = ''" + w + "''" + " GROUP BY D8101A.K_ID " +
                "UNION ALL " + "SELECT D8303A.K_ID, MAX(D8303.YDATE) as BDATE " + "FROM D8303 INNER JOIN " +
                "D8303A on D8303.NOID = D8303A.NOID " + "where D8303.CK_ID_IN = ''" + w + "''" + " GROUP BY D8303A.K_ID)T " +
                " GROUP BY K_ID " + ")A RIGHT JOIN  " + "( " + "SELECT D1801.K_ID, " + stockSum + "FROM D1802 INNER JOIN " +
                "D1801 on D1802.WL_ID = D1801.WL_ID " + "where D1802.CK_ID = ''" + w + "''" + " GROUP BY D1801.K_ID " +
                ")B on A.K_ID = B.K_ID)C on C.K_ID = D.WL_ID ";
    } else {
        stock = QString("SELECT B.K_ID, NULL AS BDATE, B.KC FROM ") + "( " + "SELECT D1801.K_ID, " + stockSum +
                "FROM D1802 INNER JOIN " + "D1801 on D1802.WL_ID = D1801.WL_ID " + " GROUP BY D1801.K_ID " +
                ")B)C on C.K_ID = D.WL_ID ";
    }
    return "EXEC SYS_JD @param1=" + QuotedStr(RowSource()) + ",@param2='" + "wl_id" + "',@param3='" + "ck_name" +
           "',@param4='" + "kc" + "',@selectstr='" + ",D1800.WL_NAME,D1800.DW_NAME,C.* " + "',@innerstr='" + " INNER JOIN " +
           "(  " + stock + "INNER JOIN D1800 ON D1800.K_ID=C.K_ID " + "ORDER BY D1800.K_ID '";
}

void TQXCK283::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Lab_Condition->setText(Filter->Description);
    QrySql = BuildSql();
    Refreshing = true;
    TProgressRun::Run(this, "正在查询销售进度…", [this] { GetData(); });
    Refreshing = false;
    AdoQry_MainAfterOpen(AdoQry_Main);
}

void TQXCK283::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何查询参数,请按【F3】呼出查询选项!")) return;
    TProgressRun::Run(this, "正在查询销售进度…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    AdoQry_MainAfterOpen(AdoQry_Main);
}

bool TQXCK283::IsSunday(const QString& dayField) {
    const QDate d = dayOfField(dayField);
    return d.isValid() && d.dayOfWeek() == Qt::Sunday;
}

void TQXCK283::AdoQry_MainAfterOpen(TDataSet*) {
    TDBGridEh* g = DBGridEh;
    if (AdoQry_Main->FieldNames().isEmpty()) return;
    dayFields_.clear();
    for (const QString& f : AdoQry_Main->FieldNames())
        if (dayOfField(f).isValid()) dayFields_ << f;
    dayFields_.sort();  // "YYYYMM|DD" sorts by date
    g->AutoColumns = false;
    g->ClearColumns();
    struct Head {
        const char* field;
        const char* title;
        int width;
    };
    static const Head heads[] = {{"wl_ID", "款号", 90}, {"wl_NAME", "名称", 120}, {"dw_name", "单位", 40},
                                 {"BDATE", "最近进货", 80}, {"kc", "现库存", 60}};
    for (const Head& h : heads)
        if (TField* f = AdoQry_Main->FindField(h.field)) g->AddColumn(f->FieldName, h.title, h.width);
    if (TColumnEh* c = g->ColumnByField("BDATE")) c->DisplayFormat = "yyyy-mm-dd";
    const bool markSundays = Filter->chk_Sunday->isChecked();
    // a month with few days keeps its title readable: at least 64 pixels under it
    QMap<QString, int> daysOfMonth;
    for (const QString& f : dayFields_) ++daysOfMonth[f.left(6)];
    for (const QString& f : dayFields_) {
        const QDate d = dayOfField(f);
        const int width = std::max(34, (64 + daysOfMonth[f.left(6)] - 1) / daysOfMonth[f.left(6)]);
        TColumnEh* c = g->AddColumn(f, d.toString("yyyy-MM") + "|" + d.toString("dd"), width);
        c->Alignment = Qt::AlignRight | Qt::AlignVCenter;
        c->Footer.ValueType = fvtSum;
        if (markSundays && d.dayOfWeek() == Qt::Sunday) c->FontColor = kDarkRed;
    }
    if (TField* f = AdoQry_Main->FindField("total")) {
        TColumnEh* c = g->AddColumn(f->FieldName, "销售合计", 70);
        c->Footer.ValueType = fvtSum;
        c->FontColor = Qt::blue;
    }
    if (TColumnEh* c = g->ColumnByField("kc")) c->Footer.ValueType = fvtSum;
    g->ColumnsChanged();
    g->AutoColumns = true;
}

void TQXCK283::DBGridEhGetCellParams(QObject*, TColumnEh* Column, TCellParams& Params) {
    if (Column->FieldName.compare("BDATE", Qt::CaseInsensitive) == 0) Params.Text = Params.Text.left(10);
}

qx::chart::ChartSpec TQXCK283::ChartSpec() const {
    return {qx::chart::ChartKind::Lines, qx::chart::Axis::Columns, "wl_NAME", dayFields_};
}
