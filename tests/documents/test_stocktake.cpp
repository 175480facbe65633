// Stocktaking: count sheets (list, filter, entry) and the summary that turns the open sheets of a
// warehouse into a loss/gain sheet, checked by the statements sent and by the stock they leave.
#include <QImage>
#include <QPainter>
#include <QTest>

#include "tests/documents/StockDocumentsFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class StocktakeTest : public qx::test::StockDocumentsTest {
protected:
    TQXCK235* list() { return stocktakeList(); }
    TQXCK235_1* add(TQXCK235* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    TQXCK235_1* edit(TQXCK235* l, const QString& noid) {
        EXPECT_TRUE(l->AdoQry_Main->Locate("noid", noid));
        l->Act_Edit->trigger();
        return l->entry();
    }
    // Stock 5/3 of K01 red; counted 2 on one sheet and 2+3 on another; K02 blue 0/2 in stock and
    // not counted; K01 black counted but without a stock row.
    void countTheUsualShelves() {
        stock("K0101", "01", {5, 3});
        stock("K0203", "01", {0, 2});
        countSheet("PD1", "01", {{"K01", "01", {2}}});
        countSheet("PD2", "01", {{"K01", "01", {2, 3}}, {"K01", "02", {0, 4}}});
    }
    qx::test::GoldenStatements entryGolden{"documents/golden/Frmqxck235_1.sql"};
    qx::test::GoldenStatements summaryGolden{"documents/golden/Frmqxck235_2.sql"};
};

// ---- list and filter

TEST_F(StocktakeTest, TheListShowsEachSheetWithItsStateAndLossGainNumber) {
    countSheet("PD1", "01", {{"K01", "01", {2}}});
    countSheet("PD9", "01", {{"K01", "01", {1}}}, 1);
    exec("UPDATE d8300 SET D8301NOID='SY9' WHERE NOID='PD9'");
    TQXCK235* l = list();
    EXPECT_EQ(l->windowTitle(), "盘点录入");
    ASSERT_EQ(l->AdoQry_Main->RecordCount(), 2);
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD1"));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("T_NAME")->AsString(), "盘点中");
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD9"));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("T_NAME")->AsString(), "已汇总");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("D8301NOID")->AsString(), "SY9");
    EXPECT_EQ(l->DBGridEh->ColumnByField("T_NAME")->Title, "状态");
    EXPECT_EQ(l->DBGridEh->ColumnByField("D8301NOID")->Title, "损益单号");
    EXPECT_EQ(l->DeleteSql, "delete from d8300 Where (noid=%s)");
    EXPECT_EQ(l->PriceFields, "dj");
    EXPECT_EQ(l->MoneyFields, "money");
    EXPECT_EQ(l->QtyFields, "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT");
    // The lines come with their prices fixed to zero.
    l->RefreshDetail();
    EXPECT_EQ(l->AdoQry_Detail->RecordCount(), 1);
    EXPECT_DOUBLE_EQ(l->AdoQry_Detail->FieldByName("SJ")->AsFloat(), 0);
    delete l;
}

TEST_F(StocktakeTest, TheHeadStatementJoinsTheSignedInUsersRightsWhenTheyAreEnforced) {
    countSheet("PD1", "01", {{"K01", "01", {2}}});
    countSheet("PD2", "02", {{"K01", "01", {2}}});
    G_CHKCK = 1;
    TQXCK235* l = list();
    EXPECT_TRUE(l->HeadSql.contains(
        " INNER JOIN  sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='U1') INNER JOIN  SYS_USER"))
        << l->HeadSql.toStdString();
    ASSERT_EQ(l->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("NOID")->AsString(), "PD1");
    delete l;
}

TEST_F(StocktakeTest, TheFilterFindsASheetByItsLossGainNumber) {
    countSheet("PD1", "01", {{"K01", "01", {2}}}, 1);
    countSheet("PD2", "01", {{"K01", "01", {2}}}, 1);
    exec("UPDATE d8300 SET D8301NOID='SY''1' WHERE NOID='PD1'");
    TQXCK235* l = stocktakeList([](TDocumentFilter* f) {
        f->findChild<QLineEdit*>("D8301NOID")->setText("SY'1");
        f->Edit2->setText("PD9");
    });
    auto* f = l->filter();
    EXPECT_TRUE(f->Condition.contains("D8300.D8301NOID")) << f->Condition.toStdString();
    EXPECT_TRUE(f->Condition.endsWith("  AND (d8300.NOID<='PD9')")) << f->Condition.toStdString();
    EXPECT_TRUE(described(f).startsWith(" ●开单日期："));
    EXPECT_TRUE(described(f).contains(" ●损益单号：SY'1"));
    EXPECT_TRUE(described(f).contains(" ●单号： 至 PD9"));
    ASSERT_EQ(l->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("NOID")->AsString(), "PD1");
    delete l;
}

// ---- entry

TEST_F(StocktakeTest, TheEntryHeadHasItsCaptions) {
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    EXPECT_EQ(e->windowTitle(), "盘点录入");
    EXPECT_EQ(e->Panel_Head->CaptionOf(e->Edit1)->text(), "录入单号");
    EXPECT_EQ(e->Edit1->maxLength(), 12);
    EXPECT_EQ(e->STRPARAM1->maxLength(), 16);
    EXPECT_EQ(e->NOTE->maxLength(), 100);
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->KH_GYS_ID, nullptr);
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ"), nullptr) << "counted quantities carry no price";
    e->Act_Quit->trigger();
    delete l;
}

TEST_F(StocktakeTest, AddSendsTheInsertWithoutASemicolonAfterTheHead) {
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    e->STRPARAM1->setText("李四");
    e->NOTE->setText("货架A");
    addLine(e, "K01", "01", {"2"});
    addLine(e, "K02", "03", {"", "-1"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(entryGolden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().mode, "Add");
    EXPECT_EQ(lastExec().noid, noid);
    EXPECT_EQ(scalar("SELECT T FROM d8300 WHERE NOID='" + noid + "'"), "0");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8300A WHERE NOID='" + noid + "' AND K_ID='K01'"), "16");
    // The list row shows the new sheet counting.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t_name")->AsString(), "盘点中");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("STRPARAM1")->AsString(), "李四");
    delete l;
}

TEST_F(StocktakeTest, ACountSheetNeverPostsStockNorMakesSkuOrStockRows) {
    stock("K0101", "01", {5, 3});
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    addLine(e, "K01", "01", {"1"});
    addLine(e, "K02", "03", {"4"});
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(stockRow("K0101", "01"), "5/3/0/0/0");
    EXPECT_EQ(stockRow("K0203", "01"), "none");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801"), 3);
    delete l;
}

TEST_F(StocktakeTest, EditingASummarisedSheetPutsItBackToCountingAndUnlinksIt) {
    countSheet("PD1", "01", {{"K01", "01", {2}}}, 1);
    exec("UPDATE d8300 SET D8301NOID='SY1' WHERE NOID='PD1'");
    exec("INSERT INTO d8301 (NOID, T, CK_ID, BDATE, USER_ID, NOTE) VALUES ('SY1', 1, '01', '2026-03-10', 'U1', '由盘点录入汇总自动生成')");
    TQXCK235* l = list();
    TQXCK235_1* e = edit(l, "PD1");
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_EQ(e->STRPARAM1->text(), "李四");
    addLine(e, "K01", "02", {"", "4"});
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(entryGolden.text("Edit"), lastBatch()));
    EXPECT_EQ(scalar("SELECT T FROM d8300 WHERE NOID='PD1'"), "0");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300 WHERE NOID='PD1' AND D8301NOID IS NULL"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300A WHERE NOID='PD1'"), 2);
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD1"));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t_name")->AsString(), "盘点中");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("d8301noid")->AsString(), "");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t")->AsInteger(), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301 WHERE NOID='SY1'"), 1) << "the loss/gain sheet is left as it is";
    delete l;
}

TEST_F(StocktakeTest, CopyAddMakesANewCountingSheetWithTheLines) {
    countSheet("PD1", "01", {{"K01", "01", {2}}}, 1);
    TQXCK235* l = list();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD1"));
    l->Act_CopyAdd->trigger();
    TQXCK235_1* e = l->entry();
    const QString noid = e->Edit1->text();
    EXPECT_NE(noid, "PD1");
    EXPECT_EQ(e->EDATE->text(), "");
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(entryGolden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(lastExec().mode, "CopyAdd");
    EXPECT_EQ(scalar("SELECT T FROM d8300 WHERE NOID='" + noid + "'"), "0");
    delete l;
}

TEST_F(StocktakeTest, ThePermissionAnswerRunsNoBatch) {
    countSheet("PD1", "01", {{"K01", "01", {2}}});
    EXPECT_EQ(ExecSql("235", "PD1", "T", "DELETE FROM d8300", 65535, false, true, false, true), "Y");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300"), 1) << "the mode asks; it runs nothing";
    const QString unknown = ExecSql("235", "NO'PE", "T", "", 65535, false, true, false, true);
    EXPECT_NE(unknown, "Y");
    EXPECT_TRUE(unknown.contains("NO'PE")) << unknown.toStdString();
    exec("INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, USER_ID, Y) VALUES ('DB1', 1, '01', '02', '2026-03-12', 'U1', 0)");
    EXPECT_NE(ExecSql("235", "PD1", "T", "", 65535, false, true, false, true), "Y") << "sent from the warehouse, not received";
    exec("UPDATE D8303 SET T=0 WHERE NOID='DB1'");
    EXPECT_EQ(ExecSql("235", "PD1", "T", "", 65535, false, true, false, true), "Y") << "not yet effective: nothing left";
}

TEST_F(StocktakeTest, AnAllZeroLineIsRefusedAndANegativeCountIsAccepted) {
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    addLine(e, "K01", "01", {"-2"});
    addLine(e, "K02", "03", {"0"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"表格中尺码的数量不允许全部为0,(如本单无该款该色,请将本行删除)!\r\n"
                                         "请修正以上问题后再次尝试保存!"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(e->AdoQry_Main->RecNo(), 2) << "the offending line is the current one";
    // The zero line corrected, the negative count saves.
    sink->clear();
    ASSERT_TRUE(typeCell(e, "S1", "1"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT S0 FROM d8300A WHERE NOID='" + noid + "' AND K_ID='K01'"), "-2");
    delete l;
}

TEST_F(StocktakeTest, TheNumberIsCheckedUnderItsCaptionAndATakenOneIsReplaced) {
    countSheet("PD1", "01", {{"K01", "01", {2}}});
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    e->Edit1->setText("PD1");
    calls.clear();
    e->Edit1Exit(e->Edit1);
    EXPECT_NE(e->Edit1->text(), "PD1");
    ASSERT_FALSE(statements(Call::Kind::OpenSql).empty());
    EXPECT_EQ(statements(Call::Kind::OpenSql).front(), "SELECT NOID FROM d8300 WHERE NOID='PD1'");
    e->Edit1->setText("A B");
    qx::guard([e] { e->Edit1Exit(e->Edit1); });
    ASSERT_FALSE(sink->texts().isEmpty());
    EXPECT_TRUE(sink->texts().back().startsWith("录入单号")) << sink->texts().back().toStdString();
    e->Act_Quit->trigger();
    delete l;
}

// ---- hostile input

TEST_F(StocktakeTest, QuotesAndLongTextInEveryEditAreStoredAsTypedOrCut) {
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    e->STRPARAM1->setText(QString(10000, 'x'));
    EXPECT_EQ(e->STRPARAM1->text().size(), 16);
    e->STRPARAM1->setText("O'Neil");
    e->NOTE->setText("'); DELETE FROM d8300;--");
    addLine(e, "K01", "01", {"1"});
    ASSERT_TRUE(typeCell(e, "NOTE", "it's"));
    e->AdoQry_Main->CheckBrowseMode();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT STRPARAM1 FROM d8300 WHERE NOID='" + noid + "'"), "O'Neil");
    EXPECT_EQ(scalar("SELECT NOTE FROM d8300 WHERE NOID='" + noid + "'"), "'); DELETE FROM d8300;--");
    EXPECT_EQ(scalar("SELECT NOTE FROM d8300A WHERE NOID='" + noid + "'"), "it's");
    delete l;
}

TEST_F(StocktakeTest, LettersInACountAndUnknownCodesAreRefused) {
    TQXCK235* l = list();
    TQXCK235_1* e = add(l);
    addLine(e, "K01", "01", {"3"});
    EXPECT_FALSE(typeCell(e, "S1", "2x"));
    EXPECT_EQ(sink->texts().back(), "'2x' 不是有效的数值!");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 3);
    e->Act_AddLine->trigger();
    EXPECT_FALSE(typeCell(e, "K_ID", "Z'9"));
    EXPECT_EQ(sink->texts().back(), "款号 Z'9 不存在!");
    e->AdoQry_Main->Cancel();
    e->CK_ID->setFocus();
    e->CK_ID->clear();
    QTest::keyClicks(e->CK_ID, "9'");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts().back(), "仓 库代码 9' 不存在!");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300 WHERE NOID='" + noid + "'"), 0);
    e->Modified = false;
    delete l;
}

// ---- the summary

TEST_F(StocktakeTest, ThePermissionIsAskedWithTheSheetsNumberBeforeTheDialogOpens) {
    countTheUsualShelves();
    TQXCK235* l = list();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD2"));
    calls.clear();
    bool opened = false;
    summarise(l, [&opened](TQXCK235_2* s) {
        opened = true;
        EXPECT_EQ(s->windowTitle(), "盘点录入数据汇总");
        EXPECT_TRUE(s->RB_Part->isChecked());
        EXPECT_EQ(s->RB_Part->text(), "部分盘点");
        EXPECT_EQ(s->RB_All->text(), "全盘");
        EXPECT_EQ(s->Label4->text(), "<<-选择一种盘点方式");
        EXPECT_EQ(s->Label5->text(), "确定 后系统将自动生成损益单");
        EXPECT_EQ(s->Label6->text(), "所有盘点录入单将不可再进行更改");
    });
    EXPECT_TRUE(opened);
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front().kind, Call::Kind::ExecSql);
    EXPECT_EQ(calls.front().mode, "T");
    EXPECT_EQ(calls.front().noid, "PD2");
    EXPECT_EQ(calls.front().funcNo, "235");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301"), 0) << "cancelled: nothing written";
    delete l;
}

TEST_F(StocktakeTest, ATransferInTransitRefusesTheSummaryWithItsReason) {
    countTheUsualShelves();
    exec("INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, USER_ID, Y) VALUES ('DB1', 1, '02', '01', '2026-03-12', 'U1', 0)");
    TQXCK235* l = list();
    bool opened = false;
    summarise(l, [&opened](TQXCK235_2*) { opened = true; });
    EXPECT_FALSE(opened);
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_TRUE(sink->texts()[0].contains("在途")) << sink->texts()[0].toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301"), 0);
    // Once the goods have arrived, the warehouse may be summarised.
    exec("UPDATE D8303 SET Y=1 WHERE NOID='DB1'");
    summarise(l, [&opened](TQXCK235_2*) { opened = true; });
    EXPECT_TRUE(opened);
    delete l;
}

TEST_F(StocktakeTest, TheSummaryStatementIsTheOneWrittenForPartialAndFull) {
    countTheUsualShelves();
    TQXCK235* l = list();
    summarise(l, [this](TQXCK235_2* s) {
        EXPECT_TRUE(qx::test::sameStatements(summaryGolden.text("Partial"), statements(Call::Kind::OpenSql).back()));
        s->RB_All->setChecked(true);
        s->btn_ref->click();
        EXPECT_TRUE(qx::test::sameStatements(summaryGolden.text("Full"), statements(Call::Kind::OpenSql).back()));
    });
    EXPECT_EQ(TQXCK235_2::SummaryQuery("01", false), summaryGolden.text("Partial").trimmed() + "  ");
    delete l;
}

TEST_F(StocktakeTest, APartialStocktakeWritesTheLossAndLeavesStockAsCounted) {
    countTheUsualShelves();
    TQXCK235* l = list();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD1"));
    summarise(l, [this](TQXCK235_2* s) {
        // Partial: only what was counted and has stock; the two sheets summed.
        ASSERT_EQ(s->AdoQry_Tmp->RecordCount(), 1);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("P0")->AsInteger(), 4);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("P1")->AsInteger(), 3);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("Y0")->AsInteger(), -1);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("Y1")->AsInteger(), 0);
        // Count against book: the one size the sheet will correct.
        ASSERT_EQ(s->AdoQry_Book->RecordCount(), 1);
        EXPECT_EQ(s->AdoQry_Book->FieldByName("K_ID")->AsString(), "K01");
        EXPECT_EQ(s->AdoQry_Book->FieldByName("COL_NAME")->AsString(), "红色");
        EXPECT_EQ(s->AdoQry_Book->FieldByName("SIZE_NAME")->AsString(), "S");
        EXPECT_EQ(s->AdoQry_Book->FieldByName("BOOK")->AsInteger(), 5);
        EXPECT_EQ(s->AdoQry_Book->FieldByName("COUNTED")->AsInteger(), 4);
        EXPECT_EQ(s->AdoQry_Book->FieldByName("DIFF")->AsInteger(), -1);
        sink->clear();
        s->btn_ok->click();
    });
    const QString sheet = newestLossGain();
    ASSERT_FALSE(sheet.isEmpty());
    EXPECT_TRUE(sheet.startsWith("218"));
    EXPECT_TRUE(qx::test::sameStatements(summaryGolden.text("Generate", {{"number", sheet}}), lastBatch()));
    EXPECT_EQ(lastExec().funcNo, "218");
    EXPECT_EQ(lastExec().mode, "Add");
    EXPECT_EQ(lastExec().noid, sheet);
    EXPECT_EQ(sink->texts(), QStringList{"系统已自动生成损溢单号 [" + sheet + "] 本次盘点结束!"});
    EXPECT_EQ(scalar("SELECT NOTE FROM d8301 WHERE NOID='" + sheet + "'"), "由盘点录入汇总自动生成");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + sheet + "'"), "-8") << "a loss at the cost price of 8";
    // The sheets are closed and name the loss/gain sheet; the stock equals the count.
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300 WHERE T=1 AND D8301NOID='" + sheet + "'"), 2);
    EXPECT_EQ(stockRow("K0101", "01"), "4/3/0/0/0");
    EXPECT_EQ(stockRow("K0203", "01"), "0/2/0/0/0") << "not counted, not touched in a partial stocktake";
    EXPECT_EQ(stockRow("K0102", "01"), "none") << "counted without a stock row: left out";
    // The list row shows the sheet summarised.
    EXPECT_EQ(l->AdoQry_Main->FieldByName("NOID")->AsString(), "PD1");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t_name")->AsString(), "已汇总");
    EXPECT_EQ(l->AdoQry_Main->FieldByName("d8301noid")->AsString(), sheet);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t")->AsInteger(), 1);
    delete l;
}

TEST_F(StocktakeTest, AFullStocktakeWritesOffWhatWasNotCounted) {
    countTheUsualShelves();
    TQXCK235* l = list();
    summarise(l, [](TQXCK235_2* s) {
        s->RB_All->setChecked(true);
        s->btn_ref->click();
        ASSERT_EQ(s->AdoQry_Tmp->RecordCount(), 2) << "every stock row, the uncounted one too";
        ASSERT_TRUE(s->AdoQry_Tmp->Locate("K_ID", "K02"));
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("Y1")->AsInteger(), -2);
        EXPECT_EQ(s->AdoQry_Book->RecordCount(), 2);
        s->btn_ok->click();
    });
    const QString sheet = newestLossGain();
    ASSERT_FALSE(sheet.isEmpty());
    EXPECT_TRUE(qx::test::sameStatements(summaryGolden.text("Generate full", {{"number", sheet}}), lastBatch()));
    EXPECT_EQ(stockRow("K0101", "01"), "4/3/0/0/0");
    EXPECT_EQ(stockRow("K0203", "01"), "0/0/0/0/0") << "uncounted in a full stocktake: nothing left";
    EXPECT_EQ(stockRow("K0102", "01"), "none");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + sheet + "' AND K_ID='K02'"), "-24");
    delete l;
}

TEST_F(StocktakeTest, OnlySheetsStillCountingOfTheWarehouseAreSummed) {
    stock("K0101", "01", {5, 3});
    countSheet("PD1", "01", {{"K01", "01", {5, 3}}});
    countSheet("PD8", "01", {{"K01", "01", {10}}}, 1);  // summarised before
    countSheet("PD9", "02", {{"K01", "01", {7}}});      // another warehouse
    TQXCK235* l = list();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "PD1"));
    summarise(l, [](TQXCK235_2* s) {
        ASSERT_EQ(s->AdoQry_Tmp->RecordCount(), 1);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("P0")->AsInteger(), 5);
        EXPECT_EQ(s->AdoQry_Book->RecordCount(), 0);
    });
    delete l;
}

TEST_F(StocktakeTest, NoDifferenceAsksAndClosesTheSheetsAloneOnYes) {
    stock("K0101", "01", {5, 3});
    countSheet("PD1", "01", {{"K01", "01", {5, 3}}});
    TQXCK235* l = list();
    sink->queueAnswer(true);
    summarise(l, [](TQXCK235_2* s) { s->btn_ok->click(); });
    EXPECT_EQ(sink->texts(),
              (QStringList{"本次汇总没有盈亏数量，单据不能保存(没有盈亏可以不保存)",
                           "是否将单据状态置为已处理?如果本次盘点结束请点【是】，如果还将再次编辑点【否】"}));
    EXPECT_EQ(sink->messages[1].kind, qx::ui::Message::Kind::Question);
    EXPECT_EQ(lastExec().mode, "E");
    EXPECT_TRUE(qx::test::sameStatements(summaryGolden.text("Close without a sheet"), lastBatch()));
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8300 WHERE NOID='PD1' AND T=1 AND D8301NOID IS NULL"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8301"), 0);
    EXPECT_EQ(stockRow("K0101", "01"), "5/3/0/0/0");
    delete l;
}

TEST_F(StocktakeTest, NoDifferenceAndNoLeavesEverythingAsItWas) {
    stock("K0101", "01", {5, 3});
    countSheet("PD1", "01", {{"K01", "01", {5, 3}}});
    TQXCK235* l = list();
    sink->queueAnswer(false);
    calls.clear();
    summarise(l, [](TQXCK235_2* s) { s->btn_ok->click(); });
    EXPECT_EQ(sink->texts().size(), 2);
    int batches = 0;
    for (const Call& c : calls) batches += c.kind == Call::Kind::ExecSql && c.mode != "T";
    EXPECT_EQ(batches, 0);
    EXPECT_EQ(scalar("SELECT T FROM d8300 WHERE NOID='PD1'"), "0");
    delete l;
}

TEST_F(StocktakeTest, TheStockSideIsReadThroughTheRightsOfUser01Only) {
    countTheUsualShelves();
    exec("DELETE FROM sys_user_ck WHERE USER_ID='01'");
    TQXCK235* l = list();  // the signed-in user U1 has the warehouse
    sink->queueAnswer(false);
    summarise(l, [](TQXCK235_2* s) {
        EXPECT_EQ(s->AdoQry_Tmp->RecordCount(), 0);
        s->btn_ok->click();
    });
    EXPECT_EQ(sink->texts().value(0), "本次汇总没有盈亏数量，单据不能保存(没有盈亏可以不保存)");
    delete l;
}

TEST_F(StocktakeTest, CountsOfSizeEightAndNineAreCrossedInTheTotals) {
    G_CM = 9;
    exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4, M5, M6, M7, M8, M9) VALUES "
         "('10', '童装', '90', '100', '110', '120', '130', '140', '150', '160', '170', '180')");
    exec("INSERT INTO d1800 (K_ID, M_ID, WL_NAME, DW_NAME, DJ, PP_ID, TMI, CHECK_KC) VALUES ('K10', '10', '童装', '件', 5, 'P1', 0, 0)");
    exec("INSERT INTO d1804 VALUES ('K10', '01')");
    exec("INSERT INTO D1801 VALUES ('K1001','K10','01')");
    stock("K1001", "01", {0});
    countSheet("PD1", "01", {{"K10", "01", {0, 0, 0, 0, 0, 0, 0, 0, 1, 0}}});
    TQXCK235* l = list();
    summarise(l, [](TQXCK235_2* s) {
        ASSERT_EQ(s->AdoQry_Tmp->RecordCount(), 1);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("P8")->AsInteger(), 0);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("P9")->AsInteger(), 1);
        EXPECT_EQ(s->AdoQry_Tmp->FieldByName("Y9")->AsInteger(), 1);
        s->gtimeTimer(s->gtime);
        EXPECT_EQ(s->DBGridEh->ColumnByField("P9")->Title, "盘点汇总数量|180");
        EXPECT_TRUE(s->DBGridEh->ColumnByField("Y9")->Visible);
        s->btn_ok->click();
    });
    const QString sheet = newestLossGain();
    EXPECT_EQ(scalar("SELECT S9 FROM d8301A WHERE NOID='" + sheet + "'"), "1");
    EXPECT_EQ(scalar("SELECT S8 FROM d8301A WHERE NOID='" + sheet + "'"), "0");
    delete l;
}

TEST_F(StocktakeTest, SizeColumnsAreTitledByTheCurrentRowAndHiddenAfterTheLastInUse) {
    countTheUsualShelves();
    TQXCK235* l = list();
    summarise(l, [](TQXCK235_2* s) {
        s->gtimeTimer(s->gtime);
        EXPECT_EQ(s->DBGridEh->ColumnByField("S0")->Title, "库存|S");
        EXPECT_EQ(s->DBGridEh->ColumnByField("P1")->Title, "盘点汇总数量|M");
        EXPECT_EQ(s->DBGridEh->ColumnByField("Y3")->Title, "盈亏|XL");
        EXPECT_EQ(s->DBGridEh->ColumnByField("k_id")->Title, "款号");
        EXPECT_EQ(s->DBGridEh->ColumnByField("wl_name")->Title, "品名");
        EXPECT_EQ(s->DBGridEh->ColumnByField("COL_NAME")->Title, "颜色");
        for (const char* hidden : {"S5", "P5", "Y9"}) EXPECT_FALSE(s->DBGridEh->ColumnByField(hidden)->Visible) << hidden;
        EXPECT_TRUE(s->DBGridEh->ColumnByField("Y4")->Visible);
        // Scrolling starts the timer that retitles.
        s->RB_All->setChecked(true);
        s->btn_ref->click();
        s->gtime->stop();
        s->AdoQry_Tmp->Next();
        EXPECT_TRUE(s->gtime->isActive());
        EXPECT_EQ(s->gtime->interval(), 500);
    });
    delete l;
}

TEST_F(StocktakeTest, ZeroCellsAreDrawnEmpty) {
    countTheUsualShelves();
    TQXCK235* l = list();
    summarise(l, [](TQXCK235_2* s) {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        TCellParams zero;
        zero.Text = "0";
        zero.Background = Qt::white;
        zero.Selected = true;
        ASSERT_TRUE(s->DBGridEh->OnDrawColumnCell(&painter, image.rect(), nullptr, zero));
        EXPECT_EQ(image.pixelColor(5, 5), QColor(201, 208, 226));
        zero.Selected = false;
        zero.Row = 0;
        ASSERT_TRUE(s->DBGridEh->OnDrawColumnCell(&painter, image.rect(), nullptr, zero));
        EXPECT_EQ(image.pixelColor(5, 5), QColor(Qt::white));
        TCellParams five = zero;
        five.Text = "5";
        EXPECT_FALSE(s->DBGridEh->OnDrawColumnCell(&painter, image.rect(), nullptr, five));
    });
    delete l;
}

TEST_F(StocktakeTest, AGeneratedSheetOpensInTheLossGainListLikeAHandWrittenOne) {
    countTheUsualShelves();
    TQXCK235* l = list();
    summariseAndGenerate(l, false);
    const QString sheet = newestLossGain();
    delete l;
    TQXCK231* gains = lossGainList();
    ASSERT_TRUE(gains->AdoQry_Main->Locate("noid", sheet));
    EXPECT_EQ(gains->AdoQry_Main->FieldByName("NOTE")->AsString(), "由盘点录入汇总自动生成");
    gains->Act_Edit->trigger();
    TQXCK231_1* e = gains->entry();
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("S0")->AsInteger(), -1);
    e->Act_Quit->trigger();
    delete gains;
}

TEST_F(StocktakeTest, AWarehouseWithMoreThanTenThousandStockRowsIsSummarisedOverTheFirst) {
    // 5001 colours of K01 and of K02 in stock, one piece each: 10002 stock rows.
    for (int from = 0; from <= 5000; from += 1000) {
        QStringList colours, skus, stocks;
        for (int i = from; i < std::min(from + 1000, 5001); ++i) {
            const QString c = QString("%1").arg(i, 4, 10, QChar('0'));
            colours << "('" + c + "','c" + c + "')";
            for (const char* style : {"K01", "K02"}) {
                skus << "('" + QString(style) + c + "','" + style + "','" + c + "')";
                stocks << "('" + QString(style) + c + "','01',1,1,1)";
            }
        }
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES " + colours.join(","));
        exec("INSERT INTO D1801 (WL_ID, K_ID, COL_ID) VALUES " + skus.join(","));
        exec("INSERT INTO d1802 (WL_ID, CK_ID, K0, B0, KC) VALUES " + stocks.join(","));
    }
    countSheet("PD1", "01", {{"K01", "0000", {1}}});
    TQXCK235* l = list();
    summarise(l, [](TQXCK235_2* s) {
        s->RB_All->setChecked(true);
        s->btn_ref->click();
        EXPECT_EQ(s->AdoQry_Tmp->RecordCount(), 10000);
        EXPECT_TRUE(s->AdoQry_Tmp->Locate("K_ID;COL_ID", QVariantList{"K02", "4998"}));
        EXPECT_FALSE(s->AdoQry_Tmp->Locate("K_ID;COL_ID", QVariantList{"K02", "4999"})) << "beyond the first 10000";
        EXPECT_FALSE(s->AdoQry_Tmp->Locate("K_ID;COL_ID", QVariantList{"K02", "5000"}));
        EXPECT_EQ(s->AdoQry_Book->RecordCount(), 9999) << "the counted one has no difference";
    });
    delete l;
}

}  // namespace
