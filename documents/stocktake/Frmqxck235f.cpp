#include "documents/stocktake/Frmqxck235f.h"

using namespace qx::documents;

TQXCK235F* QXCK235F = nullptr;

const DocumentFilterKind& TQXCK235F::Description() {
    static const DocumentFilterKind kind{
        "盘点录入",
        "d8300",
        "<开始日期> 不能大于 <结束日期>!",
        "单    号",
        " ●单号：",
        {
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
            {"D8301NOID", "损益单号", " ●损益单号：", "D8300.D8301NOID", LookupList::None, "", 12},
        },
        " ●开单日期：",
    };
    return kind;
}

TQXCK235F::TQXCK235F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK235F"); }
