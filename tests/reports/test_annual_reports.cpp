// The purchase (263) and sales (273) annual reports: the cross-tab call of every dialog choice
// against golden files, hand-computed month amounts of a small shop, the pseudo-year rows that
// guarantee the month columns, point-of-sale lines split by the sign of their quantity, the
// dialog's defaults, checks and hostile input, the chart description and screenshots.
#include <QAction>
#include <QDir>
#include <QFile>
#include <QToolButton>

#include "framework/Screenshot.h"
#include "reports/Frmqxck263.h"
#include "reports/Frmqxck273.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::test::sameStatements;

class AnnualReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        monthRows();
        // purchases: a March receipt of 500 and a return of 100 (cost 40), a February receipt of
        // 200 of the trousers, a December and a November receipt of the year before
        line("D8101", "R1", "2026-03-05", "K0101", {5}, "MONEY", 500);
        line("D8101", "R2", "2026-02-10", "K0201", {2}, "MONEY", 200);
        line("D8101", "R0", "2025-12-20", "K0101", {3}, "MONEY", 300);
        line("D8101", "RN", "2025-11-15", "K0101", {1}, "MONEY", 70);
        line("D8102", "PR1", "2026-03-10", "K0101", {1}, "SMONEY", 100, 40);
        // sales: a March ticket of 500, a February ticket of 200 of the trousers, a March return of 80
        line("D8201", "S1", "2026-03-05", "K0101", {5}, "SMONEY", 500);
        line("D8201", "S2", "2026-02-20", "K0201", {1}, "SMONEY", 200);
        line("D8202", "SR1", "2026-03-10", "K0101", {1}, "SMONEY", 80);
        // point of sale: a sale of 90 and a return of 60 (stored negative) in March, an exchange
        // of one size for another (quantity 0, 25 paid) in January, a sale of 150 in December 2025
        receipt("P1", "2026-03-12", "K0102", {0, 1}, 90);
        receipt("P2", "2026-03-14", "K0101", {0, -1}, -60);
        receipt("P3", "2026-01-09", "K0101", {1, -1}, 25);
        receipt("P4", "2025-12-28", "K0201", {2}, 150);
    }

    // The twelve month rows of sys_GROUP 263 (1..12), unless the tables brought them.
    void monthRows() {
        for (int m = 1; m <= 12; ++m)
            exec("INSERT INTO sys_GROUP (GROUP_ID, GROUP_NAME, GROUP_SQL, GROUP_CLASS, GROUP_SHOW, SHOW_WIDTH, ORDERBY) SELECT 263,'" +
                 QString::number(m) + "月','MM','G',1," + QString::number(m) + "," + QString::number(m) +
                 " WHERE NOT EXISTS (SELECT 1 FROM sys_GROUP WHERE GROUP_ID=263 AND SHOW_WIDTH=" + QString::number(m) + ")");
    }
    // A document of one line with an amount in `moneyField` (and a cost where given).
    void line(const QString& table, const QString& noid, const QString& date, const QString& sku, const QList<int>& sizes,
              const QString& moneyField, double amount, double cost = 0) {
        exec("INSERT INTO " + table + " (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (1,'" + noid + "','01','" + date + "','U1','')");
        QString s;
        for (int i = 0; i < 10; ++i) s += "," + QString::number(i < sizes.size() ? sizes[i] : 0);
        QString extra = "," + moneyField;
        QString values = "," + QString::number(amount);
        if (moneyField != "MONEY") {
            extra += ",MONEY";
            values += "," + QString::number(cost);
        }
        exec("INSERT INTO " + table + "A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9" + extra + ") VALUES ('" +
             noid + "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','01'" + s + values + ")");
    }
    void receipt(const QString& noid, const QString& date, const QString& sku, const QList<int>& sizes, double amount) {
        exec("INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, YW_ID) VALUES ('" + noid + "','" + date + "','01',NULL,NULL)");
        QString s;
        for (int i = 0; i < 10; ++i) s += "," + QString::number(i < sizes.size() ? sizes[i] : 0);
        exec("INSERT INTO d712a (NOID, WL_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, SMONEY, MONEY) VALUES ('" + noid + "','" + sku + "'" +
             s + "," + QString::number(amount) + ",0)");
    }

    TQXCK263* purchases(std::function<void(TQXCK263F*)> fill = {}) { return openReport<TQXCK263, TQXCK263F>(263, fill); }
    TQXCK273* sales(std::function<void(TQXCK273F*)> fill = {}) { return openReport<TQXCK273, TQXCK273F>(273, fill); }

    void expectGolden(const QString& file, const QString& name) {
        const qx::test::GoldenStatements golden("reports/golden/" + file);
        ASSERT_TRUE(golden.hasCase(name)) << name.toStdString();
        EXPECT_TRUE(sameStatements(golden.text(name), lastStatement())) << name.toStdString();
    }

    // The cell of the row labelled `year` in month (or "total") `field`; an invalid QVariant when
    // the row is missing, a null one when the cell is empty.
    static QVariant cell(TFrm_Base_Qry* r, const QString& year, const QString& field) {
        TClientDataSet* ds = r->AdoQry_Main;
        const int label = ds->FieldIndex("wl_id");
        const int at = ds->FieldIndex(field);
        if (label < 0 || at < 0) return {};
        for (int row = 0; row < ds->RecordCount(); ++row)
            if (ds->CellValue(row, label).toString() == year) {
                const QVariant v = ds->CellValue(row, at);
                return v.isNull() ? QVariant(QString()) : v;
            }
        return {};
    }
    static double amount(TFrm_Base_Qry* r, const QString& year, const QString& field) {
        return cell(r, year, field).toDouble();
    }
    static bool empty(TFrm_Base_Qry* r, const QString& year, const QString& field) {
        const QVariant v = cell(r, year, field);
        return v.isValid() && v.toString().isEmpty();
    }
    // Month columns a row has values in.
    static QStringList filledMonths(TFrm_Base_Qry* r, const QString& year) {
        QStringList out;
        for (int m = 1; m <= 12; ++m)
            if (!empty(r, year, QString::number(m))) out << QString::number(m);
        return out;
    }
    static QStringList monthFields() {
        QStringList out;
        for (int m = 1; m <= 12; ++m) out << QString::number(m);
        return out;
    }
};

// ------------------------------------------------------------------ purchase annual report

TEST_F(AnnualReportTest, AMarchReceiptOf500AndAReturnOf100GiveTheirOwnRows) {
    auto* r = purchases();
    expectGolden("qxck263.sql", "current year");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2026进", "2026退"}));
    EXPECT_EQ(amount(r, "2026进", "3"), 500.0);
    EXPECT_EQ(amount(r, "2026退", "3"), -100.0);
    EXPECT_EQ(amount(r, "2026进", "2"), 200.0);
    EXPECT_EQ(amount(r, "2026进", "total"), 700.0);
    EXPECT_EQ(amount(r, "2026退", "total"), -100.0);
    EXPECT_EQ(filledMonths(r, "2026进"), (QStringList{"2", "3"}));
    EXPECT_EQ(filledMonths(r, "2026退"), QStringList{"3"});
    EXPECT_EQ(r->Lab_Condition->text(), "●帐目日期2026-01-01 至 2026-03-18");
    EXPECT_EQ(r->Caption(), "采购年报表(金额)");
    r->close();
}

TEST_F(AnnualReportTest, TheGridShowsYearMonthsAndTotalUnderTheirTitlesWithMonthSums) {
    auto* r = purchases();
    QStringList expected{"wl_id"};
    expected << monthFields() << "total";
    EXPECT_EQ(r->AdoQry_Main->FieldNames(), expected);
    const QStringList titles{"年份", "一月", "二月", "三月", "四月", "五月", "六月", "七月", "八月", "九月", "十月", "十一月", "十二月", "本年合计"};
    for (int i = 0; i < expected.size(); ++i) {
        TColumnEh* c = r->DBGridEh->ColumnByField(expected[i]);
        ASSERT_NE(c, nullptr) << expected[i].toStdString();
        EXPECT_EQ(c->Title, titles[i]);
        EXPECT_EQ(c->Footer.ValueType, i >= 1 && i <= 12 ? fvtSum : fvtNon) << expected[i].toStdString();
    }
    EXPECT_EQ(r->SumFields, monthFields());
    EXPECT_EQ(r->DBGridEh->ColumnByField("3")->GetSumValue(), 400.0) << "500 received, 100 returned";
    EXPECT_EQ(r->Act_Locate->text(), "汇总");
    EXPECT_EQ(r->Lab_Head->text(), "物料资料：");
    r->close();
}

TEST_F(AnnualReportTest, InsideOneYearTheProcedureReturnsTwoRowsAndThePseudoYearTheGridLeavesOut) {
    auto* r = purchases();
    const auto result = query(lastStatement());
    std::vector<std::string> labels;
    for (const auto& row : result.rows) labels.push_back(std::get<std::string>(row[0]));
    EXPECT_EQ(labels, (std::vector<std::string>{"1920", "2026进", "2026退"}));
    ASSERT_EQ(result.columns.size(), 14u) << "the year, twelve months, the total";
    for (std::size_t c = 1; c < result.columns.size(); ++c) {
        const auto& v = result.rows[0][c];
        const double* d = std::get_if<double>(&v);
        const std::int64_t* i = std::get_if<std::int64_t>(&v);
        ASSERT_TRUE(d || i) << result.columns[c].name << " is a number";
        EXPECT_EQ(d ? *d : double(*i), 0.0) << "the pseudo-year has 0 in every month and in its total";
    }
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 2);
    EXPECT_FALSE(column(r->AdoQry_Main, "wl_id").contains("1920"));
    r->close();
}

TEST_F(AnnualReportTest, AcrossTheYearEndBothYearsHaveRowsAndMonthsOutsideTheRangeStayEmpty) {
    auto* r = purchases([](TQXCK263F* f) {
        f->BDATE->SetText("2025-12-01");
        f->EDATE->SetText("2026-02-28");
    });
    expectGolden("qxck263.sql", "across the year end");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2025进", "2026进"})) << "no return in the range";
    EXPECT_EQ(filledMonths(r, "2025进"), QStringList{"12"}) << "November is before the range";
    EXPECT_EQ(amount(r, "2025进", "12"), 300.0);
    EXPECT_EQ(filledMonths(r, "2026进"), QStringList{"2"}) << "March is after the range";
    EXPECT_EQ(amount(r, "2026进", "total"), 200.0);
    EXPECT_EQ(r->AdoQry_Main->FieldCount(), 14) << "every month is a column although four have data";
    EXPECT_EQ(r->Lab_Condition->text(), "●帐目日期2025-12-01 至 2026-02-28");
    r->close();
}

TEST_F(AnnualReportTest, AmountsWithCentsAddUpInTheirMonthAndTheTotal) {
    line("D8101", "R4", "2026-01-07", "K0201", {1}, "MONEY", 12.34);
    line("D8101", "R5", "2026-01-31", "K0201", {1}, "MONEY", 0.66);
    line("D8102", "PR2", "2026-02-02", "K0201", {1}, "SMONEY", 9.95, 5);
    auto* r = purchases();
    EXPECT_NEAR(amount(r, "2026进", "1"), 13.0, 1e-9);
    EXPECT_NEAR(amount(r, "2026进", "total"), 713.0, 1e-9);
    EXPECT_NEAR(amount(r, "2026退", "2"), -9.95, 1e-9);
    EXPECT_NEAR(amount(r, "2026退", "total"), -109.95, 1e-9);
    EXPECT_NEAR(r->DBGridEh->ColumnByField("2")->GetSumValue(), 190.05, 1e-9);
    r->close();
}

TEST_F(AnnualReportTest, AStyleNarrowsTheRowsAndNamesItselfInTheDescription) {
    auto* r = purchases([](TQXCK263F* f) { f->K_ID->setText("K02"); });
    expectGolden("qxck263.sql", "style");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), QStringList{"2026进"});
    EXPECT_EQ(filledMonths(r, "2026进"), QStringList{"2"});
    EXPECT_EQ(amount(r, "2026进", "2"), 200.0);
    EXPECT_EQ(r->Lab_Condition->text(), "●帐目日期2026-01-01 至 2026-03-18 ●款    号=K02");
    r->close();
}

// ------------------------------------------------------------------ sales annual report

TEST_F(AnnualReportTest, SalesAddPositivePointOfSaleLinesAndReturnsAddNegativeOnes) {
    auto* r = sales();
    expectGolden("qxck273.sql", "current year");
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2026 销售", "2026退换"}));
    EXPECT_EQ(amount(r, "2026 销售", "3"), 590.0) << "a ticket of 500 and a point-of-sale sale of 90";
    EXPECT_EQ(amount(r, "2026 销售", "2"), 200.0);
    EXPECT_EQ(amount(r, "2026 销售", "total"), 790.0);
    EXPECT_EQ(amount(r, "2026退换", "3"), -140.0) << "a return of 80 negated and a point-of-sale return of -60 as stored";
    EXPECT_EQ(amount(r, "2026退换", "total"), -140.0);
    EXPECT_EQ(r->Caption(), "销售年报表(销售额)");
    EXPECT_EQ(r->Lab_Condition->text(), "●帐目日期2026-01-01 至 2026-03-18");
    r->close();
}

TEST_F(AnnualReportTest, APointOfSaleLineOfQuantityZeroCountsNeitherAsSaleNorAsReturn) {
    auto* r = sales();
    // the January exchange (one size in, another out, 25 paid) is the only January line
    EXPECT_TRUE(empty(r, "2026 销售", "1"));
    EXPECT_TRUE(empty(r, "2026退换", "1"));
    EXPECT_EQ(filledMonths(r, "2026 销售"), (QStringList{"2", "3"}));
    EXPECT_EQ(filledMonths(r, "2026退换"), QStringList{"3"});
    // and the line is there to be left out: its quantity is 0, its amount 25
    const auto line = query("SELECT S0+S1+S2+S3+S4+S5+S6+S7+S8+S9, SMONEY FROM v_D712 WHERE NOID='P3'");
    ASSERT_EQ(line.rows.size(), 1u);
    EXPECT_EQ(std::get<std::int64_t>(line.rows[0][0]), 0);
    r->close();
}

TEST_F(AnnualReportTest, SalesAcrossTheYearEndIncludeLastYearsPointOfSaleSales) {
    auto* r = sales([](TQXCK273F* f) {
        f->BDATE->SetText("2025-12-01");
        f->EDATE->SetText("2026-02-28");
    });
    expectGolden("qxck273.sql", "across the year end");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2025 销售", "2026 销售"}));
    EXPECT_EQ(filledMonths(r, "2025 销售"), QStringList{"12"});
    EXPECT_EQ(amount(r, "2025 销售", "12"), 150.0);
    EXPECT_EQ(filledMonths(r, "2026 销售"), QStringList{"2"});
    r->close();
}

TEST_F(AnnualReportTest, SalesOfOneStyle) {
    auto* r = sales([](TQXCK273F* f) { f->K_ID->setText("K02"); });
    expectGolden("qxck273.sql", "style");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), QStringList{"2026 销售"});
    EXPECT_EQ(amount(r, "2026 销售", "total"), 200.0);
    r->close();
}

TEST_F(AnnualReportTest, TheSalesReportExplainsItsRows) {
    auto* r = sales();
    EXPECT_EQ(r->Lab_Note->text(), "系统提示：（销售=销售开单+POS销售） （退换=销售退货+POS销售退换）  ");
    EXPECT_TRUE(r->Lab_Note->isVisibleTo(r));
    EXPECT_EQ(r->Lab_Head->text(), "物料资料：");
    EXPECT_EQ(r->Act_Locate->text(), "汇总");
    r->close();
}

TEST_F(AnnualReportTest, BothReportsReadTheirMonthColumnsFromTheSameRows) {
    for (int code : {263, 273}) {
        calls.clear();
        TFrm_Base_Qry* r = code == 263 ? static_cast<TFrm_Base_Qry*>(purchases()) : static_cast<TFrm_Base_Qry*>(sales());
        EXPECT_TRUE(lastStatement().contains("FROM SYS_GROUP  where(GROUP_ID = 263)")) << code;
        r->close();
    }
}

TEST_F(AnnualReportTest, WithoutTheMonthRowsOnlyMonthsWithDataBecomeColumns) {
    exec("DELETE FROM sys_GROUP WHERE GROUP_ID=263");
    auto* r = purchases();
    EXPECT_EQ(r->AdoQry_Main->FieldNames(), (QStringList{"wl_id", "2", "3", "total"}));
    const auto spec = r->ChartSpec();
    EXPECT_EQ(spec.valueFields, (QStringList{"2", "3"})) << "the chart names only the months the grid has";
    r->close();
}

// ------------------------------------------------------------------ the dialog

TEST_F(AnnualReportTest, TheDialogOpensOnTheCurrentYearUpToToday) {
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* r = startReport<TQXCK263>(263, {});
    TFrm_AnnualFilter* f = r->Filter;
    EXPECT_EQ(f->BDATE->Text(), "2026-01-01");
    EXPECT_EQ(f->EDATE->Text(), "2026-03-18");
    EXPECT_EQ(f->titDATE->text(), "(77天)");
    f->BDATE->SetText("2026-03-01");
    EXPECT_EQ(f->titDATE->text(), "(18天)");
    EXPECT_EQ(f->Panel_Condition->CaptionOf(f->BDATE)->text(), "帐目日期");
    EXPECT_EQ(f->Panel_Condition->CaptionOf(f->EDATE)->text(), "至：");
    EXPECT_EQ(f->Panel_Condition->CaptionOf(f->K_ID)->text(), "款    号");
    EXPECT_EQ(f->btn_dateset->text(), "时段选择");
    EXPECT_EQ(f->K_ID->maxLength(), 20);
    EXPECT_EQ(f->Caption(), "采购年报表(金额)");
    EXPECT_TRUE(r->QrySql.isEmpty()) << "a cancelled dialog queries nothing";
    EXPECT_TRUE(statements().empty() || !lastStatement().contains("SYS_JX"));
    r->close();
}

TEST_F(AnnualReportTest, AStartAfterTheEndIsRefusedAndTheDialogStaysOpen) {
    for (int code : {263, 273}) {
        sink->clear();
        calls.clear();
        auto fill = [](TFrm_AnnualFilter* f) {
            f->BDATE->SetText("2026-03-18");
            f->EDATE->SetText("2026-03-01");
        };
        TFrm_AnnualReport* r = code == 263 ? static_cast<TFrm_AnnualReport*>(purchases(fill)) : static_cast<TFrm_AnnualReport*>(sales(fill));
        ASSERT_FALSE(sink->messages.empty()) << code;
        EXPECT_EQ(sink->messages.back().text, "<开始日期> 不能大于 <结束日期>!");
        EXPECT_EQ(sink->messages.back().dispKind, 5);
        EXPECT_NE(r->Filter->ModalResult(), mrOk);
        EXPECT_TRUE(r->QrySql.isEmpty());
        for (const QString& s : statements()) EXPECT_FALSE(s.contains("SYS_JX")) << "nothing is queried";
        r->close();
    }
}

TEST_F(AnnualReportTest, RefreshBeforeAnyChoiceIsRefused) {
    for (int code : {263, 273}) {
        sink->clear();
        TFrm_AnnualReport* r = code == 263 ? static_cast<TFrm_AnnualReport*>(openCancelled<TQXCK263>(263))
                                           : static_cast<TFrm_AnnualReport*>(openCancelled<TQXCK273>(273));
        r->Act_Refresh->trigger();
        ASSERT_FALSE(sink->messages.empty()) << code;
        EXPECT_EQ(sink->messages.back().text, "您还没选择任何汇总参数,请按【F3】呼出汇总选项!");
        EXPECT_EQ(sink->messages.back().dispKind, 5);
        r->close();
    }
}

TEST_F(AnnualReportTest, RefreshRunsTheSameCallAgainAndSeesNewDocuments) {
    auto* r = purchases();
    const QString first = lastStatement();
    line("D8101", "R3", "2026-03-16", "K0101", {1}, "MONEY", 45);
    r->Act_Refresh->trigger();
    EXPECT_EQ(lastStatement(), first);
    EXPECT_EQ(amount(r, "2026进", "3"), 545.0);
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2026进", "2026退"})) << "the pseudo-year stays out after a refresh";
    r->close();
}

TEST_F(AnnualReportTest, F3ChoosesAgainAndTheNewChoiceReplacesTheRows) {
    auto* r = purchases();
    driveDialog<TQXCK263F>([](TQXCK263F* f) { f->K_ID->setText("K02"); });
    r->Act_Locate->trigger();
    expectGolden("qxck263.sql", "style");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), QStringList{"2026进"});
    // a cancelled dialog keeps the rows and the statement
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    r->Act_Locate->trigger();
    expectGolden("qxck263.sql", "style");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), QStringList{"2026进"});
    r->close();
}

TEST_F(AnnualReportTest, HostileStyleTextIsAValueInBothReports) {
    const QString hostile = "K'01" + QString(10000, 'x');
    for (int code : {263, 273}) {
        calls.clear();
        sink->clear();
        auto fill = [hostile](TFrm_AnnualFilter* f) { f->K_ID->setText(hostile); };
        TFrm_AnnualReport* r = code == 263 ? static_cast<TFrm_AnnualReport*>(purchases(fill)) : static_cast<TFrm_AnnualReport*>(sales(fill));
        EXPECT_EQ(r->Filter->K_ID->text().size(), 20) << "the edit keeps 20 characters";
        expectGolden(code == 263 ? "qxck263.sql" : "qxck273.sql", "hostile style");
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
        EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0);
        EXPECT_EQ(r->Lab_Condition->text(), "●帐目日期2026-01-01 至 2026-03-18 ●款    号=" + hostile.left(20));
        r->close();
    }
    EXPECT_EQ(query("SELECT COUNT(*) FROM D8101").rows[0][0], qx::db::Value(std::int64_t(4))) << "nothing was run but the query";
    EXPECT_EQ(query("SELECT COUNT(*) FROM D8201").rows[0][0], qx::db::Value(std::int64_t(2)));
}

TEST_F(AnnualReportTest, DateTextThatIsNoDateIsNotTaken) {
    auto* r = purchases([](TQXCK263F* f) {
        f->BDATE->SetText("2026-02-30");
        f->BDATE->SetText("x'); DROP TABLE D8101;--");
        f->EDATE->SetText("2026-13-01");
        f->EDATE->SetText("今天");
    });
    expectGolden("qxck263.sql", "current year");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"2026进", "2026退"}));
    r->close();
}

TEST_F(AnnualReportTest, AnUnknownStyleIsReportedWhenTheEditIsChecked) {
    qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
    auto* r = startReport<TQXCK273>(273, {});
    for (const QString& text : {QString("N'O"), QString("ZZZ")}) {
        sink->clear();
        r->Filter->K_ID->setText(text);
        qx::guard([r] { r->Filter->K_ID->CheckId(); });
        ASSERT_FALSE(sink->messages.empty()) << text.toStdString();
        EXPECT_TRUE(sink->messages.back().text.contains("不存在")) << sink->messages.back().text.toStdString();
    }
    sink->clear();
    r->Filter->K_ID->setText("K01");
    qx::guard([r] { r->Filter->K_ID->CheckId(); });
    EXPECT_TRUE(sink->messages.empty()) << "a known style passes";
    EXPECT_TRUE(r->QrySql.isEmpty());
    r->close();
}

TEST_F(AnnualReportTest, F2InTheDialogRunsTheReport) {
    qx::ui::setModalHandler([](TFrm_Base* dialog) {
        auto* f = dynamic_cast<TQXCK273F*>(dialog);
        if (!f) return int(mrCancel);
        int key = Qt::Key_F2;
        f->FormKeyDown(f, key, Qt::NoModifier);
        return f->ModalResult();
    });
    auto* r = startReport<TQXCK273>(273, {});
    expectGolden("qxck273.sql", "current year");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 2);
    r->close();
}

// ------------------------------------------------------------------ chart and screenshots

TEST_F(AnnualReportTest, TheChartPlotsTheMonthsOfEachSelectedYearAsBars) {
    for (int code : {263, 273}) {
        qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
        TFrm_AnnualReport* before = code == 263 ? static_cast<TFrm_AnnualReport*>(startReport<TQXCK263>(263, {}))
                                                : static_cast<TFrm_AnnualReport*>(startReport<TQXCK273>(273, {}));
        EXPECT_TRUE(before->ChartSpec().isNone()) << "no chart before a run";
        before->close();

        TFrm_AnnualReport* r = code == 263 ? static_cast<TFrm_AnnualReport*>(purchases()) : static_cast<TFrm_AnnualReport*>(sales());
        const qx::chart::ChartSpec spec = r->ChartSpec();
        EXPECT_EQ(spec.kind, qx::chart::ChartKind::Bars);
        EXPECT_EQ(spec.axis, qx::chart::Axis::Columns);
        const QStringList fields = r->AdoQry_Main->FieldNames();
        EXPECT_TRUE(fields.contains(spec.labelField)) << spec.labelField.toStdString();
        EXPECT_EQ(spec.labelField, "wl_id");
        EXPECT_EQ(spec.valueFields, monthFields()) << "the twelve months in calendar order, not the total";
        for (const QString& f : spec.valueFields) {
            EXPECT_TRUE(fields.contains(f)) << f.toStdString();
            ASSERT_NE(r->DBGridEh->ColumnByField(f), nullptr) << f.toStdString();
            EXPECT_TRUE(r->DBGridEh->ColumnByField(f)->Visible) << f.toStdString();
        }
        r->close();
    }
}

TEST_F(AnnualReportTest, ScreenshotsOfBothReports) {
    auto* p = purchases();
    const QString purchaseFile = qx::saveScreenshot(p, "annual_purchase_report");
    EXPECT_FALSE(purchaseFile.isEmpty());
    EXPECT_GT(QFile(purchaseFile).size(), 1000);
    p->close();
    auto* s = sales();
    const QString salesFile = qx::saveScreenshot(s, "annual_sales_report");
    EXPECT_FALSE(salesFile.isEmpty());
    EXPECT_GT(QFile(salesFile).size(), 1000);
    s->close();
}

}  // namespace
