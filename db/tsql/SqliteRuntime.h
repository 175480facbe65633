#pragma once
// What SQL emitted for SQLite relies on at run time (registered by installSqliteRuntime).
namespace qx::tsql {

// Text collation like SQL Server's default: case-insensitive, trailing blanks ignored.
inline constexpr const char* kSqliteCollation = "QX";

}  // namespace qx::tsql
