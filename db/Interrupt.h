#pragma once
// Long statements can be stopped: every connection asks the process-wide interrupt check now
// and then while a statement runs (with the operation's own progress callback, db/Progress.h); when it answers true the statement stops and fails with
// Error("interrupted"), its batch rolled back. The user interface installs a check that keeps
// the screen alive and offers a cancel button (framework/ProgressDialog.h).
#include <functional>

namespace qx::db {

using InterruptCheck = std::function<bool()>;

// Installs the check (nullptr: none); returns the previous one.
InterruptCheck setInterruptCheck(InterruptCheck check);

// Asks the installed check (false when there is none).
bool interruptRequested();

}  // namespace qx::db
