// What every entry of purchase returns, sales tickets and sales returns does, run for each kind
// by the kind's own entry test file: a new document's defaults, the taken number, the warehouse
// fixed by the first line, settlement methods, line checks, a zero quantity under an amount, the
// cost from the style on edit, quitting, hostile input of every head edit and line cell, and a
// screenshot.
#include <QFileInfo>
#include <QFocusEvent>
#include <QTest>

#include "framework/Screenshot.h"
#include "tests/documents/DocumentEntryTest.h"

namespace qx::test {

using qx::dataop::Call;

namespace {
const char* const kLineMessage =
    "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
    "请修正以上问题后再次尝试保存!";
}

TEST_P(DocumentEntryTest, ANewDocumentStartsTodayWithCashInTheUsersWarehouse) {
    TDocumentEntry* e = entry();
    EXPECT_EQ(e->EditMode, "Add");
    EXPECT_FALSE(e->Edit1->text().isEmpty());
    EXPECT_LE(e->Edit1->text().size(), 12);
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->CK_NAME->text(), "总仓");
    EXPECT_EQ(e->JY_ID->text(), "1");
    EXPECT_EQ(e->JY_NAME->text(), "现金");
    for (QLineEdit* edit :
         {static_cast<QLineEdit*>(e->KH_GYS_ID), static_cast<QLineEdit*>(e->SEND_ID),
          static_cast<QLineEdit*>(e->YW_ID), e->NOTE})
        EXPECT_EQ(edit->text(), "") << edit->objectName().toStdString();
    EXPECT_EQ(e->EDATE->text(), "");
    EXPECT_EQ(e->focusWidget(), e->KH_GYS_ID);
    EXPECT_TRUE(e->AdoQry_Main->IsEmpty());
    EXPECT_EQ(e->send_no, nullptr);  // none of these documents has a delivery note number
}

TEST_P(DocumentEntryTest, CopyAddCopiesTheHeadWithANewNumberAndNoChangeDate) {
    exec("UPDATE " + GetParam().headTable + " SET EDATE='2026-03-07 10:00:00'");
    TDocumentEntry* e = entry("CopyAdd");
    EXPECT_EQ(e->EditMode, "CopyAdd");
    EXPECT_NE(e->Edit1->text(), GetParam().existing);
    EXPECT_EQ(e->KH_GYS_ID->text(), GetParam().partner);
    EXPECT_EQ(e->NOTE->text(), "首批");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-05");
    EXPECT_EQ(e->EDATE->text(), "");
    EXPECT_EQ(e->LockName, "");
    EXPECT_TRUE(e->Edit1->isEnabled());
}

TEST_P(DocumentEntryTest, ATakenNumberIsReplacedSilentlyAndTheNumberHasItsChecks) {
    TDocumentEntry* e = entry();
    e->Edit1->setText(GetParam().existing);
    calls.clear();
    e->Edit1Exit(e->Edit1);
    EXPECT_NE(e->Edit1->text(), GetParam().existing);
    EXPECT_TRUE(sink->texts().isEmpty());
    ASSERT_FALSE(statements(Call::Kind::OpenSql).empty());
    EXPECT_EQ(statements(Call::Kind::OpenSql).front(),
              "SELECT NOID FROM " + GetParam().headTable.toLower() + " WHERE NOID='" +
                  GetParam().existing + "'");
    e->Edit1->setText("N 1");
    EXPECT_ANY_THROW(e->Edit1Exit(e->Edit1));
    EXPECT_EQ(sink->texts().back(), GetParam().numberCaption + "不能包含空格!");
    e->Edit1->setText("N'1");
    EXPECT_ANY_THROW(e->Edit1Exit(e->Edit1));
    EXPECT_EQ(sink->texts().back(), GetParam().numberCaption + "不能包含引号!");
}

TEST_P(DocumentEntryTest, TheWarehouseIsFixedByTheFirstLineAndFreeForTheNextDocument) {
    TDocumentEntry* e = entry();
    EXPECT_TRUE(e->CK_ID->isEnabled());
    addLine(e, "K01", "02", {"1"}, GetParam().price);
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_FALSE(e->CK_NAME->isEnabled());
    // The warehouse edit gives the focus to the grid when the lines change.
    e->CK_ID->setEnabled(true);
    e->activateWindow();
    QApplication::setActiveWindow(e);
    e->CK_ID->setFocus();
    ASSERT_TRUE(e->CK_ID->hasFocus());
    e->DataSourceDataChange(e->AdoQry_Main, nullptr);
    EXPECT_TRUE(e->DBGridEh->hasFocus());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    e->Act_Quit->trigger();
    EXPECT_TRUE(entry()->CK_ID->isEnabled());
}

TEST_P(DocumentEntryTest, AUserWritingToOneWarehouseKeepsTheDefaultOne) {
    G_CKCOUNT_W = 1;
    TDocumentEntry* e = entry();
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_FALSE(e->CK_NAME->isEnabled());
}

TEST_P(DocumentEntryTest, SettlementMethodTwoIsOfferedOnSalesOnly) {
    TDocumentEntry* e = newDocument();
    EXPECT_EQ(e->SettlementLink->Pick("2"), GetParam().settlementTwo);
    e->JY_ID->setFocus();
    e->JY_ID->clear();
    QTest::keyClicks(e->JY_ID, "2");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    if (GetParam().settlementTwo) {
        EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
        EXPECT_EQ(
            scalar("SELECT JY_ID FROM " + GetParam().headTable + " WHERE NOID='" + noid + "'"),
            "2");
    } else {
        ASSERT_FALSE(sink->texts().isEmpty());
        EXPECT_EQ(sink->texts().back(), "结算方式代码 2 不存在!");
        EXPECT_EQ(
            count("SELECT COUNT(*) FROM " + GetParam().headTable + " WHERE NOID='" + noid + "'"),
            0);
        e->Modified = false;
    }
}

TEST_P(DocumentEntryTest, LinesWithoutQuantityOrWithANegativeSizeAreRefused) {
    TDocumentEntry* e = entry();
    fillHead(e, GetParam().partner);
    addLine(e, "K01", "02", {}, GetParam().price);  // all zero
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{kLineMessage});
    sink->clear();
    ASSERT_TRUE(typeCell(e, "S0", "-1"));
    ASSERT_TRUE(typeCell(e, "S1", "5"));  // the total is positive, a size is not
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(cell(e, "STOT"), "4");
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{kLineMessage});
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    EXPECT_TRUE(e->isVisible());
    e->Modified = false;
}

TEST_P(DocumentEntryTest, AnAmountOnALineWithoutQuantityLeavesThePriceAndSaysNothing) {
    TDocumentEntry* e = entry();
    addLine(e, "K01", "02", {}, GetParam().price);
    sink->clear();
    ASSERT_TRUE(typeCell(e, "STOT", "0"));
    EXPECT_TRUE(typeCell(e, "SMONEY", "150"));
    EXPECT_EQ(cell(e, "SJ"), GetParam().price);
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 150);
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(sink->errors().isEmpty());
    e->Modified = false;
    e->AdoQry_Main->Cancel();
}

TEST_P(DocumentEntryTest, EditReplacesTheLinesAndTakesTheCostFromTheStyleAgain) {
    const QString lines = GetParam().headTable + "A WHERE NOID='" + GetParam().existing + "'";
    ASSERT_EQ(scalar("SELECT DJ FROM " + lines), "0");  // written without cost
    setCost("K01", "30");
    for (int round = 0; round < 2; ++round) {
        TDocumentEntry* e = entry("Edit");
        ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
        e->Act_Save->trigger();
        ASSERT_TRUE(list_->AdoQry_Main->Locate("noid", GetParam().existing));
    }
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + lines), 1);
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM " + lines),
              "30.00|90.00");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0101'"), 1);
}

TEST_P(DocumentEntryTest, QuitClosesAnOpenPickListFirst) {
    TDocumentEntry* e = entry();
    e->KH_GYS_ID->ButtonClick();
    EXPECT_TRUE(e->PartnerLink->Visible());
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->PartnerLink->Visible());
    EXPECT_TRUE(e->isVisible());
    e->Act_Quit->trigger();
    EXPECT_FALSE(e->isVisible());
}

TEST_P(DocumentEntryTest, ADateBeforeTheOpenPeriodIsRefusedWhenTheDateIsLeftAndByTheDatabase) {
    exec("UPDATE sys_co SET CK_END_DATE='2026-03-10'");
    TDocumentEntry* e = newDocument();
    e->BDATE->SetText("2026-03-09");
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(e->BDATE, &out);
    EXPECT_EQ(sink->texts(), QStringList{"单据日期不能早于本期开始日期2026-03-10!"});
    // Saved anyway, the database refuses it and the screen keeps what was typed.
    sink->clear();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_TRUE(sink->errors()[0].contains("属于已结账期间")) << sink->errors()[0].toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + GetParam().headTable + " WHERE NOID='" + noid + "'"),
              0);
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    e->Modified = false;
}

// ---- hostile input

TEST_P(DocumentEntryTest, QuotesInHeadAndLinesAreStoredAsTyped) {
    const QString head = GetParam().headTable;
    TDocumentEntry* e = newDocument();
    const QString remark = "O'Neil's return'); DROP TABLE " + head + ";--";
    e->NOTE->setText(remark);
    ASSERT_TRUE(typeCell(e, "NOTE", "it's {number}"));
    e->AdoQry_Main->CheckBrowseMode();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT NOTE FROM " + head + " WHERE NOID='" + noid + "'"), remark);
    EXPECT_EQ(scalar("SELECT NOTE FROM " + head + "A WHERE NOID='" + noid + "'"), "it's {number}");
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + head), 2);
}

TEST_P(DocumentEntryTest, VeryLongTextsAreCutToTheLengthsOfEditsAndCells) {
    const QString head = GetParam().headTable;
    TDocumentEntry* e = newDocument();
    for (QLineEdit* edit : e->Panel_Head->findChildren<QLineEdit*>()) {
        if (edit->objectName().isEmpty() || edit->objectName().startsWith("qt_") ||
            !edit->isEnabled())
            continue;
        const int max = edit->maxLength();
        EXPECT_LE(max, 100) << edit->objectName().toStdString();
        const QString kept = edit->text();
        edit->setText(QString(10000, QChar(u'长')));
        EXPECT_EQ(edit->text().size(), max) << edit->objectName().toStdString();
        if (edit != e->NOTE) edit->setText(kept);
    }
    ASSERT_TRUE(typeCell(e, "NOTE", QString(10000, 'x')));
    e->AdoQry_Main->CheckBrowseMode();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT NOTE FROM " + head + " WHERE NOID='" + noid + "'"),
              QString(100, QChar(u'长')));
    EXPECT_EQ(scalar("SELECT NOTE FROM " + head + "A WHERE NOID='" + noid + "'"),
              QString(100, 'x'));
}

TEST_P(DocumentEntryTest, LettersInNumberCellsAreRefusedAndTheCellsKeepTheirValues) {
    TDocumentEntry* e = entry();
    addLine(e, "K01", "02", {"3"}, GetParam().price);
    auto* model = e->DBGridEh->model();
    for (const QString& field : GetParam().numberFields) {
        const QString before = cell(e, field);
        sink->clear();
        EXPECT_FALSE(typeCell(e, field, "3x")) << field.toStdString();
        EXPECT_EQ(cell(e, field), before) << field.toStdString();
        const QModelIndex index = model->index(e->AdoQry_Main->CurrentRow(), e->DBGridEh->ColumnByField(field)->Index());
        if (!(model->flags(index) & Qt::ItemIsEditable)) {
            EXPECT_TRUE(sink->texts().isEmpty()) << field.toStdString() << ": a locked cell refuses silently";
            continue;
        }
        ASSERT_FALSE(sink->texts().isEmpty()) << field.toStdString();
        if (field.compare("STOT", Qt::CaseInsensitive) == 0)  // the total cell takes ratios ("3x12")
            EXPECT_TRUE(sink->texts().back().contains("'3x'")) << sink->texts().back().toStdString();
        else
            EXPECT_EQ(sink->texts().back(), "'3x' 不是有效的数值!");
    }
    e->AdoQry_Main->Cancel();
    e->Modified = false;
}

TEST_P(DocumentEntryTest, LettersInTheDateChangeNothing) {
    TDocumentEntry* e = entry();
    const QString before = e->BDATE->Text();
    e->BDATE->SetText("abcd-ef-gh");
    EXPECT_EQ(e->BDATE->Text(), before);
    e->BDATE->setFocus();
    QTest::keyClicks(e->BDATE, "x'y");
    EXPECT_EQ(e->BDATE->Text(), before);
    EXPECT_TRUE(sink->errors().isEmpty());
}

TEST_P(DocumentEntryTest, UnknownCodesAreRefusedWithTheLookupsMessage) {
    const QString head = GetParam().headTable;
    TDocumentEntry* e = entry();
    fillHead(e, GetParam().partner);
    // The warehouse, typed before the first line, is checked when it is left.
    e->activateWindow();
    QApplication::setActiveWindow(e);
    e->CK_ID->setFocus();
    e->CK_ID->clear();
    QTest::keyClicks(e->CK_ID, "Z'");
    sink->clear();
    e->NOTE->setFocus();
    ASSERT_FALSE(sink->texts().isEmpty());
    EXPECT_EQ(sink->texts().back(), "仓 库代码 Z' 不存在!");
    e->CK_ID->setText("01");
    // An unknown style on a line.
    addLine(e, "K01", "02", {"1"}, GetParam().price);
    EXPECT_FALSE(typeCell(e, "K_ID", "ZZ9'"));
    EXPECT_EQ(sink->texts().back(), "款号 ZZ9' 不存在!");
    EXPECT_EQ(cell(e, "K_ID"), "K01");
    // A colour the style does not come in.
    EXPECT_FALSE(typeCell(e, "COL_NAME", "9'9"));
    EXPECT_EQ(sink->texts().back(), "款号 K01 没有颜色 9'9!");
    EXPECT_EQ(cell(e, "COL_ID"), "02");
    e->AdoQry_Main->Cancel();
    const QString noid = e->Edit1->text();
    const QList<QPair<TLinkEdit*, QString>> cases = {{e->KH_GYS_ID, GetParam().partnerMessage},
                                                     {e->SEND_ID, "送货方式代码 Z' 不存在!"},
                                                     {e->YW_ID, GetParam().salespersonMessage},
                                                     {e->JY_ID, "结算方式代码 Z' 不存在!"}};
    for (const auto& [edit, message] : cases) {
        const QString kept = edit->text();
        edit->clear();
        edit->setFocus();
        QTest::keyClicks(edit, "Z'");
        sink->clear();
        e->Act_Save->trigger();
        ASSERT_FALSE(sink->texts().isEmpty()) << message.toStdString();
        EXPECT_EQ(sink->texts().back(), message);
        EXPECT_TRUE(sink->errors().isEmpty());
        EXPECT_EQ(count("SELECT COUNT(*) FROM " + head + " WHERE NOID='" + noid + "'"), 0);
        edit->setText(kept);
    }
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM " + head + " WHERE NOID='" + noid + "'"), 1);
}

// ---- how it looks

TEST_P(DocumentEntryTest, AScreenshotOfANewDocumentWithThreeLines) {
    TDocumentEntry* e = entry();
    fillHead(e, GetParam().partner, "换季整理");
    const QString other = QString::number(GetParam().price.toInt() + 70);
    addLine(e, "K01", "02", {"3", "2", "4", "1"}, GetParam().price);
    addLine(e, "K02", "03", {"", "2", "3", "1"}, other);
    addLine(e, "K01", "01", {"1", "1", "1", "1", "1"}, GetParam().price);
    EXPECT_EQ(e->DBGridEh->GetSumValue("STOT"), 21);
    e->resize(1280, 480);
    const QString file = qx::saveScreenshot(e, GetParam().screenshot);
    EXPECT_FALSE(file.isEmpty());
    EXPECT_GT(QFileInfo(file).size(), 10000) << file.toStdString();
    e->Modified = false;
    e->AdoQry_Main->Cancel();
}

}  // namespace qx::test
