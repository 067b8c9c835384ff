// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side's picture of the engine: nodes and links, and how they become a render plan. Not
// synchronised: its owner holds a lock.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/AVAudioNode.hpp"
#include "platform/audio/detail/RenderPlan.hpp"
#include "platform/foundation/Error.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>
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
    /// Takes `node`, which no plan in use refers to any more, out, and returns its processor if that must be
    /// released now.
    [[nodiscard]] std::shared_ptr<NodeProcessor> detach(const AVAudioNode& node);
    [[nodiscard]] bool isOutput(const AVAudioNode& node) const noexcept { return &node == _output; }
    /// Links `from` to `to`. A link that is there already in the same format stays, with what flows in it.
    void connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format);
    /// Cuts the links into `node`; returns whether there were any.
    bool disconnectInput(const AVAudioNode& node);

    /// A plan, and what must be made ready before it can be one for the whole graph.
    struct Compiled {
        struct Unready {
            const AVAudioNode* node;
            std::shared_ptr<NodeProcessor> processor;
            double rate;
            std::uint32_t blockFrames; // 0: not known
            std::optional<Error> failure{};
        };
        std::unique_ptr<RenderPlan> plan;
        std::vector<Unready> unready;

        /// Makes the processors ready. Runs code of effects: without the lock of the graph's owner.
        void makeReady();
    };
    /// Builds the plan for an output of `format`. Processors that are not ready for its rate are silent in it
    /// and are listed, once: `noteReadiness` must follow. Those that are made ready elsewhere, that have
    /// failed at that rate or are stuck are silent too.
    [[nodiscard]] Compiled compile(const AVAudioFormat& format, bool offline);
    /// Takes note of what `makeReady` came to. What is no longer in the graph goes to `released`, what is to
    /// be reported to `messages`.
    void noteReadiness(const Compiled& compiled, std::vector<std::shared_ptr<NodeProcessor>>& released,
                       std::vector<std::string>& messages);
    /// Keeps a processor that a thread has not returned from out of all plans, or admits it again; returns
    /// whether it is in the graph.
    bool setStuck(const NodeProcessor& processor, bool isStuck);
    /// Begins anew in every link: another thread may still be using the converters.
    void forgetConverters();
    /// Takes note of how many frames a block usually has and returns the processors that must be told, which
    /// may be in use.
    [[nodiscard]] std::vector<std::shared_ptr<NodeProcessor>> setBlockFrames(std::uint32_t frames);
    /// Adds, once for each node, that it gave samples that are no numbers.
    void reportBadSamples(std::vector<std::string>& messages);

  private:
    struct Member {
        NodePointer node;
        std::shared_ptr<NodeProcessor> processor; // null: the engine renders the node itself
        double allocatedRate = 0;                 // 0: not allocated
        double failedRate = 0;                    // 0: did not fail
        bool isBeingMadeReady = false;
        bool isStuck = false; // a thread has not returned from it
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

    std::map<const AVAudioNode*, Member> _members;
    std::vector<Link> _links;
    const AVAudioNode* const _output;
    std::uint32_t _blockFrames = 0; // 0: not known
};

} // namespace platform
