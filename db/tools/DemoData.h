#pragma once
// Demo shop data: a garment retailer with a head warehouse and four shops, its master data and
// a year of documents of every kind, written as T-SQL through the Database interface so that
// the database's own triggers post the stock.
#include <cstdint>
#include <string>

#include "db/Database.h"

namespace qx::demo {

struct Options {
    int scale = 1;                  // multiplies styles, members and document volume
    std::uint64_t seed = 20260101;  // same seed and end date → same data
    std::string endDate;            // "YYYY-MM-DD" of the last business day; empty = today
};

struct Summary {
    int styles = 0;
    int skus = 0;
    int documents = 0;  // heads of every kind, point-of-sale tickets included
    int lines = 0;
    std::string firstDate;
    std::string lastDate;
};

// Fills an empty shop database (tables from openSqlite(path, true)).
Summary generate(db::Database& database, const Options& options);

// Creates `path` (which must not exist yet) as a demo shop database.
Summary createDemoDatabase(const std::string& path, const Options& options);

// The demo logins: user "admin" with password "admin". Passwords are stored as
// sys_user.PWD_HASH = lower-case hex SHA-256 of (PWD_SALT text + password), UTF-8.
std::string passwordHash(const std::string& salt, const std::string& password);

}  // namespace qx::demo
