// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the audio side runs for each block: an ordered list of steps over preallocated buffers. Built on the
// control side, immutable once published; what it refers to lives as long as it does.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/realtime/PlanarBuffer.hpp"

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
    /// Returns the first `frames` frames.
    [[nodiscard]] PlanarSound view(std::uint32_t frames) const noexcept {
        return {planes.data(), channels(), frames};
    }
};

/// Set by the audio side when a processor's output contained NaN or infinity; checked by the control side.
struct BadSamples {
    std::atomic<bool> seen{false};
};

class RenderPlan {
  public:
    static constexpr std::uint32_t MaximumFrames = 1024;

    explicit RenderPlan(AVAudioFormat format);
    RenderPlan(const RenderPlan&) = delete;
    RenderPlan& operator=(const RenderPlan&) = delete;

    // Building, in the order of rendering. Each returns the buffer that the step writes; a buffer passed in
    // is not written again by later steps.
    [[nodiscard]] PlaneSet silence(std::uint32_t channels);
    [[nodiscard]] PlaneSet play(std::shared_ptr<PlayerStream> stream, std::uint32_t channels,
                                std::uint32_t linkChannels);
    [[nodiscard]] PlaneSet map(const PlaneSet& input, std::uint32_t channels);
    [[nodiscard]] PlaneSet convert(std::shared_ptr<LinkConverter> converter, const PlaneSet& input);
    [[nodiscard]] PlaneSet mix(const std::vector<PlaneSet>& inputs, std::uint32_t channels);
    [[nodiscard]] PlaneSet process(std::shared_ptr<NodeProcessor> processor, const PlaneSet& input,
                                   std::shared_ptr<BadSamples> badSamples);
    /// Sets what is heard; with the format's number of channels.
    void setOutput(PlaneSet output) { _output = std::move(output); }

    [[nodiscard]] const AVAudioFormat& format() const noexcept { return _format; }
    [[nodiscard]] const std::vector<std::shared_ptr<PlayerStream>>& players() const noexcept {
        return _players;
    }

    /// Fills `sound`, of at most MaximumFrames frames, and returns whether the control side has something to
    /// handle. Audio thread.
    bool render(PlanarSound sound, std::int64_t sampleTime) noexcept;
    /// Stops the audio side from calling further processors of this plan and returns the one that it is in,
    /// if any; that one may be used elsewhere only when this plan is no longer in use. Control side.
    [[nodiscard]] std::shared_ptr<NodeProcessor> retire();

  private:
    struct Step {
        enum class Kind { Play, Map, Convert, Mix, Process } kind = Kind::Mix;
        PlayerStream* stream = nullptr;
        LinkConverter* converter = nullptr;
        NodeProcessor* processor = nullptr;
        BadSamples* badSamples = nullptr;
        std::uint32_t linkChannels = 0;
        PlaneSet input{}; // of a mix: the inputs one after the other
        PlaneSet output{};
    };

    [[nodiscard]] PlaneSet newPlanes(std::uint32_t channels);
    bool run(const Step& step, std::uint32_t frames, std::int64_t sampleTime) noexcept;
    bool runProcessor(const Step& step, PlanarSound in, PlanarSound out, std::int64_t sampleTime) noexcept;

    const AVAudioFormat _format;
    std::vector<Step> _steps;
    PlaneSet _output;
    std::vector<std::unique_ptr<PlanarBuffer>> _buffers;
    std::vector<std::shared_ptr<PlayerStream>> _players;
    std::vector<std::shared_ptr<NodeProcessor>> _processors;
    std::vector<std::shared_ptr<void>> _kept;

    // Crosses threads. The audio side writes `_inside` and then reads `_isRetired`, the control side does it
    // the other way round; one of them sees the other's write.
    std::atomic<const NodeProcessor*> _inside{nullptr};
    std::atomic<bool> _isRetired{false};
};

} // namespace platform
