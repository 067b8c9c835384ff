// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Restricts access to files with Landlock, as a part of confining a process. Source: the kernel's
// documentation of Landlock.
#pragma once

#include "platform/foundation/confinement.hpp"

namespace platform {

/// Returns the version of the kernel's Landlock interface, or 0 if the kernel has none.
[[nodiscard]] int landlockVersion() noexcept;
/// The first version that restricts truncating files.
inline constexpr int FirstLandlockThatTruncates = 3;
/// Restricts access to files and sockets as described at confineTo. no_new_privs must be set.
[[nodiscard]] bool allowFiles(const ReachableFiles& files, Sockets sockets);

} // namespace platform
