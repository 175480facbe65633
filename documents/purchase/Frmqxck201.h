#pragma once
// The purchase receipt list: the receipts of the filtered period with their lines below; add,
// copy-add and edit open the entry screen, which is configured once here.
#include "framework/Frm_Base_Entry_Head.h"

class TQXCK201_1;
class TQXCK201F;

class TQXCK201 : public TFrm_Base_Entry_Head {
    Q_OBJECT
public:
    explicit TQXCK201(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;

    // The head statement with the warehouse-rights join as the signed-in user has it.
    static AnsiString HeadQuery();
    static const char* const LineQuery;
    static const char* const DeleteQuery;

    TQXCK201_1* Entry = nullptr;
    TQXCK201F* Filter = nullptr;

private:
    void BuildHeadColumns();
};

extern TQXCK201* QXCK201;
