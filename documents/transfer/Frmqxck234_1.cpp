#include "documents/transfer/Frmqxck234_1.h"

#include <QToolBar>

#include "documents/common/DocumentCommon.h"
#include "documents/common/StatementTemplate.h"
#include "framework/DBGridEh.h"
#include "framework/SizeMatrix.h"

using namespace qx::documents;

TQXCK234_1* QXCK234_1 = nullptr;

const DocumentKind& TQXCK234_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "调拨到货点收";
        k.headTable = "D8303";
        k.numberCheckCaption = "调拔单号";
        // Every head field the sender entered is locked (CK_ID named twice, as the screen always had it).
        k.editLocks = "EDIT1,CK_ID,CK_ID_IN,CK_ID,STRPARAM1,NOTE,BDATE";
        k.head = TTransferEntry::transferHead();
        k.head.append({"Lab_Receipt", "收货填写-->", HeadRole::Heading});
        k.head.append({"Y_WC", "收货误差数量：", HeadRole::Shown});
        k.head.append({"Y_NOTE", "备注：", HeadRole::Text, 100});
        k.priceLabel = "发货填写|吊牌";
        k.amountLabel = "发货填写|金额";
        k.lineTitles = {{"STOT", "发货填写|合计"}, {"NOTE", "发货填写|备注"}};
        k.trailingFields = "SJ,SMONEY";
        k.updateHead =
            "UPDATE D8303 SET y={receipt state},YDATE=GETDATE(),YNAME='{G_UserName}',y_note='{Y_NOTE}',"
            "y_wc='{Y_WC}' WHERE NOID='{number}';";
        // Quantities unquoted; the line is found by number and SKU.
        k.insertLine =
            "update D8303A  set  y0={Y0} ,y1={Y1} ,y2={Y2} ,y3={Y3} ,y4={Y4} ,y5={Y5} ,y6={Y6} ,y7={Y7} ,y8={Y8} "
            ",y9={Y9} where (noid='{number}') and (wl_id='{K_ID}{COL_ID}');";
        return k;
    }();
    return kind;
}

TQXCK234_1::TQXCK234_1(QWidget* Owner) : TTransferEntry(Owner, Description()) {
    setObjectName("QXCK234_1");
    Y_NOTE = Panel_Head->findChild<QLineEdit*>("Y_NOTE");
    Act_Save->setText("确认");
    Act_Save->setToolTip("填写收货数量后确认完成本次收货");
    Act_SetColumn = AddAction("Act_SetColumn", "放弃", QKeySequence(), [this] { Act_SetColumnExecute(Act_SetColumn); });
    Act_SetColumn->setToolTip("由于发货方单据填写错误可放弃返回将单据填写正确后再进行收货");
    Act_Other = AddAction("Act_Other", "全数收货", QKeySequence(), [this] { Act_OtherExecute(Act_Other); });
    Act_Other->setToolTip("将收货的数量填写为发出的数量。如有部分少数，再进行更正数量。");
    Act_Check = AddAction("Act_Check", "全数清零", QKeySequence(), [this] { Act_CheckExecute(Act_Check); });
    Act_Check->setToolTip("将收货数量全部清零");
    ToolBar->insertActions(Act_Print, {Act_Other, Act_Check, Act_SetColumn});
    Act_AddLine->setVisible(false);
    Act_DeleteLine->setVisible(false);
    // Only the received quantities take typing, at the sizes the line's size group names.
    DBGridEh->CanEditCell = [this](int row, TColumnEh* column) {
        const int position = receiptPosition(column->FieldName);
        if (position < 0) return false;
        return !lineHasStyle(row) || qx::sizes::positionInUse(lineSizeNames(row), position);
    };
    DBGridEh->OnKeyDown = nullptr;  // Down on the last line adds nothing here
    for (auto signal : {&TClientDataSet::dataEdited, &TClientDataSet::dataReset})
        connect(AdoQry_Main, signal, this, [this] { DataSourceDataChange(AdoQry_Main, nullptr); });
    FormCreate();
}

void TQXCK234_1::FormCreate() {
    TTransferEntry::FormCreate();
    FuncNo = "219";  // the receipt is logged under the arrival check's function code
    createInWarehouseLink();
}

void TQXCK234_1::RefreshData() {
    TTransferEntry::RefreshData();
    LockName = Kind().editLocks;  // whatever the mode: the sender's head is not the receiver's
    const bool editing = EditMode == "Edit";
    for (QAction* a : {Act_Other, Act_Check, Act_SetColumn}) {
        a->setVisible(editing);
        a->setEnabled(editing);
    }
    Act_Save->setEnabled(true);
    DBGridEh->ButtonFields.clear();  // no goods pick lists on the sender's lines
    TField* received = MasterDataSet && MasterDataSet->Active() && !MasterDataSet->IsEmpty()
                           ? MasterDataSet->FindField("y")
                           : nullptr;
    ReceiptState = received ? received->AsInteger() : 0;
    DataSourceDataChange(AdoQry_Main, nullptr);
}

double TQXCK234_1::receivedFooter() const {
    // The sum footer of the last grid column (the received total).
    return DBGridEh->ColumnCount() > 0 ? DBGridEh->Columns(DBGridEh->ColumnCount() - 1)->GetSumValue() : 0;
}

void TQXCK234_1::DataSourceDataChange(QObject* Sender, TField* Field) {
    TTransferEntry::DataSourceDataChange(Sender, Field);
    if (!Y_WC) return;
    Y_WC->setText(QString::number(qRound64(DBGridEh->GetSumValue("STOT") - DBGridEh->GetSumValue("YTOT"))));
}

void TQXCK234_1::LineValueChanged(TField*) {}
void TQXCK234_1::DBGridEhDblClick1(QObject*) {}
void TQXCK234_1::Act_AddLineExecute(QObject*) {}
void TQXCK234_1::Act_DeleteLineExecute(QObject*) {}

void TQXCK234_1::Act_OtherExecute(QObject*) {
    setEveryReceipt([this](int position) { return AdoQry_Main->FieldByName(qx::sizes::quantityField(position))->AsInteger(); });
}

void TQXCK234_1::Act_CheckExecute(QObject*) {
    setEveryReceipt([](int) { return 0; });
}

void TQXCK234_1::setEveryReceipt(const std::function<int(int position)>& received) {
    if (ReadOnlyMode) return;
    AdoQry_Main->CheckBrowseMode();
    for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) {
        AdoQry_Main->SetRecNo(r + 1);
        AdoQry_Main->Edit();
        for (int i = 0; i < qx::sizes::Count; ++i)
            if (TField* y = AdoQry_Main->FindField(receiptField(i))) y->SetAsInteger(received(i));
        AdoQry_MainCalcFields(AdoQry_Main);
        AdoQry_Main->Post();
    }
    AdoQry_Main->First();
    Modified = true;
    DataSourceDataChange(AdoQry_Main, nullptr);
}

void TQXCK234_1::Act_SetColumnExecute(QObject*) {
    AdoQry_Main->CheckBrowseMode();
    if (receivedFooter() != 0) {
        DISPINFO("放弃前请先将收货数量清0", 5);
        return;
    }
    ReceiptState = 0;
    Y_WC->setText("0");
    Act_Save->setEnabled(false);  // abandoned: nothing to confirm; quitting saves the state
    Modified = true;
}

void TQXCK234_1::Act_SaveExecute(QObject* Sender) {
    ReceiptState = 1;
    AdoQry_Main->CheckBrowseMode();
    DataSourceDataChange(AdoQry_Main, nullptr);
    TTransferEntry::Act_SaveExecute(Sender);
}

void TQXCK234_1::Act_QuitExecute(QObject* Sender) {
    AdoQry_Main->CheckBrowseMode();
    ReceiptState = receivedFooter() != 0 ? 1 : 0;
    DataSourceDataChange(AdoQry_Main, nullptr);
    TTransferEntry::Act_QuitExecute(Sender);
}

AnsiString TQXCK234_1::BuildReceiptBatch() {
    QString batch = fillTemplate(Kind().updateHead, [this](const QString& name, QString& value) {
        if (name == "receipt state") {
            value = QString::number(ReceiptState);
            return true;
        }
        return headValue(name, value);
    });
    for (int row = 0; row < AdoQry_Main->RecordCount(); ++row)
        batch += fillTemplate(Kind().insertLine, [this, row](const QString& name, QString& value) {
            if (const int position = receiptPosition(name); position >= 0) {
                value = ReceivedText(row, position);
                return true;
            }
            return lineValue(row, name, value);
        });
    return batch;
}

void TQXCK234_1::SaveData() {
    ScopedDisableControls frozen(AdoQry_Main);
    TFrm_Base_Entry_BodyC::SaveData();
    ExecSql(FuncNo, Edit1->text(), EditMode, BuildReceiptBatch(), 65535, false, true, false, true);
}

void TQXCK234_1::SaveHeadData() {
    // Not the document's own write-back: the list row keeps its sender as its maker.
    TFrm_Base_Entry_BodyC::SaveHeadData();
    TClientDataSet* row = MasterDataSet;
    auto put = [row](const QString& field, const QString& value) {
        if (TField* f = row->FindField(field)) f->SetAsString(value);
    };
    put("NOID", Edit1->text());
    put("BDATE", BDATE->Text());
    put("NOTE", NOTE->text());
    put("CK_ID", CK_ID->text());
    put("ck_NAME", CK_NAME->text());
    put("STRPARAM1", STRPARAM1->text());
    put("CK_ID_IN", CK_ID_IN->text());
    put("CK_NAME_IN", CK_NAME_IN->text());
    put("YNAME", G_UserName);
    put("Y_WC", Y_WC->text());
    put("Y_NOTE", Y_NOTE->text());
    if (TField* f = row->FindField("y")) f->SetAsInteger(ReceiptState);
    if (TField* f = row->FindField("t")) f->SetAsInteger(ReceiptState);  // the list's T is the arrival state
}
