// The movement classification (252), summary (253) and detail (254): the procedure call of each
// dialog choice, the rows, the columns hidden by their footer sums, the article check, dates,
// per-size lines and Tab in the detail, and hostile input.
#include <QKeyEvent>

#include "framework/Screenshot.h"
#include "reports/Frmqxck252.h"
#include "reports/Frmqxck253.h"
#include "reports/Frmqxck254.h"
#include "tests/reports/ReportFixture.h"
#include "tests/support/CancelledProgress.h"

namespace {

class MovementReportTest : public qx::test::ReportTest {
protected:
    void SetUp() override {
        ReportTest::SetUp();
        openingStock("K0101", "01", {5, 5});
        document("D8101", "R1", "01", "2026-03-05", "K0101", {2, 1});
        document("D8201", "S1", "01", "2026-03-10", "K0101", {1});
    }
    template <class R, class F>
    R* open(int code, std::function<void(F*)> fill = {}, std::function<void(R*)> before = {}) {
        return openReport<R, F>(code, fill, before);
    }
    static bool visible(TFrm_Base_Qry* r, const QString& field) { return r->DBGridEh->ColumnByField(field)->Visible; }
};

TEST_F(MovementReportTest, ClassificationDefaultsToThisMonthByColourAndSize) {
    const auto golden = qx::test::goldenStatements("qxck252.sql");
    auto* r = open<TQXCK252, TQXCK252F>(252);
    EXPECT_EQ(lastStatement(), golden["default: by colour and size, only articles that moved"]);
    EXPECT_EQ(r->Caption(), "进销存分类表");
    EXPECT_EQ(r->Act_Locate->text(), "汇总");
    EXPECT_EQ(r->Lab_Condition->text(), "03-01 至 03-18 (18天)");
    EXPECT_EQ(column(r->AdoQry_Main, "dw_name"), (QStringList{"S", "M"}));
    EXPECT_EQ(column(r->AdoQry_Main, "BeginKc"), (QStringList{"5", "5"}));
    EXPECT_EQ(column(r->AdoQry_Main, "IN6"), (QStringList{"2", "1"}));
    EXPECT_EQ(column(r->AdoQry_Main, "OU2"), (QStringList{"1", "0"}));
    EXPECT_EQ(column(r->AdoQry_Main, "END_KC"), (QStringList{"6", "6"}));
    EXPECT_EQ(r->DBGridEh->ColumnByField("IN3")->Title, "本期入库数量|销售退");
    EXPECT_EQ(r->DBGridEh->ColumnByField("OU10")->Title, "本期出库数量|POS销售");
    EXPECT_EQ(r->DBGridEh->ColumnByField("IN6")->Footer.ValueType, fvtSum);
    EXPECT_EQ(r->DBGridEh->ColumnByField("BeginKc")->Footer.ValueType, fvtNon) << "the opening has no footer";
    r->close();
}

TEST_F(MovementReportTest, ClassificationHidesKindsWithoutMovementsUnlessAsked) {
    auto* r = open<TQXCK252, TQXCK252F>(252);
    EXPECT_TRUE(visible(r, "IN6"));
    EXPECT_TRUE(visible(r, "OU2"));
    for (const char* f : {"IN3", "IN7", "IN4", "IN5", "OU10", "OU4", "OU5", "OU6"}) EXPECT_FALSE(visible(r, f)) << f;
    EXPECT_TRUE(visible(r, "TOL_IN"));
    EXPECT_TRUE(visible(r, "TOL_OUT"));
    driveDialog<TQXCK252F>([](TQXCK252F* f) { f->showAllDate->setChecked(false); });
    r->Act_Locate->trigger();
    for (const QString& f : TQXCK252::KindFields) EXPECT_TRUE(visible(r, f)) << f.toStdString();
    r->close();
}

TEST_F(MovementReportTest, AKindNettingToANegativeSumIsHiddenLikeAnEmptyOne) {
    document("D8101", "R2", "01", "2026-03-06", "K0101", {-4});
    auto* r = open<TQXCK252, TQXCK252F>(252);
    EXPECT_EQ(r->DBGridEh->GetSumValue("IN6"), -1);
    EXPECT_FALSE(visible(r, "IN6"));
    EXPECT_TRUE(visible(r, "TOL_IN"));
    r->close();
}

TEST_F(MovementReportTest, ClassificationChoicesGiveTheirCall) {
    const auto golden = qx::test::goldenStatements("qxck252.sql");
    G_CHKCK = 1;
    auto* r = open<TQXCK252, TQXCK252F>(252, [](TQXCK252F* f) {
        f->c1->setChecked(true);
        f->CK_ID1->setText("01");
        f->wl_id->setText("K01");
        f->YS->setChecked(true);
    });
    EXPECT_EQ(lastStatement(), golden["by style, warehouse 01, article K01, rights"]) << "an article makes @param1 absent";
    EXPECT_EQ(r->Lab_Condition->text(), "03-01 至 03-18 (18天) ●条码/款号:K01 ●仓库=01");
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), (QStringList{"K01"}));
    EXPECT_EQ(column(r->AdoQry_Main, "TOL_IN"), (QStringList{"3"}));
    r->close();
}

TEST_F(MovementReportTest, ARangeEndingOnNewYearsEvePassesTheFirstOfJanuary) {
    const auto golden = qx::test::goldenStatements("qxck252.sql");
    auto* r = open<TQXCK252, TQXCK252F>(252, [](TQXCK252F* f) {
        f->c2->setChecked(true);
        f->YS->setChecked(false);
        f->BDATE->SetText("2025-12-01");
        f->EDATE->SetText("2025-12-31");
    });
    EXPECT_EQ(lastStatement(), golden["by category, every article, range ending 31 December"]);
    r->close();
}

TEST_F(MovementReportTest, OnTheFirstOfAMonthTheDefaultRangeIsOneDay) {
    const auto golden = qx::test::goldenStatements("qxck252.sql");
    qx::ui::setToday(QDate(2026, 4, 1));
    auto* r = open<TQXCK252, TQXCK252F>(252);
    EXPECT_EQ(r->Filter->BDATE->Text(), "2026-04-01");
    EXPECT_EQ(r->Filter->titDATE->text(), "(1天)");
    EXPECT_EQ(lastStatement(), golden["first day of the month"]);
    r->close();
}

TEST_F(MovementReportTest, ReversedDatesKeepTheDialogOpenWithAMessage) {
    auto* r = open<TQXCK252, TQXCK252F>(252, [](TQXCK252F* f) {
        f->BDATE->SetText("2026-03-18");
        f->EDATE->SetText("2026-03-01");
    });
    EXPECT_TRUE(statements().empty());
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "<开始日期> 不能大于 <结束日期>!");
    EXPECT_NE(r->Filter->ModalResult(), mrOk);
    r->close();
}

TEST_F(MovementReportTest, AnUnknownArticleIsRefusedAndAnEmptyOneAllowed) {
    auto* r = open<TQXCK252, TQXCK252F>(252, [](TQXCK252F* f) { f->wl_id->setText("NOPE"); });
    ASSERT_FALSE(sink->messages.empty());
    EXPECT_EQ(sink->messages.back().text, "该【条码/款号】不存在，请重新输入!(可以为空)");
    for (const QString& s : statements()) EXPECT_FALSE(s.startsWith("EXEC")) << "nothing is queried";
    sink->clear();
    r->Filter->wl_id->setText("");
    EXPECT_TRUE(r->Filter->CheckArticle());
    r->Filter->wl_id->setText("6900000000011");
    EXPECT_TRUE(r->Filter->CheckArticle());
    EXPECT_EQ(lastStatement(), " SELECT WL_ID,M_INDEX FROM d1809 WHERE tm='6900000000011' or k_id='6900000000011'");
    r->Filter->wl_id->setText(QString(10000, 'x') + "'");
    EXPECT_EQ(r->Filter->wl_id->text().size(), 30) << "the article edit takes 30 characters";
    EXPECT_FALSE(r->Filter->CheckArticle());
    EXPECT_TRUE(sink->errors().isEmpty());
    r->close();
}

TEST_F(MovementReportTest, HostileWarehouseTextIsAValueNotSql) {
    auto* r = open<TQXCK253, TQXCK253F>(253, [](TQXCK253F* f) { f->CK_ID1->setText("0'1"); });
    EXPECT_EQ(lastStatement(),
              "EXEC SYS_ZM @param3=0,@BDATE='2026-03-01',@EDATE='2026-03-19',@ck_id1='0''1',@param1=True,@param2=True");
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 0) << "an unknown warehouse simply yields no rows";
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    EXPECT_EQ(r->Filter->CK_ID1->maxLength(), 6);
    r->close();
}

TEST_F(MovementReportTest, RefreshBeforeAnyQueryIsRefused) {
    auto* r = openCancelled<TQXCK253>(253);
    r->Act_Refresh->trigger();
    ASSERT_EQ(sink->messages.size(), 1u);
    EXPECT_EQ(sink->messages[0].text, "您还没选择任何查询参数,请按【F3】呼出查询选项!");
    r->close();
}

TEST_F(MovementReportTest, SummaryPassesTheCostVisibilityAndShowsAmounts) {
    const auto golden = qx::test::goldenStatements("qxck253.sql");
    auto* r = open<TQXCK253, TQXCK253F>(253);
    EXPECT_EQ(lastStatement(), golden["default, cost shown"]);
    EXPECT_EQ(column(r->AdoQry_Main, "END_KC_mon"), (QStringList{"240", "240"}));
    EXPECT_TRUE(visible(r, "END_KC_mon"));
    EXPECT_EQ(r->DBGridEh->ColumnByField("BeginKc_mon")->Title, "期初结存|成本金额");
    r->resize(1100, 360);
    EXPECT_FALSE(qx::saveScreenshot(r, "movement_summary").isEmpty());
    r->close();
    auto* hidden = open<TQXCK253, TQXCK253F>(253, [](TQXCK253F* f) { f->c1->setChecked(true); },
                                            [](TQXCK253* report) { report->ShowCost = false; });
    EXPECT_EQ(lastStatement(), golden["by style, cost hidden"]);
    EXPECT_FALSE(visible(hidden, "END_KC_mon"));
    EXPECT_EQ(column(hidden->AdoQry_Main, "END_KC"), (QStringList{"12"}));
    hidden->close();
}

// A summary of many rows cancelled from its progress window ("取消"): the procedure stops, the
// report keeps the rows it showed and says nothing; without the cancel the rows come.
TEST_F(MovementReportTest, ACancelledSummaryKeepsItsRowsAndSaysNothing) {
    auto* r = open<TQXCK253, TQXCK253F>(253, [](TQXCK253F* f) { f->YS->setChecked(false); });  // also articles that did not move
    const QStringList shown = column(r->AdoQry_Main, "wl_id");
    ASSERT_EQ(shown.size(), 2);
    QString batch;  // 3 000 SKUs with a piece of every size: 30 000 more rows by SKU and size
    for (int i = 0; i < 3000; ++i)
        batch += "INSERT INTO d1802 (WL_ID, CK_ID, B0,B1,B2,B3,B4,B5,B6,B7,B8,B9, K0,K1,K2,K3,K4,K5,K6,K7,K8,K9) VALUES ('ZZ" +
                 QString::number(100000 + i) + "','01',1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1);";
    execMaintenance(batch);
    sink->clear();
    {
        qx::test::CancelledProgress user;
        r->Act_Refresh->trigger();
    }
    EXPECT_EQ(column(r->AdoQry_Main, "wl_id"), shown) << "the rows shown before the cancel stay";
    EXPECT_TRUE(sink->messages.empty()) << sink->texts().join("|").toStdString();
    r->Act_Refresh->trigger();
    EXPECT_EQ(r->AdoQry_Main->RecordCount(), 2 + 30000);
    r->close();
}

TEST_F(MovementReportTest, DialogChoicesPersistBetweenUses) {
    auto* r = open<TQXCK253, TQXCK253F>(253, [](TQXCK253F* f) {
        f->c2->setChecked(true);
        f->YS->setChecked(false);
    });
    r->close();
    auto* again = openCancelled<TQXCK253>(253);
    EXPECT_TRUE(again->Filter->c2->isChecked());
    EXPECT_FALSE(again->Filter->YS->isChecked());
    again->close();
}

TEST_F(MovementReportTest, DetailListsMovementsWithBalanceAndBlueSizeLines) {
    const auto golden = qx::test::goldenStatements("qxck254.sql");
    auto* r = open<TQXCK254, TQXCK254F>(254);
    EXPECT_EQ(lastStatement(), golden["default"]);
    EXPECT_EQ(column(r->AdoQry_Main, "NOID"), (QStringList{"", "R1", "S1", "", ""}));
    EXPECT_EQ(column(r->AdoQry_Main, "jc"), (QStringList{"10", "13", "12", "6", "6"}));
    EXPECT_EQ(column(r->AdoQry_Main, "mytype"), (QStringList{"0", "6", "2", "100", "100"}));
    // a per-size line is blue from TYPE_NAME on, not before
    r->AdoQry_Main->SetRecNo(4);
    TCellParams p;
    r->DBGridEhGetCellParams(r->DBGridEh, r->DBGridEh->ColumnByField("TYPE_NAME"), p);
    EXPECT_EQ(p.FontColor, QColor(Qt::blue));
    TCellParams before;
    r->DBGridEhGetCellParams(r->DBGridEh, r->DBGridEh->ColumnByField("dw_name"), before);
    EXPECT_NE(before.FontColor, QColor(Qt::blue));
    r->AdoQry_Main->SetRecNo(2);
    TCellParams movement;
    r->DBGridEhGetCellParams(r->DBGridEh, r->DBGridEh->ColumnByField("TYPE_NAME"), movement);
    EXPECT_NE(movement.FontColor, QColor(Qt::blue));
    r->resize(1100, 360);
    EXPECT_FALSE(qx::saveScreenshot(r, "movement_detail").isEmpty());
    r->close();
}

TEST_F(MovementReportTest, TabJumpsArticleByArticleAndWrapsAtTheEnd) {
    openingStock("K0201", "02", {1});
    auto* r = open<TQXCK254, TQXCK254F>(254, [](TQXCK254F* f) { f->YS->setChecked(false); });
    const QStringList articles = column(r->AdoQry_Main, "wl_id");
    ASSERT_EQ(articles.first(), "K0101");
    ASSERT_EQ(articles.last(), "K0201");
    r->AdoQry_Main->First();
    int key = Qt::Key_Tab;
    r->DBGridEhKeyDown(r->DBGridEh, key, {});
    EXPECT_EQ(key, 0) << "the key is consumed";
    EXPECT_EQ(r->AdoQry_Main->FieldByName("wl_id")->AsString(), "K0201");
    EXPECT_EQ(r->AdoQry_Main->RecNo(), articles.indexOf("K0201") + 1);
    r->AdoQry_Main->Last();
    key = Qt::Key_Tab;
    r->DBGridEhKeyDown(r->DBGridEh, key, {});
    EXPECT_EQ(r->AdoQry_Main->RecNo(), 1) << "past the end Tab goes to the first row";
    r->close();
}

TEST_F(MovementReportTest, DetailByBarcodeAndAQuotedArticle) {
    const auto golden = qx::test::goldenStatements("qxck254.sql");
    auto* r = open<TQXCK254, TQXCK254F>(254, [](TQXCK254F* f) { f->wl_id->setText("6900000000011"); });
    EXPECT_EQ(lastStatement(), golden["barcode"]);
    EXPECT_EQ(column(r->AdoQry_Main, "NOID").mid(0, 3), (QStringList{"", "R1", "S1"}));
    r->close();
    exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0102','0','K01','K''01x')");
    auto* q = open<TQXCK254, TQXCK254F>(254, [](TQXCK254F* f) { f->wl_id->setText("K'01x"); });
    EXPECT_EQ(lastStatement(), golden["quoted article"]);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("\n").toStdString();
    q->close();
}

}  // namespace
