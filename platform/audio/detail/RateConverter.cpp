// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/RateConverter.hpp"

#include <algorithm>
#include <cmath>
#include <zita-resampler/resampler.h>
#include <zita-resampler/vresampler.h>

namespace platform {
namespace {

// Half the length of the filter. The response is flat up to 0.946 of the lower Nyquist frequency.
constexpr unsigned FilterHalfLength = 48;

} // namespace

// Wraps zita-resampler's two converters: Resampler, for ratios of small integers, and VResampler, for all
// others.
class RateConverter::Library {
  public:
    Library(double inputRate, double outputRate, unsigned channels) {
        const auto in = static_cast<unsigned>(std::lround(inputRate));
        const auto out = static_cast<unsigned>(std::lround(outputRate));
        _isExact = _exact.setup(in, out, channels, FilterHalfLength) == 0;
        if (!_isExact) _any.setup(outputRate / inputRate, channels, FilterHalfLength);
        reset();
    }

    template <class Use>
    decltype(auto) with(Use&& use) noexcept {
        return _isExact ? use(_exact) : use(_any);
    }

    // Feeds silence first, so that the first output frame is aligned with the first input frame.
    void reset() noexcept {
        with([](auto& converter) {
            converter.reset();
            converter.inp_data = nullptr;
            converter.out_data = nullptr;
            converter.inp_count = static_cast<unsigned>(converter.inpsize()) / 2 - 1;
            converter.out_count = 1;
            converter.process();
            converter.inp_count = 0;
            converter.out_count = 0;
        });
    }

  private:
    Resampler _exact;
    VResampler _any;
    bool _isExact = true;
};

RateConverter::RateConverter(double inputRate, double outputRate, std::uint32_t channels)
    : _library(std::make_unique<Library>(inputRate, outputRate, channels))
    , _channels(channels)
    , _inputPerOutput(inputRate / outputRate)
    , _input(static_cast<std::size_t>(channels) * ChunkFrames)
    , _output(static_cast<std::size_t>(channels) * ChunkFrames)
    , _chunk(channels, ChunkFrames) {}

RateConverter::~RateConverter() = default;

std::uint32_t RateConverter::inputWanted(std::uint32_t outputFrames) const noexcept {
    // Rounded down, so that at most one frame stays in the buffer. The caller asks again if that was too
    // little.
    const double wanted = static_cast<double>(outputFrames) * _inputPerOutput;
    const bool holds = _library->with([](const auto& converter) { return converter.inp_count > 0; });
    if (holds) return 0;
    return static_cast<std::uint32_t>(std::clamp(wanted, 1.0, static_cast<double>(ChunkFrames)));
}

void RateConverter::feed(std::uint32_t frames) noexcept {
    for (std::uint32_t c = 0; c < _channels; ++c) {
        const float* plane = _chunk.view()[c];
        for (std::uint32_t i = 0; i < frames; ++i) {
            _input[static_cast<std::size_t>(i) * _channels + c] = plane[i];
        }
    }
    _library->with([&](auto& converter) {
        converter.inp_data = _input.data();
        converter.inp_count = frames;
    });
}

std::uint32_t RateConverter::drain(PlanarSound outputs) noexcept {
    const std::uint32_t wanted = std::min(outputs.frames(), ChunkFrames);
    const std::uint32_t made = _library->with([&](auto& converter) {
        converter.out_data = _output.data();
        converter.out_count = wanted;
        converter.process();
        return wanted - converter.out_count;
    });
    for (std::uint32_t c = 0; c < _channels; ++c) {
        float* plane = outputs[c];
        for (std::uint32_t i = 0; i < made; ++i) {
            plane[i] = _output[static_cast<std::size_t>(i) * _channels + c];
        }
    }
    return made;
}

std::uint32_t RateConverter::push(ConstPlanarSound inputs, PlanarSound outputs) noexcept {
    const PlanarSound chunk = _chunk.view();
    for (std::uint32_t c = 0; c < _channels; ++c) std::copy_n(inputs[c], inputs.frames(), chunk[c]);
    feed(inputs.frames());
    std::uint32_t done = 0;
    while (done < outputs.frames()) {
        const std::uint32_t made = drain(outputs.after(done));
        if (made == 0) break;
        done += made;
    }
    return done;
}

std::uint32_t RateConverter::outputBound(std::uint32_t inputFrames) const noexcept {
    return static_cast<std::uint32_t>(std::ceil(static_cast<double>(inputFrames) / _inputPerOutput)) + 2;
}

std::uint32_t RateConverter::tailFrames() const noexcept {
    return _library->with(
        [](const auto& converter) { return static_cast<std::uint32_t>(converter.inpsize()) / 2; });
}

void RateConverter::reset() noexcept {
    _library->reset();
}

} // namespace platform
