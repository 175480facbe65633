#pragma once
// The purchase receipt filter: document date range with its day count and period presets,
// supplier, warehouse, delivery note number and receipt number range.
#include "framework/Frm_Base.h"

class QToolButton;

class TQXCK201F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK201F(QWidget* Owner);

    void InitForm() override;
    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void btn_okClick(QObject* Sender) override;
    void KH_IDButtonClick(QObject* Sender);
    void EDATEChange(QObject* Sender);

    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_Period;  // "时段选择"
    TLinkEdit* KH_ID;
    QLabel* KG_NAME;
    TLinkEdit* CK_ID;
    QLabel* CK_NAME;
    QLineEdit* ExtEdit1;
    QLineEdit* Edit1;
    QLineEdit* Edit2;

    TFrm_Sys_LINK_KH* SupplierLink = nullptr;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;  // only when the user may read several warehouses
};

extern TQXCK201F* QXCK201F;
