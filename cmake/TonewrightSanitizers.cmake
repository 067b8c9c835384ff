# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# The sanitizer builds: `cmake --preset asan`, `tsan`, `rtsan`, `fuzz`.

set(TONEWRIGHT_SANITIZER "" CACHE STRING "asan, tsan, rtsan or fuzz; empty for none")

# Suppressions for reports in third-party libraries are in tests/suppressions, each with its reason.
set(suppressions "${PROJECT_SOURCE_DIR}/tests/suppressions")
set(TONEWRIGHT_SANITIZER_ENVIRONMENT "")

if(TONEWRIGHT_SANITIZER STREQUAL "asan")
    add_compile_definitions(TONEWRIGHT_ASAN=1)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    set(TONEWRIGHT_SANITIZER_ENVIRONMENT
        "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:strict_init_order=1"
        "LSAN_OPTIONS=suppressions=${suppressions}/leaks.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1:suppressions=${suppressions}/undefined.supp")
elseif(TONEWRIGHT_SANITIZER STREQUAL "tsan")
    add_compile_definitions(TONEWRIGHT_TSAN=1)
    # ThreadSanitizer does not support fences. Our code uses none; -Wno-tsan turns off the warning about those in
    # libstdc++.
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
    add_link_options(-fsanitize=thread)
    # GTK and the PipeWire library are not built with ThreadSanitizer, so their calls into the C library are not
    # checked, but their locks and queues still order the accesses of our code.
    set(TONEWRIGHT_SANITIZER_ENVIRONMENT "TSAN_OPTIONS=suppressions=${suppressions}/threads.supp:\
ignore_noninstrumented_modules=1:second_deadlock_stack=1:history_size=4")
elseif(TONEWRIGHT_SANITIZER STREQUAL "rtsan")
    # g++ has no -fsanitize=realtime. The run-time library works without this option if the audio thread marks the
    # beginning and end of its real-time part (platform/realtime/RealtimeScope.hpp).
    file(GLOB rtsan_library "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.rtsan-x86_64.a"
        "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.rtsan-aarch64.a")
    if(NOT rtsan_library)
        message(FATAL_ERROR "The rtsan build needs the RealtimeSanitizer run-time (package libclang-rt-19-dev).")
    endif()
    list(GET rtsan_library 0 rtsan_library)
    add_compile_definitions(TONEWRIGHT_RTSAN=1)
    # Linked only into programs; a plug-in or module uses the library of the program that loads it, which therefore
    # exports the library's functions.
    set(rtsan_link "-Wl,--whole-archive,${rtsan_library},--no-whole-archive" "-Wl,--export-dynamic-symbol=__rtsan_*"
        -ldl -lpthread -lm)
    add_link_options("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${rtsan_link}>")
elseif(TONEWRIGHT_SANITIZER STREQUAL "fuzz")
    # The fuzz targets are built with clang; every object is instrumented for coverage.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -O1 -g)
    add_link_options(-fsanitize=address,undefined)
elseif(TONEWRIGHT_SANITIZER)
    message(FATAL_ERROR "TONEWRIGHT_SANITIZER is asan, tsan, rtsan, fuzz or empty, not '${TONEWRIGHT_SANITIZER}'.")
endif()

if(TONEWRIGHT_SANITIZER MATCHES "asan|tsan")
    # Slightly optimised and with line tables only, because every ./test builds and runs these.
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
    set(CMAKE_C_FLAGS_DEBUG "-O1 -g1")
endif()

# tonewright_open_web_engine(TEST): declares that a test opens WebKit. The leak detector crashes when it reads the
# addresses that WebKit's JavaScript engine reserves, so it is turned off for such a test.
function(tonewright_open_web_engine test)
    if(TONEWRIGHT_SANITIZER STREQUAL "asan")
        set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT
            "ASAN_OPTIONS=detect_leaks=0:detect_stack_use_after_return=1:strict_init_order=1")
    endif()
endfunction()
