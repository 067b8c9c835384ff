// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A transition from one screen to another, while it is being prepared. Main thread only.
#pragma once

#include "platform/ui/UIViewController.hpp"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

class UIStoryboardSegue final {
  public:
    UIStoryboardSegue(std::optional<std::string> identifier, std::shared_ptr<UIViewController> source,
                      std::shared_ptr<UIViewController> destination)
        : _identifier(std::move(identifier))
        , _source(std::move(source))
        , _destination(std::move(destination)) {}

    /// Returns the identifier of the segue in the interface description; empty if it has none.
    [[nodiscard]] const std::optional<std::string>& identifier() const noexcept { return _identifier; }
    [[nodiscard]] const std::shared_ptr<UIViewController>& sourceViewController() const noexcept {
        return _source;
    }
    [[nodiscard]] const std::shared_ptr<UIViewController>& destinationViewController() const noexcept {
        return _destination;
    }

  private:
    std::optional<std::string> _identifier;
    std::shared_ptr<UIViewController> _source;
    std::shared_ptr<UIViewController> _destination;
};

} // namespace platform
