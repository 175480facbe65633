// The sales ticket list: what every document list does, on D8201 with customers, and the
// ticket's total as a summed column.
#include "tests/documents/DocumentListTest.h"

namespace qx::test {

INSTANTIATE_TEST_SUITE_P(SalesTickets, DocumentListTest, ::testing::Values(salesTickets()),
                         kindName);

TEST_F(StockDocumentTest, SalesTicketListShowsTheTicketsTotalWithASum) {
    addHead("D8201", "N0305", "2026-03-05", "01", 1, "C01");
    addHead("D8201", "N0306", "2026-03-06", "01", 1, "C02");
    exec("UPDATE D8201 SET TOLMONEY=100 WHERE NOID='N0305'");
    exec("UPDATE D8201 SET TOLMONEY=250.5 WHERE NOID='N0306'");
    TQXCK211* list = open<TQXCK211>(211);
    EXPECT_EQ(list->entry(), QXCK211_1);
    EXPECT_EQ(list->filter(), QXCK211F);
    TColumnEh* total = list->DBGridEh->ColumnByField("TOLMONEY");
    ASSERT_NE(total, nullptr);
    EXPECT_EQ(total->Title, "本单销售总额");
    EXPECT_EQ(total->Footer.ValueType, fvtSum);
    EXPECT_DOUBLE_EQ(list->DBGridEh->GetSumValue("TOLMONEY"), 350.5);
    EXPECT_EQ(list->DBGridEh->ColumnByField("KG_NAME")->Title, "客户简称");
    EXPECT_EQ(list->DBGridEh->ColumnByField("SEND_NAME")->Title, "送货方式");
    delete list;
}

}  // namespace qx::test
