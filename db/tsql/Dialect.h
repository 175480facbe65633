#pragma once
// What differs between target engines when the translator writes SQL. The emitter walks the
// syntax tree and keeps SQL Server's meaning; a dialect only spells the pieces.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/tsql/Ast.h"
#include "db/tsql/DateTime.h"

namespace qx::tsql {

class Dialect {
public:
    virtual ~Dialect() = default;

    virtual std::string quoteIdentifier(std::string_view name) const = 0;
    virtual std::string quoteString(std::string_view value) const = 0;

    // A table as written after FROM/INTO/UPDATE/DROP: temp tables ('#x') land in a private schema.
    virtual std::string tableReference(const Name& name) const = 0;
    // The name a column qualifier uses for that table (alias-less reference).
    virtual std::string tableQualifier(const Name& name) const = 0;
    virtual std::string createTableHead(const Name& name) const = 0;          // "CREATE TABLE x"
    virtual std::string dropTableIfExists(const Name& name) const = 0;
    // The hidden column that identifies a row (DELETE … FROM joins select rows by it).
    virtual std::string rowIdentifier() const = 0;
    virtual std::string createIndexHead(bool unique, const Name& index, const Name& table) const = 0;

    // Column types of CREATE TABLE; text columns carry the SQL Server-like collation.
    virtual std::string columnType(const TypeSpec& type) const = 0;
    virtual std::string columnTypeFor(SqlType type) const = 0;  // for inferred columns (SELECT … INTO)
    virtual std::string identityColumnType() const = 0;
    // Statements, run after CREATE TABLE, that number an IDENTITY column from seed by step
    // (only needed when either is not 1).
    virtual std::vector<std::string> identitySequence(const Name& table, std::string_view column, long long seed, long long step) const = 0;
    // Statements, run after CREATE TABLE, that mark what the engine's column type does not say
    // and the translator must know again from the catalog (a MONEY column, stored as a decimal).
    virtual std::vector<std::string> columnMarks(const Name& /*table*/, std::string_view /*column*/, const TypeSpec& /*type*/) const {
        return {};
    }
    virtual std::string collate() const = 0;  // " COLLATE x" appended to text comparisons
    // True when the engine's own column type for this declared type already refuses what SQL
    // Server refuses (text longer than VARCHAR(n), integers and decimals out of range): CREATE
    // TABLE then adds no check for the column.
    virtual bool columnTypeChecks(const TypeSpec& /*type*/) const { return false; }
    // The CHECK condition that refuses an integer outside the range of kind ("int", "smallint",
    // "tinyint") with SQL Server's overflow message.
    virtual std::string integerRangeCheck(const std::string& column, const char* kind) const {
        return call("checked", {column, quoteString(kind)}) + " IS " + column;
    }

    virtual std::string concat(const std::string& left, const std::string& right) const = 0;
    virtual std::string currentDateTime() const = 0;
    // a / b and a % b: integer operands divide as integers; a zero divisor is an error.
    virtual std::string divide(const std::string& left, const std::string& right, bool modulo) const = 0;
    virtual std::string datePart(dates::Part part, const std::string& date) const = 0;
    virtual std::string dateAdd(dates::Part part, const std::string& amount, const std::string& date) const = 0;
    virtual std::string dateDiff(dates::Part part, const std::string& from, const std::string& to) const = 0;
    // CONVERT to a character type: style for dates (nullopt: plain conversion), length, fixed-width.
    virtual std::string toText(const std::string& value, std::optional<int> style, int length, bool fixed) const = 0;
    // CONVERT of an integer to a character type of that length: "*" when its digits do not fit.
    virtual std::string integerToText(const std::string& value, int length, bool fixed) const {
        return toText(value, std::nullopt, length, fixed);
    }
    virtual std::string toInteger(const std::string& value) const = 0;
    virtual std::string toReal(const std::string& value, std::optional<int> scale) const = 0;
    virtual std::string toDateTime(const std::string& value) const = 0;
    // A text value stored into or compared with a number: '' is 0, '12' is 12.
    virtual std::string textToNumber(const std::string& value) const = 0;
    virtual std::string round(const std::string& value, int places) const = 0;
    // A number as text with exactly the given decimal places.
    virtual std::string fixedPoint(const std::string& value, int places) const = 0;
    virtual std::string ifNull(const std::string& value, const std::string& fallback) const = 0;
    virtual std::string left(const std::string& text, const std::string& count) const = 0;
    virtual std::string right(const std::string& text, const std::string& count) const = 0;
    virtual std::string length(const std::string& text) const = 0;
    virtual std::string charIndex(const std::string& needle, const std::string& haystack) const = 0;
    // LIKE as SQL Server matches it: % _ [set] [^set], case-insensitive, trailing blanks ignored.
    virtual std::string like(const std::string& value, const std::string& pattern, const std::string& escape) const = 0;
    virtual std::string limit(const std::string& count) const = 0;  // appended after ORDER BY
    // A date written as text, already read ("2006-08-30 13:02:03.123"), where a date is meant.
    virtual std::string dateLiteral(std::string_view iso) const { return quoteString(iso); }
    // A written whole number in a UNION column whose branches give decimals: an engine that
    // plans a UNION as one scan of all its branches (in parallel) only when every branch gives
    // the column's own type writes it as a decimal; the value is the same.
    virtual std::string unionDecimal(const std::string& number) const { return number; }
    // A text literal that is compared with another text: SQL Server ignores trailing blanks.
    virtual std::string comparedString(std::string_view value) const { return quoteString(value); }
    // A text value stored into the text column `column` of `table`: a written text (`literal`
    // set, unquoted) or an expression. An engine whose comparisons count trailing blanks stores
    // it without them; one whose column types refuse a value too long without naming the table
    // and column may check column.length itself.
    virtual std::string storedText(const std::string& value, const std::string* /*literal*/, std::string_view /*table*/,
                                   const CatalogColumn& /*column*/) const {
        return value;
    }
    // A value of no known type (a NULL a derived table selects, say) stored into a column of
    // `type`. An engine that makes such a value text, and does not convert text to the column's
    // type by itself, converts it here; NULL stays NULL.
    virtual std::string storedUntyped(const std::string& value, SqlType /*type*/) const { return value; }
    // AVG of integers: an integer, the fraction cut off.
    virtual std::string integerAverage(const std::string& average) const { return "CAST(" + average + " AS INTEGER)"; }
    // A function of an integer that SQL Server types as an integer ("int", "bigint") and the
    // engine may not (a sum of bigints, the sign of an int).
    virtual std::string integerResult(const std::string& value, const char* /*kind*/) const { return value; }
    // DATALENGTH of a text: its length in bytes.
    virtual std::string byteLength(const std::string& text) const { return "length(CAST(" + text + " AS BLOB))"; }
    // A runtime helper with SQL Server's meaning, by its T-SQL name in lower case ("charindex",
    // "replace", "stuff", "int", "fits", …; the list is the runtime's, see db/tsql/README.md).
    virtual std::string call(std::string_view helper, const std::vector<std::string>& args) const = 0;
    // The one value of a scalar subquery, an error when it yields more than one row.
    virtual std::string singleValue(const std::string& subquery) const = 0;

    // Shortcuts an engine may take where its SQL allows them; every one is off by default.
    // An aggregate query may select columns it does not group by (SQLite's bare columns): the
    // GROUP BY then names only the columns that decide the others.
    virtual bool selectsUngroupedColumns() const { return false; }
    // a + b + c … of int values in one call that checks every partial sum for the int range, as
    // SQL Server does at each addition; empty when the engine has no such helper.
    virtual std::string checkedIntSum(const std::vector<std::string>& terms) const { return {}; }
    // SUM(n * c) of int values n and a decimal c the query groups by, written c * SUM(n): the
    // same in exact decimal arithmetic, one product per group instead of one per row, and the
    // SUM(n) shared with the query's other sums of n.
    virtual bool factorsGroupedFactorsOutOfSums() const { return false; }

    // A #temp table whose rows come back in the order they were inserted only when the engine is
    // told so (one that writes a new row version on UPDATE and scans versions in place): the
    // hidden last column every #temp table gets, numbering its rows as they are inserted (its
    // name, empty: none; its type). The catalog does not show it, a * over a #temp table is
    // written out as its columns, and a SELECT reading one #temp table alone is ordered by it.
    virtual std::string insertionOrderColumn() const { return {}; }
    virtual std::string insertionOrderColumnType() const { return {}; }
};

// Spellings every dialect shares: text between quote characters with the quote doubled inside,
// and the precision of a DECIMAL/NUMERIC/MONEY type (declared, or SQL Server's default).
inline std::string quotedWith(std::string_view text, char quote) {
    std::string quoted(1, quote);
    for (char c : text) {
        if (c == quote) quoted += quote;
        quoted += c;
    }
    return quoted + quote;
}
inline int decimalPrecision(const TypeSpec& type) {
    if (!type.params.empty()) return type.params[0];
    return type.name == "SMALLMONEY" ? 10 : type.scale() == 4 ? 19 : 18;
}

const Dialect& sqliteDialect();
const Dialect& postgresDialect();

}  // namespace qx::tsql
