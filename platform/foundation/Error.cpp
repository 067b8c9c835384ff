// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Error.hpp"

#include <utility>

namespace platform {
namespace {

std::string oneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            line += "\\n";
        } else if (byte < 0x20 || byte == 0x7F) {
            line += "\\x";
            line += "0123456789ABCDEF"[byte >> 4U];
            line += "0123456789ABCDEF"[byte & 15U];
        } else {
            line += c;
        }
    }
    return line;
}

} // namespace

Error::Error(std::string domain, long code, std::string_view localizedDescription)
    : _domain(std::move(domain))
    , _code(code)
    , _localizedDescription(oneLine(localizedDescription)) {}

std::string Error::description() const {
    return "Error Domain=" + _domain + " Code=" + std::to_string(_code) + " \"" + _localizedDescription +
           "\"";
}

Error posixError(int errorNumber, std::string_view sentence) {
    return {"POSIX", errorNumber, sentence};
}

} // namespace platform
