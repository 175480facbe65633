#include "documents/sales/Frmqxck211f.h"

using namespace qx::documents;

TQXCK211F* QXCK211F = nullptr;

const DocumentFilterKind& TQXCK211F::Description() {
    static const DocumentFilterKind kind{
        "销售开单",
        "D8201",
        "<开始日期> 不能大于 <结束日期>!",
        "销售单号",
        " ●销售单号：",
        {
            {"KH_ID", "客    户", " ●客户：", "d1102.KH_gys_ID", LookupList::Partner, "d1102", 10},
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
    return kind;
}

TQXCK211F::TQXCK211F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK211F"); }
