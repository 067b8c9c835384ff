// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The process of an interface, which is the same for all toolkits.
#pragma once

#include "platform/effects/child/InterfaceToolkit.hpp"

namespace platform::lv2 {

/// How many words follow the name of the program. The first is InterfaceWord; then come the kind of the
/// interface as a number, the URI of the effect, the URI of the interface, its parent window, the scale, the
/// sample rate and the display. Descriptor 3 is the socket for packets, 4 the socket for URIDs, and 5 the
/// memory for messages.
inline constexpr int InterfaceWords = 8;
inline constexpr const char* InterfaceWord = "--interface";

/// The entry point of such a program. `makeToolkit` is called when the process is confined and knows its
/// display. Creates the interface, serves until the host closes the socket, and ends the process.
[[noreturn]] void runInterfaceProcess(int count, char** arguments,
                                      std::unique_ptr<InterfaceToolkit> (*makeToolkit)());

} // namespace platform::lv2
