#pragma once
// The sales ticket filter: date range, customer, warehouse and number range.
#include "documents/common/DocumentFilter.h"

class TQXCK211F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK211F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK211F* QXCK211F;
