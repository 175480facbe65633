// Orders and supplementary orders: list, filter and entry; the batches they send; orders never
// touch stock, and the sales ticket's order picker offers them.
#include <QTest>

#include "documents/sales/Frmqxck211.h"
#include "documents/sales/Frmqxck211_1.h"
#include "framework/Screenshot.h"
#include "tests/documents/StockDocumentsFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class OrderTest : public qx::test::StockDocumentsTest {
protected:
    TQXCK213_1* add(TQXCK213* l) {
        l->Act_Add->trigger();
        return l->entry();
    }
    void order(const QString& noid, const QString& warehouse, const QString& date = "2026-03-10") {
        exec("INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('" + noid + "','" + warehouse + "','" + date +
             "','U1','首单')");
        exec("INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, DJ, MONEY, NOTE) VALUES ('" + noid +
             "','K0101','K01','01','" + warehouse + "',1,2,50,150,'')");
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck213_1.sql"};
};

TEST_F(OrderTest, TheListHasNoCounterpartyNorApproval) {
    order("DD1", "01");
    G_SK = 1;
    TQXCK213* l = orderList();
    EXPECT_EQ(l->windowTitle(), "订单/补单");
    ASSERT_EQ(l->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(l->HeadSql,
              " SELECT D8203.noid,d1007.ck_id, d1007.ck_name,D8203.bdate,D8203.edate, sys_user.user_id,"
              "sys_user.user_name, D8203.note FROM D8203 INNER JOIN d1007 ON D8203.ck_id = d1007.ck_id  INNER JOIN"
              " sys_user ON D8203.user_id = sys_user.user_id  ");
    EXPECT_EQ(l->QtyFields, "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,ZK");
    EXPECT_EQ(l->DeleteSql, "delete from D8203 Where NOID=%S");
    EXPECT_EQ(l->DBGridEh->ColumnByField("KH_GYS_ID"), nullptr);
    TCellParams p;
    p.Row = 0;
    p.Background = Qt::white;
    l->DBGridEhGetCellParams(l->DBGridEh, nullptr, p);
    EXPECT_EQ(p.Background, QColor(Qt::white)) << "orders are never tinted";
    // The lines carry the order price both ways.
    l->RefreshDetail();
    ASSERT_EQ(l->AdoQry_Detail->RecordCount(), 1);
    EXPECT_DOUBLE_EQ(l->AdoQry_Detail->FieldByName("SJ")->AsFloat(), 50);
    EXPECT_DOUBLE_EQ(l->AdoQry_Detail->FieldByName("MONEY")->AsFloat(), 150);
    delete l;
}

TEST_F(OrderTest, ALineWhoseSkuRowDoesNotExistYetIsStillListed) {
    order("DD1", "01");
    ASSERT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0202'"), 0);
    exec("INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, DJ, MONEY, NOTE) VALUES "
         "('DD1','K0202','K02','02','01',1,80,80,'')");
    // The database completes the SKU row of the line, so lists joining d1801 show it too.
    EXPECT_EQ(dump("SELECT WL_ID, K_ID, COL_ID FROM D1801 WHERE WL_ID='K0202'"), QStringList{"K0202|K02|02"});
    TQXCK213* l = orderList();
    l->RefreshDetail();
    EXPECT_EQ(l->AdoQry_Detail->RecordCount(), 2);
    // The order's own lines do not go through d1801: without the row the line is still listed.
    exec("DELETE FROM D1801 WHERE WL_ID='K0202'");
    l->RefreshDetail();
    EXPECT_EQ(l->AdoQry_Detail->RecordCount(), 2);
    delete l;
}

TEST_F(OrderTest, TheFilterUsesTheOrdersOwnLabels) {
    TQXCK213* l = orderList([](TDocumentFilter* f) {
        f->CK_ID->setText("01");
        f->Edit1->setText("D1");
        f->Edit2->setText("D9");
    });
    EXPECT_TRUE(described(l->filter()).startsWith(" ●开单日期:03-01 至 03-18"));
    EXPECT_TRUE(described(l->filter()).contains(" ●仓库=01"));
    EXPECT_TRUE(described(l->filter()).contains(" ●销售单号:D1 至 D9"));
    EXPECT_TRUE(l->filter()->Condition.startsWith("(D8203.BDATE>='2026-03-01') AND (D8203.BDATE<='2026-03-18') "));
    EXPECT_TRUE(l->filter()->Condition.endsWith("  AND (D8203.NOID>='D1')  AND (D8203.NOID<='D9')"));
    delete l;
}

TEST_F(OrderTest, AddSendsTheOrderWithItsPriceAndTouchesNoStock) {
    TQXCK213* l = orderList();
    TQXCK213_1* e = add(l);
    EXPECT_EQ(e->Panel_Head->CaptionOf(e->Edit1)->text(), "单    号");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ")->Title, "价格|定货价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Title, "价格|总额");
    EXPECT_EQ(e->DBGridEh->ColumnByField("DJ"), nullptr);
    e->NOTE->setText("春季补单");
    addLine(e, "K01", "02", {"3", "2"}, "45");
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 225);
    e->resize(1280, 480);
    EXPECT_FALSE(qx::saveScreenshot(e, "order_entry").isEmpty());
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Add", {{"number", noid}}), lastBatch()));
    EXPECT_EQ(scalar("SELECT DJ FROM D8203A WHERE NOID='" + noid + "'"), "45");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0102'"), 1) << "already there, nothing added";
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1802"), 0) << "orders never make stock rows";
    delete l;
}

TEST_F(OrderTest, AnAmountTypedGivesThePrice) {
    TQXCK213* l = orderList();
    TQXCK213_1* e = add(l);
    addLine(e, "K01", "01", {"4"}, "10");
    ASSERT_TRUE(typeCell(e, "SMONEY", "50"));
    EXPECT_DOUBLE_EQ(e->AdoQry_Main->FieldByName("SJ")->AsFloat(), 12.5);
    e->AdoQry_Main->Cancel();
    e->Modified = false;
    delete l;
}

TEST_F(OrderTest, EditRewritesOnlyWarehouseAndNoteNeverTheDate) {
    order("DD1", "01");
    TQXCK213* l = orderList();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "DD1"));
    l->Act_Edit->trigger();
    TQXCK213_1* e = l->entry();
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_TRUE(e->CK_ID->isEnabled()) << "the warehouse of an order may still change";
    ASSERT_TRUE(e->WarehouseLink->Pick("02"));
    e->NOTE->setText("改到东门");
    e->BDATE->SetText("2026-03-15");
    addLine(e, "K02", "03", {"", "1"}, "80");
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("Edit"), lastBatch()));
    EXPECT_EQ(scalar("SELECT BDATE FROM D8203 WHERE NOID='DD1'").left(10), "2026-03-10") << "the date never changes";
    EXPECT_EQ(scalar("SELECT USER_ID FROM D8203 WHERE NOID='DD1'"), "U1");
    EXPECT_EQ(scalar("SELECT CK_ID FROM D8203 WHERE NOID='DD1'"), "02");
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8203A WHERE NOID='DD1'"), 2);
    delete l;
}

TEST_F(OrderTest, CopyAddCopiesTheOrderUnderANewNumber) {
    order("DD1", "01");
    TQXCK213* l = orderList();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "DD1"));
    l->Act_CopyAdd->trigger();
    TQXCK213_1* e = l->entry();
    const QString noid = e->Edit1->text();
    EXPECT_EQ(e->NOTE->text(), "首单");
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(qx::test::sameStatements(golden.text("CopyAdd", {{"number", noid}}), lastBatch()));
    delete l;
}

TEST_F(OrderTest, HostileInputIsStoredAsTypedOrRefused) {
    TQXCK213* l = orderList();
    TQXCK213_1* e = add(l);
    e->NOTE->setText("O'Neil'); DROP TABLE D8203;--");
    addLine(e, "K01", "01", {"1"}, "10");
    EXPECT_FALSE(typeCell(e, "SJ", "1O"));
    EXPECT_EQ(sink->texts().back(), "'1O' 不是有效的数值!");
    sink->clear();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT NOTE FROM D8203 WHERE NOID='" + noid + "'"), "O'Neil'); DROP TABLE D8203;--");
    delete l;
}

TEST_F(OrderTest, ANegativeQuantityIsRefusedAsOnASalesTicket) {
    TQXCK213* l = orderList();
    TQXCK213_1* e = add(l);
    addLine(e, "K01", "01", {"-1"}, "10");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->texts().size(), 1);
    EXPECT_TRUE(sink->texts()[0].startsWith("数量请用正数"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8203 WHERE NOID='" + noid + "'"), 0);
    e->Modified = false;
    delete l;
}

TEST_F(OrderTest, TheOrderPickerNeedsAWarehouseFirst) {
    TQXCK213* l = orderList();
    TQXCK213_1* e = add(l);
    e->CK_ID->clear();
    e->DBGridEhDblClick1(e->DBGridEh);
    EXPECT_EQ(sink->texts().back(), "在选择订单前应先填写一个有效的仓库!");
    e->Modified = false;
    delete l;
}

TEST_F(OrderTest, ASavedOrderIsWhatTheSalesTicketsPickerOffers) {
    TQXCK213* orders = orderList();
    TQXCK213_1* e = add(orders);
    addLine(e, "K01", "02", {"3", "2"}, "45");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    delete orders;

    TQXCK211* tickets = openList<TQXCK211>(211);
    tickets->Act_Add->trigger();
    TQXCK211_1* t = tickets->entry();
    QString offered;
    qx::ui::setModalHandler([&offered, noid](TFrm_Base* dialog) {
        auto* picker = dynamic_cast<TFrm_Sys_PickOrder*>(dialog);
        if (!picker) return int(mrCancel);
        if (picker->AdoQry_Orders->Locate("NOID", noid)) offered = noid;
        picker->btn_ok->click();
        return picker->ModalResult();
    });
    t->DBGridEh->SetCurrentColumn(t->DBGridEh->ColumnByField("NOTE"));
    t->DBGridEhDblClick1(t->DBGridEh);
    qx::ui::setModalHandler(nullptr);
    EXPECT_EQ(offered, noid);
    ASSERT_EQ(t->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(t->AdoQry_Main->FieldByName("K_ID")->AsString(), "K01");
    EXPECT_EQ(t->AdoQry_Main->FieldByName("COL_ID")->AsString(), "02");
    EXPECT_EQ(t->AdoQry_Main->FieldByName("STOT")->AsInteger(), 5);
    EXPECT_DOUBLE_EQ(t->AdoQry_Main->FieldByName("SJ")->AsFloat(), 45);
    EXPECT_EQ(t->AdoQry_Main->FieldByName("NOID")->AsString(), noid);
    t->Modified = false;
    t->AdoQry_Main->EmptyDataSet();
    delete tickets;
}

}  // namespace
