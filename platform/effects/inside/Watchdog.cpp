// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/inside/Watchdog.hpp"

#include "platform/foundation/console.hpp"

namespace platform::lv2 {

Watchdog::Watchdog(std::string what)
    : _thread([this, what = std::move(what)] {
        std::unique_lock lock(_mutex);
        if (!_changed.wait_for(lock, Patience, [this] { return _isOver; })) {
            warn(what + " does not answer; the window waits for it.");
        }
    }) {}

Watchdog::~Watchdog() {
    {
        const std::scoped_lock lock(_mutex);
        _isOver = true;
    }
    _changed.notify_one();
    _thread.join();
}

} // namespace platform::lv2
