#pragma once
// The stock query: current stock per SKU, summed over warehouses or per warehouse, one column
// per size position titled from the current row's size group; a double click opens the
// movements of the row's SKU.
#include <QTimer>

#include "framework/Frm_Base_Qry.h"

class TQXCK255F;
class TQXCK255_1;

class TQXCK255 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK255(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    void Act_PreviewExecute(QObject* Sender) override;
    void Act_PrintExecute(QObject* Sender) override;
    void Act_ShowReportExecute(QObject* Sender) override;
    void AdoQry_MainAfterScroll(TDataSet* DataSet);
    void gtimeTimer();

    // The statement of the dialog's current choices (also what Act_Locate opens).
    QString BuildSql() const;

    TClientDataSet* CDS_M;  // the size groups (d1006)
    QTimer* gtime;
    TQXCK255F* Filter = nullptr;
    TQXCK255_1* Drill = nullptr;
};

extern TQXCK255* QXCK255;
