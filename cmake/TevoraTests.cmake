# Ways to add tests:
#
#   tevora_add_gtest(<name> SOURCES <file>... DEPENDS <tevora target>... [LIBRARIES ...] [QT] [REAL_DATA])
#       One program of GoogleTest cases; each case is a test of its own.
#   tevora_add_qtest(<name> SOURCES <file>... DEPENDS ... [LIBRARIES ...] [WINDOW] [REAL_DATA])
#       One QTest program, one test. WINDOW: it needs the display, which only one test at a time may have.
#
# REAL_DATA: the test reads the folder TEVORA_TEST_DATA; a skip inside is shown in the runner's summary.
include(GoogleTest)
find_package(GTest CONFIG REQUIRED)

set(TEVORA_TEST_ENVIRONMENT "QT_HASH_SEED=0;TEVORA_SOURCE_DIR=${CMAKE_SOURCE_DIR}")

function(_tevora_test_target name)
    cmake_parse_arguments(ARG "QT;WINDOW;REAL_DATA" "TIMEOUT" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_link_libraries(${name} PRIVATE tevora_flags ${ARG_DEPENDS} ${ARG_LIBRARIES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
endfunction()

function(tevora_add_gtest name)
    cmake_parse_arguments(ARG "QT;REAL_DATA" "TIMEOUT" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
    _tevora_test_target(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE GTest::gmock GTest::gtest_main)
    if(ARG_QT)
        tevora_use_qt_header(${name})
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${TEVORA_TEST_ENVIRONMENT}")
endfunction()

function(tevora_add_qtest name)
    cmake_parse_arguments(ARG "WINDOW;REAL_DATA" "TIMEOUT" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
    _tevora_test_target(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE Qt6::Test)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    tevora_use_qt_header(${name})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${TEVORA_TEST_ENVIRONMENT}")
    if(ARG_WINDOW)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK display LABELS window)
    endif()
    if(ARG_REAL_DATA)
        set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "SKIP   : ")
    endif()
endfunction()
