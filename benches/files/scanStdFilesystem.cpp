// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Walks a directory with std::filesystem and reads the kind and permissions of every item and the size of
// every file.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    if (argc != 2) return 2;
    std::uintmax_t items = 0;
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(argv[1])) {
        ++items;
        const fs::file_status status = entry.symlink_status();
        if (fs::is_regular_file(status)) bytes += entry.file_size();
    }
    std::printf("%ju %ju\n", items, bytes);
    std::fflush(stdout);
    ::_exit(0);
}
