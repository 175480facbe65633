// The purchase receipt entry's save batches against its golden file.
#include "tests/documents/PurchaseFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

class PurchaseGoldenTest : public qx::test::PurchaseTest {
protected:
    void SetUp() override {
        PurchaseTest::SetUp();
        G_SKSTR = "1";
        addReceipt("R0305", "2026-03-05", "01", 1);
        exec("INSERT INTO D1801 VALUES ('K0101','K01','01')");
        exec("INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',1,2,0,0,0,0,0,0,0,0,10,30,'')");
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck201_1.sql"};
};

TEST_F(PurchaseGoldenTest, ANewReceipt) {
    TQXCK201* list = openList();
    list->Act_Add->trigger();
    TQXCK201_1* e = list->entry();
    fillHead(e);
    addLine(e, "K01", "02", {"3", "2"}, "10");
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", e->Edit1->text()}}), lastBatch()));
    delete list;
}

TEST_F(PurchaseGoldenTest, AReceiptEditedWithASecondLine) {
    TQXCK201* list = openList();
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", "R0305"));
    list->Act_Edit->trigger();
    TQXCK201_1* e = list->entry();
    addLine(e, "K02", "03", {"", "1"}, "50");
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    delete list;
}

TEST(GoldenStatements, AChangedBlankIsReportedAsABlank) {
    const auto result = qx::test::sameStatements("delete from  d8101A WHERE NOID='1';", "delete from d8101A WHERE NOID='1';");
    ASSERT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("blanks before token 3 ('d8101A') differ"), std::string::npos)
        << result.message();
}

TEST(GoldenStatements, AChangedWordIsReportedWithItsPlace) {
    const auto result = qx::test::sameStatements("SELECT NOID FROM d8101", "SELECT NOID FROM d8102");
    ASSERT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("expected 'd8101', got 'd8102'"), std::string::npos) << result.message();
}

}  // namespace
