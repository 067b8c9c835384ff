// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Passes sound at the output's rate through a link of another rate. The number of frames stays the same; the
// sound is delayed by the length of the filters. Its state continues from one render plan to the next, for as
// long as the link exists.
//
// Created on the control side; `process` runs on the audio thread, and neither allocates nor waits.
#pragma once

#include "platform/audio/detail/RatePath.hpp"
#include "platform/realtime/FrameRing.hpp"

#include <cstdint>

namespace platform {

class LinkConverter {
  public:
    static constexpr std::uint32_t MaximumFrames = 1024;

    LinkConverter(double outputRate, double linkRate, std::uint32_t channels);

    /// Returns whether it was created for these.
    [[nodiscard]] bool fits(double outputRate, double linkRate, std::uint32_t channels) const noexcept {
        return _path.rates() == RatePath::ratesOf(outputRate, linkRate, outputRate) &&
               _waiting.channels() == channels;
    }
    /// Processes `inputs` into `outputs`, with the same number of frames (at most MaximumFrames). Audio
    /// thread.
    void process(ConstPlanarSound inputs, PlanarSound outputs) noexcept;

  private:
    RatePath _path;
    FrameRing _waiting; // frames that the filters have not used yet; one thread writes and reads it
};

} // namespace platform
