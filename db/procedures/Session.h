#pragma once
// What a procedure behind EXEC runs on: the connection of the calling batch, inside its
// transaction, on either engine. Statements are prepared through it (Statement.h: bound values,
// typed reads); the few spellings in which the engines' SQL differs are its Dialect.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "db/Database.h"

struct sqlite3;

namespace qx::db::procedures {

// The spellings the procedures' SQL differs in between the engines; everything else is one text.
// Placeholders are written "?1", "?2" … (or "?") for every engine: the PostgreSQL statement turns
// them into "$1", "$2" ….
struct Dialect {
    const char* ifNull;      // NULL to a default: "ifnull" | "coalesce"
    const char* greatest;    // the larger of two values: "max" | "greatest"
    const char* tempSchema;  // qualifier of the connection's temp tables: "temp." | "pg_temp."
    bool foldsNames;         // names are stored folded to lower case (quoted ones must be folded too)
    bool triggerFunctions;   // a trigger calls a function holding its condition and body (PL/pgSQL)
    // An integer naming a row of table alias `alias` for a later UPDATE in the same transaction.
    std::string (*rowId)(const std::string& alias);
    // The condition "the row named by the placeholder" of an UPDATE.
    std::string (*isRow)(const std::string& placeholder);
    // "YYYY-MM-DD" text of a date column or expression.
    std::string (*day)(const std::string& date);
    // The first instant of a date column's day, comparable with date columns.
    std::string (*dayStart)(const std::string& date);
    // A row source of one text column named value: the items of a JSON array of texts bound at
    // the placeholder.
    std::string (*jsonTexts)(const std::string& placeholder);
    // The statement keeping other connections from writing the tables (comma-separated) until
    // the transaction ends, while it reads them to write back what it read; "" where the
    // engine's write transaction already excludes them (SQLite: one writer, and a read snapshot
    // older than another's commit cannot write).
    std::string (*lockForRewrite)(const std::string& tables);
    // A collation comparing texts byte for byte: "BINARY" | "\"C\"".
    const char* bytewise;
    // After a CREATE TABLE's columns: the rows stored in the order of the primary key, where the
    // engine can (" WITHOUT ROWID" | "").
    const char* keyOrdered;
};

const Dialect& sqliteDialect();
const Dialect& postgresDialect();

// A name quoted for the dialect (folded to lower case where the engine stores it so).
std::string quoteName(const Dialect& dialect, const std::string& name);

// A prepared statement of an engine other than SQLite (Statement.h dispatches to it).
class NativeStatement {
public:
    virtual ~NativeStatement() = default;
    virtual void bind(int index, std::string_view value) = 0;
    virtual void bind(int index, std::int64_t value) = 0;
    virtual void bind(int index, double value) = 0;
    virtual void bindNull(int index) = 0;
    virtual bool step() = 0;
    virtual void reset(bool keepBindings) = 0;  // ready to run again
    virtual std::string_view view(int column) const = 0;
    virtual std::int64_t integer(int column) const = 0;
    virtual double real(int column) const = 0;
    virtual bool isNull(int column) const = 0;
};

}  // namespace qx::db::procedures

namespace qx::db {

class ProcedureSession {
public:
    virtual ~ProcedureSession() = default;
    // The statements of a T-SQL batch, translated as every batch's, inside the running
    // transaction; the last result set produced.
    virtual ResultSet runWithinTransaction(std::string_view tsqlBatch) = 0;
    // The rows of one T-SQL query summed where they are: one row per distinct pair of a row key
    // and a column key (compared byte for byte, as text read back compares), with the sum of a
    // value column (NULL when every value of the pair is NULL). `choose` is given the query's
    // column names and returns the positions of row key, column key and value; the result has
    // those three columns, named as the query names them. nullopt where the engine hands the
    // rows as they are instead (the caller sums them): an engine in the same process, a query
    // of several statements, keys or values whose sum or comparison would not be exactly the
    // caller's.
    using SummedColumns = std::function<std::array<std::size_t, 3>(const std::vector<std::string>& names)>;
    virtual std::optional<ResultSet> runSummed(std::string_view tsqlQuery, const SummedColumns& choose) {
        (void)tsqlQuery;
        (void)choose;
        return std::nullopt;
    }
    // SQL of the engine itself (no translation), inside the running transaction.
    virtual void executeNative(const std::string& sql) = 0;
    virtual const procedures::Dialect& dialect() const = 0;
    // Turns both guards (negative stock, closed periods) off or on for the running transaction;
    // returns whether they were off. For routines rewriting derived columns only.
    virtual bool setGuardsOff(bool off) = 0;
    // Makes every later statement of the transaction read the database as it is now (one
    // snapshot), where the engine can still do so: a report of several statements then never
    // counts half of a document another terminal commits meanwhile. SQLite's transaction reads
    // one state already.
    virtual void readOneSnapshot() {}
    // SQLite: the connection, for statements prepared directly. nullptr on other engines.
    virtual sqlite3* sqliteHandle() const { return nullptr; }
    // Other engines: a statement of their own.
    virtual std::unique_ptr<procedures::NativeStatement> prepareNative(const std::string& sql) = 0;
};

namespace procedures {

// Both guards off until the object goes, as they were afterwards.
class GuardsOff {
public:
    explicit GuardsOff(ProcedureSession& session) : session_(session), previous_(session.setGuardsOff(true)) {}
    ~GuardsOff() {
        try {
            session_.setGuardsOff(previous_);
        } catch (...) {  // a failed transaction: the caller rolls back, the setting goes with it
        }
    }
    GuardsOff(const GuardsOff&) = delete;
    GuardsOff& operator=(const GuardsOff&) = delete;

private:
    ProcedureSession& session_;
    bool previous_;
};

}  // namespace procedures
}  // namespace qx::db
