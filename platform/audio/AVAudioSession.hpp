// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The process's claim on the sound output. Any thread except the audio thread.
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
    /// Option sets; no options exist on this system.
    enum class CategoryOptions : std::uint64_t { None = 0 };
    enum class SetActiveOptions : std::uint64_t { None = 0 };

    [[nodiscard]] static AVAudioSession& sharedInstance();

    /// Sets the purpose of the sound. The absence of a sound server is not an error.
    [[nodiscard]] std::optional<Error> setCategory(AVAudioSessionCategory category, AVAudioSessionMode mode,
                                                   CategoryOptions options);
    /// Claims the output (`active`) or releases it. Claiming waits for the server's answer, but never for
    /// sound, and returns an error if the server refuses. The absence of a sound server is not an error.
    /// Repeated calls have no effect.
    [[nodiscard]] std::optional<Error> setActive(bool active, SetActiveOptions options);

  private:
    AVAudioSession() = default;
    std::mutex _mutex;                            // guards the member below
    std::shared_ptr<class OutputDevice> _claimed; // the device claimed while active
};

} // namespace platform
