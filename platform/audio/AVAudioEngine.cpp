// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/AVAudioEngine.hpp"

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/EngineCore.hpp"

namespace platform {

std::shared_ptr<AVAudioEngine> AVAudioEngine::create(std::shared_ptr<OutputDevice> device) {
    if (!device) device = sharedOutputDevice();
    return std::shared_ptr<AVAudioEngine>(new AVAudioEngine(std::move(device)));
}

AVAudioEngine::AVAudioEngine(std::shared_ptr<OutputDevice> device)
    : _mainMixer(std::make_shared<AVAudioMixerNode>())
    , _output(std::make_shared<AVAudioOutputNode>(device))
    , _core(std::make_shared<EngineCore>(std::move(device), _mainMixer, _output)) {}

AVAudioEngine::~AVAudioEngine() {
    _core->shutDown();
}

void AVAudioEngine::attachNode(const std::shared_ptr<AVAudioNode>& node) {
    _core->attach(node);
}

void AVAudioEngine::detachNode(const std::shared_ptr<AVAudioNode>& node) {
    _core->detach(node);
}

void AVAudioEngine::connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                            std::optional<AVAudioFormat> format) {
    _core->connect(from, to, format);
}

void AVAudioEngine::disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node) {
    _core->disconnectInput(node);
}

void AVAudioEngine::prepare() {
    _core->prepare();
}

std::optional<Error> AVAudioEngine::start() {
    return _core->start();
}

void AVAudioEngine::stop() {
    _core->stop();
}

bool AVAudioEngine::isRunning() const {
    return _core->isRunning();
}

AVAudioFormat AVAudioOutputNode::outputFormatForBus(std::uint32_t /*bus*/) const {
    return _device->format();
}

} // namespace platform
