#pragma once
// The purchase summary: the grouped rows of the dialog's batch; the columns are whatever the
// statement returns, titled by their aliases, widths from the grouping items, size titles of the
// current row's size group.
#include <QTimer>

#include "framework/Frm_Base_Qry.h"
#include "reports/Frmqxck201gf.h"

class TQXCK201G : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK201G(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    void AdoQry_MainAfterOpen();
    void gtimeTimer();

    TQXCK201GF* Filter = nullptr;
    TClientDataSet* CDS_M;  // the size groups (d1006)
    QTimer* gtime;

protected:
    // The summary of another document family: its name, caption and progress text.
    TQXCK201G(QWidget* Owner, const QString& name, const QString& caption, const QString& progress);
    // The condition dialog of this summary.
    virtual TQXCK201GF* NewFilter();
    QString progress_;
};

extern TQXCK201G* QXCK201G;
