#include "period/Frmqxck341f.h"

#include <QCheckBox>

TQXCK341F* QXCK341F = nullptr;

TQXCK341F::TQXCK341F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK341F");
    SetCaption("商品库存期初");
    K_ID = Panel_Condition->AddEdit("K_ID", "款号/货号", 17);
    WL_NAME = Panel_Condition->AddEdit("WL_NAME", "商品名称", 80);
    Panel_Condition->NewRow();
    PP_ID = Panel_Condition->AddEdit("PP_ID", "品    牌", 4);
    CLASS_ID = Panel_Condition->AddEdit("CLASS_ID", "商品类型", 4);
    Panel_Condition->NewRow();
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    Panel_Condition->NewRow();
    CheckBox1 = Panel_Condition->AddCheckBox("CheckBox1", "有效");
    CheckBox2 = Panel_Condition->AddCheckBox("CheckBox2", "失效");
    // Goods imported by the system initialisation come in with WL_YS = 0: both ticked at first,
    // so a new list shows every opening row.
    CheckBox1->setChecked(true);
    CheckBox2->setChecked(true);
    FormCreate();
}

void TQXCK341F::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    const bool severalWarehouses = !G_CKCOUNT_R;
    CK_ID->setEnabled(severalWarehouses);
    if (severalWarehouses) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Work, CK_ID, CK_ID, FuncNo, "", "");
    }
}

void TQXCK341F::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    if (!CheckBox1->isChecked() && !CheckBox2->isChecked()) {
        DISPINFO("有效和无效必须选定一个", 5);
        CheckBox1->setFocus();
        Abort();
    }
    const QString warehouse = CK_ID->text().trimmed();
    if (!warehouse.isEmpty()) {
        Description += " ●仓库=" + warehouse;
        Condition_t("=", "d1007.ck_ID", warehouse);
    }
    const QString style = K_ID->text().trimmed();
    if (!style.isEmpty()) {
        Description += " ●款号/货号 包含 " + style;
        Condition_t("LIKE", "D1800.K_ID", "%" + style + "%");
    }
    const QString name = WL_NAME->text().trimmed();
    if (!name.isEmpty()) {
        Description += " ●商品名称 包含 " + name;
        Condition_t("LIKE", "D1800.WL_NAME", "%" + name + "%");
    }
    const QString brand = PP_ID->text().trimmed();
    if (!brand.isEmpty()) {
        Description += QString(" ●") + "品牌" + " = " + brand;
        Condition_t("=", "D1800.PP_id", brand);
    }
    const QString category = CLASS_ID->text().trimmed();
    if (!category.isEmpty()) {
        Description += " ●商品类型 = " + category;
        Condition_t("=", "D1800.CLASS_ID", category);
    }
    if (CheckBox1->isChecked() != CheckBox2->isChecked()) Condition += CheckBox1->isChecked() ? " AND (D1800.WL_YS = 1)" : " AND (D1800.WL_YS = 0)";
    // The conditions are joined with AND; the first needs none.
    if (Condition.startsWith(" AND ")) Condition = Condition.mid(5);
    SetModalResult(mrOk);
}
