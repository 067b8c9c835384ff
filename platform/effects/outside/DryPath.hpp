// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The sound that replaces the output of an effect that renders nothing: the effect's input, delayed by the
// effect's latency. A short fade leads back to the effect's output. Audio side.
#pragma once

#include "platform/realtime/PlanarView.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace platform::lv2 {

class DryPath {
  public:
    /// The longest delay, in frames. A longer latency is compensated only up to this length.
    static constexpr std::uint32_t LongestDelay = 65536;

    /// Prepares for these channel counts and a fade of `fadeFrames` frames. Control side.
    DryPath(std::uint32_t inputs, std::uint32_t outputs, std::uint32_t fadeFrames)
        : _inputs(inputs)
        , _outputs(outputs)
        , _fadeFrames(fadeFrames)
        , _history(std::size_t{inputs} * LongestDelay, 0.0F) {}

    /// Stores the input of a block of at most LongestDelay frames. Must be called for every block, before
    /// `replace` or `lead`.
    void take(ConstPlanarSound inputs) noexcept {
        const auto at = static_cast<std::uint32_t>(_written % LongestDelay);
        const std::uint32_t first = std::min(inputs.frames(), LongestDelay - at);
        for (std::uint32_t c = 0; c < _inputs; ++c) {
            std::copy_n(inputs[c], first, plane(c) + at);
            std::copy_n(inputs[c] + first, inputs.frames() - first, plane(c));
        }
        _written += inputs.frames();
    }
    /// Copies the input that preceded the block stored last. `sound` must have as many frames as that block.
    void copyPrevious(PlanarSound sound) noexcept {
        const std::uint32_t frames = sound.frames();
        for (std::uint32_t c = 0; c < sound.channels(); ++c) {
            for (std::uint32_t i = 0; i < frames; ++i) sound[c][i] = dry(c, i, frames, frames);
        }
    }
    /// Fills the output of the block with the input, delayed by `latency` frames.
    void replace(PlanarSound outputs, std::uint32_t latency) noexcept {
        for (std::uint32_t c = 0; c < _outputs; ++c) {
            for (std::uint32_t i = 0; i < outputs.frames(); ++i) {
                outputs[c][i] = dry(c, i, outputs.frames(), latency);
            }
        }
        _faded = 0;
    }
    /// Cross-fades from the delayed input to the effect's output, which is in `outputs`, if the previous
    /// block was replaced or a fade is not complete.
    void lead(PlanarSound outputs, std::uint32_t latency) noexcept {
        if (_faded >= _fadeFrames) return;
        for (std::uint32_t i = 0; i < outputs.frames() && _faded < _fadeFrames; ++i, ++_faded) {
            const float wet = static_cast<float>(_faded + 1) / static_cast<float>(_fadeFrames + 1);
            for (std::uint32_t c = 0; c < _outputs; ++c) {
                outputs[c][i] = wet * outputs[c][i] + (1 - wet) * dry(c, i, outputs.frames(), latency);
            }
        }
    }

  private:
    [[nodiscard]] float* plane(std::uint32_t channel) noexcept {
        return _history.data() + std::size_t{channel} * LongestDelay;
    }
    // Returns the delayed input for one frame of the block stored last. Outputs beyond the number of inputs
    // get the last input. The input before the start is silence.
    [[nodiscard]] float dry(std::uint32_t channel, std::uint32_t frame, std::uint32_t frames,
                            std::uint32_t latency) noexcept {
        if (_inputs == 0) return 0;
        const std::uint64_t delay = std::min(latency, LongestDelay - frames);
        const std::uint64_t at = _written - frames + frame;
        return at < delay ? 0.0F : plane(std::min(channel, _inputs - 1))[(at - delay) % LongestDelay];
    }

    const std::uint32_t _inputs, _outputs, _fadeFrames;
    std::vector<float> _history; // one ring per input, with its last LongestDelay frames
    std::uint64_t _written = 0;  // total number of frames stored
    std::uint32_t _faded = ~0U;  // frames of the fade so far
};

} // namespace platform::lv2
