// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the engine player reports upwards.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

class AUEnginePlayerDelegate {
  public:
    virtual ~AUEnginePlayerDelegate() = default;

    /// Hear of each start (true) and stop (false) that took effect. Main queue.
    virtual void onPlayerStateChanged(bool playing) = 0;
    /// Hear the path of the file just opened. The thread that called `load`.
    virtual void onFileSelect(const std::string& file) = 0;
    /// Hear of each completed pass; `count` starts at 0 after a load. Main queue.
    virtual void onLoop(std::int64_t count) = 0;
};

} // namespace tonewright
