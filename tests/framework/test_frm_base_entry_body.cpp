// Frm_Base_Entry_Body.h: the entry screen: line entry, size titles, navigation, save and quit,
// the order picker.
#include "tests/framework/FrameworkScreenFixture.h"

namespace {

using namespace qx::test::framework_screens;

// --- the entry screen

TEST_F(FrameworkScreenTest, AddOpensEmptyLinesWithANewNumber) {
    DemoList* list = openList();
    calls.clear();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->EditMode, "Add");
    EXPECT_EQ(e->Edit1->text(), "N1");
    EXPECT_TRUE(e->Edit1->isEnabled());
    // Screens a list creates work for the list's function.
    EXPECT_EQ(e->FuncNo, "201");
    EXPECT_EQ(list->Filter->FuncNo, "201");
    EXPECT_EQ(e->StyleLink->FuncNo, "201");
    for (const auto& c : calls) EXPECT_EQ(c.funcNo, "201");
    EXPECT_TRUE(e->AdoQry_Main->IsEmpty());
    // Entering the line grid starts the first line; untouched, it is no change.
    QFocusEvent focusIn(QEvent::FocusIn);
    QApplication::sendEvent(e->DBGridEh, &focusIn);
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->AdoQry_Main->State(), dsInsert);
    EXPECT_FALSE(e->HasChanges());
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(), QString(kBodySql).replace("%s", "''"));
    // Columns: style, name, unit, colour, sizes (titled from the group: none before a style), total,
    // price, amount, note.
    EXPECT_EQ(e->DBGridEh->VisibleTitles(),
              QStringList({"款号", "品名", "单位", "颜色", "尺码|", "尺码|", "尺码|", "合计", "进货价", "金额", "备注"}));
    // Untouched, it quits without a question.
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->isVisible());
    EXPECT_TRUE(sink->messages.empty());
    delete list;
}

TEST_F(FrameworkScreenTest, AfterTheStyleTheQuantitiesComeNextAndDownAddsALine) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    TDBGridEh* grid = e->DBGridEh;
    e->Act_AddLine->trigger();
    grid->EditField("K_ID");
    auto* editor = grid->viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText("K02");  // one colour: taken at once
    QTest::keyClick(editor, Qt::Key_Return);
    for (int i = 0; i < 3; ++i) QApplication::processEvents();  // Return commits queued, then moves
    EXPECT_EQ(e->AdoQry_Main->FieldByName("COL_NAME")->AsString(), "蓝色");
    EXPECT_EQ(grid->CurrentColumn()->FieldName, "S0");
    grid->CancelEdit();
    QTest::keyClick(grid, Qt::Key_Down);
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2);
    grid->CancelEdit();
    delete list;
}

TEST_F(FrameworkScreenTest, EditLoadsTheLinesOfTheCurrentHeadAndLocksTheNumber) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    EXPECT_EQ(e->EditMode, "Edit");
    EXPECT_EQ(e->Edit1->text(), "D001");
    EXPECT_FALSE(e->Edit1->isEnabled());  // "EDIT1" names Edit1 whatever its case
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 5);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("wl_id")->AsString(), "K0101");
    EXPECT_EQ(e->DBGridEh->ColumnByField("S0")->Title, "尺码|S");
    e->AdoQry_Main->Next();  // the titles follow the current line's size group
    EXPECT_EQ(e->DBGridEh->ColumnByField("S0")->Title, "尺码|28");
    EXPECT_DOUBLE_EQ(e->DBGridEh->GetSumValue("STOT"), 7);
    EXPECT_EQ(e->calls, QStringList{"RefreshData:Edit"});
    delete list;
}

TEST_F(FrameworkScreenTest, LineEntryTakesStyleThenColourAndKeepsTheTotal) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    e->EnterStyle("K01");
    TClientDataSet* lines = e->AdoQry_Main;
    EXPECT_EQ(lines->FieldByName("WL_NAME")->AsString(), "衬衫");
    EXPECT_EQ(lines->FieldByName("DW_NAME")->AsString(), "件");
    EXPECT_DOUBLE_EQ(lines->FieldByName("sj")->AsFloat(), 10);  // the style's purchase price
    EXPECT_EQ(e->DBGridEh->ColumnByField("S3"), nullptr);
    EXPECT_EQ(e->DBGridEh->ColumnByField("S1")->Title, "尺码|M");
    // Two colours offered: the colour list opens on the style's colours.
    EXPECT_TRUE(e->ColorLink->isVisible());
    EXPECT_EQ(e->ColorLink->DataSet()->RecordCount(), 2);
    EXPECT_TRUE(e->ColorLink->Pick("02"));
    EXPECT_EQ(lines->FieldByName("COL_ID")->AsString(), "02");
    EXPECT_EQ(lines->FieldByName("COL_NAME")->AsString(), "黑色");
    EXPECT_EQ(lines->FieldByName("wl_id")->AsString(), "K0102");
    // Quantities typed into the size cells.
    auto* model = e->DBGridEh->model();
    const int row = lines->CurrentRow();
    EXPECT_TRUE(model->setData(model->index(row, e->DBGridEh->ColumnByField("S0")->Index()), "3", Qt::EditRole));
    EXPECT_TRUE(model->setData(model->index(row, e->DBGridEh->ColumnByField("S1")->Index()), "2", Qt::EditRole));
    EXPECT_EQ(lines->FieldByName("STOT")->AsInteger(), 5);
    EXPECT_DOUBLE_EQ(e->DBGridEh->GetSumValue("STOT"), 5);
    EXPECT_EQ(e->DBGridEh->FooterTexts()[7], "5");
    // A style with one colour takes it at once.
    e->Act_AddLine->trigger();
    e->EnterStyle("K02");
    EXPECT_EQ(lines->FieldByName("K_ID")->AsString(), "K02");
    EXPECT_EQ(lines->FieldByName("COL_NAME")->AsString(), "蓝色");
    EXPECT_EQ(lines->FieldByName("wl_id")->AsString(), "K0203");
    EXPECT_TRUE(e->HasChanges());
    delete list;
}

TEST_F(FrameworkScreenTest, UnknownStylesColoursAndLettersInQuantitiesAreRefused) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    EXPECT_THROW(e->EnterStyle("ZZ9"), EAbort);
    EXPECT_EQ(sink->texts().back(), "款号 ZZ9 不存在!");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("K_ID")->AsString(), "");
    e->EnterStyle("K01");
    EXPECT_THROW(e->EnterColor("99"), EAbort);
    EXPECT_EQ(sink->texts().back(), "款号 K01 没有颜色 99!");
    e->EnterColor("02");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("COL_NAME")->AsString(), "黑色");
    auto* model = e->DBGridEh->model();
    EXPECT_FALSE(model->setData(model->index(0, e->DBGridEh->ColumnByField("S0")->Index()), "3a", Qt::EditRole));
    EXPECT_EQ(sink->texts().back(), "'3a' 不是有效的数值!");
    EXPECT_TRUE(e->AdoQry_Main->FieldByName("S0")->IsNull());
    delete list;
}

TEST_F(FrameworkScreenTest, EnterAndTabMoveAcrossTheSizeCells) {
    G_CM = 1;  // two size positions in use
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    TDBGridEh* grid = e->DBGridEh;
    EXPECT_TRUE(grid->isColumnHidden(grid->ColumnByField("S2")->Index()));
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(0, grid->ColumnByField("S0")->Index()));
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_EQ(grid->CurrentColumn()->FieldName, "S1");
    EXPECT_TRUE(grid->Editing());
    // Leaving the editor with Tab goes on: past the hidden S2 and the total to the price.
    auto* editor = grid->viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "4");
    QTest::keyClick(editor, Qt::Key_Tab);
    QApplication::processEvents();
    EXPECT_EQ(e->AdoQry_Main->FieldByName("S1")->AsInteger(), 4);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 7);
    EXPECT_EQ(grid->CurrentColumn()->FieldName, "sj");
    grid->CancelEdit();
    // Backwards with Shift+Tab.
    QTest::keyClick(grid, Qt::Key_Backtab);
    EXPECT_EQ(grid->CurrentColumn()->FieldName, "S1");
    grid->CancelEdit();
    delete list;
}

TEST_F(FrameworkScreenTest, DeleteLineRemovesTheCurrentLine) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    e->Act_DeleteLine->trigger();
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("K_ID")->AsString(), "K02");
    EXPECT_TRUE(e->Modified);
    delete list;
}

TEST_F(FrameworkScreenTest, SaveChecksThenSavesThenHandsTheHeadBack) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    e->EnterStyle("K02");
    e->AdoQry_Main->FieldByName("S0")->SetText("2");
    e->Act_AddLine->trigger();  // an empty line is dropped on save
    int saved = 0;
    QObject::connect(e, &Tfrm_Base_Entry_Body::saved, [&] { ++saved; });
    e->Act_Save->trigger();
    EXPECT_EQ(e->calls, QStringList({"RefreshData:Add", "AllCheck", "SaveData", "SaveHeadData"}));
    ASSERT_EQ(db->executed.size(), 1u);
    EXPECT_EQ(db->executed[0], "INSERT INTO D8101A  VALUES ('N1','K0203','2');");
    EXPECT_EQ(saved, 1);
    EXPECT_FALSE(e->isVisible());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 3);
    EXPECT_EQ(list->AdoQry_Main->State(), dsBrowse);
    EXPECT_EQ(list->AdoQry_Main->FieldByName("noid")->AsString(), "N1");
    EXPECT_EQ(list->AdoQry_Main->FieldByName("t")->AsInteger(), 0);
    delete list;
}

TEST_F(FrameworkScreenTest, AFailedCheckStopsTheSave) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    e->refuse = true;
    e->Act_Save->trigger();
    EXPECT_EQ(e->calls, QStringList({"RefreshData:Edit", "AllCheck"}));
    EXPECT_TRUE(db->executed.empty());
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(sink->texts(), QStringList{"数量请用正数"});
    delete list;
}

TEST_F(FrameworkScreenTest, ALineWithoutColourIsRefusedByTheFramework) {
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->Act_AddLine->trigger();
    e->EnterStyle("K01");  // two colours: none chosen yet
    e->ColorLink->close();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts().back(), "第1行没有输入款号或颜色!");
    EXPECT_TRUE(db->executed.empty());
    delete list;
}

TEST_F(FrameworkScreenTest, ADatabaseErrorOnSaveIsReportedAndTheScreenKeepsItsInput) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    db->failExecute = true;
    e->Act_Save->trigger();
    EXPECT_EQ(sink->errors(), QStringList{"forced failure"});
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), 2);
    delete list;
}

TEST_F(FrameworkScreenTest, QuitWithUnsavedChangesOffersToSave) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    // Unchanged: quits without asking.
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->isVisible());
    EXPECT_TRUE(sink->messages.empty());

    list->Act_Edit->trigger();
    e->AdoQry_Main->Edit();
    e->AdoQry_Main->FieldByName("S0")->SetText("9");
    sink->queueAnswer(false);  // do not save
    e->Act_Quit->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"单据已修改,是否保存?"});
    EXPECT_FALSE(e->isVisible());
    EXPECT_TRUE(db->executed.empty());

    list->Act_Edit->trigger();
    QTest::keyClicks(e->NOTE, "x");  // a head edit counts as a change
    EXPECT_TRUE(e->Modified);
    sink->queueAnswer(true);  // save
    e->Act_Quit->trigger();
    EXPECT_EQ(db->executed.size(), 1u);
    EXPECT_FALSE(e->isVisible());
    delete list;
}

TEST_F(FrameworkScreenTest, EscapeQuitsTheEntryAndClosesAnEditorFirst) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    TDBGridEh* grid = e->DBGridEh;
    grid->EditField("S0");
    ASSERT_TRUE(grid->Editing());
    e->Act_Quit->trigger();  // what Escape runs
    EXPECT_FALSE(grid->Editing());
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->Act_Quit->shortcut(), QKeySequence(Qt::Key_Escape));
    QTest::keyClick(e, Qt::Key_Escape);
    EXPECT_FALSE(e->isVisible());
    delete list;
}

TEST_F(FrameworkScreenTest, ViewOpensReadOnly) {
    DemoList* list = openList();
    list->Act_View->trigger();
    DemoEntry* e = list->Entry;
    EXPECT_TRUE(e->ReadOnlyMode);
    EXPECT_FALSE(e->Act_Save->isEnabled());
    EXPECT_FALSE(e->DBGridEh->model()->flags(e->DBGridEh->model()->index(0, 4)) & Qt::ItemIsEditable);
    delete list;
}

void addOrders(qx::test::FakeDatabase& db) {
    db.rules.insert(db.rules.begin(),
                    {"FROM D8203 WHERE D8203.CK_ID='01'",
                     table({"NOID", "BDATE", "NOTE"}, {{s("O002"), s("2026-03-10"), s("")}, {s("O001"), s("2026-03-01"), s("")}})});
    db.rules.insert(db.rules.begin(), {"FROM D8203A WHERE", table({"K_ID", "COL_ID", "S0", "S1", "DJ"}, {})});
    std::vector<std::string> columns = {"K_ID", "COL_ID", "COL_NAME", "WL_NAME", "DW_NAME"};
    for (int i = 0; i <= 9; ++i) columns.push_back("S" + std::to_string(i));
    columns.push_back("DJ");
    columns.push_back("PFJ");
    for (int i = 0; i <= 9; ++i) columns.push_back("M" + std::to_string(i));
    std::vector<Value> row = {s("K01"), s("01"), s("红色"), s("衬衫"), s("件"), n(2), n(1)};
    for (int i = 2; i <= 9; ++i) row.push_back(n(0));
    row.push_back(9.5);
    row.push_back(99.0);
    for (const char* m : {"S", "M", "L"}) row.push_back(s(m));
    for (int i = 3; i <= 9; ++i) row.push_back(Value{});
    db.rules.insert(db.rules.begin(), {"INNER JOIN D1800 ON D8203A.K_ID = D1800.K_ID", table(columns, {row})});
}

TEST_F(FrameworkScreenTest, OrderPickerCopiesTheLinesOfTheChosenOrder) {
    addOrders(*db);
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    e->CK_ID->clear();
    e->DBGridEhDblClick1(e->DBGridEh);
    EXPECT_EQ(sink->texts().back(), "请先选择仓库!");
    e->CK_ID->setText("01");
    qx::ui::setModalHandler([](TFrm_Base* d) {
        auto* picker = dynamic_cast<TFrm_Sys_PickOrder*>(d);
        if (!picker) return int(mrCancel);
        EXPECT_EQ(picker->AdoQry_Orders->RecordCount(), 2);
        picker->AdoQry_Orders->Locate("NOID", "O001");
        picker->btn_ok->click();
        return picker->ModalResult();
    });
    e->DBGridEhDblClick1(e->DBGridEh);
    TClientDataSet* lines = e->AdoQry_Main;
    ASSERT_EQ(lines->RecordCount(), 1);
    lines->First();
    EXPECT_EQ(lines->FieldByName("K_ID")->AsString(), "K01");
    EXPECT_EQ(lines->FieldByName("COL_NAME")->AsString(), "红色");
    EXPECT_EQ(lines->FieldByName("wl_id")->AsString(), "K0101");
    EXPECT_EQ(lines->FieldByName("STOT")->AsInteger(), 3);
    EXPECT_DOUBLE_EQ(lines->FieldByName("sj")->AsFloat(), 9.5);
    EXPECT_DOUBLE_EQ(lines->FieldByName("smoney")->AsFloat(), 28.5);
    EXPECT_EQ(e->DBGridEh->ColumnByField("S1")->Title, "尺码|M");
    EXPECT_TRUE(e->HasChanges());
    delete list;
}

TEST_F(FrameworkScreenTest, ColumnsTaggedOneAreLockedOnLinesFromAnOrder) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    e->AdoQry_Main->AddField("NOID", ftString, 12);
    e->AdoQry_Main->First();
    e->AdoQry_Main->Edit();
    e->AdoQry_Main->FieldByName("NOID")->SetAsString("O001");
    e->AdoQry_Main->Post();
    TColumnEh* price = e->DBGridEh->ColumnByField("sj");
    price->Tag = 1;
    auto* model = e->DBGridEh->model();
    EXPECT_FALSE(model->flags(model->index(0, price->Index())) & Qt::ItemIsEditable);
    EXPECT_TRUE(model->flags(model->index(1, price->Index())) & Qt::ItemIsEditable);
    EXPECT_TRUE(model->flags(model->index(0, e->DBGridEh->ColumnByField("S0")->Index())) & Qt::ItemIsEditable);
    delete list;
}

TEST_F(FrameworkScreenTest, TagPricedLinesTakeTheStylesTagPrice) {
    TFrm_Base_Entry_BodyC entry;
    TBodyParams params;
    params.BodySql = QString(kBodySql).replace("D8101A.DJ as sj", "D8101A.ODJ, D8101A.ZK, D8101A.DJ as sj");
    params.MoneyFields = "money,smoney,OMONEY";
    params.PriceFields = "dj,sj,ODJ";
    params.QtyFields = "S0,S1,S2,STOT,ZK";
    params.StyleField = "K_ID";
    params.WlField = "wl_id";
    params.KeyField = "NOID";
    entry.SetBodyParam(params);
    db->answer("D8101A.NOID =''", table({"K_ID", "COL_ID", "COL_NAME", "WL_NAME", "DW_NAME", "S0", "S1", "S2", "ODJ",
                                         "ZK", "sj", "smoney", "NOTE"},
                                        {}));
    std::rotate(db->rules.begin(), db->rules.end() - 1, db->rules.end());  // ahead of the other line rules
    entry.InitForm("Add", nullptr, true, true, false, 0);
    entry.EnterStyle("K02");
    EXPECT_DOUBLE_EQ(entry.AdoQry_Main->FieldByName("ODJ")->AsFloat(), 159);
    EXPECT_DOUBLE_EQ(entry.AdoQry_Main->FieldByName("ZK")->AsFloat(), 100);
    EXPECT_DOUBLE_EQ(entry.AdoQry_Main->FieldByName("sj")->AsFloat(), 159);
}

TEST_F(FrameworkScreenTest, MovingBetweenLinesKeepsTheColumn) {
    DemoList* list = openList();
    list->Act_Edit->trigger();
    DemoEntry* e = list->Entry;
    TDBGridEh* grid = e->DBGridEh;
    grid->setCurrentIndex(grid->model()->index(0, grid->ColumnByField("S2")->Index()));
    QTest::keyClick(grid, Qt::Key_Down);  // the size titles change with the line
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2);
    EXPECT_EQ(grid->ColumnByField("S0")->Title, "尺码|28");
    EXPECT_EQ(grid->CurrentColumn()->FieldName, "S2");
    delete list;
}

TEST_F(FrameworkScreenTest, TwoLinesTypedThroughTheGridStayTwoLines) {
    db->rules.insert(db->rules.begin(), {"d1804.K_ID='K02' AND (d1804.COL_ID='03'", table({"COL_ID", "COL_NAME"}, {{s("03"), s("蓝色")}})});
    DemoList* list = openList();
    list->Act_Add->trigger();
    DemoEntry* e = list->Entry;
    auto type = [e](const QString& field, const QString& text) {
        auto* model = e->DBGridEh->model();
        return model->setData(model->index(e->AdoQry_Main->CurrentRow(), e->DBGridEh->ColumnByField(field)->Index()), text, Qt::EditRole);
    };
    e->Act_AddLine->trigger();
    e->EnterStyle("K01");
    e->EnterColor("02");
    EXPECT_TRUE(type("S0", "3"));
    EXPECT_TRUE(type("S1", "2"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_AddLine->trigger();
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2);
    e->EnterStyle("K02");
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2);
    e->EnterColor("03");
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2);
    EXPECT_TRUE(type("S1", "4"));
    e->AdoQry_Main->CheckBrowseMode();
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 2);
    e->AdoQry_Main->First();
    EXPECT_EQ(e->AdoQry_Main->FieldByName("K_ID")->AsString(), "K01");
    e->Modified = false;
    e->AdoQry_Main->EmptyDataSet();
    delete list;
}

}  // namespace
