#include "db/tsql/DateTime.h"

#include <cctype>
#include <cmath>
#include <cstdio>

#include "db/tsql/Lexer.h"

namespace qx::tsql::dates {
namespace {

// Days since 1970-01-01 of a civil date (proleptic Gregorian), after H. Hinnant.
std::int64_t daysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void civilFromDays(std::int64_t z, int& y, int& m, int& d) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2));
}

bool isLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }
int daysInMonth(int y, int m) {
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && isLeap(y) ? 29 : days[m - 1];
}

std::int64_t dayNumber(const DateTime& v) { return daysFromCivil(v.year, v.month, v.day); }
std::int64_t secondsOf(const DateTime& v) { return dayNumber(v) * 86400 + v.hour * 3600 + v.minute * 60 + v.second; }

DateTime fromSeconds(std::int64_t total, int millisecond) {
    std::int64_t days = total / 86400;
    std::int64_t rest = total % 86400;
    if (rest < 0) {
        rest += 86400;
        --days;
    }
    DateTime v;
    civilFromDays(days, v.year, v.month, v.day);
    v.hour = static_cast<int>(rest / 3600);
    v.minute = static_cast<int>(rest % 3600 / 60);
    v.second = static_cast<int>(rest % 60);
    v.millisecond = millisecond;
    return v;
}

int weekdayIndex(const DateTime& v) {  // 0 = Sunday
    const std::int64_t days = dayNumber(v);  // 1970-01-01 was a Thursday
    return static_cast<int>(((days + 4) % 7 + 7) % 7);
}

bool readNumber(std::string_view text, std::size_t& pos, std::size_t maxDigits, int& out) {
    std::size_t start = pos;
    int value = 0;
    while (pos < text.size() && pos - start < maxDigits && std::isdigit(static_cast<unsigned char>(text[pos])))
        value = value * 10 + (text[pos++] - '0');
    out = value;
    return pos > start;
}

bool valid(const DateTime& v) {
    return v.year >= 1 && v.year <= 9999 && v.month >= 1 && v.month <= 12 && v.day >= 1 &&
           v.day <= daysInMonth(v.year, v.month) && v.hour < 24 && v.minute < 60 && v.second < 60;
}

}  // namespace

std::optional<Part> partFromName(std::string_view name) {
    const std::string n = toUpper(name);
    if (n == "YEAR" || n == "YY" || n == "YYYY") return Part::Year;
    if (n == "QUARTER" || n == "QQ" || n == "Q") return Part::Quarter;
    if (n == "MONTH" || n == "MM" || n == "M") return Part::Month;
    if (n == "DAYOFYEAR" || n == "DY" || n == "Y") return Part::DayOfYear;
    if (n == "DAY" || n == "DD" || n == "D") return Part::Day;
    if (n == "WEEK" || n == "WK" || n == "WW") return Part::Week;
    if (n == "WEEKDAY" || n == "DW" || n == "W") return Part::Weekday;
    if (n == "HOUR" || n == "HH") return Part::Hour;
    if (n == "MINUTE" || n == "MI" || n == "N") return Part::Minute;
    if (n == "SECOND" || n == "SS" || n == "S") return Part::Second;
    if (n == "MILLISECOND" || n == "MS") return Part::Millisecond;
    return std::nullopt;
}

const char* partName(Part part) {
    switch (part) {
        case Part::Year: return "year";
        case Part::Quarter: return "quarter";
        case Part::Month: return "month";
        case Part::DayOfYear: return "dayofyear";
        case Part::Day: return "day";
        case Part::Week: return "week";
        case Part::Weekday: return "weekday";
        case Part::Hour: return "hour";
        case Part::Minute: return "minute";
        case Part::Second: return "second";
        case Part::Millisecond: return "millisecond";
    }
    return "day";
}

namespace {

const char* const kMonthNames[] = {"january", "february", "march", "april", "may", "june", "july", "august", "september", "october", "november", "december"};
const char* const kMonthAbbreviations[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

void skipBlanks(std::string_view text, std::size_t& pos) {
    while (pos < text.size() && text[pos] == ' ') ++pos;
}

// A month name or its first three letters, any case.
bool readMonthName(std::string_view text, std::size_t& pos, int& month) {
    std::size_t end = pos;
    while (end < text.size() && std::isalpha(static_cast<unsigned char>(text[end]))) ++end;
    std::string word;
    for (std::size_t i = pos; i < end; ++i) word += static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
    if (word.size() < 3) return false;
    for (int m = 0; m < 12; ++m) {
        const std::string full = kMonthNames[m];
        if (word == full || word == full.substr(0, 3)) {
            month = m + 1;
            pos = end;
            return true;
        }
    }
    return false;
}

int fullYear(int year, std::size_t digits) {
    if (digits > 2) return year;
    return year < 50 ? 2000 + year : 1900 + year;  // two-digit year cutoff 2049
}

// The date: YYYY-MM-DD (also / and .), YYYYMMDD, MM/DD/YYYY (DD/MM/YYYY when dayFirst),
// "Aug 30 2006", "August 30, 2006", "30 Aug 2006".
bool readDate(std::string_view text, std::size_t& pos, DateTime& v, bool dayFirst) {
    if (pos < text.size() && std::isalpha(static_cast<unsigned char>(text[pos]))) {
        if (!readMonthName(text, pos, v.month)) return false;
        skipBlanks(text, pos);
        if (!readNumber(text, pos, 2, v.day)) return false;
        if (pos < text.size() && text[pos] == ',') ++pos;
        skipBlanks(text, pos);
        const std::size_t start = pos;
        if (!readNumber(text, pos, 4, v.year)) return false;
        v.year = fullYear(v.year, pos - start);
        return true;
    }
    std::size_t digits = 0;
    while (pos + digits < text.size() && std::isdigit(static_cast<unsigned char>(text[pos + digits]))) ++digits;
    if (digits == 8) {
        readNumber(text, pos, 4, v.year);
        readNumber(text, pos, 2, v.month);
        readNumber(text, pos, 2, v.day);
        return true;
    }
    if (digits == 4) {
        readNumber(text, pos, 4, v.year);
        if (pos >= text.size() || (text[pos] != '-' && text[pos] != '/' && text[pos] != '.')) return false;
        const char separator = text[pos++];
        if (!readNumber(text, pos, 2, v.month)) return false;
        if (pos >= text.size() || text[pos] != separator) return false;
        ++pos;
        return readNumber(text, pos, 2, v.day);
    }
    if (digits == 1 || digits == 2) {
        int first = 0;
        readNumber(text, pos, 2, first);
        if (pos < text.size() && (text[pos] == '-' || text[pos] == '/' || text[pos] == '.')) {
            const char separator = text[pos++];
            int second = 0;
            if (!readNumber(text, pos, 2, second)) return false;
            if (pos >= text.size() || text[pos] != separator) return false;
            ++pos;
            const std::size_t start = pos;
            if (!readNumber(text, pos, 4, v.year)) return false;
            v.year = fullYear(v.year, pos - start);
            v.month = dayFirst ? second : first;
            v.day = dayFirst ? first : second;
            return true;
        }
        skipBlanks(text, pos);
        v.day = first;
        if (!readMonthName(text, pos, v.month)) return false;
        skipBlanks(text, pos);
        const std::size_t start = pos;
        if (!readNumber(text, pos, 4, v.year)) return false;
        v.year = fullYear(v.year, pos - start);
        return true;
    }
    return false;
}

// hh:mi[:ss[.fff or :fff]] with an optional AM/PM.
bool readTime(std::string_view text, std::size_t& pos, DateTime& v) {
    if (!readNumber(text, pos, 2, v.hour)) return false;
    if (pos >= text.size() || text[pos] != ':') return false;
    ++pos;
    if (!readNumber(text, pos, 2, v.minute)) return false;
    if (pos < text.size() && text[pos] == ':') {
        ++pos;
        if (!readNumber(text, pos, 2, v.second)) return false;
        if (pos < text.size() && (text[pos] == '.' || text[pos] == ':')) {
            ++pos;
            int fraction = 0;
            const std::size_t start = pos;
            readNumber(text, pos, 3, fraction);
            for (std::size_t digits = pos - start; digits < 3; ++digits) fraction *= 10;
            v.millisecond = fraction;
            while (pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos]))) ++pos;
        }
    }
    std::size_t look = pos;
    skipBlanks(text, look);
    if (look + 1 < text.size() && std::toupper(static_cast<unsigned char>(text[look + 1])) == 'M') {
        const char half = static_cast<char>(std::toupper(static_cast<unsigned char>(text[look])));
        if (half == 'A' || half == 'P') {
            if (v.hour < 1 || v.hour > 12) return false;
            if (half == 'A' && v.hour == 12) v.hour = 0;
            if (half == 'P' && v.hour != 12) v.hour += 12;
            pos = look + 2;
        }
    }
    return true;
}

}  // namespace

std::optional<DateTime> parse(std::string_view text, bool dayFirst) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    DateTime v;
    if (text.empty()) return v;
    std::size_t pos = 0;
    std::size_t digits = 0;
    while (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits]))) ++digits;
    const bool timeOnly = digits >= 1 && digits <= 2 && digits < text.size() && text[digits] == ':';
    if (!timeOnly) {
        if (!readDate(text, pos, v, dayFirst)) return std::nullopt;
        if (pos < text.size()) {
            if (text[pos] != ' ' && text[pos] != 'T') return std::nullopt;
            if (text[pos] == 'T') ++pos;
            skipBlanks(text, pos);
        }
    }
    if (pos < text.size() && !readTime(text, pos, v)) return std::nullopt;
    if (pos != text.size()) return std::nullopt;
    if (!valid(v)) return std::nullopt;
    return v;
}

std::optional<DateTime> fromDayNumber(double days) {
    constexpr double kFirstDay = -53690;  // 1753-01-01
    constexpr double kAfterLastDay = 2958464;  // 10000-01-01
    if (!std::isfinite(days) || days < kFirstDay || days >= kAfterLastDay) return std::nullopt;
    const double whole = std::floor(days);
    const auto seconds = static_cast<std::int64_t>(std::llround((days - whole) * 86400.0));
    return fromSeconds((daysFromCivil(1900, 1, 1) + static_cast<std::int64_t>(whole)) * 86400 + seconds, 0);
}

std::string formatIso(const DateTime& v) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", v.year, v.month, v.day, v.hour, v.minute, v.second);
    return buffer;
}

DateTime roundToTicks(const DateTime& v) {
    const std::int64_t ticks = std::llround(v.millisecond * 0.3);  // of 1/300 s
    const auto millisecond = static_cast<int>(std::llround(ticks * 10.0 / 3.0));
    if (millisecond < 1000) {
        DateTime rounded = v;
        rounded.millisecond = millisecond;
        return rounded;
    }
    return fromSeconds(secondsOf(v) + 1, millisecond - 1000);
}

std::string formatValue(const DateTime& value) {
    const DateTime v = roundToTicks(value);
    if (v.millisecond == 0) return formatIso(v);
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, ".%03d", v.millisecond);
    return formatIso(v) + buffer;
}

std::optional<std::string> formatStyle(const DateTime& v, int style) {
    char b[48];
    const int yy = v.year % 100;
    switch (style) {
        case 1: std::snprintf(b, sizeof b, "%02d/%02d/%02d", v.month, v.day, yy); break;
        case 101: std::snprintf(b, sizeof b, "%02d/%02d/%04d", v.month, v.day, v.year); break;
        case 2: std::snprintf(b, sizeof b, "%02d.%02d.%02d", yy, v.month, v.day); break;
        case 102: std::snprintf(b, sizeof b, "%04d.%02d.%02d", v.year, v.month, v.day); break;
        case 3: std::snprintf(b, sizeof b, "%02d/%02d/%02d", v.day, v.month, yy); break;
        case 103: std::snprintf(b, sizeof b, "%02d/%02d/%04d", v.day, v.month, v.year); break;
        case 4: std::snprintf(b, sizeof b, "%02d.%02d.%02d", v.day, v.month, yy); break;
        case 104: std::snprintf(b, sizeof b, "%02d.%02d.%04d", v.day, v.month, v.year); break;
        case 8:
        case 108: std::snprintf(b, sizeof b, "%02d:%02d:%02d", v.hour, v.minute, v.second); break;
        case 10: std::snprintf(b, sizeof b, "%02d-%02d-%02d", v.month, v.day, yy); break;
        case 110: std::snprintf(b, sizeof b, "%02d-%02d-%04d", v.month, v.day, v.year); break;
        case 11: std::snprintf(b, sizeof b, "%02d/%02d/%02d", yy, v.month, v.day); break;
        case 111: std::snprintf(b, sizeof b, "%04d/%02d/%02d", v.year, v.month, v.day); break;
        case 12: std::snprintf(b, sizeof b, "%02d%02d%02d", yy, v.month, v.day); break;
        case 112: std::snprintf(b, sizeof b, "%04d%02d%02d", v.year, v.month, v.day); break;
        case 23: std::snprintf(b, sizeof b, "%04d-%02d-%02d", v.year, v.month, v.day); break;
        case 20:
        case 120: return formatIso(v);
        case 21:
        case 25:
        case 121:
            std::snprintf(b, sizeof b, "%04d-%02d-%02d %02d:%02d:%02d.%03d", v.year, v.month, v.day, v.hour, v.minute, v.second,
                          v.millisecond);
            break;
        case 0:
        case 100:
        case 9:
        case 109: {
            const int hour12 = v.hour % 12 == 0 ? 12 : v.hour % 12;
            if (style == 0 || style == 100)
                std::snprintf(b, sizeof b, "%s %2d %04d %2d:%02d%s", kMonthAbbreviations[v.month - 1], v.day, v.year, hour12, v.minute, v.hour < 12 ? "AM" : "PM");
            else
                std::snprintf(b, sizeof b, "%s %2d %04d %2d:%02d:%02d:%03d%s", kMonthAbbreviations[v.month - 1], v.day, v.year, hour12, v.minute,
                              v.second, v.millisecond, v.hour < 12 ? "AM" : "PM");
            break;
        }
        case 5: std::snprintf(b, sizeof b, "%02d-%02d-%02d", v.day, v.month, yy); break;
        case 105: std::snprintf(b, sizeof b, "%02d-%02d-%04d", v.day, v.month, v.year); break;
        case 6: std::snprintf(b, sizeof b, "%02d %s %02d", v.day, kMonthAbbreviations[v.month - 1], yy); break;
        case 106: std::snprintf(b, sizeof b, "%02d %s %04d", v.day, kMonthAbbreviations[v.month - 1], v.year); break;
        case 7: std::snprintf(b, sizeof b, "%s %02d, %02d", kMonthAbbreviations[v.month - 1], v.day, yy); break;
        case 107: std::snprintf(b, sizeof b, "%s %02d, %04d", kMonthAbbreviations[v.month - 1], v.day, v.year); break;
        case 13:
        case 113:
            std::snprintf(b, sizeof b, "%02d %s %04d %02d:%02d:%02d:%03d", v.day, kMonthAbbreviations[v.month - 1], v.year, v.hour, v.minute,
                          v.second, v.millisecond);
            break;
        case 14:
        case 114: std::snprintf(b, sizeof b, "%02d:%02d:%02d:%03d", v.hour, v.minute, v.second, v.millisecond); break;
        case 126:
            std::snprintf(b, sizeof b, "%04d-%02d-%02dT%02d:%02d:%02d", v.year, v.month, v.day, v.hour, v.minute, v.second);
            break;
        default: return std::nullopt;
    }
    return std::string(b);
}

int datePart(const DateTime& v, Part part) {
    switch (part) {
        case Part::Year: return v.year;
        case Part::Quarter: return (v.month + 2) / 3;
        case Part::Month: return v.month;
        case Part::DayOfYear: return static_cast<int>(dayNumber(v) - daysFromCivil(v.year, 1, 1)) + 1;
        case Part::Day: return v.day;
        case Part::Week: {
            DateTime january1;
            january1.year = v.year;
            const int dayOfYear = datePart(v, Part::DayOfYear);
            return (dayOfYear - 1 + weekdayIndex(january1)) / 7 + 1;
        }
        case Part::Weekday: return weekdayIndex(v) + 1;
        case Part::Hour: return v.hour;
        case Part::Minute: return v.minute;
        case Part::Second: return v.second;
        case Part::Millisecond: return v.millisecond;
    }
    return 0;
}

DateTime dateAdd(const DateTime& v, Part part, std::int64_t amount) {
    switch (part) {
        case Part::Year:
        case Part::Quarter:
        case Part::Month: {
            const std::int64_t months = part == Part::Year ? amount * 12 : part == Part::Quarter ? amount * 3 : amount;
            std::int64_t index = static_cast<std::int64_t>(v.year) * 12 + (v.month - 1) + months;
            DateTime r = v;
            r.year = static_cast<int>(index >= 0 ? index / 12 : (index - 11) / 12);
            r.month = static_cast<int>(index - static_cast<std::int64_t>(r.year) * 12) + 1;
            // SQL Server keeps the day, clamped to the last day of the target month.
            if (r.day > daysInMonth(r.year, r.month)) r.day = daysInMonth(r.year, r.month);
            return r;
        }
        case Part::DayOfYear:
        case Part::Day:
        case Part::Weekday: return fromSeconds(secondsOf(v) + amount * 86400, v.millisecond);
        case Part::Week: return fromSeconds(secondsOf(v) + amount * 7 * 86400, v.millisecond);
        case Part::Hour: return fromSeconds(secondsOf(v) + amount * 3600, v.millisecond);
        case Part::Minute: return fromSeconds(secondsOf(v) + amount * 60, v.millisecond);
        case Part::Second: return fromSeconds(secondsOf(v) + amount, v.millisecond);
        case Part::Millisecond: {
            const std::int64_t total = secondsOf(v) * 1000 + v.millisecond + amount;
            const std::int64_t seconds = total >= 0 ? total / 1000 : (total - 999) / 1000;
            return fromSeconds(seconds, static_cast<int>(total - seconds * 1000));
        }
    }
    return v;
}

std::int64_t dateDiff(const DateTime& a, const DateTime& b, Part part) {
    switch (part) {
        case Part::Year: return b.year - a.year;
        case Part::Quarter: return (b.year * 4 + (b.month - 1) / 3) - (a.year * 4 + (a.month - 1) / 3);
        case Part::Month: return (static_cast<std::int64_t>(b.year) * 12 + b.month) - (static_cast<std::int64_t>(a.year) * 12 + a.month);
        case Part::DayOfYear:
        case Part::Day:
        case Part::Weekday: return dayNumber(b) - dayNumber(a);
        case Part::Week: {
            // Sunday boundaries crossed: count weeks from a fixed Sunday (1970-01-04).
            auto weekIndex = [](const DateTime& v) {
                const std::int64_t days = dayNumber(v) - 3;
                return days >= 0 ? days / 7 : (days - 6) / 7;
            };
            return weekIndex(b) - weekIndex(a);
        }
        case Part::Hour: return (dayNumber(b) * 24 + b.hour) - (dayNumber(a) * 24 + a.hour);
        case Part::Minute: return (dayNumber(b) * 1440 + b.hour * 60 + b.minute) - (dayNumber(a) * 1440 + a.hour * 60 + a.minute);
        case Part::Second: return secondsOf(b) - secondsOf(a);
        case Part::Millisecond: return (secondsOf(b) - secondsOf(a)) * 1000 + (b.millisecond - a.millisecond);
    }
    return 0;
}

}  // namespace qx::tsql::dates
