#include "documents/purchase/Frmqxck201_1.h"

#include <QEvent>

#include "documents/common/DocumentCommon.h"
#include "framework/DBGridEh.h"

TQXCK201_1* QXCK201_1 = nullptr;

namespace {
const char* const kQuantityMessage =
    "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
    "请修正以上问题后再次尝试保存!";
}  // namespace

TQXCK201_1::TQXCK201_1(QWidget* Owner) : TFrm_Base_Entry_BodyC(Owner) {
    setObjectName("QXCK201_1");
    SetCaption("采购进货");
    Edit1 = Panel_Head->AddEdit("Edit1", "进货单号", 12);
    KH_GYS_ID = Panel_Head->AddLinkEdit("KH_GYS_ID", "供 应 商", 10, "KG_NAME");
    KG_NAME = KH_GYS_ID->NameLabel();
    BDATE = Panel_Head->AddDateEdit("BDATE", "开单日期");
    CK_ID = Panel_Head->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    CK_NAME = CK_ID->NameLabel();
    SEND_ID = Panel_Head->AddLinkEdit("SEND_ID", "送货方式", 2, "SEND_NAME");
    SEND_NAME = SEND_ID->NameLabel();
    send_no = Panel_Head->AddEdit("send_no", "送货单号", 30);
    YW_ID = Panel_Head->AddLinkEdit("YW_ID", "采 购 员", 4, "YW_NAME");
    YW_NAME = YW_ID->NameLabel();
    JY_ID = Panel_Head->AddLinkEdit("JY_ID", "结算方式", 2, "JY_NAME");
    JY_NAME = JY_ID->NameLabel();
    NOTE = Panel_Head->AddEdit("NOTE", "备    注", 100);
    EDATE = Panel_Head->AddLabel("EDATE", "更改日期");
    USER_NAME = Panel_Head->AddLabel("USER_NAME", "开单");
    AdoQry_Check = new TClientDataSet(this);
    AdoQry_Check->setObjectName("AdoQry_Check");
    Edit1->installEventFilter(this);
    BDATE->installEventFilter(this);
    FormCreate();
}

void TQXCK201_1::FormCreate() {
    tm = new TClientDataSet(this);
    tm->setObjectName("tm");
    tm->AddField("wl_id", ftString, 21);
    tm->AddField("TM", ftString, 30);
    tm->AddField("M_INDEX", ftString, 1);
    tm->CreateDataSet();
    BarcodeDataSet = tm;

    TFrm_Base_Entry_BodyC::FormCreate();
    WarehouseEdit = CK_ID;
    PartnerEdit = KH_GYS_ID;
    PriceLabel = "进货价";
    AmountLabel = "金额";
    EntryFlag = true;

    SupplierLink = new TFrm_Sys_LINK_KH(this);
    SupplierLink->init(KH_GYS_ID, "", true);
    WarehouseLink = new TFrm_Sys_LINK_CK(this);
    WarehouseLink->init(AdoQry_Main, CK_ID, CK_ID, FuncNo, "", "");
    CK_ID->CheckOnExit = true;
    DeliveryLink = new TFrm_Sys_LINK_SE(this);
    DeliveryLink->init(SEND_ID);
    SettlementLink = new TFrm_Sys_LINK_JY(this);
    SettlementLink->init(JY_ID);
    BuyerLink = new TFrm_Sys_LINK_YW(this);
    BuyerLink->init(YW_ID);
    for (TLinkEdit* edit : {KH_GYS_ID, CK_ID, SEND_ID, JY_ID, YW_ID})
        edit->OnButtonClick = [this](QObject* sender) { KH_GYS_IDButtonClick(sender); };
}

// Leaving the number runs its check; leaving the date checks it against the open period.
bool TQXCK201_1::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut && isVisible()) {
        if (watched == Edit1 && Edit1->isEnabled()) qx::guard([this] { Edit1Exit(Edit1); });
        else if (watched == BDATE && !ReadOnlyMode) qx::guard([this] { CheckDateCk(BDATE); });
    }
    return TFrm_Base_Entry_BodyC::eventFilter(watched, event);
}

void TQXCK201_1::KH_GYS_IDButtonClick(QObject* Sender) {
    auto* edit = qobject_cast<TLinkEdit*>(Sender);
    if (edit && edit->LinkForm()) edit->LinkForm()->Show();
}

void TQXCK201_1::Act_QuitExecute(QObject* Sender) {
    if (qx::documents::closeFirstVisiblePickList({WarehouseLink, DeliveryLink, SupplierLink, BuyerLink, SettlementLink}))
        return;
    TFrm_Base_Entry_BodyC::Act_QuitExecute(Sender);
}

// ---- opening

void TQXCK201_1::RefreshData() {
    const bool editing = EditMode != "Add" && EditMode != "CopyAdd";
    if (editing) {
        FirstFocus = BDATE;
        Edit1->setText(MasterDataSet->FieldByName("noid")->AsString());
        CK_ID->setText(MasterDataSet->FieldByName("CK_ID")->AsString());
        CK_NAME->setText(MasterDataSet->FieldByName("CK_NAME")->AsString());
        LockName = "EDIT1";  // the number of a saved receipt stays
    } else {
        FirstFocus = KH_GYS_ID;
        Edit1->setText(GetNOID(FuncNo, "", 0));
        CK_ID->setText(G_ckid);
        CK_NAME->setText(G_CkName);
        LockName = "";
    }

    if (GKH4_2 && EditMode == "Edit") {
        opensql(tm, FuncNo,
                "SELECT D1809.WL_ID, D1809.M_INDEX, D1809.TM FROM D8101A INNER JOIN D1809 ON D8101A.WL_ID = "
                "D1809.WL_ID INNER JOIN D1800 ON D1809.K_ID = D1800.K_ID WHERE (D1800.TMI = 1) and noid='" +
                    SqlStr(Edit1->text()) + "';",
                0, 0, {}, {}, false, "1");
    } else if (tm->Active()) {
        tm->EmptyDataSet();  // the barcodes of the receipt opened before are not this one's
    }

    if (EditMode == "Add") clearHeadForNewReceipt();
    else copyHeadFromList();

    TFrm_Base_Entry_BodyC::RefreshData();

    // A user who may write to one warehouse only keeps the default one.
    const bool warehouseFree = CK_ID->isEnabled() && !G_CKCOUNT_W;
    CK_ID->setEnabled(warehouseFree);
    CK_NAME->setEnabled(warehouseFree);
    if (FirstFocus) FirstFocus->setFocus();
}

void TQXCK201_1::copyHeadFromList() {
    TClientDataSet* row = MasterDataSet;
    auto text = [row](const char* field) { return row->FieldByName(field)->AsString(); };
    BDATE->SetText(text("BDATE").left(10));
    NOTE->setText(text("NOTE"));
    KH_GYS_ID->setText(text("KH_GYS_ID"));
    KG_NAME->setText(text("KG_NAME"));
    YW_ID->setText(text("YW_ID"));
    YW_NAME->setText(text("YW_NAME"));
    SEND_ID->setText(text("SEND_ID"));
    SEND_NAME->setText(text("SEND_NAME"));
    USER_NAME->setText(text("USER_NAME"));
    send_no->setText(text("send_no"));
    JY_ID->setText(text("JY_ID"));
    JY_NAME->setText(text("JY_NAME"));
    TField* changed = row->FieldByName("edate");
    EDATE->setText(EditMode == "Edit" && !changed->IsNull() ? changed->AsString().left(10) : QString());
}

void TQXCK201_1::clearHeadForNewReceipt() {
    BDATE->SetDate(qx::ui::today());
    for (QLineEdit* edit : {static_cast<QLineEdit*>(KH_GYS_ID), static_cast<QLineEdit*>(SEND_ID), NOTE,
                            static_cast<QLineEdit*>(YW_ID), send_no})
        edit->clear();
    for (QLabel* label : {KG_NAME, SEND_NAME, EDATE, YW_NAME}) label->clear();
    JY_ID->setText("1");
    JY_NAME->setText("现金");
    USER_NAME->setText(G_UserName);
}

void TQXCK201_1::Edit1Exit(QObject*) {
    CheckBlankInstr(Edit1, "出货单号");
    CheckBlank(Edit1);
    CheckText(Edit1, "出货单号");
    opensql(AdoQry_Check, FuncNo, "SELECT NOID FROM d8101 WHERE NOID='" + SqlStr(Edit1->text()) + "'", 0, 0, {}, {},
            false, "1");
    if (!AdoQry_Check->IsEmpty()) Edit1->setText(GetNOID(FuncNo, "", 0));  // taken: a fresh one, silently
}

// ---- line values

QStringList TQXCK201_1::floatFields() { return qx::documents::sizeAndTotalFields() + QStringList{"SJ", "SMONEY"}; }

void TQXCK201_1::SetFloatText(TField* Sender, const AnsiString& Text) {
    TFrm_Base_Entry_BodyC::SetFloatText(Sender, Text);
    TClientDataSet* lines = Sender->DataSet();
    qx::documents::DetachedSetter detached(lines, floatFields(),
                                           [this](TField* f, const AnsiString& t) { SetFloatText(f, t); });
    const QString name = Sender->FieldName.toUpper();
    if (name != "STOT" && name != "SJ" && !IsSizeField(name)) return;  // the amount itself derives nothing
    TField* amount = lines->FindField("SMONEY");
    TField* price = lines->FindField("SJ");
    TField* total = lines->FindField("STOT");
    if (amount && price && total) amount->SetAsFloat(total->AsFloat() * price->AsFloat());
}

// ---- saving

bool TQXCK201_1::AllCheck() {
    if (!TFrm_Base_Entry_BodyC::AllCheck()) return false;
    qx::documents::checkTypedCodes(Panel_Head);
    const int bad = qx::documents::firstLineWithBadQuantities(AdoQry_Main);
    if (bad >= 0) {
        AdoQry_Main->SetRecNo(bad + 1);
        DISPINFO(kQuantityMessage, 5);
        Abort();
    }
    return true;
}

AnsiString TQXCK201_1::BuildSaveBatch() {
    const QString number = SqlStr(Edit1->text());
    const QString warehouse = SqlStr(CK_ID->text());
    const QString total = DBGridEh->ColumnByField("SMONEY") ? FloatToStr(DBGridEh->GetSumValue("SMONEY")) : QString();
    QString batch;
    if (EditMode != "Edit") {
        batch += "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) "
                 "VALUES ('" +
                 SqlStr(G_SKSTR) + "','" + number + "','" + SqlStr(KH_GYS_ID->text()) + "','" + warehouse + "','" +
                 SqlStr(BDATE->Text()) + "','" + SqlStr(SEND_ID->text()) + "','" + SqlStr(send_no->text()) + "','" +
                 SqlStr(YW_ID->text()) + "','" + SqlStr(JY_ID->text()) + "','" + SqlStr(G_UserId) + "','" +
                 SqlStr(NOTE->text()) + "','" + SqlStr(total) + "');";
    } else {
        batch += "UPDATE D8101 SET EDATE=GETDATE(), KH_GYS_ID='" + SqlStr(KH_GYS_ID->text()) + "',CK_ID='" + warehouse +
                 "',BDATE='" + SqlStr(BDATE->Text()) + "',SEND_ID='" + SqlStr(SEND_ID->text()) + "',send_no='" +
                 SqlStr(send_no->text()) + "',YW_ID='" + SqlStr(YW_ID->text()) + "',JY_ID='" + SqlStr(JY_ID->text()) +
                 "',USER_ID='" + SqlStr(G_UserId) + "',NOTE='" + SqlStr(NOTE->text()) + "',TOLMONEY='" + SqlStr(total) +
                 "' WHERE noid='" + number + "';";
        batch += "delete from  d8101A WHERE NOID='" + number + "';";
    }
    for (int row = 0; row < AdoQry_Main->RecordCount(); ++row) {
        auto value = [this, row](const QString& field) { return SqlStr(qx::documents::lineText(AdoQry_Main, row, field)); };
        batch += "INSERT INTO D8101A  VALUES ('" + number + "','" + value("K_ID") + value("COL_ID") + "','" +
                 value("K_ID") + "','" + value("COL_ID") + "','" + warehouse + "'";
        for (int i = 0; i <= 9; ++i) batch += ",'" + value("s" + QString::number(i)) + "'";
        batch += ",'" + value("SJ") + "','" + value("Smoney") + "','" + value("NOTE") + "');";
    }
    batch += " INSERT INTO D1801 SELECT D8101A.WL_ID, D8101A.K_ID, D8101A.COL_ID FROM D8101A LEFT OUTER JOIN D1801 ON "
             "D8101A.WL_ID = D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (D8101A.NOID='" +
             number + "');";
    batch += " INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT D8101A.WL_ID, D8101.CK_ID, D1800.CHECK_KC FROM D8101A "
             "INNER JOIN D8101 ON D8101A.NOID = D8101.NOID INNER JOIN D1800 ON D8101A.K_ID = D1800.K_ID LEFT OUTER "
             "JOIN D1802 ON D8101A.WL_ID = D1802.WL_ID AND D8101.CK_ID = D1802.CK_ID WHERE (D8101A.NOID ='" +
             number + "') AND (D1802.WL_ID IS NULL);";
    batch += "insert into d1809 (WL_ID, M_INDEX, K_ID, TM) SELECT V1809.WL_ID, V1809.mindex, V1809.K_ID, V1809.tm FROM "
             "V1809 LEFT OUTER JOIN D1809 ON V1809.WL_ID = D1809.WL_ID AND V1809.mindex = D1809.M_INDEX WHERE "
             "(V1809.NOID ='" +
             number + "') AND (D1809.WL_ID IS NULL);";
    if (GKH4_2 && tm->Active() && !tm->IsEmpty()) {
        for (int row = 0; row < tm->RecordCount(); ++row) {
            auto value = [this, row](const QString& field) { return SqlStr(qx::documents::lineText(tm, row, field)); };
            batch += "UPDATE D1809 SET TM='" + value("tm") + "' WHERE WL_ID='" + value("wl_ID") + "' AND M_INDEX='" +
                     value("m_index") + "';";
        }
    }
    return batch;
}

void TQXCK201_1::SaveData() {
    AdoQry_Main->DisableControls();
    try {
        TFrm_Base_Entry_BodyC::SaveData();
        ExecSql(FuncNo, Edit1->text(), EditMode, BuildSaveBatch(), 65535, false, true, false, true);
    } catch (...) {
        AdoQry_Main->EnableControls();
        throw;
    }
    AdoQry_Main->EnableControls();
}

void TQXCK201_1::SaveHeadData() {
    TFrm_Base_Entry_BodyC::SaveHeadData();
    TClientDataSet* row = MasterDataSet;
    auto put = [row](const char* field, const QString& value) { row->FieldByName(field)->SetAsString(value); };
    put("NOID", Edit1->text());
    put("BDATE", BDATE->Text());
    put("NOTE", NOTE->text());
    put("CK_ID", CK_ID->text());
    put("ck_NAME", CK_NAME->text());
    put("YW_ID", YW_ID->text());
    put("YW_NAME", YW_NAME->text());
    put("KH_GYS_ID", KH_GYS_ID->text());
    put("KG_NAME", KG_NAME->text());
    put("SEND_ID", SEND_ID->text());
    put("SEND_NAME", SEND_NAME->text());
    put("send_no", send_no->text());
    put("JY_ID", JY_ID->text());
    put("JY_NAME", JY_NAME->text());
    put("USER_ID", G_UserId);
    put("USER_NAME", G_UserName);
    row->FieldByName("t")->SetAsInteger(0);  // shown as not yet effective until the list is refreshed
}
