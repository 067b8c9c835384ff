// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Texts about a component's description: the report at start, and the record's plain form.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"

#include <string>

namespace tonewright {

/// Prints the hosting process, the component's codes as text and its flags in hexadecimal ("%#010x").
void printComponentReport(const platform::AudioComponentDescription& description);

/// Returns the record's name and its five fields as decimal values.
[[nodiscard]] std::string describe(const platform::AudioComponentDescription& description);

} // namespace tonewright
