#pragma once
// The list and filter behaviour every document kind shares, written once as parameterised
// tests (test_document_list_checks.cpp) and run for each kind by its own test files with the
// kind's tables, texts and golden files. Each kind has the same documents of March: N0301,
// N0305 (warehouse 01, effective), N0305B (warehouse 02, second partner, not yet effective),
// N0306 (warehouse 02) and N0220 of February.
#include <functional>

#include "tests/documents/StockDocumentFixture.h"
#include "tests/support/GoldenStatements.h"

namespace qx::test {

class DocumentListTest;
using FilterFill = std::function<void(TDocumentFilter*)>;

struct ListKind {
    int code;
    QString caption;                // "采购退货"
    QString headTable;              // "D8102"
    QString lineTable;              // "D8102A"
    QString partner, otherPartner;  // "G01", "G02"
    QString partnerDescription;     // " ●供应商："
    QString numberDescription;      // " ●退货单号："
    QString reversedDates;          // the dialog's message
    QStringList titles;             // visible head columns without approval
    TDocumentList* (*open)(DocumentListTest*, FilterFill);
    QString name;  // for the test names
};

class DocumentListTest : public StockDocumentTest, public ::testing::WithParamInterface<ListKind> {
public:
    template <class List>
    static TDocumentList* opener(DocumentListTest* t, FilterFill fill) {
        return t->open<List>(t->GetParam().code, fill);
    }

protected:
    void SetUp() override {
        StockDocumentTest::SetUp();
        const ListKind& k = GetParam();
        addHead(k.headTable, "N0301", "2026-03-01", "01", 1, k.partner);
        addHead(k.headTable, "N0305", "2026-03-05", "01", 1, k.partner);
        addHead(k.headTable, "N0305B", "2026-03-05", "02", 0, k.otherPartner);
        addHead(k.headTable, "N0306", "2026-03-06", "02", 1, k.partner);
        addHead(k.headTable, "N0220", "2026-02-20", "01", 1, k.partner);
        calls.clear();
    }
    TDocumentList* openKind(FilterFill fill = {}) { return GetParam().open(this, fill); }
    QString golden(const QString& caseName, const QHash<QString, QString>& vars = {}) const {
        return GoldenStatements("documents/golden/Frmqxck" + QString::number(GetParam().code) +
                                ".sql")
            .text(caseName, vars);
    }
    QString filterGolden(const QString& caseName) const {
        return GoldenStatements("documents/golden/Frmqxck" + QString::number(GetParam().code) +
                                "f.sql")
            .text(caseName);
    }
};

class DocumentFilterTest : public DocumentListTest {};

// The three kinds with what their lists and filters show.
inline ListKind purchaseReturns() {
    return {202,
            "采购退货",
            "D8102",
            "D8102A",
            "G01",
            "G02",
            " ●供应商：",
            " ●退货单号：",
            "开始日期 不能大于 <结束日期>!",
            {"单号", "供应商简称", "业务员", "仓库", "开单日期", "最后更改", "结算方式", "进货方式",
             "开单", "备注"},
            &DocumentListTest::opener<TQXCK202>,
            "PurchaseReturns"};
}
inline ListKind salesTickets() {
    return {211,
            "销售开单",
            "D8201",
            "D8201A",
            "C01",
            "C02",
            " ●客户：",
            " ●销售单号：",
            "<开始日期> 不能大于 <结束日期>!",
            {"单号", "客户简称", "业务员", "仓库", "开单日期", "最后更改", "结算方式", "送货方式",
             "开单", "备注", "本单销售总额"},
            &DocumentListTest::opener<TQXCK211>,
            "SalesTickets"};
}
inline ListKind salesReturns() {
    return {212,
            "销售退货",
            "D8202",
            "D8202A",
            "C01",
            "C02",
            " ●客户：",
            " ●退货单号：",
            "<开始日期> 不能大于 <结束日期>!",
            {"单号", "客户简称", "业务员", "仓库", "开单日期", "最后更改", "结算方式", "送货方式",
             "开单", "备注"},
            &DocumentListTest::opener<TQXCK212>,
            "SalesReturns"};
}

inline std::string kindName(const ::testing::TestParamInfo<ListKind>& info) {
    return info.param.name.toStdString();
}

}  // namespace qx::test
