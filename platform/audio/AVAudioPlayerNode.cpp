// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/AVAudioPlayerNode.hpp"

#include "platform/audio/detail/PlayerStream.hpp"
#include "platform/foundation/fatal.hpp"

#include <algorithm>

namespace platform {

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
    if (!file) fatal(UnexpectedNil);
    _stream->schedule(std::move(file), std::max<std::int64_t>(atTime.value_or(0), 0),
                      std::move(completionHandler));
}

void AVAudioPlayerNode::play() {
    _stream->play();
}

void AVAudioPlayerNode::pause() {
    _stream->pause();
}

void AVAudioPlayerNode::stop() {
    const auto stream = _stream; // a completion may release this node
    stream->stop();
}

bool AVAudioPlayerNode::isPlaying() const {
    return _stream->isPlaying();
}

} // namespace platform
