#pragma once
// A private, throwaway PostgreSQL server for tests: initdb in a temporary folder, listening on a
// Unix socket in that folder only, stopped and removed when the test process ends. Run as root,
// the folder and the server belong to the unprivileged user "nobody" (the server refuses root).
// Each call of freshDatabase() creates a new empty database on it and returns its URI;
// freshShop() one holding an empty shop.
#include <pwd.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "db/Database.h"
#include "db/postgres/PostgresDatabase.h"

namespace qx::test {

class PostgresServer {
public:
    // The server binaries (initdb, pg_ctl) of the installed PostgreSQL, or empty when none.
    static std::filesystem::path binaries() {
        if (const char* bin = std::getenv("QXCK_PG_BIN")) return bin;
        const std::filesystem::path root = "/usr/lib/postgresql";
        std::error_code ec;
        std::filesystem::path best;
        for (const auto& entry : std::filesystem::directory_iterator(root, ec))
            if (std::filesystem::exists(entry.path() / "bin" / "initdb") && entry.path() > best) best = entry.path();
        return best.empty() ? best : best / "bin";
    }

    // The process's server, started on first use; nullptr when PostgreSQL is not installed.
    static PostgresServer* instance() {
        static std::unique_ptr<PostgresServer> server = [] {
            const auto bin = binaries();
            return bin.empty() ? nullptr : std::unique_ptr<PostgresServer>(new PostgresServer(bin));
        }();
        return server.get();
    }

    // A new, empty database on the server, as a libpq URI.
    std::string freshDatabase() {
        const std::string name = newName();
        qx::db::PostgresDatabase admin(uri("postgres"));
        admin.runNative("CREATE DATABASE " + name + " TEMPLATE template0 ENCODING 'UTF8' LOCALE 'C'");
        return uri(name);
    }

    // A new database holding an empty shop (tables, views, triggers, helpers, starting rows): a
    // copy of one made on first use, a fraction of the server's work of making it again. The
    // previous copy is dropped (one test, one shop: a screen test's shop is some 14 MB).
    std::string freshShop() {
        qx::db::PostgresDatabase admin(uri("postgres"));
        if (templateShop_.empty()) {
            const std::string name = newName();
            admin.runNative("CREATE DATABASE " + name + " TEMPLATE template0 ENCODING 'UTF8' LOCALE 'C'");
            qx::db::openDatabase(uri(name), true);  // and closed again: a template may have no connection
            templateShop_ = name;
        }
        if (!lastShop_.empty()) admin.runNative("DROP DATABASE IF EXISTS " + lastShop_ + " WITH (FORCE)");
        lastShop_ = newName();
        admin.runNative("CREATE DATABASE " + lastShop_ + " TEMPLATE " + templateShop_);
        return uri(lastShop_);
    }

    std::string uri(const std::string& database) const { return "postgresql://qx@/" + database + "?host=" + folder_.string(); }

    ~PostgresServer() {
        run(quoted(bin_ / "pg_ctl") + " -D " + (folder_ / "data").string() + " -m immediate -w stop >/dev/null 2>&1");
        std::error_code ec;
        std::filesystem::remove_all(folder_, ec);
    }
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

private:
    explicit PostgresServer(std::filesystem::path bin) : bin_(std::move(bin)) {
        std::string pattern = (std::filesystem::temp_directory_path() / "qx-pg-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a folder for the test server");
        folder_ = pattern;
        if (geteuid() == 0) {
            const passwd* nobody = getpwnam("nobody");
            if (!nobody || chown(folder_.c_str(), nobody->pw_uid, nobody->pw_gid) != 0)
                throw std::runtime_error("cannot hand the test server's folder to the user nobody");
            asUser_ = "runuser -u nobody -- ";
        }
        const std::string data = (folder_ / "data").string();
        if (run(quoted(bin_ / "initdb") + " -D " + data + " -U qx -A trust -E UTF8 --no-locale --no-sync >" +
                (folder_ / "initdb.log").string() + " 2>&1") != 0)
            throw std::runtime_error("initdb failed, see " + (folder_ / "initdb.log").string());
        const std::string options = "-k " + folder_.string() + " -c listen_addresses='' -c fsync=off -c full_page_writes=off";
        if (run(quoted(bin_ / "pg_ctl") + " -D " + data + " -l " + (folder_ / "server.log").string() + " -w -o \"" + options +
                "\" start >/dev/null 2>&1") != 0)
            throw std::runtime_error("the test server did not start, see " + (folder_ / "server.log").string());
    }

    static std::string newName() {
        static std::atomic<int> counter{0};
        return "shop" + std::to_string(getpid()) + "_" + std::to_string(++counter);
    }
    static std::string quoted(const std::filesystem::path& path) { return "'" + path.string() + "'"; }
    int run(const std::string& command) const { return std::system((asUser_ + command).c_str()); }

    std::filesystem::path bin_;
    std::filesystem::path folder_;
    std::string asUser_;
    std::string templateShop_;  // the shop every freshShop() copies
    std::string lastShop_;      // the copy freshShop() gave last
};

// Whether the screen tests run on the private server (QXCK_SCREEN_ENGINE=postgresql) instead of
// a shop file.
inline bool screenTestsOnServer() {
    const char* engine = std::getenv("QXCK_SCREEN_ENGINE");
    return engine && std::string(engine) == "postgresql";
}

// What a test executable returns when told to run on a server the machine does not have
// (CTest's SKIP_RETURN_CODE of the runs on the server, cmake/QxTest.cmake).
constexpr int kNoServerExitCode = 77;

}  // namespace qx::test

// Skips the test when the machine has no PostgreSQL server binaries (scripts/setup.sh installs them).
#define QX_REQUIRE_POSTGRES(server)                                                                            \
    auto* server = qx::test::PostgresServer::instance();                                                       \
    if (!server) GTEST_SKIP() << "PostgreSQL server binaries not installed (apt-get install postgresql)"
