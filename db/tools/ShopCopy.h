#pragma once
// Moving a shop from one database to another (an SQLite file to a PostgreSQL server, or back):
// every row of every table of the shop, the document number counters and the stock rows as they
// are, into a new shop at the target.
#include <map>
#include <string>

namespace qx::demo {

struct CopySummary {
    std::map<std::string, long long> rows;  // table → rows copied
    long long total = 0;
};

// Copies the shop at `from` into a new shop at `to` (locations as qx::db::openDatabase takes
// them). The target must not hold a shop yet: a server database is created empty by its
// administrator, a file must not exist. Documents are copied with the guards off; the stock rows
// are then replaced by the source's own, so stock, counters and every row are the source's.
CopySummary copyShop(const std::string& from, const std::string& to);

}  // namespace qx::demo
