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

static_assert(PlayerVoice::MaximumFrames >= RenderPlan::MaximumOfflineFrames);

namespace {

// Of sound. A little less than the players' rings hold, because converters of rates look ahead.
constexpr double LongestOfflineSeconds = 0.19;

} // namespace

std::uint32_t RenderPlan::maximumFrames(double sampleRate, bool isOffline) noexcept {
    if (!isOffline) return MaximumFrames;
    return static_cast<std::uint32_t>(
        std::clamp(LongestOfflineSeconds * sampleRate, double{MaximumFrames}, double{MaximumOfflineFrames}));
}

RenderPlan::RenderPlan(AVAudioFormat format, bool isOffline)
    : _format(format)
    , _maximumFrames(maximumFrames(format.sampleRate, isOffline)) {}

PlaneSet RenderPlan::newPlanes(std::uint32_t channels) {
    PlaneSet set;
    if (channels == 0) return set;
    _buffers.push_back(std::make_unique<PlanarBuffer>(channels, _maximumFrames));
    for (std::uint32_t c = 0; c < channels; ++c) set.planes.push_back(_buffers.back()->view()[c]);
    return set;
}

PlaneSet RenderPlan::silence(std::uint32_t channels) {
    return newPlanes(channels); // zeros, which no step overwrites
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
    _processors.push_back(std::move(processor));
    _kept.push_back(std::move(badSamples));
    return output;
}

bool RenderPlan::run(const Step& step, std::uint32_t frames, std::int64_t sampleTime) noexcept {
    const PlanarSound in = step.input.view(frames);
    const PlanarSound out = step.output.view(frames);
    switch (step.kind) {
    case Step::Kind::Play:
        step.stream->render(out, step.linkChannels);
        return false;
    case Step::Kind::Map:
        mapChannels(in, out);
        return false;
    case Step::Kind::Convert:
        for (std::uint32_t done = 0; done < frames;) {
            const std::uint32_t piece = std::min(frames - done, LinkConverter::MaximumFrames);
            step.converter->process(in.after(done).first(piece), out.after(done).first(piece));
            done += piece;
        }
        return false;
    case Step::Kind::Mix:
        for (std::uint32_t c = 0; c < out.channels(); ++c) {
            float* const sum = out[c];
            std::copy_n(in[c], frames, sum);
            for (std::uint32_t i = c + out.channels(); i < in.channels(); i += out.channels()) {
                const float* const added = in[i];
                for (std::uint32_t f = 0; f < frames; ++f) sum[f] += added[f];
            }
        }
        return false;
    case Step::Kind::Process:
        return runProcessor(step, in, out, sampleTime);
    }
    return false;
}

bool RenderPlan::runProcessor(const Step& step, PlanarSound in, PlanarSound out,
                              std::int64_t sampleTime) noexcept {
    _inside.store(step.processor);
    if (_isRetired.load()) {
        fillWithSilence(out);
    } else {
        step.processor->process(in, out, sampleTime);
    }
    _inside.store(nullptr, std::memory_order_release);
    for (std::uint32_t c = 0; c < out.channels(); ++c) {
        if (allFinite(out[c], out.frames())) continue;
        fillWithSilence(out);
        return !step.badSamples->seen.exchange(true);
    }
    return false;
}

std::shared_ptr<NodeProcessor> RenderPlan::retire() {
    _isRetired.store(true);
    const NodeProcessor* inside = _inside.load();
    const auto found = std::ranges::find_if(
        _processors, [inside](const auto& processor) { return processor.get() == inside; });
    return found == _processors.end() ? nullptr : *found;
}

const NodeProcessor* RenderPlan::failed() const noexcept {
    const auto found =
        std::ranges::find_if(_processors, [](const auto& processor) { return processor->hasFailed(); });
    return found == _processors.end() ? nullptr : found->get();
}

bool RenderPlan::render(PlanarSound sound, std::int64_t sampleTime) noexcept {
    const std::uint32_t frames = sound.frames();
    bool isNews = false;
    for (const Step& step : _steps) isNews |= run(step, frames, sampleTime);
    for (std::uint32_t c = 0; c < _output.channels(); ++c) {
        std::copy_n(_output.planes[c], frames, sound[c]);
    }
    return isNews;
}

} // namespace platform
