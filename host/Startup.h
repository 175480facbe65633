#pragma once
// What the host and the script runner do before the main window: find and open the shop
// database (creating the demo shop on a first start without --db), load the module.
#include <QString>
#include <memory>

namespace qx::db {
class Database;
}

namespace qx::host {

// Where the host keeps its demo shop when started without --db:
// $XDG_DATA_HOME/qxck/demo-shop.db (normally ~/.local/share/qxck/demo-shop.db).
QString defaultDatabasePath();

// Opens the database file. A missing file is an error (with a message the user can act on)
// unless it is the default path, where a fresh demo shop is generated first.
// Throws std::runtime_error with that message.
std::shared_ptr<qx::db::Database> openShopDatabase(const QString& path, bool createDemoIfMissing);

}  // namespace qx::host
