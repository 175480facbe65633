#include "db/sqlite/SqliteDatabase.h"


#include <sqlite3.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <cctype>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <vector>

#include "db/BatchStatements.h"
#include "db/Progress.h"
#include "db/procedures/ClosingSnapshots.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/Procedures.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/StockRecount.h"
#include "db/tsql/SqliteCatalog.h"

namespace qx::db {
namespace {

constexpr int kBusyTimeoutMs = 15000;
constexpr std::size_t kStatementCacheLimit = 512;

FieldType fieldTypeOf(tsql::SqlType type) {
    switch (type) {
    case tsql::SqlType::Integer: return FieldType::Integer;
    case tsql::SqlType::Real: return FieldType::Float;
    case tsql::SqlType::Text: return FieldType::Text;
    case tsql::SqlType::DateTime: return FieldType::DateTime;
    default: return FieldType::Unknown;
    }
}

int declaredSize(std::string_view declared) {
    auto open = declared.find('(');
    if (open == std::string_view::npos) return 0;
    int size = 0;
    for (auto i = open + 1; i < declared.size() && std::isdigit(static_cast<unsigned char>(declared[i])); ++i)
        size = size * 10 + (declared[i] - '0');
    return size;
}

GuardState& guardOf(sqlite3_context* context) { return *static_cast<GuardState*>(sqlite3_user_data(context)); }

std::string textArg(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text ? text : "";
}

// qx_guarded(): 1 unless the running batch is a maintenance batch.
void guardedFunction(sqlite3_context* context, int, sqlite3_value**) {
    sqlite3_result_int(context, guardOf(context).maintenance ? 0 : 1);
}

// qx_stock_short(wl_id, ck_id): a checked stock row went below zero; the batch end decides.
void stockShortFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    auto& guard = guardOf(context);
    if (!guard.maintenance) guard.shortRows.emplace(textArg(argv[0]), textArg(argv[1]));
    sqlite3_result_null(context);
}

std::string dayOf(const std::string& date) { return date.substr(0, std::min<std::size_t>(10, date.size())); }

// What a clerk calls the document kept in a head table.
std::string documentKindName(const std::string& headTable) {
    for (const auto& [table, name] : posting::documentKindNames())
        if (strcasecmp(table, headTable.c_str()) == 0) return name;
    return "单据 " + headTable;
}

// qx_closed_period(table, noid, date, end): refuses a change to a document of a closed period,
// naming the document as the clerk knows it.
void closedPeriodFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    const std::string message = documentKindName(textArg(argv[0])) + " " + textArg(argv[1]) + " 的日期 " + dayOf(textArg(argv[2])) +
                                " 属于已结账期间（" + dayOf(textArg(argv[3])) +
                                " 之前），不能新增、修改或删除该期间的单据";
    sqlite3_result_error(context, message.c_str(), -1);
}

// Every few thousand steps of the virtual machine: may the running operation go on? Either
// the operation's own progress callback or the screen's cancel button may stop it.
int progressHandler(void*) { return progressContinues() ? 0 : 1; }
constexpr int kProgressSteps = 20000;

// A column's value read once through its sqlite3_value: the sqlite3_column_* calls would each
// look the column up again. The value is "unprotected", which only matters when another thread
// uses the connection; one connection is used by one thread (SQLITE_OPEN_NOMUTEX).
// The value is built in place at the row's end.
void appendValueAt(std::vector<Value>& row, sqlite3_stmt* stmt, int i) {
    sqlite3_value* value = sqlite3_column_value(stmt, i);
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER: row.emplace_back(std::in_place_type<std::int64_t>, sqlite3_value_int64(value)); break;
    case SQLITE_FLOAT: row.emplace_back(std::in_place_type<double>, sqlite3_value_double(value)); break;
    case SQLITE_NULL: row.emplace_back(); break;
    default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        row.emplace_back(std::in_place_type<std::string>, text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(value)));
    }
    }
}

// Expression columns have no declared type: take it from their values. The first value that is
// not NULL decides between text and number; a number column is Float as soon as one value has a
// fraction, so that a first row's whole 0 (a block that has no amount) does not make an
// amount column integer.
void typeUntypedColumns(ResultSet& result) {
    for (std::size_t c = 0; c < result.columns.size(); ++c) {
        auto& column = result.columns[c];
        if (column.type != FieldType::Unknown) continue;
        for (const auto& row : result.rows) {
            const Value& v = row[c];
            if (std::holds_alternative<std::string>(v)) {
                if (column.type == FieldType::Unknown) column.type = FieldType::Text;
                if (column.type == FieldType::Text) break;
            } else if (std::holds_alternative<double>(v)) {
                column.type = FieldType::Float;
                break;
            } else if (std::holds_alternative<std::int64_t>(v)) {
                column.type = FieldType::Integer;
            }
        }
    }
}

std::string currentYearMonth() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02d%02d", local.tm_year % 100, local.tm_mon + 1);
    return buffer;
}

}  // namespace

// One transaction around a batch: BEGIN (IMMEDIATE for writers) or, when the caller already
// holds one, a savepoint; rolled back unless committed.
class SqliteDatabase::Transaction {
public:
    Transaction(SqliteDatabase& db, bool immediate) : db_(db) {
        nested_ = sqlite3_get_autocommit(db_.db_) == 0;
        db_.runNative(nested_ ? "SAVEPOINT qx_batch" : (immediate ? "BEGIN IMMEDIATE" : "BEGIN"));
    }
    ~Transaction() {
        if (done_) return;
        if (nested_) {
            sqlite3_exec(db_.db_, "ROLLBACK TO qx_batch; RELEASE qx_batch", nullptr, nullptr, nullptr);
        } else if (sqlite3_get_autocommit(db_.db_) == 0) {
            sqlite3_exec(db_.db_, "ROLLBACK", nullptr, nullptr, nullptr);
        }
    }
    void commit() {
        db_.runNative(nested_ ? "RELEASE qx_batch" : "COMMIT");
        done_ = true;
    }

private:
    SqliteDatabase& db_;
    bool nested_ = false;
    bool done_ = false;
};

SqliteDatabase::SqliteDatabase(const std::string& path, bool create) : path_(path) {
    if (!create && !std::filesystem::exists(path)) throw Error("database file not found: " + path);
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0) | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(path.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
        std::string message = db_ ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        db_ = nullptr;
        throw Error("cannot open " + path + ": " + message);
    }
    try {
        configureConnection();
        const int version = schemaVersion();
        if (version == 0) {
            if (!create) throw Error(path + " is not a shop database (no tables)");
            createSchema();
        } else if (version > kSchemaVersion) {
            throw Error(newerSchemaMessage(path, version));
        } else if (version < kSchemaVersion) {
            renewGeneratedObjects();
        }
    } catch (...) {
        for (auto& [sql, stmt] : cache_) sqlite3_finalize(stmt);
        cache_.clear();
        catalog_.reset();
        sqlite3_close(db_);
        db_ = nullptr;
        throw;
    }
}

SqliteDatabase::~SqliteDatabase() {
    for (auto& [sql, stmt] : cache_) sqlite3_finalize(stmt);
    catalog_.reset();  // it keeps statements of its own on the connection
    sqlite3_close(db_);
}

void SqliteDatabase::configureConnection() {
    sqlite3_busy_timeout(db_, kBusyTimeoutMs);
    sqlite3_extended_result_codes(db_, 1);
    runtime_ = &tsql::installSqliteRuntime(db_);
    const int utf8 = SQLITE_UTF8;
    sqlite3_create_function(db_, "qx_guarded", 0, utf8, &guard_, guardedFunction, nullptr, nullptr);
    sqlite3_create_function(db_, "qx_stock_short", 2, utf8, &guard_, stockShortFunction, nullptr, nullptr);
    sqlite3_create_function(db_, "qx_closed_period", 4, utf8, &guard_, closedPeriodFunction, nullptr, nullptr);
    sqlite3_progress_handler(db_, kProgressSteps, progressHandler, nullptr);
    registerStockRecount(db_);
    runNative("PRAGMA journal_mode=WAL");
    // WAL with synchronous=NORMAL: a commit is in the log when it returns, so an acknowledged
    // save survives a killed or crashed process; a power cut may take back the last commits
    // before a checkpoint, whole, never a part of one (see db/sqlite/README.md).
    runNative("PRAGMA synchronous=NORMAL");
    runNative("PRAGMA foreign_keys=OFF");
    catalog_ = std::make_unique<tsql::SqliteCatalog>(db_);
}

int SqliteDatabase::schemaVersion() {
    auto result = stepNative("PRAGMA user_version", true, nullptr);
    return result.rows.empty() ? 0 : static_cast<int>(std::get<std::int64_t>(result.rows[0][0]));
}


// A shop made by an earlier version: its views and triggers are dropped and made again from
// their sources (the posting rules, the module's views), and the SKU completion added where it is
// missing, in one transaction. Tables and rows stay as they are. A shop with the current mark is
// not looked at.
void SqliteDatabase::renewGeneratedObjects() {
    Transaction transaction(*this, true);
    if (schemaVersion() >= kSchemaVersion) return;  // another connection renewed them meanwhile
    addSkuCompletion();  // first: it also writes the SKU rows the old lines lack
    auto triggers = posting::sqliteTriggerStatements();
    for (auto& statement : procedures::closingSnapshotStatements()) triggers.push_back(std::move(statement));
    std::vector<std::string> views = {posting::tsqlMovementViewStatement(), posting::sqliteBalanceViewStatement()};
    for (const auto& file : viewDefinitions()) views.push_back(file.text);
    for (const auto& sql : views)
        for (const auto& name : createdNames(sql, "VIEW")) runNative("DROP VIEW IF EXISTS \"" + name + "\"");
    for (const auto& sql : triggers)
        for (const auto& name : createdNames(sql, "TRIGGER")) runNative("DROP TRIGGER IF EXISTS \"" + name + "\"");
    runWithinTransaction(posting::tsqlMovementViewStatement());
    runNative(posting::sqliteBalanceViewStatement());
    for (const auto& file : viewDefinitions()) runWithinTransaction(file.text);
    for (const auto& trigger : triggers) runNative(trigger);
    runNative("PRAGMA user_version=" + std::to_string(kSchemaVersion));
    transaction.commit();
}

// Tables from their T-SQL definitions, then the views generated from the posting rules, the
// module's views, the rows a new shop starts with, and the posting and guard triggers; all in one
// transaction.
void SqliteDatabase::createSchema() {
    Transaction transaction(*this, true);
    for (const auto& file : tableDefinitions()) runWithinTransaction(file.text);
    runWithinTransaction(posting::tsqlMovementViewStatement());
    runNative(posting::sqliteBalanceViewStatement());
    for (const auto& file : viewDefinitions()) runWithinTransaction(file.text);
    for (const auto& file : seedRows()) runWithinTransaction(file.text);
    for (const auto& trigger : posting::sqliteTriggerStatements()) runNative(trigger);
    for (const auto& statement : procedures::closingSnapshotStatements()) runNative(statement);
    runNative("PRAGMA user_version=" + std::to_string(kSchemaVersion));
    transaction.commit();
}

// A shop made before document lines completed their SKU rows gets the triggers, and the SKU rows
// its existing lines lack, once: within the renewal of an older-mark shop (a savepoint of its
// transaction).
void SqliteDatabase::addSkuCompletion() {
    std::vector<const posting::SkuCompletion*> missing;
    for (const auto& completion : posting::skuCompletions())
        if (stepNative("SELECT 1 FROM sqlite_master WHERE type='trigger' AND name='" + completion.triggerName + "'", true, nullptr)
                .rows.empty())
            missing.push_back(&completion);
    if (missing.empty()) return;
    Transaction transaction(*this, true);
    for (const auto* completion : missing) {
        runNative(completion->sqliteTrigger);
        runNative(completion->backfill);
    }
    transaction.commit();
}

ResultSet SqliteDatabase::open(std::string_view tsqlBatch) {
    guard_.shortRows.clear();
    guard_.maintenance = false;
    Transaction transaction(*this, false);
    ResultSet result = runWithinTransaction(tsqlBatch);
    checkStockGuard();
    transaction.commit();
    return result;
}

void SqliteDatabase::execute(std::string_view tsqlBatch, const ExecOptions& options) {
    guard_.shortRows.clear();
    guard_.maintenance = options.maintenance;
    // Maintenance batches run as SQL Server does with ARITHABORT and ANSI_WARNINGS off: a
    // division by zero gives NULL (the initialisation's clearing divides by a just-zeroed price).
    runtime_->divideByZeroIsNull = options.maintenance;
    struct ResetMaintenance {
        GuardState& guard;
        tsql::SqliteRuntimeOptions& runtime;
        ~ResetMaintenance() {
            guard.maintenance = false;
            runtime.divideByZeroIsNull = false;
        }
    } reset{guard_, *runtime_};
    Transaction transaction(*this, true);
    runWithinTransaction(tsqlBatch);
    checkStockGuard();
    transaction.commit();
}

ResultSet SqliteDatabase::runWithinTransaction(std::string_view tsqlBatch) {
    return lastResultOfEach(tsqlBatch, [this](const tsql::Statement& statement, bool& produced) { return runStatement(statement, produced); });
}

ResultSet SqliteDatabase::runStatement(const tsql::Statement& statement, bool& produced) {
    if (statement.procedure) {
        produced = true;
        return callProcedure(*this, statement);
    }
    const auto sqls = tsql::emitSqlite(statement, *catalog_);
    ResultSet result;
    for (std::size_t i = 0; i < sqls.size(); ++i) {
        const bool collect = statement.returnsRows && i + 1 == sqls.size();
        ResultSet r = stepNative(sqls[i], collect, &statement);
        if (collect) {
            result = std::move(r);
            produced = true;
        }
    }
    return result;
}

sqlite3_stmt* SqliteDatabase::prepare(const std::string& sql, const tsql::Statement* origin) {
    if (auto it = cache_.find(sql); it != cache_.end()) return it->second;
    if (cache_.size() >= kStatementCacheLimit) {
        for (auto& [text, stmt] : cache_) sqlite3_finalize(stmt);
        cache_.clear();
    }
    sqlite3_stmt* stmt = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), static_cast<int>(sql.size()), &stmt, &tail) != SQLITE_OK)
        fail(sqlite3_errmsg(db_), origin);
    if (!stmt) return nullptr;  // only blanks or comments
    cache_.emplace(sql, stmt);
    return stmt;
}

ResultSet SqliteDatabase::stepNative(const std::string& sql, bool collect, const tsql::Statement* origin) {
    ResultSet result;
    sqlite3_stmt* stmt = prepare(sql, origin);
    if (!stmt) return result;
    struct Reset {
        sqlite3_stmt* stmt;
        ~Reset() { sqlite3_reset(stmt); }
    } reset{stmt};
    const int columns = sqlite3_column_count(stmt);
    if (collect) {
        for (int i = 0; i < columns; ++i) {
            const char* declared = sqlite3_column_decltype(stmt, i);
            const auto type = tsql::sqlTypeFromDeclaredType(declared ? declared : "");
            result.columns.push_back({sqlite3_column_name(stmt, i), fieldTypeOf(type), declared ? declaredSize(declared) : 0});
        }
    }
    for (;;) {
        const int rc = sqlite3_step(stmt);
        if (rc == SQLITE_DONE) break;
        if (rc != SQLITE_ROW) {
            std::string message = (rc & 0xff) == SQLITE_INTERRUPT ? kCancelledMessage : sqlite3_errmsg(db_);
            fail(message, origin);
        }
        if (!collect) continue;
        std::vector<Value> row;
        row.reserve(static_cast<std::size_t>(columns));
        for (int i = 0; i < columns; ++i) appendValueAt(row, stmt, i);
        result.rows.push_back(std::move(row));
    }
    if (collect) typeUntypedColumns(result);
    return result;
}

void SqliteDatabase::runNative(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        std::string text = message ? message : sqlite3_errmsg(db_);
        sqlite3_free(message);
        throw Error(text, sql);
    }
}

// A checked stock row (CHECK_KC = 1) that this batch drove below zero in any size and that is
// still below zero at the batch's end refuses the whole batch.
void SqliteDatabase::checkStockGuard() {
    if (guard_.maintenance || guard_.shortRows.empty()) return;
    const std::string sql =
        "SELECT 1 FROM d1802 WHERE WL_ID=?1 AND CK_ID=?2 AND CHECK_KC=1 AND (K0<0 OR K1<0 OR K2<0 OR K3<0 OR K4<0 OR "
        "K5<0 OR K6<0 OR K7<0 OR K8<0 OR K9<0)";
    sqlite3_stmt* stmt = prepare(sql, nullptr);
    auto rows = std::move(guard_.shortRows);
    guard_.shortRows.clear();
    for (const auto& [wl, ck] : rows) {
        sqlite3_bind_text(stmt, 1, wl.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(stmt, 2, ck.c_str(), -1, SQLITE_TRANSIENT);
        const int rc = sqlite3_step(stmt);
        sqlite3_reset(stmt);
        sqlite3_clear_bindings(stmt);
        if (rc == SQLITE_ROW) throw Error(posting::kStockShortMessage, "d1802 WL_ID=" + wl + " CK_ID=" + ck);
    }
}

namespace {

// SQLite's words for an unknown name, in SQL Server's.
std::string sqlServerMessage(const std::string& message) {
    static const std::pair<const char*, const char*> names[] = {{"no such column: ", "Invalid column name '"},
                                                                {"no such table: ", "Invalid object name '"}};
    for (const auto& [sqlite, sqlServer] : names)
        if (message.rfind(sqlite, 0) == 0) return sqlServer + message.substr(std::strlen(sqlite)) + "'.";
    if (message == "parser stack overflow" || message.rfind("Expression tree is too large", 0) == 0)
        return "the statement is nested too deeply for the database (" + message + ")";
    if (const auto at = message.find(" has no column named "); message.rfind("table ", 0) == 0 && at != std::string::npos)
        return "Invalid column name '" + message.substr(at + 21) + "'.";
    return message;
}

}  // namespace

void SqliteDatabase::fail(const std::string& message, const tsql::Statement* origin) const {
    if (origin) throw Error(sqlServerMessage(message), origin->text, origin->line, origin->column);
    throw Error(sqlServerMessage(message));
}

std::string SqliteDatabase::nextDocumentNumber(std::string_view funcNo) {
    const std::string func = std::string(funcNo.substr(0, 3));
    const std::string period = currentYearMonth();
    Transaction transaction(*this, true);
    sqlite3_stmt* insert = prepare("INSERT OR IGNORE INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES (?1, ?2, 0)", nullptr);
    sqlite3_stmt* bump =
        prepare("UPDATE sys_noid SET SEQ=SEQ+1 WHERE FUNC_NO=?1 AND PERIOD=?2 RETURNING SEQ", nullptr);
    long long sequence = 0;
    for (sqlite3_stmt* stmt : {insert, bump}) {
        sqlite3_bind_text(stmt, 1, func.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(stmt, 2, period.c_str(), -1, SQLITE_TRANSIENT);
        int rc;
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) sequence = sqlite3_column_int64(stmt, 0);
        sqlite3_reset(stmt);
        sqlite3_clear_bindings(stmt);
        if (rc != SQLITE_DONE) throw Error(std::string("GetNOID: ") + sqlite3_errmsg(db_));
    }
    transaction.commit();
    return formatDocumentNumber(func, period, sequence);
}

bool SqliteDatabase::maySummariseStocktake(std::string_view warehouse) {
    sqlite3_stmt* stmt = prepare(
        "SELECT count(*) FROM D8303 WHERE T=1 AND ifnull(Y,0)<>1 AND (CK_ID=?1 OR CK_ID_IN=?1)", nullptr);
    const std::string wh(warehouse);
    sqlite3_bind_text(stmt, 1, wh.c_str(), -1, SQLITE_TRANSIENT);
    const int rc = sqlite3_step(stmt);
    const long long inTransit = rc == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : 0;
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    if (rc != SQLITE_ROW) throw Error(sqlite3_errmsg(db_));
    return inTransit == 0;
}

std::string formatDocumentNumber(std::string_view funcNo, std::string_view yymm, long long sequence) {
    if (sequence < 1 || sequence > 99999)
        throw Error("document numbers of function " + std::string(funcNo) + " for " + std::string(yymm) + " are used up");
    char digits[8];
    std::snprintf(digits, sizeof digits, "%05lld", sequence);
    return std::string(funcNo.substr(0, 3)) + std::string(yymm) + digits;
}

}  // namespace qx::db
