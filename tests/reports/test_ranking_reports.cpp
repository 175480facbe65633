// The sales ranking (281): the batch of every dialog choice against golden files, places
// numbered by quantity sold on a small shop computed by hand, the column groups, slow movers,
// members, the choice messages and hostile input in the dialog.
#include <QDir>
#include <QFile>
#include <QToolButton>

#include "framework/Screenshot.h"
#include "reports/Frmqxck281.h"
#include "reports/Frmqxck281f.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;

// The small shop of the report fixture, with categories, three brands, a third style that only
// lies in stock, and March sales:
//   总仓 (01): ticket S1 sells 5 K0101 for 500, return T1 takes 1 K0101 back for 100, ticket S2
//              sells 2 K0201 for 400;
//   东门店 (02): point-of-sale receipt P1 sells 1 K0102 for 90 to member 会员甲.
// So K01 (衬衫) 5 for 490, K02 (裤子) 2 for 400; K03 (外套) has 7 in stock and sold nothing.
class RankingReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('C1', '上衣')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('C2', '裤类')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('C3', '外套类')");
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P2', '酷牌')");
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P3', '冬牌')");
        exec("UPDATE d1800 SET CLASS_ID='C1' WHERE K_ID='K01'");
        exec("UPDATE d1800 SET CLASS_ID='C2', PP_ID='P2' WHERE K_ID='K02'");
        exec("INSERT INTO d1800 (K_ID, PP_ID, M_ID, CLASS_ID, WL_NAME, DW_NAME, DJ, PFJ, CHECK_KC) VALUES "
             "('K03','P3','A','C3','外套','件',80,300,0)");
        exec("INSERT INTO d1801 VALUES ('K0301','K03','01')");
        exec("INSERT INTO d702 (VIPID, VIPNAME) VALUES ('V1', '会员甲')");
        exec("INSERT INTO d702 (VIPID, VIPNAME) VALUES ('V2', '会员乙')");
        exec("UPDATE d1007 SET G1=1 WHERE CK_ID='02'");
        openingStock("K0101", "01", {5, 5});
        openingStock("K0201", "01", {4, 4});
        openingStock("K0102", "02", {3});
        openingStock("K0301", "02", {7});
        ticket("D8201", "S1", "01", "2026-03-05", "K0101", {2, 3}, 500);
        ticket("D8202", "T1", "01", "2026-03-10", "K0101", {0, 1}, 100);
        ticket("D8201", "S2", "01", "2026-03-11", "K0201", {2}, 400);
        pos("P1", "02", "2026-03-12", "V1", "K0102", 1, 90);
    }
    void TearDown() override {
        QFile::remove(G_CoName);
        G_CHKCK = false;
        ReportTest::TearDown();
    }
    void ticket(const QString& table, const QString& noid, const QString& warehouse, const QString& date, const QString& sku,
                const QList<int>& s, double amount) {
        exec("INSERT INTO " + table + " (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (1,'" + noid + "','" + warehouse + "','" +
             date + "','U1','')");
        QString sizes;
        for (int i = 0; i < 10; ++i) sizes += "," + QString::number(i < s.size() ? s[i] : 0);
        exec("INSERT INTO " + table + "A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, SMONEY, MONEY) VALUES ('" +
             noid + "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','" + warehouse + "'" + sizes + "," +
             QString::number(amount) + ",0)");
    }
    void pos(const QString& noid, const QString& warehouse, const QString& date, const QString& member, const QString& sku,
             int quantity, double amount) {
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('" + noid + "', '" + date + "', '" + warehouse + "', '" +
             member + "', NULL)");
        exec("INSERT INTO d712a (NOID, WL_ID, S0, SMONEY, MONEY) VALUES ('" + noid + "', '" + sku + "', " +
             QString::number(quantity) + ", " + QString::number(amount) + ", 0)");
    }

    // Opens the ranking with its dialog filled by `fill` (dates 03-01 to 03-18, everything checked).
    TQXCK281* ranking(std::function<void(TQXCK281F*)> fill = {}) {
        qx::ui::setModalHandler([fill](TFrm_Base* dialog) {
            auto* f = dynamic_cast<TQXCK281F*>(dialog);
            if (!f) return int(mrCancel);
            if (fill) fill(f);
            f->btn_ok->click();
            return f->ModalResult();
        });
        return startReport<TQXCK281>(281, {});
    }
    void expectGolden(const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/qxck281.sql");
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name), lastStatement())) << name.toStdString();
    }
    static QStringList col(TQXCK281* r, const QString& field) { return column(r->AdoQry_Main, field); }
    void expectNoErrors() { EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString(); }
};

TEST_F(RankingReportTest, PlacesAreNumberedByQuantitySold) {
    auto* r = ranking();
    expectGolden("all sources, both kinds, items without sales");
    expectNoErrors();
    ASSERT_EQ(r->AdoQry_Main->RecordCount(), 3) << "three places: warehouses, categories and brands have three each";
    EXPECT_EQ(col(r, "ID"), (QStringList{"1", "2", "3"}));
    // styles: K01 5 pieces for 490 (5 - 1 + 1), 8 left in stock (6 in 总仓, 2 in 东门店); K02 2 for 400, 6 left
    EXPECT_EQ(col(r, "K_ID"), (QStringList{"K01", "K02", ""}));
    EXPECT_EQ(col(r, "WL_NAME"), (QStringList{"衬衫", "裤子", ""}));
    EXPECT_EQ(col(r, "S1"), (QStringList{"5", "2", ""}));
    EXPECT_EQ(col(r, "M1").value(0).toDouble(), 490.0);
    EXPECT_EQ(col(r, "M1").value(1).toDouble(), 400.0);
    EXPECT_EQ(col(r, "K1"), (QStringList{"8", "6", ""}));
    // warehouses: 总仓 6 for 800 (stock 12), 东门店 1 for 90 (stock 9), 仓AB without sales or stock
    EXPECT_EQ(col(r, "CK_ID"), (QStringList{"01", "02", "AB01"}));
    EXPECT_EQ(col(r, "CK_NAME"), (QStringList{"总仓", "东门店", "仓AB"}));
    EXPECT_EQ(col(r, "S2"), (QStringList{"6", "1", ""}));
    EXPECT_EQ(col(r, "M2").value(0).toDouble(), 800.0);
    EXPECT_EQ(col(r, "k2"), (QStringList{"12", "9", "0"}));
    // categories: 上衣 5, 裤类 2, 外套类 only in stock (7)
    EXPECT_EQ(col(r, "CLASS_NAME"), (QStringList{"上衣", "裤类", "外套类"}));
    EXPECT_EQ(col(r, "S3"), (QStringList{"5", "2", ""}));
    EXPECT_EQ(col(r, "k3"), (QStringList{"8", "6", "7"}));
    // colours: 红色 (01) 6 = 5 - 1 + 2, 黑色 (02) 1 at the point of sale; stock 19 and 2
    EXPECT_EQ(col(r, "COL_NAME"), (QStringList{"红色", "黑色", ""}));
    EXPECT_EQ(col(r, "S4"), (QStringList{"6", "1", ""}));
    EXPECT_EQ(col(r, "k4"), (QStringList{"19", "2", ""}));
    // brands: 雅牌 5, 酷牌 2, 冬牌 only in stock
    EXPECT_EQ(col(r, "PP_NAME"), (QStringList{"雅牌", "酷牌", "冬牌"}));
    EXPECT_EQ(col(r, "S5"), (QStringList{"5", "2", ""}));
    EXPECT_EQ(col(r, "k5"), (QStringList{"8", "6", "7"}));
    // slow movers: 外套 with its 7 pieces
    EXPECT_EQ(col(r, "zs_ID"), (QStringList{"K03", "", ""}));
    EXPECT_EQ(col(r, "zs_NAME"), (QStringList{"外套", "", ""}));
    EXPECT_EQ(col(r, "S6"), (QStringList{"7", "", ""}));
    // members: only the point of sale carries one
    EXPECT_EQ(col(r, "VIPNAME"), (QStringList{"会员甲", "", ""}));
    EXPECT_EQ(col(r, "S7"), (QStringList{"1", "", ""}));
    EXPECT_EQ(col(r, "M7").value(0).toDouble(), 90.0);
    EXPECT_EQ(r->Lab_Condition->text(), "销售日期：03-01至03-18  本排行表的数据来源为：销售单、POS销售");
    EXPECT_EQ(r->Caption(), "销售排行");
    EXPECT_EQ(r->DBGridEh->ColumnByField("S1")->Footer.ValueType, fvtSum);
    EXPECT_EQ(r->DBGridEh->ColumnByField("K1")->Footer.ValueType, fvtSum);
    EXPECT_EQ(r->DBGridEh->GetSumValue("S1"), 7.0);
    r->close();
}

TEST_F(RankingReportTest, TheBatchFollowsEveryChoiceOfTheDialog) {
    struct Case {
        const char* name;
        std::function<void(TQXCK281F*)> fill;
    };
    const Case cases[] = {
        {"sales tickets only", [](TQXCK281F* f) { f->o2->setChecked(false); }},
        {"point of sale only", [](TQXCK281F* f) { f->o1->setChecked(false); }},
        {"own warehouses only", [](TQXCK281F* f) { f->o4->setChecked(false); }},
        {"distributor warehouses only", [](TQXCK281F* f) { f->o3->setChecked(false); }},
        {"one warehouse", [](TQXCK281F* f) { f->CK_ID1->setText("02"); }},
        {"without items that did not sell", [](TQXCK281F* f) { f->D1->setChecked(false); }},
    };
    for (const Case& c : cases) {
        sink->clear();
        auto* r = ranking(c.fill);
        expectGolden(c.name);
        expectNoErrors();
        r->close();
    }
}

TEST_F(RankingReportTest, WarehouseKindsAndSourcesNarrowTheRankings) {
    auto* own = ranking([](TQXCK281F* f) { f->o4->setChecked(false); });
    EXPECT_EQ(col(own, "CK_ID"), (QStringList{"01", "AB01"})) << "东门店 is a distributor's";
    EXPECT_EQ(col(own, "VIPID"), (QStringList{"", ""})) << "the member bought in 东门店";
    own->close();
    auto* pos = ranking([](TQXCK281F* f) { f->o1->setChecked(false); });
    EXPECT_EQ(col(pos, "K_ID").value(0), "K01");
    EXPECT_EQ(col(pos, "S1").value(0), "1");
    EXPECT_EQ(col(pos, "zs_ID").mid(0, 2), (QStringList{"K03", "K02"})) << "slow movers by stock: 7, then 6";
    pos->close();
}

TEST_F(RankingReportTest, WithRightsEnforcedTheWarehouseSetFollowsTheUser) {
    G_CHKCK = true;
    auto* r = ranking();
    expectGolden("rights enforced");
    EXPECT_EQ(col(r, "CK_ID"), (QStringList{"01", ""})) << "U1 may read 总仓 only";
    EXPECT_EQ(col(r, "K_ID"), (QStringList{"K01", "K02"})) << "the member's receipt in 东门店 is not counted";
    EXPECT_EQ(col(r, "S1"), (QStringList{"4", "2"}));
    r->close();
}

TEST_F(RankingReportTest, AWarehouseEnteredByIdBypassesTheRights) {
    G_CHKCK = true;
    auto* r = ranking([](TQXCK281F* f) { f->CK_ID1->setText("02"); });
    expectNoErrors();
    EXPECT_TRUE(lastStatement().startsWith("SELECT CK_ID INTO #TCK FROM d1007 where ck_id='02';"));
    EXPECT_FALSE(lastStatement().contains("sys_USER_CK"));
    EXPECT_EQ(col(r, "CK_ID").value(0), "02");
    EXPECT_EQ(col(r, "K_ID").value(0), "K01");
    EXPECT_EQ(col(r, "VIPNAME").value(0), "会员甲");
    r->close();
}

TEST_F(RankingReportTest, APeriodWithoutSalesGivesOnlySlowMoversAndStockItems) {
    auto* r = ranking([](TQXCK281F* f) {
        f->BDATE->SetText("2026-02-01");
        f->EDATE->SetText("2026-02-28");
    });
    expectNoErrors();
    EXPECT_EQ(col(r, "K_ID").join(""), "") << "nothing sold";
    EXPECT_EQ(col(r, "VIPID").join(""), "");
    // every style in stock is a slow mover, largest stock first: K01 8, K03 7, K02 6
    EXPECT_EQ(col(r, "zs_ID"), (QStringList{"K01", "K03", "K02"}));
    EXPECT_EQ(col(r, "S6"), (QStringList{"8", "7", "6"}));
    // with stock but 0 sold: warehouses, categories, colours and brands
    EXPECT_EQ(col(r, "CK_ID"), (QStringList{"01", "02", "AB01"}));
    EXPECT_EQ(col(r, "S2").join(""), "");
    EXPECT_EQ(col(r, "k2"), (QStringList{"12", "9", "0"}));
    EXPECT_EQ(col(r, "CLASS_ID"), (QStringList{"C1", "C2", "C3"}));
    EXPECT_EQ(col(r, "COL_ID"), (QStringList{"01", "02", ""}));
    EXPECT_EQ(col(r, "PP_NAME"), (QStringList{"冬牌", "酷牌", "雅牌"}));
    r->close();
    auto* bare = ranking([](TQXCK281F* f) {
        f->BDATE->SetText("2026-02-01");
        f->EDATE->SetText("2026-02-28");
        f->D1->setChecked(false);
    });
    EXPECT_EQ(col(bare, "zs_ID"), (QStringList{"K01", "K03", "K02"}));
    EXPECT_EQ(col(bare, "CK_ID").join(""), "") << "without the choice only the slow movers remain";
    EXPECT_EQ(col(bare, "PP_NAME").join(""), "");
    bare->close();
}

TEST_F(RankingReportTest, ReturnsExceedingSalesGiveANegativeQuantityNearTheEnd) {
    ticket("D8202", "T2", "01", "2026-03-15", "K0301", {3}, 300);  // K03 was never sold: 3 back
    auto* r = ranking();
    expectNoErrors();
    EXPECT_EQ(col(r, "K_ID"), (QStringList{"K01", "K02", "K03"}));
    EXPECT_EQ(col(r, "S1"), (QStringList{"5", "2", "-3"}));
    EXPECT_EQ(col(r, "M1").value(2).toDouble(), -300.0);
    EXPECT_EQ(col(r, "zs_ID").join(""), "") << "a style with sales rows is no slow mover";
    r->close();
}

TEST_F(RankingReportTest, MembersBeyondTheLongestOtherRankingAreNotShown) {
    pos("P2", "02", "2026-03-13", "V2", "K0102", 1, 95);
    auto* r = ranking([](TQXCK281F* f) {
        f->CK_ID1->setText("02");
        f->D1->setChecked(false);
        f->o1->setChecked(false);
    });
    expectNoErrors();
    // one style sold, one colour, one brand, one warehouse, one category; K03 the one slow mover
    ASSERT_EQ(r->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(col(r, "S1"), QStringList{"2"});
    // two members bought one piece each; only the first place has a row
    EXPECT_TRUE(QStringList({"V1", "V2"}).contains(col(r, "VIPID").value(0))) << col(r, "VIPID").join(",").toStdString();
    r->close();
}

TEST_F(RankingReportTest, TheColumnGroupsFollowTheRankingChoices) {
    struct Group {
        QCheckBox* TQXCK281F::*choice;
        QStringList fields;
    };
    const Group groups[] = {
        {&TQXCK281F::C1, {"zs_ID", "zs_NAME", "S6"}},
        {&TQXCK281F::C2, {"CK_ID", "CK_NAME", "S2", "M2", "k2"}},
        {&TQXCK281F::C3, {"CLASS_ID", "CLASS_NAME", "S3", "M3", "k3"}},
        {&TQXCK281F::C4, {"COL_ID", "COL_NAME", "S4", "M4", "k4"}},
        {&TQXCK281F::C5, {"PP_NAME", "S5", "M5", "k5"}},
        {&TQXCK281F::C6, {"VIPID", "VIPNAME", "S7", "M7"}},
    };
    G_CM = 3;  // the quantities S1..S7 are no size columns: a small size count hides none of them
    for (const Group& hidden : groups) {
        auto* r = ranking([&](TQXCK281F* f) { (f->*hidden.choice)->setChecked(false); });
        for (const Group& g : groups)
            for (const QString& field : g.fields) {
                TColumnEh* c = r->DBGridEh->ColumnByField(field);
                ASSERT_NE(c, nullptr) << field.toStdString();
                EXPECT_EQ(c->Visible, &g != &hidden) << field.toStdString();
            }
        for (const char* field : {"ID", "K_ID", "WL_NAME", "S1", "M1", "K1"})
            EXPECT_TRUE(r->DBGridEh->ColumnByField(field)->Visible) << field;
        EXPECT_EQ(r->DBGridEh->ColumnByField("S1")->Title, "款式排行|数量");
        r->close();
    }
}

TEST_F(RankingReportTest, TheDialogStartsWithEverythingChosen) {
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* r = startReport<TQXCK281>(281, {});
    TQXCK281F* f = r->Filter;
    for (QCheckBox* c : {f->o1, f->o2, f->o3, f->o4, f->C1, f->C2, f->C3, f->C4, f->C5, f->C6, f->D1})
        EXPECT_TRUE(c->isChecked()) << c->objectName().toStdString();
    EXPECT_EQ(f->o1->text(), "销售单");
    EXPECT_EQ(f->o2->text(), "POS销售");
    EXPECT_EQ(f->o3->text(), "本公司仓库");
    EXPECT_EQ(f->o4->text(), "分销商仓库");
    EXPECT_EQ((QStringList{f->C1->text(), f->C2->text(), f->C3->text(), f->C4->text(), f->C5->text(), f->C6->text()}),
              (QStringList{"滞销款", "仓库", "类别", "颜色", "品牌", "会员消费"}));
    EXPECT_EQ(f->D1->text(), "汇总未发生销售数据的项目库存<对仓库，类别，颜色，品牌项生效>");
    EXPECT_EQ(f->btn_dateset->text(), "时段选择");
    EXPECT_EQ(f->CK_ID1->maxLength(), 6);
    EXPECT_EQ(f->BDATE->Text(), "2026-03-01");
    EXPECT_EQ(f->EDATE->Text(), "2026-03-18");
    EXPECT_EQ(f->titDATE->text(), "(18天)");
    f->EDATE->SetText("2026-03-30");
    EXPECT_EQ(f->titDATE->text(), "(30天)");
    EXPECT_TRUE(r->QrySql.isEmpty());
    r->close();
}

TEST_F(RankingReportTest, ChoiceMessagesKeepTheDialogOpen) {
    struct Case {
        std::function<void(TQXCK281F*)> fill;
        QString message;
    };
    const Case cases[] = {
        {[](TQXCK281F* f) {
             f->o1->setChecked(false);
             f->o2->setChecked(false);
         },
         "【数据来源】必须选择一项进行查询!"},
        {[](TQXCK281F* f) {
             f->o3->setChecked(false);
             f->o4->setChecked(false);
         },
         "【仓库区分】必须选择一项进行查询!"},
        {[](TQXCK281F* f) {
             f->BDATE->SetText("2026-03-18");
             f->EDATE->SetText("2026-03-01");
         },
         "<开始日期> 不能大于 <结束日期>!"},
    };
    for (const Case& c : cases) {
        sink->clear();
        auto* r = ranking(c.fill);
        ASSERT_FALSE(sink->messages.empty());
        EXPECT_EQ(sink->messages.back().text, c.message);
        EXPECT_NE(r->Filter->ModalResult(), mrOk);
        EXPECT_TRUE(r->QrySql.isEmpty()) << "nothing is queried";
        r->close();
    }
    // a warehouse entered by id stands in for the kinds
    auto* r = ranking([](TQXCK281F* f) {
        f->o3->setChecked(false);
        f->o4->setChecked(false);
        f->CK_ID1->setText("01");
    });
    EXPECT_FALSE(r->QrySql.isEmpty());
    r->close();
}

TEST_F(RankingReportTest, RefreshBeforeAnyQueryAsksForTheConditions) {
    auto* r = openCancelled<TQXCK281>(281);
    sink->clear();
    r->Act_Refresh->trigger();
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!");
    EXPECT_TRUE(statements().empty());
    r->close();
    auto* run = ranking();
    const size_t before = statements().size();
    run->Act_Refresh->trigger();
    EXPECT_EQ(statements().size(), before + 1);
    EXPECT_EQ(lastStatement(), run->QrySql);
    EXPECT_EQ(col(run, "K_ID").value(0), "K01");
    run->close();
}

TEST_F(RankingReportTest, HostileWarehouseCodesAreRefusedOrQuoted) {
    for (const QString& hostile : {QString("01' OR '1'='1"), QString(10000, QChar('x')), QString("ZZ9")}) {
        sink->clear();
        auto* r = ranking([hostile](TQXCK281F* f) { f->CK_ID1->setText(hostile); });
        ASSERT_FALSE(sink->messages.empty()) << hostile.left(20).toStdString();
        EXPECT_TRUE(sink->messages.back().text.contains("不存在")) << sink->messages.back().text.toStdString();
        EXPECT_TRUE(r->QrySql.isEmpty());
        r->close();
    }
    // a warehouse code with a quote that exists: doubled in the batch, no rows, no error
    exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('0''1', '引号仓')");
    sink->clear();
    auto* r = ranking([](TQXCK281F* f) { f->CK_ID1->setText("0'1"); });
    expectNoErrors();
    EXPECT_TRUE(lastStatement().startsWith("SELECT CK_ID INTO #TCK FROM d1007 where ck_id='0''1';"));
    EXPECT_EQ(col(r, "K_ID").join(""), "");
    r->close();
    EXPECT_EQ(std::get<std::int64_t>(query("SELECT COUNT(*) FROM d1007").rows.at(0).at(0)), 4) << "nothing changed";
    // letters typed into a date are ignored: the date stays a date
    auto* dates = ranking([](TQXCK281F* f) { f->BDATE->SetText("20x6-0a-01"); });
    EXPECT_EQ(dates->Filter->BDATE->Text(), "2026-03-01");
    dates->close();
}

TEST_F(RankingReportTest, TheChartPlotsTheSoldQuantityOfEveryPlace) {
    auto* r = ranking();
    const qx::chart::ChartSpec spec = r->ChartSpec();
    EXPECT_EQ(spec.kind, qx::chart::ChartKind::Bars);
    EXPECT_EQ(spec.axis, qx::chart::Axis::Rows);
    ASSERT_NE(r->AdoQry_Main->FindField(spec.labelField), nullptr) << spec.labelField.toStdString();
    ASSERT_FALSE(spec.valueFields.isEmpty());
    for (const QString& f : spec.valueFields) {
        ASSERT_NE(r->AdoQry_Main->FindField(f), nullptr) << f.toStdString();
        ASSERT_NE(r->DBGridEh->ColumnByField(f), nullptr) << f.toStdString();
    }
    EXPECT_EQ(column(r->AdoQry_Main, spec.valueFields.at(0)).value(0), "5");
    r->close();
}

TEST_F(RankingReportTest, AScreenshotOfTheRanking) {
    auto* r = ranking();
    r->resize(1400, 420);
    const QString file = qx::saveScreenshot(r, "sales_ranking");
    ASSERT_FALSE(file.isEmpty());
    EXPECT_GT(QFile(file).size(), 2000);
    r->close();
}

}  // namespace
