// SQL Server date arithmetic on ISO text dates, tested on its own.
#include <gtest/gtest.h>

#include <cmath>

#include "db/tsql/DateTime.h"

namespace qx::tsql::dates {
namespace {

DateTime at(const char* text) {
    auto value = parse(text);
    EXPECT_TRUE(value.has_value()) << text;
    return value.value_or(DateTime{});
}

TEST(Dates, ParsesTheWrittenForms) {
    EXPECT_EQ(formatIso(at("2024-03-07")), "2024-03-07 00:00:00");
    EXPECT_EQ(formatIso(at("2024-3-7 9:05")), "2024-03-07 09:05:00");
    EXPECT_EQ(formatIso(at("2024/03/07 10:11:12.345")), "2024-03-07 10:11:12");
    EXPECT_EQ(formatIso(at("20240307")), "2024-03-07 00:00:00");
    EXPECT_EQ(formatIso(at("2024-03-07T10:11:12")), "2024-03-07 10:11:12");
    EXPECT_EQ(formatIso(at("  ")), "1900-01-01 00:00:00");
    EXPECT_FALSE(parse("2024-02-30").has_value());
    EXPECT_FALSE(parse("07.03.24x").has_value());
    EXPECT_FALSE(parse("abc").has_value());
}

TEST(Dates, DayNumbersCountFrom1900) {
    EXPECT_EQ(formatIso(fromDayNumber(0).value()), "1900-01-01 00:00:00");
    EXPECT_EQ(formatIso(fromDayNumber(45000.5).value()), "2023-03-17 12:00:00");
    EXPECT_EQ(formatIso(fromDayNumber(-1).value()), "1899-12-31 00:00:00");
}

TEST(Dates, DayNumbersOutsideTheDatetimeYearsAreNoDates) {
    EXPECT_EQ(formatIso(fromDayNumber(-53690).value()), "1753-01-01 00:00:00");
    EXPECT_EQ(formatIso(fromDayNumber(2958463).value()), "9999-12-31 00:00:00");
    EXPECT_FALSE(fromDayNumber(-53691).has_value());
    EXPECT_FALSE(fromDayNumber(2958464).has_value());
    EXPECT_FALSE(fromDayNumber(3e70).has_value());
    EXPECT_FALSE(fromDayNumber(std::nan("")).has_value());
}

TEST(Dates, PartsNamedTheTsqlWay) {
    EXPECT_EQ(partFromName("m"), Part::Month);
    EXPECT_EQ(partFromName("MM"), Part::Month);
    EXPECT_EQ(partFromName("wk"), Part::Week);
    EXPECT_EQ(partFromName("dw"), Part::Weekday);
    EXPECT_EQ(partFromName("yyyy"), Part::Year);
    EXPECT_FALSE(partFromName("fortnight").has_value());
}

TEST(Dates, WeeksAcrossYearEnds) {
    EXPECT_EQ(datePart(at("2022-12-31"), Part::Week), 53);  // a Saturday
    EXPECT_EQ(datePart(at("2023-01-01"), Part::Week), 1);   // a Sunday
    EXPECT_EQ(datePart(at("2017-01-01"), Part::Week), 1);
    EXPECT_EQ(datePart(at("2017-01-08"), Part::Week), 2);
    EXPECT_EQ(datePart(at("2024-01-07"), Part::Weekday), 1);
    EXPECT_EQ(dateDiff(at("2023-12-30"), at("2024-01-06"), Part::Week), 1);
    EXPECT_EQ(dateDiff(at("2024-01-06"), at("2023-12-30"), Part::Week), -1);
}

TEST(Dates, AddingAndDifferences) {
    EXPECT_EQ(formatIso(dateAdd(at("2024-12-15"), Part::Month, 1)), "2025-01-15 00:00:00");
    EXPECT_EQ(formatIso(dateAdd(at("2024-01-15"), Part::Month, -1)), "2023-12-15 00:00:00");
    EXPECT_EQ(formatIso(dateAdd(at("2024-03-31"), Part::Quarter, -1)), "2023-12-31 00:00:00");
    EXPECT_EQ(formatIso(dateAdd(at("2024-03-31 23:30:00"), Part::Minute, 45)), "2024-04-01 00:15:00");
    EXPECT_EQ(formatIso(dateAdd(at("2024-03-01"), Part::Hour, -1)), "2024-02-29 23:00:00");
    EXPECT_EQ(dateDiff(at("2024-01-31 23:59:59"), at("2024-02-01"), Part::Day), 1);
    EXPECT_EQ(dateDiff(at("2024-03-01"), at("2024-01-31"), Part::Month), -2);
    EXPECT_EQ(dateDiff(at("2024-01-01 10:00"), at("2024-01-01 12:59"), Part::Hour), 2);
    EXPECT_EQ(dateDiff(at("2024-12-31"), at("2025-01-01"), Part::Quarter), 1);
}

TEST(Dates, ConvertStyles) {
    const DateTime d = at("2024-03-07 08:09:10");
    EXPECT_EQ(formatStyle(d, 20), "2024-03-07 08:09:10");
    EXPECT_EQ(formatStyle(d, 112), "20240307");
    EXPECT_EQ(formatStyle(d, 23), "2024-03-07");
    EXPECT_EQ(formatStyle(d, 111), "2024/03/07");
    EXPECT_EQ(formatStyle(d, 108), "08:09:10");
    EXPECT_EQ(formatStyle(d, 103), "07/03/2024");
    EXPECT_FALSE(formatStyle(d, 999).has_value());
}

}  // namespace
}  // namespace qx::tsql::dates
