// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The edges of a view. Any thread.
#pragma once

namespace platform {

enum class LayoutEdge { Top, Leading, Bottom, Trailing };

} // namespace platform
