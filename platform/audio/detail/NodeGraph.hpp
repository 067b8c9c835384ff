// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side's model of the engine: nodes and links, and how they become a render plan. Not
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
    /// Adds `node`; a node that belongs to another graph is refused.
    [[nodiscard]] bool attach(const NodePointer& node);
    /// Removes the links of `node`; returns whether there were any.
    bool unlink(const AVAudioNode& node);
    /// Removes `node`, which no plan in use refers to any more, and returns its processor if that must be
    /// released now.
    [[nodiscard]] std::shared_ptr<NodeProcessor> detach(const AVAudioNode& node);
    [[nodiscard]] bool isOutput(const AVAudioNode& node) const noexcept { return &node == _output; }
    /// Links `from` to `to`. An existing link in the same format stays, with its state.
    void connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format);
    /// Removes the links into `node`; returns whether there were any.
    bool disconnectInput(const AVAudioNode& node);

    /// A plan, and the processors that must be prepared before it can cover the whole graph.
    struct Compiled {
        struct Unready {
            const AVAudioNode* node;
            std::shared_ptr<NodeProcessor> processor;
            double rate;
            std::uint32_t blockFrames; // 0: not known
            bool isOffline;
            std::optional<Error> failure{};
        };
        std::unique_ptr<RenderPlan> plan;
        std::vector<Unready> unready;

        /// Prepares the processors. Runs code of effects: call without the lock of the graph's owner.
        void makeReady();
    };
    /// Builds the plan for an output of `format`. Processors that are not prepared for its rate are silent in
    /// it and are listed, once: `noteReadiness` must follow. Those that are being prepared elsewhere, that
    /// have failed at that rate or are stuck are silent too.
    [[nodiscard]] Compiled compile(const AVAudioFormat& format, bool offline);
    /// Records the results of `makeReady`. What is no longer in the graph is added to `released`, what is to
    /// be reported to `messages`.
    void noteReadiness(const Compiled& compiled, std::vector<std::shared_ptr<NodeProcessor>>& released,
                       std::vector<std::string>& messages);
    /// Excludes a processor from which a thread has not returned from all plans, or admits it again; returns
    /// whether it is in the graph.
    bool setStuck(const NodeProcessor& processor, bool isStuck);
    /// Resets every link: another thread may still be using the converters.
    void forgetConverters();
    /// Records the usual number of frames of a block and returns the processors that must be told, which may
    /// be in use.
    [[nodiscard]] std::vector<std::shared_ptr<NodeProcessor>> setBlockFrames(std::uint32_t frames);
    /// Adds, once for each node, that its output contained NaN or infinity.
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
        std::shared_ptr<LinkConverter> converter{}; // if the sound at the output's rate needs one
    };
    class Compilation;

    std::map<const AVAudioNode*, Member> _members;
    std::vector<Link> _links;
    const AVAudioNode* const _output;
    std::uint32_t _blockFrames = 0; // 0: not known
};

} // namespace platform
