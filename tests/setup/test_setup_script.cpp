// The three setup functions from the host's menu through the headless script runner on the demo
// shop: settings saved, the sample goods sheet imported in five steps, a promotion scheme saved.
#include "support/DemoShopScriptTest.h"

namespace {

using SetupScriptTest = qx::test::DemoShopScriptTest;

TEST_F(SetupScriptTest, SettingsImportAndPromotionFromTheMenu) {
    run("login admin admin\n");
    QString out = run("click func901\nexpect screen 系统设置\nset co \"脚本 O'Neil 服饰\"\ncheck AllowNegative\n"
                      "click btn_ok\ndump messages\n");
    EXPECT_EQ(scalar("SELECT CO FROM sys_co"), "脚本 O'Neil 服饰") << out.toStdString();
    EXPECT_EQ(scalar("SELECT PARAM FROM sys_co").split(',').value(28), "0");

    const QString sample = QString::fromLocal8Bit(qgetenv("QXCK_SOURCE_DIR")) + "/setup/templates/sample_goods.xlsx";
    out = run("click func932\nexpect screen 系统初始化\nset FileName0 \"" + sample +
              "\"\nclick btn_step2\nexpect screen \"导入预览 - 商品资料\"\nclick btn_ok\nclick btn_step3\n"
              "click btn_step4\nclick btn_step5\nexpect screen 导入\nclick btn_ok\n"
              "expect message 系统已同步款号颜色组资料!\nclick btn_cancel\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1800"), "5") << out.toStdString();
    EXPECT_EQ(scalar("SELECT SUM(KC) FROM d1802"), "108");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8101"), "0");

    out = run("click func704\nexpect screen 促销方案\ngrid DBGridEh\nlocate ck_name 总仓\nclick Act_Modify\n"
              "expect screen 促销方案设定\ncheck T3\nset FA3 \"满300减50\"\nset F1_3 300\nset F2_3 abc\n"
              "click btn_ok\nexpect message 方案设定已保存!\nclick btn_cancel\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d704 INNER JOIN d1007 ON d704.CK_ID = d1007.CK_ID WHERE CK_NAME='总仓'"), "11") << out.toStdString();
    EXPECT_EQ(scalar("SELECT FA FROM d704 WHERE I=3 AND CK_ID='02'"), "满300减50");
    EXPECT_EQ(scalar("SELECT F2 FROM d704 WHERE I=3 AND CK_ID='02'"), "0");
}

}  // namespace
