#include "db/Interrupt.h"

#include <sqlite3.h>

#include <mutex>

namespace qx::db {
namespace {

std::mutex& checkMutex() {
    static std::mutex m;
    return m;
}

InterruptCheck& currentCheck() {
    static InterruptCheck check;
    return check;
}

// SQLite calls this every few thousand virtual machine steps; non-zero stops the statement.
int progressCallback(void*) { return interruptRequested() ? 1 : 0; }

}  // namespace

InterruptCheck setInterruptCheck(InterruptCheck check) {
    std::lock_guard lock(checkMutex());
    std::swap(currentCheck(), check);
    return check;
}

bool interruptRequested() {
    InterruptCheck check;
    {
        std::lock_guard lock(checkMutex());
        check = currentCheck();
    }
    return check && check();
}

void installInterruptHandler(sqlite3* db) { sqlite3_progress_handler(db, 50000, progressCallback, nullptr); }

}  // namespace qx::db
