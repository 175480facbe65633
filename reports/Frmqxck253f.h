#pragma once
// The condition dialog of the movement summary: opening, receipts, issues and closing as quantity and cost amount.
#include "reports/MovementReport.h"

class TQXCK253F : public TFrm_MovementFilter {
    Q_OBJECT
public:
    explicit TQXCK253F(QWidget* Owner) : TFrm_MovementFilter(Owner, "QXCK253F", "进销存汇总表", false, false) {}
};

extern TQXCK253F* QXCK253F;
