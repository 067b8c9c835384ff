// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the engine player reports to its delegate.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

class AUEnginePlayerDelegate {
  public:
    virtual ~AUEnginePlayerDelegate() = default;

    /// Called after each start (true) and stop (false) that took effect. Main queue.
    virtual void onPlayerStateChanged(bool playing) = 0;
    /// Called with the path of the file just opened, on the thread that called `load`.
    virtual void onFileSelect(const std::string& file) = 0;
    /// Called after each completed pass; `count` starts at 0 after a load. Main queue.
    virtual void onLoop(std::int64_t count) = 0;
};

} // namespace tonewright
