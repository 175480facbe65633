// Entry points of the engines behind the Database interface.
#include "db/Database.h"

#include "db/sqlite/SqliteDatabase.h"

namespace qx::db {

std::unique_ptr<Database> openSqlite(const std::string& path, bool create) {
    return std::make_unique<SqliteDatabase>(path, create);
}

}  // namespace qx::db
