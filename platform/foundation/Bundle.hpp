// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The application's own folder tree: where its resources lie, in the build tree as in an installed one.
// Immutable after construction; any thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

class Bundle {
  public:
    /// Give the bundle of the running program.
    [[nodiscard]] static const Bundle& main();
    /// Give the bundle that contains the class T; this program has only one.
    template <class T>
    [[nodiscard]] static const Bundle& forClass() {
        return main();
    }

    /// Make the bundle whose program lies in `executableDirectory`.
    explicit Bundle(std::string executableDirectory);

    /// Give the resources directory; absent when there is none on the disk.
    [[nodiscard]] std::optional<URL> resourceURL() const;
    /// Give the resource `name`.`extension`; absent when no such file exists.
    [[nodiscard]] std::optional<URL> URLForResource(std::string_view name,
                                                    std::string_view withExtension) const;

  private:
    std::string _executableDirectory;
};

} // namespace platform
