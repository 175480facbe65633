#pragma once
// What every entry of purchase returns, sales tickets and sales returns does, written once as
// parameterised tests (test_document_entry_checks.cpp) and run for each kind by its own entry
// test file. Each kind starts with one effective document of 2026-03-05 in warehouse 01 with one
// line of K0101 (1 and 2 pieces at 90); K01 costs 25, K02 40.
#include "tests/documents/StockDocumentFixture.h"

namespace qx::test {

class DocumentEntryTest;

struct EntryKind {
    int code;
    QString headTable;       // "D8102"
    QString existing;        // the number of the document of the set-up
    QString partner;         // "G01"
    QString price;           // a price typed on new lines
    QString numberCaption;   // the caption the number's checks report with
    QString partnerMessage;  // "供 应 商代码 Z' 不存在!"
    QString salespersonMessage;
    QStringList numberFields;  // line cells that take numbers
    bool settlementTwo;        // settlement method 2 may be chosen
    QString screenshot;
    TDocumentList* (*open)(DocumentEntryTest*);
    QString name;
};

class DocumentEntryTest : public StockDocumentTest,
                          public ::testing::WithParamInterface<EntryKind> {
public:
    template <class List>
    static TDocumentList* opener(DocumentEntryTest* t) {
        auto* list = t->open<List>(t->GetParam().code);
        list->AdoQry_Main->Locate("noid", t->GetParam().existing);
        return list;
    }

protected:
    void SetUp() override {
        StockDocumentTest::SetUp();
        const EntryKind& k = GetParam();
        setCost("K01", "25");
        setCost("K02", "40");
        addHead(k.headTable, k.existing, "2026-03-05", "01", 1, k.partner, "首批");
        if (k.code == 211)
            addSaleLine(k.existing, "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
        else
            addReturnLine(k.headTable + "A", k.existing, "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0",
                          "90", "270");
        calls.clear();
    }
    void TearDown() override {
        delete list_;
        StockDocumentTest::TearDown();
    }
    // The entry opened from the kind's list in a mode ("Add", "CopyAdd", "Edit").
    TDocumentEntry* entry(const QString& mode = "Add") {
        if (!list_) list_ = GetParam().open(this);
        if (mode == "Add")
            list_->Act_Add->trigger();
        else if (mode == "CopyAdd")
            list_->Act_CopyAdd->trigger();
        else
            list_->Act_Edit->trigger();
        return list_->Entry;
    }
    // A new document with its head and one line.
    TDocumentEntry* newDocument() {
        TDocumentEntry* e = entry();
        fillHead(e, GetParam().partner);
        addLine(e, "K01", "02", {"1"}, GetParam().price);
        return e;
    }
    TDocumentList* list_ = nullptr;
};

inline std::string entryName(const ::testing::TestParamInfo<EntryKind>& info) {
    return info.param.name.toStdString();
}

inline EntryKind purchaseReturnEntry() {
    return {202,
            "D8102",
            "P0305",
            "G01",
            "12",
            "出货单号",
            "供 应 商代码 Z' 不存在!",
            "采 购 员代码 Z' 不存在!",
            {"S0", "S1", "S4", "STOT", "SJ", "SMONEY"},
            false,
            "purchase_return_entry",
            &DocumentEntryTest::opener<TQXCK202>,
            "PurchaseReturns"};
}
inline EntryKind salesTicketEntry() {
    return {211,
            "D8201",
            "S0305",
            "C01",
            "80",
            "销售单号",
            "客 户代码 Z' 不存在!",
            "业 务 员代码 Z' 不存在!",
            {"S0", "S9", "STOT", "ODJ", "OMONEY", "ZK", "SJ", "SMONEY"},
            true,
            "sales_ticket_entry",
            &DocumentEntryTest::opener<TQXCK211>,
            "SalesTickets"};
}
inline EntryKind salesReturnEntry() {
    return {212,
            "D8202",
            "T0305",
            "C01",
            "80",
            "出货单号",
            "客 户代码 Z' 不存在!",
            "业 务 员代码 Z' 不存在!",
            {"S0", "S5", "STOT", "SJ", "SMONEY"},
            false,
            "sales_return_entry",
            &DocumentEntryTest::opener<TQXCK212>,
            "SalesReturns"};
}

}  // namespace qx::test
