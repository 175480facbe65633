#include "db/tsql/Translator.h"

#include "db/tsql/Ast.h"
#include "db/tsql/Dialect.h"
#include "db/tsql/Emitter.h"
#include "db/tsql/Parser.h"

namespace qx::tsql {

std::vector<Statement> parseBatch(std::string_view tsql) { return parseStatements(tsql); }

std::vector<std::string> emitSqlite(const Statement& statement, const Catalog& catalog) {
    return emitStatement(statement, catalog, sqliteDialect());
}

std::vector<CatalogColumn> resultColumns(const Statement& statement, const Catalog& catalog) {
    return describeResult(statement, catalog, sqliteDialect());
}

std::vector<std::string> emitPostgres(const Statement& statement, const Catalog& catalog) {
    return emitStatement(statement, catalog, postgresDialect());
}

std::vector<CatalogColumn> resultColumnsPostgres(const Statement& statement, const Catalog& catalog) {
    return describeResult(statement, catalog, postgresDialect());
}

std::string sqliteTempTableName(std::string_view tsqlName) {
    // '[#phb]' and '#phb' name the same table; it lives in SQLite's per-connection temp schema
    // under its T-SQL name, so "#T" can never meet a permanent table.
    if (tsqlName.size() >= 2 && tsqlName.front() == '[' && tsqlName.back() == ']') tsqlName = tsqlName.substr(1, tsqlName.size() - 2);
    return std::string(tsqlName);
}

}  // namespace qx::tsql
