#include "documents/transfer/InTransit.h"

#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/SizeMatrix.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace qx::transfer {

namespace {
QString rightsCondition() {
    if (!G_CHKCK) return {};
    const QString mine = "(SELECT CK_ID FROM sys_USER_CK WHERE user_id='" + SqlStr(G_UserId) + "')";
    return " AND ((V_QX_ZT.CK_ID IN " + mine + ") OR (V_QX_ZT.CK_ID_IN IN " + mine + "))";
}

QString sizeSums(const QString& prefix) {
    QStringList sums;
    for (int i = 0; i < qx::sizes::Count; ++i)
        sums << "SUM(V_QX_ZT.S" + QString::number(i) + ") AS " + prefix + QString::number(i);
    return sums.join(", ");
}
}  // namespace

QString inTransitTransfersQuery(const QDate& today) {
    return "SELECT V_QX_ZT.CK_ID, d1007.CK_NAME, V_QX_ZT.CK_ID_IN, d1007_1.CK_NAME AS CK_NAME_IN, V_QX_ZT.NOID, "
           "V_QX_ZT.BDATE, " + sizeSums("S") + ", SUM(V_QX_ZT.STOT) AS STOT, DATEDIFF(day, V_QX_ZT.BDATE, '" +
           SqlStr(today.toString("yyyy-MM-dd")) + "') AS DAYS FROM V_QX_ZT INNER JOIN d1007 ON V_QX_ZT.CK_ID = "
           "d1007.CK_ID INNER JOIN d1007 d1007_1 ON V_QX_ZT.CK_ID_IN = d1007_1.CK_ID WHERE (1 = 1)" + rightsCondition() +
           " GROUP BY V_QX_ZT.CK_ID, d1007.CK_NAME, V_QX_ZT.CK_ID_IN, d1007_1.CK_NAME, V_QX_ZT.NOID, V_QX_ZT.BDATE "
           "ORDER BY V_QX_ZT.CK_ID, V_QX_ZT.CK_ID_IN, V_QX_ZT.BDATE, V_QX_ZT.NOID";
}

QString inTransitBySkuQuery() {
    return "SELECT V_QX_ZT.CK_ID_IN, d1007_1.CK_NAME AS CK_NAME_IN, V_QX_ZT.CK_ID, d1007.CK_NAME, V_QX_ZT.WL_ID, "
           "V_QX_ZT.K_ID, V_QX_ZT.COL_ID, " + sizeSums("Q") + ", SUM(V_QX_ZT.STOT) AS QTY FROM V_QX_ZT INNER JOIN "
           "d1007 ON V_QX_ZT.CK_ID = d1007.CK_ID INNER JOIN d1007 d1007_1 ON V_QX_ZT.CK_ID_IN = d1007_1.CK_ID WHERE "
           "(1 = 1)" + rightsCondition() +
           " GROUP BY V_QX_ZT.CK_ID_IN, d1007_1.CK_NAME, V_QX_ZT.CK_ID, d1007.CK_NAME, V_QX_ZT.WL_ID, V_QX_ZT.K_ID, "
           "V_QX_ZT.COL_ID ORDER BY V_QX_ZT.CK_ID_IN, V_QX_ZT.WL_ID, V_QX_ZT.CK_ID";
}

}  // namespace qx::transfer

namespace {
void addSizeColumns(TDBGridEh* grid, const QString& prefix, const QString& total, const QString& totalTitle) {
    for (int i = 0; i < qx::sizes::Count; ++i) {
        TColumnEh* c = grid->AddColumn(prefix + QString::number(i), "数量|" + QString::number(i), 40);
        c->Footer.ValueType = fvtSum;
        c->Visible = i <= G_CM;
    }
    grid->AddColumn(total, totalTitle, 60)->Footer.ValueType = fvtSum;
}
}  // namespace

TQXCK234_2::TQXCK234_2(QWidget* Owner) : TFrm_Base_Panel(Owner) {
    setObjectName("QXCK234_2");
    SetCaption("在途商品");
    AdoQry_Transfers = new TClientDataSet(this);
    AdoQry_Transfers->setObjectName("AdoQry_Transfers");
    AdoQry_Sku = new TClientDataSet(this);
    AdoQry_Sku->setObjectName("AdoQry_Sku");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Transfers);
    DBGridEh->setObjectName("DBGridEh");
    DBGridEh_Sku = TDBGridEh::CreateBrowseGrid(this, AdoQry_Sku);
    DBGridEh_Sku->setObjectName("DBGridEh_Sku");

    for (auto [field, title, width] : {std::tuple{"CK_NAME", "调出仓库", 90}, {"CK_NAME_IN", "调入仓库", 90},
                                        {"NOID", "调拨单号", 100}, {"BDATE", "开单日期", 80}})
        DBGridEh->AddColumn(field, title, width)->DisplayFormat = QString(field) == "BDATE" ? "yyyy-mm-dd" : "";
    addSizeColumns(DBGridEh, "S", "STOT", "合计");
    DBGridEh->AddColumn("DAYS", "在途天数", 60);
    DBGridEh->SetFooterRowVisible(true);
    DBGridEh->ColumnsChanged();

    for (auto [field, title, width] : {std::tuple{"CK_NAME_IN", "调入仓库", 90}, {"K_ID", "款号", 90},
                                        {"COL_ID", "色号", 50}, {"CK_NAME", "调出仓库", 90}})
        DBGridEh_Sku->AddColumn(field, title, width);
    addSizeColumns(DBGridEh_Sku, "Q", "QTY", "在途合计");
    DBGridEh_Sku->SetFooterRowVisible(true);
    DBGridEh_Sku->ColumnsChanged();

    Act_Refresh = AddAction("Act_Refresh", "刷新", QKeySequence(Qt::Key_F5), [this] { Act_RefreshExecute(Act_Refresh); });
    Act_Quit = AddAction("Act_Quit", "退出", QKeySequence(Qt::Key_Escape), [this] { close(); });
    ToolBar->addAction(Act_Refresh);
    ToolBar->addAction(Act_Quit);

    auto* split = new QSplitter(Qt::Vertical, this);
    split->addWidget(DBGridEh);
    split->addWidget(DBGridEh_Sku);
    MainLayout()->addWidget(split);
    resize(1000, 600);
}

void TQXCK234_2::RefreshData() {
    opensql(AdoQry_Transfers, FuncNo, qx::transfer::inTransitTransfersQuery(qx::ui::today()), 0, 0, {}, {}, false, "1");
    opensql(AdoQry_Sku, FuncNo, qx::transfer::inTransitBySkuQuery(), 0, 0, {}, {}, false, "1");
}
