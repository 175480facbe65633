#include "documents/sales/Frmqxck212f.h"

using namespace qx::documents;

TQXCK212F* QXCK212F = nullptr;

const DocumentFilterKind& TQXCK212F::Description() {
    static const DocumentFilterKind kind{
        "销售退货",
        "D8202",
        "<开始日期> 不能大于 <结束日期>!",
        "退货单号",
        " ●退货单号：",
        {
            {"KH_ID", "客    户", " ●客户：", "d1102.KH_gys_ID", LookupList::Partner, "d1102", 10},
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
    return kind;
}

TQXCK212F::TQXCK212F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK212F"); }
