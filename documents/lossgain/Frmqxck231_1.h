#pragma once
// The loss/gain sheet entry screen: stock differences of one warehouse per style, colour and
// size (d8301, d8301A), a gain positive and a loss negative. The cost comes from the style; the
// database posts the sheet per size with its sign once it is effective.
#include "documents/common/DocumentEntry.h"

class TQXCK231_1 : public TDocumentEntry {
    Q_OBJECT
public:
    explicit TQXCK231_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();

    QLineEdit* STRPARAM1;  // who counted or handled it ("经    手")

    QLabel* Lab_Hint;  // how gains and losses are written
};

extern TQXCK231_1* QXCK231_1;
