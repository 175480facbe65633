// The arrival check: what the receiver may touch, receive all / clear all / abandon / confirm /
// quit, the receipt batch against its golden file, and the stock it moves.
#include <sqlite3.h>

#include <QLabel>

#include "db/Database.h"
#include "tests/documents/TransferFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;
using qx::test::TransferTest;

class ArrivalTest : public TransferTest {
protected:
    void SetUp() override {
        TransferTest::SetUp();
        addTransfer("T0305", "2026-03-05", 1, "K0101", 3, 2);
        calls.clear();
    }
    int footer(TQXCK234_1* e, const QString& field) { return int(e->DBGridEh->GetSumValue(field)); }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck234_1.sql"};
};

TEST_F(ArrivalTest, OpensOnATransferWithTheSendersHeadLockedAndItsActions) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    EXPECT_EQ(e->Caption(), "调拨到货点收");
    EXPECT_EQ(e->FuncNo, "219");
    EXPECT_EQ(e->LockName, "EDIT1,CK_ID,CK_ID_IN,CK_ID,STRPARAM1,NOTE,BDATE");
    for (QWidget* w : std::initializer_list<QWidget*>{e->Edit1, e->CK_ID, e->CK_ID_IN, e->STRPARAM1, e->NOTE, e->BDATE})
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
    EXPECT_TRUE(e->Y_NOTE->isEnabled());
    EXPECT_EQ(e->Y_NOTE->maxLength(), 100);
    EXPECT_EQ(e->Panel_Head->CaptionOf(e->Y_WC)->text(), "收货误差数量：");
    EXPECT_EQ(e->Panel_Head->CaptionOf(e->Y_NOTE)->text(), "备注：");
    EXPECT_NE(e->Panel_Head->findChild<QLabel*>("Lab_Receipt"), nullptr);
    EXPECT_EQ(e->Panel_Head->findChild<QLabel*>("Lab_Receipt")->text(), "收货填写-->");
    EXPECT_EQ(e->Edit1->text(), "T0305");
    EXPECT_EQ(e->CK_NAME->text(), "总仓");
    EXPECT_EQ(e->CK_NAME_IN->text(), "东门店");
    EXPECT_EQ(e->Y_WC->text(), "5");
    struct Action {
        QAction* action;
        const char* caption;
        const char* hint;
    };
    for (const Action& a : {Action{e->Act_Save, "确认", "填写收货数量后确认完成本次收货"},
                            Action{e->Act_SetColumn, "放弃", "由于发货方单据填写错误可放弃返回将单据填写正确后再进行收货"},
                            Action{e->Act_Other, "全数收货", "将收货的数量填写为发出的数量。如有部分少数，再进行更正数量。"},
                            Action{e->Act_Check, "全数清零", "将收货数量全部清零"}}) {
        EXPECT_EQ(a.action->text(), a.caption);
        EXPECT_EQ(a.action->toolTip(), a.hint);
        EXPECT_TRUE(a.action->isVisible() && a.action->isEnabled()) << a.caption;
    }
    delete l;
}

TEST_F(ArrivalTest, TheSendersLinesCannotBeAddedDeletedOrRepriced) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    EXPECT_FALSE(e->Act_AddLine->isVisible());
    EXPECT_FALSE(e->Act_DeleteLine->isVisible());
    e->Act_AddLine->trigger();
    e->Act_AddLineExecute(nullptr);
    e->Act_DeleteLineExecute(nullptr);
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    auto* model = e->DBGridEh->model();
    for (const char* field : {"K_ID", "COL_NAME", "S0", "S1", "STOT", "SJ", "SMONEY", "NOTE", "YTOT"})
        EXPECT_FALSE(model->flags(model->index(0, e->DBGridEh->ColumnByField(field)->Index())) & Qt::ItemIsEditable)
            << field;
    EXPECT_TRUE(model->flags(model->index(0, e->DBGridEh->ColumnByField("Y0")->Index())) & Qt::ItemIsEditable);
    // A size the line's size group does not name takes no receipt either.
    EXPECT_FALSE(model->flags(model->index(0, e->DBGridEh->ColumnByField("Y7")->Index())) & Qt::ItemIsEditable);
    // A price typed or pasted into the sender's line is refused and recomputes nothing.
    EXPECT_FALSE(typeCell(e, "SJ", "50"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 495);
    e->Act_Other->trigger();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT SJ FROM D8303A WHERE NOID='T0305'"), "99");
    delete l;
}

TEST_F(ArrivalTest, ReceiveAllThenReduceOneShowsTheShortfallAndMoreThanSentANegativeOne) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    EXPECT_EQ(e->AdoQry_Main->FieldByName("Y0")->AsInteger(), 3);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("Y1")->AsInteger(), 2);
    EXPECT_EQ(footer(e, "YTOT"), 5);
    EXPECT_EQ(e->Y_WC->text(), "0");
    ASSERT_TRUE(typeCell(e, "Y0", "2"));
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(e->AdoQry_Main->FieldByName("YTOT")->AsInteger(), 4);
    EXPECT_EQ(e->Y_WC->text(), "1");
    ASSERT_TRUE(typeCell(e, "Y1", "5"));
    e->AdoQry_Main->CheckBrowseMode();
    EXPECT_EQ(e->Y_WC->text(), "-2");
    e->Act_Check->trigger();
    EXPECT_EQ(footer(e, "YTOT"), 0);
    EXPECT_EQ(e->Y_WC->text(), "5");
    delete l;
}

TEST_F(ArrivalTest, HostileReceiptsAreRefusedAndTheNoteIsStoredAsTyped) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    for (const char* bad : {"abc", "-1", "1.5", "1e9", "2'; DELETE FROM D8303;--"}) {
        sink->clear();
        EXPECT_FALSE(typeCell(e, "Y0", bad)) << bad;
        ASSERT_EQ(sink->texts().size(), 1) << bad;
        EXPECT_TRUE(sink->texts()[0].startsWith("收货数量请用不小于0的整数表示")) << sink->texts()[0].toStdString();
        e->AdoQry_Main->Cancel();
    }
    EXPECT_EQ(e->AdoQry_Main->FieldByName("Y0")->AsInteger(), 3);
    e->Y_NOTE->setText(QString(10000, 'x'));
    EXPECT_EQ(e->Y_NOTE->text().size(), 100);
    e->Y_NOTE->setText("少'一件'); DROP TABLE D8303A;--");
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT Y_NOTE FROM D8303 WHERE NOID='T0305'"), "少'一件'); DROP TABLE D8303A;--");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8303A"), 1);
    delete l;
}

TEST_F(ArrivalTest, AbandonNeedsTheReceivedQuantitiesClearedFirst) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    sink->clear();
    e->Act_SetColumn->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"放弃前请先将收货数量清0"});
    EXPECT_TRUE(e->Act_Save->isEnabled());
    EXPECT_EQ(e->Y_WC->text(), "0");
    e->Act_Check->trigger();
    sink->clear();
    e->Act_SetColumn->trigger();
    EXPECT_TRUE(sink->texts().isEmpty());
    EXPECT_EQ(e->ReceiptState, 0);
    EXPECT_EQ(e->Y_WC->text(), "0");
    EXPECT_FALSE(e->Act_Save->isEnabled());
    delete l;
}

TEST_F(ArrivalTest, ConfirmingAFullArrival) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    e->Y_NOTE->setText("已点收");
    e->Act_Save->trigger();
    const Call c = lastExec();
    EXPECT_EQ(c.funcNo, "219");
    EXPECT_EQ(c.noid, "T0305");
    EXPECT_EQ(c.mode, "Edit");
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Confirm"), lastBatch()));
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='T0305'"), "1");
    EXPECT_EQ(scalar("SELECT YNAME FROM D8303 WHERE NOID='T0305'"), "王经理");
    EXPECT_FALSE(scalar("SELECT YDATE FROM D8303 WHERE NOID='T0305'").isEmpty());
    EXPECT_EQ(stock("K0101", "02", 0), 3);
    EXPECT_EQ(stock("K0101", "02", 1), 2);
    EXPECT_EQ(stock("K0101", "01"), 45);
    // The list shows the arrival.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "T0305"));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("y")->AsInteger(), 1);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("YNAME")->AsString(), "王经理");
    delete l;
}

TEST_F(ArrivalTest, APartialArrivalLeavesTheDifferenceVisibleAndOnlyWhatCameInStock) {
    exec("DELETE FROM D8303A WHERE NOID='T0305'");
    exec("INSERT INTO D8303A VALUES ('T0305','K0101','K01','01','01','02',3,0,0,0,0,0,0,0,0,0,0,0,99,297,'',"
         "0,0,0,0,0,0,0,0,0,0)");
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    ASSERT_TRUE(typeCell(e, "Y0", "2"));
    e->Act_Save->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Partial"), lastBatch()));
    EXPECT_EQ(scalar("SELECT Y_WC FROM D8303 WHERE NOID='T0305'"), "1");
    EXPECT_EQ(stock("K0101", "02"), 2);
    EXPECT_EQ(stock("K0101", "01"), 47);  // the third one left and is nowhere in stock
    delete l;
}

TEST_F(ArrivalTest, QuittingWithNothingReceivedAndSavingWritesNotReceived) {
    exec("UPDATE D8303A SET Y0 = 3, Y1 = 2 WHERE NOID='T0305'");
    exec("UPDATE D8303 SET Y = 1, YNAME = '店员' WHERE NOID='T0305'");
    EXPECT_EQ(stock("K0101", "02"), 5);
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    EXPECT_EQ(e->ReceiptState, 1);
    e->Act_Check->trigger();
    sink->queueAnswer(true);  // 单据已修改,是否保存?
    e->Act_Quit->trigger();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("QuitWithNothing"), lastBatch()));
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='T0305'"), "0");
    EXPECT_EQ(stock("K0101", "02"), 0);
    delete l;
}

TEST_F(ArrivalTest, QuittingWithSomethingReceivedAndSavingConfirms) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    ASSERT_TRUE(typeCell(e, "Y1", "2"));
    sink->queueAnswer(true);
    e->Act_Quit->trigger();
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='T0305'"), "1");
    EXPECT_EQ(scalar("SELECT Y_WC FROM D8303 WHERE NOID='T0305'"), "3");
    EXPECT_EQ(stock("K0101", "02"), 2);
    delete l;
}

TEST_F(ArrivalTest, ATransferOfAClosedMonthCanStillBeConfirmedOnArrival) {
    exec("UPDATE sys_co SET CK_END_DATE = '2026-03-10'");
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='T0305'"), "1");
    EXPECT_EQ(stock("K0101", "02"), 5);
    delete l;
}

TEST_F(ArrivalTest, AFailingReceiptLeavesTheTransferAsItWas) {
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    if (onServer()) GTEST_SKIP() << "the refusing rule is written into the shop file";
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(dir.filePath("shop.db").toUtf8().constData(), &raw), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(raw,
                           "CREATE TRIGGER refuse_receipts BEFORE UPDATE OF Y0 ON D8303A BEGIN SELECT RAISE(ABORT, "
                           "'receipts refused'); END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(raw);
    sink->clear();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->errors().size(), 1);
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='T0305'"), "0");
    EXPECT_EQ(stock("K0101", "02"), 0);
    EXPECT_TRUE(e->isVisible());
    delete l;
}

TEST_F(ArrivalTest, AWarehouseWithATransferOnTheRoadCannotBeSummarisedForStocktaking) {
    EXPECT_FALSE(db->maySummariseStocktake("01"));
    EXPECT_FALSE(db->maySummariseStocktake("02"));
    TQXCK234* l = arrivals();
    TQXCK234_1* e = openArrival(l, "T0305");
    e->Act_Other->trigger();
    e->Act_Save->trigger();
    EXPECT_TRUE(db->maySummariseStocktake("01"));
    EXPECT_TRUE(db->maySummariseStocktake("02"));
    delete l;
}

}  // namespace
