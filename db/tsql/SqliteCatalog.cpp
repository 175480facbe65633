#include "db/tsql/SqliteCatalog.h"

#include <sqlite3.h>

#include <cstdlib>
#include <map>
#include <string>

#include "db/Database.h"
#include "db/tsql/Lexer.h"
#include "db/tsql/SqliteRuntime.h"

namespace qx::tsql {

SqlType sqlTypeFromDeclaredType(std::string_view declaredType) {
    const std::string t = toUpper(declaredType);
    auto has = [&](const char* word) { return t.find(word) != std::string::npos; };
    if (has("DATE") || has("TIME")) return SqlType::DateTime;
    if (has("INT") || has("BIT")) return SqlType::Integer;
    if (has("CHAR") || has("CLOB") || has("TEXT")) return SqlType::Text;
    if (has("REAL") || has("FLOA") || has("DOUB") || has("DEC") || has("NUM") || has("MONEY")) return SqlType::Real;
    return SqlType::Unknown;
}

int decimalScaleOfDeclaredType(std::string_view declaredType) {
    const std::string t = toUpper(declaredType);
    if (t.find("MONEY") != std::string::npos) return 4;
    const std::size_t at = t.find("DEC") != std::string::npos ? t.find("DEC") : t.find("NUMERIC");
    if (at == std::string::npos) return -1;
    const std::size_t open = t.find('(', at);
    if (open == std::string::npos) return 0;
    const std::size_t comma = t.find(',', open);
    if (comma == std::string::npos) return 0;
    return std::atoi(t.c_str() + comma + 1);
}

std::optional<std::vector<CatalogColumn>> SqliteCatalog::columnsIn(const char* schema, std::string_view table) const {
    sqlite3_stmt* statement = nullptr;
    const std::string sql = std::string("SELECT name, type, pk FROM pragma_table_info(?1, ?2)");
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        throw qx::db::Error(std::string("cannot read the table list: ") + sqlite3_errmsg(db_));
    sqlite3_bind_text(statement, 1, table.data(), static_cast<int>(table.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(statement, 2, schema, -1, SQLITE_STATIC);
    std::vector<CatalogColumn> columns;
    int primaryKeyColumns = 0;
    int integerKeyIndex = -1;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        CatalogColumn column;
        column.name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        const char* declared = reinterpret_cast<const char*>(sqlite3_column_text(statement, 1));
        const std::string declaredType = declared ? declared : "";
        column.type = sqlTypeFromDeclaredType(declaredType);
        column.scale = decimalScaleOfDeclaredType(declaredType);
        column.money = toUpper(declaredType).find("MONEY") != std::string::npos;
        column.bigint = toUpper(declaredType) == "BIGINT";
        if (sqlite3_column_int(statement, 2) > 0) {
            ++primaryKeyColumns;
            if (toUpper(declaredType) == "INTEGER") integerKeyIndex = static_cast<int>(columns.size());
        }
        columns.push_back(std::move(column));
    }
    sqlite3_finalize(statement);
    if (columns.empty()) return std::nullopt;
    // An INTEGER PRIMARY KEY numbers the rows itself: that is how an IDENTITY column is emitted.
    if (primaryKeyColumns == 1 && integerKeyIndex >= 0) columns[static_cast<std::size_t>(integerKeyIndex)].identity = true;
    return columns;
}

std::optional<std::vector<CatalogColumn>> SqliteCatalog::tableColumns(std::string_view name) const {
    if (!name.empty() && name.front() == '#') return columnsIn("temp", sqliteTempTableName(name));
    if (auto columns = columnsIn("main", name)) return columns;
    return columnsIn("temp", name);
}

SqliteCatalog::~SqliteCatalog() {
    for (sqlite3_stmt* statement : {tableInfo_, indexList_, indexInfo_}) sqlite3_finalize(statement);
}

std::optional<std::vector<std::vector<std::string>>> SqliteCatalog::keysIn(const char* schema, std::string_view table) const {
    auto start = [&](sqlite3_stmt*& statement, const char* sql, std::string_view first) {
        if (!statement && sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK)
            throw qx::db::Error(std::string("cannot read the keys of a table: ") + sqlite3_errmsg(db_));
        sqlite3_reset(statement);
        sqlite3_bind_text(statement, 1, first.data(), static_cast<int>(first.size()), SQLITE_TRANSIENT);
        sqlite3_bind_text(statement, 2, schema, -1, SQLITE_STATIC);
        return statement;
    };
    struct Reset {
        sqlite3_stmt* statement;
        ~Reset() { sqlite3_reset(statement); }
    };
    auto text = [](sqlite3_stmt* st, int i) {
        const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
        return std::string(t ? t : "");
    };
    // column name -> (NOT NULL, text)
    std::map<std::string, std::pair<bool, bool>> columns;
    std::vector<std::vector<std::string>> keys;
    {
        sqlite3_stmt* st = start(tableInfo_, "SELECT name, type, \"notnull\", pk FROM pragma_table_info(?1, ?2)", table);
        Reset reset{st};
        std::vector<std::string> integerKey;
        int keyColumns = 0;
        while (sqlite3_step(st) == SQLITE_ROW) {
            const std::string name = text(st, 0), declared = toUpper(text(st, 1));
            columns[toUpper(name)] = {sqlite3_column_int(st, 2) != 0, sqlTypeFromDeclaredType(declared) == SqlType::Text};
            if (sqlite3_column_int(st, 3) > 0) {
                ++keyColumns;
                if (declared == "INTEGER") integerKey.push_back(name);
            }
        }
        if (columns.empty()) return std::nullopt;
        // the row number itself: never NULL
        if (keyColumns == 1 && integerKey.size() == 1) keys.push_back(integerKey);
    }
    std::vector<std::string> indexes;
    {
        sqlite3_stmt* st = start(indexList_, "SELECT name FROM pragma_index_list(?1, ?2) WHERE \"unique\" = 1 AND partial = 0", table);
        Reset reset{st};
        while (sqlite3_step(st) == SQLITE_ROW) indexes.push_back(text(st, 0));
    }
    for (const auto& index : indexes) {
        sqlite3_stmt* st = start(indexInfo_, "SELECT name, coll FROM pragma_index_xinfo(?1, ?2) WHERE key = 1", index);
        Reset reset{st};
        std::vector<std::string> key;
        bool usable = true;
        while (sqlite3_step(st) == SQLITE_ROW) {
            const std::string name = text(st, 0);
            const auto column = columns.find(toUpper(name));
            // an expression, a column that may be NULL, a text compared otherwise than by QX
            if (name.empty() || column == columns.end() || !column->second.first ||
                (column->second.second && toUpper(text(st, 1)) != toUpper(kSqliteCollation)))
                usable = false;
            key.push_back(name);
        }
        if (usable && !key.empty()) keys.push_back(std::move(key));
    }
    return keys;
}

std::vector<std::vector<std::string>> SqliteCatalog::uniqueKeys(std::string_view name) const {
    if (!name.empty() && name.front() == '#') return keysIn("temp", sqliteTempTableName(name)).value_or(std::vector<std::vector<std::string>>{});
    if (auto keys = keysIn("main", name)) return *keys;
    return keysIn("temp", name).value_or(std::vector<std::vector<std::string>>{});
}

}  // namespace qx::tsql
