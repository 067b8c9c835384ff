// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side of AVAudioEngine: edits the graph and has the renderer run the resulting plan.
//
// No code of an effect runs under the engine's lock, nothing is reported under it, and no wait for the audio
// side under it is longer than ControlLimit.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/EngineRenderer.hpp"
#include "platform/audio/detail/NodeGraph.hpp"
#include "platform/dispatch/DispatchQueue.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace platform {

class EngineCore final : public std::enable_shared_from_this<EngineCore> {
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
    [[nodiscard]] bool isRunning() const noexcept { return _running; }
    /// Stops for good and ends all threads.
    void shutDown();

  private:
    class Edit;

    void makeRenderer();
    void graphDidChange(Edit& edit);
    void rebuild(Edit& edit);
    bool publish(Edit& edit, std::unique_ptr<RenderPlan> plan, std::chrono::nanoseconds limit = ControlLimit);
    void tellBlockFrames(Edit& edit, std::uint32_t frames);
    void followFormat();
    void watch();
    void takeBack(Edit& edit);

    const std::shared_ptr<OutputDevice> _device;
    const bool _offline;
    const std::shared_ptr<WakeSignal> _news = std::make_shared<WakeSignal>(); // for the watcher

    std::mutex _startMutex; // held while the engine starts or stops; taken before _mutex
    std::mutex _mutex;      // guards the fields below; never taken by the audio side
    NodeGraph _graph;
    std::shared_ptr<EngineRenderer> _renderer;
    // Renderers that an effect keeps from ending, while the engine continues with another.
    std::vector<std::shared_ptr<EngineRenderer>> _abandoned;
    AVAudioFormat _planFormat; // of the last plan built
    bool _planIsCurrent = false;
    std::atomic<bool> _running{false}; // written under _mutex
    bool _ended = false;

    DispatchQueue _control{"AVAudioEngine.control"}; // handles changes of the device
    std::thread _watcher;                            // handles what the audio side reports
};

} // namespace platform
