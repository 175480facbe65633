#pragma once
// The condition dialog of the purchase annual report: the date range and an optional style.
#include "reports/AnnualReport.h"

class TQXCK263F : public TFrm_AnnualFilter {
    Q_OBJECT
public:
    explicit TQXCK263F(QWidget* Owner) : TFrm_AnnualFilter(Owner, "QXCK263F", "采购年报表(金额)") {}
};

extern TQXCK263F* QXCK263F;
