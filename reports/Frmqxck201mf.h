#pragma once
// The condition dialog of the purchase detail: date range, receipts and returns, settlement
// kinds, the filters, and the dimension the lines are ordered by (supplier, style, salesperson,
// warehouse). Builds the detail procedure call over receipts and returns (negated).
#include "reports/TradeReport.h"

class TQXCK201MF : public TFrm_TradeFilter {
    Q_OBJECT
public:
    explicit TQXCK201MF(QWidget* Owner);
    // tag 1 supplier, 2 style, 3 salesperson, 4 warehouse: builds the statement, closes with OK.
    void btn_group(int tag);
    void btn_okClick(QObject* Sender) override;
};

extern TQXCK201MF* QXCK201MF;
