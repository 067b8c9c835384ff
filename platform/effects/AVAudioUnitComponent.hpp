// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An entry of the component registry. Any thread.
#pragma once

#include "platform/effects/ComponentProvider.hpp"

namespace platform {

class AVAudioUnitComponent {
  public:
    explicit AVAudioUnitComponent(ComponentRecord record)
        : _record(std::move(record)) {}

    /// Returns the component's own description, not the one that was searched for.
    [[nodiscard]] const AudioComponentDescription& audioComponentDescription() const noexcept {
        return _record.description;
    }
    [[nodiscard]] const std::string& name() const noexcept { return _record.name; }
    /// Returns the component's version string; empty if it does not state one.
    [[nodiscard]] const std::string& versionString() const noexcept { return _record.version; }
    [[nodiscard]] const ComponentRecord& record() const noexcept { return _record; }

  private:
    ComponentRecord _record;
};

} // namespace platform
