// Collation and helper functions that SQL emitted for SQLite calls.
#include "db/tsql/SqliteRuntime.h"

#include <sqlite3.h>
#include <unicode/ucol.h>
#include <unicode/uscript.h>
#include <unicode/utypes.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <vector>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "db/Database.h"
#include "db/tsql/DateTime.h"
#include "db/tsql/Translator.h"

namespace qx::tsql {
namespace {

// SQL Server's Chinese case-insensitive collation compares text case- and width-insensitively,
// ignores trailing blanks and sorts Chinese by pinyin after Latin letters: an ICU "zh" collator
// at secondary strength with Latin reordered first does the same.
// Equal bytes, and codes made of ASCII letters and digits only, by far the most compared values,
// take a fast path that orders them exactly as that collator does.
class TextCollation {
public:
    TextCollation() {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("zh", &status);
        if (U_FAILURE(status)) throw qx::db::Error(std::string("cannot open the text collation: ") + u_errorName(status));
        ucol_setStrength(collator_, UCOL_SECONDARY);
        // The "zh" tailoring puts Han before Latin; SQL Server sorts Latin letters first.
        const int32_t latinFirst[] = {USCRIPT_LATIN, USCRIPT_HAN};
        ucol_setReorderCodes(collator_, latinFirst, 2, &status);
        if (U_FAILURE(status)) throw qx::db::Error(std::string("cannot order the text collation: ") + u_errorName(status));
    }
    ~TextCollation() { ucol_close(collator_); }

    SqliteRuntimeOptions options;  // per connection, lives as long as the collation
    TextCollation(const TextCollation&) = delete;
    TextCollation& operator=(const TextCollation&) = delete;

    int compare(const char* a, int lengthA, const char* b, int lengthB) const {
        while (lengthA > 0 && a[lengthA - 1] == ' ') --lengthA;
        while (lengthB > 0 && b[lengthB - 1] == ' ') --lengthB;
        // The same bytes are the same text under any collation: grouping and joining compare
        // equal keys far more often than different ones.
        if (lengthA == lengthB && std::memcmp(a, b, static_cast<std::size_t>(lengthA)) == 0) return 0;
        if (auto decided = compareAsciiCodes(a, lengthA, b, lengthB)) return *decided;
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult result = ucol_strcollUTF8(collator_, a, lengthA, b, lengthB, &status);
        if (U_FAILURE(status)) return std::memcmp(a, b, static_cast<std::size_t>(std::min(lengthA, lengthB)));
        return result == UCOL_LESS ? -1 : result == UCOL_GREATER ? 1 : 0;
    }

private:
    // While both texts hold ASCII letters and digits, the collator orders them as their lower
    // case bytes: the first difference there decides. nullopt when the collator must decide.
    static std::optional<int> compareAsciiCodes(const char* a, int lengthA, const char* b, int lengthB) {
        const auto& fold = asciiCodeFold();
        const int common = lengthA < lengthB ? lengthA : lengthB;
        int i = 0;
        for (; i < common; ++i) {
            const unsigned char ca = fold[static_cast<unsigned char>(a[i])];
            const unsigned char cb = fold[static_cast<unsigned char>(b[i])];
            if (ca == 0 || cb == 0) return std::nullopt;
            if (ca != cb) return ca < cb ? -1 : 1;
        }
        if (lengthA == lengthB) return 0;
        const char* rest = lengthA > lengthB ? a : b;
        const int restLength = lengthA > lengthB ? lengthA : lengthB;
        for (int k = i; k < restLength; ++k)
            if (fold[static_cast<unsigned char>(rest[k])] == 0) return std::nullopt;
        return lengthA < lengthB ? -1 : 1;
    }

    // Lower-case ASCII letters and digits; 0 for every other byte.
    static const std::array<unsigned char, 256>& asciiCodeFold() {
        static const std::array<unsigned char, 256> table = [] {
            std::array<unsigned char, 256> t{};
            for (int c = '0'; c <= '9'; ++c) t[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c);
            for (int c = 'a'; c <= 'z'; ++c) t[static_cast<std::size_t>(c)] = t[static_cast<std::size_t>(c - 'a' + 'A')] = static_cast<unsigned char>(c);
            return t;
        }();
        return table;
    }

    UCollator* collator_ = nullptr;
};

int compareText(void* collation, int lengthA, const void* a, int lengthB, const void* b) {
    return static_cast<const TextCollation*>(collation)->compare(static_cast<const char*>(a), lengthA, static_cast<const char*>(b), lengthB);
}

void destroyCollation(void* collation) { delete static_cast<TextCollation*>(collation); }

std::string textOf(sqlite3_value* value) {
    const unsigned char* text = sqlite3_value_text(value);
    return text ? std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string();
}

std::string trimmed(const std::string& text) {
    std::size_t start = 0, end = text.size();
    while (start < end && std::isspace(static_cast<unsigned char>(text[start]))) ++start;
    while (end > start && std::isspace(static_cast<unsigned char>(text[end - 1]))) --end;
    return text.substr(start, end - start);
}

// A value as a SQL Server date; false (and an error set) when it is no date.
bool dateArgument(sqlite3_context* context, sqlite3_value* value, dates::DateTime& out) {
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            if (auto day = dates::fromDayNumber(sqlite3_value_double(value))) {
                out = *day;
                return true;
            }
            sqlite3_result_error(context, dates::kDateTimeOverflowMessage, -1);
            return false;
        case SQLITE_TEXT: {
            if (auto parsed = dates::parse(textOf(value))) {
                out = *parsed;
                return true;
            }
            break;
        }
        default: break;
    }
    sqlite3_result_error(context, "Conversion failed when converting date and/or time from character string.", -1);
    return false;
}

bool partArgument(sqlite3_context* context, sqlite3_value* value, dates::Part& out) {
    if (auto part = dates::partFromName(textOf(value))) {
        out = *part;
        return true;
    }
    sqlite3_result_error(context, "unknown date part", -1);
    return false;
}

void resultText(sqlite3_context* context, const std::string& text) {
    sqlite3_result_text(context, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// qx_num(x): x as SQL Server converts character data to a number ('' is 0).
void numFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    sqlite3_value* value = argv[0];
    if (sqlite3_value_type(value) != SQLITE_TEXT) {
        sqlite3_result_value(context, value);
        return;
    }
    const std::string raw = textOf(value);
    const std::string text = trimmed(raw);
    if (text.empty()) {
        sqlite3_result_int(context, 0);
        return;
    }
    char* end = nullptr;
    errno = 0;
    const long long integer = std::strtoll(text.c_str(), &end, 10);
    if (*end == '\0' && errno == 0) {
        sqlite3_result_int64(context, integer);
        return;
    }
    const double real = std::strtod(text.c_str(), &end);
    if (*end == '\0' && text.find_first_of("xXnN") == std::string::npos) {
        sqlite3_result_double(context, real);
        return;
    }
    const std::string message = "Conversion failed when converting the varchar value '" + raw + "' to a number.";
    sqlite3_result_error(context, message.c_str(), -1);
}

// qx_datetime(x): any accepted date as "YYYY-MM-DD HH:MM:SS".
// qx_datetime(x, style): CONVERT(datetime, x, style) — styles 3-5 and 103-105 read the day first.
void datetimeFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return sqlite3_result_null(context);
    dates::DateTime value;
    const int style = argc > 1 ? sqlite3_value_int(argv[1]) : 0;
    const bool dayFirst = (style >= 3 && style <= 5) || (style >= 103 && style <= 105);
    if (dayFirst && sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
        auto parsed = dates::parse(textOf(argv[0]), true);
        if (!parsed) return sqlite3_result_error(context, "Conversion failed when converting date and/or time from character string.", -1);
        value = *parsed;
    } else if (!dateArgument(context, argv[0], value)) {
        return;
    }
    if (value.year < 1753)
        return sqlite3_result_error(context, "The conversion of a varchar data type to a datetime data type resulted in an out-of-range value.", -1);
    resultText(context, dates::formatValue(value));
}

void datepartFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[1]) == SQLITE_NULL) return sqlite3_result_null(context);
    dates::Part part;
    dates::DateTime value;
    if (partArgument(context, argv[0], part) && dateArgument(context, argv[1], value))
        sqlite3_result_int(context, dates::datePart(value, part));
}

void dateaddFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[1]) == SQLITE_NULL || sqlite3_value_type(argv[2]) == SQLITE_NULL) return sqlite3_result_null(context);
    dates::Part part;
    dates::DateTime value;
    if (partArgument(context, argv[0], part) && dateArgument(context, argv[2], value)) {
        const double raw = sqlite3_value_double(argv[1]);
        if (!(std::fabs(raw) < 1.0e12)) return sqlite3_result_error(context, "Adding a value to a 'datetime' column caused an overflow.", -1);
        const auto amount = static_cast<std::int64_t>(std::trunc(raw));
        const dates::DateTime sum = dates::dateAdd(value, part, amount);
        if (sum.year < 1753 || sum.year > 9999) return sqlite3_result_error(context, "Adding a value to a 'datetime' column caused an overflow.", -1);
        resultText(context, dates::formatValue(sum));
    }
}

void datediffFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[1]) == SQLITE_NULL || sqlite3_value_type(argv[2]) == SQLITE_NULL) return sqlite3_result_null(context);
    dates::Part part;
    dates::DateTime from, to;
    if (partArgument(context, argv[0], part) && dateArgument(context, argv[1], from) && dateArgument(context, argv[2], to))
        sqlite3_result_int64(context, dates::dateDiff(from, to, part));
}

std::size_t utf8Length(const std::string& text) {
    std::size_t count = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80) ++count;
    return count;
}

// Byte offset of the character with the given index.
std::size_t utf8Offset(const std::string& text, std::size_t characters) {
    std::size_t i = 0;
    while (i < text.size() && characters > 0) {
        ++i;
        while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
        --characters;
    }
    return i;
}

std::string numberText(sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_INTEGER) return std::to_string(sqlite3_value_int64(value));
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", sqlite3_value_double(value));
    return buffer;
}

// qx_to_char(x, style, length, fixed): CONVERT(char/varchar(length), x[, style]).
void toCharFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    sqlite3_value* value = argv[0];
    if (sqlite3_value_type(value) == SQLITE_NULL) return sqlite3_result_null(context);
    std::string text;
    const bool hasStyle = sqlite3_value_type(argv[1]) != SQLITE_NULL;
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
        text = numberText(value);
    } else {
        text = textOf(value);
        if (hasStyle) {
            if (auto date = dates::parse(text); date && !trimmed(text).empty()) {
                if (auto formatted = dates::formatStyle(*date, sqlite3_value_int(argv[1]))) text = *formatted;
            }
        }
    }
    const auto length = static_cast<std::size_t>(std::max(0, sqlite3_value_int(argv[2])));
    // an integer too long for its text is written as '*'
    if (type == SQLITE_INTEGER && length > 0 && text.size() > length) return resultText(context, "*");
    if (length > 0) {
        const std::size_t characters = utf8Length(text);
        if (characters > length) text.resize(utf8Offset(text, length));
        else if (sqlite3_value_int(argv[3]) != 0) text.append(length - characters, ' ');
    }
    resultText(context, text);
}

// qx_right(s, n): the last n characters.
void rightFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) return sqlite3_result_null(context);
    const std::string text = sqlite3_value_type(argv[0]) == SQLITE_TEXT ? textOf(argv[0]) : numberText(argv[0]);
    const long long count = sqlite3_value_int64(argv[1]);
    if (count < 0) return sqlite3_result_error(context, "Invalid length parameter passed to the right function.", -1);
    const std::size_t characters = utf8Length(text);
    if (static_cast<std::size_t>(count) >= characters) return resultText(context, text);
    resultText(context, text.substr(utf8Offset(text, characters - static_cast<std::size_t>(count))));
}

// Code points of a UTF-8 text as the collation compares them, trailing blanks dropped.
std::vector<std::uint32_t> foldedCodePoints(const std::string& text) {
    std::vector<std::uint32_t> points;
    for (std::size_t i = 0; i < text.size();) points.push_back(foldCodePoint(nextCodePoint(text, i)));
    while (!points.empty() && points.back() == ' ') points.pop_back();
    return points;
}

// One element of a T-SQL LIKE pattern.
struct PatternItem {
    enum Kind { AnySequence, AnyOne, Literal, Set } kind = Literal;
    std::uint32_t literal = 0;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges;  // Set
    bool negated = false;                                        // Set
    bool matches(std::uint32_t c) const {
        switch (kind) {
            case AnyOne: return true;
            case Literal: return c == literal;
            case Set: {
                bool inSet = false;
                for (const auto& [low, high] : ranges) inSet = inSet || (c >= low && c <= high);
                return inSet != negated;
            }
            case AnySequence: return false;
        }
        return false;
    }
};

std::vector<PatternItem> compilePattern(const std::vector<std::uint32_t>& p, std::optional<std::uint32_t> escape) {
    std::vector<PatternItem> items;
    for (std::size_t i = 0; i < p.size(); ++i) {
        PatternItem item;
        if (escape && p[i] == *escape && i + 1 < p.size()) {
            item.literal = p[++i];
        } else if (p[i] == '%') {
            item.kind = PatternItem::AnySequence;
        } else if (p[i] == '_') {
            item.kind = PatternItem::AnyOne;
        } else if (p[i] == '[') {
            const std::size_t close = std::find(p.begin() + static_cast<long>(i) + 1, p.end(), ']') - p.begin();
            if (close >= p.size()) {
                item.literal = '[';  // an unclosed bracket matches itself
            } else {
                item.kind = PatternItem::Set;
                std::size_t k = i + 1;
                if (k < close && p[k] == '^') {
                    item.negated = true;
                    ++k;
                }
                for (; k < close; ++k) {
                    if (k + 2 < close && p[k + 1] == '-') {
                        item.ranges.emplace_back(p[k], p[k + 2]);
                        k += 2;
                    } else {
                        item.ranges.emplace_back(p[k], p[k]);
                    }
                }
                i = close;
            }
        } else {
            item.literal = p[i];
        }
        items.push_back(std::move(item));
    }
    return items;
}

// Wildcard matching with backtracking to the last '%'.
bool likeMatches(const std::vector<std::uint32_t>& value, const std::vector<PatternItem>& pattern) {
    std::size_t v = 0, p = 0;
    std::size_t starPattern = std::string::npos, starValue = 0;
    while (v < value.size()) {
        if (p < pattern.size() && pattern[p].kind == PatternItem::AnySequence) {
            starPattern = p++;
            starValue = v;
        } else if (p < pattern.size() && pattern[p].matches(value[v])) {
            ++p;
            ++v;
        } else if (starPattern != std::string::npos) {
            p = starPattern + 1;
            v = ++starValue;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p].kind == PatternItem::AnySequence) ++p;
    return p == pattern.size();
}

// qx_like(value, pattern[, escape]): SQL Server's LIKE.
void likeFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) return sqlite3_result_null(context);
    const std::string value = sqlite3_value_type(argv[0]) == SQLITE_TEXT ? textOf(argv[0]) : numberText(argv[0]);
    std::optional<std::uint32_t> escape;
    if (argc > 2 && sqlite3_value_type(argv[2]) != SQLITE_NULL) {
        const auto points = foldedCodePoints(textOf(argv[2]));
        if (points.size() != 1) return sqlite3_result_error(context, "The escape character must be a single character.", -1);
        escape = points.front();
    }
    const auto pattern = compilePattern(foldedCodePoints(textOf(argv[1])), escape);
    sqlite3_result_int(context, likeMatches(foldedCodePoints(value), pattern) ? 1 : 0);
}

// qx_patindex(pattern, value): where the LIKE pattern first matches (1-based), 0 when nowhere.
// A pattern without a leading '%' only matches at the start, one without a trailing '%' only
// up to the end.
void patindexFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) return sqlite3_result_null(context);
    auto pattern = foldedCodePoints(textOf(argv[0]));
    const auto value = foldedCodePoints(sqlite3_value_type(argv[1]) == SQLITE_TEXT ? textOf(argv[1]) : numberText(argv[1]));
    if (value.size() > 65536) return sqlite3_result_error(context, "PATINDEX searches at most 65536 characters.", -1);
    const bool anywhere = !pattern.empty() && pattern.front() == '%';
    if (anywhere) pattern.erase(pattern.begin());
    // the pattern matches at start when it matches a beginning of the rest: pattern + '%'
    auto compiled = compilePattern(pattern, std::nullopt);
    if (compiled.empty() || compiled.back().kind != PatternItem::AnySequence) {
        PatternItem rest;
        rest.kind = PatternItem::AnySequence;
        compiled.push_back(rest);
    }
    for (std::size_t start = 0; start < value.size() && (start == 0 || anywhere); ++start) {
        const std::vector<std::uint32_t> tail(value.begin() + static_cast<long>(start), value.end());
        if (likeMatches(tail, compiled)) return sqlite3_result_int64(context, static_cast<long long>(start) + 1);
    }
    sqlite3_result_int(context, 0);
}

// a / b (or a % b) with SQL Server's rules: integers divide as integers, truncating toward zero;
// a zero divisor raises an error instead of giving NULL, unless the connection's options (the
// function's user data) say otherwise for the running batch.

void divide(sqlite3_context* context, sqlite3_value** argv, bool modulo) {
    sqlite3_value* a = argv[0];
    sqlite3_value* b = argv[1];
    if (sqlite3_value_type(a) == SQLITE_NULL || sqlite3_value_type(b) == SQLITE_NULL) return sqlite3_result_null(context);
    // with ARITHABORT and ANSI_WARNINGS off (maintenance batches) a zero divisor gives NULL
    const auto* options = static_cast<const SqliteRuntimeOptions*>(sqlite3_user_data(context));
    if (options && options->divideByZeroIsNull && sqlite3_value_double(b) == 0.0) return sqlite3_result_null(context);
    const int ta = sqlite3_value_numeric_type(a);  // text that looks like a number becomes one
    const int tb = sqlite3_value_numeric_type(b);
    if (ta == SQLITE_INTEGER && tb == SQLITE_INTEGER) {
        const sqlite3_int64 x = sqlite3_value_int64(a), y = sqlite3_value_int64(b);
        if (y == 0) return sqlite3_result_error(context, "Divide by zero error encountered.", -1);
        if (y == -1 && x == std::numeric_limits<sqlite3_int64>::min())
            return sqlite3_result_error(context, "Arithmetic overflow error converting expression to data type bigint.", -1);
        return sqlite3_result_int64(context, modulo ? x % y : x / y);
    }
    const double x = sqlite3_value_double(a), y = sqlite3_value_double(b);
    if (y == 0.0) return sqlite3_result_error(context, "Divide by zero error encountered.", -1);
    sqlite3_result_double(context, modulo ? std::fmod(x, y) : x / y);
}

void divFunction(sqlite3_context* context, int, sqlite3_value** argv) { divide(context, argv, false); }
void modFunction(sqlite3_context* context, int, sqlite3_value** argv) { divide(context, argv, true); }

void check(sqlite3* db, int rc, const char* what) {
    if (rc != SQLITE_OK) throw qx::db::Error(std::string("cannot register ") + what + ": " + sqlite3_errmsg(db));
}

}  // namespace

SqliteRuntimeOptions& installSqliteRuntime(sqlite3* db) {
    // Unknown names are errors as in SQL Server: "x" is an identifier, never a string.
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    // one collator per connection: a connection is used by one thread at a time
    auto* collation = new TextCollation();
    SqliteRuntimeOptions& options = collation->options;
    const int rc = sqlite3_create_collation_v2(db, kSqliteCollation, SQLITE_UTF8, collation, compareText, destroyCollation);
    if (rc != SQLITE_OK) delete collation;  // SQLite disposes of it only when registered
    check(db, rc, kSqliteCollation);
    struct Function {
        const char* name;
        int arguments;
        void (*body)(sqlite3_context*, int, sqlite3_value**);
    };
    static const Function functions[] = {
        {"qx_num", 1, numFunction},           {"qx_datetime", 1, datetimeFunction}, {"qx_datetime", 2, datetimeFunction}, {"qx_datepart", 2, datepartFunction},
        {"qx_dateadd", 3, dateaddFunction},   {"qx_datediff", 3, datediffFunction}, {"qx_to_char", 4, toCharFunction},
        {"qx_right", 2, rightFunction},       {"qx_like", 2, likeFunction},         {"qx_like", 3, likeFunction},
        {"qx_patindex", 2, patindexFunction},
    };
    for (const auto& f : functions)
        check(db, sqlite3_create_function_v2(db, f.name, f.arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, f.body, nullptr, nullptr, nullptr), f.name);
    // division reads the connection's options, so it is not deterministic across batches
    check(db, sqlite3_create_function_v2(db, "qx_div", 2, SQLITE_UTF8, &options, divFunction, nullptr, nullptr, nullptr), "qx_div");
    check(db, sqlite3_create_function_v2(db, "qx_mod", 2, SQLITE_UTF8, &options, modFunction, nullptr, nullptr, nullptr), "qx_mod");
    try {
        registerSqliteFunctions(db);
    } catch (const std::exception& e) {
        throw qx::db::Error(e.what());
    }
    return options;
}

}  // namespace qx::tsql
