// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect as a node of the engine's graph. Any thread except the audio thread.
#pragma once

#include "platform/audio/AVAudioNode.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AudioComponentDescription.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Instantiation options; none exist yet.
enum class AudioComponentInstantiationOptions : std::uint32_t { None = 0 };

class AVAudioUnit final : public AVAudioNode {
  public:
    using Completion = std::function<void(std::shared_ptr<AVAudioUnit>, std::optional<Error>)>;

    /// Creates a unit of the first component in the registry that matches `description`. Returns at once and
    /// works on a background thread. The completion is called once, on the main thread, with the unit or with
    /// the error, which is also reported on standard error.
    static void instantiate(const AudioComponentDescription& description,
                            AudioComponentInstantiationOptions options, Completion completion);

    explicit AVAudioUnit(std::shared_ptr<AUAudioUnit> unit)
        : _unit(std::move(unit)) {}

    /// Returns the node's effect.
    [[nodiscard]] const std::shared_ptr<AUAudioUnit>& auAudioUnit() const noexcept { return _unit; }
    [[nodiscard]] std::shared_ptr<NodeProcessor> processor() const override { return _unit->processor(); }

  private:
    std::shared_ptr<AUAudioUnit> _unit;
};

} // namespace platform
