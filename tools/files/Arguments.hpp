// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The command line of tonewright-files.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright::tool {

enum class Command { Scan, XML, List, Dump, Page, Download, Report, Help, Version };

struct Arguments {
    Command command = Command::Help;
    std::vector<std::string> operands; // a directory, a URL or a file number
    std::string output = "-";          // file for the result, or "-" for standard output
    bool isDryRun = false;
    bool saysYes = false;
};

/// Reads the arguments after the program's name. If they are invalid, returns no value and reports the reason
/// on standard error.
[[nodiscard]] std::optional<Arguments> readArguments(const std::vector<std::string_view>& words);

inline constexpr std::string_view Usage =
    R"(Usage: tonewright-files COMMAND [OPTION...] [OPERAND...]

  scan DIRECTORY             count the files, folders and bytes in a directory
  xml DIRECTORY              write its tree as nested elements
  list DIRECTORY             write all its items as a flat list of elements
  page DIRECTORY [NUMBER]    write one page: the items directly in the directory,
                             or the folder with that file number and its items
  dump DIRECTORY             write every field of every item
  download URL               fetch a file into the shared folder, as download.zip
  report                     write the locations of the application's files

If DIRECTORY is "-", its name is read from standard input, one line.
A scan deletes litter of archive programs and file managers ("__MACOSX",
".DS_Store"), after asking you.

  -n, --dry-run              list what the scan would delete, and delete nothing
  -y, --yes                  delete litter without asking
  -o, --output FILE          write the result to FILE ("-" is standard output)
  -h, --help                 show this text and exit
      --version              show the version and exit

Exit status: 0 done, 1 failed or refused, 2 wrong usage.)";

} // namespace tonewright::tool
