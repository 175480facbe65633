// The PostgreSQL engine: a fresh shop database (tables, views, posting triggers and guards) on
// the process's private test server (tests/support/PostgresServer.h) for every conformance file.
#include "SqlLogic.h"
#include "support/PostgresServer.h"

namespace qx::conformance {
namespace {

class PostgresEngine final : public Engine {
public:
    PostgresEngine() {
        auto db = std::make_unique<qx::db::PostgresDatabase>(qx::test::PostgresServer::instance()->freshDatabase());
        db->createShop();
        db_ = std::move(db);
    }
    std::string name() const override { return "postgresql"; }
    void execute(const std::string& batch, bool maintenance) override { db_->execute(batch, {.maintenance = maintenance}); }
    qx::db::ResultSet query(const std::string& batch) override { return db_->open(batch); }

private:
    std::unique_ptr<qx::db::Database> db_;
};

}  // namespace

bool postgresAvailable() { return !qx::test::PostgresServer::binaries().empty(); }

std::unique_ptr<Engine> openPostgresEngine() { return std::make_unique<PostgresEngine>(); }

}  // namespace qx::conformance
