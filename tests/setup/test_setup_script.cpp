// The three setup functions from the host's menu through the headless script runner on the demo
// shop: settings saved, the sample goods sheet imported in five steps, a promotion scheme saved.
#include <gtest/gtest.h>

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

class SetupScriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        path = dir.filePath("demo.db");
        qx::demo::createDemoDatabase(path.toStdString(), {.endDate = "2026-06-29"});
        qx::ui::setToday(QDate(2026, 6, 30));
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
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
    QString run(const QString& script) {
        QString output;
        QTextStream out(&output);
        qx::host::ScriptRunner runner(*window, *db, out);
        const int rc = runner.run(qx::host::parseScript(script));
        out.flush();
        EXPECT_EQ(rc, 0) << output.toStdString();
        return output;
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

TEST_F(SetupScriptTest, SettingsImportAndPromotionFromTheMenu) {
    run("login admin admin\n");
    QString out = run("click func901\nexpect screen 系统设置\nset co \"脚本 O'Neil 服饰\"\ncheck AllowNegative\n"
                      "click btn_ok\ndump messages\n");
    EXPECT_EQ(scalar("SELECT CO FROM sys_co"), "脚本 O'Neil 服饰") << out.toStdString();
    EXPECT_EQ(scalar("SELECT PARAM FROM sys_co").split(',').value(28), "0");

    const QString sample = QString::fromLocal8Bit(qgetenv("QXCK_SOURCE_DIR")) + "/setup/templates/sample_goods.xlsx";
    out = run("click func932\nexpect screen 系统初始化\nset FileName0 \"" + sample +
              "\"\nclick btn_step2\nexpect screen \"导入预览 - 商品资料\"\nclick btn_ok\nclick btn_step3\n"
              "click btn_step4\nclick btn_step5\nexpect screen 导入\nclick btn_ok\n"
              "expect message 系统已同步款号颜色组资料!\nclick btn_cancel\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d1800"), "5") << out.toStdString();
    EXPECT_EQ(scalar("SELECT SUM(KC) FROM d1802"), "108");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d8101"), "0");

    out = run("click func704\nexpect screen 促销方案\ngrid DBGridEh\nlocate ck_name 总仓\nclick Act_Modify\n"
              "expect screen 促销方案设定\ncheck T3\nset FA3 \"满300减50\"\nset F1_3 300\nset F2_3 abc\n"
              "click btn_ok\nexpect message 方案设定已保存!\nclick btn_cancel\n");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM d704 INNER JOIN d1007 ON d704.CK_ID = d1007.CK_ID WHERE CK_NAME='总仓'"), "11") << out.toStdString();
    EXPECT_EQ(scalar("SELECT FA FROM d704 WHERE I=3 AND CK_ID='02'"), "满300减50");
    EXPECT_EQ(scalar("SELECT F2 FROM d704 WHERE I=3 AND CK_ID='02'"), "0");
}

}  // namespace
