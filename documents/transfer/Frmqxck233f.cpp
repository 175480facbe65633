#include "documents/transfer/Frmqxck233f.h"

#include "documents/transfer/TransferList.h"

TQXCK233F* QXCK233F = nullptr;

TQXCK233F::TQXCK233F(QWidget* Owner) : TDocumentFilter(Owner, qx::transfer::filterKind("调拨单")) {
    setObjectName("QXCK233F");
}
