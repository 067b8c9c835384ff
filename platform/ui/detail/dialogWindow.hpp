// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the dialogs share. Main thread only.
#pragma once

#include "platform/ui/UIViewController.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <gtk/gtk.h>
#include <string>
#include <string_view>

namespace platform {

/// Returns the window on which `presenter` is shown; null if it is on none.
[[nodiscard]] GtkWindow* windowOf(UIViewController& presenter);

/// Returns `text` in a form that the toolkit accepts: valid UTF-8 without NUL, the rest replaced by U+FFFD;
/// "…" instead of what follows the first `mostCharacters`, and line ends within words that are too long.
[[nodiscard]] std::string showableText(std::string_view text, std::size_t mostCharacters = SIZE_MAX);

/// Calls `completion`, unless it is empty, in a later turn of the loop.
void callLater(std::function<void()> completion);

} // namespace platform
