#pragma once
// The sales annual report: per year the sales (" 销售": sales tickets and point-of-sale lines of
// positive quantity) and the returns and exchanges ("退换": sales returns, negative, and
// point-of-sale lines of negative quantity with their amount as stored) by month, with the year's
// total. Point-of-sale lines of quantity 0 count as neither.
#include "reports/Frmqxck273f.h"

class TQXCK273 : public TFrm_AnnualReport {
    Q_OBJECT
public:
    explicit TQXCK273(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    QString RowSource(const QString& condition) const override;

    QLabel* Lab_Note;  // what the two kinds of rows are made of
};

extern TQXCK273* QXCK273;
