// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Descriptor.hpp"

#include <unistd.h>

namespace platform {

void Descriptor::close() noexcept {
    if (_number >= 0) ::close(_number);
    _number = -1;
}

} // namespace platform
