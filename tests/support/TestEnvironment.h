#pragma once
// Puts the source and build folders of this build into the environment of a test process,
// unless whoever started it already did.
#include <cstdlib>

namespace qx::test {

inline void exportTestFolders() {
    ::setenv("QXCK_SOURCE_DIR", QXCK_TEST_SOURCE_DIR, /*overwrite=*/0);
    ::setenv("QXCK_BINARY_DIR", QXCK_TEST_BINARY_DIR, /*overwrite=*/0);
}

}  // namespace qx::test
