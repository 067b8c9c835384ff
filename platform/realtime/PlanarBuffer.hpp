// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Memory for planar sound. Created and resized on the control side; the declaration of each buffer states
// which thread uses its samples.
#pragma once

#include "platform/realtime/PlanarView.hpp"

#include <cstddef>
#include <vector>

namespace platform {

class PlanarBuffer {
  public:
    PlanarBuffer() = default;
    PlanarBuffer(std::uint32_t channels, std::uint32_t frames) { resize(channels, frames); }
    PlanarBuffer(const PlanarBuffer&) = delete; // _planes points into _samples
    PlanarBuffer& operator=(const PlanarBuffer&) = delete;

    /// Changes the size and fills the buffer with silence.
    void resize(std::uint32_t channels, std::uint32_t frames) {
        _frames = frames;
        _samples.assign(static_cast<std::size_t>(channels) * frames, 0.0F);
        _planes.resize(channels);
        for (std::uint32_t c = 0; c < channels; ++c) {
            _planes[c] = _samples.data() + static_cast<std::size_t>(c) * frames;
        }
    }
    [[nodiscard]] std::uint32_t channels() const noexcept {
        return static_cast<std::uint32_t>(_planes.size());
    }
    [[nodiscard]] std::uint32_t frames() const noexcept { return _frames; }
    [[nodiscard]] PlanarSound view() noexcept { return {_planes.data(), channels(), _frames}; }
    [[nodiscard]] ConstPlanarSound view() const noexcept { return {_planes.data(), channels(), _frames}; }

  private:
    std::vector<float> _samples;
    std::vector<float*> _planes;
    std::uint32_t _frames = 0;
};

} // namespace platform
