#pragma once
// Opening stock of goods: per SKU and warehouse the opening quantities per size, their total
// and the opening value; a row may be deleted (its whole stock row goes).
#include "framework/Frm_Base_Qry.h"

class TQXCK341F;

class TQXck341 : public TFrm_Base_Outer {
    Q_OBJECT
public:
    explicit TQXck341(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void GetData() override;
    // The filter dialog again (F3), then the list.
    void Act_LocateExecute(QObject* Sender);
    void AdoQry_MainAfterScroll(TDataSet* DataSet);

    // The list statement with the warehouse-rights join as the signed-in user has it.
    static AnsiString ListQuery();
    static const char* const DeleteQuery;

    AnsiString OrderFields;  // the order the rows are shown in
    QAction* Act_Locate;
    TQXCK341F* Filter = nullptr;

private:
    void BuildColumns();
};

extern TQXck341* QXck341;
