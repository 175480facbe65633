#pragma once
// The order entry screen: goods ordered for a warehouse per style, colour and size at an order
// price (D8203, D8203A). An order never touches stock, SKUs or cost; once saved, only its
// warehouse, note and lines change. Lines may be taken from another order of the warehouse.
#include "documents/sales/SalesEntry.h"

class TQXCK213_1 : public TSalesEntry {
    Q_OBJECT
public:
    explicit TQXCK213_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();
};

extern TQXCK213_1* QXCK213_1;
