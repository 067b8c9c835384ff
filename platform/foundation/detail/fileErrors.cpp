// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/fileErrors.hpp"

#include "platform/foundation/detail/PathLocation.hpp"

#include <cstring>

namespace platform::detail {
namespace {

std::string reasonOf(int errorNumber) {
    const char* text = ::strerrordesc_np(errorNumber); // in English, independent of the locale
    return text != nullptr ? text : "error " + std::to_string(errorNumber);
}

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

} // namespace

std::string quotedName(std::string_view path) {
    const std::string name = splitPath(path).name;
    return quoted(name.empty() ? path : name);
}

Error itemError(int errorNumber, std::string_view path, std::string_view participle) {
    return posixError(errorNumber, "The file " + quotedName(path) + " couldn't be " +
                                       std::string(participle) + " (" + reasonOf(errorNumber) + ").");
}

Error attributesError(int errorNumber, std::string_view path) {
    return posixError(errorNumber, "The attributes of the file " + quotedName(path) + " couldn't be read (" +
                                       reasonOf(errorNumber) + ").");
}

Error readingError(int errorNumber, std::string_view path) {
    return posixError(errorNumber, "The directory " + quoted(path) + " couldn't be read to its end (" +
                                       reasonOf(errorNumber) + ").");
}

} // namespace platform::detail
