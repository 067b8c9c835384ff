// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A node of the engine's graph, attached to at most one engine. Nodes are used only on the control side. The
// audio thread uses only the node's processor or player stream, which the engine keeps alive for as long as a
// render plan uses it.
#pragma once

#include <atomic>
#include <memory>

namespace platform {

class NodeProcessor;
class PlayerStream;

class AVAudioNode {
  public:
    virtual ~AVAudioNode() = default;
    AVAudioNode(const AVAudioNode&) = delete;
    AVAudioNode& operator=(const AVAudioNode&) = delete;

    /// Returns the object that processes the sound of this node, the same object at every call. Null for the
    /// nodes that the engine renders itself (player, mixer, output).
    [[nodiscard]] virtual std::shared_ptr<NodeProcessor> processor() const { return nullptr; }

    /// Returns whether the node accepts any number of inputs instead of one.
    [[nodiscard]] virtual bool takesManyInputs() const noexcept { return false; }
    /// Returns the stream of a player node; null for other nodes.
    [[nodiscard]] virtual std::shared_ptr<PlayerStream> playerStream() const { return nullptr; }

  protected:
    AVAudioNode() = default;

  private:
    friend class NodeGraph;
    std::atomic<bool> _isAttached{false}; // to some engine
};

} // namespace platform
