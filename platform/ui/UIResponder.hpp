// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The sender or receiver of an action: views, controllers, the application's delegate. Main thread only.
#pragma once

#include <memory>
#include <string_view>

namespace platform {

class UIResponder : public std::enable_shared_from_this<UIResponder> {
  public:
    UIResponder() = default;
    virtual ~UIResponder() = default;
    UIResponder(const UIResponder&) = delete;
    UIResponder& operator=(const UIResponder&) = delete;

    /// Returns the responder that is asked if this one does not know an action, or null at the end of the
    /// chain.
    [[nodiscard]] virtual std::shared_ptr<UIResponder> nextResponder();

    /// Returns whether this responder, or a later one in the chain, performs the action `selector`
    /// ("onPlayButton:"). `withSender` may be null.
    [[nodiscard]] virtual bool canPerformAction(std::string_view selector,
                                                const std::shared_ptr<UIResponder>& withSender);
};

} // namespace platform
