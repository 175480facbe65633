// The scripts of host/scripts for purchase returns, sales tickets and sales returns, run step by
// step through the headless script runner on the demo shop: each step must run without an
// error, and the database must show the document and the stock after it.
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
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

struct ScriptKind {
    const char* script;  // host/scripts/{script}.qxs
    const char* head;    // "D8102"
    const char* caption;
    int sign;  // stock change per piece: -1 out of the warehouse, +1 back into it
};

class DocumentScriptTest : public ::testing::TestWithParam<ScriptKind> {
protected:
    static void SetUpTestSuite() {
        demo = new QTemporaryDir;
        qx::demo::createDemoDatabase(demo->filePath("demo.db").toStdString(),
                                     {.endDate = "2026-06-29"});
    }
    static void TearDownTestSuite() {
        delete demo;
        demo = nullptr;
    }
    void SetUp() override {
        ResetGlobals();
        path = dir.filePath("shop.db");
        ASSERT_TRUE(QFile::copy(demo->filePath("demo.db"), path));
        qx::ui::setToday(QDate(2026, 6, 30));
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path.toStdString(), false));
        qx::dataop::setDatabase(db);
        window = std::make_unique<qx::host::MainWindow>(&QXProc2, path);
        window->resize(1280, 800);
        window->show();
        loadSteps();
    }
    void TearDown() override {
        window.reset();
        qx::dataop::setDatabase(nullptr);
        qx::ui::setToday(QDate());
        ResetGlobals();
    }

    // The script's parts: what comes before the first "# step:" line, then each step by name.
    void loadSteps() {
        QFile file(QString::fromUtf8(qgetenv("QXCK_SOURCE_DIR")) + "/host/scripts/" +
                   GetParam().script + ".qxs");
        ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text))
            << file.fileName().toStdString();
        QString name = "start";
        for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
            if (line.startsWith("# step:")) {
                name = line.mid(7).trimmed();
                order << name;
            }
            steps[name] += line + "\n";
        }
    }

    QString run(const QString& step) {
        QString output;
        QTextStream out(&output);
        qx::host::ScriptRunner runner(*window, *db, out);
        const int rc = runner.run(qx::host::parseScript(steps.value(step)));
        out.flush();
        EXPECT_EQ(rc, 0) << step.toStdString() << "\n" << output.toStdString();
        EXPECT_FALSE(output.contains("error:")) << output.toStdString();
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
    int stock(const QString& sku) {
        return scalar("SELECT KC FROM d1802 WHERE WL_ID='" + sku + "' AND CK_ID='ZC'").toInt();
    }
    QString noteCondition() const {
        return QString(" WHERE NOTE='脚本") + GetParam().caption + " O''Neil'";
    }

    static QTemporaryDir* demo;
    QTemporaryDir dir;
    QString path;
    std::shared_ptr<qx::db::Database> db;
    std::unique_ptr<qx::host::MainWindow> window;
    QMap<QString, QString> steps;
    QStringList order;
};

QTemporaryDir* DocumentScriptTest::demo = nullptr;

TEST_P(DocumentScriptTest, TheTypicalRequestRunsStepByStep) {
    const ScriptKind& k = GetParam();
    const QString head = k.head;
    ASSERT_EQ(order, QStringList({"add", "list", "edit", "delete"}));
    const int first = stock("BL2508000302"), second = stock("BL2508000208");
    run("start");

    run("add");
    const QString noid = scalar("SELECT NOID FROM " + head + noteCondition());
    ASSERT_FALSE(noid.isEmpty());
    EXPECT_EQ(scalar("SELECT CK_ID FROM " + head + " WHERE NOID='" + noid + "'"), "ZC");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM " + head + "A WHERE NOID='" + noid + "'"), "2");
    EXPECT_EQ(stock("BL2508000302"), first + k.sign * 3);
    EXPECT_EQ(stock("BL2508000208"), second + k.sign * 1);
    // The cost of every line is its style's.
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM " + head +
                     "A L INNER JOIN D1800 M ON L.K_ID=M.K_ID WHERE L.NOID='" + noid +
                     "' AND L.DJ=M.DJ AND L.DJ>0"),
              "2");

    const QString listed = run("list");
    EXPECT_TRUE(listed.contains("BL25080003")) << listed.toStdString();

    run("edit");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM " + head + "A WHERE NOID='" + noid + "'"), "1");
    EXPECT_EQ(scalar("SELECT S0 FROM " + head + "A WHERE NOID='" + noid + "'"), "4");
    EXPECT_EQ(stock("BL2508000302"), first + k.sign * 5);
    EXPECT_EQ(stock("BL2508000208"), second);

    run("delete");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM " + head + noteCondition()), "0");
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM " + head + "A WHERE NOID='" + noid + "'"), "0");
    EXPECT_EQ(stock("BL2508000302"), first);
    EXPECT_EQ(stock("BL2508000208"), second);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DocumentScriptTest,
                         ::testing::Values(ScriptKind{"purchase_return", "D8102", "采购退货", -1},
                                           ScriptKind{"sales_ticket", "D8201", "销售开单", -1},
                                           ScriptKind{"sales_return", "D8202", "销售退货", +1}),
                         [](const auto& info) { return std::string(info.param.script); });

}  // namespace
