// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What nearly every test needs: the usual headers, a directory of its own, and what the code under test
// writes to standard output.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <memory>
#include <numbers>
#include <random>
#include <set>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tonewright::test {

using Lines = std::vector<std::string>;

/// A directory that is removed with everything in it when the test ends.
class Scratch {
  public:
    Scratch() {
        std::string pattern = std::filesystem::temp_directory_path() / "tonewright-test-XXXXXX";
        _path = ::mkdtemp(pattern.data());
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    [[nodiscard]] const std::string& path() const { return _path; }
    /// Returns the path of `name` inside.
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return _path + "/" + std::string(name);
    }
    /// Makes a folder, and those above it.
    std::string folder(std::string_view name) const {
        std::filesystem::create_directories(*this / name);
        return *this / name;
    }
    /// Makes a file, and the folders above it.
    std::string file(std::string_view name, std::string_view content = "") const {
        std::string path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

  private:
    std::string _path;
};

/// Returns the whole content of a file.
inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// From construction to destruction standard output goes to a file of its own.
class CapturedOutput {
  public:
    CapturedOutput() {
        std::fflush(stdout);
        if (_kept < 0 || _file < 0 || ::dup2(_file, STDOUT_FILENO) < 0) std::abort();
    }
    ~CapturedOutput() {
        std::fflush(stdout);
        ::dup2(_kept, STDOUT_FILENO);
        ::close(_kept);
        ::close(_file);
    }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Returns the lines written since construction or the last call of `take`.
    [[nodiscard]] Lines take() {
        auto lines = this->lines();
        for (const auto& line : lines) _taken += static_cast<long>(line.size()) + 1;
        return lines;
    }
    /// Returns the same lines and leaves them to be taken.
    [[nodiscard]] Lines lines() const {
        std::ifstream text("/proc/self/fd/" + std::to_string(_file), std::ios::binary);
        text.seekg(_taken);
        Lines lines;
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        return lines;
    }

  private:
    int _kept = ::dup(STDOUT_FILENO);
    int _file = ::memfd_create("captured output", MFD_CLOEXEC);
    long _taken = 0; // bytes
};

} // namespace tonewright::test
