// The stocktake example of scripts/examples through the headless script runner on the demo
// shop: two count sheets, the summary, the loss/gain sheet and the stock it leaves.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include "db/tools/DemoData.h"
#include "frame/Qxfunc2.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "host/MainWindow.h"
#include "host/ScriptRunner.h"

namespace {

class StocktakeScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        path = dir.filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-29"});
        qx::ui::setToday(QDate(2026, 6, 30));
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        // The shelf the example counts: PD100 in colour Q1, 5 of the first size and 3 of the
        // second, in warehouse PD.
        for (const char* sql : {
                 "INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('PD', '盘点仓')",
                 "INSERT INTO sys_user_ck (USER_ID, CK_ID, W) VALUES ('admin', 'PD', 1)",
                 "INSERT INTO sys_user_ck (USER_ID, CK_ID, W) VALUES ('01', 'PD', 1)",
                 "INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('PDB', '盘点牌')",
                 "INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2) VALUES ('PDM', '三码', 'S', 'M', 'L')",
                 "INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('Q1', '灰色')",
                 "INSERT INTO d1800 (K_ID, M_ID, PP_ID, WL_NAME, DW_NAME, DJ, CGJ, PFJ, TMI, CHECK_KC) VALUES "
                 "('PD100', 'PDM', 'PDB', '盘点衬衫', '件', 30, 30, 99, 0, 0)",
                 "INSERT INTO d1804 (K_ID, COL_ID) VALUES ('PD100', 'Q1')",
                 "INSERT INTO D1801 (WL_ID, K_ID, COL_ID) VALUES ('PD100Q1', 'PD100', 'Q1')",
                 "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC, B0, B1, CHECK_KC) VALUES ('PD100Q1', 'PD', 5, 3, 8, 5, 3, 0)",
             })
            db->execute(sql);
        qx::dataop::setDatabase(db);
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->resize(1280, 800);
        window->show();
    }
    void TearDown() override {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        qx::ui::setToday(QDate());
        ResetGlobals();
    }
    QString scalar(const QString& sql) {
        const auto r = db->open(sql.toStdString());
        if (r.rows.empty()) return {};
        const auto& v = r.rows[0][0];
        if (auto* s = std::get_if<std::string>(&v)) return QString::fromStdString(*s);
        if (auto* i = std::get_if<std::int64_t>(&v)) return QString::number(*i);
        if (auto* d = std::get_if<double>(&v)) return FloatToStr(*d);
        return {};
    }

    QTemporaryDir dir;
    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
};

TEST_F(StocktakeScriptTest, TwoSheetsSummarisedIntoALossGainSheetThatCorrectsTheStock) {
    QFile file(QDir(QString::fromUtf8(qgetenv("QXCK_SOURCE_DIR"))).filePath("scripts/examples/stocktake.qxs"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const QString script = QString::fromUtf8(file.readAll());
    QString output;
    QTextStream out(&output);
    qx::host::ScriptRunner runner(*window, *db, out);
    const int rc = runner.run(qx::host::parseScript(script));
    out.flush();
    ASSERT_EQ(rc, 0) << output.toStdString();

    const QString sheet = scalar("SELECT MAX(NOID) FROM d8301 WHERE CK_ID='PD'");
    ASSERT_FALSE(sheet.isEmpty()) << output.toStdString();
    EXPECT_TRUE(output.contains("message: 系统已自动生成损溢单号 [" + sheet + "] 本次盘点结束!")) << output.toStdString();
    EXPECT_EQ(scalar("SELECT NOTE FROM d8301 WHERE NOID='" + sheet + "'"), "由盘点录入汇总自动生成");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8301A WHERE NOID='" + sheet + "'"), "1");
    EXPECT_EQ(scalar("SELECT S0 FROM d8301A WHERE NOID='" + sheet + "'"), "-1");
    EXPECT_EQ(scalar("SELECT MONEY FROM d8301A WHERE NOID='" + sheet + "'"), "-30");
    // Both sheets are closed and name it; the stock is what was counted.
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8300 WHERE CK_ID='PD' AND T=1 AND D8301NOID='" + sheet + "'"), "2");
    EXPECT_EQ(scalar("SELECT K0 FROM d1802 WHERE WL_ID='PD100Q1' AND CK_ID='PD'"), "4");
    EXPECT_EQ(scalar("SELECT K1 FROM d1802 WHERE WL_ID='PD100Q1' AND CK_ID='PD'"), "3");
    // The summarised sheets show so in the list.
    EXPECT_TRUE(output.contains("已汇总")) << output.toStdString();
    EXPECT_FALSE(output.contains("error:")) << output.toStdString();
}

}  // namespace
