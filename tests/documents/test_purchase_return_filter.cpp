// The purchase return filter: what every document filter does, on D8102, with its own texts.
#include <QLabel>

#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(PurchaseReturns, DocumentFilterTest, ::testing::Values(purchaseReturns()),
                         kindName);

TEST(PurchaseReturnFilter, HasSupplierWarehouseAndNumberRangeButNoDeliveryNote) {
    ResetGlobals();
    TQXCK202F filter(nullptr);
    EXPECT_EQ(filter.ExtEdit1, nullptr);
    EXPECT_EQ(filter.titDATE->text(), "(30天)");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.KH_ID)->text(), "供 应 商");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.CK_ID)->text(), "仓    库");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit1)->text(), "退货单号");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit2)->text(), "至：");
    EXPECT_EQ(filter.PartnerLink->Table().toLower(), "d1103");
}

}  // namespace qx::test
