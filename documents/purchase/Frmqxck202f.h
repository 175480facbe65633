#pragma once
// The purchase return filter: date range, supplier, warehouse and return number range.
#include "documents/common/DocumentFilter.h"

class TQXCK202F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK202F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
    void BDATEChange(QObject* Sender) { EDATEChange(Sender); }
};

extern TQXCK202F* QXCK202F;
