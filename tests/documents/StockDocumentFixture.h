#pragma once
// Purchase returns, sales tickets and sales returns on the shared shop: documents written
// straight into the tables, the lists opened on their codes, the head of a new document chosen
// through the pick lists, stock rows and cost prices set as a test needs them.
#include "documents/purchase/Frmqxck202.h"
#include "documents/purchase/Frmqxck202_1.h"
#include "documents/purchase/Frmqxck202f.h"
#include "documents/sales/Frmqxck211.h"
#include "documents/sales/Frmqxck211_1.h"
#include "documents/sales/Frmqxck211f.h"
#include "documents/sales/Frmqxck212.h"
#include "documents/sales/Frmqxck212_1.h"
#include "documents/sales/Frmqxck212f.h"
#include "documents/common/DocumentCommon.h"
#include "framework/Screenshot.h"
#include "tests/support/ShopFixture.h"

#include <QFileInfo>
#include <QTest>

namespace qx::test {

class StockDocumentTest : public ShopScreenTest {
protected:
    // A head written straight into `table` (D8102, D8201 or D8202), effective when t = 1.
    void addHead(const QString& table, const QString& noid, const QString& date, const QString& warehouse, int t,
                 const QString& partner, const QString& note = {}) {
        exec("INSERT INTO " + table + " (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, YW_ID, JY_ID, USER_ID, NOTE) VALUES (" +
             QString::number(t) + ", '" + noid + "', '" + partner + "', '" + warehouse + "', '" + date +
             "', '1', '01', '1', 'U1', '" + note + "')");
    }
    // A line of a purchase or sales return (positional: sizes, cost, return price and amount).
    void addReturnLine(const QString& table, const QString& noid, const QString& style, const QString& colour,
                       const QString& warehouse, const QString& sizes, const QString& sj, const QString& smoney) {
        exec("INSERT INTO " + table + " VALUES ('" + noid + "','" + style + colour + "','" + style + "','" + colour +
             "','" + warehouse + "'," + sizes + ",0,0," + sj + "," + smoney + ",'')");
        ensureSku(style, colour);
    }
    // A line of a sales ticket.
    void addSaleLine(const QString& noid, const QString& style, const QString& colour, const QString& warehouse,
                     const QString& sizes, const QString& sj, const QString& smoney) {
        exec("INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, SJ, SMONEY, "
             "ZK, ODJ, OMONEY, NOTE, DJ, MONEY) VALUES ('" + noid + "','" + style + colour + "','" + style + "','" +
             colour + "','" + warehouse + "'," + sizes + "," + sj + "," + smoney + ",0,0,0,'',0,0)");
        ensureSku(style, colour);
    }
    void ensureSku(const QString& style, const QString& colour) {
        if (count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='" + style + colour + "'") == 0)
            exec("INSERT INTO D1801 VALUES ('" + style + colour + "','" + style + "','" + colour + "')");
    }
    // A stock row with its size quantities (K0, K1, ...) and the negative-stock check.
    void addStock(const QString& sku, const QString& warehouse, std::initializer_list<int> sizes, int checked = 0) {
        ensureSku(sku.left(3), sku.mid(3));
        QString columns, values;
        int i = 0;
        for (int q : sizes) {
            columns += ", K" + QString::number(i++);
            values += ", " + QString::number(q);
        }
        exec("INSERT INTO D1802 (WL_ID, CK_ID, CHECK_KC" + columns + ") VALUES ('" + sku + "', '" + warehouse + "', " +
             QString::number(checked) + values + ")");
    }
    // The stock on hand of a SKU in a warehouse; "" when it has no stock row there.
    QString stock(const QString& sku, const QString& warehouse) {
        return scalar("SELECT KC FROM D1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse + "'");
    }
    int stockRows(const QString& sku) { return count("SELECT COUNT(*) FROM D1802 WHERE WL_ID='" + sku + "'"); }
    void setCost(const QString& style, const QString& cost) {
        exec("UPDATE D1800 SET DJ=" + cost + " WHERE K_ID='" + style + "'");
    }

    // The list of a kind on its code; `fillFilter` fills the filter dialog before OK.
    template <class List>
    List* open(int code, std::function<void(TDocumentFilter*)> fillFilter = {}) {
        return ShopScreenTest::openList<List>(code, fillFilter);
    }

    // Head of a new document chosen through the pick lists: partner, delivery method 2, salesperson 01.
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
        for (int r = 0; r < heads->RecordCount(); ++r) numbers << qx::documents::lineText(heads, r, "noid");
        numbers.sort();
        return numbers;
    }

    // ---- hostile input, the same for every entry; `e` has its head filled and one line

    // Quotes and a placeholder-looking text in the remark and the line note are stored as typed.
    void expectQuotesStoredAsTyped(TDocumentEntry* e, const QString& headTable) {
        const QString remark = "O'Neil's return'); DROP TABLE " + headTable + ";--";
        e->NOTE->setText(remark);
        ASSERT_TRUE(typeCell(e, "NOTE", "it's {number}"));
        e->AdoQry_Main->CheckBrowseMode();
        const QString noid = e->Edit1->text();
        const int before = count("SELECT COUNT(*) FROM " + headTable);
        e->Act_Save->trigger();
        EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
        EXPECT_EQ(scalar("SELECT NOTE FROM " + headTable + " WHERE NOID='" + noid + "'"), remark);
        EXPECT_EQ(scalar("SELECT NOTE FROM " + headTable + "A WHERE NOID='" + noid + "'"), "it's {number}");
        EXPECT_EQ(count("SELECT COUNT(*) FROM " + headTable), before + 1);
    }

    // 10,000 characters: every head edit keeps its maximum length, the line note its field's.
    void expectLongTextsCut(TDocumentEntry* e, const QString& headTable) {
        for (QLineEdit* edit : e->Panel_Head->findChildren<QLineEdit*>()) {
            if (edit->objectName().isEmpty() || edit->objectName().startsWith("qt_") || !edit->isEnabled()) continue;
            const int max = edit->maxLength();
            EXPECT_LE(max, 100) << edit->objectName().toStdString();
            const QString kept = edit->text();
            edit->setText(QString(10000, QChar(u'长')));
            EXPECT_EQ(edit->text().size(), max) << edit->objectName().toStdString();
            if (edit != e->NOTE) edit->setText(kept);
        }
        ASSERT_TRUE(typeCell(e, "NOTE", QString(10000, 'x')));
        e->AdoQry_Main->CheckBrowseMode();
        const QString noid = e->Edit1->text();
        e->Act_Save->trigger();
        EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
        EXPECT_EQ(scalar("SELECT NOTE FROM " + headTable + " WHERE NOID='" + noid + "'"), QString(100, QChar(u'长')));
        EXPECT_EQ(scalar("SELECT NOTE FROM " + headTable + "A WHERE NOID='" + noid + "'"), QString(100, 'x'));
    }

    // Letters in a number cell: refused with the message, the cell keeps its value.
    void expectLettersRefused(TDocumentEntry* e, const QStringList& fields) {
        for (const QString& field : fields) {
            const QString before = cell(e, field);
            sink->clear();
            EXPECT_FALSE(typeCell(e, field, "3x")) << field.toStdString();
            ASSERT_FALSE(sink->texts().isEmpty()) << field.toStdString();
            EXPECT_EQ(sink->texts().back(), "'3x' 不是有效的数值!");
            EXPECT_EQ(cell(e, field), before) << field.toStdString();
        }
    }

    // An unknown style on the line and an unknown code typed into each lookup edit: refused with
    // the lookup's message, nothing saved; corrected, the document saves.
    struct UnknownCode {
        TLinkEdit* edit;
        QString message;
    };
    void expectUnknownCodesRefused(TDocumentEntry* e, const QString& headTable, const QList<UnknownCode>& cases) {
        EXPECT_FALSE(typeCell(e, "K_ID", "ZZ9'"));
        EXPECT_EQ(sink->texts().back(), "款号 ZZ9' 不存在!");
        e->AdoQry_Main->Cancel();
        const QString noid = e->Edit1->text();
        for (const UnknownCode& c : cases) {
            const QString kept = c.edit->text();
            c.edit->clear();
            c.edit->setFocus();
            QTest::keyClicks(c.edit, "Z'");
            sink->clear();
            e->Act_Save->trigger();
            ASSERT_FALSE(sink->texts().isEmpty()) << c.message.toStdString();
            EXPECT_EQ(sink->texts().back(), c.message);
            EXPECT_TRUE(sink->errors().isEmpty());
            EXPECT_EQ(count("SELECT COUNT(*) FROM " + headTable + " WHERE NOID='" + noid + "'"), 0);
            c.edit->setText(kept);
        }
        sink->clear();
        e->Act_Save->trigger();
        EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
        EXPECT_EQ(count("SELECT COUNT(*) FROM " + headTable + " WHERE NOID='" + noid + "'"), 1);
    }

    // An unknown warehouse typed before the first line is refused when the edit is left.
    void expectUnknownWarehouseRefused(TDocumentEntry* e) {
        ASSERT_TRUE(e->AdoQry_Main->IsEmpty());
        e->activateWindow();
        QApplication::setActiveWindow(e);
        e->CK_ID->setFocus();
        e->CK_ID->clear();
        QTest::keyClicks(e->CK_ID, "Z'");
        sink->clear();
        e->NOTE->setFocus();
        ASSERT_FALSE(sink->texts().isEmpty());
        EXPECT_EQ(sink->texts().back(), "仓 库代码 Z' 不存在!");
        EXPECT_TRUE(sink->errors().isEmpty());
        e->CK_ID->setText(G_ckid);
    }

    // Letters typed into the date edit change nothing: the date stays a date.
    void expectDateKeepsADate(TDocumentEntry* e) {
        const QString before = e->BDATE->Text();
        e->BDATE->SetText("abcd-ef-gh");
        EXPECT_EQ(e->BDATE->Text(), before);
        e->BDATE->setFocus();
        QTest::keyClicks(e->BDATE, "x'y");
        EXPECT_EQ(e->BDATE->Text(), before);
        EXPECT_TRUE(sink->errors().isEmpty());
    }

    // A picture of the entry as a clerk sees it, under the screenshots folder of the build.
    void expectScreenshot(TDocumentEntry* e, const QString& name) {
        e->resize(1280, 480);
        const QString file = qx::saveScreenshot(e, name);
        EXPECT_FALSE(file.isEmpty());
        EXPECT_GT(QFileInfo(file).size(), 10000) << file.toStdString();
        e->Modified = false;
    }

    // A field of the current line as text.
    static QString cell(TDocumentEntry* e, const QString& field) { return e->AdoQry_Main->FieldByName(field)->AsString(); }
};

}  // namespace qx::test
