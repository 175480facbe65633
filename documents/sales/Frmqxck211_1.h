#pragma once
// The sales ticket entry screen: goods that leave a warehouse to a customer (D8201, D8201A),
// at a tag price with a discount; the cost of each line is the style's at the moment of saving.
#include "documents/sales/SalesEntry.h"

class TQXCK211_1 : public TSalesEntry {
    Q_OBJECT
public:
    explicit TQXCK211_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();
};

extern TQXCK211_1* QXCK211_1;
