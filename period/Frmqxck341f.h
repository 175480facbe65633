#pragma once
// The opening stock filter: style, name, brand, category, warehouse, and which goods (active,
// inactive or both).
#include "framework/Frm_Base.h"

class QCheckBox;

class TQXCK341F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK341F(QWidget* Owner);

    void FormCreate();
    void btn_okClick(QObject* Sender) override;

    QLineEdit* K_ID;     // "款号/货号"
    QLineEdit* WL_NAME;  // "商品名称"
    QLineEdit* PP_ID;    // "品    牌"
    QLineEdit* CLASS_ID; // "商品类型"
    TLinkEdit* CK_ID;    // "仓    库"
    QCheckBox* CheckBox1;  // "有效"
    QCheckBox* CheckBox2;  // "失效"
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;
};

extern TQXCK341F* QXCK341F;
