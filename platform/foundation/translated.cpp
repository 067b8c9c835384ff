// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/translated.hpp"

#include <libintl.h>

namespace platform {

const char* translated(const char* text) {
    return dgettext(TextDomain, text);
}

void findTranslationsIn(const char* directory) {
    bindtextdomain(TextDomain, directory);
    bind_textdomain_codeset(TextDomain, "UTF-8");
}

} // namespace platform
