// System settings: loading and saving the company row, the option string by position, the
// barcode-rule check, the mobile page texts and grid.
#include <QSignalSpy>
#include <QTest>

#include "SetupFixture.h"
#include "frame/Dispatch.h"
#include "framework/DBGridEh.h"
#include "framework/Screenshot.h"
#include "setup/Frmqxsys_co.h"
#include "setup/SysParam.h"

namespace qx::test {
namespace {

using qx::setup::SysParam;

class SettingsTest : public SetupTest {
protected:
    Tqxsys_co* open() {
        auto* s = new Tqxsys_co(nullptr);
        s->setAttribute(Qt::WA_DeleteOnClose, false);
        screens.emplace_back(s);
        Trecord rec;
        rec.UserId = "U1";
        s->InitForm(rec);
        return s;
    }
    QStringList savedParam() { return scalar("SELECT PARAM FROM sys_co").split(','); }
    std::vector<std::unique_ptr<Tqxsys_co>> screens;
};

TEST_F(SettingsTest, EmptyParamLoadsEveryFlagTickedAndTheDefaultsOfTheNumbers) {
    Tqxsys_co* s = open();
    for (QCheckBox* c : {s->AutoGoodsCode, s->ClassPrefix, s->WarehouseRights, s->OfferUnknownStyle, s->Discount,
                         s->GoLiveHidden, s->OfflineSales, s->MemberFirst, s->NoteColumn, s->Shift,
                         s->PartnerAutoCode, s->LogOperations, s->GoLive})
        EXPECT_TRUE(c->isChecked()) << c->objectName().toStdString();
    for (QCheckBox* c : s->BarcodeRule) EXPECT_TRUE(c->isChecked());
    EXPECT_EQ(s->GoodsDigits->value(), 4);    // "1" raised to 4
    EXPECT_EQ(s->PartnerDigits->value(), 4);
    EXPECT_EQ(s->YuanPerPoint->text(), "1");  // position 21
    EXPECT_FALSE(s->AllowNegative->isChecked());  // position 28 "1" = not allowed
    EXPECT_FALSE(s->MemberAutoCode->isChecked());
    EXPECT_EQ(s->MemberDigits->value(), 5);
    EXPECT_TRUE(s->RoundHalf->isChecked());   // "四舍五入"
    EXPECT_EQ(s->RoundHalf->text(), "四舍五入");
    EXPECT_TRUE(s->SingleBrand->isChecked());
    EXPECT_TRUE(s->ByDiscount->isChecked());
    EXPECT_EQ(s->BarcodeOrder[0]->currentIndex(), 1);  // "1" is no order: "1234"
    EXPECT_EQ(s->BarcodeOrder[3]->currentIndex(), 4);
}

TEST_F(SettingsTest, LoadsTheCompanyRowThroughTheCrossJoinWithTheMobileTexts) {
    exec("UPDATE sys_co SET FZR='张三', BACKPATH='D:\\bak;E:\\bak', PARAM='0,1,8,0,1,1,1,1,1,1,3210,1,1,1,1,0,5,1,2,3,"
         "0,20,1,1,1,1,1,1,0,6,0,0,1,1,0,1,0,0'");
    Tqxsys_co* s = open();
    EXPECT_TRUE(opened("SELECT SYS_CO.*,B.* FROM (SELECT field_name FROM SYS_WEB WHERE (field_type = 'm') AND "
                       "(field_table = 'cg')) B CROSS JOIN SYS_CO"));
    EXPECT_EQ(s->co->text(), "测试服饰");
    EXPECT_EQ(s->fzr->text(), "张三");
    EXPECT_EQ(s->BACKPATH->text(), "D:\\bak;E:\\bak");
    EXPECT_EQ(s->backday->value(), 7);
    EXPECT_EQ(s->ck_date->value(), 25);
    EXPECT_FALSE(s->AutoGoodsCode->isChecked());
    EXPECT_EQ(s->GoodsDigits->value(), 8);
    EXPECT_FALSE(s->WarehouseRights->isChecked());
    EXPECT_EQ(s->BarcodeOrder[0]->currentIndex(), 3);
    EXPECT_EQ(s->BarcodeOrder[3]->currentIndex(), 0);
    EXPECT_EQ(s->PartnerDigits->value(), 5);
    EXPECT_EQ(s->SalesDecimals->value(), 2);
    EXPECT_TRUE(s->RoundCut->isChecked());
    EXPECT_FALSE(s->GoLive->isChecked());
    EXPECT_EQ(s->YuanPerPoint->text(), "20");
    EXPECT_TRUE(s->AllowNegative->isChecked());
    EXPECT_TRUE(s->MemberAutoCode->isChecked());
    EXPECT_EQ(s->MemberDigits->value(), 6);
    EXPECT_TRUE(s->SeveralBrands->isChecked());
    EXPECT_TRUE(s->ColourMark->isChecked());
    EXPECT_TRUE(s->AllColours->isChecked());
    EXPECT_TRUE(s->BarcodeRule[0]->isChecked());
    EXPECT_FALSE(s->BarcodeRule[1]->isChecked());
    EXPECT_TRUE(s->BarcodeRule[2]->isChecked());
    EXPECT_FALSE(s->BarcodeRule[3]->isChecked());
    EXPECT_TRUE(s->ByUnitPrice->isChecked());
    for (int i = 0; i < 10; ++i) EXPECT_EQ(s->MobileText[size_t(i)]->text(), "文字" + QString::number(i + 1));
}

TEST_F(SettingsTest, WithoutMobileTextRowsTheCompanyRowStillLoads) {
    exec("DELETE FROM sys_web WHERE field_type='m'");
    exec("UPDATE sys_co SET PARAM='0,0'");
    Tqxsys_co* s = open();
    EXPECT_EQ(s->co->text(), "测试服饰");
    EXPECT_FALSE(s->AutoGoodsCode->isChecked());
    EXPECT_TRUE(s->MobileText[0]->text().isEmpty());
}

TEST_F(SettingsTest, FlagsAreOnUnlessZeroButTheBrandAndBarcodeItemsOnlyWhenOne) {
    const SysParam p = SysParam::read("2,x,,,,,,,,,,,,,,,,,,9,,,,,,,,,,,2,x,,,,,,7");
    EXPECT_TRUE(p.autoGoodsCode);    // "2" is not "0"
    EXPECT_TRUE(p.classPrefix);      // "x" is not "0"
    EXPECT_EQ(p.goodsDigits, 4);     // "" raised to 4
    EXPECT_EQ(p.rounding, "");       // "9" ticks no rounding choice
    EXPECT_FALSE(p.singleBrand);     // "2" is not "1"
    EXPECT_FALSE(p.colourCode);      // "x"
    EXPECT_FALSE(p.barcodeRules[0]); // ""
    EXPECT_FALSE(p.byDiscount);      // "7": by unit price
}

TEST_F(SettingsTest, SavesOneBatchWithTheCompanyRowTheOptionStringAndTheTenTexts) {
    Tqxsys_co* s = open();
    s->co->setText("新店");
    s->fzr->setText("李四");
    s->tel->setText("123");
    s->BACKPATH->setText("D:\\bak");
    s->backday->setValue(30);
    s->WarehouseRights->setChecked(false);
    s->AllowNegative->setChecked(true);
    s->MemberAutoCode->setChecked(true);
    s->MemberDigits->setValue(6);
    s->RoundUp->setChecked(true);
    s->BarcodeOrder[0]->setCurrentIndex(2);
    s->BarcodeOrder[1]->setCurrentIndex(3);
    s->BarcodeOrder[2]->setCurrentIndex(4);
    s->BarcodeOrder[3]->setCurrentIndex(0);
    s->MobileText[9]->setText("第十行");
    s->btn_ok->click();
    ASSERT_EQ(execs().size(), 1u);
    EXPECT_EQ(arguments(execs().front()), "||E");
    EXPECT_GOLDEN(execs().front().sql, "settings_save.sql");
    EXPECT_EQ(s->ModalResult(), mrOk);
    EXPECT_TRUE(sink->texts().isEmpty());  // no success message
    EXPECT_EQ(scalar("SELECT CO FROM sys_co"), "新店");
    EXPECT_EQ(scalar("SELECT ck_qs FROM sys_co"), "0");
    EXPECT_EQ(scalar("SELECT field_name FROM sys_web WHERE id=10"), "第十行");
    EXPECT_EQ(scalar("SELECT QtyLen FROM sys_co"), "0");  // loaded, never written back
}

TEST_F(SettingsTest, TheOptionStringHasThirtyEightItemsWithTheReservedOnesAtOne) {
    Tqxsys_co* s = open();
    s->btn_ok->click();
    const QStringList p = savedParam();
    ASSERT_EQ(p.size(), 38);
    for (int i : {12, 13, 14, 22, 23, 24, 25, 26, 27}) EXPECT_EQ(p[i], "1") << i;
    EXPECT_EQ(p[2], "4");
    EXPECT_EQ(p[10], "1234");
    EXPECT_EQ(p[29], "0");  // member code off
}

TEST_F(SettingsTest, AllowingNegativeStockIsStoredInvertedAndReadBackTicked) {
    Tqxsys_co* s = open();
    s->AllowNegative->setChecked(true);
    s->btn_ok->click();
    EXPECT_EQ(savedParam()[28], "0");
    Tqxsys_co* again = open();
    EXPECT_TRUE(again->AllowNegative->isChecked());
    again->AllowNegative->setChecked(false);
    again->btn_ok->click();
    EXPECT_EQ(savedParam()[28], "1");
}

TEST_F(SettingsTest, UntickingBarcodeEqualsStyleIsRefusedWhileAStyleUsesThatRule) {
    exec("UPDATE d1800 SET TMI=0 WHERE K_ID='K03'");
    Tqxsys_co* s = open();
    s->BarcodeRule[0]->setChecked(false);
    s->btn_ok->click();
    EXPECT_TRUE(opened("select top 1 tmi from d1800 where (1<0) or (tmi = 0)"));
    EXPECT_EQ(sink->texts(),
              QStringList{"【条码规则】 商品资料中已经存在【条码即款号】的商品，不能把该勾选去掉!"});
    EXPECT_TRUE(execs().empty());
    EXPECT_EQ(s->PageControl->currentWidget(), s->BarcodePage);
    EXPECT_NE(s->ModalResult(), mrOk);
}

TEST_F(SettingsTest, EachUntickedRuleInUseNamesItsRule) {
    const QStringList messages{"【条码规则】 商品资料中已经存在【条码即款号】的商品，不能把该勾选去掉!",
                               "【条码规则】 商品资料中已经存在【无规则条码，自行录入】的商品，不能把该勾选去掉!",
                               "【条码规则】 商品资料中已经存在【款+ 色 +尺码标识】的商品，不能把该勾选去掉!",
                               "【条码规则】 商品资料中已经存在【款+ 尺码标识 +色】的商品，不能把该勾选去掉!"};
    for (int rule = 0; rule < 4; ++rule) {
        exec("UPDATE d1800 SET TMI=" + QString::number(rule));
        sink->clear();
        Tqxsys_co* s = open();
        s->BarcodeRule[size_t(rule)]->setChecked(false);
        s->btn_ok->click();
        EXPECT_EQ(sink->texts(), QStringList{messages[rule]}) << rule;
    }
    EXPECT_TRUE(execs().empty());
}

TEST_F(SettingsTest, UntickingRulesNobodyUsesBuildsTheQueryInRuleOrderAndSaves) {
    Tqxsys_co* s = open();  // every style has rule 2
    s->BarcodeRule[3]->setChecked(false);
    s->BarcodeRule[1]->setChecked(false);
    s->btn_ok->click();
    EXPECT_TRUE(opened("select top 1 tmi from d1800 where (1<0) or (tmi = 1) or (tmi = 3)"));
    EXPECT_EQ(execs().size(), 1u);
    EXPECT_EQ(savedParam().mid(33, 4), (QStringList{"1", "0", "1", "0"}));
}

TEST_F(SettingsTest, WithAllFourRulesTickedNoRuleQueryRuns) {
    Tqxsys_co* s = open();
    s->btn_ok->click();
    for (const QString& sql : statements(Call::Kind::OpenSql)) EXPECT_FALSE(sql.contains("tmi")) << sql.toStdString();
    EXPECT_EQ(execs().size(), 1u);
}

TEST_F(SettingsTest, AtLeastOneBarcodeRuleMustStayTicked) {
    Tqxsys_co* s = open();
    for (QCheckBox* c : s->BarcodeRule) c->setChecked(false);
    s->PageControl->setCurrentIndex(0);
    s->btn_ok->click();
    EXPECT_EQ(sink->texts(), QStringList{"【条码规则】 至少要勾选一项!"});
    EXPECT_EQ(s->PageControl->currentWidget(), s->BarcodePage);
    EXPECT_TRUE(execs().empty());
}

TEST_F(SettingsTest, HostileTextsAreStoredAsTypedAndCutToTheirColumns) {
    Tqxsys_co* s = open();
    s->co->setText("O'Neil's \"店\"; DROP TABLE sys_co;--");
    s->addr->setText(QString(10000, QChar(u'路')));
    s->MobileText[0]->setText("it's");
    s->btn_ok->click();
    EXPECT_EQ(scalar("SELECT CO FROM sys_co"), "O'Neil's \"店\"; DROP TABLE sys_co;--");
    EXPECT_EQ(scalar("SELECT ADDR FROM sys_co").size(), 80);
    EXPECT_EQ(scalar("SELECT field_name FROM sys_web WHERE id=1"), "it's");
    EXPECT_EQ(count("SELECT COUNT(*) FROM sys_web"), 13);
}

TEST_F(SettingsTest, LettersInNumbersAreRefused) {
    Tqxsys_co* s = open();
    s->show();
    s->backday->setValue(7);
    s->backday->setFocus();
    s->backday->selectAll();
    QTest::keyClicks(s->backday, "abc");
    EXPECT_EQ(s->backday->value(), 7);
    s->YuanPerPoint->setText("abc");
    s->btn_ok->click();
    EXPECT_EQ(sink->texts(), QStringList{"消费积分的金额必须是数字!"});
    s->YuanPerPoint->setText("1,5");  // would shift every later position of the list
    s->btn_ok->click();
    EXPECT_EQ(sink->texts().size(), 2);
    EXPECT_TRUE(execs().empty());
    s->YuanPerPoint->setText("2.5");
    s->btn_ok->click();
    EXPECT_EQ(savedParam()[21], "2.5");
}

TEST_F(SettingsTest, TheMobileGridShowsEveryPageRowAndSavesWidthAndShow) {
    Tqxsys_co* s = open();
    EXPECT_TRUE(opened(Tqxsys_co::MobileGridQuery));
    EXPECT_EQ(QString(Tqxsys_co::MobileGridQuery),
              "SELECT CASE field_table WHEN 'CG' THEN '进货明细' WHEN 'kc' THEN '库存' WHEN 'vip' THEN '会员' WHEN "
              "'ss' THEN '销售明细' WHEN 'xsg' THEN '销售汇总' END AS G, id, field_table, field_name,field_width, "
              "field_show FROM SYS_WEB ORDER BY field_table, field_order");
    s->PageControl->setCurrentWidget(s->bsSkinTabSheet6);
    ASSERT_EQ(s->AdoQry_Web->RecordCount(), 13);
    EXPECT_TRUE(s->WebGrid->ColumnByField("field_name")->ReadOnly);
    EXPECT_FALSE(s->WebGrid->ColumnByField("field_width")->ReadOnly);
    ASSERT_TRUE(s->AdoQry_Web->Locate("id", 12));
    s->AdoQry_Web->Edit();
    s->AdoQry_Web->FieldByName("field_width")->SetAsInteger(0);
    s->AdoQry_Web->FieldByName("field_show")->SetAsInteger(0);
    s->AdoQry_Web->Post();
    s->AdoQry_Web->SetRecNo(3);
    s->Button2->click();
    EXPECT_GOLDEN(lastBatch(), "settings_mobile_grid.sql");
    EXPECT_EQ(execs().back().mode, "E");
    EXPECT_EQ(sink->texts(), QStringList{"保存成功! 请刷新手机显示的页面查看最终的效果!"});
    EXPECT_EQ(s->AdoQry_Web->RecNo(), 3);  // back on the remembered row
    EXPECT_EQ(scalar("SELECT field_width FROM sys_web WHERE id=12"), "0");
}

TEST_F(SettingsTest, LettersInTheMobileGridWidthAreRefusedWithoutSaving) {
    Tqxsys_co* s = open();
    ASSERT_TRUE(s->AdoQry_Web->Locate("id", 11));
    const bool stored = qx::guard([&] {
        s->AdoQry_Web->Edit();
        s->AdoQry_Web->FieldByName("field_width")->SetText("宽abc");
        s->AdoQry_Web->Post();
    });
    EXPECT_FALSE(stored);
    EXPECT_TRUE(execs().empty());
    EXPECT_EQ(scalar("SELECT field_width FROM sys_web WHERE id=11"), "80");
}

TEST_F(SettingsTest, OpensAsAModalDialogFromItsFunctionCode) {
    QString caption;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        caption = dialog->Caption();
        return int(mrCancel);
    });
    Trecord rec;
    rec.UserId = "U1";
    rec.FuncCode = 901;
    qx::frame::dispatch(rec, nullptr);
    EXPECT_EQ(caption, "系统设置");
    EXPECT_TRUE(opened(Tqxsys_co::LoadQuery));
}

TEST_F(SettingsTest, Screenshot) {
    exec("UPDATE sys_co SET FZR='张经理', TEL='0755-8888 6666', ADDR='深圳市福田区华强北路 1 号', EMAIL='shop@example.com'");
    Tqxsys_co* s = open();
    s->resize(820, 600);
    s->PageControl->setCurrentIndex(2);
    EXPECT_FALSE(qx::saveScreenshot(s, "settings_dialog").isEmpty());
}

}  // namespace
}  // namespace qx::test
