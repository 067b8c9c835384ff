// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The confinement of an effect's process; a table in docs/HOSTING.md lists what the effect can access. Call
// before any other thread runs.
#pragma once

#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/foundation/Error.hpp"

#include <optional>
#include <string>

namespace platform::lv2 {

/// What the process runs.
enum class Confinement {
    Sound,
    Interface, // which also needs the display: the X cookie, local sockets and the graphics devices
};

/// Removes the rights that the process does not need, as far as the kernel supports that, and sets
/// environment variables to the effect's own folders. Does nothing if the environment turns the confinement
/// off. The process can read the bundles in `index`. Returns an error if the kernel refuses a restriction
/// that it supports; the effect must not run then.
[[nodiscard]] std::optional<Error> confineEffect(const std::string& uri, Confinement kind,
                                                 const BundleIndex& index);

} // namespace platform::lv2
