#include "reports/Frmqxck201mf.h"

#include <QPushButton>

#include "framework/U_function.h"
#include "framework/U_glo.h"

TQXCK201MF* QXCK201MF = nullptr;

namespace {
struct Dimension {
    const char* caption;
    const char* oid;
    const char* oname;
};
const Dimension kDimensions[] = {
    {"&1.按 【供应商】", "D1103.KH_GYS_ID AS oid", "D1103.KG_NAME AS oname"},
    {"&2.按 【商品】", "d1800.K_id AS oid", "d1800.wl_name AS oname"},
    {"&3.按 【业务员】", "D1101.YW_ID AS oid", "D1101.YW_NAME oname"},
    {"&4.按 【仓库】", "D1007.CK_ID AS oid", "D1007.CK_NAME oname"},
};
}  // namespace

TQXCK201MF::TQXCK201MF(QWidget* Owner)
    : TFrm_TradeFilter(Owner, "QXCK201MF", "采购进货明细查询", {"供 应 商", "d1103", "D1103.KH_GYS_ID", "进货", "退货"}) {
    QStringList captions;
    for (const Dimension& d : kDimensions) captions << QString::fromUtf8(d.caption);
    AddRunButtons(captions, [this](int tag) { btn_group(tag); });
    btn_ok->setVisible(false);
}

void TQXCK201MF::btn_okClick(QObject*) { btn_group(1); }

void TQXCK201MF::btn_group(int tag) {
    if (tag < 1 || tag > 4) return;
    TFrm_Sys_Filter::btn_okClick(nullptr);
    CheckChoices("数据来源中:采购进货、采购退货 至少选中一项进行查询", "结算方式中:现金、月结/待结 至少选中一项进行查询");
    const Dimension& d = kDimensions[tag - 1];
    const bool cash = BSCHK2_1->isChecked(), nonCash = BSCHK2_2->isChecked();
    const bool money = MoneyRight == "1";
    const QString conditions = Conditions("d1800.k_id", true);
    const QString article = "d1800.K_id, d1800.wl_name  AS WL_NAME";
    QString rights;
    if (G_CHKCK)
        rights = " sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id=''" + SqlStr(SqlStr(G_UserId)) +
                 "'') INNER JOIN ";
    const QString start = StartText(), end = EndNextText();
    QString receipts = "SELECT 0 AS TTYPE, D8101.BDATE, D8101A.NOID,  D1800.M_ID," + article +
                       ",D1800.DW_NAME, D1005.COL_NAME, D8101A.S0, D8101A.S1, " +
                       "D8101A.S2, D8101A.S3, D8101A.S4, D8101A.S5, D8101A.S6, D8101A.S7, D8101A.S8," +
                       "D8101A.S9,0 AS STOT, 0.00 AS ZK,0.00 AS VIPZK,0.00 AS ODJ,0.00 AS OMONEY," +
                       (money ? "D8101A.DJ, D8101A.MONEY," : "0.00 AS DJ,0.00 as money,") + d.oid + "," + d.oname +
                       " ,NULL AS NOTE FROM D1801 INNER JOIN " + "D8101A ON D1801.WL_ID = D8101A.WL_ID INNER JOIN " +
                       "D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN " + "D1005 ON D1801.COL_ID = D1005.COL_ID INNER JOIN " +
                       "D8101 ON D8101A.NOID = D8101.NOID AND (D8101.T=1) INNER JOIN " +
                       "D1103 ON D8101.KH_GYS_ID = D1103.KH_GYS_ID INNER JOIN " + "D1007 ON D8101.CK_ID = D1007.CK_ID  INNER JOIN " +
                       rights + "D1101 ON D8101.YW_ID = D1101.YW_ID " +
                       qx::reports::settlementPiece("d8101", "2", cash, nonCash, true) + conditions +
                       " and (D8101.bdate>=''" + start + "'') and (D8101.bdate<''" + end + "'')";
    QString returns = "SELECT 2 AS TTYPE, D8102.BDATE, D8102A.NOID,  D1800.M_ID," + article +
                      ",D1800.DW_NAME, D1005.COL_NAME, 0-D8102A.S0 as S0, 0-D8102A.S1 as S1, " +
                      "0-D8102A.S2 as S2, 0-D8102A.S3 as S3, 0-D8102A.S4 as S4, 0-D8102A.S5 as S5, 0-D8102A.S6 as S6, "
                      "0-D8102A.S7 as S7, 0-D8102A.S8 as S8," +
                      "0-D8102A.S9 as S9,0 AS STOT, 0.00 AS ZK,0.00 AS VIPZK,0.00 AS ODJ,0.00 AS OMONEY," +
                      (money ? "D8102A.SJ, 0-D8102A.SMONEY AS SMONEY," : "0.00 AS sJ,0.00 as smoney,") + d.oid + "," + d.oname +
                      " ,NULL AS NOTE FROM D1801 INNER JOIN " + "D8102A ON D1801.WL_ID = D8102A.WL_ID INNER JOIN " +
                      "D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN " + "D1005 ON D1801.COL_ID = D1005.COL_ID INNER JOIN " +
                      "D8102 ON D8102A.NOID = D8102.NOID AND (D8102.T=1) INNER JOIN " +
                      "D1103 ON D8102.KH_GYS_ID = D1103.KH_GYS_ID INNER JOIN " + "D1007 ON D8102.CK_ID = D1007.CK_ID  INNER JOIN " +
                      rights + "D1101 ON D8102.YW_ID = D1101.YW_ID " +
                      qx::reports::settlementPiece("d8102", "0", cash, nonCash, true) + conditions +
                      " and (D8102.bdate>=''" + start + "'') and (D8102.bdate<''" + end + "'')";
    // Only the chosen data sources: a block left out is replaced by nothing, and the UNION ALL goes with it.
    QString body;
    if (BSCHK1_1->isChecked()) body += receipts;
    if (BSCHK1_1->isChecked() && BSCHK1_2->isChecked()) body += " UNION ALL ";
    if (BSCHK1_2->isChecked()) body += returns;
    SqlText = "exec SYS_M @param=1,@sqltext=' SELECT * FROM (" + body + ") TMP order by oid,bdate,noid '";
    QString sources;
    if (BSCHK1_1->isChecked()) sources += "采购进货/";
    if (BSCHK1_2->isChecked()) sources += "采购退货/";
    Description = " ●数据来源->" + sources + DateDescription();
    SaveProps();
    SetModalResult(mrOk);
}
