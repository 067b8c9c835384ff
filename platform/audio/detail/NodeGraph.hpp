// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The nodes and links of an engine, and their compilation to a render plan. Control side. Not synchronised:
// the owner must hold a mutex.
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
    /// Adds `node`, or returns false if it belongs to another graph.
    [[nodiscard]] bool attach(const NodePointer& node);
    /// Removes the links of `node` and returns whether there were any.
    bool unlink(const AVAudioNode& node);
    /// Removes `node`, and returns its processor if the caller must release that now. No plan in use may
    /// refer to `node`.
    [[nodiscard]] std::shared_ptr<NodeProcessor> detach(const AVAudioNode& node);
    [[nodiscard]] bool isOutput(const AVAudioNode& node) const noexcept { return &node == _output; }
    /// Links `from` to `to`. An existing link in the same format keeps its state.
    void connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format);
    /// Removes the links to `node` and returns whether there were any.
    bool disconnectInput(const AVAudioNode& node);

    /// A plan, and the processors that must be prepared before a plan can include them.
    struct Compiled {
        struct Unready {
            const AVAudioNode* node;
            std::shared_ptr<NodeProcessor> processor;
            double rate;
            std::uint32_t blockFrames; // 0 if not known
            bool isOffline;
            std::optional<Error> failure{};
        };
        std::unique_ptr<RenderPlan> plan;
        std::vector<Unready> unready;

        /// Prepares the processors. Calls effect code, so the owner must not hold its mutex.
        void makeReady();
    };
    /// Builds the plan for an output of `format`. The plan renders silence for processors that are not
    /// prepared for its rate. They are listed in `unready` unless they are already being prepared, have
    /// failed at that rate, or are stuck. The caller must then call `makeReady` and `noteReadiness`.
    [[nodiscard]] Compiled compile(const AVAudioFormat& format, bool offline);
    /// Records the results of `makeReady`. Adds processors that are no longer in the graph to `released`, and
    /// errors to `messages`.
    void noteReadiness(const Compiled& compiled, std::vector<std::shared_ptr<NodeProcessor>>& released,
                       std::vector<std::string>& messages);
    /// Sets whether plans exclude `processor` because a thread has not returned from it. Returns whether the
    /// graph contains `processor`.
    bool setStuck(const NodeProcessor& processor, bool isStuck);
    /// Makes every link create a new converter, because a thread may still be using the previous ones.
    void forgetConverters();
    /// Records the usual block length and returns the processors that must be notified. They may be in use.
    [[nodiscard]] std::vector<std::shared_ptr<NodeProcessor>> setBlockFrames(std::uint32_t frames);
    /// Adds a message for each node whose output has contained NaN or infinity, once per node.
    void reportBadSamples(std::vector<std::string>& messages);

  private:
    struct Member {
        NodePointer node;
        std::shared_ptr<NodeProcessor> processor; // null if the engine renders the node itself
        double allocatedRate = 0;                 // 0 if not allocated
        double failedRate = 0;                    // 0 if allocation did not fail
        bool isBeingMadeReady = false;
        bool isStuck = false; // a thread has not returned from the processor
        std::shared_ptr<BadSamples> badSamples;
        bool saidBadSamples = false;
    };
    struct Link {
        const AVAudioNode* from;
        const AVAudioNode* to;
        std::optional<AVAudioFormat> format;        // no value: the output's format
        std::shared_ptr<LinkConverter> converter{}; // null if the rates are equal
    };
    class Compilation;

    std::map<const AVAudioNode*, Member> _members;
    std::vector<Link> _links;
    const AVAudioNode* const _output;
    std::uint32_t _blockFrames = 0; // 0 if not known
};

} // namespace platform
