// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The application's own folders: where its resources are, in the build tree as in an installation. Immutable
// after construction; any thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Bundle {
  public:
    /// Returns the bundle of the running program.
    [[nodiscard]] static const Bundle& main();
    /// Returns the bundle that contains the class T; this program has only one.
    template <class T>
    [[nodiscard]] static const Bundle& forClass() {
        return main();
    }

    /// Creates the bundle whose program is in `executableDirectory`.
    explicit Bundle(std::string executableDirectory);

    /// Returns the resources directory; absent when there is none on the disk.
    [[nodiscard]] std::optional<URL> resourceURL() const;
    [[nodiscard]] std::optional<std::string> resourcePath() const;

    // Where the parts of an installation are. These are always returned, whether they exist or not.
    [[nodiscard]] URL bundleURL() const; // the prefix of the installation
    [[nodiscard]] std::string bundlePath() const { return bundleURL().path(); }
    [[nodiscard]] URL executableURL() const;
    [[nodiscard]] std::string executablePath() const { return executableURL().path(); }
    [[nodiscard]] URL privateFrameworksURL() const; // libraries of this program alone
    [[nodiscard]] std::string privateFrameworksPath() const { return privateFrameworksURL().path(); }
    [[nodiscard]] URL sharedFrameworksURL() const;
    [[nodiscard]] std::string sharedFrameworksPath() const { return sharedFrameworksURL().path(); }
    [[nodiscard]] URL builtInPlugInsURL() const; // the bundled effects
    [[nodiscard]] std::string builtInPlugInsPath() const { return builtInPlugInsURL().path(); }
    [[nodiscard]] URL sharedSupportURL() const;
    [[nodiscard]] std::string sharedSupportPath() const { return sharedSupportURL().path(); }
    [[nodiscard]] URL appStoreReceiptURL() const;

    /// Returns the program's identifier in the desktop's naming; absent for a program that is not an
    /// application.
    [[nodiscard]] std::optional<std::string> bundleIdentifier() const;
    /// Returns the name of the class that starts the application; this program has none.
    [[nodiscard]] std::optional<std::string> principalClass() const { return std::nullopt; }
    /// Returns the dictionary that describes the bundle; an installation of this program has none.
    [[nodiscard]] std::optional<std::map<std::string, std::string>> infoDictionary() const {
        return std::nullopt;
    }

    /// Returns the paths of all files directly inside `directory` that have the extension `ofType`.
    [[nodiscard]] static std::vector<std::string> pathsForResourcesOfType(std::string_view ofType,
                                                                          const std::string& inDirectory);

    /// Returns the resource `name`.`extension`; absent when no such file exists.
    [[nodiscard]] std::optional<URL> URLForResource(std::string_view name,
                                                    std::string_view withExtension) const;

  private:
    [[nodiscard]] std::string prefix() const;
    std::string _executableDirectory;
};

} // namespace platform
