#include "documents/common/DocumentList.h"

#include "documents/common/DocumentCommon.h"
#include "documents/common/DocumentEntry.h"
#include "framework/DBGridEh.h"

using namespace qx::documents;

TDocumentList::TDocumentList(QWidget* Owner, const DocumentListKind& kind) : TFrm_Base_Entry_Head(Owner), kind_(kind) {
    SetCaption(kind_.caption);
    buildHeadColumns();
}

// Every field of the head statement with its label; codes are kept hidden behind their names.
void TDocumentList::buildHeadColumns() {
    for (const ListColumn& c : kind_.columns) {
        TColumnEh* column = DBGridEh->AddColumn(c.field, c.title, c.width);
        column->Visible = c.shown;
        if (c.field.endsWith("DATE", Qt::CaseInsensitive)) column->DisplayFormat = "yyyy-mm-dd";
        if (c.summed) {
            column->Footer.ValueType = fvtSum;
            column->DisplayFormat = "0.00";
        }
    }
    DBGridEh->SetFooterRowVisible(std::any_of(kind_.columns.begin(), kind_.columns.end(),
                                              [](const ListColumn& c) { return c.summed; }));
    DBGridEh->ColumnsChanged();
}

void TDocumentList::FormCreate() {
    TFrm_Base_Entry_Head::FormCreate();
    removeApprovalColumns(DBGridEh);
}

void TDocumentList::InitForm(const Trecord& rec) {
    TFrm_Base_Entry_Head::InitForm(rec);
    QtyFields = kind_.qtyFields;
    PriceFields = kind_.priceFields;
    MoneyFields = kind_.moneyFields;
    KeyField = "NOID";
    WlField = "wl_id";
    HeadSql = BuildHeadQuery();
    DeleteSql = kind_.deleteQuery;
    BodySql = kind_.lineQuery;

    Entry = CreateEntry();
    // The screens the list owns work under the list's function code.
    handFunctionCode(Entry, FuncNo);
    Entry->SetBodyParam(BodyParams());
    EntryForm = Entry;

    Filter = CreateFilter();
    handFunctionCode(Filter, FuncNo);
    Filter->InitForm();
    FilterForm = Filter;

    Act_Start->trigger();
}

void TDocumentList::DBGridEhGetCellParams(QObject*, TColumnEh*, TCellParams& Params) { tintUnapproved(AdoQry_Main, Params); }
