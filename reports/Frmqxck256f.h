#pragma once
// The stock distribution dialog: one style (or all) and a range of warehouse ids.
#include "framework/Frm_Base.h"

class TQXCK256F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK256F(QWidget* Owner);

    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void btn_okClick(QObject* Sender) override;
    void WL_IDButtonClick(QObject* Sender);

    TLinkEdit* WL_ID;
    QLabel* wl_name;
    QLabel* Label_WL;  // "款    号:"
    QLabel* CK;        // "仓库代号:"
    TLinkEdit* CK_ID1;
    TLinkEdit* CK_ID2;

    TQX_LINK_K* StyleLink = nullptr;
    TFrm_Sys_LINK_CK* LowLink = nullptr;   // only when the user may read several warehouses
    TFrm_Sys_LINK_CK* HighLink = nullptr;
};

extern TQXCK256F* QXCK256F;
