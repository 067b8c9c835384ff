// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/Arguments.hpp"

#include "platform/foundation/console.hpp"

#include <array>

namespace tonewright::tool {
namespace {

struct CommandWord {
    std::string_view word;
    Command command;
    std::size_t leastOperands;
    std::size_t mostOperands;
};

constexpr std::array<CommandWord, 7> CommandWords = {{
    {.word = "scan", .command = Command::Scan, .leastOperands = 1, .mostOperands = 1},
    {.word = "xml", .command = Command::XML, .leastOperands = 1, .mostOperands = 1},
    {.word = "list", .command = Command::List, .leastOperands = 1, .mostOperands = 1},
    {.word = "page", .command = Command::Page, .leastOperands = 1, .mostOperands = 2},
    {.word = "dump", .command = Command::Dump, .leastOperands = 1, .mostOperands = 1},
    {.word = "download", .command = Command::Download, .leastOperands = 1, .mostOperands = 1},
    {.word = "report", .command = Command::Report, .leastOperands = 0, .mostOperands = 0},
}};

std::optional<Arguments> refuse(const std::string& why) {
    platform::warn("tonewright-files: " + why + "; see tonewright-files --help");
    return std::nullopt;
}

} // namespace

std::optional<Arguments> readArguments(const std::vector<std::string_view>& words) {
    Arguments arguments;
    std::vector<std::string> plain;
    bool takesOptions = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string_view word = words[i];
        if (!takesOptions || word == "-" || !word.starts_with('-')) {
            plain.emplace_back(word);
        } else if (word == "--") {
            takesOptions = false;
        } else if (word == "--help") {
            arguments.command = Command::Help;
            return arguments;
        } else if (word == "--version") {
            arguments.command = Command::Version;
            return arguments;
        } else if (word == "--dry-run") {
            arguments.isDryRun = true;
        } else if (word == "--yes") {
            arguments.saysYes = true;
        } else if (word.starts_with("--output=")) {
            arguments.output = word.substr(9);
        } else if (word == "--output") {
            if (++i == words.size()) return refuse("'--output' needs a file");
            arguments.output = words[i];
        } else if (word.starts_with("--")) {
            return refuse("there is no option '" + std::string(word) + "'");
        } else {
            // Short options may be combined. The file of -o follows directly or as the next word.
            for (word.remove_prefix(1); !word.empty();) {
                const char letter = word.front();
                word.remove_prefix(1);
                if (letter == 'n') {
                    arguments.isDryRun = true;
                } else if (letter == 'y') {
                    arguments.saysYes = true;
                } else if (letter == 'h') {
                    arguments.command = Command::Help;
                    return arguments;
                } else if (letter == 'o') {
                    if (word.empty() && ++i == words.size()) return refuse("'-o' needs a file");
                    arguments.output = word.empty() ? words[i] : word;
                    word = {};
                } else {
                    return refuse("there is no option '-" + std::string(1, letter) + "'");
                }
            }
        }
    }
    if (plain.empty()) return refuse("no command was given");
    for (const CommandWord& known : CommandWords) {
        if (known.word != plain.front()) continue;
        arguments.command = known.command;
        arguments.operands.assign(plain.begin() + 1, plain.end());
        if (arguments.operands.size() < known.leastOperands ||
            arguments.operands.size() > known.mostOperands) {
            return refuse("'" + plain.front() + "' does not take " +
                          std::to_string(arguments.operands.size()) + " operands");
        }
        const bool scans = known.command != Command::Download && known.command != Command::Report;
        if (!scans && (arguments.isDryRun || arguments.saysYes)) {
            return refuse("'" + plain.front() +
                          "' deletes nothing, so --dry-run and --yes cannot be used with it");
        }
        return arguments;
    }
    return refuse("there is no command '" + plain.front() + "'");
}

} // namespace tonewright::tool
