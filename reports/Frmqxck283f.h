#pragma once
// The sales progress dialog: a warehouse, a style, the sales period of at most 60 days, and
// whether Sundays are shown in dark red.
#include <QCheckBox>

#include "framework/Controls.h"
#include "framework/Frm_Base.h"

class QToolButton;
class TFrm_Sys_LINK;

class TQXCK283F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK283F(QWidget* Owner);

    void InitForm() override;
    void BDATEChange(QObject* Sender);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    // The date checks (reversed, longer than 60 days), unknown codes; then Condition and
    // Description.
    void btn_okClick(QObject* Sender) override;

    TLinkEdit* CK_ID;
    QLabel* CK_NAME;
    TLinkEdit* WL_ID;
    QLabel* WL_NAME;
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    QLabel* Lab_Note;       // "系统提示：销售日期要在60天内。"
    QCheckBox* chk_Sunday;  // "星期天深红色突出显示"

private:
    TFrm_Sys_LINK* warehouseLink_ = nullptr;
    TFrm_Sys_LINK* styleLink_ = nullptr;
};

extern TQXCK283F* QXCK283F;
