#include "documents/purchase/Frmqxck202f.h"

using namespace qx::documents;

TQXCK202F* QXCK202F = nullptr;

const DocumentFilterKind& TQXCK202F::Description() {
    static const DocumentFilterKind kind{
        "采购退货",
        "D8102",
        "开始日期 不能大于 <结束日期>!",  // this dialog's own wording
        "退货单号",
        " ●退货单号：",
        {
            {"KH_ID", "供 应 商", " ●供应商：", "d1103.KH_gys_ID", LookupList::Partner, "", 10},
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
    return kind;
}

TQXCK202F::TQXCK202F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK202F"); }
