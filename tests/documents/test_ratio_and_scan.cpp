// Entry by size ratio and by scanning, in the entry screens with a size grid: a count sheet, a
// loss/gain sheet, an order and a purchase receipt (price arithmetic follows as when typing).
#include <QApplication>
#include <QTest>

#include "documents/purchase/Frmqxck201.h"
#include "documents/purchase/Frmqxck201_1.h"
#include "framework/SizeRatio.h"
#include "tests/documents/StockDocumentsFixture.h"

namespace {

using qx::dataop::Call;

class RatioAndScanTest : public qx::test::StockDocumentsTest {
protected:
    void SetUp() override {
        StockDocumentsTest::SetUp();
        exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0101','1','K01','690101M')");
        exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0101','3','K01','690101XL')");
        exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0102','0','K01','690102S')");
        exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0203','7','K02','690203X7')");
        list = stocktakeList();
        list->Act_Add->trigger();
        e = list->entry();
        QApplication::setActiveWindow(e);
    }
    void TearDown() override {
        if (e) e->Modified = false;
        delete list;
        StockDocumentsTest::TearDown();
    }
    void scan(const QString& code) {
        e->Edit_Scan->setText(code);
        QTest::keyClick(e->Edit_Scan, Qt::Key_Return);
    }
    QString sizes(int row) {
        QStringList out;
        for (int i = 0; i < 5; ++i)
            out << e->AdoQry_Main->CellValue(row, e->AdoQry_Main->FieldIndex("S" + QString::number(i))).toString();
        return out.join("/");
    }
    TQXCK235* list = nullptr;
    TQXCK235_1* e = nullptr;
};

// ---- ratio

TEST_F(RatioAndScanTest, ARatioTypedInTheTotalCellFillsTheSizes) {
    addLine(e, "K01", "01", {"5"});
    ASSERT_TRUE(typeCell(e, "STOT", "1:2:2:1*12"));
    EXPECT_EQ(sizes(0), "12/24/24/12/0") << "the ratio replaces what the line held";
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 72);
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    e->AdoQry_Main->CheckBrowseMode();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT S1 FROM d8300A WHERE NOID='" + noid + "'"), "24");
}

TEST_F(RatioAndScanTest, ANumberOrAWrongRatioInTheTotalCellIsRefusedAndNothingChanges) {
    addLine(e, "K01", "01", {"5", "1"});
    for (const char* bad : {"7", "1:a*2", "1:2*0", "1:1:1:1:1:1*2", "9'*2"}) {
        sink->clear();
        EXPECT_FALSE(typeCell(e, "STOT", bad)) << bad;
        ASSERT_EQ(sink->texts().size(), 1) << bad;
        EXPECT_EQ(sizes(0), "5/1/0/0/0") << bad;
        EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 6) << bad;
    }
    EXPECT_TRUE(sink->texts()[0].contains("9'*2"));
}

TEST_F(RatioAndScanTest, TheRatioDialogFillsTheCurrentLine) {
    addLine(e, "K01", "01", {});
    bool shown = false;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        auto* d = dynamic_cast<TFrm_Sys_SizeRatio*>(dialog);
        if (!d) return int(mrCancel);
        shown = true;
        EXPECT_EQ(d->Lab_Sizes->text(), "S:M:L:XL:2XL");
        // Zero packs first: refused, the dialog stays.
        d->Edit_Ratio->setText("1:1");
        d->Edit_Packs->setText("0");
        d->btn_ok->click();
        EXPECT_NE(d->ModalResult(), int(mrOk));
        d->Edit_Packs->setText("3");
        d->btn_ok->click();
        return d->ModalResult();
    });
    e->Act_Ratio->trigger();
    qx::ui::setModalHandler(nullptr);
    EXPECT_TRUE(shown);
    EXPECT_EQ(sink->texts(), QStringList{"配比 '1:1*0' 的箱数 '0' 必须是大于0的整数!"});
    EXPECT_EQ(sizes(0), "3/3/0/0/0");
}

TEST_F(RatioAndScanTest, TheRatioNeedsALineWithAStyle) {
    e->Act_Ratio->trigger();
    EXPECT_EQ(sink->texts(), QStringList{"请先录入款号和颜色,再按配比录入该行的尺码数量!"});
}

TEST_F(RatioAndScanTest, OnAPurchaseReceiptTheAmountFollowsTheRatio) {
    auto* receipts = openList<TQXCK201>(201);
    receipts->Act_Add->trigger();
    TQXCK201_1* r = receipts->entry();
    addLine(r, "K01", "02", {}, "10");
    ASSERT_TRUE(typeCell(r, "STOT", "1:2*2"));
    EXPECT_EQ(r->AdoQry_Main->FieldByName("STOT")->AsInteger(), 6);
    EXPECT_DOUBLE_EQ(r->AdoQry_Main->FieldByName("SMONEY")->AsFloat(), 60);
    r->AdoQry_Main->Cancel();
    r->Modified = false;
    delete receipts;
}

// ---- scanning

TEST_F(RatioAndScanTest, ABarcodeAddsOneToItsSizeMakingTheLineAndTheCursorStaysInTheScanField) {
    scan("690101M");
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("K_ID")->AsString(), "K01");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("COL_ID")->AsString(), "01");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("COL_NAME")->AsString(), "红色");
    EXPECT_EQ(sizes(0), "0/1/0/0/0");
    scan("690101M");
    scan("690101XL");
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(sizes(0), "0/2/0/1/0");
    EXPECT_EQ(e->AdoQry_Main->FieldByName("STOT")->AsInteger(), 3);
    // Another colour of the style: a line of its own.
    scan("690102S");
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 2);
    EXPECT_EQ(sizes(1), "1/0/0/0/0");
    EXPECT_TRUE(e->Edit_Scan->text().isEmpty());
    EXPECT_EQ(QApplication::focusWidget(), e->Edit_Scan);
    EXPECT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT S1 FROM d8300A WHERE NOID='" + noid + "' AND WL_ID='K0101'"), "2");
}

TEST_F(RatioAndScanTest, AScanAddsToALineTypedBefore) {
    addLine(e, "K01", "01", {"", "4"});
    scan("690101M");
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(sizes(0), "0/5/0/0/0");
}

TEST_F(RatioAndScanTest, AnUnknownCodeOrOneWithAQuoteChangesNothing) {
    addLine(e, "K01", "01", {"1"});
    calls.clear();
    for (const char* code : {"NOPE", "69'01", "'); DELETE FROM d1809;--"}) {
        sink->clear();
        scan(code);
        EXPECT_EQ(sink->texts(), QStringList{QString("条码 ") + code + " 不存在(既不是已登记的条码,也不是款号),本次扫描未记录!"});
        EXPECT_EQ(e->AdoQry_Main->RecordCount(), 1);
        EXPECT_EQ(sizes(0), "1/0/0/0/0");
        EXPECT_EQ(e->Edit_Scan->text(), code) << "kept for correction";
    }
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1809"), 4);
    for (const Call& c : calls) EXPECT_NE(c.kind, Call::Kind::ExecSql);
}

TEST_F(RatioAndScanTest, ABarcodeOfASizeTheGroupLacksIsRefused) {
    scan("690203X7");
    EXPECT_EQ(sink->texts(), QStringList{"条码 690203X7 的尺码位置 7 不在款号 K02 的尺码组中,本次扫描未记录!"});
    EXPECT_EQ(e->AdoQry_Main->RecordCount(), 0);
}

TEST_F(RatioAndScanTest, AStyleCodeAloneStartsALineAndAsksColourAndSizes) {
    scan("K02");  // one colour: taken at once, the sizes come next
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(e->AdoQry_Main->FieldByName("COL_ID")->AsString(), "03");
    EXPECT_EQ(sizes(0), "////") << "no quantity until the clerk types it";
    EXPECT_EQ(e->DBGridEh->CurrentColumn()->FieldName, "S0");
    e->DBGridEh->CancelEdit();
    scan("K01");  // two colours: the colour is asked
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 2);
    EXPECT_TRUE(e->ColorLink->isVisible());
    e->ColorLink->Close();
    e->AdoQry_Main->Cancel();
}

TEST_F(RatioAndScanTest, FiveHundredScansCountFiveHundredPieces) {
    for (int i = 0; i < 500; ++i) scan(i % 2 ? "690101M" : "690101XL");
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(sizes(0), "0/250/0/250/0");
    EXPECT_TRUE(sink->texts().isEmpty());
}

TEST_F(RatioAndScanTest, ScanningWorksOnOrdersAndLossGainSheetsToo) {
    auto* orders = orderList();
    orders->Act_Add->trigger();
    TQXCK213_1* o = orders->entry();
    o->Edit_Scan->setText("690101M");
    QTest::keyClick(o->Edit_Scan, Qt::Key_Return);
    ASSERT_EQ(o->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(o->AdoQry_Main->FieldByName("S1")->AsInteger(), 1);
    o->Modified = false;
    o->AdoQry_Main->EmptyDataSet();
    delete orders;
    auto* gains = lossGainList();
    gains->Act_Add->trigger();
    TQXCK231_1* g = gains->entry();
    g->ScanCode("690102S");
    ASSERT_EQ(g->AdoQry_Main->RecordCount(), 1);
    EXPECT_EQ(g->AdoQry_Main->FieldByName("S0")->AsInteger(), 1);
    g->Modified = false;
    g->AdoQry_Main->EmptyDataSet();
    delete gains;
}

}  // namespace
