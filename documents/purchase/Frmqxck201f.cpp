#include "documents/purchase/Frmqxck201f.h"

using namespace qx::documents;

TQXCK201F* QXCK201F = nullptr;

const DocumentFilterKind& TQXCK201F::Description() {
    static const DocumentFilterKind kind{
        "采购进货",
        "D8101",
        "<开始日期> 不能大于 <结束日期>!",
        "进货单号",
        " ●进货单号：",
        {
            {"KH_ID", "供 应 商", "●供应商：", "d1103.KH_gys_ID", LookupList::Partner, "", 10},
            {"ExtEdit1", "送货单号", "●供应商送货单：", "d8101.SEND_NO", LookupList::None, "", 30},
            {"CK_ID", "仓    库", "●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
    };
    return kind;
}

TQXCK201F::TQXCK201F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK201F"); }
