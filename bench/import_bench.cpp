// The goods import of a large sheet, phase by phase: read, check, upload, generate (the whole
// initialisation batch) and colour groups, on a fresh shop database.
//   bench_import SHEET.xlsx|.xls|.csv [DB_FILE]
// A sheet of N rows: /usr/bin/python3 setup/templates/make_templates.py --rows N FILE.xlsx
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

#include "db/Database.h"
#include "framework/U_dataop.h"
#include "framework/U_glo.h"
#include "setup/Frmqxcks01.h"
#include "setup/Frmqxcks01_1.h"
#include "setup/ImportSheets.h"
#include "setup/SheetReader.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_import SHEET [DB_FILE]\n");
        return 2;
    }
    QTemporaryDir dir;
    const std::string path = argc > 2 ? argv[2] : dir.filePath("shop.db").toStdString();
    std::shared_ptr<qx::db::Database> db(qx::db::openSqlite(path, true));
    db->execute("INSERT INTO sys_co (CO, PARAM) VALUES ('bench', '')");
    qx::dataop::setDatabase(db);
    G_UserId = "admin";
    using namespace qx::setup;
    QElapsedTimer all, step;
    all.start();
    const auto phase = [&](const char* name) {
        std::printf("%-28s %8.2f s\n", name, double(step.restart()) / 1000.0);
        std::fflush(stdout);
    };
    step.start();
    const SheetRows sheet = readSheet(QString::fromLocal8Bit(argv[1]));
    phase("read");
    const ScanResult scan = scanSheet(goodsSheet(), sheet);
    const std::vector<int> rows = acceptedRows(scan, true);
    phase("check");
    execInitialisation(TQXCKS01::UploadBatch(scan, rows));
    phase("upload");
    TQXCKS01_1 confirm(nullptr);
    confirm.InitForm();
    execInitialisation(confirm.GenerationBatch());
    phase("generate");
    const AnsiString groups = confirm.ColourGroupBatch();
    if (!groups.isEmpty()) execInitialisation(groups);
    phase("colour groups");
    const auto count = [&](const char* sql) {
        const auto r = db->open(sql);
        return r.rows.empty() ? 0LL : std::get<std::int64_t>(r.rows[0][0]);
    };
    std::printf("rows %zu (bad %zu), styles %lld, SKUs %lld, stock rows %lld\n", scan.rows.size(), scan.badRows.size(),
                count("SELECT COUNT(*) FROM d1800"), count("SELECT COUNT(*) FROM d1801"),
                count("SELECT COUNT(*) FROM d1802"));
    std::printf("%-28s %8.2f s\n", "total", double(all.elapsed()) / 1000.0);
    qx::dataop::setDatabase(nullptr);
    return 0;
}
