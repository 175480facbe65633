// Frm_Base_Entry_Head.h: the document list with its filter, lines and delete; screenshots.
#include "tests/framework/FrameworkScreenFixture.h"

namespace {

using namespace qx::test::framework_screens;

// --- the document list

TEST_F(FrameworkScreenTest, ListRunsTheFilterThenTheHeadQueryWithItsCondition) {
    DemoList* list = openList("G01");
    const auto opened = statements(Call::Kind::OpenSql);
    ASSERT_GE(opened.size(), 2u);
    EXPECT_EQ(opened[0], QString(kHeadSql) +
                             " WHERE (D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18')  AND "
                             "(d1103.KH_gys_ID = 'G01')");
    EXPECT_EQ(opened[1], QString(kBodySql).replace("%s", "'D001'"));
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-01 至 03-18");
    EXPECT_EQ(list->FuncNo, "201");
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(list->AdoQry_Detail->RecordCount(), 2);
    // The lines grid shows the sizes of its style group and their total.
    EXPECT_EQ(list->DBGridEh_Detail->ColumnByField("S1")->Title, "尺码|M");
    EXPECT_DOUBLE_EQ(list->DBGridEh_Detail->GetSumValue("STOT"), 7);
    delete list;
}

TEST_F(FrameworkScreenTest, MovingToAnotherHeadLoadsItsLines) {
    DemoList* list = openList();
    calls.clear();
    list->AdoQry_Main->Next();
    const auto opened = statements(Call::Kind::OpenSql);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0], QString(kBodySql).replace("%s", "'D002'"));
    EXPECT_TRUE(list->AdoQry_Detail->IsEmpty());
    delete list;
}

TEST_F(FrameworkScreenTest, CancelledFilterRunsNoQuery) {
    db->rules.insert(db->rules.begin(), {"WHERE 1=0", table({"noid", "kh_gys_id", "kg_name", "bdate", "t"}, {})});
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* list = new DemoList;
    Trecord rec;
    rec.FuncCode = 201;
    list->InitForm(rec);
    EXPECT_TRUE(statements(Call::Kind::OpenSql).empty());
    delete list;
}

TEST_F(FrameworkScreenTest, DeleteFillsTheTemplateWithTheQuotedKeyAfterConfirmation) {
    DemoList* list = openList();
    EXPECT_EQ(list->DeleteStatement("D001"), "delete from d8101 Where NOID='D001'");
    EXPECT_EQ(list->DeleteStatement("A'1"), "delete from d8101 Where NOID='A''1'");
    list->DeleteSql = "delete from d8301 Where (noid=%s)";
    EXPECT_EQ(list->DeleteStatement("D001"), "delete from d8301 Where (noid='D001')");
    list->DeleteSql = "delete from d8101 Where NOID=%S";

    sink->queueAnswer(false);
    list->Act_Delete->trigger();
    EXPECT_TRUE(db->executed.empty());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 2);

    sink->queueAnswer(true);
    list->Act_Delete->trigger();
    ASSERT_EQ(db->executed.size(), 1u);
    EXPECT_EQ(db->executed[0], "delete from d8101 Where NOID='D001'");
    EXPECT_EQ(statements(Call::Kind::ExecSql).size(), 1u);
    for (const auto& c : calls)
        if (c.kind == Call::Kind::ExecSql) {
            EXPECT_EQ(c.mode, "Delete");
        }
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(list->AdoQry_Main->FieldByName("noid")->AsString(), "D002");
    EXPECT_EQ(sink->messages[0].text, "确定要删除单据D001吗?");
    delete list;
}

TEST_F(FrameworkScreenTest, AFailedDeleteIsReportedAndKeepsTheRow) {
    DemoList* list = openList();
    db->failExecute = true;
    sink->queueAnswer(true);
    list->Act_Delete->trigger();
    EXPECT_EQ(sink->errors(), QStringList{"forced failure"});
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 2);
    delete list;
}

TEST_F(FrameworkScreenTest, AddWithoutAListQueryFirstTakesTheListsColumns) {
    db->rules.insert(db->rules.begin(), {"WHERE 1=0", table({"noid", "kh_gys_id", "kg_name", "bdate", "t"}, {})});
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* list = new DemoList;
    Trecord rec;
    rec.FuncCode = 201;
    list->InitForm(rec);  // filter cancelled: no head query
    list->Act_Add->trigger();
    EXPECT_EQ(statements(Call::Kind::OpenSql).front(), QString(kHeadSql) + " WHERE 1=0");
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    e->EnterStyle("K02");
    e->AdoQry_Main->FieldByName("S0")->SetText("1");
    e->Act_Save->trigger();
    EXPECT_EQ(db->executed.size(), 1u);
    EXPECT_FALSE(e->isVisible());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(list->AdoQry_Main->FieldByName("noid")->AsString(), "N1");
    EXPECT_TRUE(sink->errors().isEmpty());
    delete list;
}

// --- screenshots

TEST_F(FrameworkScreenTest, ScreenshotsOfListAndEntry) {
    DemoList* list = openList();
    list->show();
    EXPECT_FALSE(qx::saveScreenshot(list, "framework_list").isEmpty());
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    e->EnterStyle("K02");
    e->AdoQry_Main->FieldByName("S0")->SetText("1");
    e->AdoQry_Main->Post();
    e->resize(1000, 480);
    const QString file = qx::saveScreenshot(e, "framework_entry");
    EXPECT_TRUE(QFile::exists(file));
    e->AdoQry_Main->Cancel();
    e->Modified = false;
    delete list;
}

}  // namespace
