// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/fatal.hpp"

#include "platform/foundation/console.hpp"

#include <cstdio>
#include <cstdlib>

namespace platform {

void fatal(std::string_view message) {
    std::fflush(stdout);
    warn(message);
    std::abort();
}

} // namespace platform
