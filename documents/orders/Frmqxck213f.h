#pragma once
// The order filter: date range, warehouse and number range.
#include "documents/common/DocumentFilter.h"

class TQXCK213F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK213F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK213F* QXCK213F;
