#include "documents/transfer/TransferEntry.h"

#include "documents/transfer/TransferList.h"
#include "framework/DBGridEh.h"
#include "framework/SizeMatrix.h"

using namespace qx::documents;

TTransferEntry::TTransferEntry(QWidget* Owner, const DocumentKind& kind) : TDocumentEntry(Owner, kind) {
    CK_ID_IN = Panel_Head->findChild<TLinkEdit*>("CK_ID_IN");
    CK_NAME_IN = CK_ID_IN ? CK_ID_IN->NameLabel() : nullptr;
    STRPARAM1 = Panel_Head->findChild<QLineEdit*>("STRPARAM1");
    Y_WC = Panel_Head->findChild<QLabel*>("Y_WC");
}

QList<HeadField> TTransferEntry::transferHead(const QString& inWarehouseCaption) {
    return {
        {"Edit1", "调拨单号", HeadRole::Number, 12},
        {"BDATE", "开单日期", HeadRole::Date},
        {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
        {"CK_ID_IN", inWarehouseCaption, HeadRole::Lookup, 4, "CK_NAME_IN", LookupList::Warehouse},
        {"STRPARAM1", "经手", HeadRole::Text, 16},
        {"NOTE", "备    注", HeadRole::Text, 100},
        {"EDATE", "更改日期", HeadRole::Changed},
        {"USER_NAME", "开单", HeadRole::Maker},
    };
}

void TTransferEntry::createInWarehouseLink() {
    InWarehouseLink = new TFrm_Sys_LINK_CK(this);
    InWarehouseLink->setObjectName("InWarehouseLink");
    InWarehouseLink->init(nullptr, CK_ID_IN, CK_ID_IN, FuncNo, "", "");
    // Goods may be sent to any warehouse of the chain, also one the sender has no rights on.
    if (!InWarehouseByRights()) InWarehouseLink->SetSource("d1007", "CK_ID", "CK_NAME");
    CK_ID_IN->CheckOnExit = true;
    CK_ID_IN->OnButtonClick = [this](QObject* sender) { KH_GYS_IDButtonClick(sender); };
}

QString TTransferEntry::receiptField(int position) { return "Y" + QString::number(position); }

int TTransferEntry::receiptPosition(const QString& field) {
    if (field.size() != 2 || field[0].toUpper() != 'Y' || !field[1].isDigit()) return -1;
    return field[1].digitValue();
}

int TTransferEntry::ReceivedTotal(int row) const {
    int total = 0;
    for (int i = 0; i < qx::sizes::Count; ++i) total += ReceivedText(row, i).toInt();
    return total;
}

QString TTransferEntry::ReceivedText(int row, int position) const {
    const int index = AdoQry_Main->FieldIndex(receiptField(position));
    if (index < 0) return "0";
    bool ok = false;
    const qlonglong value = AdoQry_Main->CellValue(row, index).toLongLong(&ok);
    return QString::number(ok ? value : 0);
}

// The received quantities and their total, on the lines just loaded (and on new lines).
void TTransferEntry::prepareReceiptFields() {
    if (!AdoQry_Main->FindField("YTOT")) {
        TField* total = AdoQry_Main->AddField("YTOT", ftInteger, 0, "收货填写|合计");
        total->ReadOnly = true;
    }
    const int total = AdoQry_Main->FieldIndex("YTOT");
    for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) AdoQry_Main->SetCellValue(r, total, qlonglong(ReceivedTotal(r)));
    for (int i = 0; i < qx::sizes::Count; ++i)
        if (TField* f = AdoQry_Main->FindField(receiptField(i)))
            f->OnSetText = [this](TField* s, const AnsiString& t) { receiptTyped(s, t); };
    // The price and the amount of a line follow each other (the transfer's price fields are
    // the cost's, so the framework does not attach these two).
    for (const char* name : {"SJ", "SMONEY"})
        if (TField* f = AdoQry_Main->FindField(name))
            f->OnSetText = [this](TField* s, const AnsiString& t) { lineValueTyped(s, t); };
}

void TTransferEntry::receiptTyped(TField* field, const AnsiString& text) {
    const QString t = text.trimmed();
    bool ok = t.isEmpty();
    const int value = ok ? 0 : t.toInt(&ok);
    if (!ok || value < 0) {
        DISPINFO("收货数量请用不小于0的整数表示: '" + text.left(40) + "'", 5);
        Abort();
    }
    field->SetAsInteger(value);
    AdoQry_MainCalcFields(AdoQry_Main);
    ReceiptChanged();
}

void TTransferEntry::AdoQry_MainCalcFields(TDataSet*) {
    TField* total = AdoQry_Main->FindField("YTOT");
    if (!total || AdoQry_Main->IsEmpty()) return;
    total->SetAsInteger(ReceivedTotal(AdoQry_Main->CurrentRow()));
}

void TTransferEntry::RefreshData() {
    TDocumentEntry::RefreshData();
    prepareReceiptFields();
    DBGridEh->ColumnsChanged();
}

void TTransferEntry::BuildLineColumns() {
    prepareReceiptFields();
    TDocumentEntry::BuildLineColumns();
    // The cost is never shown here.
    for (const char* cost : {"MONEY", "DJ"})
        if (TColumnEh* c = DBGridEh->ColumnByField(cost)) DBGridEh->DeleteColumn(c->Index());
    if (TColumnEh* amount = DBGridEh->ColumnByField("SMONEY")) {
        amount->Footer.ValueType = fvtSum;
        amount->DisplayFormat = "0.00";
    }
    qx::transfer::addReceiptColumns(DBGridEh, AdoQry_Main, ReceiptTyped());
}
