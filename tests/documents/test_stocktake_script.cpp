// The stocktake example of scripts/examples through the headless script runner on the demo
// shop: two count sheets, the summary, the loss/gain sheet and the stock it leaves.
#include <QDir>
#include <QFile>

#include "tests/support/DemoShopScript.h"

namespace {

class StocktakeScriptTest : public qx::test::DemoShopScriptTest {
protected:
    // The shelf the example counts: PD100 in colour Q1, 5 of the first size and 3 of the
    // second, in warehouse PD.
    void SeedShop(qx::db::Database& shop) override {
        for (const char* sql : {
                 "INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('PD', '盘点仓')",
                 "INSERT INTO sys_user_ck (USER_ID, CK_ID, W) VALUES ('admin', 'PD', 1)",
                 "INSERT INTO sys_user_ck (USER_ID, CK_ID, W) VALUES ('01', 'PD', 1)",
                 "INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('PDB', '盘点牌')",
                 "INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2) VALUES ('PDM', '三码', 'S', 'M', 'L')",
                 "INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('Q1', '灰色')",
                 "INSERT INTO d1800 (K_ID, M_ID, PP_ID, WL_NAME, DW_NAME, DJ, CGJ, PFJ, TMI, CHECK_KC) VALUES "
                 "('PD100', 'PDM', 'PDB', '盘点衬衫', '件', 30, 30, 99, 0, 0)",
                 "INSERT INTO d1804 (K_ID, COL_ID) VALUES ('PD100', 'Q1')",
                 "INSERT INTO D1801 (WL_ID, K_ID, COL_ID) VALUES ('PD100Q1', 'PD100', 'Q1')",
                 "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC, B0, B1, CHECK_KC) VALUES ('PD100Q1', 'PD', 5, 3, 8, 5, 3, 0)",
             })
            shop.execute(sql);
    }
};

TEST_F(StocktakeScriptTest, TwoSheetsSummarisedIntoALossGainSheetThatCorrectsTheStock) {
    QFile file(QDir(QString::fromUtf8(qgetenv("QXCK_SOURCE_DIR"))).filePath("scripts/examples/stocktake.qxs"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const QString script = QString::fromUtf8(file.readAll());
    int rc = 0;
    const QString output = run(script, rc);
    ASSERT_EQ(rc, 0) << output.toStdString();

    const QString sheet = scalar("SELECT MAX(NOID) FROM d8301 WHERE CK_ID='PD'");
    ASSERT_FALSE(sheet.isEmpty()) << output.toStdString();
    EXPECT_TRUE(output.contains("message: 系统已自动生成损溢单号 [" + sheet + "] 本次盘点结束!")) << output.toStdString();
    EXPECT_EQ(scalar("SELECT NOTE FROM d8301 WHERE NOID='" + sheet + "'"), "由盘点录入汇总自动生成");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8301A WHERE NOID='" + sheet + "'"), "1");
    EXPECT_EQ(scalar("SELECT S0 FROM d8301A WHERE NOID='" + sheet + "'"), "-1");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + sheet + "'"), "-30");
    // Both sheets are closed and name it; the stock is what was counted.
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8300 WHERE CK_ID='PD' AND T=1 AND D8301NOID='" + sheet + "'"), "2");
    EXPECT_EQ(scalar("SELECT K0 FROM d1802 WHERE WL_ID='PD100Q1' AND CK_ID='PD'"), "4");
    EXPECT_EQ(scalar("SELECT K1 FROM d1802 WHERE WL_ID='PD100Q1' AND CK_ID='PD'"), "3");
    // The summarised sheets show so in the list.
    EXPECT_TRUE(output.contains("已汇总")) << output.toStdString();
    EXPECT_FALSE(output.contains("error:")) << output.toStdString();
}

}  // namespace
