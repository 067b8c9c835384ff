// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the toolkit's start decides for the web engine, while no other thread reads the environment.
#pragma once

namespace platform {

/// The web engine's own switch: "1" leaves its processes without a sandbox, "0" gives them one. Set at the
/// toolkit's start, and changed to "1" before the engine's first page where no sandbox can be built.
inline constexpr const char* SandboxVariable = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";

} // namespace platform
