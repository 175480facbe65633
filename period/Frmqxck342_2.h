#pragma once
// The negative-stock notice of the cost recalculation: the movements after which a style's
// running stock was below zero, shown read-only so that document dates can be corrected.
#include "framework/Frm_Base.h"

class TQXCK342_2 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCK342_2(QWidget* Owner);
    ~TQXCK342_2() override;

    // Copies the rows the recalculation returned (a snapshot: the source may change later).
    void INIT(TClientDataSet* Source);
    void FormCreate();
    // The (hidden) OK repeats the copy from the same source.
    void btn_okClick(QObject* Sender) override;
    // A double click on the title toggles between maximised and normal.
    void Label3DblClick(QObject* Sender);

    QLabel* Label3;  // the title
    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label4;
    TDBGridEh* DBGridEh;
    TClientDataSet* AdoQry_Main;
    TClientDataSet* SourceDataSet = nullptr;

private:
    void BuildColumns();
};

extern TQXCK342_2* QXCK342_2;
