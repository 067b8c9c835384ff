// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Real-time scheduling for the thread of a device whose library does not provide it.
#pragma once

namespace platform {

/// Requests real-time scheduling for this thread if it does not have it yet; a refusal changes nothing. Makes
/// system calls, so call it only once, before the first block.
void askForRealtimePriority() noexcept;

} // namespace platform
