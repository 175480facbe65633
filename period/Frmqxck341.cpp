#include "period/Frmqxck341.h"

#include <QToolBar>

#include "period/Frmqxck341f.h"
#include "period/PeriodCommon.h"

TQXck341* QXck341 = nullptr;

const char* const TQXck341::DeleteQuery = "delete from D1802 WHERE (WL_ID + CK_ID =%S)";

namespace {
constexpr int kSizes = 10;
}

AnsiString TQXck341::ListQuery() {
    AnsiString sql =
        " SELECT D1802.WL_ID+D1802.CK_ID AS ID,D1007.CK_ID,D1800.K_ID, D1801.WL_ID, D1800.WL_NAME, D1009.PP_name as PP,   "
        "D1800.DW_NAME, D1004.CLASS_ID, D1005.COL_NAME, D1004.CLASS_NAME,   D1007.CK_NAME, D1802.B0, D1802.B1, D1802.B2, "
        "D1802.B3, D1802.B4, D1802.B5, D1802.B6, D1802.B7, D1802.B8, D1802.B9, D1802.B0 + D1802.B1 + D1802.B2 + D1802.B3 + "
        "D1802.B4 + D1802.B5 + D1802.B6 + D1802.B7   + D1802.B8 + D1802.B9 AS STOT, D1802.BEGIN_MONEY,D1802.BEGIN_DJ, "
        "D1006.M0, D1006.M1,  D1006.M2, D1006.M3, D1006.M4, D1006.M5, D1006.M6, D1006.M7, D1006.M8, D1006.M9,D1802.BDATE "
        "FROM D1801 INNER JOIN  D1802 ON D1801.WL_ID = D1802.WL_ID INNER JOIN  D1007 ON D1802.CK_ID = D1007.CK_ID INNER "
        "JOIN ";
    if (G_CHKCK) sql += " sys_USER_CK u on u.ck_id=d1007.ck_id and (user_id='" + SqlStr(G_UserId) + "') inner join ";
    sql += " D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN ";
    sql += " D1004 ON D1800.CLASS_ID = D1004.CLASS_ID INNER JOIN ";
    sql += " D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN ";
    sql += " D1005 ON D1801.COL_ID = D1005.COL_ID INNER JOIN ";
    sql += " D1009 ON D1800.PP_ID = D1009.PP_ID";
    return sql;
}

TQXck341::TQXck341(QWidget* Owner) : TFrm_Base_Outer(Owner) {
    setObjectName("QXck341");
    SetCaption("商品库存期初");
    Act_Locate = AddAction("Act_Locate", tr("查询"), QKeySequence(Qt::Key_F3), [this] { Act_LocateExecute(Act_Locate); });
    ToolBar->insertAction(Act_Add, Act_Locate);
    // Opening quantities are not entered here: only deleting a row is offered.
    for (QAction* a : {Act_Add, Act_Modify}) a->setVisible(false);
    BuildColumns();
    FormCreate();
}

void TQXck341::BuildColumns() {
    DBGridEh->AutoColumns = false;
    qx::period::addColumns(DBGridEh, {{"ID", "ID", 80, false},
                                      {"CK_ID", "仓库号", 50, false},
                                      {"CK_NAME", "仓库", 80},
                                      {"K_ID", "款号", 90},
                                      {"WL_ID", "商品编号", 100},
                                      {"WL_NAME", "商品名称", 120},
                                      {"COL_NAME", "颜色", 60},
                                      {"PP", "品牌", 70},
                                      {"DW_NAME", "单位", 40},
                                      {"CLASS_ID", "类型号", 50, false},
                                      {"CLASS_NAME", "商品类型", 80}});
    for (int i = 0; i < kSizes; ++i) {
        TColumnEh* size = DBGridEh->AddColumn("B" + QString::number(i), "尺码|-", 40);
        size->Footer.ValueType = fvtSum;
    }
    DBGridEh->AddColumn("STOT", "合计", 50)->Footer.ValueType = fvtSum;
    TColumnEh* money = DBGridEh->AddColumn("BEGIN_MONEY", "期初金额", 80);
    money->Footer.ValueType = fvtSum;
    money->DisplayFormat = "0.00";
    DBGridEh->AddColumn("BEGIN_DJ", "期初单价", 70)->DisplayFormat = "0.00";
    qx::period::addColumns(DBGridEh, {{"BDATE", "期初日期", 80}});
    for (int i = 0; i < kSizes; ++i) DBGridEh->AddColumn("M" + QString::number(i), "M" + QString::number(i), 30)->Visible = false;
    DBGridEh->SetFooterRowVisible(true);
    DBGridEh->ColumnsChanged();
}

void TQXck341::FormCreate() {
    TFrm_Base_Outer::FormCreate();
    AdoQry_Main->AfterScroll = [this](TDataSet* ds) { qx::guard([&] { AdoQry_MainAfterScroll(ds); }); };
}

void TQXck341::InitForm(const Trecord& rec) {
    TFrm_Base_Outer::InitForm(rec);
    MoneyFields = "BEGIN_MONEY";
    QtyFields = "B0,B1,B2,B3,B4,B5,B6,B7,B8,B9,STOT";
    KeyField = "ID";
    OrderFields = "CK_ID,K_ID";
    DeleteSql = DeleteQuery;
    HeadSql = ListQuery();

    Filter = QXCK341F = new TQXCK341F(this);
    Filter->FuncNo = FuncNo;
    Filter->InitForm();
    Act_Locate->trigger();
}

void TQXck341::Act_LocateExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Condition = Filter->Condition;
    Lab_Condition->setText(Filter->Description);
    GetData();
}

void TQXck341::GetData() {
    TFrm_Base_Outer::GetData();
    if (!AdoQry_Main->Active()) return;
    // Shown by warehouse, then style (the sort is stable: the later key first).
    const QStringList order = SplitFields(OrderFields);
    for (auto it = order.crbegin(); it != order.crend(); ++it)
        if (AdoQry_Main->FindField(*it)) AdoQry_Main->SortBy(*it);
    AdoQry_Main->First();
    for (int i = G_CM + 1; i < kSizes; ++i) DBGridEh->ColumnByField("B" + QString::number(i))->Visible = false;
    AdoQry_MainAfterScroll(AdoQry_Main);
}

void TQXck341::AdoQry_MainAfterScroll(TDataSet*) {
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
    for (int i = 0; i < kSizes; ++i)
        DBGridEh->ColumnByField("B" + QString::number(i))->Title = "尺码|" + qx::period::sizeTitle(AdoQry_Main, "M", i);
    DBGridEh->ColumnsChanged();
}
