#pragma once
// Data operations: every statement a screen sends passes through here, to the open shop
// database. One observer may watch every call (tests record the exact statement texts).
#include <functional>
#include <memory>

#include "framework/Export.h"
#include "framework/Types.h"

namespace qx::db {
class Database;
}
class TClientDataSet;

// Loads the whole result of `sql` into ds (replacing what it held), positioned on the first row;
// the result's column names become the dataset's field names. Throws EDatabaseError.
QX_FRAMEWORK_EXPORT void opensql(TClientDataSet* ds, WideString FuncNo, WideString sql,
                                 const int = 0, const int = 0, WideString = {}, WideString = {},
                                 bool = false, AnsiString = "1");

// Runs the batch as one unit (maintenance batches: see qx::dataop::isMaintenanceBatch). Returns "Y" on success; on failure throws EDatabaseError (the
// calling operation ends, the screen keeps its input).
QX_FRAMEWORK_EXPORT AnsiString ExecSql(WideString FuncNo, WideString noid, WideString mode,
                                       WideString batch, unsigned short = 65535, bool = false,
                                       bool = true, bool = false, bool = true);

// A new document number for the function (at most 12 characters, never returned before).
QX_FRAMEWORK_EXPORT AnsiString GetNOID(AnsiString FuncNo, AnsiString = {}, int = 0);

namespace qx::dataop {

// One call as the observer sees it.
struct Call {
    enum class Kind { OpenSql, ExecSql, GetNOID } kind;
    QString funcNo;
    QString sql;   // the statement or batch text exactly as the screen built it
    QString noid;  // ExecSql's document number
    QString mode;  // ExecSql's edit mode
};
using Observer = std::function<void(const Call&)>;

// Maintenance batches run with the database's negative-stock and closed-period guards off:
// every batch of function "932" (system initialisation), and batches whose mode is one of these.
// The quantity balance repair is not one of them: it runs guarded.
inline constexpr const char* SystemInitialisationFunction = "932";
// The initialisation dialog runs its batches under the settings' code with this mode.
inline constexpr const char* SystemSettingsFunction = "901";
inline constexpr const char* SystemInitialisationMode = "B";
namespace MaintenanceMode {
inline constexpr const char* ClearDocuments = "ClearDocuments";  // clearing documents
}  // namespace MaintenanceMode
// ExecSql with this mode and a stocktake sheet's number runs no batch: it answers whether the
// sheet's warehouse may be summarised now ("Y"), or says why not (a transfer from or to the
// warehouse is still in transit).
inline constexpr const char* StocktakePermissionMode = "T";
QX_FRAMEWORK_EXPORT bool isMaintenanceBatch(const QString& funcNo, const QString& mode);

QX_FRAMEWORK_EXPORT void setDatabase(std::shared_ptr<qx::db::Database> database);
QX_FRAMEWORK_EXPORT std::shared_ptr<qx::db::Database> database();
// Installs (or with an empty function removes) the one observer of every call.
QX_FRAMEWORK_EXPORT void setObserver(Observer observer);

}  // namespace qx::dataop
