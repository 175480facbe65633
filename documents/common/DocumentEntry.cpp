#include "documents/common/DocumentEntry.h"

#include <QEvent>
#include <cmath>

#include "documents/common/DocumentCommon.h"
#include "documents/common/StatementTemplate.h"
#include "framework/DBGridEh.h"
#include "framework/SizeMatrix.h"

using namespace qx::documents;

namespace {
const char* const kPositiveQuantitiesMessage =
    "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
    "请修正以上问题后再次尝试保存!";
const char* const kNotAllZeroMessage =
    "表格中尺码的数量不允许全部为0,(如本单无该款该色,请将本行删除)!\r\n请修正以上问题后再次尝试保存!";
}  // namespace

TDocumentEntry::TDocumentEntry(QWidget* Owner, const DocumentKind& kind) : TFrm_Base_Entry_BodyC(Owner), kind_(kind) {
    SetCaption(kind_.caption);
    buildHead();
    AdoQry_Check = new TClientDataSet(this);
    AdoQry_Check->setObjectName("AdoQry_Check");
    for (const LineColumnTitle& t : kind_.lineTitles) {
        LineTitles.insert(t.field.toUpper(), t.title);
        if (t.tag != 0) LineTags.insert(t.field.toUpper(), t.tag);
    }
    LineTrailingFields = kind_.trailingFields;
    if (kind_.linesKeepSource) LineSourceField = "NOID";
    if (kind_.warehouseFixedByLines) {
        connect(AdoQry_Main, &TClientDataSet::rowInserted, this, [this] { DataSourceDataChange(AdoQry_Main, nullptr); });
        connect(AdoQry_Main, &TClientDataSet::dataEdited, this, [this] { DataSourceDataChange(AdoQry_Main, nullptr); });
    }
}

void TDocumentEntry::buildHead() {
    for (const HeadField& f : kind_.head) {
        switch (f.role) {
        case HeadRole::Number:
            Edit1 = Panel_Head->AddEdit(f.control, f.caption, f.maxLength);
            Edit1->installEventFilter(this);
            break;
        case HeadRole::Date:
            BDATE = Panel_Head->AddDateEdit(f.control, f.caption);
            BDATE->installEventFilter(this);
            break;
        case HeadRole::Changed: EDATE = Panel_Head->AddLabel(f.control, f.caption); break;
        case HeadRole::Maker: USER_NAME = Panel_Head->AddLabel(f.control, f.caption); break;
        case HeadRole::Shown: Panel_Head->AddLabel(f.control, f.caption); break;
        case HeadRole::Heading: {
            Panel_Head->NewRow();
            auto* heading = new QLabel(f.caption, Panel_Head);
            heading->setObjectName(f.control);
            Panel_Head->AddControl(heading, QString());
            break;
        }
        case HeadRole::Text: {
            QLineEdit* edit = Panel_Head->AddEdit(f.control, f.caption, f.maxLength);
            if (f.control == "NOTE") NOTE = edit;
            else if (f.control == "send_no") send_no = edit;
            break;
        }
        case HeadRole::Partner:
        case HeadRole::Warehouse:
        case HeadRole::Lookup: {
            TLinkEdit* edit = Panel_Head->AddLinkEdit(f.control, f.caption, f.maxLength, f.nameLabel);
            QLabel* name = edit->NameLabel();
            if (f.role == HeadRole::Partner) KH_GYS_ID = edit, KG_NAME = name;
            else if (f.role == HeadRole::Warehouse) CK_ID = edit, CK_NAME = name;
            else if (f.list == LookupList::Delivery) SEND_ID = edit, SEND_NAME = name;
            else if (f.list == LookupList::Settlement) JY_ID = edit, JY_NAME = name;
            else if (f.list == LookupList::Salesperson) YW_ID = edit, YW_NAME = name;
            break;
        }
        }
    }
}

void TDocumentEntry::FormCreate() {
    TFrm_Base_Entry_BodyC::FormCreate();
    WarehouseEdit = CK_ID;
    PartnerEdit = KH_GYS_ID;
    PriceLabel = kind_.priceLabel;
    AmountLabel = kind_.amountLabel;
    EntryFlag = true;
    createPickLists();
}

void TDocumentEntry::createPickLists() {
    if (KH_GYS_ID) {
        PartnerLink = new TFrm_Sys_LINK_KH(this);
        PartnerLink->init(KH_GYS_ID, kind_.partnerTable, kind_.partnerChecksOnExit);
    }
    if (CK_ID) {
        WarehouseLink = new TFrm_Sys_LINK_CK(this);
        WarehouseLink->init(AdoQry_Main, CK_ID, CK_ID, FuncNo, "", "");
        CK_ID->CheckOnExit = true;
    }
    if (SEND_ID) {
        DeliveryLink = new TFrm_Sys_LINK_SE(this);
        DeliveryLink->init(SEND_ID);
    }
    if (JY_ID) {
        SettlementLink = new TFrm_Sys_LINK_JY(this);
        SettlementLink->init(JY_ID, kind_.settlementCondition);
    }
    if (YW_ID) {
        SalespersonLink = new TFrm_Sys_LINK_YW(this);
        SalespersonLink->init(YW_ID);
    }
}

// Leaving the number runs its check; leaving the date checks it against the open period.
bool TDocumentEntry::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut && isVisible()) {
        if (watched == Edit1 && Edit1->isEnabled()) qx::guard([this] { Edit1Exit(Edit1); });
        else if (watched == BDATE && !ReadOnlyMode) qx::guard([this] { CheckDateCk(BDATE); });
    }
    return TFrm_Base_Entry_BodyC::eventFilter(watched, event);
}

// The lookup buttons' handler; the lookup edit does the same by itself when its button is pressed.
void TDocumentEntry::KH_GYS_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TDocumentEntry::Act_QuitExecute(QObject* Sender) {
    if (closeFirstVisiblePickList({WarehouseLink, DeliveryLink, PartnerLink, SalespersonLink, SettlementLink})) return;
    TFrm_Base_Entry_BodyC::Act_QuitExecute(Sender);
}

void TDocumentEntry::DataSourceDataChange(QObject*, TField*) {
    if (!CK_ID) return;
    if (CK_ID->hasFocus()) DBGridEh->setFocus();
    if (AdoQry_Main->Active() && AdoQry_Main->RecordCount() >= 1) {
        CK_ID->setEnabled(false);
        CK_NAME->setEnabled(false);
    }
}

// ---- opening

void TDocumentEntry::RefreshData() {
    const bool editing = EditMode != "Add" && EditMode != "CopyAdd";
    if (CK_ID) {
        CK_ID->setEnabled(true);  // a new opening: the lines of the last one fix nothing here
        CK_NAME->setEnabled(true);
    }
    if (editing) {
        FirstFocus = BDATE;
        Edit1->setText(MasterDataSet->FieldByName("noid")->AsString());
        CK_ID->setText(MasterDataSet->FieldByName("CK_ID")->AsString());
        CK_NAME->setText(MasterDataSet->FieldByName("CK_NAME")->AsString());
        LockName = kind_.editLocks;
    } else {
        FirstFocus = KH_GYS_ID ? static_cast<QWidget*>(KH_GYS_ID) : BDATE;
        Edit1->setText(GetNOID(FuncNo, "", 0));
        CK_ID->setText(G_ckid);
        CK_NAME->setText(G_CkName);
        LockName = "";
    }
    RefreshOwnData();
    if (EditMode == "Add" || (kind_.copyAddStartsFresh && EditMode == "CopyAdd")) clearHeadForNewDocument();
    else copyHeadFromList();

    TFrm_Base_Entry_BodyC::RefreshData();

    // A user who may write to one warehouse only keeps the default one.
    const bool warehouseFree = CK_ID->isEnabled() && !G_CKCOUNT_W;
    CK_ID->setEnabled(warehouseFree);
    CK_NAME->setEnabled(warehouseFree);
    if (kind_.warehouseFixedByLines) DataSourceDataChange(AdoQry_Main, nullptr);
    if (FirstFocus) FirstFocus->setFocus();
}

void TDocumentEntry::copyHeadFromList() {
    TClientDataSet* row = MasterDataSet;
    auto text = [row](const QString& field) { return row->FieldByName(field)->AsString(); };
    for (const HeadField& f : kind_.head) {
        QWidget* control = headControl(f.control);
        switch (f.role) {
        case HeadRole::Date: BDATE->SetText(text(f.control).left(10)); break;
        case HeadRole::Text: static_cast<QLineEdit*>(control)->setText(text(f.control)); break;
        case HeadRole::Partner:
        case HeadRole::Lookup:
            static_cast<QLineEdit*>(control)->setText(text(f.control));
            static_cast<TLinkEdit*>(control)->NameLabel()->setText(text(f.nameLabel));
            break;
        case HeadRole::Maker: USER_NAME->setText(text("USER_NAME")); break;
        case HeadRole::Shown: static_cast<QLabel*>(control)->setText(text(f.control)); break;
        case HeadRole::Heading: break;
        case HeadRole::Changed: {
            TField* changed = row->FieldByName("edate");
            EDATE->setText(EditMode == "Edit" && !changed->IsNull() ? changed->AsString().left(10) : QString());
            break;
        }
        case HeadRole::Number:
        case HeadRole::Warehouse: break;  // set by the mode
        }
    }
}

void TDocumentEntry::clearHeadForNewDocument() {
    for (const HeadField& f : kind_.head) {
        QWidget* control = headControl(f.control);
        switch (f.role) {
        case HeadRole::Date: BDATE->SetDate(qx::ui::today()); break;
        case HeadRole::Text: static_cast<QLineEdit*>(control)->clear(); break;
        case HeadRole::Partner:
        case HeadRole::Lookup:
            static_cast<QLineEdit*>(control)->clear();
            static_cast<TLinkEdit*>(control)->NameLabel()->clear();
            break;
        case HeadRole::Changed: EDATE->clear(); break;
        case HeadRole::Shown: static_cast<QLabel*>(control)->clear(); break;
        case HeadRole::Heading: break;
        case HeadRole::Maker: USER_NAME->setText(G_UserName); break;
        case HeadRole::Number:
        case HeadRole::Warehouse: break;
        }
    }
    if (JY_ID) {
        JY_ID->setText("1");  // cash, until the clerk says otherwise
        JY_NAME->setText("现金");
    }
}

QWidget* TDocumentEntry::headControl(const QString& name) const {
    return Panel_Head->findChild<QWidget*>(name);
}

void TDocumentEntry::Edit1Exit(QObject*) {
    CheckBlankInstr(Edit1, kind_.numberCheckCaption);
    CheckBlank(Edit1);
    CheckText(Edit1, kind_.numberCheckCaption);
    opensql(AdoQry_Check, FuncNo, "SELECT NOID FROM " + kind_.headTable + " WHERE NOID='" + SqlStr(Edit1->text()) + "'",
            0, 0, {}, {}, false, "1");
    if (!AdoQry_Check->IsEmpty()) Edit1->setText(GetNOID(FuncNo, "", 0));  // taken: a fresh one, silently
}

// ---- line values

void TDocumentEntry::LineValueChanged(TField* Sender) {
    if (kind_.arithmetic == PriceArithmetic::None) return;
    TClientDataSet* lines = Sender->DataSet();
    TField* total = lines->FindField("STOT");
    TField* price = lines->FindField("SJ");
    TField* amount = lines->FindField("SMONEY");
    if (!total || !price || !amount) return;
    const QString name = Sender->FieldName.toUpper();
    if (name == "STOT" || name == "SJ" || qx::sizes::isQuantityField(name)) {
        amount->SetAsFloat(total->AsFloat() * price->AsFloat());
        if (kind_.arithmetic == PriceArithmetic::PriceAndAmountWithTag)
            if (TField* tag = lines->FindField("ODJ"), *tagAmount = lines->FindField("OMONEY"); tag && tagAmount)
                tagAmount->SetAsFloat(total->AsFloat() * tag->AsFloat());
    } else if (name == "SMONEY" && kind_.arithmetic != PriceArithmetic::AmountFromPrice) {
        // No quantity yet: the price cannot come from the amount, and nothing is said.
        if (total->AsFloat() != 0) price->SetAsFloat(amount->AsFloat() / total->AsFloat());
    }
}

// ---- saving

bool TDocumentEntry::AllCheck() {
    if (!TFrm_Base_Entry_BodyC::AllCheck()) return false;
    CheckOwnHead();
    checkTypedCodes(Panel_Head);
    refuseEmptyLookups();
    const bool positive = kind_.lineCheck == LineCheck::PositiveQuantities;
    const int bad = positive ? firstLineWithBadQuantities(AdoQry_Main) : firstLineWithAllSizesZero(AdoQry_Main);
    if (bad >= 0) {
        AdoQry_Main->SetRecNo(bad + 1);
        DISPINFO(positive ? kPositiveQuantitiesMessage : kNotAllZeroMessage, 5);
        Abort();
    }
    return true;
}

// Every list joins the head's partner, warehouse and lookups to their tables: a document saved
// with one of them empty would be stored but never listed again, so it is not saved.
void TDocumentEntry::refuseEmptyLookups() {
    for (const HeadField& f : kind_.head) {
        if (f.role != HeadRole::Partner && f.role != HeadRole::Warehouse && f.role != HeadRole::Lookup) continue;
        QWidget* control = headControl(f.control);
        if (!control || !ControlText(control).trimmed().isEmpty()) continue;
        DISPINFO("请选择" + QString(f.caption).remove(' ').remove(QChar(0x3000)) + "!", 5);
        control->setFocus();
        Abort();
    }
}

QString TDocumentEntry::TotalText() const {
    if (kind_.total == TotalFrom::TotalTitle) {
        for (int i = 0; i < DBGridEh->ColumnCount(); ++i)
            if (DBGridEh->Columns(i)->Title == "总额") return FloatToStr(DBGridEh->Columns(i)->GetSumValue());
        return {};
    }
    return DBGridEh->ColumnByField("SMONEY") ? FloatToStr(DBGridEh->GetSumValue("SMONEY")) : QString();
}

bool TDocumentEntry::headValue(const QString& name, QString& value) const {
    if (name == "number") value = Edit1->text();
    else if (name == "warehouse") value = CK_ID->text();
    else if (name == "total") value = TotalText();
    else if (name == "G_SKSTR") value = G_SKSTR;
    else if (name == "G_UserId") value = G_UserId;
    else if (name == "G_UserName") value = G_UserName;
    else if (QWidget* control = headControl(name)) value = ControlText(control);
    else return false;
    return true;
}

bool TDocumentEntry::lineValue(int row, const QString& name, QString& value) const {
    if (name == "discount") {
        const int zk = AdoQry_Main->FieldIndex("ZK");
        value = discountText(zk >= 0 ? AdoQry_Main->CellValue(row, zk).toDouble() : 0);
        return true;
    }
    if (AdoQry_Main->FieldIndex(name) < 0) return headValue(name, value);
    value = lineText(AdoQry_Main, row, name);
    return true;
}

QString TDocumentEntry::discountText(double zk) {
    const double tenths = zk / 10;
    return QString::asprintf("%0.2f", (tenths - std::floor(tenths)) * 10);
}

AnsiString TDocumentEntry::BuildSaveBatch() {
    const PlaceholderResolver head = [this](const QString& name, QString& value) { return headValue(name, value); };
    QString batch = EditMode != "Edit" ? fillTemplate(kind_.insertHead, head)
                                       : fillTemplate(kind_.updateHead, head) + fillTemplate(kind_.deleteLines, head);
    for (int row = 0; row < AdoQry_Main->RecordCount(); ++row)
        batch += fillTemplate(kind_.insertLine,
                              [this, row](const QString& name, QString& value) { return lineValue(row, name, value); });
    for (const QString& statement : kind_.afterLines) batch += fillTemplate(statement, head);
    AppendOwnStatements(batch);
    return batch;
}

void TDocumentEntry::SaveData() {
    ScopedDisableControls frozen(AdoQry_Main);
    TFrm_Base_Entry_BodyC::SaveData();
    ExecSql(FuncNo, Edit1->text(), EditMode, BuildSaveBatch(), 65535, false, true, false, true);
}

void TDocumentEntry::SaveHeadData() {
    TFrm_Base_Entry_BodyC::SaveHeadData();
    putHeadIntoListRow();
}

void TDocumentEntry::putHeadIntoListRow() {
    TClientDataSet* row = MasterDataSet;
    auto put = [row](const QString& field, const QString& value) { row->FieldByName(field)->SetAsString(value); };
    put("NOID", Edit1->text());
    for (const HeadField& f : kind_.head) {
        QWidget* control = headControl(f.control);
        switch (f.role) {
        case HeadRole::Date:
        case HeadRole::Text: put(f.control, ControlText(control)); break;
        case HeadRole::Partner:
        case HeadRole::Warehouse:
        case HeadRole::Lookup:
            put(f.control, ControlText(control));
            put(f.nameLabel, static_cast<TLinkEdit*>(control)->NameLabel()->text());
            break;
        case HeadRole::Number:
        case HeadRole::Changed:
        case HeadRole::Maker:
        case HeadRole::Shown:
        case HeadRole::Heading: break;
        }
    }
    for (const QString& total : kind_.savedTotals) put(total, TotalText());
    put("USER_ID", G_UserId);
    put("USER_NAME", G_UserName);
    for (const auto& [field, value] : kind_.savedListValues) put(field, value);
    // Shown as not yet effective until the list is refreshed (lists without a state have no t).
    if (TField* state = row->FindField("t")) state->SetAsInteger(0);
}
