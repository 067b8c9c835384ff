// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/safeprint.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"

namespace tonewright {

void safeprint(std::string text) {
    platform::DispatchQueue::main().async([text = std::move(text)] { platform::print(text); });
}

void debugprint(std::string text) {
    safeprint(std::move(text));
}

} // namespace tonewright
