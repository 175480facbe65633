// The transfer entry screen: opening in the three modes, the warehouses, checks, the save batch
// of every mode against its golden file, and what the batch does to the stock.
#include <QFocusEvent>
#include <QLabel>
#include <QTest>

#include "tests/documents/TransferFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;
using qx::test::TransferTest;

class TransferEntryTest : public TransferTest {
protected:
    void SetUp() override {
        TransferTest::SetUp();
        addTransfer("T0305", "2026-03-05", 1, "K0101", 3, 2);
        calls.clear();
    }
    TQXCK233* list() {
        TQXCK233* l = transfers();
        l->AdoQry_Main->Locate("noid", "T0305");
        return l;
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck233_1.sql"};
};

// ---- opening

TEST_F(TransferEntryTest, AddStartsAtTheUsersWarehouseWithAnEmptyReceivingOne) {
    TQXCK233* l = list();
    l->Act_Add->trigger();
    TQXCK233_1* e = l->entry();
    EXPECT_EQ(e->Caption(), "调拨单");
    EXPECT_EQ(e->FuncNo, "217");
    EXPECT_TRUE(e->Edit1->text().startsWith("217"));
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->CK_NAME->text(), "总仓");
    EXPECT_TRUE(e->CK_ID->isEnabled());
    EXPECT_EQ(e->CK_ID_IN->text(), "");
    EXPECT_EQ(e->STRPARAM1->text(), "");
    EXPECT_EQ(e->Y_WC->text(), "");
    EXPECT_EQ(e->Y_NOTE->text(), "");
    EXPECT_EQ(e->focusWidget(), e->CK_ID);
    // The cost is never shown; the receipt columns follow the size columns.
    EXPECT_EQ(e->DBGridEh->ColumnByField("DJ"), nullptr);
    EXPECT_EQ(e->DBGridEh->ColumnByField("MONEY"), nullptr);
    for (int i = 0; i < 10; ++i) {
        TColumnEh* y = e->DBGridEh->ColumnByField("Y" + QString::number(i));
        ASSERT_NE(y, nullptr) << i;
        EXPECT_EQ(y->Title, "收货填写|-");
        EXPECT_EQ(y->Visible, e->DBGridEh->ColumnByField("S" + QString::number(i))->Visible) << i;
    }
    EXPECT_EQ(e->DBGridEh->ColumnByField("YTOT")->Title, "收货填写|合计");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ")->Title, "吊牌");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->DisplayFormat, "0.00");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Footer.ValueType, fvtSum);
    const QStringList titles = e->DBGridEh->VisibleTitles();
    EXPECT_LT(titles.indexOf("备注"), titles.indexOf("收货填写|合计"));
    delete l;
}

TEST_F(TransferEntryTest, HeadControlsHaveTheirCaptionsAndLengths) {
    TQXCK233_1 e(nullptr);
    struct Expect {
        QWidget* control;
        const char* caption;
        int max;
    };
    for (const Expect& x : {Expect{e.Edit1, "调拨单号", 12}, Expect{e.CK_ID, "仓    库", 4},
                            Expect{e.CK_ID_IN, "调入仓库", 4}, Expect{e.STRPARAM1, "经手", 16},
                            Expect{e.NOTE, "备    注", 100}}) {
        ASSERT_NE(e.Panel_Head->CaptionOf(x.control), nullptr) << x.caption;
        EXPECT_EQ(e.Panel_Head->CaptionOf(x.control)->text(), x.caption);
        EXPECT_EQ(qobject_cast<QLineEdit*>(x.control)->maxLength(), x.max) << x.caption;
    }
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.BDATE)->text(), "开单日期");
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.EDATE)->text(), "更改日期");
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.Y_WC)->text(), "收货误差数量：");
    EXPECT_EQ(e.Panel_Head->CaptionOf(e.Y_NOTE)->text(), "备注：");
    EXPECT_EQ(e.FuncNo, "217");
}

TEST_F(TransferEntryTest, EditFillsTheHeadFromTheListAndLocksNumberAndSendingWarehouse) {
    exec("UPDATE D8303 SET EDATE='2026-03-07 10:00:00', Y_WC=1, Y_NOTE='少一件' WHERE NOID='T0305'");
    TQXCK233* l = list();
    l->Act_Refresh->trigger();
    l->Act_Edit->trigger();
    TQXCK233_1* e = l->entry();
    EXPECT_EQ(e->Edit1->text(), "T0305");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->CK_ID_IN->text(), "02");
    EXPECT_EQ(e->CK_NAME_IN->text(), "东门店");
    EXPECT_EQ(e->STRPARAM1->text(), "李四");
    EXPECT_EQ(e->NOTE->text(), "首批");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-05");
    EXPECT_EQ(e->EDATE->text(), "2026-03-07");
    EXPECT_EQ(e->Y_WC->text(), "1");
    EXPECT_EQ(e->Y_NOTE->text(), "少一件");
    EXPECT_EQ(e->LockName, "EDIT1,CK_ID");
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_TRUE(e->CK_ID_IN->isEnabled());
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    // The sender does not type what the receiver counts.
    const auto flags = e->DBGridEh->model()->flags(
        e->DBGridEh->model()->index(0, e->DBGridEh->ColumnByField("Y0")->Index()));
    EXPECT_FALSE(flags & Qt::ItemIsEditable);
    delete l;
}

TEST_F(TransferEntryTest, CopyAddStartsAFreshHeadWithTheLinesCopied) {
    TQXCK233* l = list();
    l->Act_CopyAdd->trigger();
    TQXCK233_1* e = l->entry();
    EXPECT_NE(e->Edit1->text(), "T0305");
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_EQ(e->CK_ID_IN->text(), "");
    EXPECT_EQ(e->STRPARAM1->text(), "");
    EXPECT_EQ(e->NOTE->text(), "");
    EXPECT_EQ(e->BDATE->Text(), "2026-03-18");
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    delete l;
}

TEST_F(TransferEntryTest, WithWritingToOneWarehouseOnlyANewTransferLeavesFromTheUsersOwn) {
    G_CKCOUNT_W = true;
    TQXCK233* l = list();
    l->Act_Add->trigger();
    TQXCK233_1* e = l->entry();
    EXPECT_EQ(e->CK_ID->text(), "01");
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_FALSE(e->CK_NAME->isEnabled());
    EXPECT_EQ(e->focusWidget(), e->CK_ID_IN);
    l->Act_CopyAdd->trigger();
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_EQ(e->CK_ID->text(), "01");
    delete l;
}

// ---- checks

TEST_F(TransferEntryTest, TheSameWarehouseTypedWithOtherCaseOrBlanksIsRefused) {
    exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('A1', '西门店')");
    TQXCK233* l = list();
    for (auto [out, in] : {std::pair{"01", " 01 "}, {"A1", "a1"}, {"a1 ", " A1"}}) {
        TQXCK233_1* e = newTransfer(l, "K01", "01", {"1"});
        e->CK_ID->setText(out);
        e->CK_ID_IN->setText(in);
        sink->clear();
        calls.clear();
        e->Act_Save->trigger();
        EXPECT_EQ(sink->texts(), QStringList{"调出仓和调入仓不能相同!"}) << out << "|" << in;
        EXPECT_EQ(e->focusWidget(), e->CK_ID_IN);
        EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
        EXPECT_TRUE(e->isVisible());
        EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);  // nothing lost
    }
    delete l;
}

TEST_F(TransferEntryTest, AMissingOrUnknownReceivingWarehouseIsRefused) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"1"});
    e->CK_ID_IN->clear();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"调入仓库不能为空!"});
    sink->clear();
    e->CK_ID_IN->setText("ZZ'9");
    e->CK_ID_IN->setModified(true);
    e->Act_Save->trigger();
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_TRUE(sink->texts()[0].contains("不存在")) << sink->texts()[0].toStdString();
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    delete l;
}

TEST_F(TransferEntryTest, BadQuantitiesAreRefusedWithTheLineMessage) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"2", "-3"});
    sink->clear();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_EQ(sink->texts()[0],
              "数量请用正数(不能为负数)表示,且每一行的合计数量不能为0(如本单无该款该色,请将本行删除)!\r\n"
              "请修正以上问题后再次尝试保存!");
    EXPECT_TRUE(statements(Call::Kind::ExecSql).empty());
    delete l;
}

TEST_F(TransferEntryTest, HostileTextsAreRefusedOrStoredAsTyped) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"2"});
    // Letters in a quantity, a price and an amount: refused, the line keeps its values.
    for (const char* field : {"S1", "sj", "smoney"}) {
        sink->clear();
        EXPECT_FALSE(typeCell(e, field, "abc")) << field;
        EXPECT_EQ(sink->texts(), QStringList{"'abc' 不是有效的数值!"}) << field;
        e->AdoQry_Main->Cancel();
    }
    EXPECT_EQ(e->AdoQry_Main->FieldByName("S0")->AsInteger(), 2);
    // Quotes and very long texts: cut to the field's length, stored as typed, nothing injected.
    e->STRPARAM1->setText("O'Neil'); DROP TABLE D8303;--");
    e->NOTE->setText(QString(10000, QChar(u'备')) + "'");
    EXPECT_EQ(e->NOTE->text().size(), 100);
    ASSERT_TRUE(typeCell(e, "NOTE", "it's '; DELETE FROM d1802;--"));
    e->AdoQry_Main->CheckBrowseMode();
    sink->clear();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT STRPARAM1 FROM D8303 WHERE NOID='" + noid + "'"), "O'Neil'); DROP T");
    EXPECT_EQ(scalar("SELECT NOTE FROM D8303A WHERE NOID='" + noid + "'"), "it's '; DELETE FROM d1802;--");
    EXPECT_GT(count("SELECT COUNT(*) FROM d1802"), 0);
    delete l;
}

TEST_F(TransferEntryTest, ATakenNumberIsReplacedSilently) {
    TQXCK233* l = list();
    l->Act_Add->trigger();
    TQXCK233_1* e = l->entry();
    e->Edit1->setText("T0305");
    calls.clear();
    e->Edit1Exit(e->Edit1);
    EXPECT_NE(e->Edit1->text(), "T0305");
    const auto queries = statements(Call::Kind::OpenSql);
    ASSERT_FALSE(queries.empty());
    EXPECT_EQ(queries[0], "SELECT NOID FROM D8303 WHERE NOID='T0305'");
    delete l;
}

TEST_F(TransferEntryTest, AHostileNumberIsRefusedWithItsCaption) {
    TQXCK233* l = list();
    l->Act_Add->trigger();
    TQXCK233_1* e = l->entry();
    for (const char* bad : {"T 1", "T'1--", ""}) {
        e->Edit1->setText(bad);
        sink->clear();
        calls.clear();
        qx::guard([&] { e->Edit1Exit(e->Edit1); });
        ASSERT_EQ(sink->texts().size(), 1) << bad;
        EXPECT_TRUE(sink->texts()[0].startsWith("调拨单号")) << sink->texts()[0].toStdString();
        EXPECT_TRUE(statements(Call::Kind::OpenSql).empty()) << bad;
    }
    delete l;
}

TEST_F(TransferEntryTest, ADateBeforeTheOpenPeriodIsRefused) {
    exec("UPDATE sys_co SET CK_END_DATE = '2026-03-10'");
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"1"});
    e->BDATE->SetDate(QDate(2026, 3, 1));
    sink->clear();
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(e->BDATE, &out);
    EXPECT_EQ(sink->texts(), QStringList{"单据日期不能早于本期开始日期2026-03-10!"});
    // Saved all the same, the database refuses a transfer dated in a closed month.
    const QString noid = e->Edit1->text();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_EQ(sink->errors().size(), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8303 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(stock("K0101", "01"), 45);  // only T0305 took its 5
    delete l;
}

TEST_F(TransferEntryTest, PriceAndAmountFollowEachOther) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"3", "2"}, "99");
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 495);
    ASSERT_TRUE(typeCell(e, "SMONEY", "400"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SJ")->AsFloat(), 80);
    delete l;
}

// ---- the batches

TEST_F(TransferEntryTest, ANewTransfer) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "02", {"3", "2"}, "99");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    const Call c = lastExec();
    EXPECT_EQ(c.funcNo, "217");
    EXPECT_EQ(c.noid, noid);
    EXPECT_EQ(c.mode, "Add");
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_FALSE(e->isVisible());
    delete l;
}

TEST_F(TransferEntryTest, ACopiedTransfer) {
    TQXCK233* l = list();
    l->Act_CopyAdd->trigger();
    TQXCK233_1* e = l->entry();
    ASSERT_TRUE(e->InWarehouseLink->Pick("02"));
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(lastExec().mode, "CopyAdd");
    EXPECT_TRUE(qx::test::sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    delete l;
}

TEST_F(TransferEntryTest, AnEditedTransferWithASecondLine) {
    TQXCK233* l = list();
    l->Act_Edit->trigger();
    TQXCK233_1* e = l->entry();
    addLine(e, "K02", "03", {"", "1"}, "159");
    e->Act_Save->trigger();
    EXPECT_EQ(lastExec().mode, "Edit");
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    delete l;
}

// ---- the database

TEST_F(TransferEntryTest, SendingTakesTheGoodsOutOfTheSendingWarehouseOnly) {
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K01", "02", {"3", "2"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(stock("K0102", "01", 0), 7);
    EXPECT_EQ(stock("K0102", "01", 1), 8);
    EXPECT_EQ(stock("K0102", "02"), 0);  // the row exists for the receiver, with nothing yet
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1802 WHERE WL_ID='K0102' AND CK_ID='02'"), 1);
    EXPECT_EQ(scalar("SELECT DJ FROM D8303A WHERE NOID='" + noid + "'"), "12");
    EXPECT_EQ(scalar("SELECT MONEY FROM D8303A WHERE NOID='" + noid + "'"), "60");
    EXPECT_EQ(scalar("SELECT T FROM D8303 WHERE NOID='" + noid + "'"), "1");
    delete l;
}

TEST_F(TransferEntryTest, SavingAnEditedTransferResetsTheReceiptAndRecomputesTheCost) {
    exec("UPDATE D8303A SET Y0 = 3, Y1 = 1, DJ = 5, MONEY = 25 WHERE NOID = 'T0305'");
    exec("UPDATE D8303 SET Y = 1, Y_WC = 1 WHERE NOID = 'T0305'");
    EXPECT_EQ(stock("K0101", "02"), 4);
    exec("UPDATE d1800 SET DJ = 14 WHERE K_ID = 'K01'");
    TQXCK233* l = list();
    l->Act_Refresh->trigger();
    l->Act_Edit->trigger();
    TQXCK233_1* e = l->entry();
    EXPECT_EQ(e->AdoQry_Main->FieldByName("YTOT")->AsInteger(), 4);
    e->NOTE->setText("改过");
    e->Act_Save->trigger();
    EXPECT_EQ(count("SELECT Y0+Y1+Y2+Y3+Y4+Y5+Y6+Y7+Y8+Y9 FROM D8303A WHERE NOID='T0305'"), 0);
    EXPECT_EQ(scalar("SELECT DJ FROM D8303A WHERE NOID='T0305'"), "14");
    EXPECT_EQ(scalar("SELECT MONEY FROM D8303A WHERE NOID='T0305'"), "70");
    EXPECT_EQ(stock("K0101", "02"), 0);  // what was counted in is counted again
    delete l;
}

TEST_F(TransferEntryTest, TheNegativeStockGuardRefusesATransferOutOfACheckedRowWithTooLittle) {
    exec("UPDATE d1800 SET CHECK_KC = 1 WHERE K_ID = 'K02'");
    exec("UPDATE d1802 SET CHECK_KC = 1 WHERE WL_ID = 'K0203'");
    TQXCK233* l = list();
    TQXCK233_1* e = newTransfer(l, "K02", "03", {"11"});
    const QString noid = e->Edit1->text();
    sink->clear();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_TRUE(sink->errors()[0].contains("库存不足支持本次出库业务")) << sink->errors()[0].toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8303 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(stock("K0203", "01", 0), 10);
    EXPECT_TRUE(e->isVisible());  // the screen keeps what was typed
    EXPECT_EQ(e->AdoQry_Main->FieldByName("S0")->AsInteger(), 11);
    // Ten of them may go.
    ASSERT_TRUE(typeCell(e, "S0", "10"));
    e->AdoQry_Main->CheckBrowseMode();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty());
    EXPECT_EQ(stock("K0203", "01", 0), 0);
    delete l;
}

}  // namespace
