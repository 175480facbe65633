#include "documents/lossgain/Frmqxck231f.h"

using namespace qx::documents;

TQXCK231F* QXCK231F = nullptr;

const DocumentFilterKind& TQXCK231F::Description() {
    static const DocumentFilterKind kind{
        "损溢单",
        "d8301",
        "<开始日期> 不能大于 <结束日期>!",
        "损溢单号",
        " ●损溢单号：",
        {
            {"CK_ID", "仓    库", " ●仓库：", "d1007.ck_ID", LookupList::Warehouse, "", 4},
        },
        " ●开单日期：",
    };
    return kind;
}

TQXCK231F::TQXCK231F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK231F"); }
