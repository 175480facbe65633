#include "db/tools/ShopCopy.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "db/Database.h"
#include "db/postgres/PostgresDatabase.h"
#include "db/sqlite/Schema.h"

namespace qx::demo {
namespace {

constexpr std::size_t kRowsPerBatch = 250;

// The tables of the shop in creation order, from their definitions.
std::vector<std::string> shopTables() {
    std::vector<std::string> tables;
    for (const auto& file : tableDefinitions()) {
        const std::string& text = file.text;
        for (std::size_t at = text.find("CREATE TABLE "); at != std::string::npos; at = text.find("CREATE TABLE ", at + 1)) {
            const std::size_t start = at + 13;
            const std::size_t end = text.find_first_of(" (\n", start);
            tables.push_back(text.substr(start, end - start));
        }
    }
    return tables;
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) out += c == '\'' ? std::string("''") : std::string(1, c);
    return out + "'";
}

std::string literal(const db::Value& value) {
    if (std::holds_alternative<std::monostate>(value)) return "NULL";
    if (const auto* i = std::get_if<std::int64_t>(&value)) return std::to_string(*i);
    if (const auto* d = std::get_if<double>(&value)) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.17g", *d);
        return buffer;
    }
    return quoted(std::get<std::string>(value));
}

std::unique_ptr<db::Database> newShop(const std::string& to) {
    if (db::isServerLocation(to)) {
        auto target = std::make_unique<db::PostgresDatabase>(to);
        if (target->hasShop()) throw db::Error("copy: " + to + " already holds a shop");
        target->createShop();
        return target;
    }
    if (std::filesystem::exists(to)) throw db::Error("copy: " + to + " already exists");
    return db::openSqlite(to, true);
}

long long copyTable(db::Database& source, db::Database& target, const std::string& table) {
    const db::ResultSet rows = source.open("SELECT * FROM " + table);
    std::string columns;
    for (const auto& column : rows.columns) columns += (columns.empty() ? "" : ", ") + column.name;
    std::string batch;
    std::size_t inBatch = 0;
    for (const auto& row : rows.rows) {
        std::string values;
        for (const auto& value : row) values += (values.empty() ? "" : ", ") + literal(value);
        batch += "INSERT INTO " + table + " (" + columns + ") VALUES (" + values + ");\n";
        if (++inBatch == kRowsPerBatch) {
            target.execute(batch, db::ExecOptions{.maintenance = true});
            batch.clear();
            inBatch = 0;
        }
    }
    if (!batch.empty()) target.execute(batch, db::ExecOptions{.maintenance = true});
    return static_cast<long long>(rows.rows.size());
}

}  // namespace

CopySummary copyShop(const std::string& from, const std::string& to) {
    auto source = db::openDatabase(from);
    auto target = newShop(to);
    CopySummary summary;
    // Documents post their stock as they arrive; the stock rows are then the source's own.
    for (const auto& table : shopTables()) {
        if (table == "d1802") continue;
        summary.total += summary.rows[table] = copyTable(*source, *target, table);
    }
    target->execute("DELETE FROM d1802", db::ExecOptions{.maintenance = true});
    summary.total += summary.rows["d1802"] = copyTable(*source, *target, "d1802");
    return summary;
}

}  // namespace qx::demo
