#include "documents/sales/Frmqxck212_1.h"

using namespace qx::documents;

TQXCK212_1* QXCK212_1 = nullptr;

const DocumentKind& TQXCK212_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "销售退货";
        k.headTable = "d8202";
        k.numberCheckCaption = "出货单号";
        k.editLocks = "EDIT1,ck_id";
        k.partnerTable = "d1102";
        k.settlementCondition = "(jy_id<>'2')";
        k.head = TSalesEntry::customerHead("退货单号");
        k.priceLabel = "退货价";
        k.amountLabel = "总额";
        k.arithmetic = PriceArithmetic::PriceAndAmount;
        k.total = TotalFrom::TotalTitle;
        k.warehouseFixedByLines = true;
        k.linesKeepSource = true;
        k.insertHead =
            "INSERT INTO D8202(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES "
            "('{G_SKSTR}','{number}','{KH_GYS_ID}','{warehouse}','{BDATE}','{SEND_ID}','{YW_ID}','{JY_ID}',"
            "'{G_UserId}','{NOTE}','{total}');";
        k.updateHead =
            "UPDATE D8202 SET EDATE=GETDATE(), KH_GYS_ID='{KH_GYS_ID}',CK_ID='{warehouse}',BDATE='{BDATE}',"
            "SEND_ID='{SEND_ID}',YW_ID='{YW_ID}',JY_ID='{JY_ID}',USER_ID='{G_UserId}',NOTE='{NOTE}',"
            "TOLMONEY='{total}' WHERE noid='{number}';";
        k.deleteLines = "delete from  d8202A WHERE NOID='{number}';";
        k.insertLine =
            "INSERT INTO D8202A  VALUES ('{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}',"
            "'{s2}','{s3}','{s4}','{s5}','{s6}','{s7}','{s8}','{s9}',0,0,'{Sj}','{Smoney}','{NOTE}');";
        // Missing SKU rows, but no stock rows: the database makes one when the return posts.
        k.afterLines = {
            " INSERT INTO D1801 SELECT D8202A.WL_ID, D8202A.K_ID, D8202A.COL_ID FROM D8202A LEFT OUTER JOIN D1801 ON "
            "D8202A.WL_ID = D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (D8202A.NOID='{number}');",
            "UPDATE D8202A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M "
            "WHERE (D8202A.K_ID=M.K_ID) AND (D8202A.NOID='{number}');",
        };
        return k;
    }();
    return kind;
}

TQXCK212_1::TQXCK212_1(QWidget* Owner) : TSalesEntry(Owner, Description()) {
    setObjectName("QXCK212_1");
    FormCreate();
}
