// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/RenderPlan.hpp"

#include "platform/audio/NodeProcessor.hpp"
#include "platform/audio/detail/LinkConverter.hpp"
#include "platform/audio/detail/PlayerStream.hpp"
#include "platform/audio/detail/mapChannels.hpp"
#include "platform/audio/detail/samplePlanes.hpp"

#include <algorithm>

namespace platform {

static_assert(PlayerStream::MaximumFrames >= RenderPlan::MaximumFrames);
static_assert(LinkConverter::MaximumFrames >= RenderPlan::MaximumFrames);

RenderPlan::RenderPlan(AVAudioFormat format)
    : _format(format) {}

PlaneSet RenderPlan::newPlanes(std::uint32_t channels) {
    PlaneSet set;
    if (channels == 0) return set;
    _buffers.push_back(std::make_unique<float[]>(static_cast<std::size_t>(channels) * MaximumFrames));
    for (std::uint32_t c = 0; c < channels; ++c) {
        set.planes.push_back(_buffers.back().get() + static_cast<std::size_t>(c) * MaximumFrames);
    }
    return set;
}

PlaneSet RenderPlan::silence(std::uint32_t channels) {
    return newPlanes(channels); // zeros, which nothing overwrites
}

PlaneSet RenderPlan::play(std::shared_ptr<PlayerStream> stream, std::uint32_t channels,
                          std::uint32_t linkChannels) {
    PlaneSet output = newPlanes(channels);
    _steps.push_back(
        {.kind = Step::Kind::Play, .stream = stream.get(), .linkChannels = linkChannels, .output = output});
    _players.push_back(std::move(stream));
    return output;
}

PlaneSet RenderPlan::map(const PlaneSet& input, std::uint32_t channels) {
    if (input.channels() == channels) return input;
    if (input.channels() == 0) return silence(channels);
    PlaneSet output = newPlanes(channels);
    _steps.push_back({.kind = Step::Kind::Map, .input = input, .output = output});
    return output;
}

PlaneSet RenderPlan::convert(std::shared_ptr<LinkConverter> converter, const PlaneSet& input) {
    PlaneSet output = newPlanes(input.channels());
    _steps.push_back(
        {.kind = Step::Kind::Convert, .converter = converter.get(), .input = input, .output = output});
    _kept.push_back(std::move(converter));
    return output;
}

PlaneSet RenderPlan::mix(const std::vector<PlaneSet>& inputs, std::uint32_t channels) {
    if (inputs.empty()) return silence(channels);
    if (inputs.size() == 1) return map(inputs.front(), channels);
    PlaneSet all;
    for (const PlaneSet& input : inputs) {
        const PlaneSet mapped = map(input, channels);
        all.planes.insert(all.planes.end(), mapped.planes.begin(), mapped.planes.end());
    }
    PlaneSet output = newPlanes(channels);
    _steps.push_back({.kind = Step::Kind::Mix, .input = std::move(all), .output = output});
    return output;
}

PlaneSet RenderPlan::process(std::shared_ptr<NodeProcessor> processor, const PlaneSet& input,
                             std::shared_ptr<BadSamples> badSamples) {
    PlaneSet output = newPlanes(processor->outputChannels());
    _steps.push_back({.kind = Step::Kind::Process,
                      .processor = processor.get(),
                      .badSamples = badSamples.get(),
                      .input = map(input, processor->inputChannels()),
                      .output = output});
    _kept.push_back(std::move(processor));
    _kept.push_back(std::move(badSamples));
    return output;
}

bool RenderPlan::run(const Step& step, std::uint32_t frames, std::int64_t sampleTime) noexcept {
    float* const* out = step.output.planes.data();
    const std::uint32_t channels = step.output.channels();
    switch (step.kind) {
    case Step::Kind::Play:
        step.stream->render(out, channels, step.linkChannels, frames);
        return false;
    case Step::Kind::Map:
        mapChannels(step.input.planes.data(), step.input.channels(), out, channels, frames);
        return false;
    case Step::Kind::Convert:
        step.converter->process(step.input.planes.data(), out, frames);
        return false;
    case Step::Kind::Mix:
        for (std::uint32_t c = 0; c < channels; ++c) {
            std::copy_n(step.input.planes[c], frames, out[c]);
            for (std::uint32_t i = c + channels; i < step.input.channels(); i += channels) {
                const float* in = step.input.planes[i];
                for (std::uint32_t f = 0; f < frames; ++f) out[c][f] += in[f];
            }
        }
        return false;
    case Step::Kind::Process:
        step.processor->process(step.input.planes.data(), out, frames, sampleTime);
        bool isNews = false;
        for (std::uint32_t c = 0; c < channels; ++c) {
            if (allFinite(out[c], frames)) continue;
            for (std::uint32_t all = 0; all < channels; ++all) std::fill_n(out[all], frames, 0.0F);
            isNews = !step.badSamples->seen.exchange(true);
            break;
        }
        return isNews;
    }
    return false;
}

bool RenderPlan::render(float* const* planes, std::uint32_t offset, std::uint32_t frames,
                        std::int64_t sampleTime) noexcept {
    bool isNews = false;
    for (const Step& step : _steps) isNews |= run(step, frames, sampleTime);
    for (std::uint32_t c = 0; c < _output.channels(); ++c) {
        std::copy_n(_output.planes[c], frames, planes[c] + offset);
    }
    return isNews;
}

} // namespace platform
