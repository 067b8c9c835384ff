// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Error.hpp"

namespace platform {

std::string Error::description() const {
    return "Error Domain=" + _domain + " Code=" + std::to_string(_code) + " \"" + _localizedDescription +
           "\"";
}

Error posixError(int errorNumber, std::string sentence) {
    return {"POSIX", errorNumber, std::move(sentence)};
}

} // namespace platform
