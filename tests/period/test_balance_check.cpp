// The quantity balance check: the rows of the balance view with equal pairs shown as zero, size
// titles, the drill-down to the stock movement detail, and the repair batch, which runs with the
// negative-stock guard on.
#include <QTest>

#include "reports/Frmqxck255_1.h"
#include "period/Frmqxck342.h"
#include "period/Frmqxck342_1.h"
#include "period/PeriodCommon.h"
#include "tests/period/PeriodFixture.h"

namespace {

using qx::test::golden;
using qx::test::PeriodTest;

class BalanceCheck : public PeriodTest {
protected:
    void SetUp() override {
        PeriodTest::SetUp();
        receive("R1", "2026-03-16", "K0101", {5, 6, 7, 8});
        receive("R2", "2026-03-16", "K0201", {2, 2, 2, 2});
    }
    // The balance view as the close screen hands it over.
    std::unique_ptr<TQXCK342_1> openCheck() {
        rows = std::make_unique<TClientDataSet>();
        opensql(rows.get(), "242", golden("balance-check"));
        auto check = std::make_unique<TQXCK342_1>(nullptr);
        check->InitForm(rows.get());
        calls.clear();
        return check;
    }
    // A sale entered with the guards off (a maintenance path), so it may drive checked goods
    // below zero.
    void sellUnguarded(const QString& sku, int qty) {
        maintain("INSERT INTO D8201 (T, NOID, CK_ID, BDATE, USER_ID) VALUES (1, 'S9', '01', '2026-03-17', 'U1');"
                 "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('S9', '" + sku + "', '" + sku.left(3) + "', '" +
                 sku.mid(3) + "', '01', " + QString::number(qty) + ")");
    }
    int cell(TQXCK342_1* check, const QString& field) { return check->AdoQry_Tmp->FieldByName(field)->AsInteger(); }
    std::unique_ptr<TClientDataSet> rows;
};

TEST_F(BalanceCheck, ABrokenRowIsListedWithOnlyItsDifferingSizeShown) {
    maintain("UPDATE d1802 SET K3=3 WHERE WL_ID='K0101' AND CK_ID='01'");  // broken by hand in size 3
    auto check = openCheck();
    EXPECT_EQ(check->Caption(), "库存数量帐目平衡检查");
    ASSERT_EQ(check->AdoQry_Tmp->RecordCount(), 1);
    EXPECT_EQ(check->AdoQry_Tmp->FieldByName("wl_id")->AsString(), "K0101");
    EXPECT_EQ(check->AdoQry_Tmp->FieldByName("ck_name")->AsString(), "总仓");
    EXPECT_EQ(cell(check.get(), "C3"), 8) << "recomputed from the documents";
    EXPECT_EQ(cell(check.get(), "K3"), 3) << "as the books hold it";
    for (int i : {0, 1, 2, 4, 5, 6, 7, 8, 9}) {
        EXPECT_EQ(cell(check.get(), "C" + QString::number(i)), 0) << i;
        EXPECT_EQ(cell(check.get(), "K" + QString::number(i)), 0) << i;
    }
}

TEST_F(BalanceCheck, SizeTitlesFollowTheRowAndAnEmptyNameIsADash) {
    maintain("UPDATE d1802 SET K0=1 WHERE WL_ID='K0101'");
    auto check = openCheck();
    EXPECT_EQ(check->DBGridEh->ColumnByField("C0")->Title, "重算后库存|S");
    EXPECT_EQ(check->DBGridEh->ColumnByField("K1")->Title, "帐面库存|M");
    EXPECT_EQ(check->DBGridEh->ColumnByField("C3")->Title, "重算后库存|-");
    EXPECT_EQ(check->DBGridEh->ColumnByField("K3")->Title, "帐面库存|-");
    EXPECT_FALSE(check->DBGridEh->ColumnByField("C4")->Visible) << "sizes after the last in use are hidden";
    EXPECT_EQ(check->btn_ok->text(), "修正(F2)");
    EXPECT_EQ(check->Label1->text(), "系统提示：系统列出帐目不平衡商品的（库存数量）信息，双击表格列出该款商品最近【进销存明细】");
    EXPECT_EQ(check->Label2->text(),
              "【重算后的库存】 如有负数的库存，且该商品不允许为负库存，进行【修正】时，将产生【库存不足支持本次出库业务】");
}

TEST_F(BalanceCheck, TheRepairCopiesTheRecomputedStockAndTheBooksBalanceAfterwards) {
    maintain("UPDATE d1802 SET K3=3 WHERE WL_ID='K0101' AND CK_ID='01'");
    maintain("UPDATE d1800 SET KC=99 WHERE K_ID='K02'");
    auto check = openCheck();
    int result = -1;
    check->btn_ok->click();
    result = check->ModalResult();
    const auto exec = lastExec();
    EXPECT_EQ(exec.sql, golden("balance-repair"));
    EXPECT_EQ(exec.funcNo, "342");
    EXPECT_EQ(exec.noid, "342");
    EXPECT_EQ(exec.mode, "E");
    EXPECT_EQ(sink->texts(), QStringList({"修复完成，窗口将自动关闭!"}));
    EXPECT_EQ(result, int(mrOk)) << "the window closes";
    EXPECT_EQ(scalar("SELECT K3 FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "8");
    EXPECT_EQ(scalar("SELECT KC FROM d1800 WHERE K_ID='K01'"), "26");
    EXPECT_EQ(scalar("SELECT KC FROM d1800 WHERE K_ID='K02'"), "8");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM V_CHECKKC"), "0");

    // and the close screen now finds the books balanced
    sink->clear();
    TQXCK342 close(nullptr);
    close.InitForm(Trecord());
    close.bth_kcchk->click();
    EXPECT_EQ(sink->texts(), QStringList({"帐目平衡!"}));
}

TEST_F(BalanceCheck, ARepairThatWouldDriveCheckedGoodsNegativeFailsAndChangesNothing) {
    // K02 is checked; its books say 2 but the documents say -1 after a sale entered with the
    // guard off (a maintenance path), and K01 is broken too.
    sellUnguarded("K0201", 3);
    maintain("UPDATE d1802 SET K0=2 WHERE WL_ID='K0201' AND CK_ID='01'");
    maintain("UPDATE d1802 SET K1=1 WHERE WL_ID='K0101' AND CK_ID='01'");
    auto check = openCheck();
    EXPECT_EQ(check->AdoQry_Tmp->RecordCount(), 2);
    check->btn_ok->click();
    const QStringList texts = sink->texts();
    ASSERT_EQ(texts.size(), 2);
    EXPECT_EQ(texts[0], "执行修复错误!数据量太大或网络因素都会造成修复错误，请尝试重新修复或在服务器上执行修复!");
    EXPECT_TRUE(texts[1].contains("库存不足支持本次出库业务")) << texts[1].toStdString();
    EXPECT_EQ(check->ModalResult(), int(mrNone)) << "the window stays open";
    EXPECT_EQ(scalar("SELECT K0 FROM d1802 WHERE WL_ID='K0201' AND CK_ID='01'"), "2") << "nothing of the batch is kept";
    EXPECT_EQ(scalar("SELECT K1 FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "1");
}

TEST_F(BalanceCheck, TheRepairMayDriveUncheckedGoodsNegative) {
    sellUnguarded("K0101", 9);
    maintain("UPDATE d1802 SET K0=5 WHERE WL_ID='K0101' AND CK_ID='01'");
    auto check = openCheck();
    check->btn_ok->click();
    EXPECT_EQ(scalar("SELECT K0 FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "-4");
}

TEST_F(BalanceCheck, TheRepairOfAClosedMonthsStockIsNotRefused) {
    maintain("UPDATE d1802 SET K3=3 WHERE WL_ID='K0101' AND CK_ID='01'");
    exec("UPDATE sys_co SET CK_END_DATE='2026-05-01'");
    auto check = openCheck();
    check->btn_ok->click();
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM V_CHECKKC"), "0");
}

TEST_F(BalanceCheck, F2Repairs) {
    maintain("UPDATE d1802 SET K3=3 WHERE WL_ID='K0101' AND CK_ID='01'");
    auto check = openCheck();
    QTest::keyClick(check.get(), Qt::Key_F2);
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM V_CHECKKC"), "0");
}

TEST_F(BalanceCheck, ByDefaultTheDetailIsTheStockQuerysMovementDetailOfThatSku) {
    maintain("UPDATE d1802 SET K0=1 WHERE WL_ID IN ('K0101','K0201')");
    auto check = openCheck();
    check->AdoQry_Tmp->Last();
    const QString sku = check->AdoQry_Tmp->FieldByName("wl_id")->AsString();
    QString sql;
    onModal = [&](TFrm_Base* dialog) {
        if (auto* detail = dynamic_cast<TQXCK255_1*>(dialog)) sql = detail->BuildSql();
        return int(mrCancel);
    };
    check->DBGridEh->OnDblClick();
    EXPECT_TRUE(sql.startsWith("EXEC SYS_ZM @param=1,")) << sql.toStdString();
    EXPECT_TRUE(sql.contains(",@wl_id='" + sku + "'")) << sql.toStdString();
    modalDialogs.clear();
}

TEST_F(BalanceCheck, ADoubleClickOpensTheStockMovementDetailReadOnlyOnTheRow) {
    maintain("UPDATE d1802 SET K0=1 WHERE WL_ID IN ('K0101','K0201')");
    auto check = openCheck();
    check->AdoQry_Tmp->Last();
    const QString sku = check->AdoQry_Tmp->FieldByName("wl_id")->AsString();
    QString key, rowSku;
    qx::period::setStockMovementDetailFactory([&](QWidget* owner) { return new TFrm_Base_Detail(owner); });
    onModal = [&](TFrm_Base* dialog) {
        auto* detail = dynamic_cast<TFrm_Base_Detail*>(dialog);
        if (detail) {
            key = detail->KeyValue;
            rowSku = detail->MasterDataSet->FieldByName("wl_id")->AsString();
        }
        return int(mrCancel);
    };
    check->DBGridEh->OnDblClick();
    qx::period::setStockMovementDetailFactory(nullptr);
    EXPECT_EQ(key, "ReadOnly");
    EXPECT_EQ(rowSku, sku);
    EXPECT_EQ(modalDialogs.size(), 1);
    modalDialogs.clear();
    check->DBGridEh->OnDblClick();
    EXPECT_TRUE(modalDialogs.isEmpty()) << "without the detail screen a double click opens nothing";
}

}  // namespace
