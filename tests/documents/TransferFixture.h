#pragma once
// The transfer screens on the shared shop: stock put into the sending warehouse by an effective
// purchase receipt, transfers written straight into the tables, the transfer list (217) and
// the arrival-check list (219) opened through their filters.
#include "documents/transfer/Frmqxck233.h"
#include "documents/transfer/Frmqxck233_1.h"
#include "documents/transfer/Frmqxck233f.h"
#include "documents/transfer/Frmqxck234.h"
#include "documents/transfer/Frmqxck234_1.h"
#include "documents/transfer/Frmqxck234f.h"
#include "tests/support/ShopFixture.h"

namespace qx::test {

class TransferTest : public ShopScreenTest {
protected:
    void SetUp() override {
        ShopScreenTest::SetUp();
        G_SKSTR = "1";  // new documents are effective at once
        exec("UPDATE d1800 SET DJ = 12 WHERE K_ID = 'K01'");
        exec("UPDATE d1800 SET DJ = 30 WHERE K_ID = 'K02'");
        // 10 of each size in stock at 总仓 for every SKU of the shop.
        exec("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, SEND_NO, YW_ID, JY_ID, USER_ID, NOTE) "
             "VALUES (1, 'R0301', 'G01', '01', '2026-03-01', '1', '', '01', '1', 'U1', '')");
        for (const char* sku : {"K0101", "K0102", "K0203"}) {
            const QString s = sku;
            exec("INSERT INTO D1801 VALUES ('" + s + "','" + s.left(3) + "','" + s.mid(3) + "')");
            exec("INSERT INTO D8101A VALUES ('R0301','" + s + "','" + s.left(3) + "','" + s.mid(3) +
                 "','01',10,10,10,10,10,0,0,0,0,0,10,500,'')");
        }
    }

    // A transfer written straight into the tables: one line of `sku` with sizes S0, S1.
    void addTransfer(const QString& noid, const QString& date, int t, const QString& sku, int s0, int s1,
                     const QString& from = "01", const QString& to = "02") {
        exec("INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, STRPARAM1, USER_ID, NOTE, Y, Y_WC) VALUES ('" + noid +
             "', " + QString::number(t) + ", '" + from + "', '" + to + "', '" + date + "', '李四', 'U1', '首批', 0, 0)");
        exec("INSERT INTO D8303A VALUES ('" + noid + "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','" +
             from + "','" + to + "'," + QString::number(s0) + "," + QString::number(s1) +
             ",0,0,0,0,0,0,0,0,0,0,99," + QString::number((s0 + s1) * 99) + ",'',0,0,0,0,0,0,0,0,0,0)");
    }

    // Stock of a SKU in a warehouse at a size position (KC with position -1).
    int stock(const QString& sku, const QString& warehouse, int position = -1) {
        const QString column = position < 0 ? QString("KC") : "K" + QString::number(position);
        return count("SELECT " + column + " FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse + "'");
    }

    TQXCK233* transfers(std::function<void(TDocumentFilter*)> fill = {}) { return openList<TQXCK233>(217, fill); }
    TQXCK234* arrivals(std::function<void(TDocumentFilter*)> fill = {}) { return openList<TQXCK234>(219, fill); }

    // The arrival check opened on a transfer.
    TQXCK234_1* openArrival(TQXCK234* list, const QString& noid) {
        EXPECT_TRUE(list->AdoQry_Main->Locate("noid", noid)) << noid.toStdString();
        list->Act_Edit->trigger();
        return list->entry();
    }
    // A new transfer to 东门店 with one line.
    TQXCK233_1* newTransfer(TQXCK233* list, const QString& style, const QString& colour, const std::vector<QString>& sizes,
                            const QString& price = "99") {
        list->Act_Add->trigger();
        TQXCK233_1* e = list->entry();
        EXPECT_TRUE(e->InWarehouseLink->Pick("02"));
        e->STRPARAM1->setText("李四");
        e->NOTE->setText("补货");
        addLine(e, style, colour, sizes, price);
        return e;
    }
};

}  // namespace qx::test
