// T-SQL built-in functions for emitted SQLite text beyond the core helpers of SqliteRuntime.cpp:
// searching text with the collation, string builders, SQL Server's conversions and checks.
#include <sqlite3.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <optional>
#include <string_view>
#include <stdexcept>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "db/tsql/DateTime.h"
#include "db/tsql/SqliteRuntime.h"

namespace qx::tsql {
namespace {

// Longest text a string builder returns (SQL Server's varchar limit outside varchar(max)); it
// also keeps REPLICATE('x', 2000000000) from exhausting memory.
constexpr std::size_t kMaxBuiltText = 8000;

bool isNull(sqlite3_value* v) { return sqlite3_value_type(v) == SQLITE_NULL; }

std::string plainNumberText(sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_INTEGER) return std::to_string(sqlite3_value_int64(value));
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", sqlite3_value_double(value));
    return buffer;
}

std::string text(sqlite3_value* value) {
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) return plainNumberText(value);
    const unsigned char* t = sqlite3_value_text(value);
    return t ? std::string(reinterpret_cast<const char*>(t), static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string();
}

void result(sqlite3_context* context, const std::string& value) {
    sqlite3_result_text(context, value.c_str(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
}

std::string trimmed(const std::string& t) {
    const auto start = t.find_first_not_of(" \t\r\n");
    if (start == std::string::npos) return {};
    return t.substr(start, t.find_last_not_of(" \t\r\n") - start + 1);
}

// One character of a UTF-8 text: where it starts and its code point as the collation compares
// it (ASCII case and full width folded).
struct Char {
    std::size_t offset;
    std::uint32_t folded;
};

std::vector<Char> characters(const std::string& t) {
    std::vector<Char> out;
    for (std::size_t i = 0; i < t.size();) {
        const std::size_t offset = i;
        out.push_back({offset, foldCodePoint(nextCodePoint(t, i))});
    }
    return out;
}

// First match of needle in hay at or after character index from; npos when none.
std::size_t find(const std::vector<Char>& hay, const std::vector<Char>& needle, std::size_t from) {
    if (needle.empty() || needle.size() > hay.size()) return std::string::npos;
    for (std::size_t i = from; i + needle.size() <= hay.size(); ++i) {
        std::size_t k = 0;
        while (k < needle.size() && hay[i + k].folded == needle[k].folded) ++k;
        if (k == needle.size()) return i;
    }
    return std::string::npos;
}

std::size_t byteAt(const std::vector<Char>& chars, const std::string& t, std::size_t index) {
    return index < chars.size() ? chars[index].offset : t.size();
}

// CHARINDEX(needle, hay[, start]) with the collation; positions count characters.
void charindexFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1]) || (argc > 2 && isNull(argv[2]))) return sqlite3_result_null(context);
    long long start = argc > 2 ? sqlite3_value_int64(argv[2]) : 1;
    if (start < 1) start = 1;
    const auto hay = characters(text(argv[1]));
    const auto at = find(hay, characters(text(argv[0])), static_cast<std::size_t>(start - 1));
    sqlite3_result_int64(context, at == std::string::npos ? 0 : static_cast<long long>(at) + 1);
}

// REPLACE(s, find, with): every match found with the collation.
void replaceFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1]) || isNull(argv[2])) return sqlite3_result_null(context);
    const std::string s = text(argv[0]), with = text(argv[2]);
    const auto hay = characters(s), needle = characters(text(argv[1]));
    std::string out;
    std::size_t i = 0;
    for (std::size_t at; (at = find(hay, needle, i)) != std::string::npos; i = at + needle.size()) {
        out += s.substr(byteAt(hay, s, i), byteAt(hay, s, at) - byteAt(hay, s, i));
        out += with;
        if (out.size() > 64 * kMaxBuiltText) return sqlite3_result_error(context, "REPLACE result is too long.", -1);
    }
    out += s.substr(byteAt(hay, s, i));
    result(context, out);
}

// SUBSTRING(s, start, length): a start before 1 still counts its characters toward length.
void substringFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1]) || isNull(argv[2])) return sqlite3_result_null(context);
    const long long start = sqlite3_value_int64(argv[1]), length = sqlite3_value_int64(argv[2]);
    if (length < 0) return sqlite3_result_error(context, "Invalid length parameter passed to the substring function.", -1);
    const std::string s = text(argv[0]);
    const auto chars = characters(s);
    const long long first = std::max(1LL, start);
    const long long end = start > std::numeric_limits<long long>::max() - length ? std::numeric_limits<long long>::max() : start + length;
    if (end <= first || first > static_cast<long long>(chars.size())) return result(context, "");
    const auto from = static_cast<std::size_t>(first - 1);
    const auto to = static_cast<std::size_t>(std::min<long long>(end - 1, static_cast<long long>(chars.size())));
    result(context, s.substr(byteAt(chars, s, from), byteAt(chars, s, to) - byteAt(chars, s, from)));
}

void leftFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) return sqlite3_result_null(context);
    const long long count = sqlite3_value_int64(argv[1]);
    if (count < 0) return sqlite3_result_error(context, "Invalid length parameter passed to the left function.", -1);
    const std::string s = text(argv[0]);
    const auto chars = characters(s);
    result(context, s.substr(0, byteAt(chars, s, static_cast<std::size_t>(std::min<long long>(count, static_cast<long long>(chars.size()))))));
}

void replicate(sqlite3_context* context, const std::string& unit, long long count) {
    if (count < 0) return sqlite3_result_null(context);
    std::string out;
    for (long long i = 0; i < count && !unit.empty() && out.size() + unit.size() <= kMaxBuiltText; ++i) out += unit;
    result(context, out);
}

void replicateFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) return sqlite3_result_null(context);
    replicate(context, text(argv[0]), sqlite3_value_int64(argv[1]));
}

void spaceFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    replicate(context, " ", sqlite3_value_int64(argv[0]));
}

// A number with the decimal noise of binary floating point removed (15 significant digits).
double clean(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return std::strtod(buffer, nullptr);
}

double roundHalfAway(double value, int places, bool truncate) {
    const double factor = std::pow(10.0, places);
    const double shifted = clean(value * factor);
    const double rounded = truncate ? std::trunc(shifted) : std::round(shifted);
    return clean(rounded / factor);
}

// ROUND(x, places[, truncate]): half away from zero; negative places round left of the point.
void roundFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) return sqlite3_result_null(context);
    const int places = static_cast<int>(std::max<long long>(-38, std::min<long long>(38, sqlite3_value_int64(argv[1]))));
    const bool truncate = argc > 2 && !isNull(argv[2]) && sqlite3_value_int64(argv[2]) != 0;
    int type = sqlite3_value_numeric_type(argv[0]);
    if (type == SQLITE_TEXT || type == SQLITE_BLOB) return sqlite3_result_error(context, "Error converting data type varchar to float.", -1);
    if (type == SQLITE_INTEGER) {
        const long long x = sqlite3_value_int64(argv[0]);
        if (places >= 0) return sqlite3_result_int64(context, x);
        if (places < -18) return sqlite3_result_int64(context, 0);
        long long factor = 1;
        for (int i = 0; i < -places; ++i) factor *= 10;
        long long q = x / factor, r = x % factor;
        if (!truncate && std::llabs(r) * 2 >= factor) q += x < 0 ? -1 : 1;
        if (q > std::numeric_limits<long long>::max() / factor || q < std::numeric_limits<long long>::min() / factor)
            return sqlite3_result_error(context, "Arithmetic overflow error converting expression to data type int.", -1);
        return sqlite3_result_int64(context, q * factor);
    }
    sqlite3_result_double(context, roundHalfAway(sqlite3_value_double(argv[0]), places, truncate));
}

// STR(x[, length[, decimals]]): right-aligned, '*' when the whole part does not fit.
void strFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    const long long length = argc > 1 && !isNull(argv[1]) ? sqlite3_value_int64(argv[1]) : 10;
    long long decimals = argc > 2 && !isNull(argv[2]) ? sqlite3_value_int64(argv[2]) : 0;
    if (length <= 0 || length > 8000 || decimals < 0) return sqlite3_result_null(context);
    if (decimals > 16) decimals = 16;
    const double value = sqlite3_value_double(argv[0]);
    std::string out;
    for (long long d = decimals; d >= 0; --d) {
        char buffer[400];
        std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(d), roundHalfAway(value, static_cast<int>(d), false));
        out = buffer;
        if (static_cast<long long>(out.size()) <= length) break;
    }
    if (static_cast<long long>(out.size()) > length) return result(context, std::string(static_cast<std::size_t>(length), '*'));
    result(context, std::string(static_cast<std::size_t>(length) - out.size(), ' ') + out);
}

// STUFF(s, start, length, insert): NULL when start lies outside s or length is negative.
void stuffFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1]) || isNull(argv[2])) return sqlite3_result_null(context);
    const std::string s = text(argv[0]);
    const auto chars = characters(s);
    const long long start = sqlite3_value_int64(argv[1]), length = sqlite3_value_int64(argv[2]);
    if (start < 1 || start > static_cast<long long>(chars.size()) || length < 0) return sqlite3_result_null(context);
    const auto from = static_cast<std::size_t>(start - 1);
    // a length past the end (up to the largest integer) deletes to the end, without overflowing
    const long long left = static_cast<long long>(chars.size()) - (start - 1);
    const auto to = static_cast<std::size_t>(start - 1 + std::min(length, left));
    result(context, s.substr(0, byteAt(chars, s, from)) + (isNull(argv[3]) ? std::string() : text(argv[3])) + s.substr(byteAt(chars, s, to)));
}

void concatFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    std::string out;
    for (int i = 0; i < argc; ++i)
        if (!isNull(argv[i])) out += text(argv[i]);
    result(context, out);
}

// QUOTENAME(s[, quote]): brackets (or the quote given) around s, closing quotes doubled.
void quotenameFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (isNull(argv[0]) || (argc > 1 && isNull(argv[1]))) return sqlite3_result_null(context);
    const std::string s = text(argv[0]);
    const std::string quote = argc > 1 ? text(argv[1]) : "[";
    if (characters(s).size() > 128 || quote.size() != 1) return sqlite3_result_null(context);
    char open = quote[0], close;
    switch (open) {
        case '[': case ']': open = '['; close = ']'; break;
        case '\'': case '"': case '`': close = open; break;
        case '(': case ')': open = '('; close = ')'; break;
        case '<': case '>': open = '<'; close = '>'; break;
        case '{': case '}': open = '{'; close = '}'; break;
        default: return sqlite3_result_null(context);
    }
    std::string out(1, open);
    for (char c : s) {
        out += c;
        if (c == close) out += c;
    }
    result(context, out + close);
}

// ISNUMERIC(x): 1 when x converts to some numeric type (currency sign, thousands commas and
// exponents allowed, as SQL Server accepts them).
void isnumericFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    const int type = sqlite3_value_type(argv[0]);
    if (type == SQLITE_NULL) return sqlite3_result_int(context, 0);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) return sqlite3_result_int(context, 1);
    std::string t = trimmed(text(argv[0]));
    std::size_t i = 0;
    auto sign = [&] {
        if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    };
    if (t.empty()) return sqlite3_result_int(context, 0);
    sign();
    if (t.compare(i, 1, "$") == 0) ++i;
    else if (t.compare(i, 2, "\xC2\xA5") == 0) i += 2;  // ¥
    sign();
    bool digits = false, dot = false;
    for (; i < t.size(); ++i) {
        if (std::isdigit(static_cast<unsigned char>(t[i]))) digits = true;
        else if (t[i] == ',' && !dot) continue;
        else if (t[i] == '.' && !dot) dot = true;
        else break;
    }
    if (i < t.size() && digits && (t[i] == 'e' || t[i] == 'E' || t[i] == 'd' || t[i] == 'D')) {
        ++i;
        sign();
        bool exponent = false;
        while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i]))) ++i, exponent = true;
        if (!exponent) return sqlite3_result_int(context, 0);
    }
    sqlite3_result_int(context, i == t.size() ? 1 : 0);
}

// CAST(x AS bit): any non-zero number is 1; 'TRUE'/'FALSE' are accepted.
void bitFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    const int type = sqlite3_value_type(argv[0]);
    if (type == SQLITE_NULL) return sqlite3_result_null(context);
    if (type == SQLITE_INTEGER) return sqlite3_result_int(context, sqlite3_value_int64(argv[0]) != 0);
    if (type == SQLITE_FLOAT) return sqlite3_result_int(context, sqlite3_value_double(argv[0]) != 0.0);
    const std::string raw = text(argv[0]), t = trimmed(raw);
    std::string upper;
    for (char c : t) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (upper == "TRUE") return sqlite3_result_int(context, 1);
    if (upper == "FALSE" || t.empty()) return sqlite3_result_int(context, 0);
    char* end = nullptr;
    const double value = std::strtod(t.c_str(), &end);
    if (end && *end == '\0' && t.find_first_of("xXnNiI") == std::string::npos) return sqlite3_result_int(context, value != 0.0);
    const std::string message = "Conversion failed when converting the varchar value '" + raw + "' to data type bit.";
    sqlite3_result_error(context, message.c_str(), -1);
}

struct IntegerKind {
    const char* name;
    long long low, high;
};

const IntegerKind* integerKind(const std::string& name) {
    static const IntegerKind kinds[] = {{"int", -2147483648LL, 2147483647LL},
                                        {"smallint", -32768, 32767},
                                        {"tinyint", 0, 255},
                                        {"bigint", std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max()}};
    for (const auto& k : kinds)
        if (name == k.name) return &k;
    return &kinds[3];
}

// The kind named by a function's argument, read in place: checks run once per value.
const IntegerKind* integerKind(sqlite3_value* name) {
    const auto* t = reinterpret_cast<const char*>(sqlite3_value_text(name));
    if (!t || sqlite3_value_type(name) != SQLITE_TEXT) return integerKind(text(name));
    static const IntegerKind* const plainInt = integerKind(std::string("int"));
    if (sqlite3_value_bytes(name) == 3 && t[0] == 'i' && t[1] == 'n' && t[2] == 't') return plainInt;
    return integerKind(std::string(t, static_cast<std::size_t>(sqlite3_value_bytes(name))));
}

void overflow(sqlite3_context* context, const IntegerKind& kind) {
    const std::string message = std::string("Arithmetic overflow error converting expression to data type ") + kind.name + ".";
    sqlite3_result_error(context, message.c_str(), -1);
}

// qx_int(x, kind[, round]): CAST(x AS int/smallint/tinyint/bigint). Text must be an integer
// ('12.5' is refused), numbers are truncated (rounded for money), the range is checked.
void intFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    const IntegerKind& kind = *integerKind(argv[1]);
    const bool rounding = argc > 2 && sqlite3_value_int(argv[2]) != 0;
    switch (sqlite3_value_type(argv[0])) {
        case SQLITE_NULL: return sqlite3_result_null(context);
        case SQLITE_INTEGER: {
            const long long x = sqlite3_value_int64(argv[0]);
            if (x < kind.low || x > kind.high) return overflow(context, kind);
            return sqlite3_result_int64(context, x);
        }
        case SQLITE_FLOAT: {
            const double x = sqlite3_value_double(argv[0]);
            const double whole = rounding ? std::round(clean(x)) : std::trunc(x);
            // The bigint range ends below 2^63, which is the double nearest its largest value.
            const bool fits = whole >= static_cast<double>(kind.low) &&
                              (kind.high == std::numeric_limits<long long>::max() ? whole < 0x1p63 : whole <= static_cast<double>(kind.high));
            if (!fits || std::isnan(whole)) return overflow(context, kind);
            return sqlite3_result_int64(context, static_cast<long long>(whole));
        }
        default: break;
    }
    const std::string raw = text(argv[0]), t = trimmed(raw);
    if (t.empty()) return sqlite3_result_int64(context, 0);
    std::size_t i = (t[0] == '+' || t[0] == '-') ? 1 : 0;
    bool digits = i < t.size();
    for (std::size_t k = i; k < t.size(); ++k) digits = digits && std::isdigit(static_cast<unsigned char>(t[k]));
    if (!digits) {
        const std::string message = "Conversion failed when converting the varchar value '" + raw + "' to data type " + kind.name + ".";
        return sqlite3_result_error(context, message.c_str(), -1);
    }
    errno = 0;
    const long long x = std::strtoll(t.c_str(), nullptr, 10);
    if (errno == ERANGE || x < kind.low || x > kind.high) return overflow(context, kind);
    sqlite3_result_int64(context, x);
}

// qx_checked(x, kind): integer arithmetic results stay in their type's range.
void checkedFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    const int type = sqlite3_value_type(argv[0]);
    if (type == SQLITE_INTEGER) {
        const IntegerKind& kind = *integerKind(argv[1]);
        const long long x = sqlite3_value_int64(argv[0]);
        if (x < kind.low || x > kind.high) return overflow(context, kind);
    } else if (type == SQLITE_FLOAT && std::isinf(sqlite3_value_double(argv[0]))) {
        return sqlite3_result_error(context, "Arithmetic overflow error converting expression to data type float.", -1);
    } else if (type == SQLITE_FLOAT && std::fabs(sqlite3_value_double(argv[0])) >= 9223372036854775808.0) {
        // SQLite turns an integer result beyond 64 bits into a float: bigint arithmetic overflowed
        const IntegerKind& kind = *integerKind(argv[1]);
        if (std::string_view(kind.name) == "bigint") return overflow(context, kind);
    }
    sqlite3_result_value(context, argv[0]);
}

// qx_int_sum(a, b, c, …): ((a + b) + c) … of int values as qx_checked checks each addition:
// every partial sum is range-checked in turn, a NULL makes the rest NULL (no later check), a
// float operand makes a float sum (only infinity is refused), as SQLite's + computes them.
void intSumFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    static const IntegerKind& kind = *integerKind(std::string("int"));
    bool isInteger = true;
    long long whole = 0;
    double real = 0;
    for (int i = 0; i < argc; ++i) {
        sqlite3_value* v = argv[i];
        int type = sqlite3_value_type(v);
        if (type == SQLITE_NULL) return sqlite3_result_null(context);
        if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) type = sqlite3_value_numeric_type(v) == SQLITE_INTEGER ? SQLITE_INTEGER : SQLITE_FLOAT;
        if (i == 0) {
            isInteger = type == SQLITE_INTEGER;
            if (isInteger) whole = sqlite3_value_int64(v);
            else real = sqlite3_value_double(v);
            continue;
        }
        if (isInteger && type == SQLITE_INTEGER) {
            long long sum = 0;
            if (__builtin_add_overflow(whole, sqlite3_value_int64(v), &sum)) {
                isInteger = false;  // SQLite turns an integer overflow into a float
                real = static_cast<double>(whole) + static_cast<double>(sqlite3_value_int64(v));
            } else {
                whole = sum;
                if (whole < kind.low || whole > kind.high) return overflow(context, kind);
                continue;
            }
        } else {
            const double left = isInteger ? static_cast<double>(whole) : real;
            isInteger = false;
            real = left + sqlite3_value_double(v);
        }
        if (std::isinf(real)) return sqlite3_result_error(context, "Arithmetic overflow error converting expression to data type float.", -1);
    }
    if (isInteger) sqlite3_result_int64(context, whole);
    else sqlite3_result_double(context, real);
}

// qx_decimal(x, precision, scale): CAST(x AS decimal(p,s)) — rounded to s places, an error when
// the whole part needs more than p - s digits.
void decimalFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    const int precision = sqlite3_value_int(argv[1]), scale = sqlite3_value_int(argv[2]);
    double x;
    if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
        const std::string raw = text(argv[0]), t = trimmed(raw);
        char* end = nullptr;
        x = t.empty() ? 0.0 : std::strtod(t.c_str(), &end);
        if (!t.empty() && (*end != '\0' || t.find_first_of("xXnNiI") != std::string::npos)) {
            const std::string message = "Error converting data type varchar to numeric.";
            return sqlite3_result_error(context, message.c_str(), -1);
        }
    } else {
        x = sqlite3_value_double(argv[0]);
    }
    const double rounded = roundHalfAway(x, scale, false);
    if (std::fabs(rounded) >= std::pow(10.0, precision - scale) || std::isnan(rounded))
        return sqlite3_result_error(context, "Arithmetic overflow error converting numeric to data type numeric.", -1);
    if (scale == 0 && std::fabs(rounded) < 9.0e15) return sqlite3_result_int64(context, static_cast<long long>(rounded));
    sqlite3_result_double(context, rounded);
}

// qx_fits(value, length, table, column): a text stored into VARCHAR(n)/CHAR(n) holds at most n
// characters (trailing blanks beyond n are dropped silently, as SQL Server pads and cuts them).
void fitsFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_int(context, 1);
    const std::string value = text(argv[0]);
    const long long limit = sqlite3_value_int64(argv[1]);
    std::size_t end = value.size();
    while (end > 0 && value[end - 1] == ' ') --end;
    std::size_t count = 0;
    for (std::size_t i = 0; i < end; ++i)
        if ((static_cast<unsigned char>(value[i]) & 0xC0) != 0x80) ++count;
    if (static_cast<long long>(count) <= limit) return sqlite3_result_int(context, 1);
    std::string shown = value.substr(0, std::min<std::size_t>(value.size(), 40));
    while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0xC0) == 0x80) shown.pop_back();
    if (!shown.empty() && static_cast<unsigned char>(shown.back()) >= 0xC0) shown.pop_back();
    const std::string message = "String or binary data would be truncated in table '" + text(argv[2]) + "', column '" + text(argv[3]) +
                                "'. Truncated value: '" + shown + "'.";
    sqlite3_result_error(context, message.c_str(), -1);
}

// qx_fits_decimal(value, precision, scale): a DECIMAL(p,s) column holds at most p - s digits
// before the point.
void fitsDecimalFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || sqlite3_value_type(argv[0]) == SQLITE_TEXT) return sqlite3_result_int(context, 1);
    const int digits = sqlite3_value_int(argv[1]) - sqlite3_value_int(argv[2]);
    if (std::fabs(sqlite3_value_double(argv[0])) < std::pow(10.0, digits)) return sqlite3_result_int(context, 1);
    sqlite3_result_error(context, "Arithmetic overflow error converting numeric to data type numeric.", -1);
}

// qx_bitxor(a, b): a ^ b.
void bitxorFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) return sqlite3_result_null(context);
    sqlite3_result_int64(context, sqlite3_value_int64(argv[0]) ^ sqlite3_value_int64(argv[1]));
}

// qx_sized(x, n): DATALENGTH of a fixed-size value — n, or NULL for NULL.
void sizedFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    sqlite3_result_value(context, argv[1]);
}

// qx_one(x): the aggregate behind a scalar subquery — more than one row is an error.
struct One {
    long long rows;
    sqlite3_value* value;
};

void oneStep(sqlite3_context* context, int, sqlite3_value** argv) {
    auto* state = static_cast<One*>(sqlite3_aggregate_context(context, sizeof(One)));
    if (!state) return sqlite3_result_error_nomem(context);
    if (++state->rows > 1) {
        sqlite3_result_error(context,
                             "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
                             "when the subquery is used as an expression.",
                             -1);
        return;
    }
    state->value = sqlite3_value_dup(argv[0]);
}

void oneFinal(sqlite3_context* context) {
    auto* state = static_cast<One*>(sqlite3_aggregate_context(context, 0));
    if (!state || state->rows == 0 || !state->value) return sqlite3_result_null(context);
    if (state->rows == 1) sqlite3_result_value(context, state->value);
    sqlite3_value_free(state->value);
    state->value = nullptr;
}

// Float to text as SQL Server writes a float by default: six significant digits, scientific
// with a three-digit exponent outside 1e-4 .. 1e6.
void floatTextFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) return sqlite3_result_value(context, argv[0]);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.6g", sqlite3_value_double(argv[0]));
    std::string out = buffer;
    const auto e = out.find('e');
    if (e != std::string::npos) {
        std::string digits = out.substr(e + 2);
        while (digits.size() < 3) digits = "0" + digits;
        out = out.substr(0, e + 2) + digits;
    }
    result(context, out);
}

// DATENAME(part, date): month and weekday names in English, other parts as numbers.
void datenameFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[1])) return sqlite3_result_null(context);
    const auto part = dates::partFromName(text(argv[0]));
    const auto date = sqlite3_value_type(argv[1]) == SQLITE_TEXT ? dates::parse(text(argv[1]))
                                                                  : dates::fromDayNumber(sqlite3_value_double(argv[1]));
    if (!part) return sqlite3_result_error(context, "unknown date part", -1);
    if (!date) return sqlite3_result_error(context, "Conversion failed when converting date and/or time from character string.", -1);
    static const char* const months[] = {"January", "February", "March", "April", "May", "June", "July", "August", "September", "October", "November", "December"};
    static const char* const days[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    if (*part == dates::Part::Month) return result(context, months[date->month - 1]);
    if (*part == dates::Part::Weekday) return result(context, days[dates::datePart(*date, dates::Part::Weekday) - 1]);
    result(context, std::to_string(dates::datePart(*date, *part)));
}

bool dateOf(sqlite3_context* context, sqlite3_value* value, dates::DateTime& out) {
    if (sqlite3_value_type(value) == SQLITE_TEXT) {
        if (auto parsed = dates::parse(text(value))) {
            out = *parsed;
            return true;
        }
    } else if (sqlite3_value_type(value) != SQLITE_BLOB) {
        if (auto day = dates::fromDayNumber(sqlite3_value_double(value))) {
            out = *day;
            return true;
        }
        sqlite3_result_error(context, dates::kDateTimeOverflowMessage, -1);
        return false;
    }
    sqlite3_result_error(context, "Conversion failed when converting date and/or time from character string.", -1);
    return false;
}

// EOMONTH(date[, months]): the last day of that month, at midnight.
void eomonthFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (isNull(argv[0]) || (argc > 1 && isNull(argv[1]))) return sqlite3_result_null(context);
    dates::DateTime d;
    if (!dateOf(context, argv[0], d)) return;
    d.day = 1;
    d.hour = d.minute = d.second = d.millisecond = 0;
    d = dates::dateAdd(d, dates::Part::Month, (argc > 1 ? sqlite3_value_int64(argv[1]) : 0) + 1);
    d = dates::dateAdd(d, dates::Part::Day, -1);
    if (d.year < 1 || d.year > 9999) return sqlite3_result_error(context, "Adding a value to a 'date' column caused an overflow.", -1);
    result(context, dates::formatIso(d));
}

void datefrompartsFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1]) || isNull(argv[2])) return sqlite3_result_null(context);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04lld-%02lld-%02lld", sqlite3_value_int64(argv[0]) % 100000, sqlite3_value_int64(argv[1]) % 1000,
                  sqlite3_value_int64(argv[2]) % 1000);
    const auto d = dates::parse(buffer);
    if (!d || sqlite3_value_int64(argv[0]) < 1 || sqlite3_value_int64(argv[0]) > 9999)
        return sqlite3_result_error(context, "Cannot construct data type date, some of the arguments have values which are not valid.", -1);
    result(context, dates::formatIso(*d));
}

void isdateFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) != SQLITE_TEXT) return sqlite3_result_int(context, 0);
    const std::string t = trimmed(text(argv[0]));
    const auto d = dates::parse(t);
    sqlite3_result_int(context, !t.empty() && d && d->year >= 1753 ? 1 : 0);
}

// date + n: n days, fractions being the time of day (datetime + 0.5 is twelve hours later).
void addDaysFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) return sqlite3_result_null(context);
    dates::DateTime d;
    if (!dateOf(context, argv[0], d)) return;
    const double days = sqlite3_value_double(argv[1]);
    if (std::fabs(days) > 4.0e6) return sqlite3_result_error(context, dates::kDateTimeOverflowMessage, -1);
    const auto seconds = static_cast<std::int64_t>(std::llround(days * 86400.0));
    d = dates::dateAdd(d, dates::Part::Second, seconds);
    if (d.year < 1753 || d.year > 9999) return sqlite3_result_error(context, dates::kDateTimeOverflowMessage, -1);
    result(context, dates::formatIso(d));
}

// qx_try(x, kind, precision, scale): TRY_CAST/TRY_CONVERT — the converted value, or NULL when
// x does not convert (kind: int, smallint, tinyint, bigint, bit, decimal, float, datetime).
void tryFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    sqlite3_value* value = argv[0];
    const std::string kind = text(argv[1]);
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_NULL) return sqlite3_result_null(context);
    const std::string t = trimmed(text(value));
    if (kind == "datetime") {
        if (type != SQLITE_TEXT) return sqlite3_result_null(context);
        const auto d = dates::parse(t);
        if (!d || d->year < 1753) return sqlite3_result_null(context);
        return result(context, dates::formatIso(*d));
    }
    double number = 0.0;
    bool integral = type == SQLITE_INTEGER;
    if (type == SQLITE_TEXT) {
        if (kind == "bit") {
            std::string upper;
            for (char c : t) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
            if (upper == "TRUE") return sqlite3_result_int(context, 1);
            if (upper == "FALSE") return sqlite3_result_int(context, 0);
        }
        if (!t.empty()) {
            char* end = nullptr;
            number = std::strtod(t.c_str(), &end);
            if (*end != '\0' || t.find_first_of("xXnNiI") != std::string::npos) return sqlite3_result_null(context);
        }
        integral = t.find_first_of(".eE") == std::string::npos;
    } else {
        number = sqlite3_value_double(value);
    }
    if (kind == "float") return sqlite3_result_double(context, number);
    if (kind == "bit") return sqlite3_result_int(context, number != 0.0);
    if (kind == "decimal") {
        const int precision = sqlite3_value_int(argv[2]), scale = sqlite3_value_int(argv[3]);
        const double rounded = roundHalfAway(number, scale, false);
        if (std::fabs(rounded) >= std::pow(10.0, precision - scale)) return sqlite3_result_null(context);
        if (scale == 0) return sqlite3_result_int64(context, static_cast<long long>(rounded));
        return sqlite3_result_double(context, rounded);
    }
    if (type == SQLITE_TEXT && !integral) return sqlite3_result_null(context);  // '12.5' is no int
    const IntegerKind& range = *integerKind(kind);
    const double whole = type == SQLITE_INTEGER ? static_cast<double>(sqlite3_value_int64(value)) : std::trunc(number);
    if (!(whole >= static_cast<double>(range.low) && whole <= static_cast<double>(range.high))) return sqlite3_result_null(context);
    if (type == SQLITE_INTEGER) return sqlite3_result_int64(context, sqlite3_value_int64(value));
    if (type == SQLITE_TEXT) return sqlite3_result_int64(context, std::strtoll(t.c_str(), nullptr, 10));
    sqlite3_result_int64(context, static_cast<long long>(whole));
}

// qx_date(x): CAST(x AS date) — the day at midnight.
void dateFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    dates::DateTime d;
    if (!dateOf(context, argv[0], d)) return;
    d.hour = d.minute = d.second = d.millisecond = 0;
    result(context, dates::formatIso(d));
}

// qx_smalldatetime(x): CAST(x AS smalldatetime) — to the nearest minute (30 seconds round up),
// within 1900-01-01 to 2079-06-06.
void smalldatetimeFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    if (isNull(argv[0])) return sqlite3_result_null(context);
    dates::DateTime d;
    if (!dateOf(context, argv[0], d)) return;
    const bool up = d.second >= 30 || (d.second == 29 && d.millisecond >= 999);
    d.second = d.millisecond = 0;
    if (up) d = dates::dateAdd(d, dates::Part::Minute, 1);
    if (d.year < 1900 || d.year > 2079 || (d.year == 2079 && (d.month > 6 || (d.month == 6 && d.day > 6))))
        return sqlite3_result_error(context, "The conversion of a varchar data type to a smalldatetime data type resulted in an out-of-range value.", -1);
    result(context, dates::formatIso(d));
}

}  // namespace

std::uint32_t nextCodePoint(const std::string& text, std::size_t& i) {
    const auto c = static_cast<unsigned char>(text[i]);
    std::uint32_t point = c;
    std::size_t length = 1;
    if (c >= 0xF0) point = c & 0x07, length = 4;
    else if (c >= 0xE0) point = c & 0x0F, length = 3;
    else if (c >= 0xC0) point = c & 0x1F, length = 2;
    for (std::size_t k = 1; k < length && i + k < text.size(); ++k) point = (point << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    i += length;
    return point;
}

std::uint32_t foldCodePoint(std::uint32_t point) {
    if (point >= 0xFF01 && point <= 0xFF5E) point -= 0xFEE0;  // full width to ASCII
    if (point == 0x3000) point = ' ';
    if (point >= 'A' && point <= 'Z') point += 'a' - 'A';
    return point;
}

void registerSqliteFunctions(sqlite3* db) {
    struct Function {
        const char* name;
        int arguments;
        void (*body)(sqlite3_context*, int, sqlite3_value**);
    };
    static const Function functions[] = {
        {"qx_charindex", 2, charindexFunction}, {"qx_charindex", 3, charindexFunction}, {"qx_replace", 3, replaceFunction},
        {"qx_substring", 3, substringFunction}, {"qx_left", 2, leftFunction},           {"qx_replicate", 2, replicateFunction},
        {"qx_space", 1, spaceFunction},         {"qx_round", 2, roundFunction},         {"qx_round", 3, roundFunction},
        {"qx_str", 1, strFunction},             {"qx_str", 2, strFunction},             {"qx_str", 3, strFunction},
        {"qx_stuff", 4, stuffFunction},         {"qx_concat", -1, concatFunction},      {"qx_quotename", 1, quotenameFunction},
        {"qx_quotename", 2, quotenameFunction}, {"qx_isnumeric", 1, isnumericFunction}, {"qx_bit", 1, bitFunction},
        {"qx_int", 2, intFunction},             {"qx_int", 3, intFunction},             {"qx_checked", 2, checkedFunction},
        {"qx_int_sum", -1, intSumFunction},
        {"qx_decimal", 3, decimalFunction},     {"qx_fits", 4, fitsFunction},           {"qx_float_text", 1, floatTextFunction},
        {"qx_datename", 2, datenameFunction},   {"qx_eomonth", 1, eomonthFunction},     {"qx_eomonth", 2, eomonthFunction},
        {"qx_datefromparts", 3, datefrompartsFunction}, {"qx_isdate", 1, isdateFunction}, {"qx_add_days", 2, addDaysFunction},
        {"qx_try", 4, tryFunction},             {"qx_smalldatetime", 1, smalldatetimeFunction},             {"qx_bitxor", 2, bitxorFunction},       {"qx_sized", 2, sizedFunction},             {"qx_fits_decimal", 3, fitsDecimalFunction},             {"qx_date", 1, dateFunction},
    };
    for (const auto& f : functions)
        if (sqlite3_create_function_v2(db, f.name, f.arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, f.body, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(std::string("cannot register ") + f.name);
    if (sqlite3_create_function_v2(db, "qx_one", 1, SQLITE_UTF8, nullptr, nullptr, oneStep, oneFinal, nullptr) != SQLITE_OK)
        throw std::runtime_error("cannot register qx_one");
}

}  // namespace qx::tsql
