// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side of AVAudioEngine. Edits the graph, compiles it to a plan and passes the plan to the
// renderer.
//
// While the engine's mutex is locked, no effect code is called and no message is printed, and no wait for the
// audio thread is longer than ControlLimit.
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
    /// Stops the engine for good and ends its watcher thread.
    void shutDown();

  private:
    class Edit;

    [[nodiscard]] std::uint32_t statedBlockFrames() const;
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
    const std::shared_ptr<WakeSignal> _news = std::make_shared<WakeSignal>(); // wakes the watcher

    std::mutex _startMutex; // locked while the engine starts or stops; locked before _mutex
    std::mutex _mutex;      // guards the members below; never locked by the audio thread
    NodeGraph _graph;
    std::shared_ptr<EngineRenderer> _renderer;
    // Renderers in which an effect has not returned. The engine continues with a new renderer.
    std::vector<std::shared_ptr<EngineRenderer>> _abandoned;
    AVAudioFormat _planFormat; // the format of the last plan built
    bool _planIsCurrent = false;
    std::atomic<bool> _running{false}; // written under _mutex
    bool _ended = false;

    DispatchQueue _control{"AVAudioEngine.control"}; // handles format changes of the device
    std::thread _watcher;                            // handles reports from the audio thread
};

} // namespace platform
