#include "reports/Frmqxck255.h"

#include <QAction>
#include <QLabel>

#include "reports/Frmqxck255_1.h"
#include "reports/Frmqxck255f.h"
#include "framework/ProgressDialog.h"
#include "reports/ReportCommon.h"

TQXCK255* QXCK255 = nullptr;

namespace {
const char* const kNoQuery = "您还没选择任何汇总参数,请按【F3】呼出汇总选项!";
const char* const kStockSum =
    "D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9";
}  // namespace

TQXCK255::TQXCK255(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK255");
    SetCaption("库存查询");
    CDS_M = new TClientDataSet(this);
    CDS_M->setObjectName("CDS_M");
    gtime = CreateSizeTitleTimer([this] { gtimeTimer(); });
    FormCreate();
}

void TQXCK255::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    // sorting is the statement's; export comes with the first refresh
    Act_Order->setEnabled(false);
    Act_Export->setEnabled(false);
    for (QAction* a : {Act_Filter, Act_ShowReport}) {
        a->setEnabled(false);
        a->setVisible(false);
    }
    DBGridEh->AutoColumns = false;
    DBGridEh->ClearColumns();
    DBGridEh->AddColumn("CK_ID", "仓库号")->Visible = false;
    DBGridEh->AddColumn("CK_NAME", "仓库");
    DBGridEh->AddColumn("K_ID", "款号", 100);
    DBGridEh->AddColumn("WL_NAME", "品名", 120);
    DBGridEh->AddColumn("PP_NAME", "品牌");
    DBGridEh->AddColumn("DW_NAME", "单位", 40);
    DBGridEh->AddColumn("COL_NAME", "颜色", 60);
    for (int i = 0; i <= 9; ++i) {
        TColumnEh* c = DBGridEh->AddColumn("S" + QString::number(i), "尺码|-", 40);
        c->FontColor = Qt::blue;
        c->Footer.ValueType = fvtSum;
    }
    DBGridEh->AddColumn("STOT", "尺码|合计", 50)->Footer.ValueType = fvtSum;
    DBGridEh->AddColumn("PFJ", "吊牌价", 60);
    DBGridEh->AddColumn("sMONEY", "总额", 80)->Footer.ValueType = fvtSum;
    for (const char* f : {"CK_ID", "CK_NAME", "K_ID", "WL_NAME", "PP_NAME", "DW_NAME", "PFJ"})
        DBGridEh->ColumnByField(f)->HideDuplicates = true;
    DBGridEh->SetFooterRowVisible(true);
    HideSizeColumnsAfterCM(DBGridEh);
    DBGridEh->OnTitleClick = nullptr;
    DBGridEh->SortOnTitleClick = false;
    AdoQry_Main->AfterScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
    AdoQry_Main->BeforeScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
}

void TQXCK255::InitForm(const Trecord& rec) {
    Drill = new TQXCK255_1(this);
    DetailForm = Drill;
    TFrm_Base_Qry::InitForm(rec);
    KeyField = "k_id";
    CostFields = QStringList{"DJ"} << "MONEY";
    SumFields = SplitFields("S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,DJ,MONEY");
    Drill->ShowCost = ShowCost;
    Filter = new TQXCK255F(this);
    QXCK255F = Filter;
    FilterForm = Filter;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TQXCK255::BuildSql() const {
    const QString rights = qx::reports::rightsJoin("D1802");
    const QString stock = kStockSum;
    if (Filter->BSCHK2_1->isChecked()) {
        QString sql =
            " SELECT D1800.K_ID, D1005.COL_ID, D1800.M_ID, D1005.COL_NAME, D1800.WL_NAME, D1800.DW_NAME,D1009.PP_NAME, "
            "SUM(D1802.K0) as S0, SUM(D1802.K1) as S1, SUM(D1802.K2) as S2, SUM(D1802.K3) as S3, SUM(D1802.K4) as S4, "
            "SUM(D1802.K5) as S5, SUM(D1802.K6) as S6, SUM(D1802.K7) as S7, SUM(D1802.K8) as S8, SUM(D1802.K9) as S9,  SUM(" +
            stock + ")as STOT, d1800.pfj,  SUM((" + stock + ")*d1800.pfj) as Smoney,";
        sql += ShowCost ? " D1800.DJ,SUM((D1802.K0 + D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 +  D1802.K5 + D1802.K6 + "
                          "D1802.K7 + D1802.K8 + D1802.K9)* D1800.DJ) as MONEY"
                        : " 0.00 as DJ,0.00 AS MONEY ";
        sql += ", 'zz' AS ck_id,'汇总值' AS CK_NAME ";
        sql += QString(" FROM D1801 INNER JOIN ") + " D1802 on D1801.WL_ID = D1802.WL_ID INNER JOIN" +
               " D1800 on D1801.K_ID = D1800.K_ID INNER JOIN " + " D1009 on D1800.PP_ID = D1009.PP_ID INNER JOIN " +
               " D1006 on D1800.M_ID = D1006.M_ID INNER JOIN ";
        sql += rights;
        sql += " D1005 on D1801.COL_ID = D1005.COL_ID ";
        sql += Filter->Condition;
        sql += QString(" GROUP BY D1800.K_ID, D1005.COL_ID, D1800.M_ID,D1800.pfj, D1005.COL_NAME,D1009.PP_NAME,") +
               " D1800.WL_NAME, D1800.DW_NAME, D1800.DJ";
        if (Filter->BSCHK2_3->isChecked())
            sql += " HAVING (SUM(D1802.K0+D1802.K1+D1802.K2+D1802.K3+D1802.K4+D1802.K5+D1802.K6+ D1802.K7+D1802.K8+D1802.K9) > 0) ";
        sql += QString(" ORDER BY ") + " D1800.K_ID, D1005.COL_ID";
        return sql;
    }
    QString sql =
        "SELECT top 10000 D1800.K_ID,D1005.COL_ID,D1800.M_ID,D1005.COL_NAME,D1800.WL_NAME,D1800.DW_NAME,D1009.PP_NAME,"
        "D1802.K0 as S0,D1802.K1 as S1,D1802.K2 as S2,D1802.K3 as S3,D1802.K4 as S4,D1802.K5 as S5,D1802.K6 as S6,"
        "D1802.K7 as S7,D1802.K8 as S8,D1802.K9 as S9," +
        stock + " as STOT,D1800.PFJ,(" + stock + ") * D1800.PFJ as SMONEY,D1007.CK_ID, D1007.CK_NAME ";
    sql += ",0.00 AS DJ,0.00 AS MONEY ";
    sql += QString("FROM D1801 ") + "INNER JOIN D1802 on D1801.WL_ID = D1802.WL_ID  " +
           "INNER JOIN D1800 on D1801.K_ID = D1800.K_ID " + "INNER JOIN D1009 on D1800.PP_ID = D1009.PP_ID " +
           "INNER JOIN D1006 on D1800.M_ID = D1006.M_ID  " + "INNER JOIN D1007 on D1802.CK_ID = D1007.CK_ID  INNER JOIN ";
    sql += rights;
    sql += " D1005 on D1801.COL_ID = D1005.COL_ID where(1 > 0) ";
    if (Filter->BSCHK2_3->isChecked())
        sql += "and ((D1802.K0+D1802.K1+D1802.K2+D1802.K3+D1802.K4+D1802.K5+D1802.K6+ D1802.K7+D1802.K8+D1802.K9) > 0) ";
    if (!Filter->Condition.isEmpty()) sql += Filter->Condition;
    sql += Filter->o1->isChecked() ? "ORDER BY D1800.K_ID,D1005.COL_ID" : "ORDER BY d1802.CK_ID,D1800.K_ID,D1005.COL_ID";
    return sql;
}

void TQXCK255::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    const QString sql = BuildSql();
    QrySql.clear();
    Refreshing = true;
    AdoQry_Main->AfterScroll = nullptr;
    if (!CDS_M->Active()) opensql(CDS_M, FuncNo, "SELECT * FROM D1006", 0, 0, {}, {}, false, "1");
    QrySql = sql;
    try {
        TProgressRun::Run(this, "正在查询库存…", [this] { GetData(); });
    } catch (...) {
        Refreshing = false;
        AdoQry_Main->AfterScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
        throw;
    }
    Refreshing = false;
    AdoQry_Main->AfterScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
    Lab_Condition->setText(Filter->Description);
    gtime->start();
}

void TQXCK255::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, kNoQuery)) return;
    Refreshing = true;
    TProgressRun::Run(this, "正在查询库存…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    Refreshing = false;
    Act_Export->setEnabled(true);
}

void TQXCK255::Act_PreviewExecute(QObject* Sender) {
    if (qx::reports::hasQuery(this, kNoQuery)) TFrm_Base_Qry::Act_PreviewExecute(Sender);
}
void TQXCK255::Act_PrintExecute(QObject* Sender) {
    if (qx::reports::hasQuery(this, kNoQuery)) TFrm_Base_Qry::Act_PrintExecute(Sender);
}
void TQXCK255::Act_ShowReportExecute(QObject* Sender) {
    if (qx::reports::hasQuery(this, kNoQuery)) TFrm_Base_Qry::Act_ShowReportExecute(Sender);
}

void TQXCK255::AdoQry_MainAfterScroll(TDataSet*) { gtime->start(); }

void TQXCK255::gtimeTimer() {
    if (CDS_M->Active() && AdoQry_Main->Active() && !AdoQry_Main->IsEmpty())
        qx::reports::setSizeTitlesOfGroup(DBGridEh, CDS_M, AdoQry_Main->FieldByName("M_ID")->AsString());
    gtime->stop();
}
