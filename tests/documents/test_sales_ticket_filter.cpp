// The sales ticket filter: what every document filter does, on D8201 with customers.
#include <QLabel>

#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(SalesTickets, DocumentFilterTest, ::testing::Values(salesTickets()),
                         kindName);

TEST(SalesTicketFilter, HasCustomerWarehouseAndNumberRange) {
    ResetGlobals();
    TQXCK211F filter(nullptr);
    EXPECT_EQ(filter.ExtEdit1, nullptr);
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.KH_ID)->text(), "客    户");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.Edit1)->text(), "销售单号");
    EXPECT_EQ(filter.PartnerLink->Table().toLower(), "d1102");
}

}  // namespace qx::test
