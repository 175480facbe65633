#pragma once
// The sales summary: the purchase summary's report over the sales dialog's batch.
#include "reports/Frmqxck201g.h"
#include "reports/Frmqxck211gf.h"

class TQXCK211G : public TQXCK201G {
    Q_OBJECT
public:
    explicit TQXCK211G(QWidget* Owner);

protected:
    TQXCK201GF* NewFilter() override;
};

extern TQXCK211G* QXCK211G;
