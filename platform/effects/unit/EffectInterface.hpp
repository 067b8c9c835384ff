// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect's own X11 interface as the view around it uses it, wherever it runs. The view knows two window
// IDs and the size that the interface requests. Main thread only.
#pragma once

namespace platform::lv2 {

class EffectInterface {
  public:
    enum class State {
        Opening,
        Open,
        Failed, // it could not be created
        Closed, // by itself
        Ended,  // its process has ended
        Hung,   // its process did not answer, and was ended
    };

    EffectInterface() = default;
    EffectInterface(const EffectInterface&) = delete;
    EffectInterface& operator=(const EffectInterface&) = delete;
    virtual ~EffectInterface() = default;

    /// Returns the ID of the window that the interface returned as its widget, or 0.
    [[nodiscard]] virtual unsigned long namedWindow() const noexcept = 0;
    /// Sets whether the interface is visible. While it is visible, the effect runs on silence if the engine
    /// does not run it.
    virtual void setVisible(bool isVisible) = 0;
    /// Exchanges values and events with the interface, and has its idle function called. To be called about
    /// 30 times a second while the interface is visible, and twice a second while it is not. The reason for
    /// every end has been reported on standard error.
    virtual State update() = 0;
    /// Returns a descriptor that becomes readable when `update` should be called, or -1.
    [[nodiscard]] virtual int connection() const noexcept { return -1; }
};

} // namespace platform::lv2
