// The sales summary (214) and detail (213): the batch or procedure call of every dialog choice
// against golden files, hand-computed rows of a small shop (a sale, a return and point-of-sale
// receipts, one of them only redeeming points), the choice messages, warehouse rights and hostile
// input in the dialogs' edits.
#include <QPushButton>

#include "reports/Frmqxck211g.h"
#include "reports/Frmqxck211m.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;

class SalesReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        exec("INSERT INTO d1008 (BM_ID, BM_NAME) VALUES ('B1', '销售部')");
        exec("INSERT INTO d1101 (YW_ID, YW_NAME, BM_ID) VALUES ('Y1', '李四', 'B1')");
        exec("INSERT INTO d1102 (KH_GYS_ID, KG_NAME) VALUES ('C1', '丽华')");
        exec("INSERT INTO d1102 (KH_GYS_ID, KG_NAME) VALUES ('C2', '新潮')");
        exec("INSERT INTO d702 (VIPID, VIPNAME) VALUES ('V1', '会员甲')");
        insertGroupingItems(214, {{"部门", "BM_NAME", "G", "D"},      {"客户", "KG_NAME", "G", "AB"},
                              {"业务员", "YW_NAME", "G", "E"},    {"仓库", "CK_NAME", "G", "FG"},
                              {"款号", "WL_ID", "G", "BCGI"},     {"品名", "WL_NAME", "G", "BCGI"},
                              {"品牌", "WL_GG", "G", "CHI"},      {"单位", "DW_NAME", "G", "C"},
                              {"颜色", "COL_NAME", "G", "C"},     {"数量", "S0+S1+S2+S3+S4+S5+S6+S7+S8+S9", "S", "ABCDEFGHI"},
                              {"金额", "MONEY", "S", "ABCDEFGHI"}, {"毛利", "LY", "S", "ABCDEFGHI"}});
        // 丽华 buys 5 for 500 at a cost of 200 (non-cash, code 2) and returns 1 for 100 at a cost
        // of 40 (cash): 4 pieces, 400, profit 300 - 60 = 240. 新潮 bought in February.
        ticket("D8201", "S1", "C1", "2", "2026-03-05", "K0101", {2, 3}, 500, 200);
        ticket("D8202", "T1", "C1", "1", "2026-03-10", "K0101", {0, 1}, 100, 40);
        ticket("D8201", "S0", "C2", "1", "2026-02-20", "K0201", {1}, 200, 60);
        // the member's receipt: one shirt for 90 at a cost of 40; a receipt that only redeemed
        // points (one line, no member)
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('P1', '2026-03-12', '01', 'V1', 'Y1')");
        exec("INSERT INTO d712a (NOID, WL_ID, S1, SMONEY, MONEY) VALUES ('P1', 'K0102', 1, 90, 40)");
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('P2', '2026-03-13', '01', NULL, 'Y1')");
        exec("INSERT INTO d712a (NOID, WL_ID, S0, SMONEY, MONEY, NOTE) VALUES ('P2', 'Z', 1, 0, 20, '积分200')");
    }
    void TearDown() override {
        QFile::remove(G_CoName);
        ReportTest::TearDown();
    }
    void ticket(const QString& table, const QString& noid, const QString& customer, const QString& jy, const QString& date,
                const QString& sku, const QList<int>& s, double amount, double cost) {
        exec("INSERT INTO " + table + " (T, NOID, CK_ID, BDATE, USER_ID, KH_GYS_ID, YW_ID, JY_ID, NOTE) VALUES (1,'" + noid +
             "','01','" + date + "','U1','" + customer + "','Y1','" + jy + "','')");
        QString sizes;
        for (int i = 0; i < 10; ++i) sizes += "," + QString::number(i < s.size() ? s[i] : 0);
        exec("INSERT INTO " + table + "A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, SMONEY, MONEY) VALUES ('" +
             noid + "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','01'" + sizes + "," + QString::number(amount) + "," +
             QString::number(cost) + ")");
    }
    // Opens the summary with its dialog reset, filled by `fill` and run by the button `press`
    // (0 = the custom combination).
    TQXCK211G* summary(int press, std::function<void(TQXCK211GF*)> fill = {}) {
        qx::ui::setModalHandler([fill, press](TFrm_Base* dialog) {
            auto* f = dynamic_cast<TQXCK211GF*>(dialog);
            if (!f) return int(mrCancel);
            for (QCheckBox* c : {f->BSCHK1_1, f->BSCHK1_2, f->BSCHK1_3, f->BSCHK2_1, f->BSCHK2_2}) c->setChecked(true);
            f->RB4->setChecked(true);
            f->BSCHK3_2->setChecked(true);
            if (fill) fill(f);
            if (press == 0)
                f->btn_ok->click();
            else
                f->findChild<QPushButton*>("btn_group" + QString::number(press))->click();
            return f->ModalResult();
        });
        return startReport<TQXCK211G>(214, {});
    }
    // Opens the detail with its dialog reset, filled by `fill` and run by the dimension button `press`.
    TQXCK211M* detail(int press, std::function<void(TQXCK211MF*)> fill = {}) {
        qx::ui::setModalHandler([fill, press](TFrm_Base* dialog) {
            auto* f = dynamic_cast<TQXCK211MF*>(dialog);
            if (!f) return int(mrCancel);
            for (QCheckBox* c : {f->BSCHK1_1, f->BSCHK1_2, f->BSCHK1_3, f->BSCHK2_1, f->BSCHK2_2}) c->setChecked(true);
            if (fill) fill(f);
            f->findChild<QPushButton*>("btn_group" + QString::number(press))->click();
            return f->ModalResult();
        });
        return startReport<TQXCK211M>(213, {});
    }
    void expectDetailGolden(const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/qxck213.sql");
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name), lastStatement())) << name.toStdString();
    }
    // A row's value by its number (NOID) and field.
    static QString cell(TFrm_Base_Qry* r, const QString& noid, const QString& field) {
        const int row = column(r->AdoQry_Main, "NOID").indexOf(noid);
        return row < 0 ? QString("<no row %1>").arg(noid) : column(r->AdoQry_Main, field).value(row);
    }
    void expectGolden(const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/qxck214.sql");
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name, {{"br", "\r\n"}}), lastStatement())) << name.toStdString();
    }
    static QStringList fields(TFrm_Base_Qry* r) { return r->AdoQry_Main->FieldNames(); }
    static void ticketsOnly(TFrm_TradeFilter* f) { f->BSCHK1_3->setChecked(false); }
};

TEST_F(SalesReportTest, ByCustomerASaleOfFiveAndAReturnOfOneGiveFour400AndAProfitOf240) {
    auto* r = summary(1, ticketsOnly);
    expectGolden("by customer, tickets and returns");
    EXPECT_EQ(fields(r), (QStringList{"客户", "数量", "金额", "毛利"}));
    EXPECT_EQ(column(r->AdoQry_Main, "客户"), QStringList{"丽华"});
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"4"});
    EXPECT_EQ(column(r->AdoQry_Main, "金额").value(0).toDouble(), 400.0);
    EXPECT_EQ(column(r->AdoQry_Main, "毛利").value(0).toDouble(), 240.0);
    EXPECT_EQ(r->Lab_Condition->text(), "销售开单/销售退货/  ●日期:03-01 至 03-18 按 [客户]");
    EXPECT_EQ(r->Caption(), "销售汇总表");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
}

TEST_F(SalesReportTest, PointOfSaleReceiptsJoinUnderTheirMembers) {
    auto* r = summary(1);
    expectGolden("by customer, all sources");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    const QStringList customers = column(r->AdoQry_Main, "客户");
    const QStringList amounts = column(r->AdoQry_Main, "金额");
    const int member = customers.indexOf("会员甲");
    ASSERT_GE(member, 0);
    EXPECT_EQ(amounts.value(member).toDouble(), 90.0);
    EXPECT_EQ(column(r->AdoQry_Main, "毛利").value(member).toDouble(), 50.0);
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 3) << "丽华, the member and the receipt without a member";
    r->close();
}

TEST_F(SalesReportTest, PointOfSaleRowsAppearWhateverTheSettlementChoice) {
    for (QString off : {"cash", "non-cash"}) {
        auto* r = summary(1, [off](TQXCK211GF* f) { (off == "cash" ? f->BSCHK2_1 : f->BSCHK2_2)->setChecked(false); });
        expectGolden(off + " off");
        EXPECT_TRUE(column(r->AdoQry_Main, "客户").contains("会员甲")) << off.toStdString();
        // the sale is non-cash (2); the return's settlement 1 is not non-cash for returns (0)
        EXPECT_EQ(column(r->AdoQry_Main, "客户").contains("丽华"), true) << off.toStdString();
        r->close();
    }
}

TEST_F(SalesReportTest, ARedeemedPointsReceiptShowsOneRowWithoutColourOrSize) {
    auto* r = summary(3, [](TQXCK211GF* f) {
        f->BSCHK1_1->setChecked(false);
        f->BSCHK1_2->setChecked(false);
    });
    expectGolden("by style, point of sale only");
    const QStringList names = column(r->AdoQry_Main, "品名");
    ASSERT_EQ(names.count("【积分换购】"), 1);
    const int row = names.indexOf("【积分换购】");
    EXPECT_TRUE(column(r->AdoQry_Main, "颜色").value(row).isEmpty());
    EXPECT_TRUE(column(r->AdoQry_Main, "单位").value(row).isEmpty());
    EXPECT_EQ(column(r->AdoQry_Main, "数量").value(row), "1");
    EXPECT_EQ(column(r->AdoQry_Main, "毛利").value(row).toDouble(), -20.0);
    EXPECT_EQ(r->Lab_Condition->text(), "POS销售/  ●日期:03-01 至 03-18 按 [商品]");
    r->close();
}

TEST_F(SalesReportTest, GroupingByBrandWithSizesKeepsTheBrandColumn) {
    auto* r = summary(4, [](TQXCK211GF* f) { f->BSCHK3_1->setChecked(true); });
    expectGolden("by brand with sizes");
    EXPECT_TRUE(fields(r).contains("品牌"));
    EXPECT_TRUE(column(r->AdoQry_Main, "品牌").contains("雅牌"));
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
    auto* style = summary(3, [](TQXCK211GF* f) { f->BSCHK3_1->setChecked(true); });
    EXPECT_FALSE(fields(style).contains("品牌")) << "other combinations drop the brand with sizes";
    style->close();
}

TEST_F(SalesReportTest, EveryButtonRunsItsPreset) {
    const char* const captions[] = {"&1.按 【客户】     ", "&2.按 【客户/商品】", "&7.按 【商品】       ",
                                    "&5.按 【品牌】       ", "&6.按 【业务员】   ", "&3.按 【仓库】       ",
                                    "&4.按 【仓库/商品】  "};
    const char* const descriptions[] = {"按 [客户]", "按 [客户/商品]", "按 [商品]", "按 [品牌]", "按 [业务员]",
                                        "按 [仓库]", "按 [仓库/商品]", "按 [部门]", "按 [品牌/商品]"};
    for (int tag = 1; tag <= 9; ++tag) {
        sink->clear();
        auto* r = summary(tag);
        EXPECT_TRUE(sink->errors().isEmpty()) << tag << sink->errors().join("\n").toStdString();
        EXPECT_GE(r->AdoQry_Main->RecordCount(), 1) << tag;
        EXPECT_TRUE(r->Lab_Condition->text().endsWith(QString(" ") + descriptions[tag - 1])) << tag;
        if (tag <= 7) EXPECT_EQ(r->Filter->findChild<QPushButton*>("btn_group" + QString::number(tag))->text(), captions[tag - 1]);
        r->close();
    }
}

TEST_F(SalesReportTest, ChoiceMessagesKeepTheDialogOpen) {
    expectTradeChoiceMessages<TQXCK211GF>([this](auto fill) { return summary(1, fill); },
                                          "<pos销售、销售收货、销售退货> 至少选择一项以上进行查询",
                                          "结算方式中:现金/非现金 至少选中一项进行查询");
}

TEST_F(SalesReportTest, HostileFilterValuesAreQuotedAndFindNothing) {
    const QString hostile = "C1') OR ('1'='1";
    for (TLinkEdit* TFrm_TradeFilter::*edit : {&TFrm_TradeFilter::KH_ID, &TFrm_TradeFilter::YW_ID, &TFrm_TradeFilter::wl_id}) {
        sink->clear();
        auto* r = summary(1, [edit, hostile](TQXCK211GF* f) { (f->*edit)->setText(hostile + QString(10000, QChar('x'))); });
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
        EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
        r->close();
    }
    auto* r = summary(1, [hostile](TQXCK211GF* f) { f->KH_ID->setText("C1'"); });
    EXPECT_TRUE(lastStatement().contains("(D1102.KH_GYS_ID='C1''')")) << "the quote is doubled";
    EXPECT_TRUE(lastStatement().contains("(D712.VIPID='C1''')")) << "the member stands for the customer";
    r->close();
}


TEST_F(SalesReportTest, OnlyReturnsMakeEverySummedValueNegative) {
    auto* r = summary(1, [](TQXCK211GF* f) {
        f->BSCHK1_1->setChecked(false);
        f->BSCHK1_3->setChecked(false);
    });
    expectGolden("returns only");
    EXPECT_EQ(column(r->AdoQry_Main, "客户"), QStringList{"丽华"});
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"-1"});
    EXPECT_EQ(column(r->AdoQry_Main, "金额").value(0).toDouble(), -100.0);
    EXPECT_EQ(column(r->AdoQry_Main, "毛利").value(0).toDouble(), -60.0) << "a cost of 40 less the amount of 100";
    r->close();
}

TEST_F(SalesReportTest, AUserWithoutWarehouseRightsGetsNoRows) {
    G_CHKCK = 1;
    auto* all = summary(1);
    EXPECT_EQ(all->AdoQry_Main->RecordCount(), 3) << "rights to the warehouse of every document";
    all->close();
    exec("DELETE FROM sys_user_ck");
    auto* r = summary(1);
    expectGolden("warehouse rights");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
    auto* d = detail(1);
    EXPECT_EQ(d->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    d->close();
    G_CHKCK = 0;
}

// ------------------------------------------------------------------ detail

TEST_F(SalesReportTest, DetailByCustomerListsTheSaleAndTheNegatedReturn) {
    auto* r = detail(1, ticketsOnly);
    expectDetailGolden("by customer, tickets and returns");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(column(r->AdoQry_Main, "NOID"), (QStringList{"S1", "T1"}));
    EXPECT_EQ(column(r->AdoQry_Main, "TTYPE"), (QStringList{"0", "2"}));
    EXPECT_EQ(column(r->AdoQry_Main, "oid"), (QStringList{"C1", "C1"}));
    EXPECT_EQ(column(r->AdoQry_Main, "oname"), (QStringList{"丽华", "丽华"}));
    EXPECT_EQ(column(r->AdoQry_Main, "S1"), (QStringList{"3", "-1"}));
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), (QStringList{"5", "-1"}));
    EXPECT_EQ(cell(r, "T1", "SMONEY").toDouble(), -100.0);
    // 5 sold for 500, 1 returned for 100: 4 pieces for 400 in the footers
    EXPECT_EQ(r->DBGridEh->GetSumValue("STOT"), 4);
    EXPECT_EQ(r->DBGridEh->GetSumValue("SMONEY"), 400);
    EXPECT_EQ(r->Lab_Condition->text(), " ●数据来源->销售开单/销售退货/  ●日期:03-01 至 03-18");
    EXPECT_EQ(r->Caption(), "销售明细查询");
    EXPECT_TRUE(r->DBGridEh->ColumnByField("SMONEY")->Visible) << "sales amounts are not cost";
    r->close();
}

TEST_F(SalesReportTest, DetailListsPointOfSaleLinesUnderTheirMembers) {
    auto* r = detail(1);
    expectDetailGolden("by customer, all sources");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    // ordered by oid: the non-article lines ('00'), the customer, the member
    EXPECT_EQ(column(r->AdoQry_Main, "NOID"), (QStringList{"P2", "S1", "T1", "P1"}));
    EXPECT_EQ(cell(r, "P1", "oid"), "V1");
    EXPECT_EQ(cell(r, "P1", "oname"), "会员甲");
    EXPECT_EQ(cell(r, "P1", "COL_NAME"), "黑色");
    EXPECT_EQ(cell(r, "P1", "STOT"), "1");
    EXPECT_EQ(cell(r, "P1", "SMONEY").toDouble(), 90.0);
    EXPECT_EQ(column(r->AdoQry_Main, "TTYPE"), (QStringList{"11", "0", "2", "11"}));
    EXPECT_EQ(r->DBGridEh->GetSumValue("STOT"), 6);
    EXPECT_EQ(r->DBGridEh->GetSumValue("SMONEY"), 490);
    EXPECT_EQ(r->Lab_Condition->text(), " ●数据来源->POS销售/销售开单/销售退货/  ●日期:03-01 至 03-18");
    r->close();
}

TEST_F(SalesReportTest, DetailPointOfSaleLineWithoutAMemberStandsUnderEmpty) {
    exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('P3', '2026-03-14', '01', NULL, 'Y1')");
    exec("INSERT INTO d712a (NOID, WL_ID, S2, SMONEY, MONEY, ODJ, OMONEY, ZK, SJ) VALUES ('P3', 'K0101', 1, 80, 40, 100, 100, 0.8, 80)");
    exec("UPDATE d712 SET VIPZK=0.95 WHERE NOID='P3'");
    auto* r = detail(1);
    EXPECT_EQ(cell(r, "P3", "oid"), "<空>");
    EXPECT_EQ(cell(r, "P3", "oname"), "");
    // the price columns line up with the other blocks' titles
    EXPECT_EQ(cell(r, "P3", "ODJ").toDouble(), 100.0);
    EXPECT_EQ(cell(r, "P3", "OMONEY").toDouble(), 100.0);
    EXPECT_EQ(cell(r, "P3", "ZK").toDouble(), 0.8);
    EXPECT_EQ(cell(r, "P3", "VIPZK").toDouble(), 0.95);
    EXPECT_EQ(cell(r, "P3", "SJ").toDouble(), 80.0);
    EXPECT_EQ(cell(r, "P3", "SMONEY").toDouble(), 80.0);
    EXPECT_EQ(cell(r, "S1", "ZK").toDouble(), 0.0);
    r->close();
}

TEST_F(SalesReportTest, DetailARedeemedPointsReceiptShowsOneRowWithoutColourOrSize) {
    auto* r = detail(2, [](TQXCK211MF* f) {
        f->BSCHK1_1->setChecked(false);
        f->BSCHK1_2->setChecked(false);
    });
    expectDetailGolden("by style, point of sale only");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    const QStringList names = column(r->AdoQry_Main, "WL_NAME");
    ASSERT_EQ(names.count("【积分换购】"), 1);
    EXPECT_EQ(cell(r, "P2", "oid"), "00");
    EXPECT_EQ(cell(r, "P2", "oname"), "【换购,储值,满额折现】");
    EXPECT_EQ(cell(r, "P2", "WL_NAME"), "【积分换购】");
    EXPECT_TRUE(cell(r, "P2", "COL_NAME").isEmpty());
    EXPECT_TRUE(cell(r, "P2", "M_ID").isEmpty());
    EXPECT_TRUE(cell(r, "P2", "DW_NAME").isEmpty());
    EXPECT_EQ(cell(r, "P2", "STOT"), "1");
    EXPECT_EQ(cell(r, "P2", "NOTE"), "积分200");
    EXPECT_EQ(cell(r, "P1", "oid"), "K01");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(r->Lab_Condition->text(), " ●数据来源->POS销售/  ●日期:03-01 至 03-18");
    r->close();
}

TEST_F(SalesReportTest, DetailPointOfSaleLinesAppearWhateverTheSettlementChoice) {
    struct Case {
        QString golden;
        QCheckBox* TQXCK211MF::*off;
        QStringList numbers;
    };
    // the sale is non-cash (code 2); the return's code 1 is not non-cash for returns (code 0)
    const Case cases[] = {{"non-cash only", &TQXCK211MF::BSCHK2_1, {"P2", "S1", "P1"}},
                          {"cash only", &TQXCK211MF::BSCHK2_2, {"P2", "T1", "P1"}}};
    for (const Case& c : cases) {
        auto* r = detail(1, [&c](TQXCK211MF* f) { (f->*c.off)->setChecked(false); });
        expectDetailGolden(c.golden);
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
        EXPECT_EQ(column(r->AdoQry_Main, "NOID"), c.numbers) << c.golden.toStdString();
        r->close();
    }
}

TEST_F(SalesReportTest, DetailByBrandAndByWarehouse) {
    auto* brand = detail(3, ticketsOnly);
    expectDetailGolden("by brand");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(column(brand->AdoQry_Main, "oid"), (QStringList{"P1", "P1"}));
    EXPECT_EQ(column(brand->AdoQry_Main, "oname"), (QStringList{"雅牌", "雅牌"}));
    brand->close();
    auto* all = detail(3);
    EXPECT_EQ(column(all->AdoQry_Main, "oid"), (QStringList{"00", "P1", "P1", "P1"})) << "point-of-sale lines under their brand";
    all->close();
    auto* warehouse = detail(4);
    expectDetailGolden("by warehouse");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(column(warehouse->AdoQry_Main, "oid"), (QStringList{"00", "01", "01", "01"}));
    EXPECT_EQ(column(warehouse->AdoQry_Main, "oname").value(1), "总仓");
    warehouse->close();
}

TEST_F(SalesReportTest, DetailOfReturnsOnlyIsNegative) {
    auto* r = detail(1, [](TQXCK211MF* f) {
        f->BSCHK1_1->setChecked(false);
        f->BSCHK1_3->setChecked(false);
    });
    expectDetailGolden("returns only");
    EXPECT_EQ(column(r->AdoQry_Main, "NOID"), QStringList{"T1"});
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), QStringList{"-1"});
    EXPECT_EQ(column(r->AdoQry_Main, "SMONEY").value(0).toDouble(), -100.0);
    r->close();
}

TEST_F(SalesReportTest, DetailUnderWarehouseRights) {
    G_CHKCK = 1;
    auto* r = detail(1);
    expectDetailGolden("warehouse rights");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 4);
    r->close();
    exec("UPDATE sys_user_ck SET CK_ID='02'");
    auto* none = detail(1);
    EXPECT_EQ(none->AdoQry_Main->RecordCount(), 0) << "no rights to the warehouse 01 of every document";
    none->close();
    G_CHKCK = 0;
}

TEST_F(SalesReportTest, DetailMessagesKeepTheDialogOpen) {
    expectTradeChoiceMessages<TQXCK211MF>([this](auto fill) { return detail(1, fill); },
                                          "数据来源中:POS销售、销售开单、销售退货 至少选中一项进行查询",
                                          "结算方式中:现金/非现金 至少选中一项进行查询");
}

TEST_F(SalesReportTest, RefreshBeforeAnyChoiceIsRefused) {
    expectRefreshRefused<TQXCK211G>(214, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!");
    sink->clear();
    expectRefreshRefused<TQXCK211M>(213, "您还没选择任何查询参数,请按【F3】呼出查询选项!");
}

TEST_F(SalesReportTest, DetailFiltersNarrowTheRows) {
    auto* customer = detail(1, [](TQXCK211MF* f) { f->KH_ID->setText("C1"); });
    EXPECT_EQ(column(customer->AdoQry_Main, "NOID"), (QStringList{"S1", "T1"})) << "no member is the customer C1";
    customer->close();
    auto* member = detail(1, [](TQXCK211MF* f) { f->KH_ID->setText("V1"); });
    EXPECT_EQ(column(member->AdoQry_Main, "NOID"), QStringList{"P1"}) << "the member stands for the customer";
    member->close();
    auto* salesperson = detail(1, [](TQXCK211MF* f) { f->YW_ID->setText("Y1"); });
    EXPECT_EQ(salesperson->AdoQry_Main->RecordCount(), 4);
    salesperson->close();
    auto* style = detail(1, [](TQXCK211MF* f) { f->wl_id->setText("K02"); });
    EXPECT_EQ(style->AdoQry_Main->RecordCount(), 0);
    style->close();
    auto* warehouse = detail(1, [](TQXCK211MF* f) { f->CK_ID->setText("02"); });
    EXPECT_EQ(warehouse->AdoQry_Main->RecordCount(), 0);
    warehouse->close();
    auto* february = detail(1, [](TQXCK211MF* f) {
        f->BDATE->SetText("2026-02-01");
        f->EDATE->SetText("2026-02-28");
    });
    EXPECT_EQ(column(february->AdoQry_Main, "NOID"), QStringList{"S0"});
    february->close();
}

TEST_F(SalesReportTest, DetailHostileTextInEveryEditIsAValueTwiceQuoted) {
    auto* r = detail(1, [](TQXCK211MF* f) {
        f->KH_ID->setText("C'1");
        f->YW_ID->setText("Y'");
        f->CK_ID->setText("0'1");
        f->wl_id->setText(QString(10000, 'x') + "'");
    });
    expectDetailGolden("hostile filters");
    EXPECT_EQ(r->Filter->KH_ID->maxLength(), 10);
    EXPECT_EQ(r->Filter->wl_id->maxLength(), 20);
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
    const QString hostile = "C1') OR ('1'='1";
    for (TLinkEdit* TFrm_TradeFilter::*edit : {&TFrm_TradeFilter::KH_ID, &TFrm_TradeFilter::YW_ID, &TFrm_TradeFilter::CK_ID,
                                                &TFrm_TradeFilter::wl_id}) {
        sink->clear();
        auto* d = detail(1, [edit, hostile](TQXCK211MF* f) { (f->*edit)->setText(hostile + QString(10000, QChar('x'))); });
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
        EXPECT_EQ(d->AdoQry_Main->RecordCount(), 0);
        d->close();
    }
    EXPECT_EQ(query("SELECT NOID FROM d8201").rows.size(), 2u) << "nothing changed";
    EXPECT_EQ(query("SELECT NOID FROM d712").rows.size(), 2u);
}

TEST_F(SalesReportTest, UnknownCodesInTheLookupsAreReported) {
    expectUnknownCodesReported<TQXCK211G>(214);
    expectUnknownCodesReported<TQXCK211M>(213);
}

TEST_F(SalesReportTest, DetailChoicesPersist) {
    auto* r = detail(1, [](TQXCK211MF* f) {
        f->BSCHK1_3->setChecked(false);
        f->BSCHK2_1->setChecked(false);
    });
    r->close();
    qx::ui::setModalHandler([](TFrm_Base* dialog) {
        auto* f = dynamic_cast<TQXCK211MF*>(dialog);
        if (!f) return int(mrCancel);
        EXPECT_FALSE(f->BSCHK1_3->isChecked());
        EXPECT_FALSE(f->BSCHK2_1->isChecked());
        EXPECT_TRUE(f->BSCHK1_1->isChecked());
        return int(mrCancel);
    });
    auto* again = startReport<TQXCK211M>(213, {});
    again->close();
}

TEST_F(SalesReportTest, DetailDimensionButtons) {
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* r = startReport<TQXCK211M>(213, {});
    const QStringList captions = {"&1.按 【客户】", "&2.按 【商品】", "&3.按 【品牌】", "&4.按 【仓库】"};
    for (int tag = 1; tag <= 4; ++tag)
        EXPECT_EQ(r->Filter->findChild<QPushButton*>("btn_group" + QString::number(tag))->text(), captions[tag - 1]);
    EXPECT_EQ(r->Filter->findChild<QPushButton*>("btn_group5"), nullptr);
    EXPECT_EQ(r->Filter->BSCHK1_3->text(), "POS");
    r->close();
}

TEST_F(SalesReportTest, ScreenshotsOfTheSummaryAndTheDetail) {
    auto* s = summary(2);
    EXPECT_GE(s->AdoQry_Main->RecordCount(), 3);
    screenshot(s, "sales_summary");
    s->close();
    auto* d = detail(1);
    EXPECT_EQ(d->AdoQry_Main->RecordCount(), 4);
    screenshot(d, "sales_detail");
    d->close();
}

}  // namespace
