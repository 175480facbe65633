// Entry points of the engines behind the Database interface.
#include "db/Database.h"

#include "db/postgres/PostgresDatabase.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::db {

std::unique_ptr<Database> openSqlite(const std::string& path, bool create) {
    return std::make_unique<SqliteDatabase>(path, create);
}

bool isServerLocation(const std::string& location) {
    return location.rfind("postgresql://", 0) == 0 || location.rfind("postgres://", 0) == 0;
}

std::unique_ptr<Database> openDatabase(const std::string& location, bool create) {
    if (!isServerLocation(location)) return openSqlite(location, create);
    auto db = std::make_unique<PostgresDatabase>(location);
    if (!db->hasShop()) {
        if (!create) throw Error(location + " is not a shop database (no tables)");
        db->createShop();
    } else {
        db->openShop();  // an older mark renews the generated objects, a newer one is refused
    }
    return db;
}

}  // namespace qx::db
