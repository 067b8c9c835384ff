// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view of planar sound that somebody else owns: one plane of samples for each channel. Any thread.
#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

template <class Sample>
class PlanarView {
  public:
    PlanarView() = default;
    /// Views `frames` frames from `offset` on in each of `channels` planes.
    PlanarView(Sample* const* planes, std::uint32_t channels, std::uint32_t frames,
               std::uint32_t offset = 0) noexcept
        : _planes(planes)
        , _channels(channels)
        , _frames(frames)
        , _offset(offset) {}

    /// Returns the samples of one channel.
    [[nodiscard]] Sample* operator[](std::uint32_t channel) const noexcept {
        return _planes[channel] + _offset;
    }
    [[nodiscard]] std::uint32_t channels() const noexcept { return _channels; }
    [[nodiscard]] std::uint32_t frames() const noexcept { return _frames; }

    /// Returns the first `frames` frames.
    [[nodiscard]] PlanarView first(std::uint32_t frames) const noexcept {
        return {_planes, _channels, frames, _offset};
    }
    /// Returns the frames after the first `frames`.
    [[nodiscard]] PlanarView after(std::uint32_t frames) const noexcept {
        return {_planes, _channels, _frames - frames, _offset + frames};
    }
    /// Returns the first `channels` channels.
    [[nodiscard]] PlanarView narrowedTo(std::uint32_t channels) const noexcept {
        return {_planes, channels, _frames, _offset};
    }

    /// Returns the same sound as read-only.
    operator PlanarView<const Sample>() const noexcept { // NOLINT: converts as a pointer does
        return {_planes, _channels, _frames, _offset};
    }

  private:
    Sample* const* _planes = nullptr;
    std::uint32_t _channels = 0;
    std::uint32_t _frames = 0;
    std::uint32_t _offset = 0;
};

/// Sound to write into, and sound to read.
using PlanarSound = PlanarView<float>;
using ConstPlanarSound = PlanarView<const float>;

inline void fillWithSilence(PlanarSound sound) noexcept {
    for (std::uint32_t c = 0; c < sound.channels(); ++c) std::fill_n(sound[c], sound.frames(), 0.0F);
}

} // namespace platform
