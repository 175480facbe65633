#include "documents/sales/Frmqxck212f.h"

#include "documents/sales/SalesEntry.h"

using namespace qx::documents;

TQXCK212F* QXCK212F = nullptr;

const DocumentFilterKind& TQXCK212F::Description() {
    static const DocumentFilterKind kind = TSalesEntry::customerFilter("销售退货", "D8202", "退货单号");
    return kind;
}

TQXCK212F::TQXCK212F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK212F"); }
