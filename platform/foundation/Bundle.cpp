// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Bundle.hpp"

#include <filesystem>
#include <system_error>

namespace platform {
namespace {

namespace fs = std::filesystem;

std::string programDirectory() {
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored).parent_path().string();
}

} // namespace

const Bundle& Bundle::main() {
    static const Bundle bundle(programDirectory());
    return bundle;
}

Bundle::Bundle(std::string executableDirectory)
    : _executableDirectory(std::move(executableDirectory)) {}

std::optional<URL> Bundle::resourceURL() const {
    // bin/tonewright beside share/tonewright; a test program lies one level deeper, in bin/tests.
    const fs::path directory = _executableDirectory;
    for (const fs::path& prefix : {directory.parent_path(), directory.parent_path().parent_path()}) {
        std::error_code ignored;
        const fs::path resources = prefix / "share" / "tonewright";
        if (fs::is_directory(resources, ignored)) return URL::fileURLWithPath(resources.string(), true);
    }
    return std::nullopt;
}

std::optional<URL> Bundle::URLForResource(std::string_view name, std::string_view withExtension) const {
    const auto resources = resourceURL();
    if (!resources) return std::nullopt;
    std::string file(name);
    if (!withExtension.empty()) file.append(".").append(withExtension);
    const URL url = resources->appendingPathComponent(file);
    std::error_code ignored;
    if (!fs::exists(url.path(), ignored)) return std::nullopt;
    return url;
}

} // namespace platform
