// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/NodeGraph.hpp"

#include "platform/audio/AVAudioMixerNode.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/NodeProcessor.hpp"
#include "platform/audio/detail/LinkConverter.hpp"
#include "platform/audio/detail/PlayerStream.hpp"
#include "platform/foundation/console.hpp"

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
    while (!_members.empty()) detach(*_members.begin()->first);
}

bool NodeGraph::attach(const NodePointer& node) {
    if (holds(*node)) return true;
    if (node->_isAttached.exchange(true)) return false;
    _members[node.get()] = {
        .node = node, .processor = node->processor(), .badSamples = std::make_shared<BadSamples>()};
    if (const auto& processor = _members[node.get()].processor; processor && _blockFrames > 0) {
        processor->setBlockFrames(_blockFrames);
    }
    return true;
}

bool NodeGraph::unlink(const AVAudioNode& node) {
    return std::erase_if(_links, [&](const Link& link) { return link.from == &node || link.to == &node; }) >
           0;
}

void NodeGraph::detach(const AVAudioNode& node) {
    unlink(node);
    const auto found = _members.find(&node);
    if (found == _members.end()) return;
    if (found->second.allocatedRate > 0) found->second.processor->release();
    found->second.node->_isAttached = false;
    _members.erase(found);
}

void NodeGraph::connect(const AVAudioNode& from, const AVAudioNode& to, std::optional<AVAudioFormat> format) {
    const bool isThere = std::ranges::any_of(_links, [&](const Link& link) {
        return link.from == &from && link.to == &to && link.format == format;
    });
    if (isThere) return;
    const bool hasOneInput = dynamic_cast<const AVAudioMixerNode*>(&to) == nullptr;
    std::erase_if(_links,
                  [&](const Link& link) { return link.from == &from || (hasOneInput && link.to == &to); });
    _links.push_back({.from = &from, .to = &to, .format = format});
}

bool NodeGraph::disconnectInput(const AVAudioNode& node) {
    return std::erase_if(_links, [&](const Link& link) { return link.to == &node; }) > 0;
}

bool NodeGraph::makeReady(Member& member, double rate) {
    if (member.allocatedRate == rate) return true;
    if (member.failedRate == rate) return false;
    if (auto error = member.processor->allocate(rate, RenderPlan::MaximumFrames)) {
        warn("The effect is silent: " + error->localizedDescription());
        member.allocatedRate = 0;
        member.failedRate = rate;
        return false;
    }
    member.allocatedRate = rate;
    member.failedRate = 0;
    return true;
}

// One walk from the output back to the sources.
class NodeGraph::Compilation {
  public:
    Compilation(NodeGraph& graph, RenderPlan& plan, bool offline)
        : _graph(graph)
        , _plan(plan)
        , _offline(offline) {}

    PlaneSet outputOf(const AVAudioNode& node) {
        const auto known = _outputs.find(&node);
        if (known != _outputs.end()) return known->second;
        if (!_onTheWay.insert(&node).second) return {}; // a circle: nothing flows through its last link
        PlaneSet output = render(node);
        _onTheWay.erase(&node);
        return _outputs[&node] = output;
    }

  private:
    PlaneSet render(const AVAudioNode& node) {
        Member& member = _graph._members.at(&node);
        const std::uint32_t channels = _plan.format().channelCount;
        if (member.processor) {
            if (!makeReady(member, _plan.format().sampleRate)) return _plan.silence(channels);
            const std::uint32_t wanted = member.processor->inputChannels();
            const std::vector<PlaneSet> inputs = inputsOf(node, wanted);
            return _plan.process(member.processor, inputs.empty() ? _plan.silence(wanted) : inputs.front(),
                                 member.badSamples);
        }
        return _plan.mix(inputsOf(node, channels), channels); // the output has one input, a mixer any number
    }

    std::vector<PlaneSet> inputsOf(const AVAudioNode& node, std::uint32_t channels) {
        std::vector<PlaneSet> inputs;
        for (Link& link : _graph._links) {
            if (link.to != &node || link.from == nullptr || channels == 0) continue;
            const AVAudioFormat format = link.format.value_or(_plan.format());
            if (const auto* player = dynamic_cast<const AVAudioPlayerNode*>(link.from)) {
                player->stream()->setOutput(format.sampleRate, _plan.format().sampleRate, _offline);
                inputs.push_back(_plan.play(player->stream(), channels, format.channelCount));
            } else {
                inputs.push_back(_plan.map(flowThrough(link, format), channels));
            }
        }
        return inputs;
    }

    // What comes out of `link`: at the output's rate, as it is after it was brought into the link's format.
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

std::unique_ptr<RenderPlan> NodeGraph::compile(const AVAudioFormat& format, bool offline) {
    auto plan = std::make_unique<RenderPlan>(format);
    plan->setOutput(Compilation(*this, *plan, offline).outputOf(*_output));
    return plan;
}

void NodeGraph::setBlockFrames(std::uint32_t frames) {
    if (frames == _blockFrames) return;
    _blockFrames = frames;
    for (const auto& [node, member] : _members) {
        if (member.processor) member.processor->setBlockFrames(frames);
    }
}

void NodeGraph::reportBadSamples() {
    for (auto& [node, member] : _members) {
        if (!member.badSamples->seen || member.saidBadSamples) continue;
        member.saidBadSamples = true;
        warn("The effect gives samples that are no numbers; they are silenced.");
    }
}

} // namespace platform
