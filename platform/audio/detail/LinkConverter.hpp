// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lets sound at the output's rate pass a link of another rate. As many frames come out as go in, later by the
// length of the filters. Its state runs on from one render plan to the next, for as long as the link stays.
//
// Made on the control side; `process` runs on the audio thread, neither allocates nor waits.
#pragma once

#include "platform/audio/detail/RatePath.hpp"
#include "platform/realtime/FrameRing.hpp"

#include <cstdint>

namespace platform {

class LinkConverter {
  public:
    static constexpr std::uint32_t MaximumFrames = 1024;

    LinkConverter(double outputRate, double linkRate, std::uint32_t channels);

    /// Returns whether it was made for these.
    [[nodiscard]] bool fits(double outputRate, double linkRate, std::uint32_t channels) const noexcept {
        return _path.rates() == RatePath::ratesOf(outputRate, linkRate, outputRate) &&
               _waiting.channels() == channels;
    }
    /// Takes `inputs` and fills `outputs`, of as many frames (at most MaximumFrames). Audio thread.
    void process(ConstPlanarSound inputs, PlanarSound outputs) noexcept;

  private:
    RatePath _path;
    FrameRing _waiting; // frames that the filters have not asked for yet; one thread writes and reads it
};

} // namespace platform
