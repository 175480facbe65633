#include <string>

#include "db/tsql/Dialect.h"
#include "db/tsql/SqliteRuntime.h"

namespace qx::tsql {
namespace {

class SqliteDialect final : public Dialect {
public:
    std::string quoteIdentifier(std::string_view name) const override { return quotedWith(name, '"'); }
    std::string quoteString(std::string_view value) const override { return quotedWith(value, '\''); }
    std::string tableReference(const Name& name) const override {
        if (name.isTemp()) return "temp." + quoteIdentifier(sqliteTempTableName(name.last()));
        return quoteIdentifier(name.last());  // dbo.x and db.dbo.x: one database per file
    }
    std::string tableQualifier(const Name& name) const override {
        return quoteIdentifier(name.isTemp() ? sqliteTempTableName(name.last()) : name.last());
    }
    std::string createTableHead(const Name& name) const override { return "CREATE TABLE " + tableReference(name); }
    std::string dropTableIfExists(const Name& name) const override { return "DROP TABLE IF EXISTS " + tableReference(name); }
    std::string rowIdentifier() const override { return "rowid"; }
    std::string createIndexHead(bool unique, const Name& index, const Name& table) const override {
        // An index of a temp table lives in the temp schema; the table is then named unqualified.
        std::string head = unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
        if (table.isTemp()) return head + "temp." + quoteIdentifier(index.last()) + " ON " + quoteIdentifier(sqliteTempTableName(table.last()));
        return head + quoteIdentifier(index.last()) + " ON " + quoteIdentifier(table.last());
    }

    std::string columnType(const TypeSpec& type) const override {
        switch (type.sqlType()) {
            case SqlType::Text:
                if (!type.params.empty() && type.params[0] > 0)
                    return "VARCHAR(" + std::to_string(type.params[0]) + ") COLLATE " + kSqliteCollation;
                return std::string("TEXT COLLATE ") + kSqliteCollation;
            case SqlType::Real:
                // REAL affinity keeps 100/3 a float division; the DECIMAL(p,s) part tells the
                // catalog how many places stored values keep, MONEY that whole numbers are
                // rounded from it.
                if (type.scale() >= 0) {
                    const int precision = decimalPrecision(type);
                    const bool money = type.name == "MONEY" || type.name == "SMALLMONEY";
                    return std::string(money ? "REAL MONEY DECIMAL(" : "REAL DECIMAL(") + std::to_string(precision) + "," +
                           std::to_string(type.scale()) + ")";
                }
                return "REAL";
            case SqlType::Integer: return type.name == "BIGINT" ? "BIGINT" : "INT";  // the name tells the catalog
            default: return columnTypeFor(type.sqlType());
        }
    }
    std::string columnTypeFor(SqlType type) const override {
        switch (type) {
            case SqlType::Text: return std::string("TEXT COLLATE ") + kSqliteCollation;
            case SqlType::Integer: return "INT";
            case SqlType::Real: return "REAL";
            // TEXT affinity keeps ISO dates as typed; the name tells the catalog it is a date.
            case SqlType::DateTime: return "DATETIME TEXT";
            case SqlType::Unknown: return "";
        }
        return "";
    }
    std::string identityColumnType() const override { return "INTEGER PRIMARY KEY"; }
    // SQLite numbers an INTEGER PRIMARY KEY one past the largest; a trigger renumbers each new
    // row from a counter kept in qx_identity (in the table's own schema).
    std::vector<std::string> identitySequence(const Name& table, std::string_view column, long long seed, long long step) const override {
        const std::string schema = table.isTemp() ? "temp." : "main.";
        const std::string key = quoteString(table.last());
        const std::string counters = schema + "qx_identity";
        return {
            "CREATE TABLE IF NOT EXISTS " + counters + " (tbl TEXT PRIMARY KEY, last INTEGER)",
            "INSERT OR REPLACE INTO " + counters + " VALUES (" + key + ", " + std::to_string(seed - step) + ")",
            std::string(table.isTemp() ? "CREATE TEMP TRIGGER " : "CREATE TRIGGER ") + quoteIdentifier("qx_identity_" + table.last()) +
                " AFTER INSERT ON " + tableReference(table) + " BEGIN UPDATE qx_identity SET last = last + (" + std::to_string(step) +
                ") WHERE tbl = " + key + "; UPDATE " + tableQualifier(table) + " SET " + quoteIdentifier(column) +
                " = (SELECT last FROM qx_identity WHERE tbl = " + key + ") WHERE rowid = NEW.rowid; END",
        };
    }
    std::string collate() const override { return std::string(" COLLATE ") + kSqliteCollation; }

    std::string concat(const std::string& left, const std::string& right) const override { return left + " || " + right; }
    std::string divide(const std::string& left, const std::string& right, bool modulo) const override {
        return (modulo ? "qx_mod(" : "qx_div(") + left + ", " + right + ")";
    }
    std::string currentDateTime() const override { return "strftime('%Y-%m-%d %H:%M:%S','now','localtime')"; }
    std::string datePart(dates::Part part, const std::string& date) const override {
        return std::string("qx_datepart('") + dates::partName(part) + "', " + date + ")";
    }
    std::string dateAdd(dates::Part part, const std::string& amount, const std::string& date) const override {
        return std::string("qx_dateadd('") + dates::partName(part) + "', " + amount + ", " + date + ")";
    }
    std::string dateDiff(dates::Part part, const std::string& from, const std::string& to) const override {
        return std::string("qx_datediff('") + dates::partName(part) + "', " + from + ", " + to + ")";
    }
    std::string toText(const std::string& value, std::optional<int> style, int length, bool fixed) const override {
        return "qx_to_char(" + value + ", " + (style ? std::to_string(*style) : std::string("NULL")) + ", " +
               std::to_string(length) + ", " + (fixed ? "1" : "0") + ")";
    }
    std::string toInteger(const std::string& value) const override { return "CAST(qx_num(" + value + ") AS INTEGER)"; }
    std::string toReal(const std::string& value, std::optional<int> scale) const override {
        if (scale) return "round(CAST(qx_num(" + value + ") AS REAL), " + std::to_string(*scale) + ")";
        return "CAST(qx_num(" + value + ") AS REAL)";
    }
    std::string toDateTime(const std::string& value) const override { return "qx_datetime(" + value + ")"; }
    std::string textToNumber(const std::string& value) const override { return "qx_num(" + value + ")"; }
    std::string round(const std::string& value, int places) const override {
        return "round(" + value + ", " + std::to_string(places) + ")";
    }
    std::string fixedPoint(const std::string& value, int places) const override {
        return "printf('%." + std::to_string(places) + "f', " + value + ")";
    }
    std::string ifNull(const std::string& value, const std::string& fallback) const override {
        return "ifnull(" + value + ", " + fallback + ")";
    }
    std::string left(const std::string& text, const std::string& count) const override {
        return "qx_left(" + text + ", " + count + ")";
    }
    std::string right(const std::string& text, const std::string& count) const override {
        return "qx_right(" + text + ", " + count + ")";
    }
    std::string length(const std::string& text) const override { return "length(rtrim(" + text + "))"; }
    std::string charIndex(const std::string& needle, const std::string& haystack) const override {
        return "qx_charindex(" + needle + ", " + haystack + ")";
    }
    std::string like(const std::string& value, const std::string& pattern, const std::string& escape) const override {
        return "qx_like(" + value + ", " + pattern + (escape.empty() ? "" : ", " + escape) + ")";
    }
    std::string limit(const std::string& count) const override { return " LIMIT " + count; }
    std::string call(std::string_view helper, const std::vector<std::string>& args) const override {
        std::string text = "qx_" + std::string(helper) + "(";
        for (std::size_t i = 0; i < args.size(); ++i) text += (i ? ", " : "") + args[i];
        return text + ")";
    }
    std::string singleValue(const std::string& subquery) const override {
        return "(WITH qx_scalar(v) AS (" + subquery + ") SELECT qx_one(v) FROM qx_scalar)";
    }
    bool selectsUngroupedColumns() const override { return true; }
    std::string checkedIntSum(const std::vector<std::string>& terms) const override { return call("int_sum", terms); }
    bool factorsGroupedFactorsOutOfSums() const override { return true; }
};

}  // namespace

const Dialect& sqliteDialect() {
    static const SqliteDialect dialect;
    return dialect;
}

}  // namespace qx::tsql
