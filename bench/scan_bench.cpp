// Scanning into a count sheet: the time one scanned barcode takes to land in the line grid (the
// SKU's line found or made, one more piece of the size, the total and the grid updated), on a
// sheet that already holds the lines of earlier scans.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDate>
#include <QTemporaryDir>

#include "db/Database.h"
#include "documents/stocktake/Frmqxck235.h"
#include "documents/stocktake/Frmqxck235_1.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace {

struct Shop {
    QTemporaryDir dir;
    std::shared_ptr<qx::db::Database> db;
    std::vector<QString> codes;

    Shop() {
        db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(dir.filePath("shop.db").toStdString(), true));
        auto exec = [this](const QString& sql) { db->execute(sql.toStdString()); };
        exec("INSERT INTO sys_user (USER_ID, USER_NAME) VALUES ('U1', '盘点员')");
        exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('01', '总仓')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3, M4) VALUES ('01', '服装', 'S', 'M', 'L', 'XL', '2XL')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01', '红色')");
        // 50 styles in one colour, a barcode for each of their five sizes: 250 codes.
        for (int s = 0; s < 50; ++s) {
            const QString style = QString("K%1").arg(s, 3, 10, QChar('0'));
            exec("INSERT INTO d1800 (K_ID, M_ID, WL_NAME, DW_NAME, DJ, TMI, CHECK_KC) VALUES ('" + style +
                 "', '01', '衬衫', '件', 10, 1, 0)");
            exec("INSERT INTO d1804 VALUES ('" + style + "', '01')");
            exec("INSERT INTO D1801 VALUES ('" + style + "01','" + style + "','01')");
            for (int m = 0; m < 5; ++m) {
                const QString code = "69" + style + QString::number(m);
                exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('" + style + "01','" + QString::number(m) +
                     "','" + style + "','" + code + "')");
                codes.push_back(code);
            }
        }
        qx::dataop::setDatabase(db);
    }
    ~Shop() { qx::dataop::setDatabase(nullptr); }
};

void BM_ScanIntoACountSheet(benchmark::State& state) {
    Shop shop;
    ResetGlobals();
    G_UserId = "U1";
    G_ckid = "01";
    G_CM = 4;
    qx::ui::ScopedScriptedSink sink;
    qx::ui::setScreenPresenter([](TFrm_Base* screen) { screen->show(); });
    qx::ui::setModalHandler([](TFrm_Base* dialog) {
        auto* filter = dynamic_cast<TFrm_Sys_Filter*>(dialog);
        if (filter) filter->btn_ok->click();
        return dialog->ModalResult();
    });
    auto* list = new TQXCK235(nullptr);
    Trecord rec;
    rec.FuncCode = 235;
    list->Tag = 235;
    list->InitForm(rec);
    list->Act_Add->trigger();
    TQXCK235_1* e = list->entry();
    size_t i = 0;
    for (auto _ : state) {
        e->ScanCode(shop.codes[i % shop.codes.size()]);
        ++i;
    }
    state.counters["lines"] = e->AdoQry_Main->RecordCount();
    e->Modified = false;
    e->AdoQry_Main->EmptyDataSet();
    delete list;
    qx::ui::setModalHandler(nullptr);
    qx::ui::setScreenPresenter(nullptr);
}
BENCHMARK(BM_ScanIntoACountSheet)->Iterations(500)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
