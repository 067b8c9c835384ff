// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side's picture of the engine: nodes and links, and how they become a render plan. Not
// synchronised: its owner holds a lock.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/AVAudioNode.hpp"
#include "platform/audio/detail/RenderPlan.hpp"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

class LinkConverter;
class NodeProcessor;

class NodeGraph {
  public:
    using NodePointer = std::shared_ptr<AVAudioNode>;

    NodeGraph(NodePointer mainMixer, NodePointer output);
    ~NodeGraph();
    NodeGraph(const NodeGraph&) = delete;
    NodeGraph& operator=(const NodeGraph&) = delete;

    [[nodiscard]] bool holds(const AVAudioNode& node) const { return _members.contains(&node); }
    /// Takes `node` in; a node that belongs to another graph is refused.
    [[nodiscard]] bool attach(const NodePointer& node);
    /// Cuts the links of `node`; returns whether there were any.
    bool unlink(const AVAudioNode& node);
    /// Takes `node`, which no plan in use refers to any more, out.
    void detach(const AVAudioNode& node);
    /// Links `from` to `to`. A link that is there already in the same format stays, with what flows in it.
    void connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format);
    /// Cuts the links into `node`; returns whether there were any.
    bool disconnectInput(const AVAudioNode& node);

    /// Builds the plan for an output of `format`. Processors that are not ready for its rate are made ready;
    /// none of these may be in use.
    [[nodiscard]] std::unique_ptr<RenderPlan> compile(const AVAudioFormat& format, bool offline);
    /// Tells all processors, and those that come, how many frames a block usually has. They may be in use.
    void setBlockFrames(std::uint32_t frames);
    /// Says once for each node on standard error that it gave samples that are no numbers.
    void reportBadSamples();

  private:
    struct Member {
        NodePointer node;
        std::shared_ptr<NodeProcessor> processor; // null: the engine renders the node itself
        double allocatedRate = 0;                 // 0: not allocated
        double failedRate = 0;                    // 0: did not fail
        std::shared_ptr<BadSamples> badSamples;
        bool saidBadSamples = false;
    };
    struct Link {
        const AVAudioNode* from;
        const AVAudioNode* to;
        std::optional<AVAudioFormat> format;        // absent: the output's
        std::shared_ptr<LinkConverter> converter{}; // where what flows in at the output's rate needs one
    };
    class Compilation;

    [[nodiscard]] static bool makeReady(Member& member, double rate);

    std::map<const AVAudioNode*, Member> _members;
    std::vector<Link> _links;
    const AVAudioNode* const _output;
    std::uint32_t _blockFrames = 0; // 0: not known
};

} // namespace platform
