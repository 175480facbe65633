#include "documents/common/DocumentCommon.h"
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
        k.insertHead = counterpartyHeadInsert("D8202");
        k.updateHead = counterpartyHeadUpdate("D8202");
        k.deleteLines = "delete from  d8202A WHERE NOID='{number}';";
        k.insertLine = lineInsertWithZeroCost("D8202A");
        // Missing SKU rows, but no stock rows: the database makes one when the return posts.
        k.afterLines = {skuCompletion("D8202A"), costFill("D8202A")};
        return k;
    }();
    return kind;
}

TQXCK212_1::TQXCK212_1(QWidget* Owner) : TSalesEntry(Owner, Description()) {
    setObjectName("QXCK212_1");
    FormCreate();
}
