#pragma once
// The receipts/issues/balance detail of one SKU (the stock query's drill-down): the movements
// of a date range through the stock movement procedure, with per-size lines showing the
// current stock of their size.
#include "framework/Frm_Base.h"

class QToolButton;

class TQXCK255_1 : public TFrm_Base_Detail {
    Q_OBJECT
public:
    explicit TQXCK255_1(QWidget* Owner);

    void InitForm(AnsiString Key, TClientDataSet* Master) override;
    void RefreshData() override;
    void SaveData() override;
    void FormCreate();
    void btn_okClick(QObject* Sender) override;
    void btn_CancelClick(QObject* Sender);
    void datecan(QObject* Sender);

    // The procedure call for the master row and the dates.
    QString BuildSql() const;

    bool ShowCost = true;  // the opening report's cost visibility
    QLabel* Lab_Name;
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    QLabel* Lab_Note;
};

extern TQXCK255_1* QXCK255_1;
