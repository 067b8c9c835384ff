// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keeps Xlib from ending the process after a protocol error. Before any other thread runs.
#pragma once

namespace platform::lv2 {

/// Has X protocol errors of the interface reported on standard error and otherwise ignored. Xlib is loaded
/// only here, because a process that runs the sound does not need it.
void tolerateXErrors();
/// Has them no longer reported: an interface that cleans up destroys windows that are gone with the panel's.
/// Any thread.
void ignoreXErrors() noexcept;

} // namespace platform::lv2
