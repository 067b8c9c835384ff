// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Ends the program when a precondition is violated. Any thread except the audio thread, because `fatal`
// writes to standard error.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// Flushes standard output, writes `message` as one line to standard error and aborts.
[[noreturn]] void fatal(std::string_view message);

/// The text of the fatal error for a required object that is null.
inline constexpr std::string_view UnexpectedNil =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";

/// The text of the fatal error for a null object that is unwrapped explicitly.
inline constexpr std::string_view UnexpectedNilUnwrapping =
    "Unexpectedly found nil while unwrapping an Optional value";

/// Returns the object to which `pointer` points. A null pointer is a fatal error.
template <class T>
[[nodiscard]] T& unwrap(const std::shared_ptr<T>& pointer) {
    if (!pointer) fatal(UnexpectedNil);
    return *pointer;
}

/// Returns the value of `optional`. It is a fatal error if there is none.
template <class T>
[[nodiscard]] const T& unwrap(const std::optional<T>& optional) {
    if (!optional) fatal(UnexpectedNil);
    return *optional;
}

} // namespace platform
