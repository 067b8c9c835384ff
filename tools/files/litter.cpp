// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/litter.hpp"

#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

#include <algorithm>
#include <iostream>
#include <string_view>
#include <unistd.h>

namespace tonewright::tool {
namespace {

// Returns the length in bytes of the character at the start of `text`, or 0 if the bytes there are not valid
// UTF-8.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0U) != 0x80) return 0;
    }
    const bool isOverlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool isNone = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return isOverlong || isNone ? 0 : length;
}

// Replaces everything by "?" that a terminal could interpret as a command: ASCII control characters, U+0080
// to U+009F, and bytes that are not valid UTF-8.
std::string printable(std::string_view name) {
    std::string text;
    while (!name.empty()) {
        const std::size_t length = characterLength(name);
        const std::string_view character = name.substr(0, std::max<std::size_t>(length, 1));
        const auto first = static_cast<unsigned char>(character[0]);
        const bool isControl = length == 0 || first < 0x20 || first == 0x7F ||
                               (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0);
        text += isControl ? std::string_view("?") : character;
        name.remove_prefix(character.size());
    }
    return text;
}

bool saysYes(std::string answer) {
    for (char& c : answer) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return answer == "y" || answer == "yes";
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

std::string lineOf(std::string path) {
    if (path.find('\n') == std::string::npos) return path;
    std::string line = "\\";
    for (const char c : path) {
        if (c == '\n') {
            line += "\\n";
        } else if (c == '\\') {
            line += "\\\\";
        } else {
            line += c;
        }
    }
    return line;
}

bool mayDelete(const std::vector<std::string>& litter) {
    constexpr std::size_t MostNamed = 10;
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) {
        platform::warn("tonewright-files: the scan would delete " + std::to_string(litter.size()) +
                       (litter.size() == 1 ? " item" : " items") +
                       " of litter; use --yes to allow that, --dry-run to list them");
        return false;
    }
    platform::warn("The scan deletes:");
    for (std::size_t i = 0; i < litter.size() && i < MostNamed; ++i) {
        platform::warn("  " + printable(litter[i]));
    }
    if (litter.size() > MostNamed) {
        platform::warn("  and " + std::to_string(litter.size() - MostNamed) + " more");
    }
    std::cerr << "Delete and go on? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return saysYes(std::move(answer));
}

} // namespace tonewright::tool
