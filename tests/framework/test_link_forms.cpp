// LinkForms.h: pick lists by code, name and pinyin, typed codes, rights, the style pick list.
#include "tests/framework/FrameworkScreenFixture.h"

namespace {

using namespace qx::test::framework_screens;

// --- pick lists

TEST_F(FrameworkScreenTest, PickListSearchesCodeNameAndPinyinAndFillsTheEdit) {
    QWidget owner;
    TFormPanel panel(&owner);
    TLinkEdit* ck = panel.AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    TFrm_Sys_LINK_CK link(&owner);
    link.init(nullptr, ck, ck, "201", "", "");
    link.Search("ZC");  // pinyin initials of 总仓, from GetPY
    ASSERT_EQ(link.DataSet()->RecordCount(), 1);
    EXPECT_EQ(link.DataSet()->FieldByName("CK_ID")->AsString(), "01");
    link.Search("东门");
    EXPECT_EQ(link.DataSet()->FieldByName("CK_ID")->AsString(), "02");
    link.Search("dmd");
    EXPECT_EQ(link.DataSet()->RecordCount(), 1);
    link.Search("0");
    EXPECT_EQ(link.DataSet()->RecordCount(), 2);
    EXPECT_TRUE(link.Pick("02"));
    EXPECT_EQ(ck->text(), "02");
    EXPECT_EQ(ck->NameLabel()->text(), "东门店");
    EXPECT_FALSE(link.Pick("99"));
}

TEST_F(FrameworkScreenTest, CheckIdValidatesATypedCode) {
    db->rules.insert(db->rules.begin(), {"WHERE CK_ID='01'", table({"CK_ID", "CK_NAME"}, {{s("01"), s("总仓")}})});
    db->rules.insert(db->rules.begin(), {"WHERE CK_ID='77'", table({"CK_ID", "CK_NAME"}, {})});
    QWidget owner;
    TFormPanel panel(&owner);
    TLinkEdit* ck = panel.AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    TFrm_Sys_LINK_CK link(&owner);
    link.init(nullptr, ck, ck, "201", "", "");
    ck->setText("01");
    ck->CheckId();
    EXPECT_EQ(ck->NameLabel()->text(), "总仓");
    ck->setText("77");
    EXPECT_THROW(ck->CheckId(), EAbort);
    EXPECT_EQ(sink->texts().back(), "仓 库代码 77 不存在!");
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(), "SELECT CK_ID,CK_NAME FROM d1007 WHERE CK_ID='77'");
    EXPECT_EQ(ck->NameLabel()->text(), "") << "the name of the code typed over stays";
}

TEST_F(FrameworkScreenTest, TypingOverACodeClearsItsName) {
    QWidget owner;
    TFormPanel panel(&owner);
    TLinkEdit* ck = panel.AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    ck->setText("01");
    ck->NameLabel()->setText("总仓");
    ck->setFocus();
    QTest::keyClick(ck, Qt::Key_7);
    EXPECT_EQ(ck->NameLabel()->text(), "");
}

TEST_F(FrameworkScreenTest, WarehouseListHonoursRights) {
    G_CHKCK = 1;
    G_UserId = "U'1";
    TFrm_Sys_LINK_CK link(nullptr);
    TLinkEdit edit;
    link.init(nullptr, &edit, &edit, "201");
    link.Reload();
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(),
              "SELECT * FROM d1007 WHERE CK_ID IN (SELECT CK_ID FROM sys_USER_CK WHERE user_id='U''1') ORDER BY CK_ID");
}

TEST_F(FrameworkScreenTest, StylePickListFillsTheCurrentLine) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    bool handled = false;
    e->WL_IDBTNClick(e->DBGridEh, handled);
    EXPECT_TRUE(e->StyleLink->isVisible());
    e->StyleLink->Search("CS");
    EXPECT_EQ(e->StyleLink->DataSet()->RecordCount(), 1);
    EXPECT_TRUE(e->StyleLink->Pick());
    EXPECT_EQ(e->AdoQry_Main->FieldByName("K_ID")->AsString(), "K01");
    EXPECT_TRUE(e->ColorLink->isVisible());
    delete list;
}

}  // namespace
