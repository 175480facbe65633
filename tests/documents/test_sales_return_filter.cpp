// The sales return filter: what every document filter does, on D8202 with customers.
#include <QLabel>

#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(SalesReturns, DocumentFilterTest, ::testing::Values(salesReturns()),
                         kindName);

TEST(SalesReturnFilter, HasCustomerWarehouseAndNumberRange) {
    ResetGlobals();
    TQXCK212F filter(nullptr);
    EXPECT_EQ(filter.ExtEdit1, nullptr);
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.KH_ID)->text(), "客    户");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit1)->text(), "退货单号");
    EXPECT_EQ(filter.PartnerLink->Table().toLower(), "d1102");
}

}  // namespace qx::test
