#pragma once
// The movement classification: per article the opening, receipts by movement kind (sales
// returns, POS returns, gains, transfers in, purchases), issues by kind (sales, POS sales,
// losses, transfers out, purchase returns), totals and closing; empty kinds may be hidden.
#include "reports/Frmqxck252f.h"

class TQXCK252 : public TFrm_MovementReport {
    Q_OBJECT
public:
    explicit TQXCK252(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void AfterQuery() override;

    static const QStringList KindFields;  // the movement-kind columns, in grid order
};

extern TQXCK252* QXCK252;
