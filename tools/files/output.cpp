// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/output.hpp"

#include "platform/foundation/console.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace tonewright::tool {
namespace {

bool fail(const std::string& name, int error) {
    const char* reason = ::strerrordesc_np(error);
    platform::warn("tonewright-files: cannot write " + (name == "-" ? "standard output" : "'" + name + "'") +
                   ": " + (reason != nullptr ? reason : "error"));
    return false;
}

} // namespace

bool redirectOutput(const std::string& name) {
    if (name == "-") return true;
    const int file = ::open(name.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0666);
    if (file < 0) return fail(name, errno);
    platform::printToFile(file);
    return true;
}

bool writeResult(std::string_view text, const std::string& name) {
    if (!redirectOutput(name)) return false;
    platform::printToStandardError(false);
    platform::print(text);
    return linesGotOut(name);
}

bool linesGotOut(const std::string& name) {
    const int error = platform::printError();
    return error == 0 || fail(name, error);
}

} // namespace tonewright::tool
