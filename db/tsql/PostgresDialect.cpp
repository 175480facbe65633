// The translator's PostgreSQL spelling. The emitter keeps SQL Server's meaning; this file only
// says how PostgreSQL writes each piece. Helpers without a PostgreSQL form yet keep their qx_
// name and fail on the server with "function … does not exist" (see db/postgres/README.md).
#include <string>

#include "db/tsql/Dialect.h"

namespace qx::tsql {
namespace {

// The text collation created on every shop database (db/postgres/PostgresDatabase.cpp):
// ICU Chinese, case and width ignored.
constexpr const char* kPostgresCollation = "qx";

std::string stripBrackets(std::string_view name) {
    if (name.size() >= 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
    return std::string(name);
}

std::string foldedName(std::string_view name) {
    std::string folded(name);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

class PostgresDialect final : public Dialect {
public:
    // Names compare ignoring case as on SQL Server ("d1802" is "D1802", "ck_id" is "CK_ID"):
    // every name is folded to lower case (ASCII letters only) and quoted, so reserved words stay
    // names. The engine gives result columns back their names as the statement wrote them.
    std::string quoteIdentifier(std::string_view name) const override { return quotedWith(foldedName(name), '"'); }
    std::string quoteString(std::string_view value) const override { return quotedWith(value, '\''); }
    // No ICU collation ignores trailing blanks: a written text loses them before it is compared
    // ('zc ' finds 'ZC'). Blanks stored at the end of a column's value still count.
    std::string unionDecimal(const std::string& number) const override { return "CAST(" + number + " AS NUMERIC)"; }
    std::string comparedString(std::string_view value) const override {
        while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
        return quoteString(value);
    }
    // Typed, so that it stays a date where nothing else says so (the branches of a UNION).
    std::string dateLiteral(std::string_view iso) const override { return "TIMESTAMP " + quoteString(iso); }
    // A subquery's bare NULL is text on the server, and text becomes a number or a date only
    // when asked to.
    std::string storedUntyped(const std::string& value, SqlType type) const override {
        if (type == SqlType::Text || type == SqlType::Unknown) return value;
        return "CAST(" + value + " AS " + columnTypeFor(type) + ")";
    }
    // Stored without trailing blanks: SQL Server ignores them wherever it compares text (=,
    // DISTINCT, GROUP BY, UNION, keys), PostgreSQL's collations do not. A written text loses
    // them here, an expression through rtrim (see db/postgres/README.md, "Trailing blanks").
    // A value longer than the column is refused naming the table and column, as SQL Server does
    // (the server's own refusal names neither): a written text when it is translated, an
    // expression by qx_fits.
    std::string storedText(const std::string& value, const std::string* literal, std::string_view table,
                           const CatalogColumn& column) const override {
        const std::string names = quoteString(stripBrackets(table)) + ", " + quoteString(column.name);
        if (!literal) {
            if (column.length <= 0) return "rtrim(" + value + ")";
            return "qx_fits(rtrim(" + value + "), " + std::to_string(column.length) + ", " + names + ")";
        }
        std::string_view text = *literal;
        while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
        std::size_t characters = 0;
        for (const char c : text)
            if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++characters;
        if (column.length > 0 && characters > static_cast<std::size_t>(column.length))
            return "qx_truncated(" + quoteString(text) + ", " + names + ")";
        return quoteString(text);
    }
    // '#x' is a TEMP table in the connection's own pg_temp schema, under its T-SQL name.
    std::string tableReference(const Name& name) const override {
        if (name.isTemp()) return "pg_temp." + quoteIdentifier(stripBrackets(name.last()));
        return quoteIdentifier(name.last());
    }
    std::string tableQualifier(const Name& name) const override {
        return quoteIdentifier(name.isTemp() ? stripBrackets(name.last()) : name.last());
    }
    std::string createTableHead(const Name& name) const override { return "CREATE TABLE " + tableReference(name); }
    std::string dropTableIfExists(const Name& name) const override { return "DROP TABLE IF EXISTS " + tableReference(name); }
    std::string rowIdentifier() const override { return "ctid"; }
    std::string createIndexHead(bool unique, const Name& index, const Name& table) const override {
        // An index lives in its table's schema; the index name itself cannot be qualified.
        return std::string(unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + quoteIdentifier(index.last()) + " ON " + tableReference(table);
    }

    std::string columnType(const TypeSpec& type) const override {
        switch (type.sqlType()) {
            case SqlType::Text:
                if (!type.params.empty() && type.params[0] > 0)
                    return "VARCHAR(" + std::to_string(type.params[0]) + ") COLLATE " + kPostgresCollation;
                return std::string("TEXT COLLATE ") + kPostgresCollation;
            case SqlType::Real:
                if (type.scale() >= 0) {
                    const int precision = decimalPrecision(type);
                    return "NUMERIC(" + std::to_string(precision) + "," + std::to_string(type.scale()) + ")";
                }
                return "DOUBLE PRECISION";
            case SqlType::Integer:
                if (type.name == "SMALLINT" || type.name == "TINYINT") return "SMALLINT";
                if (type.name == "BIGINT") return "BIGINT";
                return "INTEGER";
            default: return columnTypeFor(type.sqlType());
        }
    }
    std::string columnTypeFor(SqlType type) const override {
        switch (type) {
            case SqlType::Text: return std::string("TEXT COLLATE ") + kPostgresCollation;
            case SqlType::Integer: return "INTEGER";
            case SqlType::Real: return "DOUBLE PRECISION";
            case SqlType::DateTime: return "TIMESTAMP(3)";  // SQL Server keeps 1/300 s: .000, .003, .007
            case SqlType::Unknown: return "TEXT";
        }
        return "TEXT";
    }
    std::string identityColumnType() const override { return "INTEGER GENERATED BY DEFAULT AS IDENTITY"; }
    // A row of a temp table written again by UPDATE moves to a new place in its file, so a plain
    // scan no longer gives the rows in the order they came (as SQL Server's heap and SQLite's rowid
    // do): every temp table numbers its rows as they are inserted.
    std::string insertionOrderColumn() const override { return "qx_seq"; }
    std::string insertionOrderColumnType() const override { return "BIGSERIAL"; }
    std::vector<std::string> identitySequence(const Name& table, std::string_view column, long long seed, long long step) const override {
        return {"ALTER TABLE " + tableReference(table) + " ALTER COLUMN " + quoteIdentifier(column) + " SET INCREMENT BY " +
                std::to_string(step) + " SET MINVALUE " + std::to_string(std::min(seed, 1LL) - 1) + " RESTART WITH " + std::to_string(seed)};
    }
    // MONEY and SMALLMONEY are NUMERIC(19,4) and NUMERIC(10,4) here, like a DECIMAL of that size:
    // the column's comment says "money" (the catalog reads it back: CAST(money AS int) rounds).
    std::vector<std::string> columnMarks(const Name& table, std::string_view column, const TypeSpec& type) const override {
        if (type.name != "MONEY" && type.name != "SMALLMONEY") return {};
        return {"COMMENT ON COLUMN " + tableReference(table) + "." + quoteIdentifier(column) + " IS 'money'"};
    }
    std::string collate() const override { return std::string(" COLLATE ") + kPostgresCollation; }

    std::string concat(const std::string& left, const std::string& right) const override { return left + " || " + right; }
    // Integer operands already divide as integers and a zero divisor fails ("division by zero"),
    // except in a maintenance batch, where qx_divisor makes a zero NULL (SQL Server with
    // ARITHABORT and ANSI_WARNINGS off). A divisor written as a number other than zero needs no
    // such check.
    std::string divide(const std::string& left, const std::string& right, bool modulo) const override {
        const bool nonZeroNumber = !right.empty() && right.find_first_not_of("0123456789.") == std::string::npos &&
                                   right.find_first_not_of("0.") != std::string::npos;
        return "(" + left + (modulo ? " % " : " / ") + (nonZeroNumber ? right : "qx_divisor(" + right + ")") + ")";
    }
    std::string currentDateTime() const override { return "LOCALTIMESTAMP(0)"; }
    std::string datePart(dates::Part part, const std::string& text) const override {
        // a date written as text ('2006-08-30') is read as a date first
        const std::string date = !text.empty() && text.front() == '\'' ? "CAST(" + text + " AS TIMESTAMP(3))" : text;
        const char* field = nullptr;
        switch (part) {
            case dates::Part::Year: field = "year"; break;
            case dates::Part::Quarter: field = "quarter"; break;
            case dates::Part::Month: field = "month"; break;
            case dates::Part::DayOfYear: field = "doy"; break;
            case dates::Part::Day: field = "day"; break;
            case dates::Part::Hour: field = "hour"; break;
            case dates::Part::Minute: field = "minute"; break;
            case dates::Part::Second: return "CAST(floor(date_part('second', " + date + ")) AS INTEGER)";
            case dates::Part::Weekday: return "(CAST(date_part('dow', " + date + ") AS INTEGER) + 1)";  // Sunday is 1
            case dates::Part::Millisecond: return "(CAST(floor(date_part('milliseconds', " + date + ")) AS INTEGER) % 1000)";
            // Sunday-start weeks, week 1 the one holding 1 January: the days before the year's
            // first Sunday are week 1, whatever weekday the year starts on.
            case dates::Part::Week:
                return "(CAST(floor((date_part('doy', " + date + ") - 1 + date_part('dow', date_trunc('year', " + date +
                       "))) / 7) AS INTEGER) + 1)";
        }
        return std::string("CAST(date_part('") + field + "', " + date + ") AS INTEGER)";
    }
    // A date written as a whole number counts days from 1900-01-01, as SQL Server reads it
    // (DATEADD(mm, DATEDIFF(mm, 0, d), 0) is the first day of d's month).
    static std::string dayNumberAsDate(const std::string& date) {
        if (date.empty() || date.find_first_not_of("-0123456789") != std::string::npos || date.find_first_of("0123456789") == std::string::npos)
            return date;
        return "(TIMESTAMP '1900-01-01 00:00:00' + (" + date + ") * INTERVAL '1 day')";
    }
    // The result refused outside 1753-01-01 .. 9999-12-31 (qx_date_added); milliseconds round to
    // SQL Server's 1/300 s.
    std::string dateAdd(dates::Part part, const std::string& amount, const std::string& writtenDate) const override {
        const std::string date = "CAST(" + dayNumberAsDate(writtenDate) + " AS TIMESTAMP(3))";
        const char* unit = nullptr;
        switch (part) {
            case dates::Part::Year: unit = "1 year"; break;
            case dates::Part::Quarter: unit = "3 months"; break;
            case dates::Part::Month: unit = "1 month"; break;
            case dates::Part::Day:
            case dates::Part::DayOfYear:
            case dates::Part::Weekday: unit = "1 day"; break;
            case dates::Part::Week: unit = "7 days"; break;
            case dates::Part::Hour: unit = "1 hour"; break;
            case dates::Part::Minute: unit = "1 minute"; break;
            case dates::Part::Second: unit = "1 second"; break;
            case dates::Part::Millisecond: return "qx_date_added(qx_ticks(" + date + " + (" + amount + ") * INTERVAL '1 millisecond'))";
        }
        if (!unit) unit = "1 day";
        return "qx_date_added(" + date + " + (" + amount + ") * INTERVAL '" + unit + "')";
    }
    // Boundaries crossed, as SQL Server counts them.
    std::string dateDiff(dates::Part part, const std::string& writtenFrom, const std::string& writtenTo) const override {
        const std::string from = dayNumberAsDate(writtenFrom), to = dayNumberAsDate(writtenTo);
        const std::string f = "CAST(" + from + " AS TIMESTAMP(3))", t = "CAST(" + to + " AS TIMESTAMP(3))";
        switch (part) {
            case dates::Part::Year: return "CAST(date_part('year', " + t + ") - date_part('year', " + f + ") AS INTEGER)";
            case dates::Part::Month:
                return "CAST((date_part('year', " + t + ") - date_part('year', " + f + ")) * 12 + date_part('month', " + t +
                       ") - date_part('month', " + f + ") AS INTEGER)";
            case dates::Part::Day:
            case dates::Part::DayOfYear:
            case dates::Part::Weekday: return "(CAST(" + t + " AS DATE) - CAST(" + f + " AS DATE))";
            case dates::Part::Millisecond:
                return "CAST(round(CAST(date_part('epoch', " + t + ") - date_part('epoch', " + f + ") AS NUMERIC) * 1000) AS INTEGER)";
            default: return std::string("qx_datediff('") + dates::partName(part) + "', " + from + ", " + to + ")";
        }
    }
    std::string toText(const std::string& value, std::optional<int> style, int length, bool fixed) const override {
        // CHAR(n) is text padded with blanks to n: the blanks stay in a concatenation (a bpchar
        // value would lose them there).
        const std::string n = std::to_string(length > 0 ? length : 30);
        auto sized = [&](const std::string& text) {
            return fixed ? "rpad(CAST(" + text + " AS VARCHAR(" + n + ")), " + n + ")" : "CAST(" + text + " AS VARCHAR(" + n + "))";
        };
        if (!style) return sized(value);
        const std::string date = "CAST(" + value + " AS TIMESTAMP(3))";
        auto part = [&](const char* format) { return "to_char(" + date + ", '" + format + "')"; };
        const char* format = nullptr;
        switch (*style) {
            case 120: case 20: format = "YYYY-MM-DD HH24:MI:SS"; break;
            case 23: format = "YYYY-MM-DD"; break;
            case 112: format = "YYYYMMDD"; break;
            case 12: format = "YYMMDD"; break;
            case 108: case 8: format = "HH24:MI:SS"; break;
            case 111: format = "YYYY/MM/DD"; break;
            case 11: format = "YY/MM/DD"; break;
            case 1: format = "MM/DD/YY"; break;
            case 101: format = "MM/DD/YYYY"; break;
            case 2: format = "YY.MM.DD"; break;
            case 102: format = "YYYY.MM.DD"; break;
            case 3: format = "DD/MM/YY"; break;
            case 103: format = "DD/MM/YYYY"; break;
            case 4: format = "DD.MM.YY"; break;
            case 104: format = "DD.MM.YYYY"; break;
            case 5: format = "DD-MM-YY"; break;
            case 105: format = "DD-MM-YYYY"; break;
            case 10: format = "MM-DD-YY"; break;
            case 110: format = "MM-DD-YYYY"; break;
            case 6: format = "DD Mon YY"; break;
            case 106: format = "DD Mon YYYY"; break;
            case 7: format = "Mon DD, YY"; break;
            case 107: format = "Mon DD, YYYY"; break;
            case 13: case 113: format = "DD Mon YYYY HH24:MI:SS:MS"; break;
            case 14: case 114: format = "HH24:MI:SS:MS"; break;
            case 21: case 25: case 121: format = "YYYY-MM-DD HH24:MI:SS.MS"; break;
            case 126: format = "YYYY-MM-DD\"T\"HH24:MI:SS"; break;
            case 0: case 100: case 9: case 109: {
                // "Aug  3 2006  9:05AM": day and hour padded with a blank
                const bool seconds = *style == 9 || *style == 109;
                const std::string text = part("Mon ") + " || lpad(" + part("FMDD") + ", 2) || " + part(" YYYY ") + " || lpad(" +
                                         part("FMHH12") + ", 2) || " + part(seconds ? ":MI:SS:MS" : ":MI") + " || " + part("AM");
                return sized(text);
            }
            default:
                return "qx_to_char(" + value + ", " + std::to_string(*style) + ", " + std::to_string(length) + ", " + (fixed ? "1" : "0") + ")";
        }
        return sized(part(format));
    }
    std::string integerResult(const std::string& value, const char* kind) const override {
        return "CAST(" + value + (std::string_view(kind) == "bigint" ? " AS BIGINT)" : " AS INTEGER)");
    }
    std::string integerToText(const std::string& value, int length, bool fixed) const override {
        if (length <= 0) return toText(value, std::nullopt, length, fixed);
        return "qx_int_text(" + value + ", " + std::to_string(length) + ", " + (fixed ? "1" : "0") + ")";
    }
    // SQL Server cuts the fraction off (CAST(2.7 AS int) is 2); PostgreSQL would round.
    std::string toInteger(const std::string& value) const override { return "CAST(trunc(" + value + ") AS INTEGER)"; }
    std::string integerAverage(const std::string& average) const override { return "CAST(trunc(" + average + ") AS BIGINT)"; }
    std::string toReal(const std::string& value, std::optional<int> scale) const override {
        if (scale) return "CAST(" + value + " AS NUMERIC(38," + std::to_string(*scale) + "))";
        return "CAST(" + value + " AS DOUBLE PRECISION)";
    }
    // A written text is read as SQL Server reads it ('' and a time alone are on 1900-01-01, the
    // time rounded to 1/300 s); anything else goes through qx_datetime, which refuses a date
    // before 1753 and rounds the time the same way.
    std::string toDateTime(const std::string& value) const override {
        if (value.size() >= 2 && value.front() == '\'' && value.back() == '\'') {
            std::string text;
            bool single = true;  // one quoted text, not an expression of several
            for (std::size_t i = 1; i + 1 < value.size(); ++i) {
                if (value[i] == '\'') {
                    if (value[i + 1] != '\'' || i + 2 == value.size()) single = false;
                    ++i;  // a doubled quote is one
                }
                text += value[i];
            }
            if (const auto date = single ? dates::parse(text) : std::nullopt; date && date->year >= 1753)
                return "CAST(" + quoteString(dates::formatValue(*date)) + " AS TIMESTAMP(3))";
            return "qx_datetime(CAST(" + value + " AS TEXT))";
        }
        if (value == "NULL") return "CAST(NULL AS TIMESTAMP(3))";
        return "qx_datetime(" + value + ")";
    }
    std::string textToNumber(const std::string& value) const override {
        return "CAST(NULLIF(btrim(CAST(" + value + " AS TEXT)), '') AS NUMERIC)";
    }
    // round() of a double does not take places on PostgreSQL; NUMERIC rounds half away from zero.
    std::string round(const std::string& value, int places) const override {
        return "round(CAST(" + value + " AS NUMERIC), " + std::to_string(places) + ")";
    }
    std::string fixedPoint(const std::string& value, int places) const override {
        return "CAST(round(CAST(" + value + " AS NUMERIC), " + std::to_string(places) + ") AS TEXT)";
    }
    std::string ifNull(const std::string& value, const std::string& fallback) const override {
        return "COALESCE(" + value + ", " + fallback + ")";
    }
    // A negative count is an error on SQL Server (PostgreSQL would count from the other end); a
    // count written as a number needs no check.
    std::string left(const std::string& text, const std::string& count) const override {
        return "left(" + text + ", " + checkedCount(count, "left") + ")";
    }
    std::string right(const std::string& text, const std::string& count) const override {
        return "right(" + text + ", " + checkedCount(count, "right") + ")";
    }
    static std::string checkedCount(const std::string& count, const char* function) {
        if (!count.empty() && count.find_first_not_of("0123456789") == std::string::npos) return count;
        return "qx_count(" + count + ", '" + function + "')";
    }
    std::string length(const std::string& text) const override { return "length(rtrim(" + text + "))"; }
    // Case and width ignored: both sides folded to NFKC (full-width letters become ASCII) and
    // lower case, then searched under "C" (PostgreSQL 15 refuses substring searches on the
    // nondeterministic collation). An empty needle is found nowhere (0); one that is not a
    // written text goes through qx_charindex, which knows that too.
    std::string charIndex(const std::string& needle, const std::string& haystack) const override {
        if (needle == "''") return "(CASE WHEN " + haystack + " IS NULL THEN NULL ELSE 0 END)";
        if (needle.size() < 2 || needle.front() != '\'' || needle.back() != '\'') return "qx_charindex(" + needle + ", " + haystack + ", 1)";
        return "strpos(lower(normalize(" + haystack + ", NFKC)) COLLATE \"C\", lower(normalize(" + needle + ", NFKC)) COLLATE \"C\")";
    }
    // PostgreSQL 15 refuses LIKE on a nondeterministic collation: the value without its trailing
    // blanks and both sides in NFKC (width ignored) match under "C", case folded. A pattern that
    // may hold SQL Server's sets ([a-c], [^0-9], [_]) becomes a regular expression
    // (qx_like_regex, folded to a constant for a written pattern).
    std::string like(const std::string& value, const std::string& pattern, const std::string& escape) const override {
        const bool literal = pattern.size() >= 2 && pattern.front() == '\'' && pattern.back() == '\'';
        const std::string subject = "rtrim(normalize(" + value + ", NFKC)) COLLATE \"C\"";
        if (escape.empty() && (!literal || pattern.find('[') != std::string::npos))
            return "(" + subject + " ~* qx_like_regex(normalize(" + pattern + ", NFKC)))";
        return "(" + subject + " ILIKE normalize(" + pattern + ", NFKC) COLLATE \"C\"" + (escape.empty() ? "" : " ESCAPE " + escape) + ")";
    }
    std::string byteLength(const std::string& value) const override { return "octet_length(CAST(" + value + " AS TEXT))"; }
    std::string limit(const std::string& count) const override { return " LIMIT " + count; }
    // VARCHAR(n), INTEGER, SMALLINT, BIGINT and NUMERIC(p,s) refuse out-of-range values on
    // PostgreSQL itself; a TINYINT (a SMALLINT there) is checked for 0 .. 255.
    bool columnTypeChecks(const TypeSpec& type) const override { return type.name != "TINYINT"; }
    std::string integerRangeCheck(const std::string& column, const char* kind) const override {
        return "qx_int(" + column + ", " + quoteString(kind) + ") = " + column;
    }
    std::string call(std::string_view helper, const std::vector<std::string>& args) const override {
        if (helper == "checked" && !args.empty()) return args[0];  // integer arithmetic overflows by itself
        if (helper == "add_days" && args.size() == 2)
            return "qx_date_added(qx_ticks(CAST(" + args[0] + " AS TIMESTAMP(3)) + (" + args[1] + ") * INTERVAL '1 day'))";
        if (helper == "decimal" && args.size() == 3) return "CAST(" + args[0] + " AS NUMERIC(" + args[1] + "," + args[2] + "))";
        // a written text: read as SQL Server reads it ('' is 0, '12.5' refused)
        const bool writtenText = !args.empty() && args[0].size() >= 2 && args[0].front() == '\'' && args[0].back() == '\'';
        if (helper == "int" && args.size() == 2 && writtenText) {
            const std::string value = "qx_int(CAST(" + args[0] + " AS TEXT), " + args[1] + ")";
            return args[1] == "'int'" ? "CAST(" + value + " AS INTEGER)" : value;
        }
        if (helper == "int" && (args.size() == 2 || args.size() == 3)) {
            // money rounds half away from zero (round of a NUMERIC does), other numbers are cut
            const std::string number = "CAST(" + args[0] + " AS NUMERIC)";
            const std::string whole = args.size() == 3 ? "round(" + number + ")" : "trunc(" + number + ")";
            if (args[1] == "'int'") return "CAST(" + whole + " AS INTEGER)";
            return "qx_int(" + (args.size() == 3 ? whole : number) + ", " + args[1] + ")";  // tinyint, smallint, bigint: their ranges
        }
        // TRY_CAST/TRY_CONVERT: one function per target type, NULL when the value does not convert.
        if (helper == "try" && args.size() == 4 && args[1].size() > 2) {
            const std::string kind = args[1].substr(1, args[1].size() - 2);
            if (kind == "decimal") return "qx_try_decimal(" + args[0] + ", " + args[2] + ", " + args[3] + ")";
            if (kind == "float" || kind == "datetime" || kind == "bit") return "qx_try_" + kind + "(" + args[0] + ")";
            return "qx_try_int(" + args[0] + ", " + args[1] + ")";
        }
        if (helper == "datetime" && args.size() == 2) return "qx_datetime(" + args[0] + ", " + args[1] + ")";
        if (helper == "datetime" && !args.empty()) return toDateTime(args[0]);
        if (helper == "concat") {  // NULL is an empty text, as on SQL Server
            std::string text = "concat(";
            for (std::size_t i = 0; i < args.size(); ++i) text += (i ? ", " : "") + args[i];
            return text + ")";
        }
        if (helper == "date" && args.size() == 1) return "CAST(CAST(" + args[0] + " AS DATE) AS TIMESTAMP(3))";
        if (helper == "substring" && args.size() == 3) return "substr(" + args[0] + ", " + args[1] + ", " + args[2] + ")";
        std::string text = "qx_" + std::string(helper) + "(";
        for (std::size_t i = 0; i < args.size(); ++i) text += (i ? ", " : "") + args[i];
        return text + ")";
    }
    // PostgreSQL itself refuses a scalar subquery with more than one row.
    std::string singleValue(const std::string& subquery) const override { return "(" + subquery + ")"; }
};

}  // namespace

const Dialect& postgresDialect() {
    static const PostgresDialect dialect;
    return dialect;
}

}  // namespace qx::tsql
