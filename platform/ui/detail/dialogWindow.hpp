// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Functions that the alert and the document picker share. Main thread only.
#pragma once

#include "platform/ui/UIViewController.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <gtk/gtk.h>
#include <string>
#include <string_view>

namespace platform {

/// Returns the window that shows `presenter`, or null.
[[nodiscard]] GtkWindow* windowOf(UIViewController& presenter);

/// Returns `text` in a form that GTK can display: invalid UTF-8 and NUL are replaced by U+FFFD, text beyond
/// `mostCharacters` characters by "…", and very long words are broken by line ends.
[[nodiscard]] std::string showableText(std::string_view text, std::size_t mostCharacters = SIZE_MAX);

/// Calls `completion`, unless it is empty, later on the main queue.
void callLater(std::function<void()> completion);

} // namespace platform
