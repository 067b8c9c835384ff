// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/AVAudioSession.hpp"

#include "platform/audio/seams.hpp"

#include <utility>

namespace platform {
namespace {

struct Faults {
    std::mutex mutex; // guards `set`
    SessionFaults set;
};

Faults& faults() {
    static auto& shared = *new Faults; // NOLINT: never destroyed, like the session
    return shared;
}

std::optional<Error> faultOfCategory() {
    const std::scoped_lock lock(faults().mutex);
    return faults().set.setCategory ? faults().set.setCategory() : std::nullopt;
}

std::optional<Error> faultOfActive(bool active) {
    const std::scoped_lock lock(faults().mutex);
    return faults().set.setActive ? faults().set.setActive(active) : std::nullopt;
}

} // namespace

AVAudioSession& AVAudioSession::sharedInstance() {
    static auto& session = *new AVAudioSession; // NOLINT: never destroyed, like the shared output
    return session;
}

std::optional<Error> AVAudioSession::setCategory(AVAudioSessionCategory /*category*/,
                                                 AVAudioSessionMode /*mode*/, CategoryOptions /*options*/) {
    // There is only one category. Every stream of this program states it when it is opened (media role
    // "Music").
    return faultOfCategory();
}

std::optional<Error> AVAudioSession::setActive(bool active, SetActiveOptions /*options*/) {
    const std::scoped_lock lock(_mutex);
    if (auto error = faultOfActive(active)) return error;
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

void setSessionFaults(SessionFaults set) {
    const std::scoped_lock lock(faults().mutex);
    faults().set = std::move(set);
}

} // namespace platform
