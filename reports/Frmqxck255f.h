#pragma once
// The stock query's condition dialog: warehouse, style, summary or per-warehouse listing, sort
// order of the per-warehouse listing, and "only articles in stock".
#include <QCheckBox>
#include <QRadioButton>

#include "framework/Frm_Base.h"

class TQXCK255F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK255F(QWidget* Owner);

    void InitForm() override;
    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    bool FormCloseQuery() override;
    void btn_okClick(QObject* Sender) override;
    void BSCHK2_2Click(QObject* Sender);
    void KH_IDButtonClick(QObject* Sender);

    QLabel* ck;  // the warehouse caption
    TLinkEdit* CK_ID;
    QLabel* ck_name;
    TLinkEdit* wl_id;
    QLabel* wl_name;
    QRadioButton* BSCHK2_1;
    QRadioButton* BSCHK2_2;
    QRadioButton* o1;
    QRadioButton* o2;
    QCheckBox* BSCHK2_3;

    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;  // only when the user may read several warehouses
    TQX_LINK_K* StyleLink = nullptr;
};

extern TQXCK255F* QXCK255F;
