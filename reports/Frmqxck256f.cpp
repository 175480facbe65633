#include "reports/Frmqxck256f.h"

TQXCK256F* QXCK256F = nullptr;

TQXCK256F::TQXCK256F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK256F");
    SetCaption("库存分布查询");
    WL_ID = Panel_Condition->AddLinkEdit("WL_ID", "款    号:", 20, "wl_name");
    wl_name = WL_ID->NameLabel();
    Label_WL = Panel_Condition->CaptionOf(WL_ID);
    Panel_Condition->NewRow();
    CK_ID1 = Panel_Condition->AddLinkEdit("CK_ID1", "仓库代号:", 6, "CK_NAME1");
    CK = Panel_Condition->CaptionOf(CK_ID1);
    if (CK) CK->setObjectName("CK");
    CK_ID2 = Panel_Condition->AddLinkEdit("CK_ID2", "至：", 6, "CK_NAME2");
    CK_ID2->setText("ZZZZZZ");
    FormCreate();
}

void TQXCK256F::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    StyleLink = new TQX_LINK_K(this);
    StyleLink->init(WL_ID, "");
    WL_ID->OnButtonClick = [this](QObject* sender) { WL_IDButtonClick(sender); };
    const bool severalWarehouses = !G_CKCOUNT_R;
    for (QWidget* w : std::initializer_list<QWidget*>{CK, CK_ID1, CK_ID2})
        if (w) w->setEnabled(severalWarehouses);
    if (severalWarehouses) {
        LowLink = new TFrm_Sys_LINK_CK(this);
        LowLink->init(AdoQry_Work, CK_ID1, CK_ID1, FuncNo, "", "");
        HighLink = new TFrm_Sys_LINK_CK(this);
        HighLink->init(AdoQry_Work, CK_ID2, CK_ID2, FuncNo, "", "");
        CK_ID1->OnButtonClick = [this](QObject* sender) { WL_IDButtonClick(sender); };
        CK_ID2->OnButtonClick = [this](QObject* sender) { WL_IDButtonClick(sender); };
    }
}

void TQXCK256F::WL_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TQXCK256F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape) {
        for (TFrm_Sys_LINK* link : std::initializer_list<TFrm_Sys_LINK*>{LowLink, HighLink, StyleLink}) {
            if (link && link->Visible()) {
                link->Close();
                Key = 0;
                return;
            }
        }
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

void TQXCK256F::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    Condition.clear();
    Condition_t("=", "D1800.K_ID", WL_ID->text());
    // the builder joins its pieces with " AND "; the first piece of this condition needs none
    if (Condition.startsWith(" AND ")) Condition = Condition.mid(5);
    if (!Condition.isEmpty()) Condition += " and ";
    Condition += " (d1802.ck_id>='" + SqlStr(CK_ID1->text()) + "') and (d1802.ck_id<='" + SqlStr(CK_ID2->text()) + "')";
    Description.clear();
    if (!WL_ID->text().trimmed().isEmpty()) Description += " ●" + (Label_WL ? Label_WL->text() : QString("款    号:")) + " = " + WL_ID->text();
    if (!CK_ID1->text().isEmpty() && !CK_ID2->text().isEmpty())
        Description += QString(" ●") + "仓库从:" + CK_ID1->text() + " 至 " + CK_ID2->text();
    SetModalResult(mrOk);
}
