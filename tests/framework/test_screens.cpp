// The base screens: dialogs and conditions, date presets, the document list with its filter and
// delete, the entry screen with line entry, size matrix, navigation, save and quit, pick lists.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include "framework/Frm_Base_Entry_Body.h"
#include "framework/Frm_Base_Entry_Head.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/Screenshot.h"
#include "framework/Settings.h"
#include "tests/framework/FakeDatabase.h"

namespace {

using qx::dataop::Call;
using qx::db::Value;
using qx::test::table;

std::string s(const char* t) { return t; }
Value n(std::int64_t v) { return v; }

const char* kHeadSql =
    " SELECT d8101.noid,d1103.kh_gys_id,d1103.kg_name,d8101.bdate,d8101.t FROM d8101 INNER JOIN d1103 ON "
    "d8101.kh_gys_id = d1103.kh_gys_id ";
const char* kBodySql =
    "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8101A.S0, D8101A.S1, "
    "D8101A.S2, D1006.M0, D1006.M1, D1006.M2, D8101A.DJ as sj,D8101A.money as smoney,D8101A.NOTE FROM D8101A "
    "WHERE (D8101A.NOID =%s)";

std::vector<std::string> lineColumns() {
    return {"K_ID", "COL_ID", "COL_NAME", "WL_NAME", "DW_NAME", "S0", "S1", "S2", "M0", "M1", "M2", "sj", "smoney", "NOTE"};
}

// A small shop: two receipts, lines of D001, styles K01 (two colours) and K02 (one colour).
std::shared_ptr<qx::test::FakeDatabase> shop() {
    auto db = std::make_shared<qx::test::FakeDatabase>();
    db->answer("FROM d8101 INNER JOIN d1103",
               table({"noid", "kh_gys_id", "kg_name", "bdate", "t"},
                     {{s("D001"), s("G01"), s("华美制衣"), s("2026-03-02 00:00:00"), n(1)},
                      {s("D002"), s("G02"), s("O'Neil Ltd"), s("2026-03-05 00:00:00"), n(0)}}));
    db->answer("D8101A.NOID ='D001'",
               table(lineColumns(), {{s("K01"), s("01"), s("红色"), s("衬衫"), s("件"), n(3), n(2), n(0), s("S"), s("M"),
                                      s("L"), 10.0, 50.0, s("")},
                                     {s("K02"), s("03"), s("蓝色"), s("裤子"), s("条"), n(0), n(1), n(1), s("28"), s("29"),
                                      s("30"), 20.0, 40.0, s("")}}));
    db->answer("D8101A.NOID =", table(lineColumns(), {}));
    db->answer("WHERE d1800.K_ID='K01'",
               table({"K_ID", "WL_NAME", "DW_NAME", "CGJ", "PFJ", "M_ID", "M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7",
                      "M8", "M9"},
                     {{s("K01"), s("衬衫"), s("件"), 10.0, 99.0, s("01"), s("S"), s("M"), s("L"), s("XL"), {}, {}, {}, {}, {}, {}}}));
    db->answer("WHERE d1800.K_ID='K02'",
               table({"K_ID", "WL_NAME", "DW_NAME", "CGJ", "PFJ", "M_ID", "M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7",
                      "M8", "M9"},
                     {{s("K02"), s("裤子"), s("条"), 20.0, 159.0, s("02"), s("28"), s("29"), s("30"), {}, {}, {}, {}, {}, {}, {}}}));
    db->answer("LEFT OUTER JOIN d1006", table({"K_ID"}, {}));  // any other style: unknown
    db->answer("d1804.K_ID='K01' AND (d1804.COL_ID='02'", table({"COL_ID", "COL_NAME"}, {{s("02"), s("黑色")}}));
    db->answer("d1804.K_ID='K01' AND", table({"COL_ID", "COL_NAME"}, {}));
    db->answer("d1804.K_ID='K01' ORDER BY", table({"COL_ID", "COL_NAME"}, {{s("01"), s("红色")}, {s("02"), s("黑色")}}));
    db->answer("d1804.K_ID='K02' ORDER BY", table({"COL_ID", "COL_NAME"}, {{s("03"), s("蓝色")}}));
    db->answer("FROM d1007", table({"CK_ID", "CK_NAME", "PYM"}, {{s("01"), s("总仓"), {}}, {s("02"), s("东门店"), s("DMD")}}));
    db->answer("FROM d1800 WHERE", table({"K_ID", "WL_NAME"}, {}));
    db->answer("FROM d1800", table({"K_ID", "WL_NAME", "PYM"}, {{s("K01"), s("衬衫"), s("CS")}, {s("K02"), s("裤子"), {}}}));
    return db;
}

class DemoFilter : public TFrm_Sys_Filter {
public:
    explicit DemoFilter(QWidget* owner) : TFrm_Sys_Filter(owner) {
        BDATE = Panel_Condition->AddDateEdit("BDATE", "开单日期");
        EDATE = Panel_Condition->AddDateEdit("EDATE", "至：");
        KH_ID = Panel_Condition->AddLinkEdit("KH_ID", "供 应 商", 10, "KG_NAME");
        FormCreate();
    }
    void FormCreate() {
        TFrm_Sys_Filter::FormCreate();
        SetDateEdits(BDATE, EDATE);
    }
    void InitForm() override {
        TFrm_Sys_Filter::InitForm();
        setdate04click(nullptr);
    }
    void btn_okClick(QObject* sender) override {
        TFrm_Sys_Filter::btn_okClick(sender);
        CheckDate(BDATE);
        CheckDate(EDATE);
        Description = " ●开单日期:" + BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd");
        Condition = "(D8101.BDATE>='" + SqlStr(BDATE->Text()) + "') AND (D8101.BDATE<='" + SqlStr(EDATE->Text()) + "') ";
        Condition_t("=", "d1103.KH_gys_ID", KH_ID->text());
        SetModalResult(mrOk);
    }
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    TLinkEdit* KH_ID;
};

class DemoEntry : public TFrm_Base_Entry_BodyC {
public:
    explicit DemoEntry(QWidget* owner) : TFrm_Base_Entry_BodyC(owner) {
        Edit1 = Panel_Head->AddEdit("Edit1", "进货单号", 12);
        CK_ID = Panel_Head->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
        NOTE = Panel_Head->AddEdit("NOTE", "备    注", 100);
        FormCreate();
    }
    void FormCreate() {
        TFrm_Base_Entry_BodyC::FormCreate();
        WarehouseEdit = CK_ID;
        PriceLabel = "进货价";
        AmountLabel = "金额";
        EntryFlag = true;
        SetCaption("采购进货");
    }
    void RefreshData() override {
        calls << "RefreshData:" + EditMode;
        if (EditMode == "Edit") {
            Edit1->setText(MasterDataSet->FieldByName("noid")->AsString());
            LockName = "EDIT1";
        } else {
            Edit1->setText(GetNOID(FuncNo, "", 0));
            LockName = "";
        }
        TFrm_Base_Entry_BodyC::RefreshData();
    }
    bool AllCheck() override {
        calls << "AllCheck";
        if (!TFrm_Base_Entry_BodyC::AllCheck()) return false;
        if (refuse) {
            DISPINFO("数量请用正数", 5);
            Abort();
        }
        return true;
    }
    void SaveData() override {
        calls << "SaveData";
        TFrm_Base_Entry_BodyC::SaveData();
        QString batch;
        for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) {
            AdoQry_Main->SetRecNo(r + 1);
            batch += "INSERT INTO D8101A  VALUES ('" + SqlStr(Edit1->text()) + "','" +
                     SqlStr(AdoQry_Main->FieldByName("wl_id")->AsString()) + "','" +
                     AdoQry_Main->FieldByName("STOT")->AsString() + "');";
        }
        ExecSql(FuncNo, Edit1->text(), EditMode, batch, 65535, false, true, false, true);
    }
    void SaveHeadData() override {
        calls << "SaveHeadData";
        TFrm_Base_Entry_BodyC::SaveHeadData();
        MasterDataSet->FieldByName("noid")->SetAsString(Edit1->text());
        MasterDataSet->FieldByName("t")->SetAsInteger(0);
    }
    QLineEdit* Edit1;
    TLinkEdit* CK_ID;
    QLineEdit* NOTE;
    QStringList calls;
    bool refuse = false;
};

class DemoList : public TFrm_Base_Entry_Head {
public:
    explicit DemoList(QWidget* owner = nullptr) : TFrm_Base_Entry_Head(owner) {
        SetCaption("采购进货");
        FormCreate();
    }
    void InitForm(const Trecord& rec) override {
        TFrm_Base_Entry_Head::InitForm(rec);
        QtyFields = "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT";
        PriceFields = "dj,sj";
        MoneyFields = "money,smoney";
        KeyField = "NOID";
        WlField = "wl_id";
        HeadSql = kHeadSql;
        BodySql = kBodySql;
        DeleteSql = "delete from d8101 Where NOID=%S";
        Entry = new DemoEntry(this);
        Entry->SetBodyParam(BodyParams());
        Filter = new DemoFilter(this);
        Filter->InitForm();
        Act_Start->trigger();
    }
    DemoEntry* Entry = nullptr;
    DemoFilter* Filter = nullptr;
};

class FrameworkScreenTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        G_UserId = "U1";
        db = shop();
        qx::dataop::setDatabase(db);
        qx::dataop::setObserver([this](const Call& c) { calls.push_back(c); });
        qx::ui::setToday(QDate(2026, 3, 18));
        qx::ui::setScreenPresenter([](TFrm_Base* screen) { screen->show(); });
    }
    void TearDown() override {
        qx::ui::setModalHandler(nullptr);
        qx::ui::setScreenPresenter(nullptr);
        qx::ui::setToday(QDate());
        qx::dataop::setObserver({});
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
    // The list, opened on code 201 with the filter confirmed (supplier as given).
    DemoList* openList(const QString& supplier = {}) {
        qx::ui::setModalHandler([supplier](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<DemoFilter*>(dialog);
            if (!filter) return int(mrCancel);
            filter->KH_ID->setText(supplier);
            filter->btn_ok->click();
            return filter->ModalResult();
        });
        auto* list = new DemoList;
        list->resize(900, 560);
        Trecord rec;
        rec.UserId = "U1";
        rec.FuncCode = 201;
        list->InitForm(rec);
        return list;
    }
    std::vector<QString> statements(Call::Kind kind) const {
        std::vector<QString> out;
        for (const auto& c : calls)
            if (c.kind == kind) out.push_back(c.sql);
        return out;
    }
    qx::ui::ScopedScriptedSink sink;
    std::shared_ptr<qx::test::FakeDatabase> db;
    std::vector<Call> calls;
};

// --- dialogs

TEST_F(FrameworkScreenTest, ConditionAppendsQuotedComparisons) {
    TFrm_Base_Dialog dialog;
    dialog.Condition = "(D8101.BDATE>='2026-03-01') ";
    dialog.Condition_t("=", "d1103.KH_gys_ID", "G01");
    dialog.Condition_t("=", "d8101.SEND_NO", "  ");
    dialog.Condition_t(">=", "d8101.NOTE", "O'Neil");
    EXPECT_EQ(dialog.Condition,
              "(D8101.BDATE>='2026-03-01')  AND (d1103.KH_gys_ID = 'G01') AND (d8101.NOTE >= 'O''Neil')");
}

TEST_F(FrameworkScreenTest, OkRunsCheckAllAndStartsAFreshCondition) {
    struct Refusing : TFrm_Base_Dialog {
        bool CheckAll() override { return false; }
    } refusing;
    refusing.Condition = "old";
    EXPECT_THROW(refusing.btn_okClick(nullptr), EAbort);
    EXPECT_EQ(refusing.Condition, "old");
    TFrm_Base_Dialog dialog;
    dialog.Condition = "old";
    dialog.Description = "old";
    dialog.btn_okClick(nullptr);
    EXPECT_EQ(dialog.Condition, "");
    EXPECT_EQ(dialog.Description, "");
}

TEST_F(FrameworkScreenTest, DatePresetsCoverTheUsualPeriods) {
    const QDate wednesday(2026, 3, 18);
    using R = std::pair<QDate, QDate>;
    EXPECT_EQ(TFrm_Base_Common::PresetRange(1, wednesday), R(wednesday, wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(2, wednesday), R(QDate(2026, 3, 17), QDate(2026, 3, 17)));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(3, wednesday), R(QDate(2026, 3, 16), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(4, wednesday), R(QDate(2026, 3, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(5, wednesday), R(QDate(2026, 2, 1), QDate(2026, 2, 28)));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(6, wednesday), R(QDate(2026, 1, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(7, wednesday), R(QDate(2026, 1, 1), wednesday));
    EXPECT_EQ(TFrm_Base_Common::PresetRange(8, wednesday), R(QDate(2025, 1, 1), QDate(2025, 12, 31)));
    DemoFilter filter(nullptr);
    filter.setdate05click(nullptr);
    EXPECT_EQ(filter.BDATE->Text(), "2026-02-01");
    EXPECT_EQ(filter.EDATE->Text(), "2026-02-28");
    filter.InitForm();  // the fourth preset
    EXPECT_EQ(filter.BDATE->Text(), "2026-03-01");
    EXPECT_EQ(filter.EDATE->Text(), "2026-03-18");
}

TEST_F(FrameworkScreenTest, FilterKeysConfirmClearAndCancel) {
    DemoFilter filter(nullptr);
    filter.InitForm();
    filter.KH_ID->setText("G09");
    filter.show();
    QTest::keyClick(&filter, Qt::Key_F3);
    EXPECT_EQ(filter.KH_ID->text(), "");
    QTest::keyClick(&filter, Qt::Key_F2);
    EXPECT_EQ(filter.ModalResult(), mrOk);
    EXPECT_EQ(filter.Condition, "(D8101.BDATE>='2026-03-01') AND (D8101.BDATE<='2026-03-18') ");
    filter.show();
    QTest::keyClick(&filter, Qt::Key_Escape);
    EXPECT_EQ(filter.ModalResult(), mrCancel);
}

TEST_F(FrameworkScreenTest, CheckBlankAndCheckDateReportWithTheCaption) {
    DemoEntry entry(nullptr);
    entry.Edit1->clear();
    EXPECT_THROW(entry.CheckBlank(entry.Edit1), EAbort);
    EXPECT_EQ(sink->texts(), QStringList{"进货单号不能为空!"});
    entry.Edit1->setText("D1");
    EXPECT_NO_THROW(entry.CheckBlank(entry.Edit1));
}

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
        if (c.kind == Call::Kind::ExecSql) EXPECT_EQ(c.mode, "Delete");
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

// --- report base

TEST_F(FrameworkScreenTest, ReportRefreshesItsStatementWithSumsAndCostVisibility) {
    db->answer("FROM d1802", table({"WL_ID", "K0", "KC", "CBJ"}, {{s("K0101"), n(2), n(2), 10.0}, {s("K0102"), n(3), n(3), 12.0}}));
    TFrm_Base_Qry report;
    Trecord rec;
    rec.FuncCode = 255;
    report.InitForm(rec);
    report.QrySql = "SELECT WL_ID, K0, KC, CBJ FROM d1802";
    report.SumFields = {"KC"};
    report.CostFields = {"CBJ"};
    report.ShowCost = false;
    report.Act_Refresh->trigger();
    EXPECT_FALSE(report.Refreshing);
    EXPECT_EQ(report.FuncNo, "255");
    EXPECT_EQ(statements(Call::Kind::OpenSql).back(), "SELECT WL_ID, K0, KC, CBJ FROM d1802");
    EXPECT_DOUBLE_EQ(report.DBGridEh->GetSumValue("KC"), 5);
    EXPECT_EQ(report.DBGridEh->VisibleTitles(), QStringList({"商品编号", "K0", "库存"}));
    report.Act_Locate->setEnabled(true);
    EXPECT_EQ(report.Act_Locate->shortcut(), QKeySequence(Qt::Key_F3));
    EXPECT_EQ(report.Act_Refresh->shortcut(), QKeySequence(Qt::Key_F5));
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

namespace {

class CountingDetail : public TFrm_Base_Detail {
public:
    using TFrm_Base_Detail::TFrm_Base_Detail;
    void InitForm(AnsiString key, TClientDataSet* master) override {
        TFrm_Base_Detail::InitForm(key, master);
        opened << key + "@" + master->FieldByName("WL_ID")->AsString();
    }
    QStringList opened;
};

TEST_F(FrameworkScreenTest, ReportDrillsDownSortsAndOrders) {
    db->answer("FROM d1802", table({"WL_ID", "KC"}, {{s("K0101"), n(2)}, {s("K0102"), n(7)}, {s("K0103"), n(5)}}));
    TFrm_Base_Qry report;
    Trecord rec;
    rec.FuncCode = 255;
    report.InitForm(rec);
    auto* detail = new CountingDetail(&report);
    report.DetailForm = detail;
    report.KeyField = "WL_ID";
    report.QrySql = "SELECT WL_ID, KC FROM d1802";
    report.Act_Refresh->trigger();
    report.AdoQry_Main->SetRecNo(2);
    qx::ui::setModalHandler([](TFrm_Base* d) {
        d->SetModalResult(mrCancel);
        return int(mrCancel);
    });
    report.DBGridEhDblClick(report.DBGridEh);
    EXPECT_EQ(detail->opened, QStringList{"K0102@K0102"});
    EXPECT_EQ(detail->FuncNo, "255");
    // A title click sorts, again descending.
    report.DBGridEh->SortByColumn(report.DBGridEh->ColumnByField("KC"));
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("KC")->AsInteger(), 2);
    report.DBGridEh->SortByColumn(report.DBGridEh->ColumnByField("KC"));
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("KC")->AsInteger(), 7);
    // The sort dialog.
    qx::ui::setModalHandler([](TFrm_Base* d) {
        auto* order = dynamic_cast<TFrm_Sys_SortOrder*>(d);
        if (!order) return int(mrCancel);
        order->Cmb_Field->setCurrentIndex(order->Cmb_Field->findData("WL_ID"));
        order->Chk_Desc->setChecked(true);
        order->btn_ok->click();
        return order->ModalResult();
    });
    report.Act_Order->trigger();
    report.AdoQry_Main->First();
    EXPECT_EQ(report.AdoQry_Main->FieldByName("WL_ID")->AsString(), "K0103");
}

}  // namespace

namespace {

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

}  // namespace

namespace {

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

}  // namespace

namespace {

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

}  // namespace

namespace {
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

namespace {

TEST_F(FrameworkScreenTest, FilterOptionsSurviveARestart) {
    QTemporaryDir dir;
    qx::settings::setProgramFolder(dir.path());
    G_CoName = "示范服装店";
    {
        DemoFilter filter(nullptr);
        filter.StoredProps = {"KH_ID"};
        filter.InitForm();
        filter.KH_ID->setText("G07");
        filter.btn_ok->click();
    }
    DemoFilter again(nullptr);
    again.StoredProps = {"KH_ID"};
    again.InitForm();
    EXPECT_EQ(again.KH_ID->text(), "G07");
    EXPECT_TRUE(QFile::exists(dir.filePath("示范服装店.ini")));
    qx::settings::setProgramFolder({});
}

}  // namespace
