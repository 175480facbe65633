// The sales ticket entry screen: opening, the tag and discounted price arithmetic, the discount
// as it is stored, lines from an order, the save batch of every mode against its golden file,
// cost prices, stock going out, the negative-stock guard, and hostile input.
#include <QLabel>
#include <QTest>

#include "tests/documents/DocumentEntryTest.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;

class SalesTicketEntryTest : public qx::test::KindScreensTest<TQXCK211, 211> {
protected:
    void SetUp() override {
        KindScreensTest::SetUp();
        existingDocument("D8201", "S0305", "C01", "老客户", [this] {
            addSaleLine("S0305", "K01", "01", "01", "1,2,0,0,0,0,0,0,0,0", "90", "270");
            exec("UPDATE D8201A SET ZK=90, ODJ=100, OMONEY=300 WHERE NOID='S0305'");
        });
    }
    qx::test::GoldenStatements golden{"documents/golden/Frmqxck211_1.sql"};
};

// ---- opening

TEST_F(SalesTicketEntryTest, ANewTicketIsASale) {
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    EXPECT_EQ(e->Caption(), "销售开单");
    EXPECT_EQ(e->LineSourceField, "NOID");
    delete l;
}

TEST_F(SalesTicketEntryTest, HeadAndGridHaveTheirCaptions) {
    TQXCK211_1 e(nullptr);
    expectTradingHeadCaptions(e, "销售单号", "客    户", "业 务 员");
    // Customers, not suppliers.
    EXPECT_EQ(e.PartnerLink->Table().toLower(), "d1102");
}

TEST_F(SalesTicketEntryTest, TheLineGridShowsTagAndDiscountedPricesAfterTheTotal) {
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    addLine(e, "K01", "02", {"1"});
    QStringList fields;
    for (int i = 0; i < e->DBGridEh->ColumnCount(); ++i)
        fields << e->DBGridEh->Columns(i)->FieldName.toUpper();
    const int stot = fields.indexOf("STOT");
    ASSERT_GE(stot, 0);
    EXPECT_EQ(fields.mid(stot),
              QStringList({"STOT", "ODJ", "OMONEY", "ZK", "SJ", "SMONEY", "NOTE"}));
    EXPECT_EQ(e->DBGridEh->ColumnByField("ODJ")->Title, "吊牌|单价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("OMONEY")->Title, "吊牌|总额");
    EXPECT_EQ(e->DBGridEh->ColumnByField("ZK")->Title, "折后|折扣");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SJ")->Title, "折后|单价");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Title, "折后|总额");
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->DisplayFormat, "0.00");
    EXPECT_EQ(e->DBGridEh->ColumnByField("OMONEY")->Footer.ValueType, fvtSum);
    EXPECT_EQ(e->DBGridEh->ColumnByField("SMONEY")->Footer.ValueType, fvtSum);
    // A style typed by hand starts at its tag price, undiscounted.
    EXPECT_DOUBLE_EQ(value(e, "ODJ"), 99);
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 99);
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete l;
}

TEST_F(SalesTicketEntryTest, EditLocksNumberAndWarehouseOnly) {
    TQXCK211* l = list();
    TQXCK211_1* e = edit(l);
    EXPECT_EQ(e->Edit1->text(), "S0305");
    EXPECT_EQ(e->KH_GYS_ID->text(), "C01");
    EXPECT_EQ(e->KG_NAME->text(), "城东专卖");
    EXPECT_EQ(e->EDATE->text(), "2026-03-07");
    EXPECT_EQ(e->LockName, "EDIT1,ck_id");
    EXPECT_FALSE(e->Edit1->isEnabled());
    EXPECT_FALSE(e->CK_ID->isEnabled());
    EXPECT_TRUE(e->KH_GYS_ID->isEnabled());
    delete l;
}

TEST_F(SalesTicketEntryTest, ASupplierIsNoCustomer) {
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    EXPECT_FALSE(e->PartnerLink->Pick("G01"));
    e->KH_GYS_ID->setText("G01");
    EXPECT_ANY_THROW(e->KH_GYS_ID->CheckId());
    EXPECT_EQ(sink->texts().back(), "客 户代码 G01 不存在!");
    delete l;
}

// ---- price arithmetic

TEST_F(SalesTicketEntryTest, QuantitiesAndPricesMakeBothAmountsAndTheAmountMakesThePrice) {
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    addLine(e, "K01", "02", {"3", "1"}, "80");
    EXPECT_EQ(cell(e, "STOT"), "4");
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 320);
    EXPECT_DOUBLE_EQ(value(e, "OMONEY"), 396);
    ASSERT_TRUE(typeCell(e, "SMONEY", "300"));
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 75);
    EXPECT_DOUBLE_EQ(value(e, "OMONEY"), 396);
    // The tag price and the discount set nothing else.
    ASSERT_TRUE(typeCell(e, "ODJ", "120"));
    EXPECT_DOUBLE_EQ(value(e, "OMONEY"), 396);
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 75);
    ASSERT_TRUE(typeCell(e, "ZK", "50"));
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 75);
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 300);
    // A quantity recomputes both amounts from the prices.
    ASSERT_TRUE(typeCell(e, "S2", "1"));
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 375);
    EXPECT_DOUBLE_EQ(value(e, "OMONEY"), 600);
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete l;
}

// ---- checks

TEST_F(SalesTicketEntryTest, ChoosingAnOrderNeedsAWarehouseFirst) {
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    e->CK_ID->clear();
    e->DBGridEh->setFocus();
    e->DBGridEhDblClick1(e->DBGridEh);
    EXPECT_EQ(sink->texts(), QStringList{"在选择订单前应先填写一个有效的仓库!"});
    EXPECT_FALSE(e->OrderPicker->isVisible());
    EXPECT_TRUE(e->AdoQry_Main->IsEmpty());
    e->Modified = false;
    delete l;
}

TEST_F(SalesTicketEntryTest, LinesFromAnOrderKeepTheirStylePricesAndDiscount) {
    exec(
        "INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('O1', '01', '2026-03-10', "
        "'U1', '')");
    exec(
        "INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, "
        "S9, DJ, MONEY, NOTE) "
        "VALUES ('O1', 'K0102', 'K01', '02', '01', 2, 1, 0, 0, 0, 0, 0, 0, 0, 0, 80, 240, '')");
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    e->PickOrderLines("O1");
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(cell(e, "NOID"), "O1");
    EXPECT_FALSE(e->CK_ID->isEnabled());
    const QModelIndex sj =
        e->DBGridEh->model()->index(0, e->DBGridEh->ColumnByField("SJ")->Index());
    const QModelIndex s0 =
        e->DBGridEh->model()->index(0, e->DBGridEh->ColumnByField("S0")->Index());
    EXPECT_FALSE(e->DBGridEh->model()->flags(sj) & Qt::ItemIsEditable);
    EXPECT_TRUE(e->DBGridEh->model()->flags(s0) & Qt::ItemIsEditable);
    for (const char* field :
         {"K_ID", "WL_NAME", "DW_NAME", "COL_NAME", "ODJ", "OMONEY", "ZK", "SJ", "SMONEY"}) {
        const QModelIndex index =
            e->DBGridEh->model()->index(0, e->DBGridEh->ColumnByField(field)->Index());
        EXPECT_FALSE(e->DBGridEh->model()->flags(index) & Qt::ItemIsEditable) << field;
    }
    // A line typed by hand stays editable everywhere.
    addLine(e, "K02", "03", {"1"}, "150");
    const QModelIndex typed =
        e->DBGridEh->model()->index(1, e->DBGridEh->ColumnByField("SJ")->Index());
    EXPECT_TRUE(e->DBGridEh->model()->flags(typed) & Qt::ItemIsEditable);
    e->Modified = false;
    delete l;
}

TEST_F(SalesTicketEntryTest, ADoubleClickOffersTheWarehousesOrdersAndTakesTheChosenOnesLines) {
    exec(
        "INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('O1', '01', '2026-03-10', "
        "'U1', '')");
    exec(
        "INSERT INTO D8203 (NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES ('O2', '02', '2026-03-11', "
        "'U1', '')");
    exec(
        "INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, "
        "S9, DJ, MONEY, NOTE) "
        "VALUES ('O1', 'K0203', 'K02', '03', '01', 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 120, 240, '')");
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    QStringList offered;
    qx::ui::setModalHandler([&offered](TFrm_Base* dialog) {
        auto* picker = dynamic_cast<TFrm_Sys_PickOrder*>(dialog);
        if (!picker) return int(mrCancel);
        for (int r = 0; r < picker->AdoQry_Orders->RecordCount(); ++r)
            offered << qx::documents::lineText(picker->AdoQry_Orders, r, "NOID");
        picker->btn_okClick(picker);
        return picker->ModalResult();
    });
    e->DBGridEhDblClick1(e->DBGridEh);
    EXPECT_EQ(offered, QStringList{"O1"});  // the orders of the ticket's warehouse only
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(cell(e, "NOID"), "O1");
    EXPECT_EQ(cell(e, "K_ID"), "K02");
    EXPECT_EQ(cell(e, "STOT"), "2");
    EXPECT_DOUBLE_EQ(value(e, "SJ"), 120);
    EXPECT_DOUBLE_EQ(value(e, "SMONEY"), 240);
    EXPECT_DOUBLE_EQ(value(e, "ODJ"), 159);
    fillHead(e, "C01");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(lines(noid), 1);
    delete l;
}

// ---- the save batch

TEST_F(SalesTicketEntryTest, AddSendsItsBatch) {
    expectAddSends(golden, "C01", "销售", [this](TQXCK211_1* e) {
        addLine(e, "K01", "02", {"3", "1"}, "80");
        ASSERT_TRUE(typeCell(e, "ZK", "85"));
        e->AdoQry_Main->CheckBrowseMode();
        addLine(e, "K02", "03", {"", "2"}, "150");
    });
}

TEST_F(SalesTicketEntryTest, CopyAddSendsAnInsertBatchUnderTheNewNumber) { expectCopyAddSends(golden); }

TEST_F(SalesTicketEntryTest, EditSendsTheUpdateWithTheLinesReplaced) {
    expectEditSends(golden, [this](TQXCK211_1* e) { addLine(e, "K02", "03", {"1"}, "150"); });
}

TEST_F(SalesTicketEntryTest, TheDiscountIsStoredByItsOwnRule) {
    struct Case {
        const char* typed;
        const char* written;
    };
    for (const Case& c : {Case{"10", "0.00"}, Case{"90", "0.00"}, Case{"100", "0.00"},
                          Case{"12.5", "2.50"}, Case{"8.5", "8.50"}, Case{"0", "0.00"}}) {
        TQXCK211* l = list();
        TQXCK211_1* e = add(l);
        fillHead(e, "C01");
        addLine(e, "K01", "02", {"1"}, "80");
        ASSERT_TRUE(typeCell(e, "ZK", c.typed));
        e->AdoQry_Main->CheckBrowseMode();
        const QString noid = e->Edit1->text();
        e->Act_Save->trigger();
        EXPECT_TRUE(lastBatch().contains("'80','80','" + QString(c.written) + "','99','99',''"))
            << c.typed;
        EXPECT_EQ(scalar("SELECT CAST(ZK AS VARCHAR) FROM D8201A WHERE NOID='" + noid + "'"),
                  c.written)
            << c.typed;
        delete l;
    }
}

// ---- what the database holds

TEST_F(SalesTicketEntryTest, ASavedTicketWritesHeadLinesAndCostAndTakesStockOut) {
    addStock("K0102", "01", {5, 5});
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    fillHead(e, "C02", "销售");
    addLine(e, "K01", "02", {"3", "1"}, "80");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_EQ(scalar("SELECT KH_GYS_ID + '|' + CK_ID + '|' + SEND_ID + '|' + YW_ID + '|' + JY_ID + "
                     "'|' + USER_ID + '|' + "
                     "NOTE + '|' + CAST(T AS VARCHAR) FROM D8201 WHERE NOID='" +
                     noid + "'"),
              "C02|01|2|01|1|U1|销售|1");
    EXPECT_EQ(scalar("SELECT CAST(TOLMONEY AS VARCHAR) FROM D8201 WHERE NOID='" + noid + "'"),
              "320.00");
    // The SKU is the style followed by the colour; the cost is the style's.
    EXPECT_EQ(
        scalar("SELECT WL_ID + '|' + K_ID + '|' + COL_ID + '|' + CK_ID FROM D8201A WHERE NOID='" +
               noid + "'"),
        "K0102|K01|02|01");
    EXPECT_EQ(
        scalar(
            "SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM D8201A WHERE NOID='" +
            noid + "'"),
        "25.00|100.00");
    // The sale writes no SKU, stock or barcode rows of its own.
    EXPECT_FALSE(lastBatch().contains("D1801"));
    EXPECT_FALSE(lastBatch().contains("D1802"));
    EXPECT_FALSE(lastBatch().contains("d1809", Qt::CaseInsensitive));
    EXPECT_EQ(scalar("SELECT CAST(K0 AS VARCHAR) + ',' + CAST(K1 AS VARCHAR) FROM D1802 WHERE "
                     "WL_ID='K0102' AND "
                     "CK_ID='01'"),
              "2,4");
    // The list row shows the ticket with its total.
    EXPECT_EQ(l->AdoQry_Main->FieldByName("noid")->AsString(), noid);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("KG_NAME")->AsString(), "河西批发");
    EXPECT_DOUBLE_EQ(l->AdoQry_Main->FieldByName("TOLMONEY")->AsFloat(), 320);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("t")->AsInteger(), 0);
    delete l;
}

TEST_F(SalesTicketEntryTest, EditReplacesTheLinesAndTakesTheCostAgain) {
    TQXCK211* l = list();
    setCost("K01", "30");
    TQXCK211_1* e = edit(l);
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    addLine(e, "K02", "03", {"2"}, "150");
    e->Act_Save->trigger();
    EXPECT_EQ(lines("S0305"), 2);
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM D8201A WHERE "
                     "NOID='S0305' AND "
                     "K_ID='K01'"),
              "30.00|90.00");
    EXPECT_EQ(scalar("SELECT CAST(DJ AS VARCHAR) + '|' + CAST(MONEY AS VARCHAR) FROM D8201A WHERE "
                     "NOID='S0305' AND "
                     "K_ID='K02'"),
              "40.00|80.00");
    // Saved again, the lines are replaced, not doubled.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "S0305"));
    edit(l)->Act_Save->trigger();
    EXPECT_EQ(lines("S0305"), 2);
    delete l;
}

TEST_F(SalesTicketEntryTest, ATicketOfANeverReceivedSkuIsListedWithItsLineAndEditingKeepsIt) {
    ASSERT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0203'"), 0) << "K02 in blue was never received";
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    fillHead(e, "C01", "新品");
    addLine(e, "K02", "03", {"1", "2"}, "150");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_FALSE(lastBatch().contains("D1801")) << "the screen's batch is as it always was";
    // The database gave the line its SKU row, as a receipt would have.
    EXPECT_EQ(dump("SELECT WL_ID, K_ID, COL_ID FROM D1801 WHERE WL_ID='K0203'"), QStringList{"K0203|K02|03"});
    // The list shows the ticket with its line (the lines are read through the SKU rows).
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    l->RefreshDetail();
    ASSERT_EQ(l->AdoQry_Detail->RecordCount(), 1);
    EXPECT_EQ(l->AdoQry_Detail->FieldByName("K_ID")->AsString(), "K02");
    EXPECT_EQ(l->AdoQry_Detail->FieldByName("COL_NAME")->AsString(), "蓝色");
    // Opened with Edit and saved unchanged, the ticket keeps its line.
    TQXCK211_1* again = edit(l);
    ASSERT_EQ(again->AdoQry_Main->RecordCount(), 1);
    again->Act_Save->trigger();
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(lastBatch().contains("delete from  d8201A WHERE NOID='" + noid + "'"));
    EXPECT_EQ(dump("SELECT WL_ID, S0, S1, SJ FROM D8201A WHERE NOID='" + noid + "'"), QStringList{"K0203|1|2|150"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0203'"), 1);
    EXPECT_EQ(stock("K0203", "01"), "-3") << "out of stock once, not twice";
    delete l;
}

TEST_F(SalesTicketEntryTest, EditAndDeleteRepostTheStock) {
    addStock("K0101", "02", {0});                 // another warehouse, untouched
    const QString before = stock("K0101", "01");  // the ticket of the set-up took 3 out
    ASSERT_EQ(before, "-3");
    TQXCK211* l = list();
    TQXCK211_1* e = edit(l);
    ASSERT_TRUE(typeCell(e, "S1", "5"));
    e->AdoQry_Main->CheckBrowseMode();
    e->Act_Save->trigger();
    EXPECT_EQ(stock("K0101", "01"), "-6");
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "S0305"));
    sink->queueAnswer(true);
    l->Act_Delete->trigger();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8201 WHERE NOID='S0305'"), 0);
    EXPECT_EQ(lines("S0305"), 0);
    EXPECT_EQ(stock("K0101", "01"), "0");
    EXPECT_EQ(stock("K0101", "02"), "0");
    delete l;
}

TEST_F(SalesTicketEntryTest, ASaleFromACheckedStockRowWithTooLittleStockIsRefusedAndLeavesNothing) {
    addStock("K0102", "01", {2}, 1);
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    fillHead(e, "C01", "超卖");
    addLine(e, "K01", "02", {"3"}, "80");
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_EQ(sink->errors().size(), 1) << sink->texts().join("|").toStdString();
    EXPECT_TRUE(sink->errors()[0].contains("库存不足支持本次出库业务"))
        << sink->errors()[0].toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8201 WHERE NOID='" + noid + "'"), 0);
    EXPECT_EQ(lines(noid), 0);
    EXPECT_EQ(stock("K0102", "01"), "2");
    // The screen keeps what was typed; two pieces can be sold.
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->NOTE->text(), "超卖");
    EXPECT_EQ(e->KH_GYS_ID->text(), "C01");
    ASSERT_TRUE(typeCell(e, "S0", "2"));
    e->AdoQry_Main->CheckBrowseMode();
    sink->clear();
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    EXPECT_EQ(lines(noid), 1);
    EXPECT_EQ(stock("K0102", "01"), "0");
    delete l;
}

TEST_F(SalesTicketEntryTest, AnUncheckedStockRowMayGoNegative) {
    addStock("K0102", "01", {1}, 0);
    TQXCK211* l = list();
    TQXCK211_1* e = add(l);
    fillHead(e, "C01");
    addLine(e, "K01", "02", {"3"}, "80");
    e->Act_Save->trigger();
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    EXPECT_EQ(stock("K0102", "01"), "-2");
    delete l;
}

}  // namespace

namespace qx::test {
INSTANTIATE_TEST_SUITE_P(SalesTickets, DocumentEntryTest, ::testing::Values(salesTicketEntry()),
                         entryName);
}  // namespace qx::test
