# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# The sanitizer builds: `cmake --preset asan`, `tsan`, `rtsan`.

set(TONEWRIGHT_SANITIZER "" CACHE STRING "asan, tsan, rtsan or fuzz; empty for none")

# What the detectors must overlook in libraries that are not ours stands in tests/suppressions, with a reason each.
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
    # Fences are not understood by the detector; none of our code uses one, libstdc++ warns about its own.
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
    add_link_options(-fsanitize=thread)
    # The toolkit and the sound server's library are not built with the detector: what they write through the C
    # library is not looked at, their locks and queues still order what our code does.
    set(TONEWRIGHT_SANITIZER_ENVIRONMENT "TSAN_OPTIONS=suppressions=${suppressions}/threads.supp:\
ignore_noninstrumented_modules=1:second_deadlock_stack=1:history_size=4")
elseif(TONEWRIGHT_SANITIZER STREQUAL "rtsan")
    # g++ has no -fsanitize=realtime; the run-time library works without it when the audio thread says where its
    # real-time part begins and ends (platform/realtime/RealtimeScope.hpp).
    file(GLOB rtsan_library "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.rtsan-x86_64.a"
        "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.rtsan-aarch64.a")
    if(NOT rtsan_library)
        message(FATAL_ERROR "The rtsan build needs the RealtimeSanitizer run-time (package libclang-rt-19-dev).")
    endif()
    list(GET rtsan_library 0 rtsan_library)
    add_compile_definitions(TONEWRIGHT_RTSAN=1)
    # Into programs only; a plug-in finds it in the program that loads it.
    set(rtsan_link "-Wl,--whole-archive,${rtsan_library},--no-whole-archive" -ldl -lpthread -lm)
    add_link_options("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${rtsan_link}>")
elseif(TONEWRIGHT_SANITIZER STREQUAL "fuzz")
    # What the fuzz targets are built with: clang, with coverage in every object.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -O1 -g)
    add_link_options(-fsanitize=address,undefined)
elseif(TONEWRIGHT_SANITIZER)
    message(FATAL_ERROR "TONEWRIGHT_SANITIZER is asan, tsan, rtsan, fuzz or empty, not '${TONEWRIGHT_SANITIZER}'.")
endif()

if(TONEWRIGHT_SANITIZER MATCHES "asan|tsan")
    # Optimised a little and with line tables only: these builds are run by every ./test.
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
    set(CMAKE_C_FLAGS_DEBUG "-O1 -g1")
endif()

# tonewright_open_web_engine(TEST): tell that a test opens the web engine. The leak detector ends with a fault of its
# own when it reads the addresses that the engine's script interpreter reserves; so it does not look there.
function(tonewright_open_web_engine test)
    if(TONEWRIGHT_SANITIZER STREQUAL "asan")
        set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT
            "ASAN_OPTIONS=detect_leaks=0:detect_stack_use_after_return=1:strict_init_order=1")
    endif()
endfunction()
