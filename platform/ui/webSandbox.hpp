// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The variable that turns WebKit's sandbox on or off. startToolkit() sets the variable, while no other thread
// reads the environment.
#pragma once

namespace platform {

/// An environment variable that WebKit reads: "1" runs its processes without a sandbox, "0" with one. It is
/// changed to "1" before the first page is opened if the system does not allow a sandbox.
inline constexpr const char* SandboxVariable = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";

} // namespace platform
