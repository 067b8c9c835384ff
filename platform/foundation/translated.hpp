// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Translates the program's texts. The template for translators in po/ contains the texts passed to
// `translated` and the texts marked in interface descriptions. Any thread.
#pragma once

#include "platform/foundation/product.hpp"

namespace platform {

/// The base name of the translation files in share/locale/LANGUAGE/LC_MESSAGES.
inline constexpr const char* TextDomain = product::Name;

/// Returns `text` in the user's language, or `text` itself if there is no translation.
[[nodiscard]] const char* translated(const char* text);

/// Sets the directory of the translation files. Call before any other thread runs.
void findTranslationsIn(const char* directory);

} // namespace platform
