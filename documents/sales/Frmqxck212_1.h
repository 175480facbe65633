#pragma once
// The sales return entry screen: goods a customer brings back into a warehouse (D8202,
// D8202A), at a return price; no tag price and no discount.
#include "documents/sales/SalesEntry.h"

class TQXCK212_1 : public TSalesEntry {
    Q_OBJECT
public:
    explicit TQXCK212_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();
};

extern TQXCK212_1* QXCK212_1;
