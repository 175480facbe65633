// Data operations over the shop database.
//
// Maintenance batches. The database runs every ExecSql batch with the negative-stock and
// closed-period guards on, except the maintenance batches, which rewrite stock and documents on
// purpose. They are recognised from the function code and the mode the screen passes:
//   - function "932" (system initialisation: wipe and import), any mode;
//   - function "901" with mode "B": the initialisation dialog's own batches (it passes the
//     settings' code; the settings dialog itself saves with mode "E");
//   - mode MaintenanceMode::ClearDocuments ("ClearDocuments": clearing documents).
// Every other batch (document saves, deletes, settings) is guarded. The quantity balance repair
// is guarded too: a recomputed negative stock of goods that may not go negative refuses it (the
// closed-period guard concerns document rows only, which the repair does not touch).
#include "framework/U_dataop.h"

#include <mutex>

#include "db/Database.h"
#include "framework/DataSet.h"
#include "framework/U_function.h"

namespace qx::dataop {
namespace {
std::shared_ptr<qx::db::Database>& currentDatabase() {
    static std::shared_ptr<qx::db::Database> db;
    return db;
}
Observer& currentObserver() {
    static Observer observer;
    return observer;
}

qx::db::Database& requireDatabase() {
    auto& db = currentDatabase();
    if (!db) throw EDatabaseError(QObject::tr("没有打开的数据库"));
    return *db;
}

void notify(Call::Kind kind, const QString& funcNo, const QString& sql, const QString& noid = {},
            const QString& mode = {}) {
    if (auto& observer = currentObserver()) observer(Call{kind, funcNo, sql, noid, mode});
}

EDatabaseError wrap(const qx::db::Error& e) {
    return EDatabaseError(QString::fromStdString(e.what()), QString::fromStdString(e.statement()));
}
}  // namespace

void setDatabase(std::shared_ptr<qx::db::Database> database) { currentDatabase() = std::move(database); }
std::shared_ptr<qx::db::Database> database() { return currentDatabase(); }
void setObserver(Observer observer) { currentObserver() = std::move(observer); }

bool isMaintenanceBatch(const QString& funcNo, const QString& mode) {
    return funcNo.trimmed() == SystemInitialisationFunction ||
           (funcNo.trimmed() == SystemSettingsFunction && mode == SystemInitialisationMode) ||
           mode.compare(MaintenanceMode::ClearDocuments, Qt::CaseInsensitive) == 0;
}

}  // namespace qx::dataop

using namespace qx::dataop;

void opensql(TClientDataSet* ds, WideString FuncNo, WideString sql, const int, const int, WideString,
             WideString, bool, AnsiString) {
    notify(Call::Kind::OpenSql, FuncNo, sql);
    if (!ds) throw EDatabaseError(QObject::tr("opensql: 没有数据集"));
    qx::db::ResultSet result;
    try {
        result = requireDatabase().open(sql.toStdString());
    } catch (const qx::db::Error& e) {
        throw wrap(e);
    }
    ds->LoadFromResult(result);
}

namespace {
// The answer to "may the stocktake of this sheet's warehouse be summarised now?": "Y", or why not.
AnsiString stocktakePermission(const QString& sheet) {
    try {
        qx::db::Database& db = requireDatabase();
        const auto found = db.open("SELECT CK_ID FROM d8300 WHERE NOID=" + QuotedStr(sheet).toStdString());
        if (found.rows.empty() || found.rows[0].empty()) return "盘点录入单 " + sheet + " 不存在,不能汇总!";
        const auto* text = std::get_if<std::string>(&found.rows[0][0]);
        const std::string warehouse = text ? *text : std::string();
        if (db.maySummariseStocktake(warehouse)) return "Y";
        return "仓库 " + QString::fromStdString(warehouse) +
               " 还有在途的调拨单(已调出未点收),账面库存不准,暂不能汇总盘点!请先完成调拨到货点收。";
    } catch (const qx::db::Error& e) {
        throw wrap(e);
    }
}
}  // namespace

AnsiString ExecSql(WideString FuncNo, WideString noid, WideString mode, WideString batch, unsigned short,
                   bool, bool, bool, bool) {
    notify(Call::Kind::ExecSql, FuncNo, batch, noid, mode);
    if (mode == qx::dataop::StocktakePermissionMode) return stocktakePermission(noid);
    qx::db::ExecOptions options;
    options.maintenance = isMaintenanceBatch(FuncNo, mode);
    try {
        requireDatabase().execute(batch.toStdString(), options);
    } catch (const qx::db::Error& e) {
        throw wrap(e);
    }
    return "Y";
}

AnsiString GetNOID(AnsiString FuncNo, AnsiString, int) {
    notify(Call::Kind::GetNOID, FuncNo, {});
    try {
        return QString::fromStdString(requireDatabase().nextDocumentNumber(FuncNo.toStdString()));
    } catch (const qx::db::Error& e) {
        throw wrap(e);
    }
}
