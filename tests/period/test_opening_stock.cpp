// The opening stock list and its filter: the list statement with and without warehouse rights,
// the filter's conditions and refusals, size titles, the delete of a whole stock row, hostile
// input in every edit.
#include <QCheckBox>
#include <QLabel>

#include "framework/Screenshot.h"
#include "period/Frmqxck341.h"
#include "period/Frmqxck341f.h"
#include "frame/Dispatch.h"
#include "tests/period/PeriodFixture.h"

namespace {

using qx::test::golden;
using qx::test::PeriodTest;

class OpeningStock : public PeriodTest {
protected:
    void SetUp() override {
        PeriodTest::SetUp();
        maintain("INSERT INTO d1802 (WL_ID, CK_ID, B0, B1, B2, K0, K1, K2, BEGIN_MONEY, BEGIN_DJ, BDATE) VALUES "
                 "('K0101', '01', 1, 2, 3, 1, 2, 3, 60, 10, '2026-01-01')");
        maintain("INSERT INTO d1802 (WL_ID, CK_ID, B0, K0, BEGIN_MONEY, BEGIN_DJ) VALUES ('K0102', '02', 4, 4, 40, 10)");
        maintain("INSERT INTO d1802 (WL_ID, CK_ID, B3, K3, BEGIN_MONEY) VALUES ('K0201', '01', 5, 5, 100)");
    }
    // The list opened on code 241; `fill` sets the filter before its OK.
    std::unique_ptr<TQXck341> openList(std::function<void(TQXCK341F*)> fill = {}) {
        onModal = [fill](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<TQXCK341F*>(dialog);
            if (!filter) return int(mrCancel);
            if (fill) fill(filter);
            filter->btn_ok->click();
            return filter->ModalResult();
        };
        auto list = std::make_unique<TQXck341>(nullptr);
        list->setAttribute(Qt::WA_DeleteOnClose, false);
        Trecord rec;
        rec.UserId = G_UserId;
        rec.FuncCode = 241;
        list->Tag = 241;
        list->InitForm(rec);
        list->setAttribute(Qt::WA_DeleteOnClose, false);
        return list;
    }
    QStringList listedIds(TQXck341* list) {
        QStringList ids;
        for (int r = 0; r < list->AdoQry_Main->RecordCount(); ++r) ids << list->AdoQry_Main->CellValue(r, list->AdoQry_Main->FieldIndex("ID")).toString();
        return ids;
    }
    QString lastOpen() const {
        const auto opened = statements(qx::dataop::Call::Kind::OpenSql);
        return opened.empty() ? QString() : opened.back();
    }
};

TEST_F(OpeningStock, ListsEveryStockRowWithItsStatementOrderedByWarehouseAndStyle) {
    auto list = openList();
    EXPECT_EQ(list->Caption(), "商品库存期初");
    EXPECT_EQ(lastOpen(), golden("opening-stock-list", {{"rights", ""}})) << "both ticks are set at first: no condition";
    list->resize(1100, 320);
    EXPECT_FALSE(qx::saveScreenshot(list.get(), "opening_stock").isEmpty());
}

TEST_F(OpeningStock, BothTicksListActiveAndInactiveGoods) {
    auto list = openList([](TQXCK341F* f) { f->CheckBox2->setChecked(true); });
    EXPECT_EQ(lastOpen(), golden("opening-stock-list", {{"rights", ""}}));
    EXPECT_EQ(listedIds(list.get()), QStringList({"K010101", "K020101", "K010202"}));
    EXPECT_EQ(list->AdoQry_Main->FieldByName("STOT")->AsInteger(), 6);
    EXPECT_EQ(list->AdoQry_Main->FieldByName("BEGIN_MONEY")->AsFloat(), 60);
}

TEST_F(OpeningStock, OneTickChoosesActiveOrInactiveGoods) {
    auto active = openList([](TQXCK341F* f) { f->CheckBox2->setChecked(false); });
    EXPECT_TRUE(lastOpen().endsWith(" WHERE (D1800.WL_YS = 1)")) << lastOpen().toStdString();
    EXPECT_EQ(listedIds(active.get()), QStringList({"K010101", "K010202"}));
    auto inactive = openList([](TQXCK341F* f) {
        f->CheckBox1->setChecked(false);
        f->CheckBox2->setChecked(true);
    });
    EXPECT_TRUE(lastOpen().endsWith(" WHERE (D1800.WL_YS = 0)"));
    EXPECT_EQ(listedIds(inactive.get()), QStringList({"K020101"}));
}

TEST_F(OpeningStock, NeitherTickIsRefusedAndTheFilterStaysOpen) {
    TQXCK341F filter(nullptr);
    filter.CheckBox1->setChecked(false);
    filter.CheckBox2->setChecked(false);
    filter.btn_ok->click();
    EXPECT_EQ(sink->texts(), QStringList({"有效和无效必须选定一个"}));
    EXPECT_EQ(filter.ModalResult(), int(mrNone));
}

TEST_F(OpeningStock, TheFilterBuildsItsConditionAndDescription) {
    TQXCK341F filter(nullptr);
    filter.CheckBox2->setChecked(true);
    filter.K_ID->setText("K0");
    filter.WL_NAME->setText("衬");
    filter.PP_ID->setText("P1");
    filter.CLASS_ID->setText("C1");
    filter.CK_ID->setText("01");
    filter.btn_ok->click();
    EXPECT_EQ(filter.Condition,
              "(d1007.ck_ID = '01') AND (D1800.K_ID LIKE '%K0%') AND (D1800.WL_NAME LIKE '%衬%') AND (D1800.PP_id = 'P1') AND "
              "(D1800.CLASS_ID = 'C1')");
    EXPECT_EQ(filter.Description, " ●仓库=01 ●款号/货号 包含 K0 ●商品名称 包含 衬 ●品牌 = P1 ●商品类型 = C1");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.K_ID)->text(), "款号/货号");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.WL_NAME)->text(), "商品名称");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.PP_ID)->text(), "品    牌");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.CLASS_ID)->text(), "商品类型");
    EXPECT_EQ(filter.Panel_Condition->CaptionOf(filter.CK_ID)->text(), "仓    库");
}

TEST_F(OpeningStock, WithWarehouseRightsOnlyTheUsersWarehousesAreListed) {
    G_CHKCK = 1;
    auto list = openList([](TQXCK341F* f) { f->CheckBox2->setChecked(true); });
    EXPECT_EQ(lastOpen(), golden("opening-stock-list", {{"rights", golden("opening-stock-rights", {{"user", "U1"}})}}));
    EXPECT_EQ(listedIds(list.get()), QStringList({"K010101", "K020101"}));
}

TEST_F(OpeningStock, SizeColumnsAreTitledByTheRowsSizeNamesAndADashForAnEmptyOne) {
    auto list = openList();
    EXPECT_EQ(list->DBGridEh->ColumnByField("B0")->Title, "尺码|S");
    EXPECT_EQ(list->DBGridEh->ColumnByField("B2")->Title, "尺码|L");
    EXPECT_EQ(list->DBGridEh->ColumnByField("B3")->Title, "尺码|-");
    EXPECT_FALSE(list->DBGridEh->ColumnByField("B4")->Visible);
}

TEST_F(OpeningStock, DeletingARowRemovesTheWholeStockRowOfThatSkuAndWarehouse) {
    auto list = openList();
    ASSERT_TRUE(list->AdoQry_Main->Locate("ID", "K010101"));
    sink->queueAnswer(true);
    list->Act_Delete->trigger();
    EXPECT_EQ(lastExec().sql, golden("opening-stock-delete", {{"key", "'K010101'"}}));
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1802 WHERE WL_ID='K0101' AND CK_ID='01'"), "0") << "stock included";
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1802"), "2");
    EXPECT_EQ(listedIds(list.get()), QStringList({"K020101", "K010202"}));
}

TEST_F(OpeningStock, HostileInputIsQuotedAndFindsNothing) {
    const QString quote = "K0' OR '1'='1";
    const QString longText(10000, QChar(u'款'));
    for (auto fill : std::vector<std::function<void(TQXCK341F*)>>{
             [&](TQXCK341F* f) { f->K_ID->setText(quote); },
             [&](TQXCK341F* f) { f->WL_NAME->setText(quote + "; DELETE FROM d1802; --"); },
             [&](TQXCK341F* f) { f->PP_ID->setText("P'1"); },
             [&](TQXCK341F* f) { f->CLASS_ID->setText("x'y"); },
             [&](TQXCK341F* f) { f->CK_ID->setText("0'1"); },
             [&](TQXCK341F* f) { f->WL_NAME->setText(longText); },
             [&](TQXCK341F* f) { f->K_ID->setText("abc%_"); },
         }) {
        sink->clear();
        auto list = openList([&](TQXCK341F* f) {
            f->CheckBox2->setChecked(true);
            fill(f);
        });
        EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
        EXPECT_EQ(list->AdoQry_Main->RecordCount(), 0) << lastOpen().toStdString();
    }
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1802"), "3") << "nothing injected";
}

TEST_F(OpeningStock, Code241OpensTheListThroughTheDispatch) {
    // The factory row of 241 creates this screen (the dispatch itself is tested in frame/).
    const auto* row = qx::frame::findFunction(241);
    ASSERT_NE(row, nullptr);
    ASSERT_NE(row->factory, nullptr);
    QWidget owner;
    auto handle = row->factory(&owner);
    EXPECT_NE(dynamic_cast<TQXck341*>(QXck341), nullptr);
    EXPECT_EQ(QXck341->parent(), &owner);
}

}  // namespace
