// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Restricts system calls with seccomp, as a part of confining a process. Source: seccomp(2).
#pragma once

#include "platform/foundation/confinement.hpp"

namespace platform {

/// Returns whether the kernel supports filters and this filter knows the machine's system calls.
[[nodiscard]] bool hasSeccomp() noexcept;
/// Restricts the system calls as described at confineTo. no_new_privs must be set.
[[nodiscard]] bool refuseCalls(Sockets sockets);

} // namespace platform
