// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What plug-ins and interfaces require, compared with what the host offers. Any thread.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"
#include "platform/foundation/Result.hpp"

#include <optional>
#include <string>

namespace platform::lv2 {

/// Returns the reason why the host cannot run `plugin`, as far as that is known without loading its library.
[[nodiscard]] std::optional<Error> refusal(const Plugin& plugin);
/// Creates the error that `plugin` cannot be used for `reason`.
[[nodiscard]] Error unusable(const Plugin& plugin, const std::string& reason);
/// Returns the first feature that the interface requires and the host lacks, or an empty string.
[[nodiscard]] std::string lackedInterfaceFeature(const Interface& interface);

} // namespace platform::lv2
