#include "db/Progress.h"

#include "db/Interrupt.h"

namespace qx::db {
namespace {
thread_local ProgressCallback current;
}

ProgressScope::ProgressScope(ProgressCallback callback) : previous_(std::move(current)) { current = std::move(callback); }

ProgressScope::~ProgressScope() { current = std::move(previous_); }

bool progressContinues() { return (!current || current()) && !interruptRequested(); }

}  // namespace qx::db
