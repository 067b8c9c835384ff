// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/uniqueName.hpp"

#include "platform/foundation/ProcessInfo.hpp"

namespace tonewright {

std::string uniqueName(std::optional<std::string_view> withPrefix) {
    const std::string unique = platform::ProcessInfo::processInfo().globallyUniqueString();
    return withPrefix ? std::string(*withPrefix) + "-" + unique : unique;
}

} // namespace tonewright
