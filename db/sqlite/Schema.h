#pragma once
// The shop database's table and view definitions (T-SQL, frame/tables), compiled into qx_db.
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "db/EmbeddedFile.h"

namespace qx {

// The shop's schema version, the same on every engine (SQLite keeps it in PRAGMA user_version,
// PostgreSQL in the view qx_schema_version): 1 for the first shops, 2 since the balance view
// recounts through qx_stock_recount, 3 since a server shop keeps datetimes to 1/300 s with the
// helper functions that round them, 4 since those helpers may run in the server's parallel
// workers (and a server shop without the reports' groupings gets them). A shop with an older mark gets its views and triggers (on a
// server also its helper functions and datetime columns) made again from their sources when it
// is opened; a newer mark is refused.
inline constexpr int kSchemaVersion = 4;

// Why a shop marked by a newer build is not opened.
inline std::string newerSchemaMessage(const std::string& location, int version) {
    return location + " was made by a newer version of the program (schema version " + std::to_string(version) +
           ", this version knows up to " + std::to_string(kSchemaVersion) + "); open it with that version";
}

// The names the statements create: createdNames(sql, "VIEW") finds "CREATE VIEW name" (also
// "CREATE VIEW IF NOT EXISTS name"), any case;
// "OR REPLACE FUNCTION" finds the functions.
inline std::vector<std::string> createdNames(const std::string& sql, std::string_view what) {
    std::vector<std::string> names;
    std::string upper = sql;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const std::string keyword = "CREATE " + std::string(what) + " ";
    for (auto at = upper.find(keyword); at != std::string::npos; at = upper.find(keyword, at + 1)) {
        auto begin = at + keyword.size();
        while (begin < sql.size() && sql[begin] == ' ') ++begin;
        if (upper.compare(begin, 14, "IF NOT EXISTS ") == 0) begin += 14;
        while (begin < sql.size() && sql[begin] == ' ') ++begin;
        auto end = begin;
        while (end < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[end])) || sql[end] == '_')) ++end;
        if (end > begin) names.push_back(sql.substr(begin, end - begin));
    }
    return names;
}

// Table families in creation order: master data, stock, documents, retail, system, staging.
std::vector<EmbeddedFile> tableDefinitions();
// The views the module reads (V1809, V_D8303A, v_D712).
std::vector<EmbeddedFile> viewDefinitions();
// The rows a new shop starts with (the summaries' grouping items, the annual month columns),
// written by every engine once the tables exist.
std::vector<EmbeddedFile> seedRows();

}  // namespace qx
