// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The engine behind AVAudioEngine: a graph on the control side, a render plan on the audio side.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/BlockLength.hpp"
#include "platform/audio/detail/NodeGraph.hpp"
#include "platform/audio/detail/RenderPlan.hpp"
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace platform {

class EngineCore final : public OutputClient, public std::enable_shared_from_this<EngineCore> {
  public:
    using NodePointer = std::shared_ptr<AVAudioNode>;

    EngineCore(std::shared_ptr<OutputDevice> device, NodePointer mainMixer, NodePointer output);

    void attach(const NodePointer& node);
    void detach(const NodePointer& node);
    void connect(const NodePointer& from, const NodePointer& to, std::optional<AVAudioFormat> format);
    void disconnectInput(const NodePointer& node);
    void prepare();
    [[nodiscard]] std::optional<Error> start();
    void stop();
    [[nodiscard]] bool isRunning() const;
    /// Stops for good and ends all threads.
    void shutDown();

    void render(float* const* planes, const AVAudioFormat& format, std::uint32_t frames) noexcept override;
    void outputFormatDidChange() override;

  private:
    void graphDidChange();
    void rebuild();
    void publish(std::unique_ptr<RenderPlan> plan);
    void watch();
    void expectBlocks();
    [[nodiscard]] RenderPlan* acquirePlan() noexcept;
    void releasePlan() noexcept { _shared.inUse.store(nullptr); }
    void provide(std::uint32_t frames);

    // All that the audio side shares with the control side.
    struct Shared {
        // The plan to run. The control side exchanges it and frees the former one when `inUse` no longer
        // names it.
        std::atomic<RenderPlan*> plan{nullptr};
        // The plan being run: set by the audio side, which then makes sure that it is still the one to run.
        std::atomic<RenderPlan*> inUse{nullptr};
        // Frames rendered since the engine started; set to 0 by the control side while nothing renders.
        std::atomic<std::int64_t> sampleTime{0};
        // Of a device in real time: the audio side measures, the control side tells the effects.
        BlockLength blockLength;
        // Signalled when there is something to say (bad samples), when the block length changes, and to end
        // the thread that waits for it.
        WakeSignal news;
        // Requested by the control side when it stops the engine, so that an offline render waits for nothing
        // any more; exchanged by it while nothing renders.
        std::stop_source stopping;
    };
    Shared _shared;

    const std::shared_ptr<OutputDevice> _device;
    const bool _offline;

    mutable std::mutex _mutex; // guards the fields below; never taken by the audio side
    NodeGraph _graph;
    AVAudioFormat _planFormat; // of the plan last built
    bool _planIsCurrent = false;
    bool _running = false;
    bool _ended = false;

    DispatchQueue _control{"AVAudioEngine.control"}; // where a change of the device is followed
    std::thread _watcher;                            // says what the audio side has seen
};

} // namespace platform
