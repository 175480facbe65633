#include "documents/transfer/Frmqxck234f.h"

#include "documents/transfer/TransferList.h"

TQXCK234F* QXCK234F = nullptr;

TQXCK234F::TQXCK234F(QWidget* Owner) : TDocumentFilter(Owner, qx::transfer::filterKind("调拨到货点收")) {
    setObjectName("QXCK234F");
}
