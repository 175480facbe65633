#include "documents/common/DocumentFilter.h"

#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/Controls.h"
#include "framework/LinkForms.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

using namespace qx::documents;

TDocumentFilter::TDocumentFilter(QWidget* Owner, const DocumentFilterKind& kind) : TFrm_Sys_Filter(Owner), kind_(kind) {
    SetCaption(kind_.caption);
    BDATE = Panel_Condition->AddDateEdit("BDATE", "开单日期");
    EDATE = Panel_Condition->AddDateEdit("EDATE", "至：");
    titDATE = CreateDayCountLabel(Panel_Condition);
    Panel_Condition->AddControl(titDATE, QString());
    Panel_Condition->NewRow();
    btn_Period = CreateDatePresetButton(Panel_Condition);
    btn_Period->setText("时段选择");
    Panel_Condition->AddControl(btn_Period, QString());
    for (const FilterCondition& c : kind_.conditions) {
        Panel_Condition->NewRow();
        if (c.list == LookupList::Partner) {
            KH_ID = Panel_Condition->AddLinkEdit(c.control, c.caption, c.maxLength, "KG_NAME");
            KG_NAME = KH_ID->NameLabel();
        } else if (c.list == LookupList::Warehouse) {
            CK_ID = Panel_Condition->AddLinkEdit(c.control, c.caption, c.maxLength, "CK_NAME");
            CK_NAME = CK_ID->NameLabel();
        } else {
            ExtEdit1 = Panel_Condition->AddEdit(c.control, c.caption, c.maxLength);
        }
    }
    Panel_Condition->NewRow();
    Edit1 = Panel_Condition->AddEdit("Edit1", kind_.numberCaption, 12);
    Edit2 = Panel_Condition->AddEdit("Edit2", "至：", 12);
    FormCreate();
}

void TDocumentFilter::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    SetDateEdits(BDATE, EDATE);
    for (TDateEdit* date : {BDATE, EDATE})
        qx::connectGuarded(date, &QDateEdit::dateChanged, this, [this, date] { EDATEChange(date); });

    for (const FilterCondition& c : kind_.conditions) {
        if (c.list != LookupList::Partner) continue;
        PartnerLink = new TFrm_Sys_LINK_KH(this);
        PartnerLink->init(KH_ID, c.partnerTable, false);
    }
    if (!CK_ID) return;
    // A user who may read one warehouse only has nothing to choose.
    const bool severalWarehouses = !G_CKCOUNT_R;
    CK_ID->setEnabled(severalWarehouses);
    CK_NAME->setEnabled(severalWarehouses);
    if (severalWarehouses) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Work, CK_ID, CK_ID, FuncNo, "", "");
    }
}

void TDocumentFilter::InitForm() {
    TFrm_Sys_Filter::InitForm();
    setdate04click(nullptr);  // a new list opens on this month
}

void TDocumentFilter::EDATEChange(QObject*) { updateDayCount(BDATE, EDATE, titDATE); }

// The lookup buttons' handler; the lookup edit does the same by itself when its button is pressed.
void TDocumentFilter::KH_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TDocumentFilter::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape) {
        if (PartnerLink && PartnerLink->Visible()) {
            PartnerLink->Close();
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

void TDocumentFilter::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    CheckDate(BDATE);
    CheckDate(EDATE);
    refuseReversedDates(BDATE, EDATE, kind_.reversedDates);

    const QString table = kind_.headTable;
    Description = kind_.dateDescription + shortDate(BDATE->Date()) + " 至 " + shortDate(EDATE->Date()) + " " + titDATE->text();
    Condition = "(" + table + ".BDATE>='" + SqlStr(BDATE->Text()) + "') AND (" + table + ".BDATE<='" +
                SqlStr(EDATE->Text()) + "') ";
    for (const FilterCondition& c : kind_.conditions) {
        const QString value = ControlText(Panel_Condition->findChild<QWidget*>(c.control)).trimmed();
        if (value.isEmpty()) continue;
        Description += c.description + value;
        Condition_t("=", c.column, value);
    }
    appendNumberRange(Condition, Description, kind_.numberDescription, table + ".NOID", Edit1->text(), Edit2->text());
    SetModalResult(mrOk);
}
