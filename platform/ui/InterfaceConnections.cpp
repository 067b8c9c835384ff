// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/InterfaceConnections.hpp"

namespace platform {

const InterfaceConnections::Action* InterfaceConnections::findAction(std::string_view selector) const {
    const auto found = _actions.find(selector);
    return found == _actions.end() ? nullptr : &found->second;
}

} // namespace platform
