#pragma once
// Long database operations (the cost recalculation, the balance view over every movement) ask
// regularly whether to go on. Whoever starts one may install a callback for the duration of the
// call; returning false cancels it: the engine interrupts the running statement, the batch fails
// and its transaction is rolled back, so nothing of it is kept. Without a callback everything
// runs to its end. One callback per thread.
#include <functional>

namespace qx::db {

using ProgressCallback = std::function<bool()>;  // true: go on, false: cancel

// Installs a callback for its lifetime (restoring the previous one afterwards).
class ProgressScope {
public:
    explicit ProgressScope(ProgressCallback callback);
    ~ProgressScope();
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

private:
    ProgressCallback previous_;
};

// Asks the current callback (true when there is none) and the process-wide interrupt check of
// db/Interrupt.h, so a cancel in the user interface also stops a procedure between its steps.
bool progressContinues();

// The message of the error a cancelled operation fails with.
inline constexpr const char* kCancelledMessage = "操作已取消";

}  // namespace qx::db
