// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program's texts in the user's language. The template for translators in po/ contains the texts
// passed to `translated` and those marked in interface descriptions. Any thread.
#pragma once

#include "platform/foundation/product.hpp"

namespace platform {

/// The name under which translations are found: a file in share/locale/LANGUAGE/LC_MESSAGES.
inline constexpr const char* TextDomain = product::Name;

/// Returns `text` in the user's language; itself if there is no translation.
[[nodiscard]] const char* translated(const char* text);

/// Looks for translations in `directory` from now on. At entry, before any other thread runs.
void findTranslationsIn(const char* directory);

} // namespace platform
