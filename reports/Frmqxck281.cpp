#include "reports/Frmqxck281.h"

#include <QAction>

#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/Frmqxck281f.h"
#include "reports/ReportCommon.h"

TQXCK281* QXCK281 = nullptr;

namespace {

const QString kStock = "SUM(K0+K1+K2+K3+K4+K5+K6+K7+K8+K9)";

// One ranking of the sold rows by a key: the ranking itself, the keys with stock and no sales
// (when asked), and the current stock of every key.
struct Ranking {
    QString table;      // #CK
    QString key;        // CK_ID (column of #T and of the ranking)
    QString stockKey;   // the key in the stock statements: D1802.CK_ID
    QString stockFrom;  // the tables the stock of a key is summed over
    QString money;      // "SUM(MONEY) AS SMONEY" (written without the blank for brands)
};

const QString kStockTables = "D1800 P INNER JOIN D1801 ON P.K_ID = D1801.K_ID INNER JOIN D1802 ON D1801.WL_ID = D1802.WL_ID "
                             "INNER JOIN #TCK D ON D1802.CK_ID = D.CK_ID ";

QString rankingStatements(const Ranking& r, bool keysWithoutSales) {
    const QString stockColumn = r.stockKey.mid(r.stockKey.indexOf('.') + 1);
    QString sql = "SELECT IDENTITY (INT, 1, 1) AS ID, " + r.key + ",SUM(SL) AS SL," + r.money + ",0 AS KC INTO " + r.table +
                  " " + "FROM #T " + "GROUP BY " + r.key + " " + "ORDER BY SUM(SL) DESC;";
    if (keysWithoutSales) {
        if (r.table == "#CK")
            sql += QString("insert into #ck (ck_id,kc) ") + "SELECT #TCK.ck_id,0 " + "FROM #ck RIGHT JOIN " +
                   "#TCK ON #CK.Ck_id = #TCK.Ck_id " + "WHERE #CK.CK_id IS NULL " + "ORDER BY #TCK.CK_ID;";
        else
            sql += "insert into " + r.table + " (" + r.key + ",kc) " + "SELECT A." + stockColumn + ",0 " + "FROM " + r.table +
                   " RIGHT JOIN " + "(SELECT " + r.stockKey + " FROM " + r.stockFrom + "GROUP BY " + r.stockKey + ") A ON " +
                   r.table + "." + r.key + " = A." + stockColumn + " " + "WHERE " + r.table + "." + r.key + " IS NULL " +
                   "ORDER BY A." + stockColumn + ";";
    }
    sql += "UPDATE " + r.table + " SET KC=A.SL FROM " + "(SELECT " + r.stockKey + "," + kStock + " AS SL " + "FROM " +
           r.stockFrom + "GROUP BY " + r.stockKey + ") A " + "WHERE " + r.table + "." + r.key + "=A." + stockColumn + " ";
    return sql;
}

}  // namespace

TQXCK281::TQXCK281(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK281");
    SetCaption("销售排行");
    FormCreate();
}

void TQXCK281::FormCreate() { TFrm_Base_Qry::FormCreate(); }

void TQXCK281::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    SumFields = QStringList{"k1", "s1"};
    Filter = new TQXCK281F(this);
    QXCK281F = Filter;
    FilterForm = Filter;
    Filter->InitForm();
    Act_Locate->trigger();
}

QString TQXCK281::BuildSql() const {
    const TQXCK281F* f = Filter;
    const QString start = f->StartValue();
    const QString end = f->EndValue();
    QString sql;
    // 1. the warehouses
    const QString warehouse = f->CK_ID1->text().trimmed();
    if (!warehouse.isEmpty()) {
        sql += "SELECT CK_ID INTO #TCK FROM d1007 where ck_id='" + SqlStr(warehouse) + "';";
    } else {
        sql += "SELECT D.CK_ID INTO #TCK FROM d1007 D ";
        if (G_CHKCK)
            sql += " INNER JOIN sys_USER_CK ON D.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" + SqlStr(G_UserId) + "')";
        if (f->o3->isChecked() && f->o4->isChecked()) sql += ";";
        else if (f->o3->isChecked()) sql += " WHERE D.G1=0;";
        else sql += " WHERE D.G1=1;";
    }
    // 2. the sold rows
    QString blocks;
    if (f->o1->isChecked())
        blocks += QString("SELECT M.CK_ID, NULL AS VIPID, D.WL_ID,") + "(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) AS SL, D.SMONEY AS MONEY," +
                  "D.SMONEY-D.MONEY AS LY, D1800.CLASS_ID,D1009.PP_NAME AS PP,D.COL_ID " + "FROM D8201 M JOIN " +
                  "D8201A D ON D.NOID = M.NOID  JOIN " + "D1800 ON D.K_ID = D1800.K_ID JOIN " +
                  "D1009 ON D1800.PP_ID = D1009.PP_ID JOIN " + "  #TCK on #TCK.CK_ID = M.CK_ID  " +
                  "  where(M.T = 1) and (M.BDATE >= " + start + ") and (M.BDATE < " + end + ") " + "  UNION ALL " +
                  "SELECT D8202.CK_ID, NULL AS VIPID, D8202A.WL_ID,0-(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9), 0-D8202A.SMONEY," +
                  "D8202A.MONEY - D8202A.SMONEY AS LY, D1800.CLASS_ID,D1009.PP_NAME AS PP," + "D8202A.COL_ID " +
                  "FROM D8202 JOIN " + "D8202A ON D8202A.NOID = D8202.NOID JOIN " + "D1800 ON D8202A.K_ID = D1800.K_ID JOIN " +
                  "D1009 ON D1800.PP_ID = D1009.PP_ID JOIN " + "#TCK on #TCK.CK_ID = D8202.CK_ID  " +
                  "where(D8202.T = 1) and (D8202.BDATE >= " + start + ") and (D8202.BDATE < " + end + ")";
    if (f->o1->isChecked() && f->o2->isChecked()) blocks += "  UNION ALL ";
    if (f->o2->isChecked())
        blocks += QString("  SELECT D712.CK_ID, D712.VIPID, D.WL_ID, ") +
                  "D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+ D.S7+D.S8+D.S9 AS SL, " +
                  "D.SMONEY AS MONEY,D.SMONEY - D.MONEY AS LY,D1800.CLASS_ID,D1009.PP_NAME AS PP,D1801.COL_ID " +
                  "FROM D712A D INNER JOIN " + "D712 ON D.NOID = D712.NOID INNER JOIN " +
                  "#TCK on #TCK.CK_ID = D712.CK_ID  INNER JOIN " + "D1801 ON D.WL_ID = D1801.WL_ID INNER JOIN " +
                  "D1800 ON D1801.K_ID = D1800.K_ID JOIN " + "D1009 ON D1800.PP_ID = D1009.PP_ID " +
                  "where (D712.BDATE >= " + start + ") and (D712.BDATE < " + end + ") ";
    sql += "SELECT * " + QString("INTO #T ") + "FROM( " + blocks + "  )TMP ;";
    // 3. the rows of the grid
    sql += QString("CREATE TABLE [#phb](") + "ID INT,K_ID VARCHAR(20), WL_NAME VARCHAR(80), K1 INT, S1 INT, M1 DECIMAL(18, 2)," +
           "CK_ID VARCHAR(20), CK_NAME VARCHAR(80), S2 INT, M2 DECIMAL(18, 2)," +
           "CLASS_ID VARCHAR(20), CLASS_NAME VARCHAR(80), S3 INT, M3 DECIMAL(18, 2)," +
           "COL_ID VARCHAR(20), COL_NAME VARCHAR(80), S4 INT, M4 DECIMAL(18, 2)," + "PP_NAME VARCHAR(80), S5 INT, M5 DECIMAL(18, 2)," +
           "zs_ID VARCHAR(20), zs_NAME VARCHAR(80), S6 INT," +
           "VIPID VARCHAR(20), VIPNAME VARCHAR(80), S7 INT,M7 DECIMAL(18, 2),k2 INT,k3 INT,k4 INT,k5 INT);";
    // 4. stock per style
    sql += QString("SELECT D1801.K_ID,") + "SUM(D.K0+D.K1+D.K2+D.K3+D.K4+D.K5+D.K6+D.K7+D.K8+D.K9) AS KC " + "INTO #KC " +
           "FROM D1802 D INNER JOIN " + "D1801 ON D.WL_ID = D1801.WL_ID INNER JOIN " + "#TCK K ON D.CK_ID = K.CK_ID " +
           "GROUP BY D1801.K_ID;";
    // 5. styles by quantity sold
    sql += QString("SELECT IDENTITY (INT, 1, 1) AS ID, D1801.K_ID,SUM(B.SL) AS SL,SUM(B.MONEY) AS SMONEY ") + "INTO #w " +
           "FROM #T B INNER JOIN D1801 ON B.WL_ID = D1801.WL_ID " + "GROUP BY D1801.K_ID " + "ORDER BY SUM(B.SL) DESC;";
    // 6. slow movers by stock
    sql += QString("SELECT IDENTITY (INT, 1, 1) AS ID, #kc.k_id, d .wl_name, #kc.kc ") + "INTO #zs " + "FROM #kc INNER JOIN " +
           "d1800 d ON #kc.k_id = d .k_id LEFT JOIN " + "#w ON #kc.k_id = #w.k_id " + "WHERE #w.k_id IS NULL " +
           "ORDER BY #kc.kc DESC;";
    // 7. warehouses, categories, colours and brands
    const bool withoutSales = f->D1->isChecked();
    const QString brandTables = "D1800 P INNER JOIN D1009 ON P.PP_ID = D1009.PP_ID INNER JOIN D1801 ON P.K_ID = D1801.K_ID "
                                "INNER JOIN D1802 ON D1801.WL_ID = D1802.WL_ID INNER JOIN #TCK D ON D1802.CK_ID = D.CK_ID ";
    const Ranking rankings[] = {
        {"#CK", "CK_ID", "D1802.CK_ID", kStockTables, "SUM(MONEY) AS SMONEY"},
        {"#CL", "CLASS_ID", "P.CLASS_ID", kStockTables, "SUM(MONEY) AS SMONEY"},
        {"#COL", "COL_ID", "D1801.COL_ID", kStockTables, "SUM(MONEY) AS SMONEY"},
        {"#PP", "PP", "D1009.PP_NAME", brandTables, "SUM(MONEY)AS SMONEY"},
    };
    for (const Ranking& r : rankings) sql += rankingStatements(r, withoutSales);
    // 8. members by quantity bought
    sql += QString("SELECT IDENTITY (INT,1, 1) AS ID,") + "D702.VIPID,D702.VIPNAME,SUM(B.SL) AS SL,SUM(B.MONEY) AS SMONEY " +
           "INTO #VIP " + "FROM #T B INNER JOIN " + "D702 ON B.VIPID = D702.VIPID " + "GROUP BY D702.VIPID,D702.VIPNAME " +
           "ORDER BY SUM(B.SL) DESC;";
    // 9. the places
    sql += QString("INSERT INTO [#phb](ID) ") +
           "SELECT ID FROM #w UNION SELECT ID FROM #CK UNION SELECT ID FROM #CL UNION " +
           "SELECT ID FROM #COL UNION SELECT ID FROM #PP UNION SELECT ID FROM #zs;";
    // 10. every ranking into its place
    sql += QString("UPDATE [#phb] SET PP_NAME=C.pp,S5=C.SL,K5=C.KC,M5=C.SMONEY FROM #PP C WHERE [#phb].ID=C.ID ") +
           "UPDATE [#phb] SET CK_ID=C.CK_ID,S2=C.SL,K2=C.KC,M2=C.SMONEY FROM #CK C WHERE [#phb].ID=C.ID " +
           "UPDATE [#phb] SET ZS_ID=C.k_id,S6=C.kc FROM #zs C WHERE [#phb].ID=C.ID " +
           "UPDATE [#phb] SET k_id=C.k_id,S1=C.SL,M1=C.SMONEY FROM #w C WHERE [#phb].ID=C.ID " +
           "UPDATE [#phb] SET K1=C.kc FROM #kc C WHERE [#phb].k_id=C.k_id " +
           "UPDATE [#phb] SET COL_id=C.col_id,S4=C.SL,K4=C.KC,M4=C.SMONEY FROM #COL C WHERE [#phb].ID=C.ID " +
           "UPDATE [#phb] SET CLASS_ID= C.CLASS_ID,S3=C.SL,K3=C.KC,M3=C.SMONEY FROM #CL C WHERE [#phb].ID=C.ID " +
           "UPDATE [#phb] SET VIPID=C.VIPID,S7=C.SL,M7=C.SMONEY FROM #VIP C WHERE [#phb].ID=C.ID ";
    // 11. the names
    sql += QString("UPDATE #phb SET WL_NAME=D.WL_NAME FROM D1800 D WHERE #phb.K_ID=D.K_ID;") +
           "UPDATE #phb SET ZS_NAME=D.WL_NAME FROM D1800 D WHERE #phb.ZS_ID=D.K_ID;" +
           "UPDATE #phb SET CK_NAME=D.CK_NAME FROM D1007 D WHERE #phb.CK_ID=D.CK_ID;" +
           "UPDATE #phb SET CLASS_NAME=D.CLASS_NAME FROM D1004 D WHERE #phb.CLASS_ID=D.CLASS_ID;" +
           "UPDATE #phb SET COL_NAME=D.COL_NAME FROM D1005 D WHERE #phb.COL_ID=D.COL_ID;" +
           "UPDATE #phb SET VIPNAME=D.VIPNAME FROM D702 D WHERE #phb.VIPID=D.VIPID;";
    // 12. the rows, and away with the tables
    sql += QString("SELECT * FROM [#phb];") + "DROP TABLE #VIP;DROP TABLE [#phb];DROP TABLE #CK;DROP TABLE #T;DROP TABLE #CL;DROP TABLE #COL;" +
           "DROP TABLE #PP; DROP TABLE #TCK; DROP TABLE #w;DROP TABLE #kc;DROP TABLE #zs;";
    return sql;
}

void TQXCK281::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Lab_Condition->setText(Filter->Description);
    QrySql = BuildSql();
    Refreshing = true;
    TProgressRun::Run(this, "正在计算销售排行…", [this] { GetData(); });
    Refreshing = false;
    SetColumns();
}

void TQXCK281::Act_RefreshExecute(QObject* Sender) {
    if (!qx::reports::hasQuery(this, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!")) return;
    TProgressRun::Run(this, "正在计算销售排行…", [&] { TFrm_Base_Qry::Act_RefreshExecute(Sender); });
    SetColumns();
}

void TQXCK281::SetColumns() {
    TDBGridEh* g = DBGridEh;
    struct Title {
        const char* field;
        const char* title;
        int width;
    };
    static const Title titles[] = {
        {"ID", "名次", 40},
        {"K_ID", "款式排行|款号", 90},   {"WL_NAME", "款式排行|名称", 120}, {"S1", "款式排行|数量", 60},
        {"M1", "款式排行|金额", 80},     {"K1", "款式排行|库存", 60},
        {"CK_ID", "仓库排行|代号", 60},  {"CK_NAME", "仓库排行|名称", 100}, {"S2", "仓库排行|数量", 60},
        {"M2", "仓库排行|金额", 80},     {"K2", "仓库排行|库存", 60},
        {"CLASS_ID", "类别排行|代号", 60}, {"CLASS_NAME", "类别排行|名称", 100}, {"S3", "类别排行|数量", 60},
        {"M3", "类别排行|金额", 80},     {"K3", "类别排行|库存", 60},
        {"COL_ID", "颜色排行|代号", 60}, {"COL_NAME", "颜色排行|名称", 80}, {"S4", "颜色排行|数量", 60},
        {"M4", "颜色排行|金额", 80},     {"K4", "颜色排行|库存", 60},
        {"PP_NAME", "品牌排行|品牌", 100}, {"S5", "品牌排行|数量", 60},   {"M5", "品牌排行|金额", 80},
        {"K5", "品牌排行|库存", 60},
        {"zs_ID", "滞销款|款号", 90},    {"zs_NAME", "滞销款|名称", 120},  {"S6", "滞销款|库存", 60},
        {"VIPID", "会员消费排行|会员号", 90}, {"VIPNAME", "会员消费排行|姓名", 90}, {"S7", "会员消费排行|数量", 60},
        {"M7", "会员消费排行|金额", 80},
    };
    if (g->ColumnCount() == 0) return;
    g->AutoColumns = false;
    g->ClearColumns();
    for (const Title& t : titles)
        if (AdoQry_Main->FindField(t.field)) g->AddColumn(AdoQry_Main->FindField(t.field)->FieldName, t.title, t.width);
    struct Group {
        QCheckBox* choice;
        QStringList fields;
    };
    const Group groups[] = {
        {Filter->C1, {"zs_ID", "zs_NAME", "S6"}},
        {Filter->C2, {"CK_ID", "CK_NAME", "S2", "M2", "K2"}},
        {Filter->C3, {"CLASS_ID", "CLASS_NAME", "S3", "M3", "K3"}},
        {Filter->C4, {"COL_ID", "COL_NAME", "S4", "M4", "K4"}},
        {Filter->C5, {"PP_NAME", "S5", "M5", "K5"}},
        {Filter->C6, {"VIPID", "VIPNAME", "S7", "M7"}},
    };
    for (const Group& group : groups)
        for (const QString& field : group.fields)
            if (TColumnEh* c = g->ColumnByField(field)) c->Visible = group.choice->isChecked();
    // the size-column rule of the base does not apply: S1..S7 are the rankings' quantities
    for (const QString& field : SumFields)
        if (TColumnEh* c = g->ColumnByField(field)) c->Footer.ValueType = fvtSum;
    g->ColumnsChanged();
    g->AutoColumns = true;
}

qx::chart::ChartSpec TQXCK281::ChartSpec() const {
    return {qx::chart::ChartKind::Bars, qx::chart::Axis::Rows, "WL_NAME", {"S1"}};
}
