#pragma once
// The condition dialog of the sales summary: the purchase summary's dialog over sales tickets,
// sales returns (negated) and point-of-sale receipts (their non-article lines included), with
// customers in place of suppliers, the tag-price amount and the gross profit in the row set, and
// the brand presets.
#include "reports/Frmqxck201gf.h"

class TQXCK211GF : public TQXCK201GF {
    Q_OBJECT
public:
    explicit TQXCK211GF(QWidget* Owner);
    QString RowSet(const QString& conditions) const override;

protected:
    QString SourceMessage() const override;
    QString SettlementMessage() const override;
    QString SourceDescription() const override;
    QStringList KeptArticleItems(const QString& column) const override;
};

extern TQXCK211GF* QXCK211GF;
