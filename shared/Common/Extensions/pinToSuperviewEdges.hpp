// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Pinning a view to the view that holds it. Main thread.
#pragma once

namespace platform {
class UIView;
}

namespace tonewright {

/// Lets `view` fill its superview from now on, whatever its size; does nothing without a superview.
void pinToSuperviewEdges(platform::UIView& view);

} // namespace tonewright
