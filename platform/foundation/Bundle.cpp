// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Bundle.hpp"

#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/product.hpp"

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
    // Never destroyed, because threads may use it while the process exits.
    static const auto* bundle = new Bundle(programDirectory());
    return *bundle;
}

Bundle::Bundle(std::string executableDirectory)
    : _executableDirectory(std::move(executableDirectory)) {}

std::optional<URL> Bundle::resourceURL() const {
    // The program is in PREFIX/bin, a test program in PREFIX/bin/tests. The resources are in PREFIX/share.
    const fs::path directory = _executableDirectory;
    for (const fs::path& prefix : {directory.parent_path(), directory.parent_path().parent_path()}) {
        std::error_code ignored;
        const fs::path resources = prefix / "share" / product::Name;
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

std::optional<std::string> Bundle::resourcePath() const {
    const auto url = resourceURL();
    return url ? std::optional(url->path()) : std::nullopt;
}

// Returns the parent directory of bin. Test programs are in bin/tests.
std::string Bundle::prefix() const {
    const fs::path directory = _executableDirectory;
    const fs::path above = directory.parent_path();
    return (above.filename() == "bin" ? above.parent_path() : above).string();
}

URL Bundle::bundleURL() const {
    return URL::fileURLWithPath(prefix(), true);
}
URL Bundle::executableURL() const {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return URL::fileURLWithPath(_executableDirectory + "/" + program.filename().string(), false);
}
URL Bundle::privateFrameworksURL() const {
    return URL::fileURLWithPath(prefix() + "/lib/" + product::Name, true);
}
URL Bundle::sharedFrameworksURL() const {
    return URL::fileURLWithPath(prefix() + "/lib", true);
}
URL Bundle::builtInPlugInsURL() const {
    return URL::fileURLWithPath(prefix() + "/lib/lv2", true);
}
URL Bundle::sharedSupportURL() const {
    return URL::fileURLWithPath(prefix() + "/share", true);
}
URL Bundle::appStoreReceiptURL() const {
    return URL::fileURLWithPath(prefix() + "/share/" + product::Name + "/receipt", false);
}

std::optional<std::string> Bundle::bundleIdentifier() const {
    std::error_code error;
    if (fs::read_symlink("/proc/self/exe", error).filename() != product::Name) return std::nullopt;
    return std::string(product::Identifier);
}

std::vector<std::string> Bundle::pathsForResourcesOfType(std::string_view ofType,
                                                         const std::string& inDirectory) {
    std::vector<std::string> paths;
    const auto names = FileManager::defaultManager().contentsOfDirectoryAtPath(inDirectory);
    if (!names) return paths;
    for (const std::string& name : names.value()) {
        const std::size_t dot = name.rfind('.');
        if (dot != std::string::npos && dot > 0 && std::string_view(name).substr(dot + 1) == ofType) {
            paths.push_back(inDirectory + "/" + name);
        }
    }
    return paths;
}

} // namespace platform
