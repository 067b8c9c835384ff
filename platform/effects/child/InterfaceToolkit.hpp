// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What depends on the toolkit of an interface, in the interface's process. One thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace platform::lv2 {

class InterfaceToolkit {
  public:
    /// Returns the time after which it wants to be called again, or no value at the end.
    using Serve = std::function<std::optional<std::chrono::milliseconds>()>;

    InterfaceToolkit() = default;
    InterfaceToolkit(const InterfaceToolkit&) = delete;
    InterfaceToolkit& operator=(const InterfaceToolkit&) = delete;
    virtual ~InterfaceToolkit() = default;

    /// Puts the widget that the interface has returned into the X window `parent` and shows it. Returns the
    /// ID of the widget's window, or 0 if the interface has none yet.
    virtual unsigned long embed(void* widget, unsigned long parent) = 0;
    /// Handles the toolkit's events, and calls `serve` at once, whenever `descriptor` is readable, and after
    /// the times that it returns; also while the interface waits for a dialog of its own. Returns at the end.
    virtual void run(int descriptor, const Serve& serve) = 0;
};

/// Returns what X11 interfaces and those with windows of their own need. They handle their events in their
/// idle functions.
[[nodiscard]] std::unique_ptr<InterfaceToolkit> makePlainToolkit();

} // namespace platform::lv2
