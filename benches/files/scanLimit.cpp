// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit program of the scan benchmark, which does only what every scan has to do. Prints the number of
// items and the resident memory that their records occupy.
#include "benches/files/flatScan.hpp"
#include "benches/files/memory.hpp"

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const long before = residentBytes();
    const FlatTree tree = flatScan(argv[1]);
    std::printf("%zu %ld\n", tree.records.size(), residentBytes() - before);
    std::fflush(stdout);
    ::_exit(0);
}
