#pragma once
// The SQLite engine: one connection per object, T-SQL batches translated statement by
// statement against the live catalog, a cache of prepared statements, the posting guards
// and the EXEC dispatcher.
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "db/Database.h"
#include "db/procedures/Session.h"
#include "db/tsql/Translator.h"

struct sqlite3;
struct sqlite3_stmt;

namespace qx::db {

// State the connection's registered functions (the guards) read and write.
struct GuardState {
    bool maintenance = false;                                // guards off for this batch
    std::set<std::pair<std::string, std::string>> shortRows;  // (WL_ID, CK_ID) driven below zero
};

class SqliteDatabase final : public Database, public ProcedureSession {
public:
    // Opens the file; with create = true a missing or empty file gets the whole schema.
    SqliteDatabase(const std::string& path, bool create);
    ~SqliteDatabase() override;
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    ResultSet open(std::string_view tsqlBatch) override;
    void execute(std::string_view tsqlBatch, const ExecOptions& options = {}) override;
    std::string nextDocumentNumber(std::string_view funcNo) override;
    bool maySummariseStocktake(std::string_view warehouse) override;
    std::string engineName() const override { return "sqlite"; }
    std::string location() const override { return path_; }

    // Runs the statements of a T-SQL batch inside the caller's transaction (procedures use
    // it for the SQL they are handed) and returns the last result set produced.
    ResultSet runWithinTransaction(std::string_view tsqlBatch) override;

    // Runs SQLite text directly (no translation), e.g. for schema objects written for SQLite.
    void runNative(const std::string& sql);

    sqlite3* handle() const { return db_; }

    // What the procedures behind EXEC see of the connection (db/procedures/Session.h).
    void executeNative(const std::string& sql) override { runNative(sql); }
    const procedures::Dialect& dialect() const override { return procedures::sqliteDialect(); }
    bool setGuardsOff(bool off) override {
        const bool previous = guard_.maintenance;
        guard_.maintenance = off;
        return previous;
    }
    sqlite3* sqliteHandle() const override { return db_; }
    std::unique_ptr<procedures::NativeStatement> prepareNative(const std::string&) override { return nullptr; }

    // Turns both guards off until the object goes (restoring what was before). For routines of
    // the database itself that rewrite derived columns only, such as the cost prices the cost
    // recalculation writes into document lines of closed months.
    class GuardsSuspended {
    public:
        explicit GuardsSuspended(SqliteDatabase& db) : guard_(db.guard_), previous_(db.guard_.maintenance) {
            guard_.maintenance = true;
        }
        ~GuardsSuspended() { guard_.maintenance = previous_; }
        GuardsSuspended(const GuardsSuspended&) = delete;
        GuardsSuspended& operator=(const GuardsSuspended&) = delete;

    private:
        GuardState& guard_;
        bool previous_;
    };

private:
    class Transaction;

    void configureConnection();
    void createSchema();
    int schemaVersion();  // the shop's mark, 0 for a file without a shop
    void renewGeneratedObjects();
    void addSkuCompletion();
    ResultSet runStatement(const tsql::Statement& statement, bool& produced);
    ResultSet stepNative(const std::string& sql, bool collect, const tsql::Statement* origin);
    sqlite3_stmt* prepare(const std::string& sql, const tsql::Statement* origin);
    void checkStockGuard();
    [[noreturn]] void fail(const std::string& message, const tsql::Statement* origin) const;

    std::string path_;
    sqlite3* db_ = nullptr;
    GuardState guard_;
    tsql::SqliteRuntimeOptions* runtime_ = nullptr;  // owned by the connection
    std::unique_ptr<tsql::Catalog> catalog_;
    std::unordered_map<std::string, sqlite3_stmt*> cache_;
};

// Document numbers: the function code's first three characters, the year and month (yymm)
// and a five-digit sequence per function code and month: "201" "2611" "00042" →
// "201261100042" (12 characters).
std::string formatDocumentNumber(std::string_view funcNo, std::string_view yymm, long long sequence);

}  // namespace qx::db
