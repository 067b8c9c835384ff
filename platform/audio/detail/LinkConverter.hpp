// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts sound from the output device's sample rate to a link's rate and back. The number of frames does
// not change; the sound is delayed by the length of the filters. Successive render plans share a link's
// converter, so its state is kept for as long as the link exists.
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

    /// Returns whether the converter was created with these values.
    [[nodiscard]] bool fits(double outputRate, double linkRate, std::uint32_t channels) const noexcept {
        return _path.rates() == RatePath::ratesOf(outputRate, linkRate, outputRate) &&
               _waiting.channels() == channels;
    }
    /// Processes `inputs` into `outputs`; both have the same number of frames, at most MaximumFrames. Audio
    /// thread.
    void process(ConstPlanarSound inputs, PlanarSound outputs) noexcept;

  private:
    RatePath _path;
    FrameRing _waiting; // frames not filtered yet; written and read on one thread
};

} // namespace platform
