// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Scans a directory with the library; prints the number of items and the resident memory that the tree
// occupies.
#include "benches/files/memory.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    platform::printToStandardError(true);
    auto* enumerator = new tonewright::FileEnumerator;
    const long before = residentBytes();
    enumerator->enumerate(argv[1]);
    const long items = tonewright::FileBase::lastID() - 1; // without the root
    std::printf("%ld %ld\n", items, residentBytes() - before);
    std::fflush(stdout);
    ::_exit(0);
}
