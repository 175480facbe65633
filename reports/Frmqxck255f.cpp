#include "reports/Frmqxck255f.h"

#include <QButtonGroup>
#include <QCheckBox>

TQXCK255F* QXCK255F = nullptr;

TQXCK255F::TQXCK255F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK255F");
    SetCaption("库存查询");
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "仓    库", 4, "ck_name");
    ck_name = CK_ID->NameLabel();
    ck = Panel_Condition->CaptionOf(CK_ID);
    if (ck) ck->setObjectName("ck");
    Panel_Condition->NewRow();
    wl_id = Panel_Condition->AddLinkEdit("wl_id", "商    品", 20, "wl_name");
    wl_name = wl_id->NameLabel();
    Panel_Condition->NewRow();
    BSCHK2_1 = new QRadioButton("汇总显示(不区分仓库)", Panel_Condition);
    BSCHK2_1->setObjectName("BSCHK2_1");
    BSCHK2_2 = new QRadioButton("明细显示(区分仓库)", Panel_Condition);
    BSCHK2_2->setObjectName("BSCHK2_2");
    auto* group1 = new QButtonGroup(this);
    group1->addButton(BSCHK2_1);
    group1->addButton(BSCHK2_2);
    BSCHK2_2->setChecked(true);
    Panel_Condition->AddControl(BSCHK2_1, QString());
    Panel_Condition->AddControl(BSCHK2_2, QString());
    Panel_Condition->NewRow();
    o1 = new QRadioButton("以款号优先", Panel_Condition);
    o1->setObjectName("o1");
    o2 = new QRadioButton("以仓库优先", Panel_Condition);
    o2->setObjectName("o2");
    auto* group2 = new QButtonGroup(this);
    group2->addButton(o1);
    group2->addButton(o2);
    o1->setChecked(true);
    Panel_Condition->AddControl(o1, QString());
    Panel_Condition->AddControl(o2, QString());
    Panel_Condition->NewRow();
    BSCHK2_3 = Panel_Condition->AddCheckBox("BSCHK2_3", "只显示有库存的商品");
    BSCHK2_3->setChecked(true);
    StoredProps = {"BSCHK2_1", "BSCHK2_2", "BSCHK2_3", "o1", "o2"};
    FormCreate();
}

void TQXCK255F::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    const bool severalWarehouses = !G_CKCOUNT_R;
    if (severalWarehouses) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Work, CK_ID, CK_ID, FuncNo, "", "");
        CK_ID->OnButtonClick = [this](QObject* sender) { KH_IDButtonClick(sender); };
    }
    for (QWidget* w : std::initializer_list<QWidget*>{ck, CK_ID, BSCHK2_1, BSCHK2_2, o1, o2})
        if (w) w->setEnabled(severalWarehouses);
    StyleLink = new TQX_LINK_K(this);
    StyleLink->init(wl_id, "");
    wl_id->OnButtonClick = [this](QObject* sender) { KH_IDButtonClick(sender); };
    for (QAbstractButton* b : std::initializer_list<QAbstractButton*>{BSCHK2_1, BSCHK2_2, BSCHK2_3})
        qx::connectGuarded(b, &QAbstractButton::clicked, this, [this, b] { BSCHK2_2Click(b); });
}

void TQXCK255F::InitForm() {
    TFrm_Sys_Filter::InitForm();
    BSCHK2_2Click(BSCHK2_2);
}

void TQXCK255F::BSCHK2_2Click(QObject*) {
    // the sort choice applies to the per-warehouse listing only
    o1->setEnabled(BSCHK2_2->isChecked() && !G_CKCOUNT_R);
    o2->setEnabled(BSCHK2_2->isChecked() && !G_CKCOUNT_R);
}

void TQXCK255F::KH_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TQXCK255F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape) {
        if (!G_CKCOUNT_R && WarehouseLink && WarehouseLink->Visible()) {
            WarehouseLink->Close();
            Key = 0;
            return;
        }
        if (StyleLink && StyleLink->Visible()) {
            StyleLink->Close();
            Key = 0;
            return;
        }
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

bool TQXCK255F::FormCloseQuery() {
    SaveProps();
    return true;
}

void TQXCK255F::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    if (BSCHK2_2->isChecked())
        Description = "●显示方式:" + BSCHK2_2->text() + " ●排序:" + (o1->isChecked() ? o1->text() : o2->text());
    else
        Description = "●显示方式:" + BSCHK2_1->text();
    Condition.clear();
    const QString warehouse = CK_ID->text().trimmed();
    if (!warehouse.isEmpty()) {
        Condition += "and d1802.ck_id='" + SqlStr(warehouse) + "'";
        Description += " ●仓库=" + warehouse;
    }
    const QString style = wl_id->text().trimmed();
    if (!style.isEmpty()) {
        Condition += "and d1800.K_id='" + SqlStr(style) + "'";
        Description += " ●商品=" + style;
    }
    SetModalResult(mrOk);
}
