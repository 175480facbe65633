#pragma once
// The sales return filter: date range, customer, warehouse and number range.
#include "documents/common/DocumentFilter.h"

class TQXCK212F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK212F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK212F* QXCK212F;
