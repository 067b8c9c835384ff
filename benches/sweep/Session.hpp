// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays a sound file repeatedly through a metered effect for as long as the object lives.
#pragma once

#include "MeteredNode.hpp"
#include "instantiate.hpp"

#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/OfflineDevice.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace bench {

class Session {
  public:
    Session(std::shared_ptr<platform::OutputDevice> device, std::shared_ptr<Meter> itsMeter,
            std::shared_ptr<platform::AVAudioFile> file)
        : meter(std::move(itsMeter))
        , _engine(platform::AVAudioEngine::create(std::move(device)))
        , _effect(std::make_shared<MeteredNode>(meter))
        , _file(std::move(file))
        , _again([this] {
            if (!_hasEnded) _player->scheduleFile(_file, std::nullopt, _again);
        }) {
        _engine->attachNode(_player);
        _engine->attachNode(_effect);
        _engine->connect(_player, _effect, std::nullopt);
        _engine->connect(_effect, _engine->mainMixerNode(), std::nullopt);
        _again();
        if (const auto failure = _engine->start()) say("failure", failure->localizedDescription());
        _player->play();
    }
    ~Session() {
        _hasEnded = true;
        _player->stop();
        _engine->stop();
        _engine->detachNode(_effect);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const std::shared_ptr<Meter> meter;

  private:
    const std::shared_ptr<platform::AVAudioEngine> _engine;
    const std::shared_ptr<platform::AVAudioPlayerNode> _player = platform::AVAudioPlayerNode::create();
    const std::shared_ptr<MeteredNode> _effect;
    const std::shared_ptr<platform::AVAudioFile> _file;
    std::atomic<bool> _hasEnded{false};
    const std::function<void()> _again; // schedules the next pass
};

class OfflineSession : public Session {
  public:
    OfflineSession(std::shared_ptr<platform::OfflineDevice> device, std::shared_ptr<Meter> itsMeter,
                   std::shared_ptr<platform::AVAudioFile> file)
        : Session(device, std::move(itsMeter), std::move(file))
        , _device(std::move(device)) {}

    /// Renders at least `seconds` in blocks of at most `frames`.
    void render(double seconds, std::uint32_t frames) {
        for (double left = seconds * _device->format().sampleRate; left > 0; left -= frames) {
            (void)_device->render(frames);
        }
    }
    /// Changes the device's rate; the engine follows asynchronously.
    void setRate(double rate) { _device->setFormat({rate, 2}); }

  private:
    const std::shared_ptr<platform::OfflineDevice> _device;
};

} // namespace bench
