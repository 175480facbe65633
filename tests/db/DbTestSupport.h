#pragma once
// Shared helpers of the database tests: scratch databases in temporary folders, a small shop
// to post documents against, and readers for stock rows and single values.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "db/Database.h"
#include "db/SmallShop.h"
#include "db/tools/DemoData.h"
#include "db/tools/ShopCopy.h"
#include "support/PostgresServer.h"

#include <dlfcn.h>
#include <sys/stat.h>

namespace qx::dbtest {

// A folder under the system's temp directory, removed with everything in it.
class TempDir {
public:
    TempDir() {
        std::random_device rd;
        path_ = std::filesystem::temp_directory_path() / ("qxdb-" + std::to_string(rd()) + std::to_string(rd()));
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

using Sizes = std::array<long long, 10>;

inline std::string text(const db::Value& v) {
    if (auto* s = std::get_if<std::string>(&v)) return *s;
    if (auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
    if (auto* d = std::get_if<double>(&v)) return std::to_string(*d);
    return "<null>";
}

inline long long integer(const db::Value& v) {
    if (auto* i = std::get_if<std::int64_t>(&v)) return *i;
    if (auto* d = std::get_if<double>(&v)) return static_cast<long long>(*d);
    if (auto* s = std::get_if<std::string>(&v)) return std::stoll(*s);
    return 0;
}

// The single value of a one-row, one-column query.
inline db::Value scalar(db::Database& db, const std::string& sql) {
    auto r = db.open(sql);
    if (r.rows.size() != 1 || r.rows[0].empty()) throw std::runtime_error("not one value: " + sql);
    return r.rows[0][0];
}

inline long long count(db::Database& db, const std::string& table, const std::string& where = "1=1") {
    return integer(scalar(db, "SELECT COUNT(*) FROM " + table + " WHERE " + where));
}

// K0..K9 of a stock row; all -1 when the row does not exist.
inline Sizes stock(db::Database& db, const std::string& wl, const std::string& ck) {
    auto r = db.open("SELECT K0,K1,K2,K3,K4,K5,K6,K7,K8,K9,KC FROM d1802 WHERE WL_ID='" + wl + "' AND CK_ID='" + ck + "'");
    Sizes s;
    s.fill(-1);
    if (r.rows.empty()) return s;
    long long sum = 0;
    for (int i = 0; i < 10; ++i) sum += s[i] = integer(r.rows[0][i]);
    EXPECT_EQ(sum, integer(r.rows[0][10])) << "KC is the sum of K0..K9 for " << wl << "/" << ck;
    return s;
}

inline Sizes sizes(std::initializer_list<long long> first) {
    Sizes s{};
    int i = 0;
    for (long long v : first) s[i++] = v;
    return s;
}

// A small shop: size group A (S, M, L), colours 01 and 02, warehouses ZC, MD1, MD2 and styles
// K0 (barcode rule 0), K1 (rule 2, negative stock allowed), K2 (rule 3, stock checked) and K3
// (rule 1, free barcodes), each in both colours.
inline void seedSmallShop(db::Database& db) { db.execute(kSmallShopBatch); }

// The engines the engine-level suites run on, each test once per engine.
inline std::vector<std::string> engines() { return {"sqlite", "postgresql"}; }
inline std::string engineTestName(const ::testing::TestParamInfo<std::string>& info) { return info.param; }

// A value as both engines must agree on it: numbers by value, dates with their time.
inline std::string normalised(const db::Value& v) {
    if (std::holds_alternative<std::monostate>(v)) return "\\N";
    if (auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
    if (auto* d = std::get_if<double>(&v)) {
        if (std::trunc(*d) == *d && std::fabs(*d) < 1e15) return std::to_string(static_cast<long long>(*d));
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.6f", *d);
        return buffer;
    }
    std::string s = std::get<std::string>(v);
    if (s.size() == 10 && s[4] == '-' && s[7] == '-') s += " 00:00:00";
    return s;
}

// Every row a batch returns, each as one text, sorted (engines may order ties differently).
inline std::vector<std::string> sortedRows(const db::ResultSet& result) {
    std::vector<std::string> rows;
    for (const auto& row : result.rows) {
        std::string line;
        for (const auto& v : row) line += normalised(v) + "|";
        rows.push_back(line);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

// Every row of a table, each as one text, sorted.
inline std::vector<std::string> rowsOf(db::Database& db, const std::string& table) { return sortedRows(db.open("SELECT * FROM " + table)); }

// A new, empty shop database (tables, views, posting triggers and guards) on an engine: an
// SQLite file in `dir`, or a database on the test process's private PostgreSQL server.
// nullptr when that engine cannot run here (no PostgreSQL server binaries).
inline std::unique_ptr<db::Database> newShopDatabase(const std::string& engine, const TempDir& dir) {
    if (engine == "sqlite") return db::openSqlite(dir.file("shop.db"), true);
    auto* server = test::PostgresServer::instance();
    if (!server) return nullptr;
    auto db = std::make_unique<db::PostgresDatabase>(server->freshDatabase());
    db->createShop();
    return db;
}

// Where a shop several processes open lives on an engine: a file in `dir`, or a new empty
// database on the test process's private PostgreSQL server. Empty when that engine cannot run
// here (no PostgreSQL server binaries).
inline std::string shopLocation(const std::string& engine, const TempDir& dir) {
    if (engine == "sqlite") return dir.file("shop.db");
    auto* server = test::PostgresServer::instance();
    return server ? server->freshDatabase() : std::string();
}

// A shop on the test's engine (the parameter) that several processes open by its location:
// created empty, then seed() fills it. Skips when the engine cannot run here.
class SharedShopTest : public ::testing::TestWithParam<std::string> {
protected:
    TempDir dir;
    std::string location;
    virtual void seed(db::Database& shop) = 0;
    void SetUp() override {
        location = shopLocation(GetParam(), dir);
        if (location.empty()) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)";
        auto shop = db::openDatabase(location, true);
        seed(*shop);
    }
};

// A fresh shop database with the small shop, on SQLite or PostgreSQL. `available` is false when
// the engine cannot run here; the shop is then an SQLite one and the test should skip.
struct Shop {
    TempDir dir;
    std::unique_ptr<db::Database> db;
    bool available = true;
    explicit Shop(const std::string& engine = "sqlite") {
        db = newShopDatabase(engine, dir);
        if (!db) {
            available = false;
            db = newShopDatabase("sqlite", dir);
        }
        seedSmallShop(*db);
    }
};

// Skips a test whose engine cannot run here.
#define QX_REQUIRE_ENGINE(shop) \
    if (!(shop).available) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)"

// Quantities as the module writes them: each quoted.
inline std::string quotedSizes(const Sizes& s) {
    std::string out;
    for (int i = 0; i < 10; ++i) out += (i ? "," : "") + ("'" + std::to_string(s[i]) + "'");
    return out;
}

// The demo shop most tests read (seed 7, last business day 2026-06-30), generated once and
// shared by the test processes of one build: the file name carries the size and time of the
// library that generated it, so a rebuilt generator or schema makes a new one. Tests copy it
// before they write.
inline const std::string& sharedDemoShop() {
    static const std::string path = [] {
        Dl_info info{};
        struct stat library{};
        dladdr(reinterpret_cast<void*>(&demo::generate), &info);
        if (!info.dli_fname || stat(info.dli_fname, &library) != 0) throw std::runtime_error("cannot locate libqx_db");
        const auto dir = std::filesystem::temp_directory_path();
        const auto file = dir / ("qxck-demo-seed7-" + std::to_string(library.st_size) + "-" +
                                 std::to_string(static_cast<long long>(library.st_mtime)) + ".db");
        if (!std::filesystem::exists(file)) {
            std::random_device rd;
            const auto partial = dir / ("qxck-demo-partial-" + std::to_string(rd()) + ".db");
            demo::Options options;
            options.seed = 7;
            options.endDate = "2026-06-30";
            demo::createDemoDatabase(partial.string(), options);
            std::filesystem::rename(partial, file);  // atomic: parallel test processes may race here
        }
        return file.string();
    }();
    return path;
}

// The shared demo shop on an engine, to write to: a copy of the file in `dir`, or a new database
// on the test process's PostgreSQL server holding the same rows (the file is copied to the
// server once per process with the shop copy, and each call clones that database). nullptr when
// the engine cannot run here.
inline std::unique_ptr<db::Database> demoShopDatabase(const std::string& engine, const TempDir& dir) {
    if (engine == "sqlite") {
        std::filesystem::copy_file(sharedDemoShop(), dir.file("demo.db"));
        return db::openSqlite(dir.file("demo.db"));
    }
    auto* server = test::PostgresServer::instance();
    if (!server) return nullptr;
    static const std::string demo = [server] {
        const std::string uri = server->freshDatabase();
        copy::copyShop(sharedDemoShop(), uri);
        const auto from = uri.find("@/") + 2;
        return uri.substr(from, uri.find('?') - from);
    }();
    static std::atomic<int> counter{0};
    const std::string name = demo + "_" + std::to_string(++counter);
    db::PostgresDatabase(server->uri("postgres")).runNative("CREATE DATABASE " + name + " TEMPLATE " + demo);
    return db::openDatabase(server->uri(name));
}

}  // namespace qx::dbtest
