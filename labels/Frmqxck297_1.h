#pragma once
// Dispatch of supervision codes: the receiving warehouse and the codes sent there, one a line.
#include "framework/Frm_Base.h"

class QPlainTextEdit;

class TQXCK297_1 : public TFrm_Base_Detail {
    Q_OBJECT
public:
    explicit TQXCK297_1(QWidget* Owner);

    void FormCreate();
    void RefreshData() override;
    void SaveData() override;
    void btn_okClick(QObject* Sender) override;

    // The memo's lines as a memo holds them: split at line breaks, no extra empty line after a
    // final break, none at all for an empty memo.
    static QStringList MemoLines(const QString& text);

    TLinkEdit* CK_ID;
    QLabel* CK_NAME;
    QLabel* Label1;  // the prompt above the memo
    QPlainTextEdit* Memo1;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;
};

extern TQXCK297_1* QXCK297_1;
