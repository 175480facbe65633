// Entry of tests without widgets.
#include <gtest/gtest.h>

#include "support/TestEnvironment.h"

int main(int argc, char** argv) {
    qx::test::exportTestFolders();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
