// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The directories of the application. They are found in the same way in the build tree and in an
// installation. Immutable after construction; any thread.
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
    /// Returns the bundle that contains the class T, which is always the main bundle.
    template <class T>
    [[nodiscard]] static const Bundle& forClass() {
        return main();
    }

    /// Creates the bundle of a program in `executableDirectory`.
    explicit Bundle(std::string executableDirectory);

    /// Returns the resources directory, or no value if it does not exist.
    [[nodiscard]] std::optional<URL> resourceURL() const;
    [[nodiscard]] std::optional<std::string> resourcePath() const;

    // The following functions return where the parts of an installation belong, even if they do not exist.
    [[nodiscard]] URL bundleURL() const; // the prefix of the installation
    [[nodiscard]] std::string bundlePath() const { return bundleURL().path(); }
    [[nodiscard]] URL executableURL() const;
    [[nodiscard]] std::string executablePath() const { return executableURL().path(); }
    [[nodiscard]] URL privateFrameworksURL() const; // private libraries of this program
    [[nodiscard]] std::string privateFrameworksPath() const { return privateFrameworksURL().path(); }
    [[nodiscard]] URL sharedFrameworksURL() const;
    [[nodiscard]] std::string sharedFrameworksPath() const { return sharedFrameworksURL().path(); }
    [[nodiscard]] URL builtInPlugInsURL() const; // the bundled effects
    [[nodiscard]] std::string builtInPlugInsPath() const { return builtInPlugInsURL().path(); }
    [[nodiscard]] URL sharedSupportURL() const;
    [[nodiscard]] std::string sharedSupportPath() const { return sharedSupportURL().path(); }
    [[nodiscard]] URL appStoreReceiptURL() const;

    /// Returns product::Identifier, or no value if the running program is not the application.
    [[nodiscard]] std::optional<std::string> bundleIdentifier() const;
    /// Returns the name of the class that starts the application. There is none, so this returns no value.
    [[nodiscard]] std::optional<std::string> principalClass() const { return std::nullopt; }
    /// Returns the dictionary that describes the bundle. There is none, so this returns no value.
    [[nodiscard]] std::optional<std::map<std::string, std::string>> infoDictionary() const {
        return std::nullopt;
    }

    /// Returns the paths of all files directly inside `inDirectory` that have the extension `ofType`.
    [[nodiscard]] static std::vector<std::string> pathsForResourcesOfType(std::string_view ofType,
                                                                          const std::string& inDirectory);

    /// Returns the URL of the resource `name`.`withExtension`, or no value if there is no such file.
    [[nodiscard]] std::optional<URL> URLForResource(std::string_view name,
                                                    std::string_view withExtension) const;

  private:
    [[nodiscard]] std::string prefix() const;
    std::string _executableDirectory;
};

} // namespace platform
