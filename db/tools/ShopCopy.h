#pragma once
// Moving a shop from its SQLite file to a PostgreSQL server: the shop's tables are created on
// the server, every row is copied as it stands (stock rows are not posted again; texts lose their
// trailing blanks, which the server's shop never stores), and both
// sides are compared before the copy is committed. All or nothing: a copy that fails leaves the
// server as it was before (a replaced shop stays removed).
#include <functional>
#include <string>
#include <vector>

namespace qx::db {
class PostgresDatabase;
}

namespace qx::copy {

struct CopyOptions {
    // Remove a shop the server already holds (every table and view of its schema) first;
    // without it such a server is refused and nothing changes.
    bool replace = false;
    // One line per step and per table ("d1802: 1234 rows"), for a terminal.
    std::function<void(const std::string&)> progress;
    // Called once the shop's tables exist on the server, before any row is copied: a caller
    // may add server-side objects of its own there.
    std::function<void(db::PostgresDatabase&)> tablesCreated;
};

struct TableCopy {
    std::string table;
    long long rows = 0;
};

struct CopyReport {
    std::vector<TableCopy> tables;   // every table copied, in copy order
    std::vector<std::string> skipped;  // tables of the file the server has no table for ("name (n rows)")
    long long rows = 0;
    double seconds = 0;
};

// Copies the shop in the SQLite file `sqlitePath` to the database `target` (a libpq connection
// string). Throws db::Error with a clear message when the file is not a shop, the server cannot
// be reached, already holds a shop (without `replace`), refuses a row, or the comparison of both
// sides finds a difference.
CopyReport copyShop(const std::string& sqlitePath, const std::string& target, const CopyOptions& options = {});

}  // namespace qx::copy
