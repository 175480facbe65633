#pragma once
// T-SQL → engine dialect translation: tokenizer → parser → syntax tree → emitter per engine.
// The engine drives it one statement at a time so that the catalog it consults always reflects
// the tables the earlier statements of the batch created (SELECT … INTO #T, CREATE TABLE [#x]).
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace qx::tsql {

enum class SqlType { Unknown, Text, Integer, Real, DateTime };

struct CatalogColumn {
    std::string name;
    SqlType type = SqlType::Unknown;
    // An IDENTITY column: positional inserts skip it and it numbers the rows by itself.
    bool identity = false;
    // Decimal places a DECIMAL/NUMERIC/MONEY column keeps (values are rounded when stored);
    // -1 for every other type.
    int scale = -1;
    // A MONEY/SMALLMONEY column: CAST(… AS int) of it rounds instead of truncating.
    bool money = false;
    // Characters a VARCHAR(n)/CHAR(n) column holds; 0 when unlimited or not known.
    int length = 0;
    // A BIGINT column: its arithmetic is checked for the bigint range, not the int range.
    bool bigint = false;
};

// What the translator may ask about the database it translates for.
class Catalog {
public:
    virtual ~Catalog() = default;
    // Columns of a table or view, by its T-SQL name ("d8101", "#T", "[#phb]" unbracketed as
    // "#phb"); nullopt when no such table exists (yet).
    virtual std::optional<std::vector<CatalogColumn>> tableColumns(std::string_view name) const = 0;
    // Sets of columns that identify one row of the table (its primary key, a unique key), each
    // column NOT NULL and a text column compared under the text collation, so that rows equal
    // on them under the comparisons the translation writes are one row. None by default.
    virtual std::vector<std::vector<std::string>> uniqueKeys(std::string_view name) const { return {}; }
};

// EXEC name @a=1,@b='text' — values unquoted (doubled quotes undone), in call order.
struct ProcedureArgument {
    std::string name;  // without '@', as written
    std::string value;
    bool quoted = false;
};
struct ProcedureCall {
    std::string name;
    std::vector<ProcedureArgument> arguments;
};

struct SyntaxTree;  // opaque to the engine

// One statement of a batch, parsed.
struct Statement {
    std::string text;  // the statement's own T-SQL text
    int line = 1;      // where it starts in the batch (1-based)
    int column = 1;
    bool returnsRows = false;                 // SELECT without INTO, or EXEC
    std::optional<ProcedureCall> procedure;   // set for EXEC
    std::shared_ptr<const SyntaxTree> tree;
};

// Thrown for text that cannot be parsed or translated; carries the statement and position.
class TranslationError;  // derives from qx::db::Error (see TranslationError.h)

// Splits a batch into statements: ";" separated, or following each other with no separator as
// SQL Server allows (INSERT … VALUES (…) INSERT …).
std::vector<Statement> parseBatch(std::string_view tsql);

// SQLite text for one statement, given the catalog as it is right now. A statement may become
// several SQLite statements (SELECT … INTO becomes DROP/CREATE TEMP/INSERT); they run in order
// and, when the statement returns rows, the last one yields them. EXEC yields none: the engine
// runs statement.procedure itself.
std::vector<std::string> emitSqlite(const Statement& statement, const Catalog& catalog);

// Names and types of the columns a row-returning statement yields, inferred from the syntax
// tree and the catalog (SqlType::Unknown where neither tells); empty for other statements.
// Lets the engine type a result's fields even when it has no rows.
std::vector<CatalogColumn> resultColumns(const Statement& statement, const Catalog& catalog);

// The same for PostgreSQL (db/postgres): '#x' is a TEMP table of the connection, text columns
// carry the collation "qx" the engine creates in every shop database.
std::vector<std::string> emitPostgres(const Statement& statement, const Catalog& catalog);
std::vector<CatalogColumn> resultColumnsPostgres(const Statement& statement, const Catalog& catalog);

// Name of the temp table behind a T-SQL '#name' (or '[#name]') as the SQLite emitter writes it:
// the table of that name in the connection's own "temp" schema.
std::string sqliteTempTableName(std::string_view tsqlName);

// What a connection's runtime may be told between batches.
struct SqliteRuntimeOptions {
    // SQL Server with ARITHABORT and ANSI_WARNINGS off: a division by zero gives NULL instead of
    // failing the statement (maintenance batches only).
    bool divideByZeroIsNull = false;
};

// Registers on a SQLite connection what emitted SQL relies on: the text collation "QX"
// (case- and width-insensitive, trailing blanks ignored, Chinese in pinyin order after Latin)
// and the qx_* helper functions the emitter calls. Call it on every connection before it runs
// emitted SQL, also when opening an existing database: its tables and views name them. It also
// turns off SQLite's reading of an unknown "name" as a string. The options live as long as the
// connection.
SqliteRuntimeOptions& installSqliteRuntime(sqlite3* db);

}  // namespace qx::tsql
