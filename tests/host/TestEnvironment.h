#pragma once
// Where the build tree is, for tests that load the module or save screenshots. CTest passes
// QXCK_BINARY_DIR in the environment; when it is missing (a test started by hand, or a CTest
// property that did not get through) the folder this test was built for is used.
#include <QByteArray>
#include <QDir>
#include <QString>

namespace qx::test {

inline QString binaryDir() {
    if (qEnvironmentVariableIsEmpty("QXCK_BINARY_DIR"))
        qputenv("QXCK_BINARY_DIR", QByteArray(QXCK_TEST_BINARY_DIR));
    return qEnvironmentVariable("QXCK_BINARY_DIR");
}

inline QString sourceDir() {
    if (qEnvironmentVariableIsEmpty("QXCK_SOURCE_DIR"))
        qputenv("QXCK_SOURCE_DIR", QByteArray(QXCK_TEST_SOURCE_DIR));
    return qEnvironmentVariable("QXCK_SOURCE_DIR");
}

}  // namespace qx::test
