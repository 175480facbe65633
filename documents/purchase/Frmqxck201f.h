#pragma once
// The purchase receipt filter: document date range with its day count and period presets,
// supplier, delivery note number, warehouse and receipt number range.
#include "documents/common/DocumentFilter.h"

class TQXCK201F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK201F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK201F* QXCK201F;
