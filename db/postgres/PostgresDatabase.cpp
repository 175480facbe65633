#include "db/postgres/PostgresDatabase.h"

#include "db/BatchStatements.h"
#include "db/CopyText.h"
#include "db/Progress.h"
#include "db/postgres/PostgresRuntime.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/Procedures.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/SqliteDatabase.h"
#include "db/tsql/Ast.h"
#include "db/tsql/Dialect.h"
#include "db/tsql/TranslationError.h"

#include <libpq-fe.h>
#include <poll.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "db/procedures/ClosingSnapshots.h"

namespace qx::db {
namespace {

// Type OIDs of the built-in types (pg_type.h is a server header; these numbers are fixed).
constexpr Oid kBool = 16, kInt8 = 20, kInt2 = 21, kInt4 = 23, kFloat4 = 700, kFloat8 = 701, kNumeric = 1700;
constexpr Oid kDate = 1082, kTimestamp = 1114, kTimestampTz = 1184;
constexpr Oid kBpchar = 1042, kVarchar = 1043, kText = 25;

FieldType fieldTypeOf(Oid type) {
    switch (type) {
        case kBool: case kInt2: case kInt4: case kInt8: return FieldType::Integer;
        case kFloat4: case kFloat8: case kNumeric: return FieldType::Float;
        case kDate: case kTimestamp: case kTimestampTz: return FieldType::DateTime;
        default: return FieldType::Text;
    }
}

Value valueOf(const PGresult* result, int row, int column) {
    if (PQgetisnull(result, row, column)) return std::monostate{};
    const char* text = PQgetvalue(result, row, column);
    switch (PQftype(result, column)) {
        case kBool: return std::int64_t{text[0] == 't' ? 1 : 0};
        case kInt2: case kInt4: case kInt8: return static_cast<std::int64_t>(std::strtoll(text, nullptr, 10));
        case kNumeric: {
            // a DECIMAL(p,0) expression (CAST(12.5 AS decimal(5,0))) is a whole number, as on
            // SQLite; a column of a table keeps its type
            const int modifier = PQfmod(result, column);
            if (modifier >= 4 && ((modifier - 4) & 0xffff) == 0 && PQftable(result, column) == InvalidOid) {
                char* end = nullptr;
                errno = 0;
                const long long whole = std::strtoll(text, &end, 10);
                if (*end == '\0' && errno == 0) return static_cast<std::int64_t>(whole);
            }
            return std::strtod(text, nullptr);
        }
        case kFloat4: case kFloat8: return std::strtod(text, nullptr);
        case kDate: return std::string(text) + " 00:00:00";
        case kTimestamp: case kTimestampTz: {
            // seconds, and milliseconds when there are any (".5" is ".500", as a file keeps them); no zone
            std::string value(text, std::min<std::size_t>(std::strlen(text), 19));
            if (text[value.size()] == '.') {
                std::string fraction;
                for (const char* c = text + 20; *c >= '0' && *c <= '9' && fraction.size() < 3; ++c) fraction += *c;
                if (fraction.find_first_not_of('0') != std::string::npos) value += "." + fraction + std::string(3 - fraction.size(), '0');
            }
            return value;
        }
        default: return std::string(text);
    }
}

// The name an "undefined column/table" message is about: the first double-quoted word
// ('column "x" does not exist'), else the word after the first blank ('column t.x does not
// exist'); without a table qualifier or the temp schema.
std::string nameIn(const std::string& message) {
    std::string name;
    if (const auto open = message.find('"'); open != std::string::npos) {
        const auto close = message.find('"', open + 1);
        name = message.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
    } else if (const auto blank = message.find(' '); blank != std::string::npos) {
        name = message.substr(blank + 1, message.find(' ', blank + 1) - blank - 1);
    }
    if (name.rfind("pg_temp.", 0) == 0) return name.substr(8);
    if (const auto dot = name.rfind('.'); dot != std::string::npos && message.rfind("column", 0) == 0) return name.substr(dot + 1);
    return name;
}

// The server's message, in SQL Server's words where the module or its users know them.
std::string messageOf(const PGresult* result, pg_conn* conn) {
    const char* primary = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    std::string message = primary ? primary : PQerrorMessage(conn);
    while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
    const char* state = result ? PQresultErrorField(result, PG_DIAG_SQLSTATE) : nullptr;
    const std::string code = state ? state : "";
    if (code == "42703") return "Invalid column name '" + nameIn(message) + "'.";
    if (code == "42P01") return "Invalid object name '" + nameIn(message) + "'.";
    if (code == "22012") return "Divide by zero error encountered.";
    if (code == "22011") return "Invalid length parameter passed to the substring function.";
    if (code == "23505") {
        const char* constraint = result ? PQresultErrorField(result, PG_DIAG_CONSTRAINT_NAME) : nullptr;
        const char* table = result ? PQresultErrorField(result, PG_DIAG_TABLE_NAME) : nullptr;
        const char* detail = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_DETAIL) : nullptr;
        return std::string("Violation of UNIQUE KEY constraint '") + (constraint ? constraint : "") +
               "'. Cannot insert duplicate key in object '" + (table ? table : "") + "'. (" + (detail ? detail : message) + ")";
    }
    if (code == "22001") return "String or binary data would be truncated. (" + message + ")";
    if (code == "22007" || code == "22008")  // a text that is no date, or a day the month has not
        return "Conversion failed when converting date and/or time from character string. (" + message + ")";
    if (code == "22P02" && message.find("type numeric") != std::string::npos)
        return "Error converting data type varchar to numeric. (" + message + ")";
    if (code == "21000")
        return "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
               "when the subquery is used as an expression.";
    if (code == "22003") {
        if (message.find("smallint") != std::string::npos) return "Arithmetic overflow error converting expression to data type smallint.";
        if (message.find("integer") != std::string::npos) return "Arithmetic overflow error converting expression to data type int.";
        if (message.find("bigint") != std::string::npos) return "Arithmetic overflow error converting expression to data type bigint.";
        if (message.find("numeric") != std::string::npos) return "Arithmetic overflow error converting numeric to data type numeric.";
    }
    return message;
}

// Names are stored folded to lower case (the dialect's quoteIdentifier).
char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string lowerName(std::string_view name) {
    if (name.size() >= 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
    std::string out;
    for (char c : name) out += lowerAscii(c);
    return out;
}

// The shop's tables and views as their T-SQL definitions spell their columns: table → column
// (both in lower case) → the declared name. The server folds unquoted names to lower case;
// SQLite, like SQL Server, gives a table's columns their declared names, and so does this engine.
using DeclaredNames = std::unordered_map<std::string, std::unordered_map<std::string, std::string>>;

const DeclaredNames& declaredNames() {
    static const DeclaredNames names = [] {
        DeclaredNames out;
        const auto add = [&out](std::string_view batch) {
            for (const auto& statement : tsql::parseBatch(batch)) {
                if (!statement.tree) continue;
                const tsql::SyntaxTree& tree = *statement.tree;
                if (tree.kind != tsql::StatementKind::CreateTable && tree.kind != tsql::StatementKind::CreateView) continue;
                auto& columns = out[lowerName(tree.target.last())];
                const auto declare = [&columns](const std::string& name) { columns.emplace(lowerName(name), name); };
                for (const auto& c : tree.columnDefs) declare(c.name);
                for (const auto& c : tree.columns) declare(c);
                if (tree.kind == tsql::StatementKind::CreateView && tree.columns.empty() && tree.query)
                    for (const auto& item : tree.query->cores.front().items) {
                        if (item.alias) declare(*item.alias);
                        else if (item.expr && item.expr->kind == tsql::ExprKind::Column) declare(item.expr->name.last());
                    }
            }
        };
        for (const auto& file : tableDefinitions()) add(file.text);
        for (const auto& view : posting::tsqlViewStatements()) add(view);
        for (const auto& file : viewDefinitions()) add(file.text);
        return out;
    }();
    return names;
}

bool sameName(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    return true;
}

// An unknown name in SQL Server's words names it as the statement wrote it, not folded.
std::string asWritten(const std::string& message, const std::string& statement) {
    for (const char* lead : {"Invalid column name '", "Invalid object name '"}) {
        const std::string prefix = lead;
        if (message.rfind(prefix, 0) != 0 || message.size() < prefix.size() + 2) continue;
        const std::string name = message.substr(prefix.size(), message.size() - prefix.size() - 2);
        for (std::size_t at = 0; at + name.size() <= statement.size(); ++at)
            if (sameName(statement.substr(at, name.size()), name)) return prefix + statement.substr(at, name.size()) + "'.";
    }
    return message;
}

struct Result {
    PGresult* r;
    ~Result() { PQclear(r); }
};

// The catalog the translator reads: tables of the search path and the connection's temp tables.
// A table's columns are read once and kept (a batch names the same tables many times, each a
// round trip to the server) until this connection changes a schema (CREATE, DROP, ALTER), rolls
// a transaction back or reconnects. A table not found is asked again each time: another
// connection may create it. A batch failing on a name or type while kept columns were used runs
// once more with the catalog read afresh (another connection may have altered a table).
class PostgresCatalog final : public tsql::Catalog {
public:
    // hidden: a temp table the connection keeps for reuse after a DROP (its name is no table);
    // beforeRead: sends the statements waiting to go, so the server's catalog is up to date.
    PostgresCatalog(pg_conn* conn, std::function<bool(const std::string&)> hidden, std::function<void()> beforeRead)
        : conn_(conn), hidden_(std::move(hidden)), beforeRead_(std::move(beforeRead)) {}
    void forget() {
        kept_.clear();
        served_ = false;
        allAt_ = ++generation_;
    }
    void forget(const std::string& quotedName) {
        kept_.erase(quotedName);
        changedAt_[quotedName] = ++generation_;
    }
    // Has nothing of these tables been forgotten since that generation?
    bool unchangedSince(unsigned long generation, const std::vector<std::string>& tables) const {
        if (allAt_ > generation) return false;
        for (const auto& table : tables)
            if (const auto changed = changedAt_.find(table); changed != changedAt_.end() && changed->second > generation) return false;
        return true;
    }
    // The columns of a temp table as the batch that made it declared them (the server keeps
    // them folded to lower case).
    void declareTemp(const std::string& table, const std::vector<tsql::ColumnDef>& columns) {
        auto& names = declaredTemp_[lowerName(table)];
        names.clear();
        for (const auto& c : columns) names.emplace(lowerName(c.name), c.name);
    }
    bool served() const { return served_; }  // kept columns used since forget() or unmark()
    void unmark() { served_ = false; }
    void markServed() { served_ = true; }
    // Counts the changes of what is kept: a translation made from the kept columns holds while
    // the count stays the same.
    unsigned long generation() const { return generation_; }
    // The tables asked for from now on (their quoted names) and whether one was not found.
    void record(std::vector<std::string>* names, bool* missed) {
        names_ = names;
        missed_ = missed;
    }
    std::optional<std::vector<tsql::CatalogColumn>> tableColumns(std::string_view name) const override {
        std::string table(name);
        if (table.size() >= 2 && table.front() == '[' && table.back() == ']') table = table.substr(1, table.size() - 2);
        if (const auto dot = table.rfind('.'); dot != std::string::npos && table.front() != '#') table = table.substr(dot + 1);
        std::string quoted = "\"";
        for (char c : table) quoted += c == '"' ? std::string("\"\"") : std::string(1, lowerAscii(c));
        quoted += '"';
        if (names_) names_->push_back(quoted);
        if (hidden_(quoted)) {
            if (missed_) *missed_ = true;
            return std::nullopt;
        }
        if (const auto kept = kept_.find(quoted); kept != kept_.end()) {
            served_ = true;
            return kept->second;
        }
        beforeRead_();
        const char* sql =
            "SELECT a.attname, format_type(a.atttypid, a.atttypmod), a.attidentity <> '', a.atttypid, a.atttypmod, "
            "col_description(a.attrelid, a.attnum) = 'money' "
            "FROM pg_attribute a WHERE a.attrelid = to_regclass($1) AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum";
        const char* params[] = {quoted.c_str()};
        Result result{PQexecParams(conn_, sql, 1, nullptr, params, nullptr, nullptr, 0)};
        if (PQresultStatus(result.r) != PGRES_TUPLES_OK || PQntuples(result.r) == 0) {
            if (missed_) *missed_ = true;
            return std::nullopt;
        }
        std::vector<tsql::CatalogColumn> columns;
        const std::string hidden = table.front() == '#' ? tsql::postgresDialect().insertionOrderColumn() : std::string();
        for (int i = 0; i < PQntuples(result.r); ++i) {
            tsql::CatalogColumn column;
            column.name = PQgetvalue(result.r, i, 0);
            if (column.name == hidden) continue;  // the temp table's insertion number, not one of its columns
            const Oid type = static_cast<Oid>(std::strtoul(PQgetvalue(result.r, i, 3), nullptr, 10));
            switch (fieldTypeOf(type)) {
                case FieldType::Integer: column.type = tsql::SqlType::Integer; break;
                case FieldType::Float: column.type = tsql::SqlType::Real; break;
                case FieldType::DateTime: column.type = tsql::SqlType::DateTime; break;
                default: column.type = tsql::SqlType::Text; break;
            }
            column.identity = PQgetvalue(result.r, i, 2)[0] == 't';
            column.bigint = type == kInt8;
            if (type == kVarchar || type == kBpchar) {
                const long modifier = std::strtol(PQgetvalue(result.r, i, 4), nullptr, 10);
                if (modifier > 4) column.length = static_cast<int>(modifier - 4);
            }
            if (type == kNumeric) {
                const long modifier = std::strtol(PQgetvalue(result.r, i, 4), nullptr, 10);
                if (modifier >= 4) column.scale = static_cast<int>((modifier - 4) & 0xffff);
                column.money = PQgetvalue(result.r, i, 5)[0] == 't';  // marked by the dialect's columnMarks
            }
            columns.push_back(std::move(column));
        }
        const DeclaredNames& spelled = table.front() == '#' ? declaredTemp_ : declaredNames();
        if (const auto declared = spelled.find(lowerName(table)); declared != spelled.end())
            for (auto& column : columns)
                if (const auto name = declared->second.find(column.name); name != declared->second.end()) column.name = name->second;
        kept_.emplace(quoted, columns);
        return columns;
    }

private:
    pg_conn* conn_;
    std::function<bool(const std::string&)> hidden_;
    std::function<void()> beforeRead_;
    mutable std::unordered_map<std::string, std::vector<tsql::CatalogColumn>> kept_;
    mutable bool served_ = false;
    DeclaredNames declaredTemp_;
    unsigned long generation_ = 0, allAt_ = 0;
    std::unordered_map<std::string, unsigned long> changedAt_;  // when a table was last forgotten
    std::vector<std::string>* names_ = nullptr;
    bool* missed_ = nullptr;
};

// Does this statement change what the catalog reads (tables, columns)?
bool changesSchema(const std::string& sql) {
    const auto start = sql.find_first_not_of(" \t\r\n");
    if (start == std::string::npos) return false;
    for (const char* word : {"CREATE", "DROP", "ALTER", "DO"}) {
        const std::size_t n = std::strlen(word);
        if (sql.size() - start > n && sameName(sql.substr(start, n), word) && !std::isalnum(static_cast<unsigned char>(sql[start + n])))
            return true;
    }
    return false;
}

// The one temp table a schema change of the dialect's own spelling is about ("#t" in quotes),
// or of a procedure's (CREATE TEMP TABLE name, DROP TABLE IF EXISTS pg_temp.name: "name"
// folded), or empty when it may be about any table.
std::string tempTableChanged(const std::string& sql) {
    for (const char* head :
         {"CREATE TABLE pg_temp.", "DROP TABLE IF EXISTS pg_temp.", "DROP TABLE pg_temp.", "ALTER TABLE pg_temp.", "CREATE TEMP TABLE "}) {
        const std::size_t n = std::strlen(head);
        if (sql.compare(0, n, head) != 0 || sql.size() <= n) continue;
        if (sql[n] != '"') {
            std::size_t end = n;
            while (end < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[end])) || sql[end] == '_')) ++end;
            if (end == n || (end < sql.size() && sql[end] != ' ' && sql[end] != '(')) continue;
            std::string name = "\"";
            for (std::size_t i = n; i < end; ++i) name += lowerAscii(sql[i]);
            return name + '"';
        }
        std::size_t end = n + 1;
        while (end < sql.size() && (sql[end] != '"' || (end + 1 < sql.size() && sql[end + 1] == '"'))) end += sql[end] == '"' ? 2 : 1;
        if (end < sql.size()) return sql.substr(n, end - n + 1);
    }
    return {};
}

PostgresCatalog& cacheOf(const std::unique_ptr<tsql::Catalog>& catalog) { return static_cast<PostgresCatalog&>(*catalog); }

}  // namespace

PostgresDatabase::PostgresDatabase(const std::string& connection) : location_(connection) {
    conn_ = PQconnectdb(connection.c_str());
    if (PQstatus(conn_) != CONNECTION_OK) {
        std::string message = PQerrorMessage(conn_);
        while (!message.empty() && message.back() == '\n') message.pop_back();
        PQfinish(conn_);
        conn_ = nullptr;
        throw Error("cannot connect to the PostgreSQL server: " + message);
    }
    PQsetClientEncoding(conn_, "UTF8");
    catalog_ = std::make_unique<PostgresCatalog>(
        conn_, [this](const std::string& name) { return hiddenTemp(name); }, [this] { flush(false); });
    // Text compares like SQL Server's Chinese case-insensitive collation: ICU Chinese (pinyin),
    // secondary strength (case and width ignored), digits and Latin letters before Chinese as
    // SQL Server sorts them. Two connections may race to create it.
    configureSession();
    const ResultSet existing = runNative("SELECT 1 FROM pg_collation WHERE collname = 'qx'");
    if (existing.rows.empty()) {
        try {
            runNative("CREATE COLLATION IF NOT EXISTS qx (provider = icu, locale = 'zh-u-ks-level2-kr-latn-hani', deterministic = false)");
        } catch (const Error&) {
            if (runNative("SELECT 1 FROM pg_collation WHERE collname = 'qx'").rows.empty()) throw;
        }
    }
    installRuntime();
}

void PostgresDatabase::configureSession() {
    runNative("SET client_min_messages = warning");
    runNative("SET datestyle = 'ISO, MDY'");  // '08/30/2006' is August 30th, as SQL Server reads it
    // A procedure's row source (a cross-tab's, tens of thousands of document lines) is read whole:
    // at the planner's default cost of a row passed on by a parallel worker (0.1) such a query runs
    // in one process, at 0.02 with the server's workers (measured: the annual purchases' source
    // 384-433 ms alone, 240-250 ms with two workers, as fast as the hand-written aggregate).
    runNative("SET parallel_tuple_cost = 0.02");
}

// A connection the server or the network dropped is opened again before the next batch (the
// connection's temp tables are gone with it).
void PostgresDatabase::reconnectIfLost() {
    if (PQstatus(conn_) == CONNECTION_OK) return;
    PQreset(conn_);
    if (PQstatus(conn_) != CONNECTION_OK) {
        std::string message = PQerrorMessage(conn_);
        while (!message.empty() && message.back() == '\n') message.pop_back();
        throw Error("cannot connect to the PostgreSQL server: " + message);
    }
    PQsetClientEncoding(conn_, "UTF8");
    cacheOf(catalog_).forget();
    temps_.clear();  // the server dropped them with the old connection
    committedTemps_.clear();
    prepared_.clear();
    seen_.clear();
    configureSession();
}

// The helpers go in once, all together; a connection racing another one to create them accepts
// the other's.
void PostgresDatabase::installRuntime() {
    // Every overload of the runtime, counted by name: a database made by an older build gets the
    // helpers added since.
    std::string names;
    for (const auto& function : postgresRuntimeFunctions()) {
        const auto start = function.find("qx_"), end = function.find('(');
        names += (names.empty() ? "'" : ", '") + function.substr(start, end - start) + "'";
    }
    const auto count = [this, &names] {
        const ResultSet r = runNative("SELECT count(*) FROM pg_proc WHERE proname IN (" + names + ")");
        return std::get<std::int64_t>(r.rows.at(0).at(0));
    };
    const auto wanted = static_cast<std::int64_t>(postgresRuntimeFunctions().size());
    if (count() >= wanted) return;
    try {
        runNative("BEGIN");
        for (const auto& function : postgresRuntimeFunctions())
            runNative("DO $install$ BEGIN EXECUTE $f$" + function + "$f$; EXCEPTION WHEN duplicate_function THEN NULL; END $install$");
        runNative("COMMIT");
    } catch (const Error&) {
        Result rollback{PQexec(conn_, "ROLLBACK")};
        if (count() < wanted) throw;
    }
}

PostgresDatabase::~PostgresDatabase() {
    if (conn_) PQfinish(conn_);
}

ResultSet PostgresDatabase::runNative(const std::string& sql) {
    flush(false);
    noteSchemaChange(sql);
    return runSql(sql, nullptr);
}

void PostgresDatabase::fail(const pg_result* result, const std::string& sql, const tsql::Statement* origin) {
    const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    lastState_ = state ? state : "";
    std::string message = messageOf(result, conn_);
    if (cancelled_ && lastState_ == "57014") message = kCancelledMessage;
    if (PQstatus(conn_) == CONNECTION_BAD) {
        // Killed by the server's administrator, a restart or the network: the server keeps
        // nothing of a transaction that did not commit.
        std::string reason = message;
        while (!reason.empty() && (reason.back() == '\n' || reason.back() == ' ')) reason.pop_back();
        message = "the connection to the database server was lost; nothing of the unfinished batch was kept (" + reason + ")";
    }
    if (origin) throw Error(asWritten(message, origin->text), origin->text, origin->line, origin->column);
    throw Error(message, sql);
}

namespace {

ResultSet resultSetOf(const PGresult* result) {
    ResultSet set;
    if (PQresultStatus(result) != PGRES_TUPLES_OK) return set;
    const int columns = PQnfields(result);
    for (int i = 0; i < columns; ++i) {
        const Oid type = PQftype(result, i);
        const int modifier = PQfmod(result, i);
        const int size = (type == kVarchar || type == kBpchar) && modifier > 4 ? modifier - 4 : 0;
        set.columns.push_back({PQfname(result, i), fieldTypeOf(type), size});
    }
    const int rows = PQntuples(result);
    set.rows.reserve(static_cast<std::size_t>(rows));
    for (int r = 0; r < rows; ++r) {
        std::vector<Value> row;
        row.reserve(static_cast<std::size_t>(columns));
        for (int c = 0; c < columns; ++c) row.push_back(valueOf(result, r, c));
        set.rows.push_back(std::move(row));
    }
    return set;
}

bool failed(const PGresult* result) {
    const auto kind = PQresultStatus(result);
    return kind != PGRES_TUPLES_OK && kind != PGRES_COMMAND_OK && kind != PGRES_EMPTY_QUERY;
}

}  // namespace

// Runs text at once, with the batch's BEGIN in front of it when the transaction has not been
// opened yet. Of several results the first error counts, else the last one with rows.
ResultSet PostgresDatabase::runSql(const std::string& sql, const tsql::Statement* origin) {
    std::string text = sql;
    if (beginPending_) text = "BEGIN;" + text;
    beginPending_ = false;
    Result result{awaitResult(PQsendQuery(conn_, text.c_str()) != 0)};
    if (failed(result.r)) fail(result.r, sql, origin);
    if (PQtransactionStatus(conn_) == PQTRANS_IDLE) committedTemps_ = temps_;
    return resultSetOf(result.r);
}

PGresult* PostgresDatabase::nextResult() {
    constexpr int kAskEveryMs = 100;
    while (PQisBusy(conn_)) {
        pollfd socket{PQsocket(conn_), POLLIN, 0};
        const int ready = ::poll(&socket, 1, kAskEveryMs);
        if (ready != 0) {
            if (!PQconsumeInput(conn_)) break;  // lost: PQgetResult reports it
            continue;
        }
        if (!cancelled_ && !progressContinues()) {
            cancelled_ = true;
            if (PGcancel* cancel = PQgetCancel(conn_)) {
                char error[256];
                PQcancel(cancel, error, sizeof error);  // the server answers with an error
                PQfreeCancel(cancel);
            }
        }
    }
    return PQgetResult(conn_);
}

PGresult* PostgresDatabase::awaitResult(bool sent) {
    cancelled_ = false;
    if (!sent) return nullptr;  // the connection's message tells why
    PGresult* kept = nullptr;
    while (PGresult* next = nextResult()) {
        const auto kind = PQresultStatus(next);
        const bool failed = kind != PGRES_TUPLES_OK && kind != PGRES_COMMAND_OK && kind != PGRES_EMPTY_QUERY;
        const bool keep = !kept || (failed && PQresultStatus(kept) != PGRES_FATAL_ERROR) ||
                          (kind == PGRES_TUPLES_OK && PQresultStatus(kept) != PGRES_FATAL_ERROR);
        if (keep) std::swap(kept, next);
        PQclear(next);
    }
    return kept;
}


void PostgresDatabase::queue(std::string sql, std::shared_ptr<const tsql::Statement> origin, bool rows,
                             std::vector<tsql::CatalogColumn> written) {
    Pending piece;
    piece.sql = std::move(sql);
    piece.origin = std::move(origin);
    piece.rows = rows;
    piece.written = std::move(written);
    // the rows a statement writes into a temp table, to know how to empty it for reuse
    for (const char* head : {"INSERT INTO pg_temp.", "UPDATE pg_temp.", "DELETE FROM pg_temp."})
        if (piece.sql.rfind(head, 0) == 0) {
            const std::string name = tempTableChanged("DROP TABLE pg_temp." + piece.sql.substr(std::strlen(head)));
            if (temps_.count(name)) piece.countFor = name;
        }
    pending_.push_back(std::move(piece));
}

// The queued pieces go as one text (each round trip may wait for the server's process to be
// scheduled on a busy machine): "BEGIN;" when the transaction has not been opened yet, the
// pieces, ";COMMIT" at the end of a batch. The server runs them in order and stops at the first
// failure; the transaction is then rolled back by the caller. Every piece is one command, so the
// n-th result is the n-th piece's.
void PostgresDatabase::flush(bool commit) {
    sendBufferedRows();
    std::size_t sent = 0;
    for (const auto& piece : pending_) sent += piece.sql.empty() ? 0 : 1;
    if (sent == 0 && (!commit || beginPending_)) {
        // marks only: their statements produced empty result sets
        if (!pending_.empty() && produced_) *produced_ = {};
        pending_.clear();
        if (!commit) return;
        // nothing of the batch reached the server: no transaction to end
        beginPending_ = false;
        committed_ = true;
        committedTemps_ = temps_;
        return;
    }
    const std::vector<Pending> pieces = std::move(pending_);
    pending_.clear();
    const bool begin = beginPending_;
    beginPending_ = false;
    std::string text = begin ? "BEGIN;\n" : "";
    for (const auto& piece : pieces)
        if (!piece.sql.empty()) text += piece.sql + ";\n";
    if (commit) text += "COMMIT";
    std::vector<std::unique_ptr<PGresult, decltype(&PQclear)>> owned;
    cancelled_ = false;
    if (PQsendQuery(conn_, text.c_str()))
        for (PGresult* next; (next = nextResult());) owned.emplace_back(next, &PQclear);
    struct View {
        PGresult* r;
    };
    std::vector<View> results;
    for (const auto& r : owned) results.push_back({r.get()});
    // the one whose error counts, and the statement it came from
    const tsql::Statement* lastOrigin = nullptr;
    for (const auto& piece : pieces)
        if (piece.origin) lastOrigin = piece.origin.get();
    if (results.empty()) {
        Result none{nullptr};
        fail(none.r, text, lastOrigin);
    }
    const std::size_t offset = begin ? 1 : 0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (!failed(results[i].r)) continue;
        const tsql::Statement* origin = lastOrigin;  // BEGIN, or COMMIT: the deferred guards
        std::string sql = i < offset ? "BEGIN" : "COMMIT";
        for (std::size_t p = 0, n = offset; p < pieces.size(); ++p) {
            if (pieces[p].sql.empty()) continue;
            if (n++ == i) {
                origin = pieces[p].origin.get();
                sql = pieces[p].sql;
                break;
            }
        }
        fail(results[i].r, sql, origin);
    }
    if (commit) committed_ = PQtransactionStatus(conn_) == PQTRANS_IDLE;
    const bool aligned = results.size() == offset + sent + (commit ? 1 : 0);
    std::size_t at = offset;
    for (const auto& piece : pieces) {
        if (piece.sql.empty()) {
            if (produced_) *produced_ = {};
            continue;
        }
        const PGresult* result = aligned ? results[at++].r : nullptr;
        if (!piece.countFor.empty() && result)
            if (auto temp = temps_.find(piece.countFor); temp != temps_.end()) temp->second.rows += std::atoll(PQcmdTuples(const_cast<PGresult*>(result)));
        if (!piece.prepares.name.empty() && result) prepared_[piece.preparedSql] = piece.prepares;
        if (!piece.rows || !produced_) continue;
        if (!result)  // not one result per piece: the last result with rows
            for (auto r = results.rbegin(); r != results.rend() && !result; ++r)
                if (PQresultStatus(r->r) == PGRES_TUPLES_OK) result = r->r;
        ResultSet set = result ? resultSetOf(result) : ResultSet{};
        // The server names result columns by their folded names; give them back as written.
        if (piece.written.size() == set.columns.size())
            for (std::size_t c = 0; c < piece.written.size(); ++c)
                if (sameName(piece.written[c].name, set.columns[c].name)) set.columns[c].name = piece.written[c].name;
        *produced_ = std::move(set);
    }
    if (PQtransactionStatus(conn_) == PQTRANS_IDLE) committedTemps_ = temps_;
}

// ---- temp tables kept for reuse
//
// A report's batch makes its #temp tables, fills them, reads them and drops them, every time it
// runs: on PostgreSQL each CREATE and DROP is catalog work (rows in pg_class, pg_attribute,
// pg_type, pg_depend, files) that costs more than the report's own query. A temp table the
// translator made from a known definition (the CREATE TABLE piece, no IDENTITY column) is kept
// when the batch drops it: hidden, so that every statement naming it fails as on a dropped table
// ("Invalid object name"), and the catalog the translator reads does not show it. A later CREATE
// of the same name and the same definition (SELECT … INTO, CREATE TABLE) takes it back, emptied
// (DELETE while few rows went through it, else TRUNCATE), without the catalog work. Temp tables
// are the connection's own, so no other connection sees any of it; a batch that fails gets back
// the kept tables as they were when it began (the server rolls back their rows).

bool PostgresDatabase::hiddenTemp(const std::string& quotedName) const {
    const auto temp = temps_.find(quotedName);
    return temp != temps_.end() && temp->second.hidden;
}

// The piece emptying a kept table for its next use ("" when it is empty already).
std::string PostgresDatabase::emptied(const std::string& quotedName) {
    constexpr long long kFew = 5000;  // below this, DELETE costs less than TRUNCATE's new file
    TempTable& temp = temps_.at(quotedName);
    bool unknown = false;  // rows written by pieces not sent yet
    for (const auto& piece : pending_) unknown = unknown || piece.countFor == quotedName;
    if (unknown || temp.rows + temp.dead > kFew) {
        temp.rows = temp.dead = 0;
        return "TRUNCATE pg_temp." + quotedName;
    }
    if (temp.rows == 0) return {};
    temp.dead += temp.rows;
    temp.rows = 0;
    return "DELETE FROM pg_temp." + quotedName;
}

void PostgresDatabase::failHidden(const std::string& quotedName, const tsql::Statement& origin) {
    flush(false);  // an earlier statement's failure comes first
    std::string name;
    for (std::size_t i = 1; i + 1 < quotedName.size(); ++i) {
        name += quotedName[i];
        if (quotedName[i] == '"') ++i;
    }
    lastState_ = "42P01";
    throw Error(asWritten("Invalid object name '" + name + "'.", origin.text), origin.text, origin.line, origin.column);
}

namespace {

// The temp tables a piece names (pg_temp."x", outside quoted texts), quoted as written.
std::vector<std::string> tempTablesNamed(const std::string& sql) {
    std::vector<std::string> names;
    if (sql.find("pg_temp.\"") == std::string::npos) return names;
    bool inText = false;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        if (sql[i] == '\'') inText = !inText;
        if (inText || sql.compare(i, 9, "pg_temp.\"") != 0) continue;
        std::size_t end = i + 9;
        while (end < sql.size() && (sql[end] != '"' || (end + 1 < sql.size() && sql[end + 1] == '"'))) end += sql[end] == '"' ? 2 : 1;
        if (end >= sql.size()) break;
        names.push_back(sql.substr(i + 8, end - i - 7));
        i = end;
    }
    return names;
}

bool startsWith(const std::string& text, const char* head) { return text.rfind(head, 0) == 0; }

}  // namespace

std::vector<std::string> PostgresDatabase::reuseTempTables(std::vector<std::string> pieces, const tsql::Statement& origin) {
    constexpr long long kKeepAtMost = 100000;  // a table that held more is dropped, not kept
    std::vector<std::string> out;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::string& piece = pieces[i];
        const std::string name = tempTableChanged(piece);
        const auto temp = name.empty() ? temps_.end() : temps_.find(name);
        const bool kept = temp != temps_.end();
        if (startsWith(piece, "DROP TABLE IF EXISTS pg_temp.")) {
            const std::string next = i + 1 < pieces.size() ? pieces[i + 1] : std::string();
            if (startsWith(next, "CREATE TABLE pg_temp.") && tempTableChanged(next) == name) {
                ++i;
                if (kept && temp->second.definition == next) {  // the same table again: take it back
                    temp->second.hidden = false;
                    if (auto empty = emptied(name); !empty.empty()) out.push_back(std::move(empty));
                    continue;
                }
                out.push_back(piece);
                out.push_back(next);
                if (next.find("IDENTITY") == std::string::npos) temps_[name] = TempTable{next};
                else temps_.erase(name);
                continue;
            }
            if (kept && !temp->second.hidden && temp->second.rows <= kKeepAtMost) temp->second.hidden = true;
            else if (!kept || !temp->second.hidden) {
                out.push_back(piece);
                temps_.erase(name);
            }
            continue;
        }
        if (startsWith(piece, "DROP TABLE pg_temp.") && kept) {
            if (temp->second.hidden) failHidden(name, origin);
            if (temp->second.rows <= kKeepAtMost) {
                temp->second.hidden = true;
                continue;
            }
            out.push_back(piece);
            temps_.erase(name);
            continue;
        }
        const auto named = tempTablesNamed(piece);
        for (const auto& n : named)
            if (hiddenTemp(n)) failHidden(n, origin);
        // a temp table altered or indexed is no longer the definition it was made from
        if (changesSchema(piece))
            for (const auto& n : named) temps_.erase(n);
        out.push_back(piece);
    }
    return out;
}

// A report runs the same statements again and again: their translations are kept, by their
// text, as long as the kept table columns they were made from hold (no schema change, rollback or
// reconnection since) and no table they read has been dropped since. A translation that looked
// for a table the server did not have is not kept (another connection may create it).
const PostgresDatabase::Translation& PostgresDatabase::translated(const tsql::Statement& statement) {
    constexpr std::size_t kKeepAtMost = 1000;
    auto& catalog = cacheOf(catalog_);
    if (const auto kept = translations_.find(statement.text); kept != translations_.end()) {
        const Translation& t = kept->second;
        bool holds = catalog.unchangedSince(t.generation, t.tables);
        for (const auto& name : t.tables) holds = holds && !hiddenTemp(name);
        if (holds) {
            catalog.markServed();
            return t;
        }
    }
    Translation t;
    bool missed = false;
    catalog.record(&t.tables, &missed);
    try {
        t.pieces = tsql::emitPostgres(statement, *catalog_);
        if (statement.returnsRows) t.written = tsql::resultColumnsPostgres(statement, *catalog_);
    } catch (...) {
        catalog.record(nullptr, nullptr);
        throw;
    }
    catalog.record(nullptr, nullptr);
    t.generation = catalog.generation();
    if (translations_.size() >= kKeepAtMost) translations_.clear();
    if (missed) {
        scratch_ = std::move(t);
        return scratch_;
    }
    return translations_[statement.text] = std::move(t);
}

// The statements of a text, parsed once per text (the parse depends on nothing else).
std::shared_ptr<const std::vector<tsql::Statement>> PostgresDatabase::parsed(std::string_view text) {
    constexpr std::size_t kKeepAtMost = 200;
    const std::string key(text);
    if (const auto kept = parses_.find(key); kept != parses_.end()) return kept->second;
    auto statements = std::make_shared<const std::vector<tsql::Statement>>(tsql::parseBatch(text));
    if (parses_.size() >= kKeepAtMost) parses_.clear();
    parses_.emplace(key, statements);
    return statements;
}

void PostgresDatabase::runStatement(const tsql::Statement& statement) {
    if (statement.procedure) {
        // SYS_M runs the text it is handed in place: its statements join the batch's queue.
        if (sameName(statement.procedure->name, "SYS_M"))
            if (const auto text = procedureArgument(*statement.procedure, "sqltext")) {
                queue({}, nullptr, false);
                const auto inner = parsed(*text);
                for (const auto& each : *inner) runStatement(each);
                return;
            }
        // The procedures of the one registry, inside this batch's transaction (their statements
        // take the pending BEGIN along, as any statement does).
        flush(false);
        ResultSet result = callProcedure(*this, statement);
        if (produced_) *produced_ = std::move(result);
        return;
    }
    if (statement.tree && statement.tree->kind == tsql::StatementKind::CreateTable && statement.tree->target.isTemp())
        cacheOf(catalog_).declareTemp(statement.tree->target.last(), statement.tree->columnDefs);
    const Translation& translation = translated(statement);
    auto written = translation.written;
    auto sqls = reuseTempTables(translation.pieces, statement);
    // only the last piece of a statement yields its rows
    const auto origin = std::make_shared<const tsql::Statement>(tsql::Statement{statement.text, statement.line, statement.column, false, {}, {}});
    for (std::size_t i = 0; i < sqls.size(); ++i) {
        noteSchemaChange(sqls[i]);
        const bool last = i + 1 == sqls.size();
        if (last && statement.returnsRows && startsWith(sqls[i], "SELECT")) sqls[i] = executed(sqls[i], translation.tables, origin);
        queue(std::move(sqls[i]), origin, last && statement.returnsRows, last ? std::move(written) : std::vector<tsql::CatalogColumn>{});
    }
}

// A query the connection has run before is planned once: prepared on the server (PREPARE, in the
// same text as its first EXECUTE) the second time it comes, executed by name from then on. The
// server plans a report's statements anew on every run otherwise (2 ms of a 3 ms report). A
// prepared query whose tables this connection changed (or after a rollback or a reconnection) is
// deallocated and prepared again: it must not meet a table whose columns changed under it.
std::string PostgresDatabase::executed(const std::string& sql, const std::vector<std::string>& tables,
                                       const std::shared_ptr<const tsql::Statement>& origin) {
    constexpr std::size_t kAtMost = 200;
    auto& catalog = cacheOf(catalog_);
    if (const auto known = prepared_.find(sql); known != prepared_.end()) {
        if (catalog.unchangedSince(known->second.generation, known->second.tables)) return "EXECUTE " + known->second.name;
        queue("DEALLOCATE " + known->second.name, nullptr, false);
        prepared_.erase(known);
    } else if (seen_.size() > 5 * kAtMost) {
        seen_.clear();
    }
    if (++seen_[sql] < 2) return sql;
    if (prepared_.size() >= kAtMost) {
        queue("DEALLOCATE ALL", nullptr, false);
        prepared_.clear();
    }
    static std::atomic<long long> counter{0};
    const std::string name = "qx_query_" + std::to_string(++counter);
    queue("PREPARE " + name + " AS " + sql, origin, false);
    pending_.back().prepares = Prepared{name, tables, catalog.generation()};
    pending_.back().preparedSql = sql;
    return "EXECUTE " + name;
}

// Forgets the kept columns a schema change may have made wrong: the one temp table it names, or
// every table.
void PostgresDatabase::noteSchemaChange(const std::string& sql) {
    if (!catalog_ || !changesSchema(sql)) return;
    const std::string temp = tempTableChanged(sql);
    if (temp.empty()) cacheOf(catalog_).forget();
    else cacheOf(catalog_).forget(temp);
}

// Ends a failed transaction (a failing COMMIT has ended it already).
void PostgresDatabase::rollback() {
    beginPending_ = false;
    pending_.clear();
    buffered_ = {};
    if (PQstatus(conn_) == CONNECTION_OK && PQtransactionStatus(conn_) != PQTRANS_IDLE) Result done{PQexec(conn_, "ROLLBACK")};
    cacheOf(catalog_).forget();  // tables made in the transaction are gone, dropped ones back
    temps_ = committedTemps_;
}

ResultSet PostgresDatabase::runStatements(std::string_view tsqlBatch) {
    flush(false);
    ResultSet last;
    ResultSet* outer = std::exchange(produced_, &last);
    try {
        const auto statements = parsed(tsqlBatch);
        for (const auto& statement : *statements) runStatement(statement);
        flush(false);
    } catch (...) {
        produced_ = outer;
        throw;
    }
    produced_ = outer;
    return last;
}

namespace {

// Every row of the query is a sum already (each branch grouped or a template of TOP 0, or all
// this of the one derived table it reads): summing again would cost the server
// more (48,000 rows of the sales progress: 25-35 ms) than the few pairs it joins save on the
// connection.
bool rowsAreSumsAlready(const tsql::Query& query) {
    for (const auto& core : query.cores) {
        if (!core.groupBy.empty()) continue;
        if (core.top && core.top->kind == tsql::ExprKind::Number && core.top->text == "0") continue;
        if (core.from.size() == 1 && !core.where && core.from.front()->kind == tsql::TableRef::Kind::Derived &&
            core.from.front()->derived && rowsAreSumsAlready(*core.from.front()->derived))
            continue;
        return false;
    }
    return true;
}

}  // namespace

// A cross-tab hands its row source (56,000 lines for a year's purchases) to the client only to
// add them up per row key and column key: summed on the server, one row per cell crosses the
// connection. The query is the statement's own translation, described first (an unnamed prepared
// statement: parsed, not run) for its column types, then wrapped:
//   SELECT c1 COLLATE "C", c2, sum(c3) FROM (<query>) AS qx_rows (c1, c2, c3, …) GROUP BY 1, 2
// and run as any query (prepared on the server from its second run). Text keys compare byte for
// byte (under the shop's collation 'a' and 'A' would be one key); the sum keeps the type the
// values had (whole numbers stay whole). Keys other than text, whole numbers and dates, values
// other than numbers, a query reading a #temp table and one whose rows are sums already are
// handed over as they are (nullopt).
std::optional<ResultSet> PostgresDatabase::runSummed(std::string_view tsqlQuery, const SummedColumns& choose) {
    const auto statements = parsed(tsqlQuery);
    if (statements->size() != 1) return std::nullopt;
    const tsql::Statement& statement = statements->front();
    if (statement.procedure || !statement.returnsRows || !statement.tree || statement.tree->kind != tsql::StatementKind::Select ||
        !statement.tree->query || rowsAreSumsAlready(*statement.tree->query))
        return std::nullopt;
    flush(false);
    const Translation& translation = translated(statement);
    if (translation.pieces.size() != 1 || !startsWith(translation.pieces[0], "SELECT")) return std::nullopt;
    for (const auto& table : translation.tables)
        if (table.find('#') != std::string::npos) return std::nullopt;
    const std::string query = translation.pieces[0];
    const std::vector<std::string> tables = translation.tables;
    std::vector<std::string> names;
    for (const auto& column : translation.written) names.push_back(column.name);
    if (names.size() < 3) return std::nullopt;
    const auto [rowKey, columnKey, value] = choose(names);
    if (rowKey >= names.size() || columnKey >= names.size() || value >= names.size()) return std::nullopt;
    if (sameName(names[rowKey], names[columnKey]) || sameName(names[rowKey], names[value]) || sameName(names[columnKey], names[value]))
        return std::nullopt;

    openTransaction();
    Result prepared{PQprepare(conn_, "", query.c_str(), 0, nullptr)};
    if (PQresultStatus(prepared.r) != PGRES_COMMAND_OK) fail(prepared.r, query, &statement);
    Result shape{PQdescribePrepared(conn_, "")};
    if (PQresultStatus(shape.r) != PGRES_COMMAND_OK) fail(shape.r, query, &statement);
    if (PQnfields(shape.r) != static_cast<int>(names.size())) return std::nullopt;
    const auto typeOf = [&](std::size_t column) { return PQftype(shape.r, static_cast<int>(column)); };
    const auto key = [&](std::size_t column) -> std::optional<std::string> {
        const std::string name = "c" + std::to_string(column + 1);
        switch (typeOf(column)) {
            case kVarchar: case kText: return name + " COLLATE \"C\"";
            case kInt2: case kInt4: case kInt8: case kDate: case kTimestamp: return name;
            default: return std::nullopt;
        }
    };
    const auto rowKeyText = key(rowKey), columnKeyText = key(columnKey);
    if (!rowKeyText || !columnKeyText) return std::nullopt;
    std::string sum = "sum(c" + std::to_string(value + 1) + ")";
    switch (typeOf(value)) {
        case kInt2: case kInt4: break;  // a bigint
        case kInt8: sum += "::int8"; break;
        case kFloat4: case kFloat8: sum += "::float8"; break;
        case kNumeric: {
            // a DECIMAL(p,0) expression reads as whole numbers: so does its sum
            const int modifier = PQfmod(shape.r, static_cast<int>(value));
            if (modifier >= 4 && ((modifier - 4) & 0xffff) == 0 && PQftable(shape.r, static_cast<int>(value)) == InvalidOid)
                sum += "::numeric(1000,0)";
            break;
        }
        default: return std::nullopt;
    }
    std::string columns;
    for (std::size_t i = 0; i < names.size(); ++i) columns += (i ? ", c" : "c") + std::to_string(i + 1);
    const std::string sql = "SELECT " + *rowKeyText + ", " + *columnKeyText + ", " + sum + " FROM (" + query + ") AS qx_rows (" +
                            columns + ") GROUP BY 1, 2";

    ResultSet summed;
    ResultSet* outer = std::exchange(produced_, &summed);
    try {
        const auto origin = std::make_shared<const tsql::Statement>(tsql::Statement{statement.text, statement.line, statement.column, false, {}, {}});
        queue(executed(sql, tables, origin), origin, true);
        flush(false);
    } catch (...) {
        produced_ = outer;
        throw;
    }
    produced_ = outer;
    if (summed.columns.size() != 3) throw Error("the summed rows came back without their three columns", sql);
    summed.columns[0].name = names[rowKey];
    summed.columns[1].name = names[columnKey];
    summed.columns[2].name = names[value];
    return summed;
}

// Sends the batch's BEGIN now if no statement has taken it along yet.
void PostgresDatabase::openTransaction() {
    flush(false);
    if (!beginPending_) return;
    beginPending_ = false;
    runNative("BEGIN");
}

// One transaction per batch: the first failing statement rolls every earlier one back. The
// negative-stock guard is checked when the transaction commits (a deferred trigger), so its
// message comes from COMMIT. A maintenance batch turns the guards off for its transaction only.
// The batch's statements are translated one by one and sent together with its BEGIN and COMMIT
// in one round trip, unless something must be read from the server on the way (a table's columns
// the translator has not seen yet, a procedure).
ResultSet PostgresDatabase::runBatch(std::string_view tsqlBatch, bool maintenance) {
    // A batch the server cancelled to break a deadlock with another connection, or for a
    // serialization failure, left nothing behind: it runs again, a few times at most.
    constexpr int kAttempts = 4;
    reconnectIfLost();
    bool readAfresh = false;
    for (int attempt = 1;; ++attempt) {
        lastState_.clear();
        cacheOf(catalog_).unmark();
        beginPending_ = true;
        committed_ = false;
        pending_.clear();
        ResultSet last;
        ResultSet* outer = std::exchange(produced_, &last);
        try {
            if (maintenance) queue("SELECT set_config('qx.maintenance', 'on', true)", nullptr, false);
            const auto statements = parsed(tsqlBatch);
            for (const auto& statement : *statements) runStatement(statement);
            flush(true);
            if (!committed_) runNative("COMMIT");
            produced_ = outer;
            return last;
        } catch (const Error& e) {
            produced_ = outer;
            // a name or type the kept catalog may have got wrong: once more, read afresh
            const bool stale = cacheOf(catalog_).served() && !readAfresh &&
                               (dynamic_cast<const tsql::TranslationError*>(&e) || lastState_ == "42703" || lastState_ == "42P01" ||
                                lastState_ == "42804" || lastState_ == "42601" || lastState_ == "22P02" ||
                                lastState_ == "0A000");
            rollback();
            if (stale) {
                readAfresh = true;
                --attempt;
                continue;
            }
            const bool retryable = lastState_ == "40P01" || lastState_ == "40001";
            if (retryable && attempt < kAttempts) {
                ++retried_;
                continue;
            }
            if (retryable)
                throw Error("the batch collided with other terminals' work " + std::to_string(kAttempts) +
                                " times and was given up; nothing of it was kept (" + e.what() + ")",
                            e.statement(), e.line(), e.column());
            throw;
        } catch (...) {
            produced_ = outer;
            rollback();
            throw;
        }
    }
}

ResultSet PostgresDatabase::open(std::string_view tsqlBatch) { return runBatch(tsqlBatch); }

void PostgresDatabase::createShopTables() {
    std::string batch;
    for (const auto& file : tableDefinitions()) batch += file.text + "\n";
    runBatch(batch);
    // the rows once the tables exist (the translator reads the tables of a statement from the catalog)
    for (const auto& file : seedRows()) runBatch(file.text);
}

void PostgresDatabase::createShop(StartingRows rows) {
    runNative("BEGIN");
    try {
        for (const auto& file : tableDefinitions()) runStatements(file.text);
        if (rows == StartingRows::Included)
            for (const auto& file : seedRows()) runStatements(file.text);
        for (const auto& view : posting::tsqlViewStatements()) runStatements(view);
        for (const auto& file : viewDefinitions()) runStatements(file.text);
        for (const auto& trigger : posting::postgresTriggerStatements()) runNative(trigger);
        for (const auto& statement : procedures::closingSnapshotStatements(procedures::postgresDialect())) runNative(statement);
        markSchemaVersion();
        runNative("COMMIT");
    } catch (...) {
        rollback();
        throw;
    }
}

bool PostgresDatabase::hasShop() {
    return !runNative("SELECT 1 FROM pg_trigger WHERE tgname = 'qx_d1802_total' AND tgrelid = to_regclass('d1802')").rows.empty();
}

std::vector<const posting::SkuCompletion*> PostgresDatabase::missingSkuCompletions() {
    std::vector<const posting::SkuCompletion*> missing;
    for (const auto& completion : posting::skuCompletions()) {
        std::string name = completion.triggerName;
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (runNative("SELECT 1 FROM pg_trigger WHERE tgname = '" + name + "'").rows.empty()) missing.push_back(&completion);
    }
    return missing;
}

int PostgresDatabase::schemaVersion() {
    if (runNative("SELECT 1 WHERE to_regclass('qx_schema_version') IS NOT NULL").rows.empty()) return 0;
    const ResultSet mark = runNative("SELECT max(version)::int8 FROM qx_schema_version");
    if (mark.rows.empty() || !std::holds_alternative<std::int64_t>(mark.rows[0][0])) return 0;
    return static_cast<int>(std::get<std::int64_t>(mark.rows[0][0]));
}

// A view rather than a table: it goes wherever the shop's schema goes (a dump, a copy) and is no
// table a shop copy would look for in the file.
void PostgresDatabase::markSchemaVersion() {
    runNative("CREATE OR REPLACE VIEW qx_schema_version AS SELECT " + std::to_string(kSchemaVersion) + " AS version");
}

// The advisory lock key of the renewal (any number the shop's own code does not take).
constexpr long long kRenewalLock = 0x71785f636b;  // "qx_ck"

void PostgresDatabase::openShop() {
    const int version = schemaVersion();
    if (version > kSchemaVersion) throw Error(newerSchemaMessage(location_, version));
    if (version == kSchemaVersion) return;  // nothing to look at: the mark says what the shop has
    runNative("BEGIN");
    try {
        // terminals opening the same old shop at once: one renews, the others find the mark set
        runNative("SELECT pg_advisory_xact_lock(" + std::to_string(kRenewalLock) + ")");
        const int now = schemaVersion();
        if (now > kSchemaVersion) throw Error(newerSchemaMessage(location_, now));
        if (now < kSchemaVersion) renewGeneratedObjects();
        runNative("COMMIT");
    } catch (...) {
        rollback();
        throw;
    }
}

// Within the caller's transaction. The views go in the reverse of their creation order (a later
// one may read an earlier one; a view of the shop's own users on them makes this fail, keeping
// everything); dropping a trigger function drops its triggers with it. Tables, the snapshot table
// included, keep their rows.
void PostgresDatabase::renewGeneratedObjects() {
    const auto missing = missingSkuCompletions();
    std::vector<std::string> views = posting::tsqlViewStatements();
    for (const auto& file : viewDefinitions()) views.push_back(file.text);
    std::vector<std::string> functions = posting::postgresTriggerStatements();
    const auto snapshots = procedures::closingSnapshotStatements(procedures::postgresDialect());
    functions.insert(functions.end(), snapshots.begin(), snapshots.end());
    for (const auto& completion : posting::skuCompletions()) functions.push_back(completion.postgresTrigger);

    std::vector<std::string> viewNames;
    for (const auto& sql : views)
        for (const auto& name : createdNames(sql, "VIEW")) viewNames.push_back(name);
    for (auto name = viewNames.rbegin(); name != viewNames.rend(); ++name) runNative("DROP VIEW IF EXISTS " + *name);
    std::set<std::string> dropped;
    for (const auto& sql : functions)
        for (const auto& name : createdNames(sql, "OR REPLACE FUNCTION"))
            if (dropped.insert(name).second) runNative("DROP FUNCTION IF EXISTS " + name + " CASCADE");

    renewRuntime();
    renewTableColumns();
    for (const auto& view : posting::tsqlViewStatements()) runStatements(view);
    for (const auto& file : viewDefinitions()) runStatements(file.text);
    for (const auto& trigger : posting::postgresTriggerStatements()) runNative(trigger);
    for (const auto& statement : snapshots) runNative(statement);
    for (const auto* completion : missingSkuCompletions()) runNative(completion->postgresTrigger);
    for (const auto* completion : missing) runNative(completion->backfill);
    addMissingStartingRows();
    markSchemaVersion();
}

// Server shops made before a new shop got its starting rows (the reports' groupings) have none;
// they get them. A shop holding any grouping keeps its own.
void PostgresDatabase::addMissingStartingRows() {
    if (!runNative("SELECT 1 FROM sys_group LIMIT 1").rows.empty()) return;
    for (const auto& file : seedRows()) runStatements(file.text);
}

// The helper functions in this build's bodies (installRuntime() only adds missing ones). One
// whose result type changed is made anew; a helper something of the shop's own depends on then
// stops the renewal with the server's reason, leaving the shop as it was.
void PostgresDatabase::renewRuntime() {
    for (const auto& function : postgresRuntimeFunctions()) {
        const std::string head = "CREATE FUNCTION ";
        if (function.rfind(head, 0) != 0) continue;
        const std::string signature = function.substr(head.size(), function.find(')') + 1 - head.size());
        runNative("SAVEPOINT qx_helper");
        try {
            runNative("CREATE OR REPLACE FUNCTION " + function.substr(head.size()));
        } catch (const Error&) {
            runNative("ROLLBACK TO SAVEPOINT qx_helper");
            runNative("DROP FUNCTION " + signature);
            runNative(function);
        }
        runNative("RELEASE SAVEPOINT qx_helper");
    }
}

// The shop's tables as this build makes them where an older build made them otherwise: datetime
// columns to 1/300 s (they kept seconds), and the column marks the catalog reads back. Rows stay;
// a wider timestamp needs no rewrite of the table. The views are dropped by then.
void PostgresDatabase::renewTableColumns() {
    const tsql::Dialect& dialect = tsql::postgresDialect();
    for (const auto& file : tableDefinitions())
        for (const auto& statement : tsql::parseBatch(file.text)) {
            if (!statement.tree || statement.tree->kind != tsql::StatementKind::CreateTable) continue;
            const tsql::SyntaxTree& table = *statement.tree;
            for (const auto& column : table.columnDefs) {
                if (column.type.sqlType() == tsql::SqlType::DateTime)
                    runNative("ALTER TABLE " + dialect.tableReference(table.target) + " ALTER COLUMN " +
                              dialect.quoteIdentifier(column.name) + " TYPE " + dialect.columnType(column.type));
                for (const auto& mark : dialect.columnMarks(table.target, column.name, column.type)) runNative(mark);
            }
        }
}

void PostgresDatabase::execute(std::string_view tsqlBatch, const ExecOptions& options) { runBatch(tsqlBatch, options.maintenance); }

// The counter row of the function code and month is created or bumped in one statement; the row
// lock makes concurrent callers, in any process or on any host, wait for each other.
std::string PostgresDatabase::nextDocumentNumber(std::string_view funcNo) {
    reconnectIfLost();
    const std::string func(funcNo.substr(0, 3));
    const char* sql =
        "INSERT INTO sys_noid (func_no, period, seq) VALUES ($1, to_char(LOCALTIMESTAMP, 'YYMM'), 1) "
        "ON CONFLICT (func_no, period) DO UPDATE SET seq = sys_noid.seq + 1 RETURNING period, seq";
    const char* params[] = {func.c_str()};
    Result result{PQexecParams(conn_, sql, 1, nullptr, params, nullptr, nullptr, 0)};
    if (PQresultStatus(result.r) != PGRES_TUPLES_OK) throw Error("GetNOID: " + messageOf(result.r, conn_));
    return formatDocumentNumber(func, PQgetvalue(result.r, 0, 0), std::strtoll(PQgetvalue(result.r, 0, 1), nullptr, 10));
}

bool PostgresDatabase::maySummariseStocktake(std::string_view warehouse) {
    reconnectIfLost();
    const std::string wh(warehouse);
    const char* sql = "SELECT count(*) FROM d8303 WHERE t = 1 AND coalesce(y, 0) <> 1 AND (ck_id = $1 OR ck_id_in = $1)";
    const char* params[] = {wh.c_str()};
    Result result{PQexecParams(conn_, sql, 1, nullptr, params, nullptr, nullptr, 0)};
    if (PQresultStatus(result.r) != PGRES_TUPLES_OK) throw Error(messageOf(result.r, conn_));
    return std::strtoll(PQgetvalue(result.r, 0, 0), nullptr, 10) == 0;
}

void PostgresDatabase::readOneSnapshot() {
    if (!beginPending_) return;
    beginPending_ = false;
    runNative("BEGIN ISOLATION LEVEL REPEATABLE READ");
}

bool PostgresDatabase::setGuardsOff(bool off) {
    const ResultSet r = runNative("SELECT current_setting('qx.maintenance', true)");
    const bool previous = !r.rows.empty() && std::holds_alternative<std::string>(r.rows[0][0]) &&
                          std::get<std::string>(r.rows[0][0]) == "on";
    runNative(std::string("SELECT set_config('qx.maintenance', '") + (off ? "on" : "off") + "', true)");
    return previous;
}

// "?1", "?2" … (and bare "?", numbered in order) as PostgreSQL's "$1", "$2" …; quoted texts and
// names are left as they are.
std::string postgresPlaceholders(const std::string& sql) {
    std::string out;
    out.reserve(sql.size() + 8);
    int next = 0;
    char quote = 0;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (quote) {
            if (c == quote) quote = 0;
            out += c;
        } else if (c == '\'' || c == '"') {
            quote = c;
            out += c;
        } else if (c == '?') {
            std::size_t end = i + 1;
            while (end < sql.size() && sql[end] >= '0' && sql[end] <= '9') ++end;
            out += '$';
            out += end > i + 1 ? sql.substr(i + 1, end - i - 1) : std::to_string(++next);
            i = end - 1;
        } else {
            out += c;
        }
    }
    return out;
}

// A procedure's statement on the server, inside the batch's transaction. A query is read through
// a cursor of its own in slices (a report over a million lines never sits in memory whole); any
// other statement is prepared once and executed with each set of bound values. Values go as text
// and the server types them by where they stand.
class PostgresStatement final : public procedures::NativeStatement {
public:
    PostgresStatement(PostgresDatabase& db, const std::string& sql) : db_(db), sql_(postgresPlaceholders(sql)) {
        static std::atomic<long long> counter{0};
        name_ = "qx_procedure_" + std::to_string(++counter);
        std::size_t first = sql_.find_first_not_of(" \t\r\n(");
        std::string head = first == std::string::npos ? std::string() : sql_.substr(first, 6);
        for (auto& c : head) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        query_ = head == "SELECT" || head.rfind("WITH", 0) == 0;
        // INSERT INTO t VALUES (…) with its values all bound: rows are gathered and sent many at a time
        std::string upper = sql_;
        for (auto& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        const auto values = upper.rfind(" VALUES (");
        if (upper.rfind("INSERT INTO ", 0) == 0 && values != std::string::npos && upper.back() == ')' &&
            sql_.find('$') > values && upper.find("SELECT", values) == std::string::npos && upper.find("RETURNING") == std::string::npos &&
            upper.find(" ON CONFLICT") == std::string::npos) {
            head_ = sql_.substr(0, values + 8);
            tuple_ = sql_.substr(values + 8);
            for (std::size_t at = tuple_.find('$'); at != std::string::npos; at = tuple_.find('$', at + 1))
                params_ = std::max(params_, std::atoi(tuple_.c_str() + at + 1));
            batchable_ = params_ > 0 && tuple_.find('\'') == std::string::npos && tuple_.find('"') == std::string::npos;
        }
    }
    ~PostgresStatement() override {
        finish();
        if (prepared_ && PQtransactionStatus(db_.conn_) == PQTRANS_INTRANS) Result done{PQexec(db_.conn_, ("DEALLOCATE " + name_).c_str())};
    }

    void bind(int index, std::string_view value) override { slot(index) = std::string(value); }
    void bind(int index, std::int64_t value) override { slot(index) = std::to_string(value); }
    void bind(int index, double value) override {
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", value);
        slot(index) = text;
    }
    void bindNull(int index) override { slot(index).reset(); }

    bool step() override {
        if (batchable_) {
            values_.resize(static_cast<std::size_t>(params_));
            db_.bufferRow(sql_, head_, tuple_, params_, values_);
            return false;
        }
        if (!started_) {
            start();
            started_ = true;
            if (!query_) return false;
        }
        if (!query_) return false;
        if (++row_ < rows_) return true;
        if (exhausted_) return false;
        fetch();
        return row_ < rows_;
    }

    void reset(bool keepBindings) override {
        finish();
        started_ = false;
        if (!keepBindings) values_.clear();
    }

    std::string_view view(int column) const override {
        if (PQgetisnull(result_, row_, column)) return {};
        return {PQgetvalue(result_, row_, column), static_cast<std::size_t>(PQgetlength(result_, row_, column))};
    }
    std::int64_t integer(int column) const override {
        if (PQgetisnull(result_, row_, column)) return 0;
        const char* text = PQgetvalue(result_, row_, column);
        if (PQftype(result_, column) == kBool) return text[0] == 't' ? 1 : 0;
        char* end = nullptr;
        const long long value = std::strtoll(text, &end, 10);
        if (*end == '.' || *end == 'e' || *end == 'E') return static_cast<std::int64_t>(std::strtod(text, nullptr));
        return value;
    }
    double real(int column) const override {
        if (PQgetisnull(result_, row_, column)) return 0;
        const char* text = PQgetvalue(result_, row_, column);
        if (PQftype(result_, column) == kBool) return text[0] == 't' ? 1 : 0;
        return std::strtod(text, nullptr);
    }
    bool isNull(int column) const override { return PQgetisnull(result_, row_, column) != 0; }

private:
    static constexpr int kSlice = 8192;

    std::optional<std::string>& slot(int index) {
        if (index < 1) throw Error("procedure statement: parameter " + std::to_string(index), sql_);
        if (values_.size() < static_cast<std::size_t>(index)) values_.resize(static_cast<std::size_t>(index));
        return values_[static_cast<std::size_t>(index - 1)];
    }

    void start() {
        db_.openTransaction();  // its statements belong to the batch's transaction
        std::vector<const char*> values;
        values.reserve(values_.size());
        for (const auto& v : values_) values.push_back(v ? v->c_str() : nullptr);
        const int count = static_cast<int>(values.size());
        if (query_) {
            const std::string declare = "DECLARE " + name_ + " NO SCROLL CURSOR FOR " + sql_;
            Result r{db_.awaitResult(PQsendQueryParams(db_.conn_, declare.c_str(), count, nullptr, values.data(), nullptr, nullptr, 0))};
            if (PQresultStatus(r.r) != PGRES_COMMAND_OK) db_.fail(r.r, sql_, nullptr);
            open_ = true;
            exhausted_ = false;
            rows_ = 0;
            row_ = -1;
            return;
        }
        if (!prepared_) {
            Result r{db_.awaitResult(PQsendPrepare(db_.conn_, name_.c_str(), sql_.c_str(), 0, nullptr))};
            if (PQresultStatus(r.r) != PGRES_COMMAND_OK) db_.fail(r.r, sql_, nullptr);
            prepared_ = true;
        }
        Result r{db_.awaitResult(PQsendQueryPrepared(db_.conn_, name_.c_str(), count, values.data(), nullptr, nullptr, 0))};
        const auto status = PQresultStatus(r.r);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) db_.fail(r.r, sql_, nullptr);
    }

    void fetch() {
        db_.sendBufferedRows();
        clearResult();
        result_ = db_.awaitResult(PQsendQuery(db_.conn_, ("FETCH " + std::to_string(kSlice) + " FROM " + name_).c_str()));
        if (PQresultStatus(result_) != PGRES_TUPLES_OK) {
            Result failed{result_};
            result_ = nullptr;
            rows_ = 0;
            db_.fail(failed.r, sql_, nullptr);
        }
        rows_ = PQntuples(result_);
        row_ = 0;
        if (rows_ < kSlice) exhausted_ = true;
    }

    void clearResult() {
        if (result_) PQclear(result_);
        result_ = nullptr;
    }

    // Closes the cursor (quietly: in a failed transaction the rollback closes it).
    void finish() {
        clearResult();
        rows_ = 0;
        row_ = -1;
        if (open_ && PQtransactionStatus(db_.conn_) == PQTRANS_INTRANS) Result done{PQexec(db_.conn_, ("CLOSE " + name_).c_str())};
        open_ = false;
    }

    PostgresDatabase& db_;
    std::string sql_;
    std::string name_;
    bool query_ = false;
    bool prepared_ = false;
    bool started_ = false;
    bool open_ = false;
    bool exhausted_ = false;
    bool batchable_ = false;
    std::string head_, tuple_;  // a batchable INSERT: "INSERT INTO t VALUES " and "($1, $2)"
    int params_ = 0;
    std::vector<std::optional<std::string>> values_;
    PGresult* result_ = nullptr;
    int rows_ = 0;
    int row_ = -1;
};

namespace {

// "COPY t (a, b) FROM STDIN" for rows of "INSERT INTO t (a, b) VALUES ($1, $2)" written into a
// temp table of the connection (a procedure's own work table: no view, no rule in the way), each
// value bound to its column in order; "" for any other statement.
std::string copyCommand(const std::string& head, const std::string& tuple, int params) {
    const std::string insert = "INSERT INTO ", values = " VALUES ";
    if (head.size() <= insert.size() + values.size() || head.compare(head.size() - values.size(), values.size(), values) != 0) return {};
    std::string target = head.substr(insert.size(), head.size() - insert.size() - values.size());
    std::string lowered = target;
    for (auto& c : lowered) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lowered.rfind("pg_temp.", 0) != 0) return {};
    std::string expected = "(";
    for (int i = 1; i <= params; ++i) expected += (i > 1 ? ",$" : "$") + std::to_string(i);
    std::string compact;
    for (char c : tuple)
        if (!std::isspace(static_cast<unsigned char>(c))) compact += c;
    if (compact != expected + ")") return {};
    return "COPY " + target + " FROM STDIN";
}

// A value in COPY's text format: NULL as \N, the separators and the escape character escaped.
void appendCopyValue(std::string& out, const std::optional<std::string>& value) {
    if (!value) {
        out += "\\N";
        return;
    }
    appendCopyText(out, *value);
}

}  // namespace

// A procedure's rows for one INSERT … VALUES statement wait here and go as one multi-row INSERT
// (a cross-tab writes thousands of rows, each its own round trip otherwise) before anything else
// reaches the server: another statement, a query, the batch's queue, its COMMIT. Rows of another
// statement send those waiting first, so the server sees every row in the order written. A
// failing row fails the batch there, with the statement's text.
void PostgresDatabase::bufferRow(const std::string& sql, const std::string& head, const std::string& tuple, int params,
                                 const std::vector<std::optional<std::string>>& values) {
    constexpr std::size_t kAtMost = 30000;        // values per statement (the protocol allows 65,535)
    constexpr std::size_t kCopyAtMost = 1000000;  // values per COPY (no limit but the memory they take)
    if (buffered_.rows > 0 && buffered_.sql != sql) sendBufferedRows();
    if (beginPending_ || !pending_.empty()) openTransaction();
    if (buffered_.rows == 0) {
        buffered_.sql = sql;
        buffered_.head = head;
        buffered_.tuple = tuple;
        buffered_.params = params;
        buffered_.copy = copyCommand(head, tuple, params);
    }
    buffered_.values.insert(buffered_.values.end(), values.begin(), values.end());
    ++buffered_.rows;
    if (buffered_.values.size() + static_cast<std::size_t>(params) > (buffered_.copy.empty() ? kAtMost : kCopyAtMost)) sendBufferedRows();
}

// Rows into a procedure's temp table go by COPY: the server reads each value as text typed by
// its column, exactly as a bound value, without parsing and binding a statement of up to 30,000
// placeholders (a cross-tab's pivot of 6,823 rows of 34 values took 158 ms as eight such
// INSERTs).
void PostgresDatabase::copyBufferedRows(const BufferedRows& rows, const std::string& command) {
    Result started{PQexec(conn_, command.c_str())};
    if (PQresultStatus(started.r) != PGRES_COPY_IN) fail(started.r, rows.sql, nullptr);
    std::string data;
    constexpr std::size_t kChunk = 1 << 20;
    bool sent = true;
    for (int r = 0; r < rows.rows && sent; ++r) {
        for (int i = 0; i < rows.params; ++i) {
            if (i) data += '\t';
            appendCopyValue(data, rows.values[static_cast<std::size_t>(r * rows.params + i)]);
        }
        data += '\n';
        if (data.size() >= kChunk) {
            sent = PQputCopyData(conn_, data.data(), static_cast<int>(data.size())) == 1;
            data.clear();
        }
    }
    if (sent && !data.empty()) sent = PQputCopyData(conn_, data.data(), static_cast<int>(data.size())) == 1;
    PQputCopyEnd(conn_, sent ? nullptr : "the rows could not be sent");
    PGresult* failed = nullptr;
    while (PGresult* result = PQgetResult(conn_)) {
        if (PQresultStatus(result) != PGRES_COMMAND_OK && !failed) failed = result;
        else PQclear(result);
    }
    if (failed) {
        Result kept{failed};
        fail(kept.r, rows.sql, nullptr);
    }
}

void PostgresDatabase::sendBufferedRows() {
    if (buffered_.rows == 0) return;
    const BufferedRows rows = std::move(buffered_);
    buffered_ = {};
    if (!rows.copy.empty()) return copyBufferedRows(rows, rows.copy);
    std::string text = rows.head;
    for (int r = 0; r < rows.rows; ++r) {
        if (r) text += ", ";
        // the row's placeholders numbered after the rows before it
        for (std::size_t i = 0; i < rows.tuple.size(); ++i) {
            if (rows.tuple[i] != '$') {
                text += rows.tuple[i];
                continue;
            }
            std::size_t end = i + 1;
            while (end < rows.tuple.size() && std::isdigit(static_cast<unsigned char>(rows.tuple[end]))) ++end;
            text += '$' + std::to_string(std::atoi(rows.tuple.c_str() + i + 1) + r * rows.params);
            i = end - 1;
        }
    }
    std::vector<const char*> values;
    values.reserve(rows.values.size());
    for (const auto& v : rows.values) values.push_back(v ? v->c_str() : nullptr);
    Result result{PQexecParams(conn_, text.c_str(), static_cast<int>(values.size()), nullptr, values.data(), nullptr, nullptr, 0)};
    if (PQresultStatus(result.r) != PGRES_COMMAND_OK) fail(result.r, rows.sql, nullptr);
}

std::unique_ptr<procedures::NativeStatement> PostgresDatabase::prepareNative(const std::string& sql) {
    return std::make_unique<PostgresStatement>(*this, sql);
}

std::unique_ptr<Database> openPostgres(const std::string& connection) { return std::make_unique<PostgresDatabase>(connection); }

}  // namespace qx::db
