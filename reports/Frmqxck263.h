#pragma once
// The purchase annual report: per year the receipt amounts ("2026进") and the purchase return
// amounts, negative ("2026退"), by month, with the year's total.
#include "reports/Frmqxck263f.h"

class TQXCK263 : public TFrm_AnnualReport {
    Q_OBJECT
public:
    explicit TQXCK263(QWidget* Owner) : TFrm_AnnualReport(Owner, "QXCK263", "采购年报表(金额)") {}
    void InitForm(const Trecord& rec) override;
    QString RowSource(const QString& condition) const override;
};

extern TQXCK263* QXCK263;
