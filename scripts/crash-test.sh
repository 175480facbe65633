#!/usr/bin/env bash
# The long crash-safety run: saves documents in a child process, kills it (SIGKILL) at random
# instants N times (default 1,000) and checks the shop after every kill. Prints its figures.
#   scripts/crash-test.sh [KILLS]
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --build build --target qx_db_crash_tests >/dev/null
QX_CRASH_KILLS="${1:-1000}" build/tests/qx_db_crash_tests --gtest_brief=1
