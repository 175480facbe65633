# qx_add_test(NAME <name> SOURCES <files...> [LIBS <targets...>] [GUI] [ON_SERVER])
#
# Declares one GoogleTest executable and registers each of its test cases with CTest.
# ON_SERVER (screen tests over ShopDatabaseTest) registers the whole executable once more as
# <name>.on_server, run with QXCK_SCREEN_ENGINE=postgresql: every test's shop a database on the
# process's private PostgreSQL server. Without the server binaries the executable exits with 77
# at once and CTest counts it skipped. Label "server" (ctest -LE server leaves them out).
# GUI tests get a QApplication on the offscreen platform (tests/support/QtTestMain.cpp); the
# others a plain gtest main (tests/support/TestMain.cpp). Both mains put QXCK_SOURCE_DIR and
# QXCK_BINARY_DIR into the environment when the caller has not: CTest's per-test ENVIRONMENT
# cannot carry a list through gtest_discover_tests, so the folders travel as compile definitions.
set(QX_TEST_DIRS
    QXCK_TEST_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    QXCK_TEST_BINARY_DIR="${CMAKE_BINARY_DIR}")

function(qx_add_test)
    cmake_parse_arguments(T "GUI;ON_SERVER" "NAME" "SOURCES;LIBS" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    target_include_directories(${T_NAME} PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests)
    target_compile_definitions(${T_NAME} PRIVATE ${QX_TEST_DIRS})
    if(T_GUI)
        target_link_libraries(${T_NAME} PRIVATE qx_test_support ${T_LIBS} GTest::gtest GTest::gmock)
    else()
        target_link_libraries(${T_NAME} PRIVATE qx_test_main ${T_LIBS} GTest::gtest GTest::gmock)
    endif()
    set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    gtest_discover_tests(${T_NAME}
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests
        DISCOVERY_TIMEOUT 60
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 600)
    if(T_ON_SERVER)
        # One process, one server for all its cases. A high cost starts these long runs first.
        add_test(NAME ${T_NAME}.on_server COMMAND ${T_NAME} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
        set_tests_properties(${T_NAME}.on_server PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QXCK_SCREEN_ENGINE=postgresql"
            SKIP_RETURN_CODE 77 TIMEOUT 1800 COST 1000 LABELS server)
    endif()
endfunction()
