#include "reports/Frmqxck211mf.h"

TQXCK211MF* QXCK211MF = nullptr;

namespace {
std::vector<TQXCK201MF::Dimension> salesDimensions() {
    return {{"&1.按 【客户】", "D1102.KH_GYS_ID AS oid", "D1102.KG_NAME AS oname"},
            {"&2.按 【商品】", "d1800.K_id AS oid", "d1800.wl_name AS oname"},
            {"&3.按 【品牌】", "d1009.pp_id AS oid", "d1009.pp_name as oname"},
            {"&4.按 【仓库】", "D1007.CK_ID AS oid", "D1007.CK_NAME oname"}};
}
const QString kBrands = "D1009 ON D1800.PP_ID = D1009.PP_ID INNER JOIN ";
}  // namespace

TQXCK211MF::TQXCK211MF(QWidget* Owner)
    : TQXCK201MF(Owner, "QXCK211MF", "销售明细查询", {"客    户", "d1102", "D1102.KH_GYS_ID", "销售", "退货", "POS"},
                 salesDimensions()) {}

QString TQXCK211MF::SourceMessage() const { return "数据来源中:POS销售、销售开单、销售退货 至少选中一项进行查询"; }
QString TQXCK211MF::SettlementMessage() const { return "结算方式中:现金/非现金 至少选中一项进行查询"; }

QString TQXCK211MF::SourceDescription() const { return ChosenSources("销售开单/", "销售退货/", "POS销售/"); }

QString TQXCK211MF::Blocks(int tag, const QString& conditions) const {
    using qx::reports::DetailBlock;
    const Dimension& d = dimensions_[tag - 1];
    const bool cash = BSCHK2_1->isChecked(), nonCash = BSCHK2_2->isChecked();
    const QString start = StartText(), end = EndNextText();
    const DetailBlock tickets{"0", "D8201", "D8201A", "D1102", false, "D8201A.SJ, D8201A.SMONEY,",
                              qx::reports::settlementPiece("d8201", "2", cash, nonCash, true), kBrands};
    const DetailBlock returns{"2", "D8202", "D8202A", "D1102", true, "D8202A.SJ, 0-D8202A.SMONEY AS SMONEY,",
                              qx::reports::settlementPiece("d8202", "0", cash, nonCash, true), kBrands};
    QStringList blocks;
    if (BSCHK1_1->isChecked()) blocks << qx::reports::detailBlock(tickets, d.oid, d.oname, conditions, start, end);
    if (BSCHK1_2->isChecked()) blocks << qx::reports::detailBlock(returns, d.oid, d.oname, conditions, start, end);
    QString out = blocks.join(" UNION ALL ");
    if (!BSCHK1_3->isChecked()) return out;

    // Point-of-sale receipts: no settlement and no posting test; the member stands for the
    // customer, and the filters sit in the warehouse join, before the outer joins of member and
    // salesperson. The price columns come in the order of the other blocks.
    QString posConditions = conditions;
    posConditions.replace("D1102.KH_GYS_ID", "D712.VIPID").replace("D1101.YW_ID=", "d712.YW_ID=");
    const QString rights = G_CHKCK ? "INNER JOIN  sys_USER_CK ON D712.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id=''" +
                                         SqlStr(SqlStr(G_UserId)) + "'') "
                                   : QString();
    const QString filters = "INNER JOIN D1007  ON D1007.CK_ID = D712.CK_ID " + posConditions + " and (D712.bdate>=''" + start +
                            "'') and (D712.bdate<''" + end + "'')" + " LEFT OUTER JOIN  D702 ON D712.VIPID = D702.VIPID " +
                            "LEFT OUTER JOIN  D1101 ON D712.YW_ID = D1101.YW_ID";
    const QString prices = ",0 AS STOT, D712A.ZK,D712.VIPZK,D712A.ODJ,D712A.OMONEY,D712A.SJ,D712A.SMONEY,";
    const bool byMember = tag == 1;
    const QString oid = byMember ? "isnull(D702.VIPID,''<空>'') AS oid" : d.oid;
    const QString oname = byMember ? "isnull(D702.VIPNAME,'''') AS oname" : d.oname;
    if (!out.isEmpty()) out += " UNION ALL ";
    out += "SELECT 11 AS T,D712.BDATE,D712A.NOID,D1800.M_ID,d1800.K_id, d1800.wl_name  AS WL_NAME,D1800.DW_NAME, D1005.COL_NAME, " +
           qx::reports::detailSizes("D712A", false) + prices + oid + "," + oname + " ,NULL AS NOTE " +
           "FROM  D1800  INNER JOIN D1801 ON D1801.K_ID = D1800.K_ID " + "INNER JOIN D1009 ON D1800.PP_ID = D1009.PP_ID " +
           "INNER JOIN D712A ON D1801.WL_ID = D712A.WL_ID " + "INNER JOIN D712 ON D712A.NOID = D712.NOID " +
           "INNER JOIN  D1005 ON D1801.COL_ID = D1005.COL_ID " + rights + filters;
    // the non-article lines: points redemption, cash discount on a full amount, card top-up
    out += " union all SELECT 11 AS T,D712.BDATE,D712A.NOID,NULL AS M_ID,D1800.K_ID, D1800.WL_NAME,NULL AS DW_NAME,NULL AS COL_NAME, " +
           qx::reports::detailSizes("D712A", false) + prices + "''00'' as oid,''【换购,储值,满额折现】'' as oname,D712A.NOTE " +
           "FROM (SELECT ''Z'' AS K_ID,''【积分换购】'' AS WL_NAME union SELECT ''ZZZZZ'' AS K_ID,''【满额折现金】'' AS WL_NAME "
           "union SELECT ''ZZZZC'',''【储值卡充值】'') D1800 " +
           "INNER JOIN D712A ON D1800.K_ID=D712A.WL_ID " + "INNER JOIN D712 ON D712A.NOID = D712.NOID " + rights + filters;
    return out;
}
