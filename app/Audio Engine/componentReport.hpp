// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Texts about a component description: the report at startup, and a list of its fields.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"

#include <string>

namespace tonewright {

/// Prints the hosting process, the component's codes as text and its flags in hexadecimal ("%#010x").
void printComponentReport(const platform::AudioComponentDescription& description);

/// Returns the name of the structure and its five fields in decimal.
[[nodiscard]] std::string describe(const platform::AudioComponentDescription& description);

} // namespace tonewright
