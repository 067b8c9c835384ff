// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory use of this process.
#pragma once

#include <cstdio>
#include <unistd.h>

/// Returns the resident memory of this process in bytes.
inline long residentBytes() {
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    long pages = 0;
    long resident = 0;
    if (file == nullptr) return 0;
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
    return resident * ::sysconf(_SC_PAGESIZE);
}
