// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/litter.hpp"

#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <unistd.h>

namespace tonewright::tool {
namespace {

// A name must not command the terminal.
std::string printable(std::string name) {
    for (char& c : name)
        if (const auto byte = static_cast<unsigned char>(c); byte < 0x20 || byte == 0x7F) c = '?';
    return name;
}

} // namespace

std::optional<Litter> findLitter(const std::string& directory, std::atomic<std::int64_t>& seen) {
    Litter litter;
    std::vector<std::string>& subpaths = litter.subpaths;
    const auto enumerator = platform::FileManager::defaultManager().enumeratorAtPath(directory);
    if (!enumerator) return std::nullopt;
    LitterTest isLitter;
    while (const auto subpath = enumerator->nextObject()) {
        seen.fetch_add(1, std::memory_order_relaxed);
        if (!isLitter(*subpath)) continue;
        const bool liesInside = !subpaths.empty() && subpath->starts_with(subpaths.back() + "/");
        if (!liesInside) subpaths.emplace_back(*subpath);
    }
    litter.readErrors = enumerator->readErrors();
    return litter;
}

bool mayDelete(const std::vector<std::string>& litter) {
    constexpr std::size_t MostNamed = 10;
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) {
        platform::warn("tonewright-files: the scan would delete " + std::to_string(litter.size()) +
                       (litter.size() == 1 ? " item" : " items") +
                       " of litter; say --yes to let it, --dry-run to see them");
        return false;
    }
    platform::warn("The scan deletes:");
    for (std::size_t i = 0; i < litter.size() && i < MostNamed; ++i)
        platform::warn("  " + printable(litter[i]));
    if (litter.size() > MostNamed)
        platform::warn("  and " + std::to_string(litter.size() - MostNamed) + " more");
    std::cerr << "Delete and go on? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

} // namespace tonewright::tool
