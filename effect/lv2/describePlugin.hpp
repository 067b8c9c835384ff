// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The description of the plug-in and of its panel in the bundle.
#pragma once

#include <ostream>

namespace tonewright::effect {

/// Writes the file tonewright.ttl: the plug-in with its ports, and the panel.
void writePlugin(std::ostream& out);

} // namespace tonewright::effect
