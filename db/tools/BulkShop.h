#pragma once
// A large shop for measuring: the demo shop (master data and a year of documents), then more
// styles and as many further document lines of every kind as asked, dated through the year in
// the order they are written (as a shop enters them), written straight into the
// tables with prepared statements in one transaction (triggers set aside while writing), and
// the stock rows brought to what the posting rules make of them.
#include <cstdint>
#include <functional>
#include <string>

#include "db/tools/DemoData.h"

namespace qx::demo {

struct BulkOptions {
    long long lines = 1'000'000;  // document lines in the shop (the demo year's lines included)
    std::uint64_t seed = 20260101;
    std::string endDate;  // "YYYY-MM-DD" of the last business day; empty = today
    // Called now and then with the lines written so far.
    std::function<void(long long written)> progress;
};

struct BulkSummary {
    Summary demo;        // the demo shop underneath
    long long lines = 0;  // lines in the shop
    long long documents = 0;
    int styles = 0;
    int skus = 0;
    double seconds = 0;  // writing the bulk lines and the stock rows
};

// Creates `path` (which must not exist yet).
BulkSummary createBulkShop(const std::string& path, const BulkOptions& options);

}  // namespace qx::demo
