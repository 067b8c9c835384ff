// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts a stream from one sample rate to a second and then to a third, block by block. Created on the
// control side; `process` neither allocates nor waits. Output frame 0 corresponds to input frame 0.
#pragma once

#include "platform/audio/detail/RateConverter.hpp"

#include <cstdint>
#include <memory>

namespace platform {

class RatePath {
  public:
    /// The three sample rates, in frames per second. `over` equals `from` if the second rate equals one of
    /// the other two.
    struct Rates {
        double from = 0;
        double over = 0;
        double to = 0;
        friend bool operator==(const Rates&, const Rates&) = default;
    };
    /// Returns the rates of a path from `from` through `over` to `to`.
    [[nodiscard]] static Rates ratesOf(double from, double over, double to) noexcept {
        return {from, over == to ? from : over, to};
    }

    RatePath(const Rates& rates, std::uint32_t channels);

    [[nodiscard]] const Rates& rates() const noexcept { return _rates; }
    /// Fills `outputs`. Calls `pull(sound)` for more input; `pull` must fill `sound`, which has as many
    /// frames as `outputs` if all rates are equal, and otherwise at most RateConverter::ChunkFrames. Audio
    /// thread.
    template <class Pull>
    void process(PlanarSound outputs, Pull&& pull) noexcept {
        const auto pullFirst = [&](PlanarSound sound) {
            if (_first) {
                _first->process(sound, pull);
            } else {
                pull(sound);
            }
        };
        if (_last) {
            _last->process(outputs, pullFirst);
        } else {
            pullFirst(outputs);
        }
    }
    /// Returns a number of input frames that is sufficient for `outputFrames` frames of output.
    [[nodiscard]] std::uint32_t inputFor(std::uint32_t outputFrames) const noexcept;

  private:
    const Rates _rates;
    std::unique_ptr<RateConverter> _first; // null if no conversion is needed; likewise _last
    std::unique_ptr<RateConverter> _last;
};

} // namespace platform
