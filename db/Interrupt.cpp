#include "db/Interrupt.h"

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

}  // namespace qx::db
