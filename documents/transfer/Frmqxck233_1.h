#pragma once
// The transfer entry screen: goods sent from one warehouse (CK_ID) to another (CK_ID_IN),
// D8303 and D8303A. The receiver counts them in later with the arrival check; saving an edited
// transfer starts that count afresh (every received quantity back to 0).
#include "documents/transfer/TransferEntry.h"

class TQXCK233_1 : public TTransferEntry {
    Q_OBJECT
public:
    explicit TQXCK233_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();

    void FormCreate();
    void Act_QuitExecute(QObject* Sender) override;

    QLabel* Y_NOTE = nullptr;

protected:
    void RefreshOwnData() override;
    // Both warehouses given, and not the same one (compared without blanks and case).
    void CheckOwnHead() override;
};

extern TQXCK233_1* QXCK233_1;
