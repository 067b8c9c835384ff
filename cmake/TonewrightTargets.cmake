# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# Functions that declare this project's libraries, programs and tests, with one language level and one set of warnings.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# Line tables suffice for backtraces and profiles, and compile much faster than full debug information.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
set(CMAKE_C_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")

add_library(tonewright_options INTERFACE)
target_compile_definitions(tonewright_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
target_compile_features(tonewright_options INTERFACE cxx_std_20)
# -ffp-contract=off: arithmetic gives the same results on every machine and with every compiler.
target_compile_options(tonewright_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off)
target_include_directories(tonewright_options INTERFACE "${PROJECT_SOURCE_DIR}")
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# tonewright_add_library(NAME SOURCES... [LIBS libs...] [PRIVATE_LIBS libs...])
# LIBS are libraries of ours whose headers appear in the library's headers; PRIVATE_LIBS are third-party libraries that
# only the sources use.
function(tonewright_add_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;PRIVATE_LIBS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PUBLIC ${arg_LIBS} PRIVATE tonewright_options ${arg_PRIVATE_LIBS})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_compile_features(${name} PUBLIC cxx_std_20)
endfunction()

# tonewright_add_program(NAME SOURCES... [LIBS libs...])
function(tonewright_add_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${arg_SOURCES} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBS} tonewright_options)
endfunction()

# tonewright_add_test(NAME SOURCES... [LIBS libs...] [LABELS labels...] [TIMEOUT seconds] [SERIAL])
# A program of GoogleTest cases that runs as one test. LABELS: `display` runs it on a virtual display, `sound` with a
# private sound server, `realtime` runs it also under RealtimeSanitizer in ./test, `slow` marks a test of more than ten
# seconds. SERIAL: never runs in parallel with another test. tools/with-display and tools/sound-server also provide a
# private home directory without a session bus.
function(tonewright_add_test name)
    cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    if(NOT TONEWRIGHT_TESTS)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBS} tonewright_options GTest::gtest GTest::gtest_main)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin/tests")
    _tonewright_register_test(${name} "$<TARGET_FILE:${name}>" "${arg_LABELS}" "${arg_TIMEOUT}" "${arg_SERIAL}")
endfunction()

# tonewright_add_script_test(NAME SCRIPT [LABELS labels...] [TIMEOUT seconds] [SERIAL])
# A Python script with cases for tests/support/cases.py that runs as one test.
function(tonewright_add_script_test name script)
    cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "LABELS" ${ARGN})
    if(TONEWRIGHT_TESTS)
        _tonewright_register_test(${name} "/usr/bin/python3;${CMAKE_CURRENT_SOURCE_DIR}/${script}" "${arg_LABELS}"
            "${arg_TIMEOUT}" "${arg_SERIAL}")
    endif()
endfunction()

function(_tonewright_register_test name command labels timeout serial)
    set(wrapper "")
    if("sound" IN_LIST labels)
        list(APPEND wrapper "${PROJECT_SOURCE_DIR}/tools/sound-server")
    endif()
    if("display" IN_LIST labels)
        list(APPEND wrapper "${PROJECT_SOURCE_DIR}/tools/with-display")
    endif()
    add_test(NAME ${name} COMMAND ${wrapper} ${command})
    if(NOT timeout)
        set(timeout 120)
    endif()
    if(TONEWRIGHT_SANITIZER)
        math(EXPR timeout "${timeout} * 4")
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout} LABELS "${labels}" RUN_SERIAL "${serial}")
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
        "PYTHONPATH=${PROJECT_SOURCE_DIR}/tests/support:${PROJECT_SOURCE_DIR}/tests/e2e"
        "TONEWRIGHT_SOURCE_DIR=${PROJECT_SOURCE_DIR}" "TONEWRIGHT_BUILD_DIR=${CMAKE_BINARY_DIR}"
        ${TONEWRIGHT_SANITIZER_ENVIRONMENT})
endfunction()
