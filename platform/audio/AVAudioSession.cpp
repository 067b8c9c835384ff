// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/AVAudioSession.hpp"

#include "platform/audio/OutputDevice.hpp"

namespace platform {

AVAudioSession& AVAudioSession::sharedInstance() {
    static auto& session = *new AVAudioSession; // NOLINT: never destroyed, as the output is not
    return session;
}

std::optional<Error> AVAudioSession::setCategory(AVAudioSessionCategory /*category*/,
                                                 AVAudioSessionMode /*mode*/, CategoryOptions /*options*/) {
    // Every stream of this program states this one category when it is opened (media role "Music").
    const std::scoped_lock lock(_mutex);
    return _faults.setCategory ? _faults.setCategory() : std::nullopt;
}

std::optional<Error> AVAudioSession::setActive(bool active, SetActiveOptions /*options*/) {
    const std::scoped_lock lock(_mutex);
    if (_faults.setActive) {
        if (auto error = _faults.setActive(active)) return error;
    }
    if (active == (_claimed != nullptr)) return std::nullopt;
    if (active) {
        auto device = sharedOutputDevice();
        if (auto error = device->open()) return error;
        _claimed = std::move(device);
    } else {
        _claimed->close();
        _claimed.reset();
    }
    return std::nullopt;
}

void AVAudioSession::setFaults(Faults faults) {
    const std::scoped_lock lock(_mutex);
    _faults = std::move(faults);
}

} // namespace platform
