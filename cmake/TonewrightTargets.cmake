# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# How this project's libraries, programs and tests are declared: one place for language level and warnings.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

add_library(tonewright_options INTERFACE)
target_compile_features(tonewright_options INTERFACE cxx_std_20)
# -ffp-contract=off: the same arithmetic on every machine and compiler.
target_compile_options(tonewright_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off)
target_include_directories(tonewright_options INTERFACE "${PROJECT_SOURCE_DIR}")
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# tonewright_add_library(NAME SOURCES... [LIBS libs...] [PRIVATE_LIBS libs...])
# LIBS are our own libraries whose headers appear in ours; PRIVATE_LIBS are others', seen by the sources only.
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
# One executable of GoogleTest cases, run as one test. LABELS: `display` needs a virtual display, `sound` a sound
# server, `slow` more than ten seconds; SERIAL: never beside another test.
function(tonewright_add_test name)
    cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    if(NOT TONEWRIGHT_TESTS)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBS} tonewright_options GTest::gtest GTest::gtest_main)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin/tests")
    add_test(NAME ${name} COMMAND ${name})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
    if(arg_SERIAL)
        set_tests_properties(${name} PROPERTIES RUN_SERIAL TRUE)
    endif()
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
        "TONEWRIGHT_SOURCE_DIR=${PROJECT_SOURCE_DIR}" "TONEWRIGHT_BUILD_DIR=${CMAKE_BINARY_DIR}")
endfunction()
