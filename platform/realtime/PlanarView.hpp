// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A non-owning view of planar sound: one plane of samples for each channel. Any thread.
//
// Views are passed by value through every step of rendering. A view is packed into two words, so that calls
// pass it in registers. With three words it is passed through memory, and the stalls when it is read back
// immediately take a tenth of the time of a 64-frame block.
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace platform {

template <class Sample>
class PlanarView {
    static constexpr unsigned FrameBits = 24;

  public:
    static constexpr std::uint32_t MaximumChannels = (1U << 16U) - 1;
    static constexpr std::uint32_t MaximumFrames = (1U << FrameBits) - 1;

    PlanarView() = default;
    /// Creates a view of `frames` frames of `channels` planes, from frame `offset` on. At most
    /// MaximumChannels channels; `offset + frames` at most MaximumFrames.
    PlanarView(Sample* const* planes, std::uint32_t channels, std::uint32_t frames,
               std::uint32_t offset = 0) noexcept
        : _planes(planes)
        , _channels(channels & MaximumChannels)
        , _frames(frames & MaximumFrames)
        , _offset(offset & MaximumFrames) {}

    /// Returns the samples of one channel.
    [[nodiscard]] Sample* operator[](std::uint32_t channel) const noexcept {
        return _planes[channel] + _offset;
    }
    [[nodiscard]] std::uint32_t channels() const noexcept { return static_cast<std::uint32_t>(_channels); }
    [[nodiscard]] std::uint32_t frames() const noexcept { return static_cast<std::uint32_t>(_frames); }

    /// Returns the first `frames` frames.
    [[nodiscard]] PlanarView first(std::uint32_t frames) const noexcept {
        return {_planes, channels(), frames, offset()};
    }
    /// Returns the frames after the first `frames`.
    [[nodiscard]] PlanarView after(std::uint32_t frames) const noexcept {
        return {_planes, channels(), this->frames() - frames, offset() + frames};
    }
    /// Returns the first `channels` channels.
    [[nodiscard]] PlanarView narrowedTo(std::uint32_t channels) const noexcept {
        return {_planes, channels, frames(), offset()};
    }

    /// Returns a read-only view of this sound.
    operator PlanarView<const Sample>() const noexcept { // NOLINT: converts as a pointer does
        return {_planes, channels(), frames(), offset()};
    }

  private:
    [[nodiscard]] std::uint32_t offset() const noexcept { return static_cast<std::uint32_t>(_offset); }

    Sample* const* _planes = nullptr;
    std::uint64_t _channels : 16 = 0;
    std::uint64_t _frames : FrameBits = 0;
    std::uint64_t _offset : FrameBits = 0;
};

/// Sound that can be written, and sound that can only be read.
using PlanarSound = PlanarView<float>;
using ConstPlanarSound = PlanarView<const float>;
static_assert(sizeof(PlanarSound) == 16 && std::is_trivially_copyable_v<PlanarSound>);

inline void fillWithSilence(PlanarSound sound) noexcept {
    for (std::uint32_t c = 0; c < sound.channels(); ++c) std::fill_n(sound[c], sound.frames(), 0.0F);
}

} // namespace platform
