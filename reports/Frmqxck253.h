#pragma once
// The movement summary: per article the opening, receipts, issues and closing, each as
// quantity and cost amount (amounts only for users who may see cost).
#include "reports/Frmqxck253f.h"

class TQXCK253 : public TFrm_MovementReport {
    Q_OBJECT
public:
    explicit TQXCK253(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void FormCreate();
};

extern TQXCK253* QXCK253;
