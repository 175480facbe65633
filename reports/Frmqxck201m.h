#pragma once
// The purchase detail: every receipt and return line of the dialog's choices, ordered by the
// chosen dimension (oid, oname), returns negated; cost price and amount only for users who may
// see cost. The sales detail derives from it.
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

protected:
    // The detail of another document family: its name, caption, progress text, and the columns
    // of the grid after the sizes (field, title, width).
    struct Column {
        QString field;
        QString title;
        int width;
    };
    TQXCK201M(QWidget* Owner, const QString& name, const QString& caption, const QString& progress,
              const QList<Column>& amounts);
    // The condition dialog of this detail.
    virtual TQXCK201MF* NewFilter();
    // The price and amount are cost (hidden from users who may not see cost).
    virtual bool AmountsAreCost() const { return true; }
    QString progress_;
    QStringList amountFields_;
};

extern TQXCK201M* QXCK201M;
