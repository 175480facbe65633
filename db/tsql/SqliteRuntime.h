#pragma once
// What SQL emitted for SQLite relies on at run time (registered by installSqliteRuntime).
#include <cstdint>
#include <string>

struct sqlite3;

namespace qx::tsql {

// Text collation like SQL Server's default: case-insensitive, trailing blanks ignored.
inline constexpr const char* kSqliteCollation = "QX";

// The code point of the UTF-8 character starting at byte i; i moves past it. Malformed text
// never reads beyond its end: a cut-off sequence yields what is there.
std::uint32_t nextCodePoint(const std::string& text, std::size_t& i);

// A code point as the collation compares it: ASCII letters in lower case, full width as ASCII.
std::uint32_t foldCodePoint(std::uint32_t point);

// The T-SQL built-ins of SqliteFunctions.cpp (CHARINDEX, REPLACE, STR, STUFF, conversions, …).
void registerSqliteFunctions(sqlite3* db);

}  // namespace qx::tsql
