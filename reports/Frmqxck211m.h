#pragma once
// The sales detail: the purchase detail's report over the sales dialog's procedure call: sales
// tickets, negated returns and point-of-sale lines, with the price, the undiscounted price and
// amount, the discounts and the note of each line. Sales amounts are not cost: every user sees them.
#include "reports/Frmqxck201m.h"
#include "reports/Frmqxck211mf.h"

class TQXCK211M : public TQXCK201M {
    Q_OBJECT
public:
    explicit TQXCK211M(QWidget* Owner);

protected:
    TQXCK201MF* NewFilter() override;
    bool AmountsAreCost() const override { return false; }
};

extern TQXCK211M* QXCK211M;
