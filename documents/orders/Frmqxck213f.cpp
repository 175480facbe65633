#include "documents/orders/Frmqxck213f.h"

using namespace qx::documents;

TQXCK213F* QXCK213F = nullptr;

const DocumentFilterKind& TQXCK213F::Description() {
    static const DocumentFilterKind kind{
        "订单/补单",
        "D8203",
        "<开始日期> 不能大于 <结束日期>!",
        "单号",
        " ●销售单号:",
        {
            {"CK_ID", "仓    库", " ●仓库=", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
    return kind;
}

TQXCK213F::TQXCK213F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK213F"); }
