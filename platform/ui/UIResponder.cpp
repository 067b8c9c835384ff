// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIResponder.hpp"

namespace platform {

std::shared_ptr<UIResponder> UIResponder::nextResponder() {
    return nullptr;
}

bool UIResponder::canPerformAction(std::string_view selector,
                                   const std::shared_ptr<UIResponder>& withSender) {
    const auto next = nextResponder();
    return next && next->canPerformAction(selector, withSender);
}

} // namespace platform
