#pragma once
// The sales ranking dialog: data sources, the sales period, warehouse kinds or one warehouse,
// which ranking column groups to show, and whether items with stock but no sales are listed.
#include <QCheckBox>

#include "framework/Controls.h"
#include "framework/Frm_Base.h"

class QToolButton;
class TFrm_Sys_LINK;

class TQXCK281F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK281F(QWidget* Owner);

    void InitForm() override;
    void BDATEChange(QObject* Sender);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    // The checks (reversed dates, no data source, no warehouse kind, an unknown warehouse); each
    // shows its message and keeps the dialog open. Then Description and OK.
    void btn_okClick(QObject* Sender) override;

    // "'YYYY-MM-DD'" of the start, and of the day after the end.
    QString StartValue() const;
    QString EndValue() const;

    QCheckBox* o1;  // 销售单
    QCheckBox* o2;  // POS销售
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    QCheckBox* o3;  // 本公司仓库
    QCheckBox* o4;  // 分销商仓库
    TLinkEdit* CK_ID1;
    QLabel* CK_NAME;
    QCheckBox* C1;  // 滞销款
    QCheckBox* C2;  // 仓库
    QCheckBox* C3;  // 类别
    QCheckBox* C4;  // 颜色
    QCheckBox* C5;  // 品牌
    QCheckBox* C6;  // 会员消费
    QCheckBox* D1;  // items with stock and no sales

private:
    TFrm_Sys_LINK* warehouseLink_ = nullptr;
};

extern TQXCK281F* QXCK281F;
