#pragma once
// Purchase returns, sales tickets and sales returns on the shared shop: documents written
// straight into the tables, the lists opened on their codes, the head of a new document chosen
// through the pick lists, stock rows and cost prices set as a test needs them.
#include <type_traits>
#include <utility>

#include "documents/common/DocumentCommon.h"
#include "documents/purchase/Frmqxck202.h"
#include "documents/purchase/Frmqxck202_1.h"
#include "documents/purchase/Frmqxck202f.h"
#include "documents/sales/Frmqxck211.h"
#include "documents/sales/Frmqxck211_1.h"
#include "documents/sales/Frmqxck211f.h"
#include "documents/sales/Frmqxck212.h"
#include "documents/sales/Frmqxck212_1.h"
#include "documents/sales/Frmqxck212f.h"
#include "tests/support/GoldenStatements.h"
#include "tests/support/ShopFixture.h"

namespace qx::test {

class StockDocumentTest : public ShopScreenTest {
protected:
    // A head written straight into `table` (D8102, D8201 or D8202), effective when t = 1.
    void addHead(const QString& table, const QString& noid, const QString& date,
                 const QString& warehouse, int t, const QString& partner,
                 const QString& note = {}) {
        exec("INSERT INTO " + table +
             " (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, YW_ID, JY_ID, USER_ID, NOTE) VALUES (" +
             QString::number(t) + ", '" + noid + "', '" + partner + "', '" + warehouse + "', '" +
             date + "', '1', '01', '1', 'U1', '" + note + "')");
    }
    // A line of a purchase or sales return (positional: sizes, cost, return price and amount);
    // the database adds its SKU row when it has none.
    void addReturnLine(const QString& table, const QString& noid, const QString& style,
                       const QString& colour, const QString& warehouse, const QString& sizes,
                       const QString& sj, const QString& smoney) {
        exec("INSERT INTO " + table + " VALUES ('" + noid + "','" + style + colour + "','" + style +
             "','" + colour + "','" + warehouse + "'," + sizes + ",0,0," + sj + "," + smoney +
             ",'')");
    }
    // A line of a sales ticket.
    void addSaleLine(const QString& noid, const QString& style, const QString& colour,
                     const QString& warehouse, const QString& sizes, const QString& sj,
                     const QString& smoney) {
        exec(
            "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, "
            "S8, S9, SJ, SMONEY, "
            "ZK, ODJ, OMONEY, NOTE, DJ, MONEY) VALUES ('" +
            noid + "','" + style + colour + "','" + style + "','" + colour + "','" + warehouse +
            "'," + sizes + "," + sj + "," + smoney + ",0,0,0,'',0,0)");
    }
    void ensureSku(const QString& style, const QString& colour) {
        if (count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='" + style + colour + "'") == 0)
            exec("INSERT INTO D1801 VALUES ('" + style + colour + "','" + style + "','" + colour +
                 "')");
    }
    // A stock row with its size quantities (K0, K1, ...) and the negative-stock check.
    void addStock(const QString& sku, const QString& warehouse, std::initializer_list<int> sizes,
                  int checked = 0) {
        ensureSku(sku.left(3), sku.mid(3));
        QString columns, values;
        int i = 0;
        for (int q : sizes) {
            columns += ", K" + QString::number(i++);
            values += ", " + QString::number(q);
        }
        exec("INSERT INTO D1802 (WL_ID, CK_ID, CHECK_KC" + columns + ") VALUES ('" + sku + "', '" +
             warehouse + "', " + QString::number(checked) + values + ")");
    }
    // The stock on hand of a SKU in a warehouse; "" when it has no stock row there.
    QString stock(const QString& sku, const QString& warehouse) {
        return scalar("SELECT KC FROM D1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse +
                      "'");
    }
    int stockRows(const QString& sku) {
        return count("SELECT COUNT(*) FROM D1802 WHERE WL_ID='" + sku + "'");
    }
    void setCost(const QString& style, const QString& cost) {
        exec("UPDATE D1800 SET DJ=" + cost + " WHERE K_ID='" + style + "'");
    }

    // The list of a kind on its code; `fillFilter` fills the filter dialog before OK.
    template <class List>
    List* open(int code, std::function<void(TDocumentFilter*)> fillFilter = {}) {
        return ShopScreenTest::openList<List>(code, fillFilter);
    }

    // Head of a new document chosen through the pick lists: partner, delivery method 2, salesperson
    // 01.
    void fillHead(TDocumentEntry* e, const QString& partner, const QString& note = "退货") {
        ASSERT_TRUE(e->PartnerLink->Pick(partner));
        ASSERT_TRUE(e->DeliveryLink->Pick("2"));
        ASSERT_TRUE(e->SalespersonLink->Pick("01"));
        e->NOTE->setText(note);
    }

    // The numbers a list shows, sorted.
    static QStringList listed(TFrm_Base_Entry_Head* list) {
        QStringList numbers;
        TClientDataSet* heads = list->AdoQry_Main;
        for (int r = 0; r < heads->RecordCount(); ++r)
            numbers << qx::documents::lineText(heads, r, "noid");
        numbers.sort();
        return numbers;
    }

    // Each head control has its caption and maximum length.
    struct HeadCaption {
        QWidget* control;
        const char* caption;
        int max;
    };
    static void expectHeadCaptions(TDocumentEntry& e, std::initializer_list<HeadCaption> expected) {
        for (const HeadCaption& x : expected) {
            ASSERT_NE(e.Panel_Head->CaptionOf(x.control), nullptr) << x.caption;
            EXPECT_EQ(e.Panel_Head->CaptionOf(x.control)->text(), x.caption);
            EXPECT_EQ(qobject_cast<QLineEdit*>(x.control)->maxLength(), x.max) << x.caption;
        }
        EXPECT_EQ(e.Panel_Head->CaptionOf(e.BDATE)->text(), "开单日期");
        EXPECT_EQ(e.Panel_Head->CaptionOf(e.EDATE)->text(), "更改日期");
    }

    // A field of the current line as text.
    static QString cell(TDocumentEntry* e, const QString& field) {
        return e->AdoQry_Main->FieldByName(field)->AsString();
    }
};

// The screens of one kind: its list on its code positioned on the document of the set-up
// (`existing`), the entry opened from it in each mode, the kind's line count.
template <class List, int Code>
class KindScreensTest : public StockDocumentTest {
protected:
    using Entry = std::remove_pointer_t<decltype(std::declval<List>().entry())>;
    List* list() {
        auto* l = open<List>(Code);
        l->AdoQry_Main->Locate("noid", existing);
        return l;
    }
    Entry* add(List* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    Entry* edit(List* l) {
        l->Act_Edit->trigger();
        return l->entry();
    }
    // The head of a trading document's entry with its captions and lengths: the number, the
    // partner and the salesperson as the kind names them, then warehouse, delivery, payment
    // method and note.
    static void expectTradingHeadCaptions(Entry& e, const char* number, const char* partner, const char* salesperson) {
        expectHeadCaptions(e, {{e.Edit1, number, 12},
                               {e.KH_GYS_ID, partner, 10},
                               {e.CK_ID, "仓    库", 4},
                               {e.YW_ID, salesperson, 4},
                               {e.SEND_ID, "送货方式", 2},
                               {e.JY_ID, "结算方式", 2},
                               {e.NOTE, "备    注", 100}});
    }
    double value(Entry* e, const char* field) {
        return e->AdoQry_Main->FieldByName(field)->AsFloat();
    }
    int lines(const QString& noid) {
        return count("SELECT COUNT(*) FROM " + lineTable + " WHERE NOID='" + noid + "'");
    }
    // The document every entry test of the kind starts from: K01 costs 25 and K02 40; the
    // effective document `noid` in `head` of 2026-03-05 at warehouse 01 with `partner` and
    // `note`, last changed 2026-03-07 10:00, its lines written by `writeLines`; what was sent so
    // far is forgotten.
    void existingDocument(const QString& head, const QString& noid, const QString& partner, const QString& note,
                          const std::function<void()>& writeLines) {
        existing = noid;
        lineTable = head + "A";
        setCost("K01", "25");
        setCost("K02", "40");
        addHead(head, noid, "2026-03-05", "01", 1, partner, note);
        exec("UPDATE " + head + " SET EDATE='2026-03-07 10:00:00' WHERE NOID='" + noid + "'");
        writeLines();
        calls.clear();
    }

    // The save batches against the kind's golden file. "Add": a new document, its head filled
    // for `partner` with `note`, the lines `typeLines` types, under its new number. "CopyAdd":
    // the list's document copied and saved unchanged under a new number, not yet changed.
    // "Edit": the list's document with the lines `typeLines` types added. Each returns the
    // number saved.
    QString expectAddSends(const GoldenStatements& golden, const QString& partner, const QString& note,
                           const std::function<void(Entry*)>& typeLines) {
        List* l = list();
        Entry* e = add(l);
        fillHead(e, partner, note);
        typeLines(e);
        const QString noid = e->Edit1->text();
        e->Act_Save->trigger();
        EXPECT_TRUE(sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
        EXPECT_EQ(lastExec().noid, noid);
        EXPECT_EQ(lastExec().mode, "Add");
        delete l;
        return noid;
    }
    QString expectCopyAddSends(const GoldenStatements& golden) {
        List* l = list();
        l->Act_CopyAdd->trigger();
        Entry* e = l->entry();
        const QString noid = e->Edit1->text();
        EXPECT_NE(noid, existing);
        EXPECT_EQ(e->EDATE->text(), "");
        e->Act_Save->trigger();
        EXPECT_TRUE(sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
        EXPECT_EQ(lastExec().mode, "CopyAdd");
        delete l;
        return noid;
    }
    void expectEditSends(const GoldenStatements& golden, const std::function<void(Entry*)>& typeLines) {
        List* l = list();
        Entry* e = edit(l);
        typeLines(e);
        e->Act_Save->trigger();
        EXPECT_TRUE(sameStatements(golden.text("Edit"), lastBatch()));
        EXPECT_EQ(lastExec().noid, existing);
        EXPECT_EQ(lastExec().mode, "Edit");
        delete l;
    }

    QString existing;   // the number of the document the set-up writes
    QString lineTable;  // "D8102A"
};

}  // namespace qx::test
