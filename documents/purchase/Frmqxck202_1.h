#pragma once
// The purchase return entry screen: goods sent back from one warehouse to a supplier (D8102,
// D8102A). Supplier and warehouse stay as saved; the warehouse is fixed by the first line; a
// line keeps the number of an order it came from, and such a line keeps its unit.
#include "documents/common/DocumentEntry.h"

class TQXCK202_1 : public TDocumentEntry {
    Q_OBJECT
public:
    explicit TQXCK202_1(QWidget* Owner);

    static const qx::documents::DocumentKind& Description();

    void WL_IDSetText(TField* Sender, const AnsiString& Text) override;
    void DW_IDSetText(TField* Sender, const AnsiString& Text) override;
    void showdw(QObject* Sender, bool& Handled) override;
    void btn_click(QObject* Sender) { KH_GYS_IDButtonClick(Sender); }
    void setcbj() {}

private:
    // A line taken from an order keeps its unit: the refusal, or false when the line is free.
    bool refuseUnitChange();
};

extern TQXCK202_1* QXCK202_1;
