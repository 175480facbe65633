#pragma once
// The month-end close: moves the open stock month (sys_co.CK_END_DATE) one month forward or
// back, and launches the quantity balance check and the full cost recalculation.
#include "framework/Frm_Base.h"

class TQXCK342 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCK342(QWidget* Owner);

    // The dialog's own InitForm: the two month labels from the open period. Called again with an
    // empty record after every successful step.
    void InitForm(const Trecord& rec);
    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    // Close (btn_ok) or reverse close (btn_c): told apart by the sender's name.
    void btn_okClick(QObject* Sender) override;
    void bth_kcchkClick(QObject* Sender);
    void bsSkinButton1Click(QObject* Sender);

    // The statements, exactly as they are sent.
    static const char* const CloseStatement;
    static const char* const ReverseCloseStatement;
    static const char* const PeriodQuery;
    static const char* const BalanceQuery;
    static const char* const CostRecalculation;

    // "3月份" for a date in March.
    static AnsiString MonthLabel(const QDate& date);

    QLabel* titBDATE;
    QLabel* BDATE;
    QLabel* titEDATE;
    QLabel* EDATE;
    QPushButton* btn_c;
    QPushButton* bth_kcchk;
    QPushButton* bsSkinButton1;
    TClientDataSet* AdoQry_Tmp;
};

extern TQXCK342* QXCK342;
