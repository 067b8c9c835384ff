// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An interface description that was read, from which a controller is made. Main thread only.
#pragma once

#include <memory>

namespace platform {

class InterfaceDescription;

class NSCoder {
  public:
    /// `description` is absent when it could not be read; then nothing can be made from the coder.
    explicit NSCoder(std::shared_ptr<InterfaceDescription> description)
        : _description(std::move(description)) {}

    [[nodiscard]] const std::shared_ptr<InterfaceDescription>& description() const noexcept {
        return _description;
    }

  private:
    std::shared_ptr<InterfaceDescription> _description;
};

} // namespace platform
