#pragma once
// The PostgreSQL engine: one libpq connection per object, T-SQL batches translated statement by
// statement (db/tsql with the PostgreSQL dialect) against the live catalog, every batch one
// transaction. Use an object from one thread.
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/Database.h"
#include "db/procedures/Session.h"
#include "db/tsql/Translator.h"

struct pg_conn;
struct pg_result;

namespace qx::db {

namespace posting {
struct SkuCompletion;
}

class PostgresDatabase final : public Database, public ProcedureSession {
public:
    // Connects by a libpq connection string: a URI ("postgresql://user@host:port/shop",
    // "postgresql:///shop?host=/run/folder") or "key=value" pairs. Creates the text collation the
    // translated tables use when the database has none yet.
    explicit PostgresDatabase(const std::string& connection);
    ~PostgresDatabase() override;
    PostgresDatabase(const PostgresDatabase&) = delete;
    PostgresDatabase& operator=(const PostgresDatabase&) = delete;

    ResultSet open(std::string_view tsqlBatch) override;
    void execute(std::string_view tsqlBatch, const ExecOptions& options = {}) override;
    std::string nextDocumentNumber(std::string_view funcNo) override;
    bool maySummariseStocktake(std::string_view warehouse) override;
    std::string engineName() const override { return "postgresql"; }
    std::string location() const override { return location_; }

    // Creates the shop's tables from their T-SQL definitions (frame/tables), translated as every
    // batch is, all in one transaction: either every table exists afterwards or none does.
    // Then the rows a new shop starts with (frame/tables/seed.sql). createShop() adds the rest.
    void createShopTables();

    // Creates a whole shop in one transaction: the tables and the rows a new shop starts with as
    // above, the movement stream and balance views generated from the posting rules, the module's
    // views (frame/tables/views.sql) through the translator, and the posting triggers and guards
    // generated from the same posting rules as the SQLite shop's. Fails, keeping everything as it
    // was, when the database already has any of them. A shop that is to receive every row of
    // another (a copy) is made without the starting rows.
    enum class StartingRows { Included, Left };
    void createShop(StartingRows rows = StartingRows::Included);

    // Does the database hold a shop (its tables and the posting triggers)?
    bool hasShop();

    // The shop's schema version mark (the view qx_schema_version), 0 when it has none.
    int schemaVersion();

    // What opening a shop does with its mark: a newer one than this build's is refused (nothing
    // changes); none or an older one has the generated views, posting triggers and guards and the
    // closing snapshots' trigger functions dropped and made again from their sources, the SKU
    // completion triggers added with the SKU rows the existing lines lack, and the current mark
    // set, in one transaction; tables and rows stay. The current mark: nothing is looked at.
    void openShop();

    // Runs PostgreSQL text directly (no translation) and returns its rows, if any.
    ResultSet runNative(const std::string& sql);

    // What the procedures behind EXEC see of the connection (db/procedures/Session.h): the
    // running batch's transaction; statements with bound values read through a cursor.
    ResultSet runWithinTransaction(std::string_view tsqlBatch) override { return runStatements(tsqlBatch); }
    // A cross-tab's row source summed on the server: its rows need not cross the connection.
    std::optional<ResultSet> runSummed(std::string_view tsqlQuery, const SummedColumns& choose) override;
    void executeNative(const std::string& sql) override { runNative(sql); }
    const procedures::Dialect& dialect() const override { return procedures::postgresDialect(); }
    bool setGuardsOff(bool off) override;
    // A batch that starts with a procedure reads one snapshot (REPEATABLE READ); once the
    // transaction has run a statement its level can no longer change and this does nothing.
    void readOneSnapshot() override;
    std::unique_ptr<procedures::NativeStatement> prepareNative(const std::string& sql) override;

    // How many times a batch of this connection was run again after the server cancelled it
    // (deadlock, serialization failure, a key a concurrent batch had just taken).
    int retriedBatches() const { return retried_; }

private:
    friend class PostgresStatement;
    void installRuntime();
    void configureSession();
    void reconnectIfLost();
    void rollback();
    ResultSet runBatch(std::string_view tsqlBatch, bool maintenance = false);
    // The statements of a T-SQL text inside the running transaction, sent before it returns; the
    // last result set produced.
    ResultSet runStatements(std::string_view tsqlBatch);
    // Translates one statement and queues what it becomes (a procedure runs at once).
    void runStatement(const tsql::Statement& statement);
    ResultSet runSql(const std::string& sql, const tsql::Statement* origin);
    void openTransaction();
    // Sends the queued statements in one round trip (with the batch's BEGIN when it has not gone
    // yet, and with COMMIT when commit is set).
    void flush(bool commit);
    void queue(std::string sql, std::shared_ptr<const tsql::Statement> origin, bool rows, std::vector<tsql::CatalogColumn> written = {});
    // The statement's pieces with the connection's kept temp tables reused (see README).
    std::vector<std::string> reuseTempTables(std::vector<std::string> pieces, const tsql::Statement& origin);
    bool hiddenTemp(const std::string& quotedName) const;
    struct Translation {
        std::vector<std::string> pieces;
        std::vector<tsql::CatalogColumn> written;  // a row-returning statement's columns as written
        std::vector<std::string> tables;           // the tables the translator asked for
        unsigned long generation = 0;
    };
    const Translation& translated(const tsql::Statement& statement);
    std::shared_ptr<const std::vector<tsql::Statement>> parsed(std::string_view text);
    std::string emptied(const std::string& quotedName);
    [[noreturn]] void failHidden(const std::string& quotedName, const tsql::Statement& origin);
    // Throws the server's error for a failed statement (remembering its SQLSTATE).
    [[noreturn]] void fail(const pg_result* result, const std::string& sql, const tsql::Statement* origin);
    // The result of what was just sent (true: it went out) once the server has answered,
    // asking db::progressContinues() while it waits; a no asks the server to cancel the running
    // statement. Of several results the first error counts, else the last one with rows.
    pg_result* awaitResult(bool sent);
    // The next result of what was sent (nullptr after the last), waiting as awaitResult does.
    pg_result* nextResult();
    void noteSchemaChange(const std::string& sql);
    std::vector<const posting::SkuCompletion*> missingSkuCompletions();
    void renewGeneratedObjects();
    void renewRuntime();
    void renewTableColumns();
    void markSchemaVersion();
    void addMissingStartingRows();

    pg_conn* conn_ = nullptr;
    std::string location_;
    std::string lastState_;  // SQLSTATE of the last failed statement
    int retried_ = 0;
    bool beginPending_ = false;  // the batch's BEGIN goes with its first statement
    bool committed_ = false;     // the batch's COMMIT went with its last statement
    bool cancelled_ = false;     // the user cancelled the statement the server is answering
    std::unique_ptr<tsql::Catalog> catalog_;

    // What waits to be sent: a piece of a translated statement, or a mark that the statement
    // (an EXEC whose text runs in place) produced a result set, empty unless a later piece has rows.
    struct Pending {
        std::string sql;  // empty: the mark
        std::shared_ptr<const tsql::Statement> origin;
        bool rows = false;                       // its rows are the statement's result set
        std::vector<tsql::CatalogColumn> written;  // the result's column names as the statement wrote them
        std::string countFor;                    // a temp table whose rows it changes
        struct {
            std::string name;
            std::vector<std::string> tables;
            unsigned long generation = 0;
        } prepares;              // PREPARE: the name it gives the query, what the query reads
        std::string preparedSql;
    };
    std::vector<Pending> pending_;

    // A procedure's rows for one INSERT … VALUES statement, waiting to go as one statement.
    struct BufferedRows {
        std::string sql, head, tuple;
        int params = 0;
        int rows = 0;
        std::vector<std::optional<std::string>> values;  // params per row, row after row
        std::string copy;                                // "COPY …" when they may go by COPY
    };
    BufferedRows buffered_;
    void bufferRow(const std::string& sql, const std::string& head, const std::string& tuple, int params,
                   const std::vector<std::optional<std::string>>& values);
    void sendBufferedRows();
    void copyBufferedRows(const BufferedRows& rows, const std::string& command);
    ResultSet* produced_ = nullptr;  // where the result set of the running statements goes

    // The connection's temp tables made from a known definition. A DROP keeps such a table,
    // hidden (no statement can name it), and a CREATE of the same definition takes it back,
    // emptied: no catalog work on the server for a report's #temp table run after run.
    struct TempTable {
        std::string definition;  // the CREATE TABLE piece
        bool hidden = false;
        long long rows = 0;  // rows written since it was last emptied (inserted, changed, deleted)
        long long dead = 0;  // rows deleted by DELETE since the last TRUNCATE
    };
    std::map<std::string, TempTable> temps_, committedTemps_;

    // Queries prepared on the server, by their text, while the tables they read stay as they were.
    std::string executed(const std::string& sql, const std::vector<std::string>& tables, const std::shared_ptr<const tsql::Statement>& origin);
    using Prepared = decltype(Pending::prepares);
    std::unordered_map<std::string, Prepared> prepared_;
    std::unordered_map<std::string, int> seen_;

    std::unordered_map<std::string, Translation> translations_;  // by the statement's text
    Translation scratch_;                                         // one not kept
    std::unordered_map<std::string, std::shared_ptr<const std::vector<tsql::Statement>>> parses_;
};

}  // namespace qx::db
