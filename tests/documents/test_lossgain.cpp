// Loss/gain sheets: list, filter and entry; the batches they send and the stock the database
// posts from them, per size with its sign.
#include <QTest>

#include "framework/Screenshot.h"
#include "tests/documents/StockDocumentsFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class LossGainTest : public qx::test::StockDocumentsTest {
protected:
    TQXCK231_1* add(TQXCK231* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    // A sheet written straight into the tables.
    void lossGainSheet(const QString& noid, const QString& warehouse, const QString& sizes, int t = 1) {
        exec("INSERT INTO d8301 (NOID, T, CK_ID, BDATE, STRPARAM1, USER_ID, NOTE) VALUES ('" + noid + "'," +
             QString::number(t) + ",'" + warehouse + "','2026-03-10','赵六','U1','')");
        exec("INSERT INTO d8301A VALUES ('" + noid + "','K0101','K01','01','" + warehouse + "'," + sizes + ",0,0,'')");
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck231_1.sql"};
};

TEST_F(LossGainTest, TheListIsConfiguredForLossGainSheets) {
    lossGainSheet("SY1", "01", "-1,0,0,0,0,0,0,0,0,0");
    TQXCK231* l = lossGainList();
    EXPECT_EQ(l->windowTitle(), "损溢单");
    ASSERT_EQ(l->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("STRPARAM1")->AsString(), "赵六");
    EXPECT_EQ(l->DBGridEh->ColumnByField("STRPARAM1")->Title, "经手");
    EXPECT_EQ(l->DeleteSql, "delete from d8301 Where (noid=%s)");
    EXPECT_EQ(l->PriceFields, "dj");
    EXPECT_EQ(l->MoneyFields, "money");
    EXPECT_EQ(l->BodySql,
              "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, d8301A.S0, d8301A.S1, "
              "d8301A.S2, d8301A.S3, d8301A.S4,d8301A.S5, d8301A.S6, d8301A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,"
              "D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, d8301A.S9,d8301A.S8, 0.00 SMONEY,0.00 AS SJ,"
              "d8301A.NOTE FROM D1801 INNER JOIN d8301A ON D1801.WL_ID = d8301A.WL_ID INNER JOIN D1800 ON D1801.K_ID = "
              "D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID "
              "WHERE (d8301A.NOID =%s)");
    EXPECT_EQ(l->HeadSql,
              " SELECT D8301.NOID, D1007.CK_ID, D1007.CK_NAME, D8301.BDATE, D8301.EDATE,  D8301.STRPARAM1, "
              "SYS_USER.USER_ID, SYS_USER.USER_NAME, D8301.NOTE,D8301.t,D8301.sk,D8301.sdate FROM D8301 INNER JOIN  "
              "D1007 ON D8301.CK_ID = D1007.CK_ID INNER JOIN  SYS_USER ON D8301.USER_ID = SYS_USER.USER_ID");
    // Without approval there are no approval columns.
    EXPECT_EQ(l->DBGridEh->ColumnByField("SK"), nullptr);
    delete l;
}

TEST_F(LossGainTest, InApprovalModeUnapprovedSheetsAreTinted) {
    G_SK = 1;
    lossGainSheet("SY1", "01", "-1,0,0,0,0,0,0,0,0,0", 0);
    TQXCK231* l = lossGainList();
    ASSERT_NE(l->DBGridEh->ColumnByField("SK"), nullptr);
    TCellParams p;
    p.Row = 0;
    l->DBGridEhGetCellParams(l->DBGridEh, nullptr, p);
    EXPECT_EQ(p.Background, QColor(0x80, 0xFF, 0xFF));
    delete l;
}

TEST_F(LossGainTest, TheFilterBuildsItsConditionAndRefusesReversedDates) {
    TQXCK231* l = lossGainList([](TDocumentFilter* f) {
        f->CK_ID->setText("01");
        f->Edit1->setText("SY'1");
    });
    EXPECT_TRUE(described(l->filter()).startsWith(" ●开单日期：03-01 至 03-18 (18天)"))
        << described(l->filter()).toStdString();
    EXPECT_TRUE(described(l->filter()).contains(" ●仓库：01"));
    EXPECT_TRUE(described(l->filter()).contains(" ●损溢单号：SY'1 至 "));
    EXPECT_TRUE(l->filter()->Condition.startsWith("(d8301.BDATE>='2026-03-01') AND (d8301.BDATE<='2026-03-18') "));
    EXPECT_TRUE(l->filter()->Condition.endsWith("  AND (d8301.NOID>='SY''1')")) << l->filter()->Condition.toStdString();
    // Reversed dates: the message, the dialog stays open.
    auto* f = l->filter();
    f->BDATE->SetText("2026-03-18");
    f->EDATE->SetText("2026-03-01");
    f->SetModalResult(mrNone);
    f->btn_ok->click();
    EXPECT_EQ(sink->texts().back(), "<开始日期> 不能大于 <结束日期>!");
    EXPECT_NE(f->ModalResult(), int(mrOk));
    delete l;
}

TEST_F(LossGainTest, TheEntryShowsTheHintAndTakesSignedQuantitiesOnly) {
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    EXPECT_EQ(e->windowTitle(), "损溢单");
    EXPECT_EQ(e->Lab_Hint->text(), "系统提示：盘盈请用正数表示，盘亏请用负数表示。无盈亏的数据无须录入。 ");
    EXPECT_TRUE(e->Lab_Hint->isVisible());
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ"), nullptr);
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY"), nullptr);
    EXPECT_EQ(e->STRPARAM1->maxLength(), 16);
    e->Act_Quit->trigger();
    delete l;
}

TEST_F(LossGainTest, AddSendsTheHeadInsertWithoutASemicolonAndPostsPerSizeWithItsSign) {
    stock("K0101", "01", {5, 3});
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    e->STRPARAM1->setText("赵六");
    e->NOTE->setText("破损");
    addLine(e, "K01", "01", {"2", "-1"});
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 1);
    e->resize(1280, 480);
    EXPECT_FALSE(qx::saveScreenshot(e, "lossgain_entry").isEmpty());
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().funcNo, "218");
    EXPECT_EQ(stockRow("K0101", "01"), "7/2/0/0/0") << "the gain in, the loss out";
    EXPECT_EQ(scalar("SELECT DJ FROM d8301A WHERE NOID='" + noid + "'"), "8");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + noid + "'"), "8");
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("STRPARAM1")->AsString(), "赵六");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t")->AsInteger(), 0);
    delete l;
}

TEST_F(LossGainTest, ALineOfLossesOnlySavesWithANegativeCostAmount) {
    stock("K0203", "01", {4, 4});
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    addLine(e, "K02", "03", {"-1", "-2"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + noid + "'"), "-36") << "-3 at the cost price of 12";
    EXPECT_EQ(stockRow("K0203", "01"), "3/2/0/0/0");
    delete l;
}

TEST_F(LossGainTest, AnAllZeroLineIsRefusedWithItsTwoLineMessage) {
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    addLine(e, "K01", "01", {"1", "-1"});  // totals 0, but is not all zero: fine
    addLine(e, "K02", "03", {"0"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"表格中尺码的数量不允许全部为0,(如本单无该款该色,请将本行删除)!\r\n"
                                         "请修正以上问题后再次尝试保存!"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301 WHERE NOID='" + noid + "'"), 0);
    EXPECT_TRUE(e->isVisible());
    e->Act_DeleteLine->trigger();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301A WHERE NOID='" + noid + "'"), 1);
    delete l;
}

TEST_F(LossGainTest, ALossBeyondTheStockOfACheckedRowIsRefusedAndNothingIsKept) {
    stock("K0101", "01", {1, 0}, 1);
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    addLine(e, "K01", "01", {"-2"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_TRUE(sink->errors()[0].contains("库存不足支持本次出库业务")) << sink->errors()[0].toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(stockRow("K0101", "01"), "1/0/0/0/0");
    EXPECT_TRUE(e->isVisible()) << "the screen keeps the input";
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    e->Modified = false;
    delete l;
}

TEST_F(LossGainTest, EditRewritesTheHeadAndLinesAndRepostsTheDifference) {
    stock("K0101", "01", {5, 3});
    stock("K0203", "01", {0, 0, 0});
    lossGainSheet("SY1", "01", "-1,0,0,0,0,0,0,0,0,0");
    EXPECT_EQ(stockRow("K0101", "01"), "4/3/0/0/0");
    TQXCK231* l = lossGainList();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "SY1"));
    l->Act_Edit->trigger();
    TQXCK231_1* e = l->entry();
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    addLine(e, "K02", "03", {"", "", "1"});
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    EXPECT_EQ(lastExec().mode, "Edit");
    EXPECT_EQ(stockRow("K0101", "01"), "4/3/0/0/0") << "re-saved, posted once";
    EXPECT_EQ(stockRow("K0203", "01"), "0/0/1/0/0");
    delete l;
}

TEST_F(LossGainTest, CopyAddWritesTheSameDifferencesUnderANewNumber) {
    stock("K0101", "01", {5, 3});
    lossGainSheet("SY1", "01", "-1,0,0,0,0,0,0,0,0,0");
    TQXCK231* l = lossGainList();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "SY1"));
    l->Act_CopyAdd->trigger();
    TQXCK231_1* e = l->entry();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(stockRow("K0101", "01"), "3/3/0/0/0") << "two sheets, two losses";
    delete l;
}

TEST_F(LossGainTest, DeletingASheetTakesItsDifferencesBackOutOfStock) {
    stock("K0101", "01", {5, 3});
    lossGainSheet("SY1", "01", "-1,2,0,0,0,0,0,0,0,0");
    EXPECT_EQ(stockRow("K0101", "01"), "4/5/0/0/0");
    TQXCK231* l = lossGainList();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "SY1"));
    sink->queueAnswer(true);
    l->Act_Delete->trigger();
    EXPECT_EQ(lastBatch(), "delete from d8301 Where (noid='SY1')");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301A"), 0);
    EXPECT_EQ(stockRow("K0101", "01"), "5/3/0/0/0");
    delete l;
}

TEST_F(LossGainTest, TheNumberIsCheckedUnderTheTransferWording) {
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    e->Edit1->setText("A B");
    qx::guard([e] { e->Edit1Exit(e->Edit1); });
    ASSERT_FALSE(sink->texts().isEmpty());
    EXPECT_TRUE(sink->texts().back().startsWith("调拔单号")) << sink->texts().back().toStdString();
    e->Act_Quit->trigger();
    delete l;
}

TEST_F(LossGainTest, HostileTextIsStoredAsTypedAndLettersAreRefused) {
    TQXCK231* l = lossGainList();
    TQXCK231_1* e = add(l);
    e->STRPARAM1->setText("D'Arcy");
    e->NOTE->setText(QString(10000, QChar(u'损')));
    EXPECT_EQ(e->NOTE->text().size(), 100);
    addLine(e, "K01", "01", {"1"});
    EXPECT_FALSE(typeCell(e, "S1", "-x"));
    EXPECT_EQ(sink->texts().back(), "'-x' 不是有效的数值!");
    sink->clear();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT STRPARAM1 FROM d8301 WHERE NOID='" + noid + "'"), "D'Arcy");
    EXPECT_EQ(scalar("SELECT NOTE FROM d8301 WHERE NOID='" + noid + "'"), QString(100, QChar(u'损')));
    delete l;
}

}  // namespace
