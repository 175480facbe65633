#pragma once
// The condition dialog of the movement classification: opening, receipts and issues split by movement kind, totals and closing (quantities).
#include "reports/MovementReport.h"

class TQXCK252F : public TFrm_MovementFilter {
    Q_OBJECT
public:
    explicit TQXCK252F(QWidget* Owner) : TFrm_MovementFilter(Owner, "QXCK252F", "进销存分类表", false, true) {}
};

extern TQXCK252F* QXCK252F;
