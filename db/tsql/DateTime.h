#pragma once
// SQL Server date arithmetic on the ISO text dates the database stores ("YYYY-MM-DD HH:MM:SS").
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx::tsql::dates {

struct DateTime {
    int year = 1900, month = 1, day = 1;
    int hour = 0, minute = 0, second = 0;
    int millisecond = 0;
};

// Canonical date parts; the T-SQL abbreviations (yy, m, mm, dd, wk, dw, ...) map onto them.
enum class Part { Year, Quarter, Month, DayOfYear, Day, Week, Weekday, Hour, Minute, Second, Millisecond };

std::optional<Part> partFromName(std::string_view name);  // "m", "MM", "day", "WK" ... any case
const char* partName(Part part);                           // canonical lower-case name

// Accepts what SQL Server (us_english) reads as a date: YYYY-MM-DD, YYYY-M-D, YYYY/MM/DD,
// YYYY.MM.DD, YYYYMMDD, MM/DD/YYYY (DD/MM/YYYY with dayFirst, CONVERT styles 3-5 and 103-105),
// "Aug 30 2006", "August 30, 2006", "30 Aug 2006"; each optionally followed by
// " HH:MM[:SS[.fff]]", "THH:MM…" or a time with AM/PM; a time alone is on 1900-01-01. An empty
// text is 1900-01-01 as in SQL Server.
std::optional<DateTime> parse(std::string_view text, bool dayFirst = false);
// SQL Server's numeric dates: days since 1900-01-01, the fraction being the time of day;
// nothing for a number outside datetime's years 1753 to 9999 (or no number at all).
std::optional<DateTime> fromDayNumber(double days);
inline constexpr const char* kDateTimeOverflowMessage = "Arithmetic overflow error converting expression to data type datetime.";

std::string formatIso(const DateTime& value);  // YYYY-MM-DD HH:MM:SS
// A datetime as the database keeps it: the time rounded to SQL Server's 1/300 s (.000, .003,
// .007), written as formatIso plus ".mmm" when there are milliseconds, so that whole-second
// values keep their usual form and texts still order as the times do.
std::string formatValue(const DateTime& value);
// The time rounded to SQL Server's 1/300 s; 23:59:59.999 becomes the next day's midnight.
DateTime roundToTicks(const DateTime& value);
// CONVERT(char, date, style) for the styles SQL Server documents; nullopt for an unknown style.
std::optional<std::string> formatStyle(const DateTime& value, int style);

int datePart(const DateTime& value, Part part);  // week: Sunday-start weeks, week 1 holds 1 January
DateTime dateAdd(const DateTime& value, Part part, std::int64_t amount);
std::int64_t dateDiff(const DateTime& from, const DateTime& to, Part part);  // boundaries crossed

}  // namespace qx::tsql::dates
