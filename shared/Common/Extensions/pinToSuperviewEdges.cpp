// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/pinToSuperviewEdges.hpp"

#include "platform/ui/UIView.hpp"

namespace tonewright {

void pinToSuperviewEdges(platform::UIView& view) {
    const auto superview = view.superview();
    if (!superview) return;
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    platform::NSLayoutConstraint::activateConstraints({
        view.topAnchor().constraintEqualToAnchor(superview->topAnchor()),
        view.leadingAnchor().constraintEqualToAnchor(superview->leadingAnchor()),
        view.bottomAnchor().constraintEqualToAnchor(superview->bottomAnchor()),
        view.trailingAnchor().constraintEqualToAnchor(superview->trailingAnchor()),
    });
}

} // namespace tonewright
