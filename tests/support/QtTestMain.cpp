// Entry of widget tests: one QApplication (offscreen unless told otherwise) around gtest.
#include <gtest/gtest.h>

#include <QApplication>

#include "support/TestEnvironment.h"

int main(int argc, char** argv) {
    qx::test::exportTestFolders();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
