// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the audio side runs for each block: an ordered list of steps over buffers allocated beforehand. Built
// on the control side, immutable once published; what it refers to lives as long as it does.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

class LinkConverter;
class NodeProcessor;
class PlayerStream;

/// Planes of RenderPlan::MaximumFrames frames.
struct PlaneSet {
    std::vector<float*> planes;

    [[nodiscard]] std::uint32_t channels() const noexcept {
        return static_cast<std::uint32_t>(planes.size());
    }
};

/// Raised by the audio side when a processor gave something that is no number; looked at by the control side.
struct BadSamples {
    std::atomic<bool> seen{false};
};

class RenderPlan {
  public:
    static constexpr std::uint32_t MaximumFrames = 1024;

    explicit RenderPlan(AVAudioFormat format);
    RenderPlan(const RenderPlan&) = delete;
    RenderPlan& operator=(const RenderPlan&) = delete;

    // Building, in the order of rendering. Each gives the buffer that the step writes; a buffer given in is
    // not written again by later steps.
    [[nodiscard]] PlaneSet silence(std::uint32_t channels);
    [[nodiscard]] PlaneSet play(std::shared_ptr<PlayerStream> stream, std::uint32_t channels,
                                std::uint32_t linkChannels);
    [[nodiscard]] PlaneSet map(const PlaneSet& input, std::uint32_t channels);
    [[nodiscard]] PlaneSet convert(std::shared_ptr<LinkConverter> converter, const PlaneSet& input);
    [[nodiscard]] PlaneSet mix(const std::vector<PlaneSet>& inputs, std::uint32_t channels);
    [[nodiscard]] PlaneSet process(std::shared_ptr<NodeProcessor> processor, const PlaneSet& input,
                                   std::shared_ptr<BadSamples> badSamples);
    /// Says what is heard; of the format's number of channels.
    void setOutput(PlaneSet output) { _output = std::move(output); }

    [[nodiscard]] const AVAudioFormat& format() const noexcept { return _format; }
    [[nodiscard]] const std::vector<std::shared_ptr<PlayerStream>>& players() const noexcept {
        return _players;
    }

    /// Renders `frames` frames, at most MaximumFrames, behind `offset` in `planes`. Tell whether the control
    /// side has something to look at. Audio thread.
    bool render(float* const* planes, std::uint32_t offset, std::uint32_t frames,
                std::int64_t sampleTime) noexcept;

  private:
    struct Step {
        enum class Kind { Play, Map, Convert, Mix, Process } kind = Kind::Mix;
        PlayerStream* stream = nullptr;
        LinkConverter* converter = nullptr;
        NodeProcessor* processor = nullptr;
        BadSamples* badSamples = nullptr;
        std::uint32_t linkChannels = 0;
        PlaneSet input{}; // of a mix: the inputs one behind the other
        PlaneSet output{};
    };

    [[nodiscard]] PlaneSet newPlanes(std::uint32_t channels);
    static bool run(const Step& step, std::uint32_t frames, std::int64_t sampleTime) noexcept;

    const AVAudioFormat _format;
    std::vector<Step> _steps;
    PlaneSet _output;
    std::vector<std::unique_ptr<float[]>> _buffers;
    std::vector<std::shared_ptr<PlayerStream>> _players;
    std::vector<std::shared_ptr<void>> _kept;
};

} // namespace platform
