#pragma once
// The condition dialog of the movement detail: one line per movement with a running balance and per-size lines.
#include "reports/MovementReport.h"

class TQXCK254F : public TFrm_MovementFilter {
    Q_OBJECT
public:
    explicit TQXCK254F(QWidget* Owner) : TFrm_MovementFilter(Owner, "QXCK254F", "进销存明细表", true, false) {}
};

extern TQXCK254F* QXCK254F;
