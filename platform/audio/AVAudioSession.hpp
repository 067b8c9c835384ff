// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The process's claim on the sound output. Any thread but the audio thread.
#pragma once

#include "platform/foundation/Error.hpp"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace platform {

enum class AVAudioSessionCategory : std::uint64_t { Playback };
enum class AVAudioSessionMode : std::uint64_t { Default };

class AVAudioSession {
  public:
    /// Sets of options; only the empty sets exist on this system.
    enum class CategoryOptions : std::uint64_t { None = 0 };
    enum class SetActiveOptions : std::uint64_t { None = 0 };

    [[nodiscard]] static AVAudioSession& sharedInstance();

    /// Sets the purpose of the sound. Never fails because there is no server.
    [[nodiscard]] std::optional<Error> setCategory(AVAudioSessionCategory category, AVAudioSessionMode mode,
                                                   CategoryOptions options);
    /// Claims the output, so that a server which refuses does so now, or gives it back. Waits for the
    /// server's answer, never for sound; having no server at all is not an error. Repeated calls are
    /// harmless.
    [[nodiscard]] std::optional<Error> setActive(bool active, SetActiveOptions options);

  private:
    AVAudioSession() = default;
    std::mutex _mutex;                            // guards the field below
    std::shared_ptr<class OutputDevice> _claimed; // the device claimed while active
};

} // namespace platform
