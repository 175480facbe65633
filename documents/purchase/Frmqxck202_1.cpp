#include "documents/purchase/Frmqxck202_1.h"

#include "documents/common/DocumentCommon.h"

using namespace qx::documents;

TQXCK202_1* QXCK202_1 = nullptr;

const DocumentKind& TQXCK202_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "采购退货";
        k.headTable = "d8102";
        k.numberCheckCaption = "出货单号";
        k.editLocks = "EDIT1,kh_gys_id,ck_id";  // number, supplier and warehouse of a saved return stay
        k.partnerChecksOnExit = false;
        k.settlementCondition = "(jy_id<>'2')";
        k.head = {
            {"Edit1", "退货单号", HeadRole::Number, 12},
            {"KH_GYS_ID", "供 应 商", HeadRole::Partner, 10, "KG_NAME", LookupList::Partner},
            {"BDATE", "开单日期", HeadRole::Date},
            {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
            {"SEND_ID", "送货方式", HeadRole::Lookup, 2, "SEND_NAME", LookupList::Delivery},
            {"YW_ID", "采 购 员", HeadRole::Lookup, 4, "YW_NAME", LookupList::Salesperson},
            {"JY_ID", "结算方式", HeadRole::Lookup, 2, "JY_NAME", LookupList::Settlement},
            {"NOTE", "备    注", HeadRole::Text, 100},
            {"EDATE", "更改日期", HeadRole::Changed},
            {"USER_NAME", "开单", HeadRole::Maker},
        };
        k.priceLabel = "退货价";
        k.amountLabel = "金额";
        k.warehouseFixedByLines = true;
        k.linesKeepSource = true;
        k.insertHead = counterpartyHeadInsert("D8102");
        k.updateHead = counterpartyHeadUpdate("D8102");
        k.deleteLines = "delete from  d8102A WHERE NOID='{number}';";
        // Cost price and amount are written as 0 and filled from the style right after.
        k.insertLine = lineInsertWithZeroCost("D8102A");
        k.afterLines = {skuCompletion("D8102A"), costFill("D8102A")};
        return k;
    }();
    return kind;
}

TQXCK202_1::TQXCK202_1(QWidget* Owner) : TDocumentEntry(Owner, Description()) {
    setObjectName("QXCK202_1");
    LineUnitEditable = true;  // a line typed by hand may change its unit; one from an order may not
    FormCreate();
}

// A style typed by hand makes a line of its own, linked to no order.
void TQXCK202_1::WL_IDSetText(TField* Sender, const AnsiString& Text) {
    CurCkId = CK_ID->text();
    TDocumentEntry::WL_IDSetText(Sender, Text);
    TClientDataSet* lines = Sender->DataSet();
    if (TField* source = lines->FindField("noid")) {
        if (lines->State() == dsBrowse) lines->Edit();
        source->SetAsString("");
        lines->Post();
    }
}

bool TQXCK202_1::refuseUnitChange() {
    TField* source = AdoQry_Main->FindField("NOID");
    if (!source || source->AsString().trimmed().isEmpty()) return false;
    DISPINFO("从订单取的销售记录不可更改单位!", 5);
    return true;
}

void TQXCK202_1::DW_IDSetText(TField* Sender, const AnsiString& Text) {
    if (refuseUnitChange()) return;
    TDocumentEntry::DW_IDSetText(Sender, Text);
}

void TQXCK202_1::showdw(QObject* Sender, bool& Handled) {
    if (refuseUnitChange()) {
        Handled = true;
        return;
    }
    TDocumentEntry::showdw(Sender, Handled);
}
