// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Receives the reports of the engine player.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

class AUEnginePlayerDelegate {
  public:
    virtual ~AUEnginePlayerDelegate() = default;

    /// Called after playback has started (true) or stopped (false). Main queue.
    virtual void onPlayerStateChanged(bool playing) = 0;
    /// Called with the path of a file after it has been opened, on the thread that called `load`.
    virtual void onFileSelect(const std::string& file) = 0;
    /// Called after each completed pass with the number of previous passes since `load`, from 0. Main queue.
    virtual void onLoop(std::int64_t count) = 0;
};

} // namespace tonewright
