// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A node of the engine's graph. It is attached to at most one engine; it is wired, and its processor
// requested, only on the control side. The node itself never renders on the audio thread: the engine keeps
// the processor (or the player's stream) alive for as long as a render plan uses it.
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

    /// Returns what makes the sound of this node, the same object at every call; null for the nodes that the
    /// engine renders itself (player, mixer, output).
    [[nodiscard]] virtual std::shared_ptr<NodeProcessor> processor() const { return nullptr; }

    /// Returns whether any number of links may end here instead of one.
    [[nodiscard]] virtual bool takesManyInputs() const noexcept { return false; }
    /// Returns what a player node plays; null for the others.
    [[nodiscard]] virtual std::shared_ptr<PlayerStream> playerStream() const { return nullptr; }

  protected:
    AVAudioNode() = default;

  private:
    friend class NodeGraph;
    std::atomic<bool> _isAttached{false}; // to some engine
};

} // namespace platform
