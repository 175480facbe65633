#pragma once
// The purchase detail: every receipt and return line of the dialog's choices, ordered by the
// chosen dimension (oid, oname), returns negated; cost price and amount only for users who may
// see cost.
#include "framework/Frm_Base_Qry.h"
#include "reports/Frmqxck201mf.h"

class TQXCK201M : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK201M(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    // The line total of each row (the statement carries 0).
    void AdoQry_MainAfterOpen();

    TQXCK201MF* Filter = nullptr;
};

extern TQXCK201M* QXCK201M;
