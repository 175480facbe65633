// The whole request as a user makes it, through the module's entry on a demo shop: open 采购进货,
// confirm the period, add a receipt with several lines, save, see it listed with its lines, copy
// it, change it, delete it, and watch the warehouse's stock follow. Also the screenshots.
#include <QFile>
#include <QTest>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Screenshot.h"
#include "tests/documents/PurchaseFixture.h"

namespace {

using qx::test::PurchaseTest;

class PurchaseRequestTest : public PurchaseTest {
protected:
    QString stock(const QString& sku, const QString& warehouse) {
        const QString kc = scalar("SELECT KC FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='" + warehouse + "'");
        return kc.isEmpty() ? "0" : kc;
    }
    // Opens code 201 through the module's entry, confirming the filter as `fill` leaves it.
    TQXCK201* openThroughEntry(QWidget* mainForm, std::function<void(TQXCK201F*)> fill = {}) {
        qx::ui::setModalHandler([fill](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<TQXCK201F*>(dialog);
            if (!filter) return int(mrCancel);
            if (fill) fill(filter);
            filter->btn_ok->click();
            return filter->ModalResult();
        });
        Trecord rec;
        rec.UserId = G_UserId;
        rec.UserName = G_UserName;
        rec.CkId = G_ckid;
        rec.CkName = G_CkName;
        rec.FuncCode = 201;
        QXCK201 = nullptr;
        QXProc2(rec, mainForm);
        return QXCK201;
    }
};

TEST_F(PurchaseRequestTest, ATypicalRequestOnTheDemoShop) {
    // The demo shop instead of the small one.
    db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(dir.filePath("demo.db").toStdString(), true));
    qx::demo::Options options;
    options.endDate = "2026-03-17";
    qx::demo::generate(*db, options);
    qx::dataop::setDatabase(db);
    G_UserId = scalar("SELECT MIN(USER_ID) FROM sys_user");
    G_UserName = scalar("SELECT USER_NAME FROM sys_user WHERE USER_ID='" + G_UserId + "'");
    G_ckid = scalar("SELECT MIN(CK_ID) FROM d1007");
    G_CkName = scalar("SELECT CK_NAME FROM d1007 WHERE CK_ID='" + G_ckid + "'");
    const QString supplier = scalar("SELECT MIN(KH_GYS_ID) FROM d1103");
    const QString buyer = scalar("SELECT MIN(YW_ID) FROM d1101");
    const QString delivery = scalar("SELECT MIN(SEND_ID) FROM d1011");
    // Three styles, each with one of its colours.
    const auto styles = query("SELECT K_ID, MIN(COL_ID) FROM d1804 GROUP BY K_ID ORDER BY K_ID");
    ASSERT_GE(styles.rows.size(), 3u);
    auto text = [](const qx::db::Value& v) { return QString::fromStdString(std::get<std::string>(v)); };

    QWidget mainForm;
    TQXCK201* list = openThroughEntry(&mainForm);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->FuncNo, "201");
    EXPECT_EQ(list->Lab_Condition->text(), " ●开单日期:03-01 至 03-18 (18天)");
    const int before = list->AdoQry_Main->RecordCount();

    // Add a receipt with three lines.
    list->Act_Add->trigger();
    TQXCK201_1* e = list->entry();
    ASSERT_TRUE(e->isVisible());
    ASSERT_TRUE(e->PartnerLink->Pick(supplier));
    ASSERT_TRUE(e->SalespersonLink->Pick(buyer));
    ASSERT_TRUE(e->DeliveryLink->Pick(delivery));
    e->NOTE->setText("手工录入");
    QStringList skus;
    for (int i = 0; i < 3; ++i) {
        const QString style = text(styles.rows[size_t(i)][0]);
        const QString colour = text(styles.rows[size_t(i)][1]);
        addLine(e, style, colour, {QString::number(i + 1), "2"}, "10");
        skus << style + colour;
    }
    QStringList stockBefore;
    for (const QString& sku : skus) stockBefore << stock(sku, G_ckid);
    const QString noid = e->Edit1->text();
    e->Act_Save->trigger();
    ASSERT_TRUE(sink->texts().isEmpty()) << sink->texts().join("|").toStdString();
    EXPECT_FALSE(e->isVisible());
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), before + 1);
    EXPECT_EQ(list->AdoQry_Main->FieldByName("noid")->AsString(), noid);
    EXPECT_EQ(list->AdoQry_Detail->RecordCount(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(stock(skus[i], G_ckid).toInt(), stockBefore[i].toInt() + i + 3);

    // Refreshed, it is still there with its lines.
    list->Act_Refresh->trigger();
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", noid));
    EXPECT_EQ(list->AdoQry_Detail->RecordCount(), 3);

    // Copy it: a second receipt, the stock grows again.
    list->Act_CopyAdd->trigger();
    const QString copy = e->Edit1->text();
    EXPECT_NE(copy, noid);
    e->Act_Save->trigger();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(stock(skus[i], G_ckid).toInt(), stockBefore[i].toInt() + 2 * (i + 3));

    // Change the copy: one line fewer.
    ASSERT_TRUE(list->AdoQry_Main->Locate("noid", copy));
    list->Act_Edit->trigger();
    ASSERT_EQ(e->AdoQry_Main->RecordCount(), 3);
    e->AdoQry_Main->Last();
    e->Act_DeleteLine->trigger();
    e->Act_Save->trigger();
    EXPECT_EQ(count("SELECT COUNT(*) FROM D8101A WHERE NOID='" + copy + "'"), 2);
    EXPECT_EQ(stock(skus[2], G_ckid).toInt(), stockBefore[2].toInt() + 5);

    // Delete both: the stock is back where it was.
    for (const QString& number : {copy, noid}) {
        ASSERT_TRUE(list->AdoQry_Main->Locate("noid", number));
        sink->queueAnswer(true);
        list->Act_Delete->trigger();
    }
    for (int i = 0; i < 3; ++i) EXPECT_EQ(stock(skus[i], G_ckid), stockBefore[i]);
    EXPECT_EQ(list->AdoQry_Main->RecordCount(), before);
    EXPECT_TRUE(sink->errors().isEmpty()) << sink->errors().join("|").toStdString();
    delete list;
}

TEST_F(PurchaseRequestTest, ScreenshotsOfTheListAndOfAReceiptWithThreeLines) {
    addReceipt("R0305", "2026-03-05", "01", 1);
    addReceipt("R0306", "2026-03-06", "02", 0, "G02");
    exec("INSERT INTO D1801 VALUES ('K0101','K01','01')");
    exec("INSERT INTO D1801 VALUES ('K0203','K02','03')");
    exec("INSERT INTO D8101A VALUES ('R0305','K0101','K01','01','01',1,2,3,1,0,0,0,0,0,0,10,70,'')");
    exec("INSERT INTO D8101A VALUES ('R0305','K0203','K02','03','01',0,2,2,0,0,0,0,0,0,0,20,80,'')");
    G_SK = 1;
    QWidget mainForm;
    TQXCK201* list = openThroughEntry(&mainForm, [](TQXCK201F* f) { f->KH_ID->setText(""); });
    ASSERT_NE(list, nullptr);
    list->resize(1100, 620);
    list->show();
    EXPECT_FALSE(qx::saveScreenshot(list, "purchase_list").isEmpty());
    list->filter()->resize(520, 300);
    EXPECT_FALSE(qx::saveScreenshot(list->Filter, "purchase_filter").isEmpty());

    list->Act_Add->trigger();
    TQXCK201_1* e = list->entry();
    fillHead(e);
    addLine(e, "K01", "02", {"3", "2", "4", "1"}, "10");
    addLine(e, "K02", "03", {"", "2", "3", "1"}, "20");
    addLine(e, "K01", "01", {"1", "1", "1", "1", "1"}, "10");
    e->resize(1100, 480);
    const QString file = qx::saveScreenshot(e, "purchase_entry");
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(e->DBGridEh->GetSumValue("STOT"), 21);
    e->Modified = false;
    e->AdoQry_Main->Cancel();
    delete list;
}

}  // namespace
