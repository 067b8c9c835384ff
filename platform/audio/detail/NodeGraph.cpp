// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/NodeGraph.hpp"

#include "platform/audio/NodeProcessor.hpp"
#include "platform/audio/detail/LinkConverter.hpp"
#include "platform/audio/detail/PlayerStream.hpp"

#include <algorithm>
#include <set>

namespace platform {

NodeGraph::NodeGraph(NodePointer mainMixer, NodePointer output)
    : _output(output.get()) {
    const AVAudioNode& mixer = *mainMixer;
    for (NodePointer& node : {std::ref(mainMixer), std::ref(output)}) {
        if (!attach(node)) return;
    }
    connect(mixer, *_output, std::nullopt);
}

NodeGraph::~NodeGraph() {
    while (!_members.empty()) {
        if (const auto processor = detach(*_members.begin()->first)) processor->release();
    }
}

bool NodeGraph::attach(const NodePointer& node) {
    if (holds(*node)) return true;
    if (node->_isAttached.exchange(true)) return false;
    _members[node.get()] = {
        .node = node, .processor = node->processor(), .badSamples = std::make_shared<BadSamples>()};
    return true;
}

bool NodeGraph::unlink(const AVAudioNode& node) {
    return std::erase_if(_links, [&](const Link& link) { return link.from == &node || link.to == &node; }) >
           0;
}

std::shared_ptr<NodeProcessor> NodeGraph::detach(const AVAudioNode& node) {
    unlink(node);
    const auto found = _members.find(&node);
    if (found == _members.end()) return nullptr;
    const Member member = std::move(found->second);
    _members.erase(found);
    member.node->_isAttached = false;
    return member.allocatedRate > 0 && !member.isStuck ? member.processor : nullptr;
}

void NodeGraph::connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format) {
    const bool isThere = std::ranges::any_of(_links, [&](const Link& link) {
        return link.from == &from && link.to == &to && link.format == format;
    });
    if (isThere) return;
    const bool hasOneInput = !to.takesManyInputs();
    std::erase_if(_links,
                  [&](const Link& link) { return link.from == &from || (hasOneInput && link.to == &to); });
    _links.push_back({.from = &from, .to = &to, .format = format});
}

bool NodeGraph::disconnectInput(const AVAudioNode& node) {
    return std::erase_if(_links, [&](const Link& link) { return link.to == &node; }) > 0;
}

void NodeGraph::Compiled::makeReady() {
    for (Unready& one : unready) {
        one.processor->setOffline(one.isOffline);
        if (one.blockFrames > 0) one.processor->setBlockFrames(one.blockFrames);
        one.failure = one.processor->allocate(one.rate, RenderPlan::maximumFrames(one.rate, one.isOffline));
    }
}

void NodeGraph::noteReadiness(const Compiled& compiled, std::vector<std::shared_ptr<NodeProcessor>>& released,
                              std::vector<std::string>& messages) {
    for (const auto& [node, processor, rate, blockFrames, isOffline, failure] : compiled.unready) {
        if (failure) messages.push_back("The effect is silent: " + failure->localizedDescription());
        const auto found = _members.find(node);
        if (found == _members.end() || found->second.processor != processor) {
            if (!failure) released.push_back(processor);
            continue;
        }
        Member& member = found->second;
        member.isBeingMadeReady = false;
        member.allocatedRate = failure ? 0 : rate;
        member.failedRate = failure ? rate : 0;
    }
}

bool NodeGraph::setStuck(const NodeProcessor& processor, bool isStuck) {
    for (auto& [node, member] : _members) {
        if (member.processor.get() != &processor) continue;
        member.isStuck = isStuck;
        return true;
    }
    return false;
}

void NodeGraph::forgetConverters() {
    for (Link& link : _links) link.converter.reset();
}

// Visits the nodes from the output back to the sources and adds their steps to the plan.
class NodeGraph::Compilation {
  public:
    Compilation(NodeGraph& graph, RenderPlan& plan, bool offline)
        : _graph(graph)
        , _plan(plan)
        , _offline(offline) {}

    PlaneSet outputOf(const AVAudioNode& node) {
        const auto known = _outputs.find(&node);
        if (known != _outputs.end()) return known->second;
        if (!_onTheWay.insert(&node).second) return {}; // a cycle: its last link carries no sound
        PlaneSet output = render(node);
        _onTheWay.erase(&node);
        return _outputs[&node] = output;
    }

    std::vector<Compiled::Unready> unready;

  private:
    PlaneSet render(const AVAudioNode& node) {
        Member& member = _graph._members.at(&node);
        const std::uint32_t channels = _plan.format().channelCount;
        if (member.processor) {
            if (!isReady(node, member)) return _plan.silence(channels);
            const std::uint32_t wanted = member.processor->inputChannels();
            const std::vector<PlaneSet> inputs = inputsOf(node, wanted);
            return _plan.process(member.processor, inputs.empty() ? _plan.silence(wanted) : inputs.front(),
                                 member.badSamples);
        }
        return _plan.mix(inputsOf(node, channels), channels); // the output node has at most one input
    }

    bool isReady(const AVAudioNode& node, Member& member) {
        const double rate = _plan.format().sampleRate;
        if (member.isStuck || member.isBeingMadeReady || member.failedRate == rate) return false;
        if (member.allocatedRate == rate) return true;
        member.isBeingMadeReady = true;
        unready.push_back({&node, member.processor, rate, _graph._blockFrames, _offline});
        return false;
    }

    std::vector<PlaneSet> inputsOf(const AVAudioNode& node, std::uint32_t channels) {
        std::vector<PlaneSet> inputs;
        for (Link& link : _graph._links) {
            if (link.to != &node || link.from == nullptr || channels == 0) continue;
            const AVAudioFormat format = link.format.value_or(_plan.format());
            if (const std::shared_ptr<PlayerStream> stream = link.from->playerStream()) {
                stream->setOutput(format.sampleRate, _plan.format().sampleRate, _offline);
                inputs.push_back(_plan.play(stream, channels, format.channelCount));
            } else {
                inputs.push_back(_plan.map(flowThrough(link, format), channels));
            }
        }
        return inputs;
    }

    // Returns the output of `link`: converted to the link's format and back to the output device's rate.
    PlaneSet flowThrough(Link& link, const AVAudioFormat& format) {
        const PlaneSet sound = outputOf(*link.from);
        const double rate = _plan.format().sampleRate;
        const PlaneSet narrowed = _plan.map(sound, std::min(sound.channels(), format.channelCount));
        if (format.sampleRate == rate || narrowed.channels() == 0) {
            link.converter.reset();
            return narrowed;
        }
        if (!link.converter || !link.converter->fits(rate, format.sampleRate, narrowed.channels())) {
            link.converter = std::make_shared<LinkConverter>(rate, format.sampleRate, narrowed.channels());
        }
        return _plan.convert(link.converter, narrowed);
    }

    NodeGraph& _graph;
    RenderPlan& _plan;
    const bool _offline;
    std::map<const AVAudioNode*, PlaneSet> _outputs;
    std::set<const AVAudioNode*> _onTheWay;
};

NodeGraph::Compiled NodeGraph::compile(const AVAudioFormat& format, bool offline) {
    Compiled compiled{.plan = std::make_unique<RenderPlan>(format, offline), .unready = {}};
    Compilation compilation(*this, *compiled.plan, offline);
    compiled.plan->setOutput(compilation.outputOf(*_output));
    compiled.unready = std::move(compilation.unready);
    return compiled;
}

std::vector<std::shared_ptr<NodeProcessor>> NodeGraph::setBlockFrames(std::uint32_t frames) {
    std::vector<std::shared_ptr<NodeProcessor>> processors;
    if (frames == _blockFrames) return processors;
    _blockFrames = frames;
    for (const auto& [node, member] : _members) {
        if (member.processor) processors.push_back(member.processor);
    }
    return processors;
}

void NodeGraph::reportBadSamples(std::vector<std::string>& messages) {
    for (auto& [node, member] : _members) {
        if (!member.badSamples->seen || member.saidBadSamples) continue;
        member.saidBadSamples = true;
        messages.emplace_back("The effect's output contains NaN or infinity; it is silenced.");
    }
}

} // namespace platform
