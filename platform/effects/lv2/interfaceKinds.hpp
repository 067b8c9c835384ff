// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Which programs run the interfaces of which toolkits. Any thread.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

namespace platform::lv2 {

/// Returns the name of the program that runs interfaces of this kind, in a process of its own.
[[nodiscard]] const char* interfaceProgram(Interface::Kind kind) noexcept;

/// Returns whether this program is installed. Those for other toolkits than X11 are optional.
[[nodiscard]] bool hasInterfaceProgram(Interface::Kind kind);

} // namespace platform::lv2
