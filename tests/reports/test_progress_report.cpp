// The sales progress (283): the procedure call of every dialog choice against golden files, day
// columns grouped under their month with Sundays marked, stock and the latest receiving date of
// a small shop computed by hand, the 60-day limit and hostile input in the dialog.
#include <QFile>
#include <QToolButton>

#include "framework/Screenshot.h"
#include "reports/Frmqxck283.h"
#include "reports/Frmqxck283f.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;

// The fixture's shop with stock 10 of K0101 and 8 of K0201 in 总仓 (01), 3 of K0102 in 东门店 (02),
// and these sales:
//   2026-02-27 (Friday)  ticket S0 in 01: 2 K0201
//   2026-03-01 (Sunday)  ticket S1 in 01: 5 K0101
//   2026-03-02 (Monday)  return T1 in 01: 1 K0101
//   2026-03-08 (Sunday)  point of sale P1 in 02: 1 K0102
// K01 was received into 01 on 2026-02-10 and checked in from a transfer on 2026-02-20; K02 was
// received on 2026-01-15.
class ProgressReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        openingStock("K0101", "01", {5, 5});
        openingStock("K0201", "01", {4, 4});
        openingStock("K0102", "02", {3});
        document("D8201", "S0", "01", "2026-02-27", "K0201", {2});
        document("D8201", "S1", "01", "2026-03-01", "K0101", {2, 3});
        document("D8202", "T1", "01", "2026-03-02", "K0101", {0, 1});
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('P1', '2026-03-08', '02', NULL, NULL)");
        exec("INSERT INTO d712a (NOID, WL_ID, S0, SMONEY, MONEY) VALUES ('P1', 'K0102', 1, 90, 0)");
        exec("INSERT INTO D8101 (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (0,'R1','01','2026-02-10','U1','')");
        exec("INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID) VALUES ('R1','K0101','K01','01','01')");
        exec("INSERT INTO D8101 (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (0,'R2','01','2026-01-15','U1','')");
        exec("INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID) VALUES ('R2','K0201','K02','01','01')");
        exec("INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, YDATE) VALUES ('D1', 0, '02', '01', '2026-02-18', '2026-02-20')");
        exec("INSERT INTO D8303A (NOID, WL_ID, K_ID, COL_ID, CK_ID, CK_ID_IN) VALUES ('D1','K0102','K01','02','02','01')");
    }
    void TearDown() override {
        QFile::remove(G_CoName);
        G_CHKCK = false;
        ReportTest::TearDown();
    }

    // Opens the progress report with the dialog filled by `fill` over dates `from` to `to`.
    TQXCK283* progress(const QString& from = "2026-02-15", const QString& to = "2026-03-18",
                       std::function<void(TQXCK283F*)> fill = {}) {
        qx::ui::setModalHandler([=](TFrm_Base* dialog) {
            auto* f = dynamic_cast<TQXCK283F*>(dialog);
            if (!f) return int(mrCancel);
            f->BDATE->SetText(from);
            f->EDATE->SetText(to);
            if (fill) fill(f);
            f->btn_ok->click();
            return f->ModalResult();
        });
        return startReport<TQXCK283>(283, {});
    }
    void expectGolden(const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/qxck283.sql");
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name), lastStatement())) << name.toStdString();
    }
    // The value of a field in the row of a style ("" when empty).
    static QString cell(TQXCK283* r, const QString& style, const QString& field) {
        const QStringList styles = column(r->AdoQry_Main, "wl_id");
        const int row = styles.indexOf(style);
        if (row < 0) return "<no row>";
        return column(r->AdoQry_Main, field).value(row);
    }
    void expectNoErrors() { EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString(); }
};

TEST_F(ProgressReportTest, EveryDayWithSalesIsAColumnUnderItsMonth) {
    auto* r = progress();
    expectGolden("all warehouses");
    expectNoErrors();
    EXPECT_EQ(r->DayFields(), (QStringList{"202602|27", "202603|01", "202603|02", "202603|08"}));
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"K01", "K02"}));
    EXPECT_EQ(cell(r, "K01", "202603|01"), "5");
    EXPECT_EQ(cell(r, "K01", "202603|02"), "-1") << "the return counts against its day";
    EXPECT_EQ(cell(r, "K01", "202603|08"), "1") << "the point of sale counts too";
    EXPECT_EQ(cell(r, "K01", "202602|27"), "");
    EXPECT_EQ(cell(r, "K01", "total"), "5");
    EXPECT_EQ(cell(r, "K02", "202602|27"), "2");
    EXPECT_EQ(cell(r, "K02", "total"), "2");
    // stock over every warehouse after the sales: K01 10 - 5 + 1 + 3 - 1 = 8, K02 8 - 2 = 6
    EXPECT_EQ(cell(r, "K01", "kc"), "8");
    EXPECT_EQ(cell(r, "K02", "kc"), "6");
    EXPECT_EQ(cell(r, "K01", "BDATE"), "") << "without a warehouse there is no latest receiving date";
    EXPECT_EQ(cell(r, "K01", "wl_name"), "衬衫");
    EXPECT_EQ(cell(r, "K02", "dw_name"), "条");
    // the columns: style, name, unit, latest receipt, stock, the days under their months, the total
    EXPECT_EQ(r->DBGridEh->VisibleTitles(),
              (QStringList{"款号", "名称", "单位", "最近进货", "现库存", "2026-02|27", "2026-03|01", "2026-03|02", "2026-03|08",
                           "销售合计"}));
    EXPECT_EQ(r->DBGridEh->ColumnByField("202603|01")->TitleBand(), "2026-03");
    EXPECT_EQ(r->DBGridEh->ColumnByField("202603|01")->TitleCaption(), "01");
    EXPECT_EQ(r->DBGridEh->GetSumValue("total"), 7.0);
    EXPECT_EQ(r->Lab_Condition->text(), " ●日期:02-15 至 03-18 ");
    EXPECT_EQ(r->Lab_Note->text(), "系统提示：【最近日期】取自【进货单】和【调拨点收日期】");
    EXPECT_EQ(r->Caption(), "销售进度表");
    r->close();
}

TEST_F(ProgressReportTest, AWarehouseBringsItsLatestReceivingDate) {
    auto* r = progress("2026-02-15", "2026-03-18", [](TQXCK283F* f) { f->CK_ID->setText("01"); });
    expectGolden("one warehouse");
    expectNoErrors();
    EXPECT_EQ(r->DayFields(), (QStringList{"202602|27", "202603|01", "202603|02"})) << "the point of sale was in 东门店";
    // the later of the purchase receipt (02-10) and the transfer check-in (02-20)
    EXPECT_EQ(r->DBGridEh->DisplayedText(0, r->DBGridEh->ColumnByField("BDATE")->Index()), "2026-02-20");
    EXPECT_EQ(cell(r, "K02", "BDATE").left(10), "2026-01-15");
    EXPECT_EQ(cell(r, "K01", "kc"), "6") << "stock in 总仓 only";
    EXPECT_EQ(cell(r, "K01", "total"), "4");
    EXPECT_EQ(r->Lab_Condition->text(), " ●日期:02-15 至 03-18  ●仓库:01");
    r->close();
}

TEST_F(ProgressReportTest, AStyleNarrowsTheRows) {
    auto* r = progress("2026-02-15", "2026-03-18", [](TQXCK283F* f) { f->WL_ID->setText("K02"); });
    expectGolden("one style");
    expectNoErrors();
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), QStringList{"K02"});
    EXPECT_EQ(r->DayFields(), QStringList{"202602|27"});
    EXPECT_EQ(r->Lab_Condition->text(), " ●日期:02-15 至 03-18  ●款号:K02");
    r->close();
}

TEST_F(ProgressReportTest, WithRightsEnforcedOnlyTheUsersWarehousesCount) {
    G_CHKCK = true;
    auto* r = progress();
    expectGolden("rights enforced");
    expectNoErrors();
    EXPECT_FALSE(r->DayFields().contains("202603|08")) << "U1 may not read 东门店";
    r->close();
}

TEST_F(ProgressReportTest, SixtyDaysAreAcceptedSixtyOneRefused) {
    auto* ok = progress("2026-01-17", "2026-03-18");  // 60 days apart
    expectNoErrors();
    EXPECT_EQ(ok->Filter->ModalResult(), mrOk);
    EXPECT_FALSE(ok->QrySql.isEmpty());
    ok->close();
    sink->clear();
    auto* refused = progress("2026-01-16", "2026-03-18");  // 61 days apart
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "日期范围 请填写在60天之内, 超60天表格栏数将无法显示!");
    EXPECT_NE(refused->Filter->ModalResult(), mrOk);
    EXPECT_TRUE(refused->QrySql.isEmpty());
    EXPECT_TRUE(statements().size() == 1) << "only the accepted run queried";
    refused->close();
}

TEST_F(ProgressReportTest, ReversedDatesAreRefused) {
    auto* r = progress("2026-03-18", "2026-03-01");
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "<开始日期> 不能大于 <结束日期>!");
    EXPECT_TRUE(r->QrySql.isEmpty());
    r->close();
}

TEST_F(ProgressReportTest, LettersTypedIntoADateAreIgnored) {
    auto* r = progress("20x6-0a-01", "2026-13-45");
    expectNoErrors();
    EXPECT_EQ(r->Filter->BDATE->Text(), "2026-03-01") << "the default start stays";
    EXPECT_EQ(r->Filter->EDATE->Text(), "2026-03-18");
    EXPECT_TRUE(lastStatement().contains("(M.BDATE>=''2026-03-01'' AND M.BDATE<''2026-03-19'')"));
    r->close();
}

TEST_F(ProgressReportTest, SundaysAreDarkRedOnRequest) {
    auto* r = progress();
    for (const QString& day : r->DayFields()) {
        const bool sunday = day == "202603|01" || day == "202603|08";
        EXPECT_EQ(TQXCK283::IsSunday(day), sunday) << day.toStdString();
        EXPECT_EQ(r->DBGridEh->ColumnByField(day)->FontColor == QColor(0x80, 0, 0), sunday) << day.toStdString();
    }
    r->close();
    auto* plain = progress("2026-02-15", "2026-03-18", [](TQXCK283F* f) { f->chk_Sunday->setChecked(false); });
    for (const QString& day : plain->DayFields())
        EXPECT_FALSE(plain->DBGridEh->ColumnByField(day)->FontColor == QColor(0x80, 0, 0)) << day.toStdString();
    plain->close();
}

TEST_F(ProgressReportTest, ADialogOfItsOwn) {
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* r = startReport<TQXCK283>(283, {});
    TQXCK283F* f = r->Filter;
    EXPECT_EQ(f->Lab_Note->text(), "系统提示：销售日期要在60天内。");
    EXPECT_EQ(f->chk_Sunday->text(), "星期天深红色突出显示");
    EXPECT_TRUE(f->chk_Sunday->isChecked());
    EXPECT_EQ(f->btn_dateset->text(), "时段选择");
    EXPECT_EQ(f->BDATE->Text(), "2026-03-01");
    EXPECT_EQ(f->EDATE->Text(), "2026-03-18");
    EXPECT_EQ(f->titDATE->text(), "(18天)");
    f->BDATE->SetText("2026-03-11");
    EXPECT_EQ(f->titDATE->text(), "(8天)");
    // refresh before any query
    sink->clear();
    r->Act_Refresh->trigger();
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "您还没选择任何查询参数,请按【F3】呼出查询选项!");
    EXPECT_TRUE(statements().empty());
    r->close();
}

TEST_F(ProgressReportTest, RefreshRunsTheSameCallAgain) {
    auto* r = progress();
    document("D8201", "S9", "01", "2026-03-03", "K0101", {1});
    r->Act_Refresh->trigger();
    EXPECT_EQ(statements().size(), 2u);
    EXPECT_EQ(statements().at(0), statements().at(1));
    EXPECT_TRUE(r->DayFields().contains("202603|03")) << "a new day appears after a refresh";
    EXPECT_EQ(r->DBGridEh->ColumnByField("202603|03")->Title, "2026-03|03");
    r->close();
}

TEST_F(ProgressReportTest, HostileCodesAreRefusedOrQuoted) {
    for (TLinkEdit* TQXCK283F::*edit : {&TQXCK283F::CK_ID, &TQXCK283F::WL_ID})
        for (const QString& hostile : {QString("01' OR '1'='1"), QString(10000, QChar('x')), QString("N'O")}) {
            sink->clear();
            auto* r = progress("2026-02-15", "2026-03-18", [&](TQXCK283F* f) { (f->*edit)->setText(hostile); });
            ASSERT_FALSE(sink->messages.empty()) << hostile.left(20).toStdString();
            EXPECT_TRUE(sink->messages.back().text.contains("不存在")) << sink->messages.back().text.toStdString();
            EXPECT_TRUE(r->QrySql.isEmpty());
            r->close();
        }
    // codes with a quote that exist: doubled in the row source, twice more inside the stock set
    exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('0''1', '引号仓')");
    exec("INSERT INTO d1800 (K_ID, PP_ID, M_ID, WL_NAME, DW_NAME, CHECK_KC) VALUES ('K''1','P1','A','引号款','件',0)");
    sink->clear();
    auto* r = progress("2026-02-15", "2026-03-18", [](TQXCK283F* f) {
        f->CK_ID->setText("0'1");
        f->WL_ID->setText("K'1");
    });
    expectNoErrors();
    const QString sql = lastStatement();
    EXPECT_TRUE(sql.contains("(M.ck_id=''0''''1'')")) << "the condition inside the quoted row source";
    EXPECT_TRUE(sql.contains("and d.k_id=''K''''1''"));
    EXPECT_TRUE(sql.contains("where D8101.CK_ID = ''0''''1''"));
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
    EXPECT_EQ(r->Lab_Condition->text(), " ●日期:02-15 至 03-18  ●款号:K'1 ●仓库:0'1");
    r->close();
}

TEST_F(ProgressReportTest, TheChartDrawsALinePerStyleOverTheDays) {
    auto* r = progress();
    const qx::chart::ChartSpec spec = r->ChartSpec();
    EXPECT_EQ(spec.kind, qx::chart::ChartKind::Lines);
    EXPECT_EQ(spec.axis, qx::chart::Axis::Columns);
    ASSERT_NE(r->AdoQry_Main->FindField(spec.labelField), nullptr) << spec.labelField.toStdString();
    EXPECT_EQ(spec.valueFields, r->DayFields());
    for (const QString& f : spec.valueFields) {
        ASSERT_NE(r->AdoQry_Main->FindField(f), nullptr) << f.toStdString();
        ASSERT_NE(r->DBGridEh->ColumnByField(f), nullptr) << f.toStdString();
    }
    r->close();
}

TEST_F(ProgressReportTest, AScreenshotOfTheProgress) {
    // a fortnight of daily sales of the trousers, from a larger stock
    execMaintenance("UPDATE d1802 SET B0=B0+30, K0=K0+30 WHERE WL_ID='K0201'");
    for (int day = 3; day <= 16; ++day)
        document("D8201", "X" + QString::number(day), "01", QString("2026-03-%1").arg(day, 2, 10, QChar('0')), "K0201",
                 {day % 3, 1});
    auto* r = progress();
    EXPECT_EQ(r->DayFields().size(), 17);
    r->resize(1240, 360);
    const QString file = qx::saveScreenshot(r, "sales_progress");
    ASSERT_FALSE(file.isEmpty());
    EXPECT_GT(QFile(file).size(), 2000);
    r->close();
}

}  // namespace
