#pragma once
// The condition dialog of the purchase summary: date grouping, date range, receipts and returns,
// settlement kinds, colour/size breakdown, the filters, and the grouping combination (a preset
// button or the custom one) from the grouping items of sys_GROUP. Builds one batch: temporary
// warehouse set, grouped select over receipts and returns (negated), drop.
#include <QButtonGroup>
#include <QRadioButton>

#include "framework/DataSet.h"
#include "reports/TradeReport.h"

class TQXCK201GF : public TFrm_TradeFilter {
    Q_OBJECT
public:
    // A run button: caption, description, the sys_GROUP column it selects.
    struct Preset {
        QString caption;
        QString description;
        QString column;
    };
    explicit TQXCK201GF(QWidget* Owner);
    void InitForm() override;
    void btn_group(int tag);
    void btn_okClick(QObject* Sender) override;
    // Builds the statement of the combination in `column` ("A".."P" or "group_show") and closes
    // the dialog with OK.
    void group(const QString& column);
    // The receipts and returns blocks for the current choices.
    virtual QString RowSet(const QString& conditions) const;

    TClientDataSet* group_main;
    QRadioButton* RB1;
    QRadioButton* RB2;
    QRadioButton* RB3;
    QRadioButton* RB4;
    QRadioButton* BSCHK3_1;
    QRadioButton* BSCHK3_2;
    QPushButton* btn_okCustom;  // "按自定义汇总" (hidden)

protected:
    // The summary dialog of another document family: its name, caption, heading, filter kind
    // and run buttons.
    TQXCK201GF(QWidget* Owner, const QString& name, const QString& caption, const QString& heading, const Kind& kind,
               std::vector<Preset> presets);
    // The messages of the choice checks and the data-source part of the description.
    virtual QString SourceMessage() const;
    virtual QString SettlementMessage() const;
    virtual QString SourceDescription() const;
    // Article items kept with the colour/size breakdown for the combination in `column`.
    virtual QStringList KeptArticleItems(const QString& column) const;
    std::vector<Preset> presets_;
};

extern TQXCK201GF* QXCK201GF;
