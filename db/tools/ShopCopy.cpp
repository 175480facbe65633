#include "db/tools/ShopCopy.h"

#include <libpq-fe.h>
#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "db/CopyText.h"
#include "db/Database.h"
#include "db/postgres/PostgresDatabase.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::copy {
namespace {

using db::Error;

std::string lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string ident(const std::string& name) {
    std::string out = "\"";
    for (char c : name) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

std::string literal(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'') out += '\'';
        out += c;
    }
    return out + "'";
}

std::string shortest(double v) {
    if (std::isnan(v)) return "NaN";
    if (std::isinf(v)) return v > 0 ? "Infinity" : "-Infinity";
    char buffer[64];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, v);
    return std::string(buffer, r.ptr);
}

// ---- the server side: one plain libpq connection for the copy's transaction -------------------

struct PgResult {
    PGresult* r = nullptr;
    ~PgResult() { PQclear(r); }
};

std::string serverMessage(const PGresult* r, PGconn* conn) {
    std::string message;
    if (r && PQresultErrorField(r, PG_DIAG_MESSAGE_PRIMARY)) {
        message = PQresultErrorField(r, PG_DIAG_MESSAGE_PRIMARY);
        if (const char* detail = PQresultErrorField(r, PG_DIAG_MESSAGE_DETAIL)) message += std::string(" (") + detail + ")";
        if (const char* context = PQresultErrorField(r, PG_DIAG_CONTEXT)) message += std::string(", at ") + context;
    } else {
        message = PQerrorMessage(conn);
    }
    while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
    return message;
}

class Server {
public:
    explicit Server(const std::string& connection) : conn_(PQconnectdb(connection.c_str())) {
        if (PQstatus(conn_) != CONNECTION_OK) {
            const std::string message = serverMessage(nullptr, conn_);
            missing_ = message.find("database \"") != std::string::npos && message.find("does not exist") != std::string::npos;
            PQfinish(conn_);
            conn_ = nullptr;
            if (missing_) return;  // see missingDatabase()
            throw Error("cannot connect to the PostgreSQL server: " + message);
        }
        PQsetClientEncoding(conn_, "UTF8");
        run("SET client_min_messages = warning");
        run("SET datestyle = 'ISO, YMD'");
        run("SET extra_float_digits = 3");
    }
    ~Server() {
        if (conn_) PQfinish(conn_);
    }
    // The server answered that the named database does not exist (nothing else works then).
    bool missingDatabase() const { return missing_; }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Rows as text; a NULL is std::nullopt.
    using Row = std::vector<std::optional<std::string>>;
    std::vector<Row> run(const std::string& sql) {
        PgResult result{PQexec(conn_, sql.c_str())};
        const auto status = PQresultStatus(result.r);
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) throw Error(serverMessage(result.r, conn_), sql);
        std::vector<Row> rows;
        if (status != PGRES_TUPLES_OK) return rows;
        for (int r = 0; r < PQntuples(result.r); ++r) {
            Row row;
            for (int c = 0; c < PQnfields(result.r); ++c)
                row.push_back(PQgetisnull(result.r, r, c) ? std::nullopt : std::optional<std::string>(PQgetvalue(result.r, r, c)));
            rows.push_back(std::move(row));
        }
        return rows;
    }
    void rollback() { PgResult r{PQexec(conn_, "ROLLBACK")}; }
    PGconn* handle() const { return conn_; }

    void beginCopy(const std::string& sql) {
        PgResult result{PQexec(conn_, sql.c_str())};
        if (PQresultStatus(result.r) != PGRES_COPY_IN) throw Error(serverMessage(result.r, conn_), sql);
    }
    void send(std::string& buffer) {
        if (buffer.empty()) return;
        if (PQputCopyData(conn_, buffer.data(), static_cast<int>(buffer.size())) != 1)
            throw Error("the copy to the server broke off: " + serverMessage(nullptr, conn_));
        buffer.clear();
    }
    void endCopy(const std::string& table) {
        if (PQputCopyEnd(conn_, nullptr) != 1) throw Error("the copy to the server broke off: " + serverMessage(nullptr, conn_));
        std::string failure;
        while (PGresult* r = PQgetResult(conn_)) {
            if (PQresultStatus(r) != PGRES_COMMAND_OK && failure.empty()) failure = serverMessage(r, conn_);
            PQclear(r);
        }
        if (!failure.empty()) throw Error("the server refused a row of " + table + ": " + failure);
    }

private:
    PGconn* conn_;
    bool missing_ = false;
};

// The database a connection string names, and the same connection string naming the server's
// maintenance database instead.
std::pair<std::string, std::string> databaseAndMaintenance(const std::string& connection) {
    char* error = nullptr;
    PQconninfoOption* options = PQconninfoParse(connection.c_str(), &error);
    if (!options) {
        const std::string message = error ? error : "invalid connection string";
        PQfreemem(error);
        throw Error("cannot read the connection string: " + message);
    }
    std::string name, maintenance;
    for (PQconninfoOption* o = options; o->keyword; ++o) {
        if (!o->val) continue;
        const std::string keyword = o->keyword;
        if (keyword == "dbname") {
            name = o->val;
            continue;
        }
        std::string value;
        for (const char c : std::string(o->val)) value += c == '\\' || c == '\'' ? std::string("\\") + c : std::string(1, c);
        maintenance += keyword + "='" + value + "' ";
    }
    PQconninfoFree(options);
    return {name, maintenance + "dbname=postgres"};
}

// ---- tables and columns on both sides -------------------------------------------------------------

enum class Kind { Integer, Numeric, Float, Time, Text };

struct TargetColumn {
    std::string name;
    Kind kind = Kind::Text;
    int scale = 0;
    bool identity = false;
    bool boolean = false;  // a PostgreSQL boolean: 0/1 in the file
};

struct TargetTable {
    std::string name;
    std::vector<TargetColumn> columns;
};

std::map<std::string, TargetTable> targetTables(Server& server) {
    const auto rows = server.run(
        "SELECT c.relname, a.attname, t.typname, a.atttypmod, a.attidentity <> '' FROM pg_class c "
        "JOIN pg_namespace n ON n.oid = c.relnamespace JOIN pg_attribute a ON a.attrelid = c.oid "
        "JOIN pg_type t ON t.oid = a.atttypid WHERE n.nspname = current_schema() AND c.relkind IN ('r', 'p') "
        "AND a.attnum > 0 AND NOT a.attisdropped ORDER BY c.relname, a.attnum");
    std::map<std::string, TargetTable> tables;
    for (const auto& row : rows) {
        auto& table = tables[lower(*row[0])];
        table.name = *row[0];
        TargetColumn column;
        column.name = *row[1];
        const std::string& type = *row[2];
        if (type == "int2" || type == "int4" || type == "int8" || type == "bool") column.kind = Kind::Integer;
        else if (type == "numeric") {
            column.kind = Kind::Numeric;
            const int modifier = std::atoi(row[3]->c_str());
            column.scale = modifier >= 4 ? ((modifier - 4) & 0xffff) : 6;
        } else if (type == "float4" || type == "float8") column.kind = Kind::Float;
        else if (type == "timestamp" || type == "date" || type == "timestamptz") column.kind = Kind::Time;
        column.identity = *row[4] == "t";
        column.boolean = type == "bool";
        table.columns.push_back(column);
    }
    return tables;
}

// Tables and views of the server's schema whose names are tables of the shop file.
std::vector<std::string> existingShopRelations(Server& server, const std::vector<std::string>& shopTables) {
    std::set<std::string> wanted;
    for (const auto& t : shopTables) wanted.insert(lower(t));
    std::vector<std::string> found;
    for (const auto& row : server.run("SELECT c.relname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                                      "WHERE n.nspname = current_schema() AND c.relkind IN ('r', 'p', 'v', 'm') ORDER BY 1"))
        if (wanted.count(lower(*row[0]))) found.push_back(*row[0]);
    return found;
}

// Relations and functions of the server's schema, by a text that DROP takes.
struct Objects {
    std::set<std::string> views, tables, sequences, functions;
};

Objects schemaObjects(Server& server) {
    Objects objects;
    for (const auto& row : server.run("SELECT c.relkind, c.oid::regclass::text FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                                      "WHERE n.nspname = current_schema() AND c.relkind IN ('r', 'p', 'v', 'm', 'S')")) {
        const std::string& kind = *row[0];
        if (kind == "v" || kind == "m") objects.views.insert(kind == "m" ? "MATERIALIZED VIEW " + *row[1] : "VIEW " + *row[1]);
        else if (kind == "S") objects.sequences.insert(*row[1]);
        else objects.tables.insert(*row[1]);
    }
    for (const auto& row : server.run("SELECT p.oid::regprocedure::text FROM pg_proc p JOIN pg_namespace n ON n.oid = p.pronamespace "
                                      "WHERE n.nspname = current_schema() AND p.prokind IN ('f', 'p')"))
        objects.functions.insert(*row[0]);
    return objects;
}

// Drops what `now` has beyond `before` (everything the failed copy created), in one transaction.
void dropNewObjects(Server& server, const Objects& before) {
    const Objects now = schemaObjects(server);
    server.run("BEGIN");
    try {
        for (const auto& v : now.views)
            if (!before.views.count(v)) server.run("DROP " + v.substr(0, v.rfind(' ')) + " IF EXISTS" + v.substr(v.rfind(' ')) + " CASCADE");
        for (const auto& t : now.tables)
            if (!before.tables.count(t)) server.run("DROP TABLE IF EXISTS " + t + " CASCADE");
        for (const auto& s : now.sequences)
            if (!before.sequences.count(s)) server.run("DROP SEQUENCE IF EXISTS " + s + " CASCADE");
        for (const auto& f : now.functions)
            if (!before.functions.count(f)) server.run("DROP ROUTINE IF EXISTS " + f + " CASCADE");
        server.run("COMMIT");
    } catch (const Error&) {
        server.rollback();
        throw;
    }
}

struct SourceTable {
    std::string name;
    std::vector<std::string> columns;
};

class Statement {
public:
    Statement(sqlite3* db, const std::string& sql) {
        if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt_, nullptr) != SQLITE_OK)
            throw Error(std::string("the shop file cannot be read: ") + sqlite3_errmsg(db), sql);
    }
    ~Statement() { sqlite3_finalize(stmt_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    bool step() {
        const int rc = sqlite3_step(stmt_);
        if (rc == SQLITE_ROW) return true;
        if (rc == SQLITE_DONE) return false;
        throw Error(std::string("the shop file cannot be read: ") + sqlite3_errmsg(sqlite3_db_handle(stmt_)));
    }
    sqlite3_stmt* get() const { return stmt_; }

private:
    sqlite3_stmt* stmt_ = nullptr;
};

std::vector<SourceTable> sourceTables(sqlite3* db) {
    std::vector<SourceTable> tables;
    Statement list(db, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name");
    while (list.step()) tables.push_back({reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 0)), {}});
    for (auto& table : tables) {
        Statement info(db, "PRAGMA table_info(" + ident(table.name) + ")");
        while (info.step()) table.columns.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(info.get(), 1)));
    }
    return tables;
}

long long sqliteSequence(sqlite3* db, const std::string& table) {
    Statement exists(db, "SELECT 1 FROM sqlite_master WHERE name = 'sqlite_sequence'");
    if (!exists.step()) return 0;
    Statement seq(db, "SELECT seq FROM sqlite_sequence WHERE name = " + literal(table) + " COLLATE NOCASE");
    return seq.step() ? sqlite3_column_int64(seq.get(), 0) : 0;
}

// One column of a copied table: its name on either side and its kind on the server.
struct Pair {
    std::string source;
    TargetColumn target;
};

struct Plan {
    std::string source;
    std::string target;
    std::vector<Pair> columns;
};

// The value as the COPY text format spells it.
void appendValue(std::string& out, sqlite3_stmt* stmt, int i, const TargetColumn& column, const std::string& table) {
    switch (sqlite3_column_type(stmt, i)) {
    case SQLITE_NULL:
        out += "\\N";
        return;
    case SQLITE_INTEGER:
        if (column.kind != Kind::Text) {
            out += std::to_string(sqlite3_column_int64(stmt, i));
            return;
        }
        break;
    case SQLITE_FLOAT: {
        const double v = sqlite3_column_double(stmt, i);
        if (column.kind == Kind::Integer && std::trunc(v) == v && std::fabs(v) < 9.2e18) {
            out += std::to_string(static_cast<long long>(v));
            return;
        }
        if (column.kind != Kind::Text) {
            out += shortest(v);
            return;
        }
        break;
    }
    case SQLITE_BLOB:
        throw Error("table " + table + ", column " + column.name + " holds binary data, which the server's column cannot take");
    default:
        break;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
    int size = sqlite3_column_bytes(stmt, i);
    // The server's shop keeps its texts without trailing blanks (they count in its comparisons,
    // not in SQL Server's), so a copied text loses them as a text written there does.
    if (column.kind == Kind::Text)
        while (size > 0 && text[size - 1] == ' ') --size;
    qx::db::appendCopyText(out, std::string_view(text, static_cast<std::size_t>(size)));
}

long long copyTable(Server& server, sqlite3* db, const Plan& plan) {
    std::string names, selected;
    for (const auto& c : plan.columns) {
        names += (names.empty() ? "" : ", ") + ident(c.target.name);
        selected += (selected.empty() ? "" : ", ") + ident(c.source);
    }
    Statement rows(db, "SELECT " + selected + " FROM " + ident(plan.source));
    server.beginCopy("COPY " + ident(plan.target) + " (" + names + ") FROM STDIN");
    std::string buffer;
    long long count = 0;
    try {
        while (rows.step()) {
            for (std::size_t i = 0; i < plan.columns.size(); ++i) {
                if (i) buffer += '\t';
                appendValue(buffer, rows.get(), static_cast<int>(i), plan.columns[i].target, plan.target);
            }
            buffer += '\n';
            ++count;
            if (buffer.size() >= (1u << 20)) server.send(buffer);
        }
        server.send(buffer);
    } catch (const Error&) {
        PQputCopyEnd(server.handle(), "the copy was abandoned");  // the caller rolls back
        while (PGresult* r = PQgetResult(server.handle())) PQclear(r);
        throw;
    }
    server.endCopy(plan.target);
    return count;
}

// ---- comparing both sides ----------------------------------------------------------------------

bool close(double a, double b) { return std::fabs(a - b) <= 1e-6 + 1e-9 * std::max(std::fabs(a), std::fabs(b)); }

// Row count, the sum of every number column (rounded as the server keeps it), the total length
// of every text column without its trailing blanks and count and sum of every date column.
void compareSums(Server& server, sqlite3* db, const Plan& plan) {
    std::string sqliteSql = "SELECT count(*)", serverSql = "SELECT count(*)::float8";
    std::vector<std::string> what = {"row count"};
    for (const auto& c : plan.columns) {
        const std::string s = ident(c.source), t = ident(c.target.name);
        switch (c.target.kind) {
        case Kind::Integer:
        case Kind::Float:
            sqliteSql += ", total(" + s + ")";
            serverSql += ", coalesce(sum(" + t + (c.target.boolean ? "::int" : "") + "::float8), 0)";
            what.push_back("sum of " + c.target.name);
            break;
        case Kind::Numeric:
            sqliteSql += ", total(round(" + s + ", " + std::to_string(c.target.scale) + "))";
            serverSql += ", coalesce(sum(" + t + "), 0)::float8";
            what.push_back("sum of " + c.target.name);
            break;
        case Kind::Time:
            sqliteSql += ", count(" + s + "), total(CAST(strftime('%s', " + s + ") AS INTEGER))";
            serverSql += ", count(" + t + ")::float8, coalesce(sum(extract(epoch FROM " + t + ")), 0)::float8";
            what.push_back("dates in " + c.target.name);
            what.push_back("sum of the dates in " + c.target.name);
            break;
        case Kind::Text:
            sqliteSql += ", total(length(rtrim(" + s + ", ' ')))";
            serverSql += ", coalesce(sum(length(" + t + ")), 0)::float8";
            what.push_back("length of the texts in " + c.target.name);
            break;
        }
    }
    Statement source(db, sqliteSql + " FROM " + ident(plan.source));
    source.step();
    const auto target = server.run(serverSql + " FROM " + ident(plan.target)).at(0);
    for (std::size_t i = 0; i < what.size(); ++i) {
        const double a = sqlite3_column_double(source.get(), static_cast<int>(i));
        const double b = std::strtod(target.at(i).value_or("0").c_str(), nullptr);
        if (!close(a, b))
            throw Error("the copy of " + plan.target + " differs from the file: " + what[i] + " is " + shortest(b) + " on the server, " +
                        shortest(a) + " in the file");
    }
}

std::string timeText(std::string t) {
    if (t.size() == 10) t += " 00:00:00";
    return t;
}

// Every row of the table, side by side (the stock rows and the number counters).
void compareRows(Server& server, sqlite3* db, const Plan& plan) {
    struct Row {
        std::string key;
        std::vector<std::optional<double>> numbers;
    };
    const auto build = [&](auto&& valueAt, std::vector<Row>& out, std::size_t n) {
        for (std::size_t r = 0; r < n; ++r) {
            Row row;
            for (std::size_t i = 0; i < plan.columns.size(); ++i) {
                std::optional<std::string> v = valueAt(r, i);
                if (v && plan.columns[i].target.boolean && (*v == "t" || *v == "f")) v = *v == "t" ? "1" : "0";
                const Kind kind = plan.columns[i].target.kind;
                if (kind == Kind::Numeric || kind == Kind::Float)
                    row.numbers.push_back(v ? std::optional<double>(std::strtod(v->c_str(), nullptr)) : std::nullopt);
                else
                    row.key += (v ? (kind == Kind::Time ? timeText(*v) : *v) : std::string("\\N")) + '\x1f';
            }
            out.push_back(std::move(row));
        }
    };
    std::string selected, names;
    for (const auto& c : plan.columns) {
        selected += (selected.empty() ? "" : ", ") + ident(c.source);
        names += (names.empty() ? "" : ", ") + ident(c.target.name);
    }
    std::vector<std::vector<std::optional<std::string>>> fileRows;
    Statement source(db, "SELECT " + selected + " FROM " + ident(plan.source));
    while (source.step()) {
        std::vector<std::optional<std::string>> row;
        for (std::size_t i = 0; i < plan.columns.size(); ++i) {
            sqlite3_stmt* s = source.get();
            const int k = static_cast<int>(i);
            const int type = sqlite3_column_type(s, k);
            if (type == SQLITE_NULL) row.emplace_back(std::nullopt);
            else if (type == SQLITE_FLOAT && plan.columns[i].target.kind == Kind::Integer)
                row.emplace_back(std::to_string(static_cast<long long>(sqlite3_column_double(s, k))));
            else if (type == SQLITE_FLOAT) row.emplace_back(shortest(sqlite3_column_double(s, k)));
            else {
                std::string text(reinterpret_cast<const char*>(sqlite3_column_text(s, k)), sqlite3_column_bytes(s, k));
                if (plan.columns[i].target.kind == Kind::Text)
                    while (!text.empty() && text.back() == ' ') text.pop_back();
                row.emplace_back(std::move(text));
            }
        }
        fileRows.push_back(std::move(row));
    }
    const auto serverRows = server.run("SELECT " + names + " FROM " + ident(plan.target));
    std::vector<Row> a, b;
    build([&](std::size_t r, std::size_t i) { return fileRows[r][i]; }, a, fileRows.size());
    build([&](std::size_t r, std::size_t i) { return serverRows[r][i]; }, b, serverRows.size());
    const auto order = [](const Row& x, const Row& y) { return x.key < y.key; };
    std::sort(a.begin(), a.end(), order);
    std::sort(b.begin(), b.end(), order);
    if (a.size() != b.size())
        throw Error("the copy of " + plan.target + " has " + std::to_string(b.size()) + " rows, the file " + std::to_string(a.size()));
    for (std::size_t r = 0; r < a.size(); ++r) {
        bool same = a[r].key == b[r].key;
        for (std::size_t i = 0; same && i < a[r].numbers.size(); ++i) {
            const auto& x = a[r].numbers[i];
            const auto& y = b[r].numbers[i];
            same = x.has_value() == y.has_value() && (!x || close(*x, *y));
        }
        if (!same) {
            std::string shown = a[r].key;
            std::replace(shown.begin(), shown.end(), '\x1f', ' ');
            throw Error("the copy of " + plan.target + " differs from the file in the row " + shown);
        }
    }
}

std::string seconds(std::chrono::steady_clock::time_point since) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f s", std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count());
    return text;
}

bool comparedRowByRow(const std::string& table) {
    const std::string t = lower(table);
    return t == "d1802" || t == "sys_noid";
}

}  // namespace

CopyReport copyShop(const std::string& sqlitePath, const std::string& target, const CopyOptions& options) {
    const auto started = std::chrono::steady_clock::now();
    const auto say = [&](const std::string& line) {
        if (options.progress) options.progress(line);
    };
    CopyReport report;

    db::SqliteDatabase file(sqlitePath, false);
    sqlite3* source = file.handle();
    const auto tables = sourceTables(source);
    if (std::none_of(tables.begin(), tables.end(), [](const SourceTable& t) { return lower(t.name) == "sys_noid"; }))
        throw Error(sqlitePath + " is not a shop database (it has no number counters)");

    std::unique_ptr<Server> connection = std::make_unique<Server>(target);
    if (connection->missingDatabase()) {
        // a shop moving to a server it has never been on: its database is made first
        const auto [name, maintenance] = databaseAndMaintenance(target);
        Server admin(maintenance);
        if (admin.missingDatabase()) throw Error("cannot connect to the PostgreSQL server: neither " + name + " nor postgres exists");
        admin.run("CREATE DATABASE " + ident(name) + " TEMPLATE template0 ENCODING 'UTF8'");
        say("created the database " + name);
        connection = std::make_unique<Server>(target);
        if (connection->missingDatabase()) throw Error("cannot connect to the PostgreSQL server: the database " + name + " does not exist");
    }
    Server& server = *connection;
    std::vector<std::string> shopTables;
    for (const auto& t : tables) shopTables.push_back(t.name);
    const auto existing = existingShopRelations(server, shopTables);
    if (!existing.empty() && !options.replace)
        throw Error("the target database already holds a shop (" + std::to_string(existing.size()) + " of its tables, " + existing.front() +
                    " among them); nothing was copied. Use --replace to overwrite it");
    if (!existing.empty()) {
        // every table and view of the schema goes, the number counters and stock rows included
        const Objects old = schemaObjects(server);
        server.run("BEGIN");
        try {
            for (const auto& v : old.views) server.run("DROP " + v.substr(0, v.rfind(' ')) + " IF EXISTS" + v.substr(v.rfind(' ')) + " CASCADE");
            for (const auto& t : old.tables) server.run("DROP TABLE IF EXISTS " + t + " CASCADE");
            server.run("COMMIT");
        } catch (const Error&) {
            server.rollback();
            throw;
        }
        say("removed the shop the target held (" + std::to_string(old.tables.size()) + " tables)");
    }

    const auto creating = std::chrono::steady_clock::now();
    db::PostgresDatabase shop(target);  // creates the collation and helpers a shop needs
    const Objects before = schemaObjects(server);
    try {
        // tables, views, posting triggers and guards; the triggers are off while rows arrive, and
        // the rows a new shop starts with come from the file like every other row
        shop.createShop(db::PostgresDatabase::StartingRows::Left);
        if (options.tablesCreated) options.tablesCreated(shop);
        say("created the shop (" + seconds(creating) + ")");

        // the file's snapshot: what is read below is one state of the shop
        file.runNative("BEGIN");
        server.run("BEGIN");
        const auto serverTables = targetTables(server);
        std::vector<Plan> plans;
        for (const auto& t : tables) {
            const auto found = serverTables.find(lower(t.name));
            if (found == serverTables.end()) {
                Statement count(source, "SELECT count(*) FROM " + ident(t.name));
                count.step();
                const long long n = sqlite3_column_int64(count.get(), 0);
                if (n > 0) report.skipped.push_back(t.name + " (" + std::to_string(n) + " rows)");
                continue;
            }
            Plan plan{t.name, found->second.name, {}};
            for (const auto& column : t.columns) {
                const auto& targetColumns = found->second.columns;
                const auto match = std::find_if(targetColumns.begin(), targetColumns.end(),
                                                [&](const TargetColumn& c) { return lower(c.name) == lower(column); });
                if (match == targetColumns.end())
                    throw Error("the server's table " + plan.target + " has no column " + column + "; nothing was copied");
                plan.columns.push_back({column, *match});
            }
            plans.push_back(std::move(plan));
        }

        // rows go in as they are: no trigger of the server posts them again
        std::string list;
        for (const auto& p : plans) list += (list.empty() ? "" : ", ") + ident(p.target);
        struct Trigger {
            std::string table, name, mode;
        };
        std::vector<Trigger> triggers;
        for (const auto& p : plans)
            for (const auto& row : server.run("SELECT tgname, tgenabled::text FROM pg_trigger WHERE tgrelid = " + literal(ident(p.target)) +
                                              "::regclass AND NOT tgisinternal AND tgenabled <> 'D'"))
                triggers.push_back({p.target, *row[0], *row[1] == "A" ? "ALWAYS " : *row[1] == "R" ? "REPLICA " : ""});
        for (const auto& t : triggers) server.run("ALTER TABLE " + ident(t.table) + " DISABLE TRIGGER " + ident(t.name));
        if (!list.empty()) server.run("TRUNCATE " + list);  // the rows a new shop starts with: the file has its own

        const auto copying = std::chrono::steady_clock::now();
        for (const auto& plan : plans) {
            const auto tableStarted = std::chrono::steady_clock::now();
            const long long rows = copyTable(server, source, plan);
            for (const auto& c : plan.columns) {
                if (!c.target.identity) continue;
                const auto max = server.run("SELECT max(" + ident(c.target.name) + ") FROM " + ident(plan.target)).at(0).at(0);
                const long long next = std::max(max ? std::atoll(max->c_str()) : 0, sqliteSequence(source, plan.source));
                if (next > 0)
                    server.run("SELECT setval(pg_get_serial_sequence(" + literal(ident(plan.target)) + ", " + literal(c.target.name) +
                               "), " + std::to_string(next) + ")");
            }
            report.tables.push_back({plan.target, rows});
            report.rows += rows;
            say(plan.target + ": " + std::to_string(rows) + " rows (" + seconds(tableStarted) + ")");
        }
        say("copied " + std::to_string(report.rows) + " rows (" + seconds(copying) + ")");
        for (const auto& t : triggers) server.run("ALTER TABLE " + ident(t.table) + " ENABLE " + t.mode + "TRIGGER " + ident(t.name));

        const auto comparing = std::chrono::steady_clock::now();
        for (const auto& plan : plans) {
            compareSums(server, source, plan);
            if (comparedRowByRow(plan.target)) compareRows(server, source, plan);
        }
        say("compared both sides (" + seconds(comparing) + ")");
        server.run("COMMIT");
        file.runNative("COMMIT");
    } catch (...) {
        server.rollback();
        try {
            file.runNative("ROLLBACK");
        } catch (const Error&) {
        }
        try {
            dropNewObjects(server, before);  // the tables made for the copy go again
        } catch (const Error&) {
        }
        throw;
    }
    for (const auto& s : report.skipped) say("not copied, the server has no such table: " + s);
    report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    return report;
}

}  // namespace qx::copy
