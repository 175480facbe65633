#pragma once
// The count sheet entry screen ("录入单"): counted quantities of one warehouse per style,
// colour and size (d8300, d8300A). A sheet never posts stock; saving it again puts it back to
// counting and unlinks it from the loss/gain sheet a summary made of it.
#include "documents/common/DocumentEntry.h"

class TQXCK235_1 : public TDocumentEntry {
    Q_OBJECT
public:
    explicit TQXCK235_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();

    QLineEdit* STRPARAM1;  // who counted or handled it ("经    手")
    void btn_click(QObject* Sender) { KH_GYS_IDButtonClick(Sender); }
    void setcbj() {}
};

extern TQXCK235_1* QXCK235_1;
