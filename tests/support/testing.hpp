// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by nearly all tests: the usual headers, a temporary directory, and the capture of standard output.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <numbers>
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace tonewright::test {

using Lines = std::vector<std::string>;

/// Base of classes that are neither copied nor moved.
struct Uncopied {
    Uncopied() = default;
    Uncopied(const Uncopied&) = delete;
    Uncopied& operator=(const Uncopied&) = delete;
};

/// A temporary directory, which is removed with its contents when the object is destroyed.
class Scratch : Uncopied {
  public:
    Scratch() {
        std::string pattern = std::filesystem::temp_directory_path() / "tonewright-test-XXXXXX";
        _path = ::mkdtemp(pattern.data());
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    [[nodiscard]] const std::string& path() const { return _path; }
    /// Returns the path of `name` in the directory.
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return _path + "/" + std::string(name);
    }
    /// Creates a folder and its parents; returns its path.
    std::string folder(std::string_view name) const {
        std::filesystem::create_directories(*this / name);
        return *this / name;
    }
    /// Creates a file and its parent folders; returns its path.
    std::string file(std::string_view name, std::string_view content = "") const {
        std::string path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

  private:
    std::string _path;
};

/// Returns the path of the source tree.
inline std::string sourceTree() {
    const char* tree = std::getenv("TONEWRIGHT_SOURCE_DIR");
    return tree == nullptr ? "." : tree;
}

/// Returns the whole content of a file.
inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Redirects standard output to a file as long as the object exists.
class CapturedOutput : Uncopied {
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

    /// Returns the lines written since construction or the last call of `take`.
    [[nodiscard]] Lines take() {
        auto lines = this->lines();
        for (const auto& line : lines) _taken += static_cast<long>(line.size()) + 1;
        return lines;
    }
    /// Like `take`, but the next call returns these lines again.
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
