// The SQLite engine as the module uses it: a shop database through qx::db::openSqlite.
#include <atomic>
#include <filesystem>

#include "SqlLogic.h"

namespace qx::conformance {
namespace {

class SqliteEngine final : public Engine {
public:
    explicit SqliteEngine(const std::string& folder) {
        static std::atomic<int> counter{0};
        path_ = (std::filesystem::path(folder) / ("conformance-" + std::to_string(++counter) + ".db")).string();
        db_ = qx::db::openSqlite(path_, true);
    }
    std::string name() const override { return "sqlite"; }
    void execute(const std::string& batch, bool maintenance) override { db_->execute(batch, {.maintenance = maintenance}); }
    qx::db::ResultSet query(const std::string& batch) override { return db_->open(batch); }

private:
    std::string path_;
    std::unique_ptr<qx::db::Database> db_;
};

}  // namespace

// PostgreSQL joins when the machine has its server binaries (a private server per process).
std::vector<std::string> engineNames() {
    if (postgresAvailable()) return {"sqlite", "postgresql"};
    return {"sqlite"};
}

std::unique_ptr<Engine> openEngine(const std::string& name, const std::string& folder) {
    if (name == "sqlite") return std::make_unique<SqliteEngine>(folder);
    if (name == "postgresql") return openPostgresEngine();
    throw std::runtime_error("no engine named " + name);
}

}  // namespace qx::conformance
