// Promotion schemes: the warehouse list, the eleven-row scheme of a warehouse and the styles of
// one row.
#include "SetupFixture.h"
#include "frame/Dispatch.h"
#include "framework/DBGridEh.h"
#include "framework/Screenshot.h"
#include "setup/Frmqxcks02.h"
#include "setup/Frmqxcks02_1.h"
#include "setup/Frmqxcks02a.h"

namespace qx::test {
namespace {

class PromotionTest : public SetupTest {
protected:
    std::unique_ptr<TQXCKS02> editor(const QString& mode = "Edit", const QString& ck = "01") {
        auto e = std::make_unique<TQXCKS02>(nullptr);
        e->FuncNo = "704";
        e->InitForm(mode, ck, "总仓");
        return e;
    }
    std::unique_ptr<TQXCKS02_1> chooser(int row, int mode, bool mayEdit = true, const QString& ck = "01") {
        auto c = std::make_unique<TQXCKS02_1>(nullptr);
        c->FuncNo = "704";
        c->InitForm(row, mode, ck, mayEdit);
        return c;
    }
    static QStringList keys(TClientDataSet* ds) {
        QStringList out;
        for (int i = 0; i < ds->RecordCount(); ++i) out << ds->CellValue(i, ds->FieldIndex("K_ID")).toString();
        return out;
    }
    QStringList schemeRows(const QString& ck = "01") {
        return dump("SELECT I, T, FA, CLA, CLAZK, F1, F2, F3, BDATE, EDATE FROM d704 WHERE CK_ID='" + ck + "' ORDER BY I");
    }
};

TEST_F(PromotionTest, TheWarehouseListFollowsTheRightsOption) {
    EXPECT_EQ(TQXCKS02A::ListQuery(), "SELECT ck_id,ck_name,CS_DATE,1 as t,'写' as w from d1007");
    G_CHKCK = 1;
    EXPECT_EQ(TQXCKS02A::ListQuery(),
              "SELECT d1007.ck_id,d1007.ck_name,CS_DATE, case when SYS_USER_CK.w=0 then 0 else 1 end as T, case when "
              "SYS_USER_CK.w=0 then '读' else '写' end as w from d1007  INNER JOIN sys_USER_CK ON d1007.CK_ID = "
              "sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='U1') ");
    G_UserId = "x' OR '1'='1";
    EXPECT_TRUE(TQXCKS02A::ListQuery().contains("user_id='x'' OR ''1''=''1')"));
}

TEST_F(PromotionTest, AReadOnlyWarehouseCannotBeModified) {
    G_CHKCK = 1;
    int opened = 0;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        if (auto* e = dynamic_cast<TQXCKS02*>(dialog)) {
            ++opened;
            EXPECT_EQ(e->MayEdit, e->CK_ID == "01");
        }
        return int(mrCancel);
    });
    Trecord rec;
    rec.UserId = "U1";
    rec.FuncCode = 704;
    qx::frame::dispatch(rec, nullptr);
    TQXCKS02A* list = QXCKS02A;
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Caption(), "促销方案");
    ASSERT_EQ(list->AdoQry_Main->RecordCount(), 2);
    ASSERT_TRUE(list->AdoQry_Main->Locate("ck_id", "02"));
    EXPECT_EQ(list->AdoQry_Main->FieldByName("w")->AsString(), "读");
    list->Act_Modify->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"您没有写该仓库的权限，请用查看功能!"});
    EXPECT_EQ(opened, 0);
    list->Act_View->trigger();  // viewing is allowed
    EXPECT_EQ(opened, 1);
    ASSERT_TRUE(list->AdoQry_Main->Locate("ck_id", "01"));
    list->Act_Modify->trigger();
    EXPECT_EQ(opened, 2);
    list->close();
}

TEST_F(PromotionTest, LoadingFillsEachRowByItsNumber) {
    exec("INSERT INTO d704 VALUES ('01', 0, 1, '', 0, 0, 0, 0, 0, '1990-01-01', '2050-01-01')");
    exec("INSERT INTO d704 VALUES ('01', 1, 1, '', 0, 0, 0, 0, 0, '2026-03-01', '2026-03-31')");
    exec("INSERT INTO d704 VALUES ('01', 5, 1, '满300减50', 1, 1, 300, 50, 60, '2026-04-01', '2026-04-30')");
    auto e = editor();
    EXPECT_TRUE(opened("SELECT * FROM D704 where ck_id='01' ORDER BY I"));
    EXPECT_TRUE(e->T[0]->isChecked());
    EXPECT_TRUE(e->T[1]->isChecked());
    EXPECT_FALSE(e->T[2]->isChecked());
    EXPECT_EQ(e->BDATE[1]->Text(), "2026-03-01");
    EXPECT_EQ(e->BDATE[2]->Text(), "2026-03-18");  // not loaded: today
    EXPECT_EQ(e->FA[5]->text(), "满300减50");
    EXPECT_EQ(e->CLA[5]->currentText(), "【吊牌满】");
    EXPECT_EQ(e->CLAZK[5]->currentText(), "折现");
    EXPECT_EQ(e->F1[5]->text(), "300");
    EXPECT_EQ(e->F3[5]->text(), "60");
    EXPECT_EQ(e->EDATE[5]->Text(), "2026-04-30");
    EXPECT_FALSE(e->btn_ok->isEnabled());
    EXPECT_TRUE(e->bsSkinButton1->isEnabled());
    EXPECT_FALSE(qx::saveScreenshot(e.get(), "promotion_scheme").isEmpty());
}

TEST_F(PromotionTest, SavingReplacesAllElevenRowsInOneBatch) {
    exec("INSERT INTO d704 VALUES ('01', 4, 1, '旧方案', 0, 0, 100, 90, 80, '2026-01-01', '2026-01-31')");
    exec("INSERT INTO d704 VALUES ('02', 4, 1, '别的店', 0, 0, 100, 90, 80, '2026-01-01', '2026-01-31')");
    auto e = editor();
    e->T[0]->setChecked(true);
    e->T[1]->setChecked(true);
    e->BDATE[1]->SetText("2026-03-01");
    e->EDATE[1]->SetText("2026-03-31");
    e->T[3]->setChecked(true);
    e->FA[3]->setText("满2件8折");
    e->CLA[3]->setCurrentIndex(0);
    e->F1[3]->setText("2");
    e->CLAZK[3]->setCurrentIndex(0);
    e->F2[3]->setText("80");
    e->F3[3]->setText("75.5");
    e->BDATE[3]->SetText("2026-03-10");
    e->EDATE[3]->SetText("2026-04-10");
    EXPECT_TRUE(e->btn_ok->isEnabled());
    e->btn_ok->click();
    ASSERT_EQ(execs().size(), 1u);
    EXPECT_EQ(arguments(execs().front()), "101|AA|Edit");
    EXPECT_GOLDEN(execs().front().sql, "promotion_save.sql");
    EXPECT_EQ(sink->texts(), QStringList{"方案设定已保存!"});
    EXPECT_FALSE(e->btn_ok->isEnabled());
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704 WHERE CK_ID='01'"), 11);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704 WHERE FA='旧方案'"), 1);  // loaded and written again
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704 WHERE CK_ID='02'"), 1);
    EXPECT_FALSE(scalar("SELECT CS_DATE FROM d1007 WHERE CK_ID='01'").isEmpty());
    EXPECT_TRUE(scalar("SELECT CS_DATE FROM d1007 WHERE CK_ID='02'").isEmpty());
    EXPECT_EQ(schemeRows().at(3), "3|1|满2件8折|0|0|2|80|75.5|2026-03-10 00:00:00|2026-04-10 00:00:00");
    e->F2[3]->setText("70");  // any change enables saving again
    EXPECT_TRUE(e->btn_ok->isEnabled());
}

TEST_F(PromotionTest, AThresholdThatIsNotANumberIsStoredAsZero) {
    auto e = editor();
    e->F1[6]->setText("abc");
    e->F2[6]->setText("1e");
    e->F3[6]->setText("12.5");
    e->btn_ok->click();
    EXPECT_EQ(schemeRows().at(6).section('|', 5, 7), "0|0|12.5");
    EXPECT_TRUE(lastBatch().contains("'6','0','','0','0','0','0','12.5'"));
}

TEST_F(PromotionTest, RowTwoIsSavedWithRowOnesDates) {
    auto e = editor();
    e->BDATE[1]->SetText("2026-05-01");
    e->EDATE[1]->SetText("2026-05-31");
    e->BDATE[2]->SetText("2026-07-01");
    e->EDATE[2]->SetText("2026-07-31");
    e->T[2]->setChecked(true);
    e->btn_ok->click();
    EXPECT_EQ(schemeRows().at(2), "2|1||0|0|0|0|0|2026-05-01 00:00:00|2026-05-31 00:00:00");
    EXPECT_EQ(schemeRows().at(0), "0|0||0|0|0|0|0|1990-01-01 00:00:00|2050-01-01 00:00:00");
}

TEST_F(PromotionTest, ClearingRemovesTheRowsButKeepsTheStyles) {
    exec("INSERT INTO d704 VALUES ('01', 1, 1, '', 0, 0, 0, 0, 0, '2026-03-01', '2026-03-31')");
    exec("INSERT INTO d704a VALUES (1, 'K01', '01', 50, 45)");
    auto e = editor();
    e->bsSkinButton1->click();
    EXPECT_EQ(lastBatch(), "delete FROM D704 where ck_id='01'");
    EXPECT_EQ(execs().back().funcNo, "101");
    EXPECT_TRUE(sink->texts().isEmpty());
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704a"), 1);
}

TEST_F(PromotionTest, TheAllBoxSwitchesEveryRow) {
    auto e = editor();
    e->c_all->click();
    for (QCheckBox* t : e->T) EXPECT_TRUE(t->isChecked());
    e->c_all->click();
    for (QCheckBox* t : e->T) EXPECT_FALSE(t->isChecked());
}

TEST_F(PromotionTest, ViewingNeitherSavesNorClears) {
    exec("INSERT INTO d704 VALUES ('01', 0, 1, '', 0, 0, 0, 0, 0, '1990-01-01', '2050-01-01')");
    auto e = editor("View");
    e->T[4]->setChecked(true);
    EXPECT_FALSE(e->btn_ok->isEnabled());
    EXPECT_FALSE(e->bsSkinButton1->isEnabled());
    e->btn_okClick(e->btn_ok);
    e->bsSkinButton1Click(e->bsSkinButton1);
    EXPECT_TRUE(execs().empty());
}

TEST_F(PromotionTest, StylesCanBeChosenOnlyAfterASchemeIsSaved) {
    auto e = editor();
    int shown = 0;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        auto* c = dynamic_cast<TQXCKS02_1*>(dialog);
        if (c) {
            ++shown;
            EXPECT_EQ(c->Row, 7);
            EXPECT_EQ(c->Mode, 2);
        }
        return int(mrCancel);
    });
    e->btn[7]->click();
    EXPECT_EQ(sink->texts(), QStringList{"您必须先设定一种方案，且要保存后才可进行款号的选择!"});
    EXPECT_TRUE(opened("SELECT top 1 ck_id FROM D704 where ck_id='01' ORDER BY I"));
    EXPECT_EQ(shown, 0);
    e->CLA[7]->setCurrentIndex(2);
    e->btn_ok->click();
    e->btn[7]->click();
    EXPECT_EQ(shown, 1);
}

TEST_F(PromotionTest, TheModeOfAStyleButtonComesFromItsRow) {
    exec("INSERT INTO d704 VALUES ('01', 0, 1, '', 0, 0, 0, 0, 0, '1990-01-01', '2050-01-01')");
    auto e = editor();
    std::vector<int> modes;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        if (auto* c = dynamic_cast<TQXCKS02_1*>(dialog)) modes.push_back(c->Mode);
        return int(mrCancel);
    });
    e->CLA[3]->setCurrentIndex(1);
    for (int r : {0, 1, 2, 3, 4}) e->btn[r]->click();
    EXPECT_EQ(modes, (std::vector<int>{-2, -1, -1, 1, 0}));
}

TEST_F(PromotionTest, OnlyStylesWithStockHereAndInNoRowYetAreOffered) {
    exec("INSERT INTO d704a VALUES (5, 'K02', '01', 0, 0)");   // in another row of this warehouse
    exec("INSERT INTO d704a VALUES (1, 'K03', '02', 10, 9)");  // chosen in another warehouse only
    auto c = chooser(1, -1);
    EXPECT_TRUE(opened(TQXCKS02_1::AvailableQuery("01")));
    EXPECT_EQ(TQXCKS02_1::AvailableQuery("01"),
              "SELECT D1800.K_ID, D1800.WL_NAME, D1004.CLASS_ID, D1004.CLASS_NAME,0.00 as tj,0.00 AS DJ_VIP ,d1800.pfj as dj "
              "FROM D1800 INNER JOIN D1004 ON D1800.CLASS_ID = D1004.CLASS_ID INNER JOIN  ( SELECT  D1800.K_ID FROM D1800 "
              "INNER JOIN D1801 ON D1800.K_ID = D1801.K_ID INNER JOIN D1802 ON D1801.WL_ID = D1802.WL_ID AND D1802.CK_ID "
              "='01' GROUP BY D1800.K_ID ) T ON D1800.K_ID=T.K_ID  LEFT OUTER JOIN D704A ON D1800.K_ID = D704A.K_ID AND "
              "D704A.CK_ID='01'WHERE (D704A.K_ID IS NULL) ORDER BY D1004.CLASS_ID, D1800.K_ID");
    EXPECT_EQ(keys(c->AdoQry_1), (QStringList{"K01", "K03"}));  // K04 has no stock here, K02 is taken
    EXPECT_EQ(keys(c->AdoQry_2), QStringList{});
    auto other = chooser(5, 0);  // the row that has K02
    EXPECT_EQ(keys(other->AdoQry_2), QStringList{"K02"});
    EXPECT_EQ(keys(other->AdoQry_1), (QStringList{"K01", "K03"}));
    EXPECT_TRUE(opened(TQXCKS02_1::ChosenQuery("01", 5)));
    EXPECT_EQ(TQXCKS02_1::ChosenQuery("01", 5),
              "SELECT D1800.K_ID, D1800.WL_NAME, D1004.CLASS_ID, D1004.CLASS_NAME,D704A.DJ as tj,D704A.DJ_VIP,d1800.pfj as "
              "dj  FROM D1800 INNER JOIN  D704A ON D1800.K_ID = D704A.K_ID AND D704A.CK_ID='01' INNER JOIN D1004 ON "
              "D1800.CLASS_ID = D1004.CLASS_ID WHERE (D704A.I =5)");
}

TEST_F(PromotionTest, TheMoveButtonsShiftOneAClassOrAll) {
    exec("INSERT INTO d1802 (WL_ID, CK_ID, K0) VALUES ('K0401', '01', 1)");
    auto c = chooser(4, 0);
    ASSERT_EQ(keys(c->AdoQry_1), (QStringList{"K01", "K02", "K03", "K04"}));
    c->AdoQry_1->SetRecNo(2);
    c->MoveButtons[0]->click();  // add K02
    EXPECT_EQ(keys(c->AdoQry_2), QStringList{"K02"});
    c->AdoQry_1->SetRecNo(2);    // K03, class 02
    c->MoveButtons[2]->click();  // all of its class
    EXPECT_EQ(keys(c->AdoQry_1), QStringList{"K01"});
    EXPECT_EQ(c->AdoQry_2->RecordCount(), 3);
    c->AdoQry_2->Locate("K_ID", "K04");
    c->MoveButtons[3]->click();  // class 02 back
    EXPECT_EQ(keys(c->AdoQry_2), QStringList{"K02"});
    c->MoveButtons[4]->click();  // everything over
    EXPECT_EQ(c->AdoQry_1->RecordCount(), 0);
    EXPECT_EQ(c->AdoQry_2->RecordCount(), 4);
    c->AdoQry_2->Locate("K_ID", "K01");
    c->MoveButtons[1]->click();  // remove one
    EXPECT_EQ(keys(c->AdoQry_1), QStringList{"K01"});
    EXPECT_EQ(c->AdoQry_1->FieldByName("dj")->AsFloat(), 99.0);  // all seven fields travel
    c->MoveButtons[5]->click();  // everything back
    EXPECT_EQ(c->AdoQry_2->RecordCount(), 0);
    EXPECT_TRUE(execs().empty());  // moves stay in memory
}

TEST_F(PromotionTest, ASpecialPriceOfZeroIsRefusedButAnyValueInAFreeRuleIsAccepted) {
    auto c = chooser(1, -1);
    EXPECT_EQ(c->GRID2->ColumnByField("tj")->Title, "特价|非会员");
    EXPECT_EQ(c->GRID2->ColumnByField("DJ_VIP")->Title, "特价|VIP");
    EXPECT_TRUE(c->GRID2->ColumnByField("tj")->Visible);
    c->AdoQry_1->SetRecNo(1);
    c->MoveButtons[0]->click();  // K01
    c->AdoQry_1->Locate("K_ID", "K03");
    c->MoveButtons[0]->click();  // K03
    ASSERT_EQ(keys(c->AdoQry_2), (QStringList{"K01", "K03"}));
    c->AdoQry_2->SetRecNo(1);
    c->AdoQry_2->Edit();
    c->AdoQry_2->FieldByName("tj")->SetAsFloat(79);
    c->AdoQry_2->FieldByName("DJ_VIP")->SetAsFloat(69);
    c->AdoQry_2->Post();
    c->AdoQry_2->SetRecNo(1);
    c->btn_ok->click();  // K03 still has 0
    EXPECT_EQ(sink->texts(), QStringList{"特价/折扣 不能小于0!请更正!"});
    EXPECT_EQ(c->AdoQry_2->FieldByName("K_ID")->AsString(), "K03");  // the grid moved to it
    EXPECT_TRUE(execs().empty());
    c->AdoQry_2->Edit();
    c->AdoQry_2->FieldByName("tj")->SetAsFloat(-5);
    c->AdoQry_2->Post();
    c->btn_ok->click();
    EXPECT_EQ(sink->texts().size(), 2);
    c->AdoQry_2->Edit();
    c->AdoQry_2->FieldByName("tj")->SetAsFloat(120);
    c->AdoQry_2->Post();
    c->btn_ok->click();
    ASSERT_EQ(execs().size(), 1u);
    EXPECT_EQ(lastBatch(), "UPDATE D1007 SET CS_DATE=GETDATE() where ck_id='01';DELETE FROM D704A WHERE I=1 AND "
                           "(CK_ID='01');INSERT INTO D704A (I, K_ID,CK_ID, DJ,DJ_VIP) VALUES(1,'K01','01',79,69)"
                           "INSERT INTO D704A (I, K_ID,CK_ID, DJ,DJ_VIP) VALUES(1,'K03','01',120,0)");
    EXPECT_EQ(execs().back().funcNo, "101");
    EXPECT_EQ(dump("SELECT I, K_ID, DJ, DJ_VIP FROM d704a ORDER BY K_ID"), (QStringList{"1|K01|79|69", "1|K03|120|0"}));
    EXPECT_EQ(c->ModalResult(), mrOk);

    auto free = chooser(6, 1);  // a free rule: values are neither shown nor checked
    EXPECT_FALSE(free->GRID2->ColumnByField("tj")->Visible);
    free->MoveButtons[4]->click();
    EXPECT_EQ(free->AdoQry_2->RecordCount(), 1);  // K02 (K01 and K03 are taken)
    free->btn_ok->click();
    EXPECT_EQ(sink->texts().size(), 2);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704a WHERE I=6 AND DJ=0"), 1);
}

TEST_F(PromotionTest, LettersInAPriceCellAreRefusedAndNothingIsSaved) {
    auto c = chooser(1, -1);
    c->AdoQry_1->SetRecNo(1);
    c->MoveButtons[0]->click();
    auto* model = c->GRID2->model();
    TColumnEh* column = c->GRID2->ColumnByField("tj");
    ASSERT_NE(column, nullptr);
    EXPECT_FALSE(column->ReadOnly);
    model->setData(model->index(0, column->Index()), "八十", Qt::EditRole);
    c->AdoQry_2->Cancel();
    EXPECT_EQ(c->AdoQry_2->FieldByName("tj")->AsFloat(), 0.0);
    EXPECT_FALSE(sink->texts().isEmpty());  // the grid said why
    c->btn_ok->click();
    EXPECT_EQ(sink->texts().back(), "特价/折扣 不能小于0!请更正!");
    EXPECT_TRUE(execs().empty());
}

TEST_F(PromotionTest, FixedDiscountColumnsAreNamedSo) {
    auto c = chooser(2, -1);
    EXPECT_EQ(c->GRID2->ColumnByField("tj")->Title, "固定折扣|非会员");
    EXPECT_EQ(c->GRID2->ColumnByField("DJ_VIP")->Title, "固定折扣|VIP");
}

TEST_F(PromotionTest, WithoutTheRightToEditNothingMovesAndNothingIsSaved) {
    auto c = chooser(3, 0, false);
    for (QPushButton* b : c->MoveButtons) EXPECT_FALSE(b->isEnabled());
    c->btn_Click(5);
    EXPECT_EQ(c->AdoQry_2->RecordCount(), 0);
    c->btn_okClick(c->btn_ok);
    EXPECT_TRUE(execs().empty());
}

TEST_F(PromotionTest, HostileInputIsStoredAsTypedOrRefused) {
    auto e = editor();
    e->FA[8]->setText(QString("它's \"特价\"; DELETE FROM d704;--") + QString(10000, 'x'));
    e->F1[8]->setText("1'; DROP TABLE d704;--");
    e->btn_ok->click();
    EXPECT_EQ(scalar("SELECT FA FROM d704 WHERE I=8").left(29), "它's \"特价\"; DELETE FROM d704;--");
    EXPECT_EQ(scalar("SELECT FA FROM d704 WHERE I=8").size(), 50);  // the input takes 50 characters
    EXPECT_EQ(scalar("SELECT F1 FROM d704 WHERE I=8"), "0");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d704"), 11);
    // a period that ends before it starts
    sink->clear();
    e->BDATE[9]->SetText("2026-05-01");
    e->EDATE[9]->SetText("2026-04-01");
    e->btn_ok->click();
    EXPECT_EQ(sink->texts(), QStringList{"有效时间的开始日期不能晚于结束日期!"});
    EXPECT_EQ(execs().size(), 1u);
    // a warehouse code with a quote goes through the quoting helper
    auto odd = editor("Edit", "0'1");
    EXPECT_TRUE(opened("SELECT * FROM D704 where ck_id='0''1' ORDER BY I"));
}

}  // namespace
}  // namespace qx::test
