#include "documents/purchase/Frmqxck201f.h"

#include <QGridLayout>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"

TQXCK201F* QXCK201F = nullptr;

TQXCK201F::TQXCK201F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK201F");
    SetCaption("采购进货");
    BDATE = Panel_Condition->AddDateEdit("BDATE", "开单日期");
    EDATE = Panel_Condition->AddDateEdit("EDATE", "至：");
    titDATE = new QLabel("(30天)", Panel_Condition);
    titDATE->setObjectName("titDATE");
    Panel_Condition->AddControl(titDATE, QString());
    Panel_Condition->NewRow();
    btn_Period = CreateDatePresetButton(Panel_Condition);
    btn_Period->setText("时段选择");
    Panel_Condition->AddControl(btn_Period, QString());
    Panel_Condition->NewRow();
    KH_ID = Panel_Condition->AddLinkEdit("KH_ID", "供 应 商", 10, "KG_NAME");
    KG_NAME = KH_ID->NameLabel();
    Panel_Condition->NewRow();
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    CK_NAME = CK_ID->NameLabel();
    Panel_Condition->NewRow();
    ExtEdit1 = Panel_Condition->AddEdit("ExtEdit1", "送货单号", 30);
    Panel_Condition->NewRow();
    Edit1 = Panel_Condition->AddEdit("Edit1", "进货单号", 12);
    Edit2 = Panel_Condition->AddEdit("Edit2", "至：", 12);
    FormCreate();
}

void TQXCK201F::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    SetDateEdits(BDATE, EDATE);
    for (TDateEdit* date : {BDATE, EDATE})
        qx::connectGuarded(date, &QDateEdit::dateChanged, this, [this, date] { EDATEChange(date); });

    SupplierLink = new TFrm_Sys_LINK_KH(this);
    SupplierLink->init(KH_ID, "", false);
    KH_ID->OnButtonClick = [this](QObject* sender) { KH_IDButtonClick(sender); };

    // A user who may read one warehouse only has nothing to choose.
    const bool severalWarehouses = !G_CKCOUNT_R;
    CK_ID->setEnabled(severalWarehouses);
    CK_NAME->setEnabled(severalWarehouses);
    if (severalWarehouses) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Work, CK_ID, CK_ID, FuncNo, "", "");
        CK_ID->OnButtonClick = [this](QObject* sender) { KH_IDButtonClick(sender); };
    }
}

void TQXCK201F::InitForm() {
    TFrm_Sys_Filter::InitForm();
    setdate04click(nullptr);  // a new list opens on this month
}

void TQXCK201F::EDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TQXCK201F::KH_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TQXCK201F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape) {
        if (SupplierLink->Visible()) {
            SupplierLink->Close();
            Key = 0;
            return;
        }
        if (!G_CKCOUNT_R && WarehouseLink && WarehouseLink->Visible()) {
            WarehouseLink->Close();
            Key = 0;
            return;
        }
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

void TQXCK201F::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);

    Description = " ●开单日期:" + qx::documents::shortDate(BDATE->Date()) + " 至 " +
                  qx::documents::shortDate(EDATE->Date()) + " " + titDATE->text();
    Condition = "(D8101.BDATE>='" + SqlStr(BDATE->Text()) + "') AND (D8101.BDATE<='" + SqlStr(EDATE->Text()) + "') ";

    const QString supplier = KH_ID->text().trimmed();
    if (!supplier.isEmpty()) {
        Description += "●供应商：" + supplier;
        Condition_t("=", "d1103.KH_gys_ID", supplier);
    }
    const QString deliveryNote = ExtEdit1->text().trimmed();
    if (!deliveryNote.isEmpty()) {
        Description += "●供应商送货单：" + deliveryNote;
        Condition_t("=", "d8101.SEND_NO", deliveryNote);
    }
    const QString warehouse = CK_ID->text().trimmed();
    if (!warehouse.isEmpty()) {
        Description += "●仓库：" + warehouse;
        Condition_t("=", "d1007.ck_ID", warehouse);
    }
    qx::documents::appendNumberRange(Condition, Description, " ●进货单号：", "D8101.NOID", Edit1->text(),
                                     Edit2->text());
    SetModalResult(mrOk);
}
