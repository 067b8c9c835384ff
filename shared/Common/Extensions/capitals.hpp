// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A list of names, initially those of capital cities. The process has only one list, which can be replaced.
// Any thread.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

/// Returns a copy of the list, which initially contains 197 names from "Kabul" to "Harare".
[[nodiscard]] std::vector<std::string> capitals();

/// Replaces the list.
void setCapitals(std::vector<std::string> names);

} // namespace tonewright
