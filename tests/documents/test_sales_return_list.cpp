// The sales return list: what every document list does, on D8202 with customers, without a
// total column.
#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(SalesReturns, DocumentListTest, ::testing::Values(salesReturns()),
                         kindName);

TEST_F(StockDocumentTest, SalesReturnListHasNoTotalColumn) {
    TQXCK212* list = open<TQXCK212>(212);
    EXPECT_EQ(list->entry(), QXCK212_1);
    EXPECT_EQ(list->filter(), QXCK212F);
    EXPECT_EQ(list->DBGridEh->ColumnByField("TOLMONEY"), nullptr);
    EXPECT_FALSE(list->entry()->HeadSql.contains("TOLMONEY", Qt::CaseInsensitive));
    delete list;
}

}  // namespace qx::test
