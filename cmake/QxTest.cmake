# qx_add_test(NAME <name> SOURCES <files...> [LIBS <targets...>] [GUI])
#
# Declares one GoogleTest executable and registers each of its test cases with CTest.
# GUI tests get a QApplication on the offscreen platform (tests/support/QtTestMain.cpp);
# the others use gtest's own main.
function(qx_add_test)
    cmake_parse_arguments(T "GUI" "NAME" "SOURCES;LIBS" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    target_include_directories(${T_NAME} PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests)
    if(T_GUI)
        target_link_libraries(${T_NAME} PRIVATE qx_test_support ${T_LIBS} GTest::gtest GTest::gmock)
    else()
        target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} GTest::gtest GTest::gmock GTest::gtest_main)
    endif()
    set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    gtest_discover_tests(${T_NAME}
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests
        DISCOVERY_TIMEOUT 60
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QXCK_SOURCE_DIR=${CMAKE_SOURCE_DIR};QXCK_BINARY_DIR=${CMAKE_BINARY_DIR}"
                   TIMEOUT 600)
endfunction()
