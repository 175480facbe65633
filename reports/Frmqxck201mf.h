#pragma once
// The condition dialog of the purchase detail: date range, receipts and returns, settlement
// kinds, the filters, and the dimension the lines are ordered by (supplier, style, salesperson,
// warehouse). Builds the detail procedure call over receipts and returns (negated). The sales
// detail's dialog derives from it with its own sources and dimensions.
#include <vector>

#include "reports/TradeReport.h"

class TQXCK201MF : public TFrm_TradeFilter {
    Q_OBJECT
public:
    // A run button: caption, and the oid/oname columns of the dimension it orders by.
    struct Dimension {
        QString caption;
        QString oid;
        QString oname;
    };
    explicit TQXCK201MF(QWidget* Owner);
    // tag 1 supplier, 2 style, 3 salesperson, 4 warehouse: builds the statement, closes with OK.
    void btn_group(int tag);
    void btn_okClick(QObject* Sender) override;

protected:
    TQXCK201MF(QWidget* Owner, const QString& name, const QString& caption, const Kind& kind, std::vector<Dimension> dimensions);
    // The union of the chosen sources' blocks for the dimension of button `tag`.
    virtual QString Blocks(int tag, const QString& conditions) const;
    virtual QString SourceMessage() const;
    virtual QString SettlementMessage() const;
    // "采购进货/采购退货/" for the chosen sources
    virtual QString SourceDescription() const;
    std::vector<Dimension> dimensions_;
};

extern TQXCK201MF* QXCK201MF;
