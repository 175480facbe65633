#pragma once
// The quantity balance check: every SKU and warehouse whose stored stock differs from the stock
// the documents give, size by size, and the one repair that copies the recomputed stock over.
#include "framework/Frm_Base.h"

class TQXCK342_1 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCK342_1(QWidget* Owner);
    ~TQXCK342_1() override;

    // Takes the rows of the balance view opened by the month-end close (its scratch dataset,
    // which outlives this dialog); sizes whose two quantities agree are shown as 0 / 0.
    void InitForm(TClientDataSet* DataSet);
    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void AdoQry_TmpAfterScroll(TDataSet* DataSet);
    void DBGridEhDblClick(QObject* Sender);
    // "修正(F2)": the repair batch.
    void btn_okClick(QObject* Sender) override;

    static const char* const RepairBatch;

    QLabel* Label1;
    QLabel* Label2;
    TDBGridEh* DBGridEh;
    TClientDataSet* AdoQry_Tmp = nullptr;

private:
    void BuildColumns();
};

extern TQXCK342_1* QXCK342_1;
