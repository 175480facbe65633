#include "documents/sales/Frmqxck211f.h"

#include "documents/sales/SalesEntry.h"

using namespace qx::documents;

TQXCK211F* QXCK211F = nullptr;

const DocumentFilterKind& TQXCK211F::Description() {
    static const DocumentFilterKind kind = TSalesEntry::customerFilter("销售开单", "D8201", "销售单号");
    return kind;
}

TQXCK211F::TQXCK211F(QWidget* Owner) : TDocumentFilter(Owner, Description()) { setObjectName("QXCK211F"); }
