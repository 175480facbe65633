#include "db/tsql/SqliteCatalog.h"

#include <sqlite3.h>

#include <cstdlib>
#include <string>

#include "db/Database.h"
#include "db/tsql/Lexer.h"

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

}  // namespace qx::tsql
