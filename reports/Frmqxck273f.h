#pragma once
// The condition dialog of the sales annual report: the date range and an optional style.
#include "reports/AnnualReport.h"

class TQXCK273F : public TFrm_AnnualFilter {
    Q_OBJECT
public:
    explicit TQXCK273F(QWidget* Owner) : TFrm_AnnualFilter(Owner, "QXCK273F", "销售年报表(销售额)") {}
};

extern TQXCK273F* QXCK273F;
