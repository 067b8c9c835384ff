// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An interface description that has been read, from which a controller is created. Main thread only.
#pragma once

#include <memory>

namespace platform {

class InterfaceDescription;

class NSCoder {
  public:
    /// `description` is null if it could not be read; then no controller can be created from the coder.
    explicit NSCoder(std::shared_ptr<InterfaceDescription> description)
        : _description(std::move(description)) {}

    [[nodiscard]] const std::shared_ptr<InterfaceDescription>& description() const noexcept {
        return _description;
    }

  private:
    std::shared_ptr<InterfaceDescription> _description;
};

} // namespace platform
