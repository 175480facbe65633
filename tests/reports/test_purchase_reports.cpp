// The purchase summary (204) and detail (203): the batch of every dialog choice against golden
// files, hand-computed rows of a small shop (receipts and returns, signs, settlement kinds), the
// choice messages, warehouse rights and hostile input in every edit.
#include <QFile>
#include <QPushButton>

#include "reports/Frmqxck201g.h"
#include "reports/Frmqxck201m.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;

class PurchaseReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        exec("INSERT INTO d1008 (BM_ID, BM_NAME) VALUES ('B1', '采购部')");
        exec("INSERT INTO d1101 (YW_ID, YW_NAME, BM_ID) VALUES ('Y1', '张三', 'B1')");
        exec("INSERT INTO d1103 (KH_GYS_ID, KG_NAME) VALUES ('G1', '华丰')");
        exec("INSERT INTO d1103 (KH_GYS_ID, KG_NAME) VALUES ('G2', '永兴')");
        exec("UPDATE d1800 SET PP='雅牌'");
        // grouping items of the purchase summary: supplier (A), supplier/style (B), style and
        // colour, department, salesperson, warehouse, warehouse/style; quantity and amount in all
        insertGroupingItems(204, {{"部门", "BM_NAME", "G", "D"},         {"供应商", "KG_NAME", "G", "AB"},
                              {"业务员", "YW_NAME", "G", "E"},       {"仓库", "CK_NAME", "G", "FG"},
                              {"款号", "WL_ID", "G", "BCG"},         {"品名", "WL_NAME", "G", "BCG"},
                              {"品牌", "WL_GG", "G", "C"},           {"单位", "DW_NAME", "G", "C"},
                              {"颜色", "COL_NAME", "G", "C"},        {"数量", "S0+S1+S2+S3+S4+S5+S6+S7+S8+S9", "S", "ABCDEFG"},
                              {"金额", "MONEY", "S", "ABCDEFG"}});
        // a receipt of 5 at 50 (non-cash, code 2) and a return of 2 at 24 (cash) from 华丰, and a
        // receipt from 永兴 before the month
        receipt("R1", "G1", "2", "2026-03-05", "K0101", {2, 3}, 50);
        returned("T1", "G1", "1", "2026-03-10", "K0101", {0, 2}, 24);
        receipt("R0", "G2", "1", "2026-02-20", "K0201", {1}, 60);
    }
    void TearDown() override {
        QFile::remove(G_CoName);
        ReportTest::TearDown();
    }

    void head(const QString& table, const QString& noid, const QString& supplier, const QString& jy, const QString& date) {
        exec("INSERT INTO " + table + " (T, NOID, CK_ID, BDATE, USER_ID, KH_GYS_ID, YW_ID, JY_ID, NOTE) VALUES (1,'" + noid +
             "','01','" + date + "','U1','" + supplier + "','Y1','" + jy + "','')");
    }
    static QString sizes(const QList<int>& s) {
        QString out;
        for (int i = 0; i < 10; ++i) out += "," + QString::number(i < s.size() ? s[i] : 0);
        return out;
    }
    void receipt(const QString& noid, const QString& supplier, const QString& jy, const QString& date, const QString& sku,
                 const QList<int>& s, double money) {
        head("D8101", noid, supplier, jy, date);
        exec("INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, DJ, MONEY) VALUES ('" + noid +
             "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','01'" + sizes(s) + ",10," + QString::number(money) + ")");
    }
    void returned(const QString& noid, const QString& supplier, const QString& jy, const QString& date, const QString& sku,
                  const QList<int>& s, double money) {
        head("D8102", noid, supplier, jy, date);
        exec("INSERT INTO D8102A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, SJ, SMONEY) VALUES ('" + noid +
             "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','01'" + sizes(s) + ",12," + QString::number(money) + ")");
    }

    // Opens a report whose dialog is filled by `fill` and run by `press` (a preset button's tag;
    // 0 = the custom combination).
    template <class R, class F>
    R* run(int code, int press, std::function<void(F*)> fill = {}, std::function<void(R*)> before = {}) {
        const bool keep = keepChoices;
        qx::ui::setModalHandler([fill, press, keep](TFrm_Base* dialog) {
            auto* f = dynamic_cast<F*>(dialog);
            if (!f) return int(mrCancel);
            if (!keep) defaults(f);
            if (fill) fill(f);
            if (press == 0)
                f->btn_ok->click();
            else
                f->template findChild<QPushButton*>("btn_group" + QString::number(press))->click();
            return f->ModalResult();
        });
        return startReport<R>(code, before);
    }
    TQXCK201G* summary(int press, std::function<void(TQXCK201GF*)> fill = {}, std::function<void(TQXCK201G*)> before = {}) {
        return run<TQXCK201G, TQXCK201GF>(204, press, fill, before);
    }
    TQXCK201M* detail(int press, std::function<void(TQXCK201MF*)> fill = {}, std::function<void(TQXCK201M*)> before = {}) {
        return run<TQXCK201M, TQXCK201MF>(203, press, fill, before);
    }
    // The last statement against a golden case (line breaks written as ${br}).
    void expectGolden(const QString& file, const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/" + file);
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name, {{"br", "\r\n"}}), lastStatement())) << name.toStdString();
    }
    // The dialog's own defaults (the choices of an earlier run persist).
    static void defaults(TFrm_TradeFilter* f) {
        for (QCheckBox* c : {f->BSCHK1_1, f->BSCHK1_2, f->BSCHK2_1, f->BSCHK2_2}) c->setChecked(true);
        if (auto* g = dynamic_cast<TQXCK201GF*>(f)) {
            g->RB1->setChecked(true);
            g->BSCHK3_1->setChecked(true);
        }
    }
    bool keepChoices = false;
    static QStringList fields(TFrm_Base_Qry* r) { return r->AdoQry_Main->FieldNames(); }
    static void noSizes(TQXCK201GF* f) {
        f->RB4->setChecked(true);
        f->BSCHK3_2->setChecked(true);
    }
};

// ------------------------------------------------------------------ summary

TEST_F(PurchaseReportTest, BySupplierAReceiptOfFiveAndAReturnOfTwoGiveThreeAnd26) {
    auto* r = summary(1, noSizes);
    expectGolden("qxck204.sql", "by supplier, no dates, no sizes");
    EXPECT_EQ(fields(r), (QStringList{"供应商", "数量", "金额"}));
    EXPECT_EQ(column(r->AdoQry_Main, "供应商"), QStringList{"华丰"});
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"3"});
    EXPECT_EQ(column(r->AdoQry_Main, "金额").value(0).toDouble(), 26.0);
    EXPECT_EQ(r->Lab_Condition->text(), "采购进货/采购退货/  ●日期:03-01 至 03-18 按 [供应商]");
    EXPECT_EQ(r->Caption(), "采购汇总表");
    EXPECT_EQ(r->Filter->Caption(), "采购汇总表");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
}

TEST_F(PurchaseReportTest, OnlyReturnsMakeEveryQuantityAndAmountNegative) {
    auto* r = summary(1, [](TQXCK201GF* f) {
        noSizes(f);
        f->BSCHK1_1->setChecked(false);
    });
    expectGolden("qxck204.sql", "by supplier, returns only");
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"-2"});
    EXPECT_EQ(column(r->AdoQry_Main, "金额").value(0).toDouble(), -24.0);
    EXPECT_EQ(r->Lab_Condition->text(), "采购退货/  ●日期:03-01 至 03-18 按 [供应商]");
    r->close();
}

TEST_F(PurchaseReportTest, BothSettlementKindsAddNoSettlementCondition) {
    auto* r = summary(1, noSizes);
    EXPECT_FALSE(lastStatement().contains("jy_id", Qt::CaseInsensitive));
    r->close();
}

TEST_F(PurchaseReportTest, ReceiptsAndReturnsCodeNonCashDifferently) {
    auto* r = summary(1, [](TQXCK201GF* f) {
        noSizes(f);
        f->BSCHK2_1->setChecked(false);
    });
    expectGolden("qxck204.sql", "non-cash only");
    // the receipt is non-cash (2), the return of settlement 1 is not (non-cash returns are 0)
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"5"});
    r->close();
    auto* cash = summary(1, [](TQXCK201GF* f) {
        noSizes(f);
        f->BSCHK2_2->setChecked(false);
    });
    expectGolden("qxck204.sql", "cash only");
    EXPECT_EQ(column(cash->AdoQry_Main, "数量"), QStringList{"-2"});
    cash->close();
}

TEST_F(PurchaseReportTest, NoDateGroupingStillRestrictsRowsToTheRange) {
    auto* r = summary(1, noSizes);
    EXPECT_FALSE(fields(r).contains("开单日期"));
    EXPECT_FALSE(column(r->AdoQry_Main, "供应商").contains("永兴")) << "the February receipt lies before the range";
    r->close();
}

TEST_F(PurchaseReportTest, DayMonthAndYearGroupings) {
    auto* day = summary(1, [](TQXCK201GF* f) { f->BSCHK3_2->setChecked(true); });
    expectGolden("qxck204.sql", "by supplier per day");
    EXPECT_EQ(column(day->AdoQry_Main, "开单日期"), (QStringList{"2026-03-05", "2026-03-10"}));
    day->close();
    auto* month = summary(1, [](TQXCK201GF* f) {
        f->RB2->setChecked(true);
        f->BSCHK3_2->setChecked(true);
    });
    expectGolden("qxck204.sql", "by supplier per month");
    EXPECT_EQ(column(month->AdoQry_Main, "月"), QStringList{"3"});
    EXPECT_EQ(column(month->AdoQry_Main, "数量"), QStringList{"3"});
    month->close();
    auto* year = summary(1, [](TQXCK201GF* f) {
        f->RB3->setChecked(true);
        f->BSCHK3_2->setChecked(true);
    });
    expectGolden("qxck204.sql", "by supplier per year");
    EXPECT_EQ(column(year->AdoQry_Main, "年"), QStringList{"2026"});
    year->close();
}

TEST_F(PurchaseReportTest, SizeBreakdownDropsTheArticleItemsAndBringsItsOwnColumns) {
    auto* r = summary(2, [](TQXCK201GF* f) { f->RB4->setChecked(true); });
    expectGolden("qxck204.sql", "by supplier and style with sizes");
    const QString sql = lastStatement();
    for (const char* item : {"WL_ID AS 款号", "WL_NAME AS 品名", "WL_GG AS", "DW_NAME AS"})
        EXPECT_FALSE(sql.contains(item)) << item;
    EXPECT_EQ(fields(r), (QStringList{"供应商", "款号", "品名", "颜色", "码", "尺码|0", "尺码|1", "尺码|2", "尺码|3", "尺码|4",
                                      "尺码|5", "尺码|6", "尺码|7", "尺码|8", "尺码|9", "尺码|合计", "金额"}));
    EXPECT_EQ(column(r->AdoQry_Main, "尺码|0"), QStringList{"2"});
    EXPECT_EQ(column(r->AdoQry_Main, "尺码|1"), QStringList{"1"});
    EXPECT_EQ(column(r->AdoQry_Main, "尺码|合计"), QStringList{"3"});
    EXPECT_EQ(r->DBGridEh->ColumnByField("尺码|0")->Title, "尺码|S") << "size titles of the row's size group";
    EXPECT_EQ(r->DBGridEh->ColumnByField("尺码|1")->Title, "尺码|M");
    r->close();
}

TEST_F(PurchaseReportTest, EveryPresetRunsAgainstTheDatabase) {
    for (int tag = 1; tag <= 7; ++tag) {
        auto* r = summary(tag);
        EXPECT_TRUE(sink->errors().isEmpty()) << tag << sink->errors().join("\n").toStdString();
        EXPECT_GE(r->AdoQry_Main->RecordCount(), 1) << tag;
        r->close();
    }
    const char* const captions[] = {"&1.按 【供应商】     ", "&2.按 供应商/商品】", "&7.按 【商品】       ", "&5.按 【部门】       ",
                                    "&6.按 【业务员】     ", "&3.按 【仓库】       ", "&4.按 【仓库/商品】  "};
    auto* r = summary(0, noSizes);
    for (int tag = 1; tag <= 7; ++tag) {
        auto* b = r->Filter->findChild<QPushButton*>("btn_group" + QString::number(tag));
        ASSERT_NE(b, nullptr);
        EXPECT_EQ(b->text(), QString::fromUtf8(captions[tag - 1]));
        EXPECT_EQ(b->property("Tag").toInt(), tag);
    }
    expectGolden("qxck204.sql", "custom combination");
    EXPECT_EQ(r->Lab_Condition->text(), "采购进货/采购退货/  ●日期:03-01 至 03-18 按 自定义汇总");
    r->close();
}

TEST_F(PurchaseReportTest, TheGroupingItemsComeFromTheDialogsFunction) {
    auto* r = summary(1, noSizes);
    const auto s = statements();
    EXPECT_NE(std::find(s.begin(), s.end(),
                        "SELECT group_name, group_sql, group_class, group_show, SHOW_WIDTH,A,B,C,D,E,F,G,H,I,J,K,L,M,N,O,P FROM "
                        "sys_GROUP WHERE (group_id = 204) ORDER BY orderby"),
              s.end());
    EXPECT_EQ(r->DBGridEh->ColumnByField("供应商")->Width, 70);
    r->close();
}

TEST_F(PurchaseReportTest, HiddenAmountsAreSelectedAsZero) {
    auto* r = summary(1, noSizes, [](TQXCK201G* g) { g->ShowCost = false; });
    expectGolden("qxck204.sql", "amounts hidden");
    EXPECT_EQ(column(r->AdoQry_Main, "金额").value(0).toDouble(), 0.0);
    r->close();
}

TEST_F(PurchaseReportTest, AUserWithoutWarehouseRightsGetsNoRows) {
    G_CHKCK = 1;
    exec("DELETE FROM sys_user_ck");
    auto* r = summary(1, noSizes);
    expectGolden("qxck204.sql", "warehouse rights");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty());
    r->close();
    auto* d = detail(1);
    EXPECT_EQ(d->AdoQry_Main->RecordCount(), 0);
    d->close();
}

TEST_F(PurchaseReportTest, ChoiceMessagesKeepTheDialogOpen) {
    expectTradeChoiceMessages<TQXCK201GF>([this](auto fill) { return summary(1, fill); }, "<采购收货、采购退货> 至少选择一项以上进行查询",
                                          "结算方式中:现金、月结/待结 至少选中一项进行查询");
}

TEST_F(PurchaseReportTest, RefreshBeforeAnyChoiceIsRefused) {
    expectRefreshRefused<TQXCK201G>(204, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!");
    sink->clear();
    expectRefreshRefused<TQXCK201M>(203, "您还没选择任何查询参数,请按【F3】呼出查询选项!");
}

TEST_F(PurchaseReportTest, TheDialogsChoicesPersist) {
    auto* r = summary(1, [](TQXCK201GF* f) {
        f->RB3->setChecked(true);
        f->BSCHK3_2->setChecked(true);
        f->BSCHK2_1->setChecked(false);
    });
    r->close();
    keepChoices = true;
    auto* again = summary(1);
    EXPECT_TRUE(again->Filter->RB3->isChecked());
    EXPECT_TRUE(again->Filter->BSCHK3_2->isChecked());
    EXPECT_FALSE(again->Filter->BSCHK2_1->isChecked());
    again->close();
}

TEST_F(PurchaseReportTest, HostileTextInEverySummaryEditIsAValue) {
    auto* r = summary(1, [](TQXCK201GF* f) {
        noSizes(f);
        f->KH_ID->setText("G'1");
        f->YW_ID->setText("Y'");
        f->CK_ID->setText("0'1");
        f->wl_id->setText(QString(10000, 'x') + "'");
    });
    expectGolden("qxck204.sql", "hostile filters");
    EXPECT_EQ(r->Filter->KH_ID->maxLength(), 10);
    EXPECT_EQ(r->Filter->YW_ID->maxLength(), 4);
    EXPECT_EQ(r->Filter->CK_ID->maxLength(), 4);
    EXPECT_EQ(r->Filter->wl_id->maxLength(), 20);
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(query("SELECT COUNT(*) FROM D8101").rows.size(), 1u);
    r->close();
}

TEST_F(PurchaseReportTest, FiltersNarrowTheRows) {
    auto* r = summary(1, [](TQXCK201GF* f) {
        noSizes(f);
        f->RB4->setChecked(true);
        f->BDATE->SetText("2026-02-01");
        f->KH_ID->setText("G2");
    });
    EXPECT_EQ(column(r->AdoQry_Main, "供应商"), QStringList{"永兴"});
    EXPECT_EQ(column(r->AdoQry_Main, "数量"), QStringList{"1"});
    r->close();
}

TEST_F(PurchaseReportTest, UnknownCodesInTheLookupsAreReported) {
    expectUnknownCodesReported<TQXCK201G>(204);
    expectUnknownCodesReported<TQXCK201M>(203);
}

TEST_F(PurchaseReportTest, TheWarehouseFilterIsOffForASingleWarehouseUser) {
    G_CKCOUNT_R = 1;
    auto* r = summary(1, noSizes);
    EXPECT_FALSE(r->Filter->CK_ID->isEnabled());
    EXPECT_FALSE(lastStatement().contains("D1007.CK_ID='"));
    r->close();
    G_CKCOUNT_R = 0;
    auto* m = detail(1);
    EXPECT_TRUE(m->Filter->CK_ID->isEnabled());
    m->close();
}

// ------------------------------------------------------------------ detail

TEST_F(PurchaseReportTest, DetailListsReceiptsAndNegatedReturnsBySupplier) {
    auto* r = detail(1);
    expectGolden("qxck203.sql", "by supplier");
    EXPECT_EQ(column(r->AdoQry_Main, "TTYPE"), (QStringList{"0", "2"}));
    EXPECT_EQ(column(r->AdoQry_Main, "oid"), (QStringList{"G1", "G1"}));
    EXPECT_EQ(column(r->AdoQry_Main, "oname"), (QStringList{"华丰", "华丰"}));
    EXPECT_EQ(column(r->AdoQry_Main, "S1"), (QStringList{"3", "-2"}));
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), (QStringList{"5", "-2"}));
    EXPECT_EQ(column(r->AdoQry_Main, "MONEY").value(1).toDouble(), -24.0);
    EXPECT_EQ(r->Lab_Condition->text(), " ●数据来源->采购进货/采购退货/  ●日期:03-01 至 03-18");
    EXPECT_EQ(r->Caption(), "采购进货明细查询");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    r->close();
}

TEST_F(PurchaseReportTest, DetailDimensionsAndChoices) {
    struct Case {
        int tag;
        std::function<void(TQXCK201MF*)> fill;
        const char* golden;
        QString firstOid;
    };
    const Case cases[] = {
        {2, {}, "by style", "K01"},
        {3, {}, "by salesperson", "Y1"},
        {4, {}, "by warehouse", "01"},
        {1, [](TQXCK201MF* f) { f->BSCHK2_1->setChecked(false); }, "non-cash only", "G1"},
        {1, [](TQXCK201MF* f) { f->BSCHK2_2->setChecked(false); }, "cash only", "G1"},
    };
    for (const Case& c : cases) {
        auto* r = detail(c.tag, c.fill);
        expectGolden("qxck203.sql", c.golden);
        EXPECT_TRUE(sink->errors().isEmpty()) << c.golden << sink->errors().join("\n").toStdString();
        EXPECT_EQ(column(r->AdoQry_Main, "oid").value(0), c.firstOid) << c.golden;
        r->close();
    }
}

TEST_F(PurchaseReportTest, DetailOfReturnsOnlyAndRightsAndHiddenCost) {
    auto* r = detail(1, [](TQXCK201MF* f) { f->BSCHK1_1->setChecked(false); });
    expectGolden("qxck203.sql", "returns only");
    EXPECT_EQ(column(r->AdoQry_Main, "STOT"), QStringList{"-2"});
    // the rows name their amount as returns do; the amount column shows it all the same
    ASSERT_NE(r->DBGridEh->ColumnByField("SMONEY"), nullptr);
    ASSERT_NE(r->DBGridEh->ColumnByField("SJ"), nullptr);
    EXPECT_EQ(r->DBGridEh->ColumnByField("SMONEY")->Title, "金额");
    EXPECT_EQ(r->DBGridEh->GetSumValue("SMONEY"), -24);
    EXPECT_EQ(r->DBGridEh->ColumnByField("SJ")->Title, "单价");
    r->close();
    G_CHKCK = 1;
    auto* rights = detail(1, {}, [](TQXCK201M* m) { m->ShowCost = false; });
    expectGolden("qxck203.sql", "warehouse rights, cost hidden");
    EXPECT_EQ(rights->AdoQry_Main->RecordCount(), 2);
    EXPECT_FALSE(rights->DBGridEh->ColumnByField("MONEY")->Visible);
    rights->close();
}

TEST_F(PurchaseReportTest, DetailMessagesKeepTheDialogOpen) {
    expectTradeChoiceMessages<TQXCK201MF>([this](auto fill) { return detail(1, fill); },
                                          "数据来源中:采购进货、采购退货 至少选中一项进行查询",
                                          "结算方式中:现金、月结/待结 至少选中一项进行查询");
}

TEST_F(PurchaseReportTest, HostileTextInEveryDetailEditIsAValueTwiceQuoted) {
    auto* r = detail(1, [](TQXCK201MF* f) {
        f->KH_ID->setText("G'1");
        f->YW_ID->setText("Y'");
        f->CK_ID->setText("0'1");
        f->wl_id->setText(QString(10000, 'x') + "'");
    });
    expectGolden("qxck203.sql", "hostile filters");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(query("SELECT COUNT(*) FROM D8102").rows.size(), 1u);
    r->close();
}

TEST_F(PurchaseReportTest, ScreenshotsOfTheSummaryAndTheDetail) {
    auto* s = summary(2);
    EXPECT_GE(s->AdoQry_Main->RecordCount(), 1);
    screenshot(s, "purchase_summary");
    s->close();
    auto* d = detail(1);
    EXPECT_EQ(d->AdoQry_Main->RecordCount(), 2);
    screenshot(d, "purchase_detail");
    d->close();
}

}  // namespace
