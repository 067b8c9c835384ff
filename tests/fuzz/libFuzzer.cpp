// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/fuzz/fuzz.hpp"

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO); // discards the lines that the subjects print
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzOne({reinterpret_cast<const char*>(data), size});
    return 0;
}
