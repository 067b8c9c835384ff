// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A directory of a test's own, removed with everything in it when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tonewright::test {

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
    /// Makes a file, and the folders above it.
    std::string file(std::string_view name, std::string_view content = "") const {
        const std::string path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    std::string folder(std::string_view name) const {
        const std::string path = *this / name;
        std::filesystem::create_directories(path);
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

} // namespace tonewright::test
