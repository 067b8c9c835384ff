// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Two channels of equal length, and operations that treat a loop as a circle: positions beyond the end wrap
// to the start.
#pragma once

#include <cstddef>
#include <vector>

namespace tonewright::loops {

struct StereoBuffer {
    std::vector<double> left;
    std::vector<double> right;

    StereoBuffer() = default;
    explicit StereoBuffer(std::size_t frames)
        : left(frames)
        , right(frames) {}

    [[nodiscard]] std::size_t frames() const noexcept { return left.size(); }
};

/// Adds `sound` to `loop` from frame `start` on; frames beyond the loop's end continue at its beginning.
inline void addAround(StereoBuffer& loop, const StereoBuffer& sound, std::size_t start, double leftGain,
                      double rightGain) {
    const std::size_t length = loop.frames();
    std::size_t at = start % length;
    for (std::size_t frame = 0; frame < sound.frames(); ++frame) {
        loop.left[at] += sound.left[frame] * leftGain;
        loop.right[at] += sound.right[frame] * rightGain;
        if (++at == length) {
            at = 0;
        }
    }
}

/// One frame of both channels.
struct StereoFrame {
    double left = 0.0;
    double right = 0.0;
};

/// Runs a processor with state around a loop. `step(frame, position)` first processes the last `warmFrames`
/// frames of the loop (more than a whole loop if necessary), and its results are discarded; its state at the
/// end then equals its state at the start.
template <typename Step>
void runAround(StereoBuffer& loop, std::size_t warmFrames, Step step) {
    const std::size_t length = loop.frames();
    std::size_t at = (length - warmFrames % length) % length;
    for (std::size_t frame = 0; frame < warmFrames; ++frame) {
        step(StereoFrame{loop.left[at], loop.right[at]}, at);
        at = at + 1 == length ? 0 : at + 1;
    }
    for (std::size_t frame = 0; frame < length; ++frame) {
        const StereoFrame result = step(StereoFrame{loop.left[frame], loop.right[frame]}, frame);
        loop.left[frame] = result.left;
        loop.right[frame] = result.right;
    }
}

} // namespace tonewright::loops
