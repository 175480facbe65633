// Entry of widget tests: one QApplication (offscreen unless told otherwise) around gtest.
#include <gtest/gtest.h>

#include <QApplication>
#include <iostream>
#include <string_view>

#include "support/PostgresServer.h"
#include "support/TestEnvironment.h"

namespace {
bool listingOnly(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--gtest_list_tests") return true;
    return false;
}
}  // namespace

int main(int argc, char** argv) {
    qx::test::exportTestFolders();
    if (qx::test::screenTestsOnServer() && !listingOnly(argc, argv) && qx::test::PostgresServer::binaries().empty()) {
        std::cerr << "QXCK_SCREEN_ENGINE=postgresql: no PostgreSQL server binaries on this machine "
                     "(apt-get install postgresql); nothing run\n";
        return qx::test::kNoServerExitCode;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
