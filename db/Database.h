#pragma once
// The one door to a shop database. Statements arrive in T-SQL (the dialect the module speaks);
// each engine translates and runs them with SQL Server's meaning.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qx::db {

// Field type of a result column, as the framework's datasets need it.
enum class FieldType { Unknown, Integer, Float, Text, DateTime };

struct Column {
    std::string name;  // as the statement names it (alias or column), case kept
    FieldType type = FieldType::Unknown;
    int size = 0;  // declared text length where known, else 0
};

// NULL, integer, floating point or text (dates are ISO text "YYYY-MM-DD HH:MM:SS").
using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

struct ResultSet {
    std::vector<Column> columns;
    std::vector<std::vector<Value>> rows;
};

// An error of the database or of the translation, with where it happened.
class Error : public std::runtime_error {
public:
    Error(const std::string& message, std::string statement = {}, int line = 0, int column = 0)
        : std::runtime_error(message), statement_(std::move(statement)), line_(line), column_(column) {}
    const std::string& statement() const { return statement_; }
    int line() const { return line_; }
    int column() const { return column_; }

private:
    std::string statement_;
    int line_;
    int column_;
};

struct ExecOptions {
    // Maintenance batches (initialisation, clearing documents) run with the negative-stock and
    // closed-period guards off; every other batch is guarded, the quantity balance repair too.
    bool maintenance = false;
};

class Database {
public:
    virtual ~Database() = default;

    // Runs every statement of the batch on this connection and returns the result set of the
    // last statement that produced one (a batch may select and then drop its temp tables).
    virtual ResultSet open(std::string_view tsqlBatch) = 0;

    // Runs the whole batch as one transaction: any failing statement rolls all of it back and
    // throws Error with the database's message.
    virtual void execute(std::string_view tsqlBatch, const ExecOptions& options = {}) = 0;

    // A new document number for a function code: at most 12 characters, never returned twice,
    // also across processes sharing one database.
    virtual std::string nextDocumentNumber(std::string_view funcNo) = 0;

    // May the stocktake of this warehouse be summarised now? (false while a transfer to or
    // from it is still in transit)
    virtual bool maySummariseStocktake(std::string_view warehouse) = 0;

    // "sqlite", "postgresql", ...
    virtual std::string engineName() const = 0;
    // File path or connection description, for the status bar.
    virtual std::string location() const = 0;
};

// Opens (and with create = true, creates with every table, view and trigger) a shop database
// in an SQLite file. Throws Error when the file is missing and create is false.
std::unique_ptr<Database> openSqlite(const std::string& path, bool create = false);

// Connects to a shop database on a PostgreSQL server by a libpq connection string
// ("postgresql://user@host:port/shop"). Throws Error when the server cannot be reached.
std::unique_ptr<Database> openPostgres(const std::string& connection);

// True for a location naming a database on a PostgreSQL server ("postgresql://…" or
// "postgres://…"), false for a path of an SQLite file.
bool isServerLocation(const std::string& location);

// Opens the shop database a location names, the one place every tool and the host open it
// from: a PostgreSQL URI connects to that database on its server, anything else is an SQLite
// file path. With create = true a file or server database without a shop gets the whole shop
// (tables, views, triggers); without it a database holding no shop is refused.
std::unique_ptr<Database> openDatabase(const std::string& location, bool create = false);

}  // namespace qx::db
