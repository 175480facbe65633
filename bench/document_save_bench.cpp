// What saving a document costs beside the inserts it contains: a purchase receipt of 500 lines
// saved through its entry screen (line check, the batch built from the kind's templates, one
// ExecSql through the translator, the completion statements, posting by the database) against
// the same head and 500 line INSERTs run as hand-written SQLite in one transaction on the same
// shop. Both post stock through the same triggers; each run's receipt is deleted afterwards,
// outside the timing. Data: a scale-1 demo shop made once in the temp folder.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "db/sqlite/SqliteDatabase.h"
#include "db/tools/DemoData.h"
#include "documents/purchase/Frmqxck201.h"
#include "documents/purchase/Frmqxck201_1.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace {

constexpr int kLines = 500;

std::string shopPath() {
    const auto path = (std::filesystem::temp_directory_path() / "qxck-bench-save-scale1.db").string();
    if (!std::filesystem::exists(path)) {
        qx::demo::Options options;
        options.scale = 1;
        options.seed = 3;
        options.endDate = "2026-06-30";
        qx::demo::createDemoDatabase(path, options);
    }
    return path;
}

struct Shop {
    std::shared_ptr<qx::db::Database> db;
    std::vector<std::pair<std::string, std::string>> skus;  // style, colour
};

Shop& shop() {
    static Shop s = [] {
        Shop out;
        out.db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(shopPath()));
        const auto rows = out.db->open("SELECT TOP " + std::to_string(kLines) +
                                       " K_ID, COL_ID FROM D1801 ORDER BY WL_ID");
        for (const auto& r : rows.rows)
            out.skus.emplace_back(std::get<std::string>(r[0]), std::get<std::string>(r[1]));
        if (out.skus.size() < kLines) throw std::runtime_error("the demo shop has too few SKUs");
        qx::dataop::setDatabase(out.db);
        G_UserId = "admin";
        G_UserName = "admin";
        G_ckid = "ZC";
        G_SKSTR = "1";
        return out;
    }();
    return s;
}

void removeReceipt(const std::string& noid) { shop().db->execute("delete from d8101 Where NOID='" + noid + "'"); }

// The entry screen of a new receipt with its lines typed in (outside the timing).
std::unique_ptr<TQXCK201_1> receiptOf500Lines(TClientDataSet& listRow) {
    auto entry = std::make_unique<TQXCK201_1>(nullptr);
    entry->FuncNo = "201";
    TBodyParams params;
    params.HeadSql = TQXCK201::HeadQuery();
    params.BodySql = TQXCK201::Description().lineQuery;
    params.MoneyFields = "money,smoney";
    params.PriceFields = "dj,sj";
    params.QtyFields = "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT";
    params.WlField = "wl_id";
    params.KeyField = "NOID";
    entry->SetBodyParam(params);
    opensql(&listRow, "201", params.HeadSql + " WHERE 1=0");
    entry->InitForm("Add", &listRow, true, true, false, 0);
    entry->KH_GYS_ID->setText(QString::fromStdString(std::get<std::string>(
        shop().db->open("SELECT TOP 1 KH_GYS_ID FROM d1103 ORDER BY KH_GYS_ID").rows[0][0])));
    TClientDataSet* lines = entry->AdoQry_Main;
    for (const auto& [style, colour] : shop().skus) {
        lines->Append();
        lines->FieldByName("K_ID")->SetAsString(QString::fromStdString(style));
        lines->FieldByName("COL_ID")->SetAsString(QString::fromStdString(colour));
        lines->FieldByName("S0")->SetAsInteger(2);
        lines->FieldByName("S1")->SetAsInteger(3);
        lines->FieldByName("STOT")->SetAsInteger(5);
        lines->FieldByName("sj")->SetAsFloat(40);
        lines->FieldByName("smoney")->SetAsFloat(200);
        lines->Post();
    }
    return entry;
}

void SaveThroughTheEntryScreen(benchmark::State& state) {
    shop();
    for (auto _ : state) {
        state.PauseTiming();
        TClientDataSet listRow;
        auto entry = receiptOf500Lines(listRow);
        state.ResumeTiming();
        if (!entry->SaveDocument()) state.SkipWithError("the save was refused");
        state.PauseTiming();
        removeReceipt(entry->Edit1->text().toStdString());
        entry.reset();
        state.ResumeTiming();
    }
    state.counters["lines"] = kLines;
}
BENCHMARK(SaveThroughTheEntryScreen)->Unit(benchmark::kMillisecond)->UseRealTime();

void BareInserts(benchmark::State& state) {
    sqlite3* db = dynamic_cast<qx::db::SqliteDatabase&>(*shop().db).handle();
    int n = 0;
    for (auto _ : state) {
        const std::string noid = "BARE" + std::to_string(++n);
        std::string sql = "BEGIN IMMEDIATE;INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, "
                          "USER_ID, NOTE,TOLMONEY) VALUES ('1','" + noid + "','G001','ZC','2026-06-30','','','','1','admin','','100000');";
        for (const auto& [style, colour] : shop().skus)
            sql += "INSERT INTO D8101A VALUES ('" + noid + "','" + style + colour + "','" + style + "','" + colour +
                   "','ZC',2,3,0,0,0,0,0,0,0,0,40,200,'');";
        sql += "COMMIT;";
        char* error = nullptr;
        if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
            state.SkipWithError(error ? error : "insert failed");
            sqlite3_free(error);
            sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
            break;
        }
        state.PauseTiming();
        removeReceipt(noid);
        state.ResumeTiming();
    }
    state.counters["lines"] = kLines;
}
BENCHMARK(BareInserts)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qx::ui::ScopedScriptedSink sink;  // no message box ever waits for a click
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
