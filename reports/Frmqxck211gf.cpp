#include "reports/Frmqxck211gf.h"

TQXCK211GF* QXCK211GF = nullptr;

namespace {
// Buttons in the purchase dialog's order; the brand button runs the brand preset (H) and two
// further buttons reach the department (D) and brand/style (I) presets.
std::vector<TQXCK201GF::Preset> salesPresets() {
    return {{"&1.按 【客户】     ", "按 [客户]", "A"},         {"&2.按 【客户/商品】", "按 [客户/商品]", "B"},
            {"&7.按 【商品】       ", "按 [商品]", "C"},       {"&5.按 【品牌】       ", "按 [品牌]", "H"},
            {"&6.按 【业务员】   ", "按 [业务员]", "E"},       {"&3.按 【仓库】       ", "按 [仓库]", "F"},
            {"&4.按 【仓库/商品】  ", "按 [仓库/商品]", "G"},  {"&8.按 【部门】", "按 [部门]", "D"},
            {"&9.按 【品牌/商品】", "按 [品牌/商品]", "I"}};
}
}  // namespace

TQXCK211GF::TQXCK211GF(QWidget* Owner)
    : TQXCK201GF(Owner, "QXCK211GF", "销售汇总表", "销售汇总查询", {"客    户", "d1102", "D1102.KH_GYS_ID", "销售", "退货", "POS"},
                 salesPresets()) {}

QString TQXCK211GF::SourceMessage() const { return "<pos销售、销售收货、销售退货> 至少选择一项以上进行查询"; }
QString TQXCK211GF::SettlementMessage() const { return "结算方式中:现金/非现金 至少选中一项进行查询"; }
QStringList TQXCK211GF::KeptArticleItems(const QString& column) const {
    return column == "H" ? QStringList{"WL_GG"} : QStringList{};
}

QString TQXCK211GF::SourceDescription() const { return ChosenSources("销售开单/", "销售退货/", "POS销售/"); }

QString TQXCK211GF::RowSet(const QString& conditions) const {
    const bool cash = BSCHK2_1->isChecked(), nonCash = BSCHK2_2->isChecked();
    auto range = [this](const QString& column) {
        return " and (" + column + ">='" + StartText() + "') and (" + column + "<'" + EndNextText() + "') ";
    };
    QString out;
    if (BSCHK1_1->isChecked())
        out += QString(" SELECT D8201.BDATE, D8201.NOID, D1008.BM_NAME,d1102.KG_NAME,D1101.YW_NAME,D1007.CK_NAME, ") +
               "D1800.K_ID AS WL_ID, D1800.WL_NAME, D1009.PP_NAME AS WL_GG, D1800.DW_NAME,D1800.M_ID,"
               "D1800.PFJ*(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) AS DP_M," +
               "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, " +
               "D8201A.SMONEY AS MONEY,D8201A.SMONEY-D8201A.MONEY AS LY,D1005.COL_ID,D1005.COL_NAME FROM D8201  " +
               "INNER JOIN D8201A ON D8201A.NOID = D8201.NOID " +
               qx::reports::settlementPiece("d8201", "2", cash, nonCash, false) +
               "INNER JOIN D1801 ON D1801.WL_ID = D8201A.WL_ID " + "INNER JOIN D1800 ON D1801.k_ID = D1800.K_ID " +
               "INNER JOIN D1009 ON D1800.PP_ID = D1009.PP_ID " + "INNER JOIN D1101 ON D8201.YW_ID = D1101.YW_ID " +
               "INNER JOIN D1008 ON D1101.BM_ID = D1008.BM_ID " + "INNER JOIN d1102 ON D8201.KH_GYS_ID = d1102.KH_GYS_ID " +
               "INNER JOIN D1007 ON D8201.CK_ID = D1007.CK_ID " + "INNER JOIN #TCK ON #TCK.CK_ID = D1007.CK_ID " +
               "INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID" + " where (D8201.T=1) " + conditions + range("d8201.bdate");
    if (BSCHK1_1->isChecked() && BSCHK1_2->isChecked()) out += " UNION ALL";
    if (BSCHK1_2->isChecked())
        out += QString(" SELECT D8202.BDATE,D8202.NOID,D1008.BM_NAME,d1102.KG_NAME, D1101.YW_NAME, ") +
               "D1007.CK_NAME,D1800.K_ID AS WL_ID,D1800.WL_NAME,D1009.PP_NAME AS WL_GG,D1800.DW_NAME,D1800.M_ID," +
               "0-D1800.PFJ*(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) AS DP_M, " +
               "0-S0 as s0,0-S1 as s1,0-S2 as s2,0-S3 as s3,0-S4 as s4,0-S5 as s5,0-S6 as s6,0-S7 as s7,0-S8 as s8,0-S9 as s9," +
               "0-d8202A.SMONEY AS MONEY,(D8202A.MONEY-D8202A.SMONEY) AS LY," + "D1005.COL_ID,D1005.COL_NAME  " +
               "FROM d8202  " + "INNER JOIN d8202A ON d8202A.NOID = d8202.NOID " +
               qx::reports::settlementPiece("d8202", "0", cash, nonCash, false) +
               "INNER JOIN D1801 ON D1801.WL_ID = d8202A.WL_ID " + "INNER JOIN D1800 ON D1801.k_ID = D1800.K_ID  " +
               "INNER JOIN D1009 ON D1800.PP_ID = D1009.PP_ID " + "INNER JOIN D1101 ON d8202.YW_ID = D1101.YW_ID " +
               "INNER JOIN D1008 ON D1101.BM_ID = D1008.BM_ID " + "INNER JOIN d1102 ON d8202.KH_GYS_ID = d1102.KH_GYS_ID " +
               "INNER JOIN D1007 ON d8202.CK_ID = D1007.CK_ID " + "INNER JOIN #TCK ON #TCK.CK_ID = D1007.CK_ID " +
               "INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID" + " where (d8202.T=1) " + conditions + range("d8202.bdate");
    if (BSCHK1_3->isChecked()) {
        // point-of-sale receipts: no settlement and no posting test; the member stands for the
        // customer and the filters sit in the warehouse join, before the outer joins
        QString posConditions = conditions;
        posConditions.replace("D1102.KH_GYS_ID", "D712.VIPID").replace("D1101.YW_ID=", "d712.YW_ID=");
        const QString filters = range("D712.bdate") + posConditions;
        const QString outer = QString("LEFT OUTER JOIN  D702 ON D712.VIPID = D702.VIPID ") +
                              "LEFT OUTER JOIN  D1101 ON D712.YW_ID = D1101.YW_ID " +
                              "LEFT OUTER JOIN  D1008 ON D1101.BM_ID=D1008.BM_ID";
        if (!out.isEmpty()) out += " UNION ALL ";
        out += QString("SELECT D712.BDATE, D712.NOID, D1008.BM_NAME, D702.VIPNAME as KG_NAME,") +
               "D1101.YW_NAME, D1007.CK_NAME, D1800.K_ID as wl_id, D1800.wl_name," +
               "D1009.PP_name as WL_GG, D1800.DW_NAME,D1800.M_ID,D1800.PFJ*(D712A.S0+D712A.S1+D712A.S2+D712A.S3+D712A.S4+"
               "D712A.S5+D712A.S6+D712A.S7+D712A.S8+D712A.S9) AS DP_M," +
               " D712A.S0, D712A.S1, D712A.S2, D712A.S3, D712A.S4, D712A.S5, D712A.S6, D712A.S7, D712A.S8, D712A.S9," +
               " D712A.SMONEY AS MONEY,D712A.SMONEY-D712A.MONEY AS LY," + "D1005.COL_ID, D1005.COL_NAME " +
               "FROM  D1800  INNER JOIN D1801 ON D1801.K_ID = D1800.K_ID " + "INNER JOIN D1009 ON D1800.PP_ID = D1009.PP_ID " +
               "INNER JOIN D712A ON D1801.WL_ID = D712A.WL_ID " + "INNER JOIN D712 ON D712A.NOID = D712.NOID " +
               "INNER JOIN  D1005 ON D1801.COL_ID = D1005.COL_ID " + "INNER JOIN #TCK ON #TCK.CK_ID = d712.CK_ID " +
               "INNER JOIN D1007  ON D1007.CK_ID = D712.CK_ID " + filters + outer;
        // the non-article lines: points redemption, cash discount on a full amount, card top-up
        out += QString(" union all ") + "SELECT D712.BDATE, D712.NOID, D1008.BM_NAME, D702.VIPNAME as KG_NAME," +
               "D1101.YW_NAME, D1007.CK_NAME, D1800.K_ID as wl_id, D1800.wl_name," +
               "NULL as WL_GG, NULL AS DW_NAME,NULL AS M_ID,0 AS DP_M," +
               " D712A.S0, D712A.S1, D712A.S2, D712A.S3, D712A.S4, D712A.S5, D712A.S6, D712A.S7, D712A.S8, D712A.S9," +
               " D712A.SMONEY AS MONEY,D712A.SMONEY-D712A.MONEY AS LY," + "NULL AS COL_ID, NULL AS COL_NAME " +
               "FROM (SELECT 'Z' AS K_ID,'【积分换购】' AS WL_NAME union SELECT 'ZZZZZ' AS K_ID,'【满额折现金】' AS WL_NAME "
               "union SELECT 'ZZZZC','【储值卡充值】') D1800 " +
               "INNER JOIN D712A ON D1800.K_ID=D712A.WL_ID " + "INNER JOIN D712 ON D712A.NOID = D712.NOID " +
               "INNER JOIN #TCK ON #TCK.CK_ID = d712.CK_ID " + "INNER JOIN D1007  ON D1007.CK_ID = D712.CK_ID " + filters +
               outer;
    }
    return out;
}
