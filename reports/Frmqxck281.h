#pragma once
// The sales ranking: for one sales period, styles, warehouses, categories, colours, brands and
// members ranked by quantity sold side by side, and the slow movers (styles in stock that sold
// nothing) ranked by stock; row N holds the N-th place of every ranking. One batch of temporary
// tables builds the rows.
#include "framework/Frm_Base_Qry.h"

class TQXCK281F;

class TQXCK281 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK281(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    // Titles of the column groups, and the groups the dialog's choices hide.
    void SetColumns();

    // The batch of the dialog's current choices.
    QString BuildSql() const;

    // Bars of the sold quantity, the places along the axis labelled by the style's name.
    qx::chart::ChartSpec ChartSpec() const override;

    TQXCK281F* Filter = nullptr;
};

extern TQXCK281* QXCK281;
