// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the user asked for on the command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright::tool {

enum class Command { Scan, XML, List, Dump, Page, Download, Report, Help, Version };

struct Arguments {
    Command command = Command::Help;
    std::vector<std::string> operands; // a directory, a URL, an identifier
    std::string output = "-";          // where the result goes; "-": standard output
    bool isDryRun = false;
    bool saysYes = false;
};

/// Reads the arguments after the program's name; absent, with a line on standard error, if they are invalid.
[[nodiscard]] std::optional<Arguments> readArguments(const std::vector<std::string_view>& words);

inline constexpr std::string_view Usage =
    R"(Usage: tonewright-files COMMAND [OPTION...] [OPERAND...]

  scan DIRECTORY             count what a directory holds
  xml DIRECTORY              write its tree as nested elements
  list DIRECTORY             write all its items as elements in a row
  page DIRECTORY [NUMBER]    write one page: the items right inside the directory,
                             or the folder with that file number and its items
  dump DIRECTORY             write every field of every item
  download URL               fetch a file into the shared folder, as download.zip
  report                     write where the application's files live

A DIRECTORY of "-" is read from standard input, one line.
A scan deletes archive and folder-view litter ("__MACOSX", ".DS_Store"); you are
asked before anything goes.

  -n, --dry-run              list what the scan would delete, and do nothing
  -y, --yes                  delete it without asking
  -o, --output FILE          write the result to FILE ("-": standard output)
  -h, --help                 write this text
      --version              write the version

Exit status: 0 done, 1 failed or refused, 2 wrong usage.)";

} // namespace tonewright::tool
