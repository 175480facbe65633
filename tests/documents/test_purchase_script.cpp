// "A typical request" driven through the headless script runner on the demo shop: the menu
// function 采购进货, the filter, a receipt with three lines typed into the entry screen, then
// copy-add, edit and delete, with the warehouse's stock following every step.
#include "tests/support/DemoShopScript.h"

namespace {

class PurchaseScriptTest : public qx::test::DemoShopScriptTest {
protected:
    QString run(const QString& script) { return runOk(script); }
    int stock(const QString& sku, const QString& warehouse) {
        return scalar("SELECT KC FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse + "'").toInt();
    }
};

TEST_F(PurchaseScriptTest, ATypicalRequestThroughTheScriptRunner) {
    const QString supplier = scalar("SELECT MIN(KH_GYS_ID) FROM d1103");
    const QString buyer = scalar("SELECT MIN(YW_ID) FROM d1101");
    const QString delivery = scalar("SELECT MIN(SEND_ID) FROM d1011");
    const auto styles = db->open("SELECT K_ID, MIN(COL_ID) FROM d1804 GROUP BY K_ID ORDER BY K_ID");
    ASSERT_GE(styles.rows.size(), 3u);
    QStringList skus;
    QString lines;
    for (int i = 0; i < 3; ++i) {
        const QString style = QString::fromStdString(std::get<std::string>(styles.rows[size_t(i)][0]));
        const QString colour = QString::fromStdString(std::get<std::string>(styles.rows[size_t(i)][1]));
        skus << style + colour;
        lines += QString("append\ncell K_ID %1\ncell COL_ID %2\ncell S0 %3\ncell S1 2\ncell sj 10\npost\n")
                     .arg(style, colour)
                     .arg(i + 1);
    }

    // Signed in, the user's warehouse is known: its stock before.
    run("login admin admin\n");
    const QString warehouse = G_ckid;
    ASSERT_FALSE(warehouse.isEmpty());
    QList<int> before;
    for (const QString& sku : skus) before << stock(sku, warehouse);

    QString output = run("click func201\nclick btn_ok\nexpect screen 采购进货\nclick Act_Add\n"
                         "set KH_GYS_ID " + supplier + "\nset YW_ID " + buyer + "\nset SEND_ID " + delivery +
                         "\nset NOTE \"脚本录入 O'Neil\"\ngrid DBGridEh\n" + lines +
                         "click Act_Save\ndump messages\ngrid DBGridEh_Detail\nexpect rows 3\n");
    const QString noid = scalar("SELECT NOID FROM D8101 WHERE NOTE='脚本录入 O''Neil'");
    ASSERT_FALSE(noid.isEmpty()) << output.toStdString();
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101A WHERE NOID='" + noid + "'"), "3");
    EXPECT_EQ(scalar("SELECT KH_GYS_ID FROM D8101 WHERE NOID='" + noid + "'"), supplier);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(stock(skus[i], warehouse), before[i] + i + 3) << skus[i].toStdString();

    // Copy it, then take the last line off the copy.
    output = run("grid DBGridEh\nlocate noid " + noid + "\nclick Act_CopyAdd\nclick Act_Save\n" +
                 "click Act_Edit\ngrid DBGridEh\nrow last\nclick Act_DeleteLine\nclick Act_Save\ndump messages\n");
    const QString copy = scalar("SELECT MAX(NOID) FROM D8101 WHERE NOTE='脚本录入 O''Neil' AND NOID<>'" + noid + "'");
    ASSERT_FALSE(copy.isEmpty()) << output.toStdString();
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101A WHERE NOID='" + copy + "'"), "2");
    EXPECT_EQ(stock(skus[0], warehouse), before[0] + 2 * 3);
    EXPECT_EQ(stock(skus[2], warehouse), before[2] + 5);

    // Delete both: the stock is back.
    output = run("grid DBGridEh\nlocate noid " + copy + "\nanswer y\nclick Act_Delete\ngrid DBGridEh\nlocate noid " +
                 noid + "\nanswer y\nclick Act_Delete\ndump messages\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM D8101 WHERE NOTE='脚本录入 O''Neil'"), "0") << output.toStdString();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(stock(skus[i], warehouse), before[i]);
    EXPECT_FALSE(output.contains("error:")) << output.toStdString();
}

}  // namespace
