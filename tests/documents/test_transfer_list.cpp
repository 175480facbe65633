// The transfer and arrival-check lists and filters: head and line statements with and without
// warehouse rights, the filter's conditions and descriptions, what each list shows, the
// dispatch of 217 and 219, and the goods in transit.
#include <QLabel>

#include "documents/transfer/InTransit.h"
#include "frame/Dispatch.h"
#include "frame/Qxfunc2.h"
#include "framework/DBGridEh.h"
#include "tests/documents/TransferFixture.h"
#include "tests/support/GoldenStatements.h"

namespace {

using qx::dataop::Call;
using qx::test::TransferTest;

class TransferListTest : public TransferTest {
protected:
    void SetUp() override {
        TransferTest::SetUp();
        addTransfer("T0305", "2026-03-05", 1, "K0101", 3, 2);
        addTransfer("T0306", "2026-03-06", 0, "K0203", 1, 0);           // not yet effective
        addTransfer("T0307", "2026-03-07", 1, "K0102", 0, 4, "02", "01");  // the other way round
        exec("INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, USER_ID, Y) VALUES ('T0308', 1, '01', '02', "
             "'2026-03-08', 'U1', 0)");  // no lines
        calls.clear();
    }
    QStringList listed(TDocumentList* l) {
        QStringList out;
        for (int r = 0; r < l->AdoQry_Main->RecordCount(); ++r)
            out << l->AdoQry_Main->CellValue(r, l->AdoQry_Main->FieldIndex("noid")).toString();
        out.sort();
        return out;
    }
    QString headStatement() {
        for (const auto& c : calls)
            if (c.kind == Call::Kind::OpenSql && c.sql.trimmed().startsWith("SELECT d8303.noid")) return c.sql;
        return {};
    }
    qx::test::GoldenStatements golden233{"documents/golden/Frmqxck233.sql"};
    qx::test::GoldenStatements golden234{"documents/golden/Frmqxck234.sql"};
};

TEST_F(TransferListTest, TheTransferListShowsTransfersWithLinesAndTheirTotals) {
    TQXCK233* l = transfers();
    EXPECT_EQ(l->Caption(), "调拨单");
    EXPECT_EQ(listed(l), (QStringList{"T0305", "T0306", "T0307"}));
    EXPECT_TRUE(qx::test::sameStatements(golden233.text("Head"), headStatement()));
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "T0305"));
    EXPECT_EQ(l->AdoQry_Main->FieldByName("SL")->AsInteger(), 5);
    EXPECT_DOUBLE_EQ(l->AdoQry_Main->FieldByName("SMON")->AsFloat(), 495);
    EXPECT_EQ(l->AdoQry_Main->FieldByName("ck_name_in")->AsString(), "东门店");
    l->RefreshDetail();
    EXPECT_EQ(l->AdoQry_Detail->RecordCount(), 1);
    EXPECT_EQ(l->QtyFields, "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT");
    EXPECT_EQ(l->PriceFields, "dj");
    EXPECT_EQ(l->MoneyFields, "money");
    EXPECT_EQ(l->KeyField, "NOID");
    EXPECT_EQ(l->WlField, "wl_id");
    EXPECT_EQ(l->DeleteStatement("T0305"), "delete from D8303 Where (noid='T0305')");
    EXPECT_TRUE(qx::test::sameStatements(golden233.text("Lines"), l->BodySql));
    // Without approval the approval columns are gone.
    EXPECT_EQ(l->DBGridEh->ColumnByTitle("审批"), nullptr);
    EXPECT_EQ(l->DBGridEh->ColumnByTitle("审批日期"), nullptr);
    delete l;
}

TEST_F(TransferListTest, WithRightsTheSendersWarehouseDecides) {
    G_CHKCK = true;  // U1 has rights on 总仓 only
    TQXCK233* l = transfers();
    EXPECT_EQ(listed(l), (QStringList{"T0305", "T0306"}));
    EXPECT_TRUE(qx::test::sameStatements(golden233.text("HeadWithRights"), headStatement()));
    delete l;
}

TEST_F(TransferListTest, AZeroDiscrepancyIsShownAsAnEmptyCell) {
    exec("UPDATE D8303 SET Y_WC = 2 WHERE NOID = 'T0307'");
    TQXCK233* l = transfers();
    TColumnEh* column = l->DBGridEh->ColumnByField("Y_WC");
    ASSERT_NE(column, nullptr);
    for (int r = 0; r < l->AdoQry_Main->RecordCount(); ++r) {
        const QString noid = l->AdoQry_Main->CellValue(r, l->AdoQry_Main->FieldIndex("noid")).toString();
        EXPECT_EQ(l->DBGridEh->DisplayedText(r, column->Index()), noid == "T0307" ? "2" : "") << noid.toStdString();
    }
    delete l;
}

TEST_F(TransferListTest, TheFilterConditionsAndDescription) {
    TQXCK233* l = transfers([](TDocumentFilter* f) {
        f->BDATE->SetDate(QDate(2026, 3, 5));
        f->EDATE->SetDate(QDate(2026, 3, 5));
        f->CK_ID->setText("01");
        f->findChild<QLineEdit*>("CK_ID_IN")->setText("02");
        f->Edit2->setText("T0399");
    });
    EXPECT_EQ(l->Condition,
              "(D8303.BDATE>='2026-03-05') AND (D8303.BDATE<='2026-03-05')  AND (d1007.ck_ID = '01') AND "
              "(d1007_1.ck_ID = '02')  AND (D8303.NOID<='T0399')");
    EXPECT_EQ(l->Lab_Condition->text(), " ●开单日期:03-05 至 03-05 (1天) ●调出仓库=01 ●调入仓库=02 ●调拔单号: 至 T0399");
    EXPECT_EQ(listed(l), QStringList{"T0305"});
    delete l;
}

TEST_F(TransferListTest, ReversedDatesAndHostileFilterTextsAreHarmless) {
    TQXCK233* l = transfers([this](TDocumentFilter* f) {
        f->BDATE->SetDate(QDate(2026, 3, 9));
        f->EDATE->SetDate(QDate(2026, 3, 1));
        sink->clear();
        f->btn_ok->click();
        EXPECT_EQ(sink->texts(), QStringList{"<开始日期> 不能大于 <结束日期>!"});
        EXPECT_NE(f->ModalResult(), mrOk);
        f->EDATE->SetDate(QDate(2026, 3, 18));
        f->findChild<QLineEdit*>("CK_ID_IN")->setText("0'2");
        f->Edit1->setText("'); DELETE FROM D8303;--");
    });
    EXPECT_TRUE(listed(l).isEmpty());
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8303"), 4);
    delete l;
}

TEST_F(TransferListTest, TheArrivalListOffersOnlyEffectiveTransfersToTheReceiversWarehouses) {
    TQXCK234* l = arrivals();
    EXPECT_EQ(l->Caption(), "调拨到货点收");
    EXPECT_EQ(listed(l), (QStringList{"T0305", "T0307", "T0308"}));
    EXPECT_TRUE(qx::test::sameStatements(golden234.text("Head"), headStatement()));
    EXPECT_TRUE(qx::test::sameStatements(golden234.text("Lines"), l->BodySql));
    EXPECT_FALSE(l->Act_Add->isVisible());
    EXPECT_FALSE(l->Act_CopyAdd->isVisible());
    EXPECT_FALSE(l->Act_Delete->isVisible());
    EXPECT_EQ(TQXCK234::ListCondition(""), "(D8303.T = 1)");
    EXPECT_EQ(TQXCK234::ListCondition("(x)"), "(D8303.T = 1) and (x)");
    G_CHKCK = true;  // U1 receives at 总仓 only
    delete l;
    calls.clear();
    l = arrivals();
    EXPECT_EQ(listed(l), QStringList{"T0307"});
    EXPECT_TRUE(qx::test::sameStatements(golden234.text("HeadWithRights"), headStatement()));
    delete l;
}

TEST_F(TransferListTest, TheLinesBelowShowWhatWasSentAndWhatWasCountedIn) {
    exec("UPDATE D8303A SET Y0 = 3, Y1 = 1 WHERE NOID = 'T0305'");
    for (TDocumentList* l : std::initializer_list<TDocumentList*>{transfers(), arrivals()}) {
        ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "T0305"));
        l->RefreshDetail();
        TDBGridEh* lines = l->DBGridEh_Detail;
        ASSERT_NE(lines->ColumnByField("Y0"), nullptr) << l->Caption().toStdString();
        EXPECT_EQ(lines->ColumnByField("Y0")->Title, "收货填写|-");
        EXPECT_EQ(lines->ColumnByField("Y9")->Visible, lines->ColumnByField("S9")->Visible);
        EXPECT_EQ(lines->DisplayedText(0, lines->ColumnByField("Y0")->Index()), "3");
        EXPECT_EQ(lines->DisplayedText(0, lines->ColumnByField("Y1")->Index()), "1");
        EXPECT_EQ(lines->ColumnByField("SMONEY")->Footer.ValueType, fvtSum);
        EXPECT_EQ(lines->ColumnByField("SMONEY")->DisplayFormat, "0.00");
        delete l;
    }
}

TEST_F(TransferListTest, NotYetReceivedRowsAreTinted) {
    exec("UPDATE D8303 SET Y = 1 WHERE NOID = 'T0307'");
    TQXCK234* l = arrivals();
    for (int r = 0; r < l->AdoQry_Main->RecordCount(); ++r) {
        TCellParams p;
        p.Row = r;
        p.Background = Qt::white;
        l->DBGridEhGetCellParams(l->DBGridEh, l->DBGridEh->Columns(0), p);
        const bool received = l->AdoQry_Main->CellValue(r, l->AdoQry_Main->FieldIndex("y")).toInt() == 1;
        EXPECT_EQ(p.Background, received ? QColor(Qt::white) : QColor(128, 255, 255)) << r;
    }
    delete l;
}

TEST_F(TransferListTest, TheTransferCodesOpenTheirListsUnlessThereIsOnlyOneWarehouse) {
    auto main = std::make_unique<QWidget>();
    qx::ui::setModalHandler([](TFrm_Base* dialog) {
        auto* filter = dynamic_cast<TDocumentFilter*>(dialog);
        if (!filter) return int(mrCancel);
        filter->btn_ok->click();
        return filter->ModalResult();
    });
    Trecord rec;
    rec.UserId = "U1";
    rec.UserName = "王经理";
    rec.CkId = "01";
    rec.CkName = "总仓";
    for (int code : {217, 219}) {
        G_CKCOUNT_C = 1;
        rec.FuncCode = code;
        sink->clear();
        QXProc2(rec, main.get());
        EXPECT_EQ(sink->texts(), QStringList{"系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!"});
        if (code == 217) EXPECT_TRUE(main->findChildren<TQXCK233*>().isEmpty());
        else EXPECT_TRUE(main->findChildren<TQXCK234*>().isEmpty());
        G_CKCOUNT_C = 0;
        QXProc2(rec, main.get());
    }
    EXPECT_EQ(main->findChildren<TQXCK233*>().size(), 1);
    EXPECT_EQ(main->findChildren<TQXCK234*>().size(), 1);
}

// ---- goods in transit

TEST_F(TransferListTest, GoodsInTransitByWarehousePairAndPerSku) {
    exec("UPDATE D8303 SET Y = 1 WHERE NOID = 'T0307'");  // arrived
    addTransfer("T0309", "2026-03-09", 1, "K0101", 1, 1);
    TQXCK234* l = arrivals();
    l->Act_InTransit->trigger();
    TQXCK234_2* t = l->InTransit;
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->Caption(), "在途商品");
    EXPECT_EQ(t->AdoQry_Transfers->RecordCount(), 2);  // T0305, T0309; not T0306, T0307 or T0308
    auto value = [t](int row, const char* field) {
        return t->AdoQry_Transfers->CellValue(row, t->AdoQry_Transfers->FieldIndex(field)).toString();
    };
    EXPECT_EQ(value(0, "NOID"), "T0305");
    EXPECT_EQ(value(0, "CK_NAME"), "总仓");
    EXPECT_EQ(value(0, "CK_NAME_IN"), "东门店");
    EXPECT_EQ(value(0, "S0"), "3");
    EXPECT_EQ(value(0, "S1"), "2");
    EXPECT_EQ(value(0, "STOT"), "5");
    EXPECT_EQ(value(0, "DAYS"), "13");
    EXPECT_EQ(value(1, "NOID"), "T0309");
    EXPECT_EQ(value(1, "DAYS"), "9");
    ASSERT_EQ(t->AdoQry_Sku->RecordCount(), 1);
    auto sku = [t](const char* field) { return t->AdoQry_Sku->CellValue(0, t->AdoQry_Sku->FieldIndex(field)).toString(); };
    EXPECT_EQ(sku("WL_ID"), "K0101");
    EXPECT_EQ(sku("CK_ID_IN"), "02");
    EXPECT_EQ(sku("CK_ID"), "01");
    EXPECT_EQ(sku("Q0"), "4");
    EXPECT_EQ(sku("Q1"), "3");
    EXPECT_EQ(sku("QTY"), "7");
    // Confirming one arrival takes it off the road.
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", "T0305"));
    l->Act_Edit->trigger();
    l->entry()->Act_Other->trigger();
    l->entry()->Act_Save->trigger();
    t->Act_Refresh->trigger();
    EXPECT_EQ(t->AdoQry_Transfers->RecordCount(), 1);
    EXPECT_EQ(count("SELECT SUM(STOT) FROM V_QX_ZT WHERE WL_ID = 'K0101' AND CK_ID_IN = '02'"), 2);
    delete l;
}

TEST_F(TransferListTest, GoodsInTransitWithRightsAreThoseFromOrToTheUsersWarehouses) {
    exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('03', '西门店')");
    addTransfer("T0310", "2026-03-10", 1, "K0101", 1, 0, "02", "03");
    G_CHKCK = true;
    const QString sql = qx::transfer::inTransitTransfersQuery(QDate(2026, 3, 18));
    EXPECT_TRUE(sql.contains("(SELECT CK_ID FROM sys_USER_CK WHERE user_id='U1')"));
    const auto rows = query(sql).rows;
    EXPECT_EQ(rows.size(), 2u);  // T0305 from 总仓, T0307 to 总仓; not T0310
}

}  // namespace

namespace {

using qx::test::TransferTest;

class TransferApprovalTest : public TransferTest {};

TEST_F(TransferApprovalTest, WithApprovalANewTransferWaitsAndIsTinted) {
    G_SK = true;
    G_SKSTR = "0";
    TQXCK233* l = transfers();
    EXPECT_NE(l->DBGridEh->ColumnByTitle("审批"), nullptr);
    EXPECT_NE(l->DBGridEh->ColumnByTitle("审批日期"), nullptr);
    TQXCK233_1* e = newTransfer(l, "K01", "01", {"4"});
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    EXPECT_EQ(scalar("SELECT T FROM D8303 WHERE NOID='" + noid + "'"), "0");
    EXPECT_EQ(stock("K0101", "01"), 50);  // not effective: nothing has left
    l->Act_Refresh->trigger();
    ASSERT_TRUE(l->AdoQry_Main->Locate("noid", noid));
    TCellParams p;
    p.Row = l->AdoQry_Main->CurrentRow();
    p.Background = Qt::white;
    l->DBGridEhGetCellParams(l->DBGridEh, l->DBGridEh->Columns(0), p);
    EXPECT_EQ(p.Background, QColor(0x80, 0xFF, 0xFF));
    delete l;
    // Nor is it offered for counting in.
    TQXCK234* a = arrivals();
    EXPECT_FALSE(a->AdoQry_Main->Locate("noid", noid));
    // Approved, it leaves.
    exec("UPDATE D8303 SET T = 1 WHERE NOID='" + noid + "'");
    EXPECT_EQ(stock("K0101", "01"), 46);
    a->Act_Refresh->trigger();
    EXPECT_TRUE(a->AdoQry_Main->Locate("noid", noid));
    delete a;
}

}  // namespace
