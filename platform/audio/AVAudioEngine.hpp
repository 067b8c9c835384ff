// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The audio engine: a graph of nodes. The graph can be edited on any thread except the audio thread, also
// while it plays.
//
// Every edit compiles an immutable render plan, publishes the plan by one atomic exchange, and returns when
// the audio thread no longer uses the previous plan. No operation waits for sound to be played.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/AVAudioMixerNode.hpp"
#include "platform/audio/AVAudioNode.hpp"
#include "platform/audio/AVAudioOutputNode.hpp"
#include "platform/foundation/Error.hpp"

#include <memory>
#include <optional>

namespace platform {

class EngineCore;
class OutputDevice;

class AVAudioEngine {
  public:
    /// Creates an engine whose main mixer node is linked to its output node. If `device` is null, the engine
    /// uses the process's shared output device.
    [[nodiscard]] static std::shared_ptr<AVAudioEngine>
    create(std::shared_ptr<OutputDevice> device = nullptr);
    /// Stops the engine.
    ~AVAudioEngine();
    AVAudioEngine(const AVAudioEngine&) = delete;
    AVAudioEngine& operator=(const AVAudioEngine&) = delete;

    /// Adds `node` to the graph, unlinked. Does nothing if the graph already contains `node`. Refuses a node
    /// of another engine and reports it on standard error.
    void attachNode(const std::shared_ptr<AVAudioNode>& node);
    /// Removes `node` and its links from the graph. The node no longer renders when this returns.
    void detachNode(const std::shared_ptr<AVAudioNode>& node);
    /// Links the output of `from` to the input of `to` and replaces the previous links of both; a mixer gets
    /// a further input instead. `format` is the format of the link; with no value, the output device's
    /// format. A format that differs from the one in which `to` works is converted at the input of `to`.
    /// Effects work at the device's sample rate.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 std::optional<AVAudioFormat> format);
    /// Removes every link to an input of `node`.
    void disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);

    [[nodiscard]] const std::shared_ptr<AVAudioMixerNode>& mainMixerNode() const noexcept {
        return _mainMixer;
    }
    [[nodiscard]] const std::shared_ptr<AVAudioOutputNode>& outputNode() const noexcept { return _output; }

    /// Prepares everything that `start` needs, except the device.
    void prepare();
    /// Starts the engine (`startAndReturnError:`). Does nothing while the engine runs. Does not wait for
    /// sound.
    [[nodiscard]] std::optional<Error> start();
    /// Stops the engine. No node renders when this returns. The graph and the schedules of its players are
    /// kept.
    void stop();
    [[nodiscard]] bool isRunning() const;

  private:
    explicit AVAudioEngine(std::shared_ptr<OutputDevice> device);
    const std::shared_ptr<AVAudioMixerNode> _mainMixer;
    const std::shared_ptr<AVAudioOutputNode> _output;
    const std::shared_ptr<EngineCore> _core;
};

} // namespace platform
