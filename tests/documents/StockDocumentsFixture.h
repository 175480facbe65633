#pragma once
// Count sheets, loss/gain sheets and orders on the shared shop: styles with a brand and a cost
// price (the stocktake summary joins brands and values lines at the style's cost), the fixed
// rights user of the summary, stock rows and sheets written straight into the tables, and the
// lists opened on their function codes.
#include <QRadioButton>
#include <QTimer>

#include "documents/lossgain/Frmqxck231.h"
#include "documents/lossgain/Frmqxck231_1.h"
#include "documents/lossgain/Frmqxck231f.h"
#include "documents/orders/Frmqxck213.h"
#include "documents/orders/Frmqxck213_1.h"
#include "documents/orders/Frmqxck213f.h"
#include "documents/stocktake/Frmqxck235.h"
#include "documents/stocktake/Frmqxck235_1.h"
#include "documents/stocktake/Frmqxck235_2.h"
#include "documents/stocktake/Frmqxck235f.h"
#include "tests/support/ShopFixture.h"

namespace qx::test {

class StockDocumentsTest : public ShopScreenTest {
protected:
    void SetUp() override {
        ShopScreenTest::SetUp();
        G_SKSTR = "1";  // documents are effective when saved: loss/gain sheets post at once
        G_CM = 4;
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P1', '自有')");
        exec("UPDATE d1800 SET PP_ID='P1', DJ=8 WHERE K_ID='K01'");
        exec("UPDATE d1800 SET PP_ID='P1', DJ=12 WHERE K_ID='K02'");
        // The summary reads stock through the rights of user "01", whoever is signed in.
        exec("INSERT INTO sys_user (USER_ID, USER_NAME) VALUES ('01', '系统管理员')");
        exec("INSERT INTO sys_user_ck VALUES ('01', '01', 1)");
        for (const char* sku : {"('K0101','K01','01')", "('K0102','K01','02')", "('K0203','K02','03')"})
            exec(QString("INSERT INTO D1801 VALUES ") + sku);
    }

    // A stock row as opening stock: quantities by size position.
    void stock(const QString& sku, const QString& warehouse, const std::vector<int>& sizes, int checked = 0) {
        QString k, b, values;
        int total = 0;
        for (size_t i = 0; i < sizes.size(); ++i) {
            k += ",K" + QString::number(i);
            b += ",B" + QString::number(i);
            values += "," + QString::number(sizes[i]);
            total += sizes[i];
        }
        exec("INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, KC" + k + b + ") VALUES ('" + sku + "','" + warehouse + "'," +
             QString::number(checked) + "," + QString::number(total) + values + values + ")");
    }
    // Stock of one size position ("" when there is no stock row).
    QString stockOf(const QString& sku, const QString& warehouse, int position) {
        return scalar("SELECT K" + QString::number(position) + " FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='" +
                      warehouse + "'");
    }
    QString stockRow(const QString& sku, const QString& warehouse) {
        const auto r = query("SELECT K0,K1,K2,K3,K4 FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse + "'");
        if (r.rows.empty()) return "none";
        QStringList parts;
        for (const auto& v : r.rows[0]) {
            if (auto* i = std::get_if<std::int64_t>(&v)) parts << QString::number(*i);
            else if (auto* d = std::get_if<double>(&v)) parts << FloatToStr(*d);
            else parts << "?";
        }
        return parts.join("/");
    }

    // A count sheet written straight into the tables: lines as (style, colour, sizes).
    struct SheetLine {
        QString style, colour;
        std::vector<int> sizes;
    };
    void countSheet(const QString& noid, const QString& warehouse, const std::vector<SheetLine>& lines, int t = 0,
                    const QString& date = "2026-03-10") {
        exec("INSERT INTO d8300 (NOID, T, CK_ID, BDATE, STRPARAM1, USER_ID, NOTE) VALUES ('" + noid + "'," +
             QString::number(t) + ",'" + warehouse + "','" + date + "','李四','U1','')");
        for (const SheetLine& l : lines) {
            QString sizes;
            for (int i = 0; i < 10; ++i) sizes += "," + QString::number(i < int(l.sizes.size()) ? l.sizes[size_t(i)] : 0);
            exec("INSERT INTO d8300A VALUES ('" + noid + "','" + l.style + l.colour + "','" + l.style + "','" + l.colour +
                 "','" + warehouse + "'" + sizes + ",0,0,'')");
        }
    }

    TQXCK235* stocktakeList(std::function<void(TDocumentFilter*)> fill = {}) { return openList<TQXCK235>(235, fill); }
    TQXCK231* lossGainList(std::function<void(TDocumentFilter*)> fill = {}) { return openList<TQXCK231>(218, fill); }
    TQXCK213* orderList(std::function<void(TDocumentFilter*)> fill = {}) { return openList<TQXCK213>(215, fill); }

    // Runs the summary action of the list on its current sheet; `drive` works the dialog while
    // it is shown (nothing: the dialog is left with cancel).
    void summarise(TQXCK235* list, std::function<void(TQXCK235_2*)> drive) {
        qx::ui::setModalHandler([drive](TFrm_Base* dialog) {
            auto* summary = dynamic_cast<TQXCK235_2*>(dialog);
            if (!summary) return int(mrCancel);
            if (drive) drive(summary);
            return summary->ModalResult() == mrOk ? int(mrOk) : int(mrCancel);
        });
        list->Acti_tot->trigger();
        qx::ui::setModalHandler(nullptr);
    }
    // The summary, in full or partial mode, confirmed with OK.
    void summariseAndGenerate(TQXCK235* list, bool full) {
        summarise(list, [full](TQXCK235_2* s) {
            if (full) {
                s->RB_All->setChecked(true);
                s->btn_ref->click();
            }
            s->btn_ok->click();
        });
    }
    QString newestLossGain() { return scalar("SELECT MAX(NOID) FROM d8301"); }
    // The description and condition a filter built (its kind's Description() hides the field).
    static QString described(TFrm_Base_Dialog* filter) { return filter->Description; }
};

}  // namespace qx::test
