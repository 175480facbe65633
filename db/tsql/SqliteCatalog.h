#pragma once
// The translator's view of a live SQLite connection: tables and views of the main and temp
// schemas with their columns' types.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/tsql/Translator.h"

struct sqlite3_stmt;

namespace qx::tsql {

// The SqlType behind a declared column type as the SQLite emitter writes them
// ("VARCHAR(20) COLLATE QX", "INT", "REAL", "DATETIME TEXT") and as T-SQL spells them.
SqlType sqlTypeFromDeclaredType(std::string_view declaredType);
// Decimal places of a declared DECIMAL(p,s)/NUMERIC(p,s)/MONEY type; -1 for other types.
int decimalScaleOfDeclaredType(std::string_view declaredType);

class SqliteCatalog final : public Catalog {
public:
    explicit SqliteCatalog(sqlite3* db) : db_(db) {}
    ~SqliteCatalog() override;
    SqliteCatalog(const SqliteCatalog&) = delete;
    SqliteCatalog& operator=(const SqliteCatalog&) = delete;
    // "#name" looks in the temp schema; other names in main, then temp.
    std::optional<std::vector<CatalogColumn>> tableColumns(std::string_view name) const override;
    // The INTEGER PRIMARY KEY, and unique indexes (not partial) on NOT NULL columns whose text
    // columns compare under QX.
    std::vector<std::vector<std::string>> uniqueKeys(std::string_view name) const override;

private:
    std::optional<std::vector<CatalogColumn>> columnsIn(const char* schema, std::string_view table) const;
    // nullopt when the schema has no such table
    std::optional<std::vector<std::vector<std::string>>> keysIn(const char* schema, std::string_view table) const;
    sqlite3* db_;
    // the key lookups' statements, prepared once (a statement re-prepares itself after a schema change)
    mutable sqlite3_stmt* tableInfo_ = nullptr;
    mutable sqlite3_stmt* indexList_ = nullptr;
    mutable sqlite3_stmt* indexInfo_ = nullptr;
};

}  // namespace qx::tsql
