#include "documents/stocktake/CountSheet.h"

namespace qx::documents {

DocumentKind countSheetKind(const CountSheetTexts& texts) {
    const QString lines = texts.table + "A";
    DocumentKind k;
    k.caption = texts.caption;
    k.headTable = texts.table;
    k.numberCheckCaption = texts.checkCaption;
    k.editLocks = "EDIT1,CK_ID";  // number and warehouse of a saved sheet stay
    k.head = {
        {"Edit1", texts.numberCaption, HeadRole::Number, 12},
        {"BDATE", "开单日期", HeadRole::Date},
        {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
        {"STRPARAM1", "经    手", HeadRole::Text, 16},
        {"NOTE", "备    注", HeadRole::Text, 100},
        {"EDATE", "更改日期", HeadRole::Changed},
        {"USER_NAME", "开单", HeadRole::Maker},
    };
    // Quantities only: the grid shows no price or amount (the cost comes from the style).
    k.trailingFields = "STOT";
    k.lineCheck = LineCheck::NotAllZero;
    k.arithmetic = PriceArithmetic::None;
    k.deleteLines = "delete from  " + lines + " WHERE NOID='{number}';";
    k.insertLine = "INSERT INTO " + lines +
                   "  VALUES ('{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}','{s2}',"
                   "'{s3}','{s4}','{s5}','{s6}','{s7}','{s8}','{s9}',0,0,'{NOTE}');";
    k.afterLines = {
        "UPDATE " + lines + " SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (" + lines +
            ".K_ID=M.K_ID) AND (" + lines + ".NOID='{number}');",
    };
    return k;
}

QList<ListColumn> countSheetListColumns(const QList<ListColumn>& stateColumns) {
    QList<ListColumn> columns{
        {"NOID", "单号", 100},
        {"CK_ID", "仓库号", 50, false},
        {"CK_NAME", "仓库", 90},
        {"BDATE", "开单日期", 90},
        {"EDATE", "最后更改", 90},
        {"STRPARAM1", "经手", 70},
        {"USER_ID", "用户号", 60, false},
        {"USER_NAME", "开单", 70},
    };
    columns += stateColumns;
    columns += QList<ListColumn>{
        {"SK", "审批", 60},
        {"SDATE", "审批日期", 90},
        {"NOTE", "备注", 200},
    };
    return columns;
}

QString countSheetLineQuery(const QString& t) {
    return "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, " + t + ".S0, " + t +
           ".S1, " + t + ".S2, " + t + ".S3, " + t + ".S4," + t + ".S5, " + t + ".S6, " + t +
           ".S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, " +
           t + ".S9," + t + ".S8, 0.00 SMONEY,0.00 AS SJ," + t + ".NOTE FROM D1801 INNER JOIN " + t +
           " ON D1801.WL_ID = " + t + ".WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON "
           "D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID WHERE (" + t + ".NOID =%s)";
}

}  // namespace qx::documents
