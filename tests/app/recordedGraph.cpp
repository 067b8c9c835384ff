// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Replaces AVAudioEngine.cpp and AVAudioPlayerNode.cpp of the platform.
#include "tests/app/recordedGraph.hpp"

#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/EngineCore.hpp"
#include "platform/audio/detail/PlayerStream.hpp"

namespace platform {
namespace {

constexpr auto note = tonewright::test::GraphRecord::note;

std::string nameOf(const std::shared_ptr<AVAudioNode>& node) {
    if (std::dynamic_pointer_cast<AVAudioPlayerNode>(node)) return "player";
    if (std::dynamic_pointer_cast<AVAudioMixerNode>(node)) return "mixer";
    if (std::dynamic_pointer_cast<AVAudioOutputNode>(node)) return "output";
    return "effect";
}

std::string textOf(const std::optional<AVAudioFormat>& format) {
    if (!format) return "no format";
    return std::to_string(static_cast<int>(format->sampleRate)) + " Hz, " +
           std::to_string(format->channelCount);
}

} // namespace

std::shared_ptr<AVAudioEngine> AVAudioEngine::create(std::shared_ptr<OutputDevice> device) {
    return std::shared_ptr<AVAudioEngine>(new AVAudioEngine(device ? device : sharedOutputDevice()));
}
AVAudioEngine::AVAudioEngine(std::shared_ptr<OutputDevice> device)
    : _mainMixer(std::make_shared<AVAudioMixerNode>())
    , _output(std::make_shared<AVAudioOutputNode>(device))
    , _core(std::make_shared<EngineCore>(std::move(device), _mainMixer, _output)) {}
AVAudioEngine::~AVAudioEngine() {
    _core->shutDown();
}
void AVAudioEngine::attachNode(const std::shared_ptr<AVAudioNode>& node) {
    note("attach " + nameOf(node));
    _core->attach(node);
}
void AVAudioEngine::detachNode(const std::shared_ptr<AVAudioNode>& node) {
    note("detach " + nameOf(node));
    _core->detach(node);
}
void AVAudioEngine::connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                            std::optional<AVAudioFormat> format) {
    note("connect " + nameOf(from) + " to " + nameOf(to) + ", " + textOf(format));
    _core->connect(from, to, format);
}
void AVAudioEngine::disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node) {
    note("disconnect input of " + nameOf(node));
    _core->disconnectInput(node);
}
void AVAudioEngine::prepare() {
    note("prepare engine");
    _core->prepare();
}
std::optional<Error> AVAudioEngine::start() {
    note("start engine");
    return _core->start();
}
void AVAudioEngine::stop() {
    note("stop engine");
    _core->stop();
}
AVAudioFormat AVAudioOutputNode::outputFormatForBus(std::uint32_t /*bus*/) const {
    return _device->format();
}

std::shared_ptr<AVAudioPlayerNode> AVAudioPlayerNode::create() {
    return std::shared_ptr<AVAudioPlayerNode>(new AVAudioPlayerNode);
}
AVAudioPlayerNode::AVAudioPlayerNode()
    : _stream(std::make_shared<PlayerStream>()) {}
AVAudioPlayerNode::~AVAudioPlayerNode() {
    _stream->shutDown();
}
void AVAudioPlayerNode::scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<std::int64_t> atTime,
                                     CompletionHandler completionHandler) {
    note("schedule " + file->url().lastPathComponent() + (atTime ? " later" : ""));
    _stream->schedule(std::move(file), atTime.value_or(0), std::move(completionHandler));
}
void AVAudioPlayerNode::play() {
    note("play");
    _stream->play();
}
void AVAudioPlayerNode::pause() {
    note("pause");
    _stream->pause();
}
void AVAudioPlayerNode::stop() {
    note("stop player");
    _stream->stop();
}

} // namespace platform
