// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Pins a view to the edges of its superview. Main thread.
#pragma once

namespace platform {
class UIView;
}

namespace tonewright {

/// Lets `view` fill its superview from now on, even when the superview is resized. Does nothing without a
/// superview.
void pinToSuperviewEdges(platform::UIView& view);

} // namespace tonewright
