#pragma once
// The loss/gain sheet filter: date range, warehouse and number range.
#include "documents/common/DocumentFilter.h"

class TQXCK231F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK231F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK231F* QXCK231F;
