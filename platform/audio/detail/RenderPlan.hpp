// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The steps that the audio thread runs for each block, in order, with preallocated buffers. Built on the
// control side, immutable once published. A plan holds strong references to everything that its steps use.
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

/// A set of planes with as many frames as the longest block of its plan.
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

/// Set by the audio thread when a processor's output contained NaN or infinity; read by the control side.
struct BadSamples {
    std::atomic<bool> seen{false};
};

class RenderPlan {
  public:
    /// The longest block in real time.
    static constexpr std::uint32_t MaximumFrames = 1024;
    /// The longest block offline, where long blocks save time. The players' rings hold as much.
    static constexpr std::uint32_t MaximumOfflineFrames = 8192;
    [[nodiscard]] static std::uint32_t maximumFrames(double sampleRate, bool isOffline) noexcept;

    RenderPlan(AVAudioFormat format, bool isOffline);
    RenderPlan(const RenderPlan&) = delete;
    RenderPlan& operator=(const RenderPlan&) = delete;

    // These functions add a step each, in the order of rendering, and return the buffer that the step writes.
    // Later steps do not overwrite that buffer. A function that has nothing to do adds no step.
    [[nodiscard]] PlaneSet silence(std::uint32_t channels);
    [[nodiscard]] PlaneSet play(std::shared_ptr<PlayerStream> stream, std::uint32_t channels,
                                std::uint32_t linkChannels);
    [[nodiscard]] PlaneSet map(const PlaneSet& input, std::uint32_t channels);
    [[nodiscard]] PlaneSet convert(std::shared_ptr<LinkConverter> converter, const PlaneSet& input);
    [[nodiscard]] PlaneSet mix(const std::vector<PlaneSet>& inputs, std::uint32_t channels);
    [[nodiscard]] PlaneSet process(std::shared_ptr<NodeProcessor> processor, const PlaneSet& input,
                                   std::shared_ptr<BadSamples> badSamples);
    /// Sets the buffer that is played. It must have the format's channel count.
    void setOutput(PlaneSet output) { _output = std::move(output); }

    [[nodiscard]] const AVAudioFormat& format() const noexcept { return _format; }
    [[nodiscard]] const std::vector<std::shared_ptr<PlayerStream>>& players() const noexcept {
        return _players;
    }

    /// Returns the processor whose effect has ended, or null. Offline; audio thread.
    [[nodiscard]] const NodeProcessor* failed() const noexcept;
    /// Fills `sound` (at most `maximumFrames` frames) and returns whether the control side must be woken to
    /// report bad samples. Audio thread.
    bool render(PlanarSound sound, std::int64_t sampleTime) noexcept;
    /// Stops the audio thread from calling further processors of this plan. Returns the processor that the
    /// audio thread is in, or null; that processor must not be used elsewhere before this plan is no longer
    /// in use. Control side.
    [[nodiscard]] std::shared_ptr<NodeProcessor> retire();

  private:
    struct Step {
        enum class Kind { Play, Map, Convert, Mix, Process } kind = Kind::Mix;
        PlayerStream* stream = nullptr;
        LinkConverter* converter = nullptr;
        NodeProcessor* processor = nullptr;
        BadSamples* badSamples = nullptr;
        std::uint32_t linkChannels = 0;
        PlaneSet input{}; // for a mix, the channels of all inputs in sequence
        PlaneSet output{};
    };

    [[nodiscard]] PlaneSet newPlanes(std::uint32_t channels);
    bool run(const Step& step, std::uint32_t frames, std::int64_t sampleTime) noexcept;
    bool runProcessor(const Step& step, PlanarSound in, PlanarSound out, std::int64_t sampleTime) noexcept;

    const AVAudioFormat _format;
    const std::uint32_t _maximumFrames;
    std::vector<Step> _steps;
    PlaneSet _output;
    std::vector<std::unique_ptr<PlanarBuffer>> _buffers;
    std::vector<std::shared_ptr<PlayerStream>> _players;
    std::vector<std::shared_ptr<NodeProcessor>> _processors;
    std::vector<std::shared_ptr<void>> _kept;

    // Shared between threads. The audio thread writes `_inside` and then reads `_isRetired`; the control side
    // writes `_isRetired` and then reads `_inside`. At least one of them therefore sees the other's write.
    std::atomic<const NodeProcessor*> _inside{nullptr};
    std::atomic<bool> _isRetired{false};
};

} // namespace platform
