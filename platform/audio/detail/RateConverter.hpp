// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts the sample rate of a stream, block by block. Created on the control side; `process` neither
// allocates nor waits. Output frame 0 corresponds to input frame 0.
#pragma once

#include "platform/realtime/PlanarBuffer.hpp"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

class RateConverter {
  public:
    RateConverter(double inputRate, double outputRate, std::uint32_t channels);
    ~RateConverter();
    RateConverter(const RateConverter&) = delete;
    RateConverter& operator=(const RateConverter&) = delete;

    /// Fills `outputs`. Calls `pull(sound)` for more input; `pull` must fill `sound`, which has at most
    /// ChunkFrames frames.
    template <class Pull>
    void process(PlanarSound outputs, Pull&& pull) noexcept {
        while (outputs.frames() > 0) {
            if (const std::uint32_t wanted = inputWanted(outputs.frames()); wanted > 0) {
                pull(_chunk.view().first(wanted));
                feed(wanted);
            }
            outputs = outputs.after(drain(outputs));
        }
    }
    /// Converts `inputs` (at most ChunkFrames frames) to `outputs` and returns the number of output frames.
    /// `outputs` must have at least `outputBound(inputs.frames())` frames. A converter must be used either
    /// with `push` or with `process`, not with both.
    std::uint32_t push(ConstPlanarSound inputs, PlanarSound outputs) noexcept;
    [[nodiscard]] std::uint32_t outputBound(std::uint32_t inputFrames) const noexcept;
    /// Returns how many input frames the output lags behind the input; as many frames of silence flush the
    /// end of a stream.
    [[nodiscard]] std::uint32_t tailFrames() const noexcept;

    /// Prepares for a new stream.
    void reset() noexcept;

    static constexpr std::uint32_t ChunkFrames = 256;

  private:
    class Library;
    [[nodiscard]] std::uint32_t inputWanted(std::uint32_t outputFrames) const noexcept;
    void feed(std::uint32_t frames) noexcept;
    std::uint32_t drain(PlanarSound outputs) noexcept;

    const std::unique_ptr<Library> _library;
    const std::uint32_t _channels;
    const double _inputPerOutput;
    std::vector<float> _input; // interleaved, as the library requires
    std::vector<float> _output;
    PlanarBuffer _chunk;
};

} // namespace platform
