// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect as a node of the engine's graph. Any thread but the audio thread.
#pragma once

#include "platform/audio/AVAudioNode.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AudioComponentDescription.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Options of an instantiation; there are none yet.
enum class AudioComponentInstantiationOptions : std::uint32_t { None = 0 };

class AVAudioUnit final : public AVAudioNode {
  public:
    using Completion = std::function<void(std::shared_ptr<AVAudioUnit>, std::optional<Error>)>;

    /// Creates a unit of the first component of the registry that matches `description` and returns at once.
    /// The work is done on a background thread; the completion is called once, on the main thread, with the
    /// unit or with the error, which is reported on standard error as well.
    static void instantiate(const AudioComponentDescription& description,
                            AudioComponentInstantiationOptions options, Completion completion);

    explicit AVAudioUnit(std::shared_ptr<AUAudioUnit> unit)
        : _unit(std::move(unit)) {}

    /// Returns the effect of the node.
    [[nodiscard]] const std::shared_ptr<AUAudioUnit>& auAudioUnit() const noexcept { return _unit; }
    [[nodiscard]] std::shared_ptr<NodeProcessor> processor() const override { return _unit->processor(); }

  private:
    std::shared_ptr<AUAudioUnit> _unit;
};

} // namespace platform
