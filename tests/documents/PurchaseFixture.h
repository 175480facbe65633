#pragma once
// The purchase receipt screens on the shared shop: receipts written straight into the tables,
// the list opened on code 201, the head of a new receipt chosen through the pick lists.
#include "documents/purchase/Frmqxck201.h"
#include "documents/purchase/Frmqxck201_1.h"
#include "documents/purchase/Frmqxck201f.h"
#include "tests/support/ShopFixture.h"

namespace qx::test {

class PurchaseTest : public ShopScreenTest {
protected:
    // A receipt written straight into the tables (not through a screen).
    void addReceipt(const QString& noid, const QString& date, const QString& warehouse, int t,
                    const QString& supplier = "G01") {
        exec("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, SEND_ID, SEND_NO, YW_ID, JY_ID, USER_ID, NOTE) VALUES (" +
             QString::number(t) + ", '" + noid + "', '" + supplier + "', '" + warehouse + "', '" + date +
             "', '1', 'SN-" + noid + "', '01', '1', 'U1', '')");
    }

    // The list opened on code 201; `fillFilter` fills the filter dialog before OK (nothing: this
    // month as preset).
    TQXCK201* openList(std::function<void(TQXCK201F*)> fillFilter = {}) {
        return ShopScreenTest::openList<TQXCK201>(201, [fillFilter](TDocumentFilter* f) {
            if (fillFilter) fillFilter(static_cast<TQXCK201F*>(f));
        });
    }

    // Head of a new receipt chosen through the pick lists.
    void fillHead(TQXCK201_1* e, const QString& supplier = "G01") {
        ASSERT_TRUE(e->PartnerLink->Pick(supplier));
        ASSERT_TRUE(e->DeliveryLink->Pick("2"));
        ASSERT_TRUE(e->SalespersonLink->Pick("01"));
        e->send_no->setText("HM-0318");
        e->NOTE->setText("春装到货");
    }
};

}  // namespace qx::test
