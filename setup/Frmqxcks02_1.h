#pragma once
// The styles of one promotion row: the styles with stock in the warehouse that are in no row
// yet on the left, the row's styles on the right; the move buttons (tags 1-6) shift them in
// memory and OK saves the row's list in one batch. For special prices and fixed discounts
// (mode -1) the right list carries the non-member and member values.
#include <QPushButton>
#include <array>

#include "framework/Frm_Base.h"

class TQXCKS02_1 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCKS02_1(QWidget* Owner);

    // row 0-10; mode -2 gift, -1 special price / fixed discount, 0-2 the row's rule.
    void InitForm(int row, int mode, const AnsiString& ckId, bool mayEdit);
    void btn_Click(int tag);
    void GRID1DblClick();
    void GRID2DblClick();
    void btn_okClick(QObject* Sender) override;

    static AnsiString AvailableQuery(const AnsiString& ckId);
    static AnsiString ChosenQuery(const AnsiString& ckId, int row);

    int Row = 0;
    int Mode = 0;
    AnsiString CK_ID;
    bool MayEdit = false;
    TClientDataSet* AdoQry_1;  // available
    TClientDataSet* AdoQry_2;  // chosen
    TDBGridEh* GRID1;
    TDBGridEh* GRID2;
    std::array<QPushButton*, 6> MoveButtons;  // tags 1-6

private:
    void move(TClientDataSet* from, TClientDataSet* to, bool all, bool sameClass);
    void setColumns(TDBGridEh* grid, bool values);
};

extern TQXCKS02_1* QXCKS02_1;
