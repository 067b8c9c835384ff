// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts the sample rate of a stream, block by block, by as many frames as are asked for. Made on the
// control side; `process` neither allocates nor waits. Output frame 0 stands at input frame 0.
#pragma once

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

    /// Returns `frames` frames in `outputs`. `pull(planes, count)` must fill `count` frames, at most
    /// ChunkFrames.
    template <class Pull>
    void process(float* const* outputs, std::uint32_t frames, Pull&& pull) noexcept {
        for (std::uint32_t done = 0; done < frames;) {
            if (const std::uint32_t wanted = inputWanted(frames - done); wanted > 0) {
                pull(_planes.data(), wanted);
                feed(wanted);
            }
            done += drain(outputs, done, frames - done);
        }
    }
    /// Pushes `frames` frames of `inputs` (at most ChunkFrames) and returns what comes out of them, at most
    /// `capacity` frames; only for a converter that is never pulled. All of the input is used up if
    /// `capacity` is at least `outputBound(frames)`.
    std::uint32_t push(const float* const* inputs, std::uint32_t frames, float* const* outputs,
                       std::uint32_t capacity) noexcept;
    [[nodiscard]] std::uint32_t outputBound(std::uint32_t inputFrames) const noexcept;
    /// Returns the input frames that still stand between the last input and the output.
    [[nodiscard]] std::uint32_t tailFrames() const noexcept;

    /// Forgets the stream so far.
    void reset() noexcept;

    static constexpr std::uint32_t ChunkFrames = 256;

  private:
    class Library;
    [[nodiscard]] std::uint32_t inputWanted(std::uint32_t outputFrames) const noexcept;
    void feed(std::uint32_t frames) noexcept;
    std::uint32_t drain(float* const* outputs, std::uint32_t offset, std::uint32_t frames) noexcept;

    const std::unique_ptr<Library> _library;
    const std::uint32_t _channels;
    const double _inputPerOutput;
    std::vector<float> _input; // interleaved, as the library wants it
    std::vector<float> _output;
    std::vector<float> _planar;
    std::vector<float*> _planes;
};

} // namespace platform
