// The purchase return list: what every document list does, on D8102 with suppliers.
#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(PurchaseReturns, DocumentListTest, ::testing::Values(purchaseReturns()),
                         kindName);

TEST_F(StockDocumentTest, PurchaseReturnListShowsSuppliersAndNoDeliveryNote) {
    TQXCK202* list = open<TQXCK202>(202);
    EXPECT_EQ(list->entry(), QXCK202_1);
    EXPECT_EQ(list->filter(), QXCK202F);
    EXPECT_TRUE(list->DBGridEh->ColumnByField("KG_NAME") != nullptr);
    EXPECT_EQ(list->DBGridEh->ColumnByField("KG_NAME")->Title, "供应商简称");
    EXPECT_EQ(list->DBGridEh->ColumnByField("SEND_NO"), nullptr);
    EXPECT_FALSE(list->entry()->HeadSql.contains("SEND_NO", Qt::CaseInsensitive));
    delete list;
}

}  // namespace qx::test
