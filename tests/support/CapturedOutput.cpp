// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/CapturedOutput.hpp"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonewright::test {

CapturedOutput::CapturedOutput() {
    std::fflush(stdout);
    _kept = ::dup(STDOUT_FILENO);
    _file = ::memfd_create("captured output", MFD_CLOEXEC);
    if (_kept < 0 || _file < 0 || ::dup2(_file, STDOUT_FILENO) < 0) std::abort();
}

CapturedOutput::~CapturedOutput() {
    std::fflush(stdout);
    ::dup2(_kept, STDOUT_FILENO);
    ::close(_kept);
    ::close(_file);
}

std::vector<std::string> CapturedOutput::lines() const {
    struct stat status {};
    ::fstat(_file, &status);
    std::string text(static_cast<std::size_t>(status.st_size - _taken), '\0');
    if (::pread(_file, text.data(), text.size(), _taken) != static_cast<ssize_t>(text.size())) std::abort();
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return lines;
}

std::vector<std::string> CapturedOutput::take() {
    auto lines = this->lines();
    for (const auto& line : lines) _taken += static_cast<long>(line.size()) + 1;
    return lines;
}

} // namespace tonewright::test
