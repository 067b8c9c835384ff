// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The capital cities as names to choose from: one list for the process, which may be replaced. Any thread.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

/// Returns a copy of the list: initially 197 names, from "Kabul" to "Harare".
[[nodiscard]] std::vector<std::string> capitals();

/// Replaces the list.
void setCapitals(std::vector<std::string> names);

} // namespace tonewright
