// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/ApplicationIdentity.hpp"

#include <utility>

namespace platform {
namespace {

ApplicationIdentity& identity() noexcept {
    static ApplicationIdentity own;
    return own;
}

} // namespace

const ApplicationIdentity& applicationIdentity() noexcept {
    return identity();
}

void setApplicationIdentity(ApplicationIdentity other) {
    identity() = std::move(other);
}

} // namespace platform
