#pragma once
// The supervision-code filter: part of a code.
#include "framework/Frm_Base.h"

class TQXCK297F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK297F(QWidget* Owner);

    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void btn_okClick(QObject* Sender) override;

    QLineEdit* Edit1;  // part of a code
    QLabel* Label1;    // its caption "监管码"
};

extern TQXCK297F* QXCK297F;
