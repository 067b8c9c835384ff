// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The audio engine: a graph of nodes that can be edited on any thread except the audio thread, also while it
// plays.
//
// The control side and the audio side are separate. Every edit compiles an immutable render plan, publishes
// it by one atomic exchange, and returns when the audio side no longer uses the previous one. Nothing here
// waits for sound.
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
    /// Creates an engine whose main mixer is linked to its output node. `device`: null for the process's
    /// output.
    [[nodiscard]] static std::shared_ptr<AVAudioEngine>
    create(std::shared_ptr<OutputDevice> device = nullptr);
    /// Stops.
    ~AVAudioEngine();
    AVAudioEngine(const AVAudioEngine&) = delete;
    AVAudioEngine& operator=(const AVAudioEngine&) = delete;

    /// Adds `node` to the graph, unlinked. Harmless if it is in it already; a node of another engine is
    /// refused and reported on standard error.
    void attachNode(const std::shared_ptr<AVAudioNode>& node);
    /// Removes `node` and its links from the graph. When this returns, it renders no more.
    void detachNode(const std::shared_ptr<AVAudioNode>& node);
    /// Links `from` to `to`, replacing the link of that output and of that input (a mixer has as many inputs
    /// as needed). `format`: the format of the link; absent: the output device's. A format that differs from
    /// the one in which `to` works is converted at its input. Effects work at the device's rate.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 std::optional<AVAudioFormat> format);
    /// Removes every link into `node`.
    void disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);

    [[nodiscard]] const std::shared_ptr<AVAudioMixerNode>& mainMixerNode() const noexcept {
        return _mainMixer;
    }
    [[nodiscard]] const std::shared_ptr<AVAudioOutputNode>& outputNode() const noexcept { return _output; }

    /// Prepares everything that `start` needs and that does not touch the device.
    void prepare();
    /// Starts (`startAndReturnError:`). Harmless while running. Does not wait for sound.
    [[nodiscard]] std::optional<Error> start();
    /// Stops. When this returns, no node renders. The graph and the schedules of its players stay.
    void stop();
    [[nodiscard]] bool isRunning() const;

  private:
    explicit AVAudioEngine(std::shared_ptr<OutputDevice> device);
    const std::shared_ptr<AVAudioMixerNode> _mainMixer;
    const std::shared_ptr<AVAudioOutputNode> _output;
    const std::shared_ptr<EngineCore> _core;
};

} // namespace platform
