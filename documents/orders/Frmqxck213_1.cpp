#include "documents/orders/Frmqxck213_1.h"

using namespace qx::documents;

TQXCK213_1* QXCK213_1 = nullptr;

const DocumentKind& TQXCK213_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "订单/补单";
        k.headTable = "D8203";
        k.numberCheckCaption = "单号";
        k.editLocks = "EDIT1";  // the warehouse of a saved order may still change
        k.head = {
            {"Edit1", "单    号", HeadRole::Number, 12},
            {"BDATE", "开单日期", HeadRole::Date},
            {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
            {"NOTE", "备    注", HeadRole::Text, 100},
            {"EDATE", "更改日期", HeadRole::Changed},
            {"USER_NAME", "开单", HeadRole::Maker},
        };
        k.priceLabel = "价格|定货价";
        k.amountLabel = "价格|总额";
        k.trailingFields = "SJ,SMONEY";  // the order price and amount; DJ/MONEY only carry them back
        k.arithmetic = PriceArithmetic::PriceAndAmount;
        // The date and the operator of an order never change after it is first saved.
        k.insertHead =
            "INSERT INTO D8203(NOID,CK_ID, BDATE,  USER_ID, NOTE) VALUES ('{number}','{warehouse}','{BDATE}',"
            "'{G_UserId}','{NOTE}');";
        k.updateHead = "UPDATE D8203 SET EDATE=GETDATE(),CK_ID='{warehouse}',NOTE='{NOTE}' WHERE noid='{number}';";
        k.deleteLines = "delete from  D8203A WHERE NOID='{number}';";
        k.insertLine =
            "INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ, "
            " MONEY,  NOTE) VALUES ("
            "'{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}','{s2}','{s3}','{s4}','{s5}',"
            "'{s6}','{s7}','{s8}','{s9}','{sj}','{smoney}','{NOTE}');";
        return k;
    }();
    return kind;
}

TQXCK213_1::TQXCK213_1(QWidget* Owner) : TSalesEntry(Owner, Description()) {
    setObjectName("QXCK213_1");
    FormCreate();
}
