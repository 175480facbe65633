#pragma once
// The condition dialog of the sales detail: the purchase detail's dialog over sales tickets,
// sales returns (negated) and point-of-sale receipts (their non-article lines included), with
// customers in place of suppliers, ordered by customer (members for point-of-sale lines), style,
// brand or warehouse. Sales amounts are always selected.
#include "reports/Frmqxck201mf.h"

class TQXCK211MF : public TQXCK201MF {
    Q_OBJECT
public:
    explicit TQXCK211MF(QWidget* Owner);

protected:
    QString Blocks(int tag, const QString& conditions) const override;
    QString SourceMessage() const override;
    QString SettlementMessage() const override;
    QString SourceDescription() const override;
};

extern TQXCK211MF* QXCK211MF;
