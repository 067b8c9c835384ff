// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Real-time scheduling for the thread of a device whose library does not provide it.
#pragma once

namespace platform {

/// Asks for real-time scheduling of this thread, if it has none yet; a refusal changes nothing. A system
/// call: once, before the first block.
void askForRealtimePriority() noexcept;

} // namespace platform
