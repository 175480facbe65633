#include "documents/common/DocumentCommon.h"
#include "documents/sales/Frmqxck211_1.h"

using namespace qx::documents;

TQXCK211_1* QXCK211_1 = nullptr;

const DocumentKind& TQXCK211_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "销售开单";
        k.headTable = "d8201";
        k.numberCheckCaption = "销售单号";
        k.editLocks = "EDIT1,ck_id";  // neither the number nor the warehouse of a saved ticket changes
        k.partnerTable = "d1102";
        k.head = TSalesEntry::customerHead("销售单号");
        k.priceLabel = "折后|单价";
        k.amountLabel = "折后|总额";
        // Columns tagged 1 keep what an order gave the line.
        k.lineTitles = {
            {"K_ID", "款号", 1},          {"WL_NAME", "品名", 1},        {"DW_NAME", "单位", 1},
            {"COL_NAME", "颜色", 1},      {"ODJ", "吊牌|单价", 1},       {"OMONEY", "吊牌|总额", 1},
            {"ZK", "折后|折扣", 1},       {"SJ", "折后|单价", 1},        {"SMONEY", "折后|总额", 1},
        };
        k.trailingFields = "ODJ,OMONEY,ZK,SJ,SMONEY";
        k.arithmetic = PriceArithmetic::PriceAndAmountWithTag;
        k.warehouseFixedByLines = true;
        k.linesKeepSource = true;
        k.savedTotals = {"TOLMONEY"};
        k.insertHead = counterpartyHeadInsert("D8201");
        k.updateHead = counterpartyHeadUpdate("D8201");
        k.deleteLines = "delete from  d8201A WHERE NOID='{number}';";
        k.insertLine =
            "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, "
            "  SJ, SMONEY,ZK,ODJ,OMONEY, NOTE,DJ,MONEY) VALUES ("
            "'{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}','{s2}','{s3}','{s4}','{s5}',"
            "'{s6}','{s7}','{s8}','{s9}','{sj}','{smoney}','{discount}','{ODJ}','{Omoney}','{NOTE}',0,0);";
        // The cost of each line: the style's cost price when the ticket is saved.
        k.afterLines = {costFill("D8201A")};
        return k;
    }();
    return kind;
}

TQXCK211_1::TQXCK211_1(QWidget* Owner) : TSalesEntry(Owner, Description()) {
    setObjectName("QXCK211_1");
    FormCreate();
}
