// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The one way in which the program ends itself when a precondition is violated. Any thread except the audio
// thread, because it writes.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// Flushes standard output, writes `message` as one line to standard error and aborts.
[[noreturn]] void fatal(std::string_view message);

/// The text of the fatal error for a required object that is absent.
inline constexpr std::string_view UnexpectedNil =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";

/// The text of the fatal error for an absent object that is unwrapped explicitly.
inline constexpr std::string_view UnexpectedNilUnwrapping =
    "Unexpectedly found nil while unwrapping an Optional value";

/// Returns the object behind `pointer`; an absent one is fatal.
template <class T>
[[nodiscard]] T& unwrap(const std::shared_ptr<T>& pointer) {
    if (!pointer) fatal(UnexpectedNil);
    return *pointer;
}

/// Returns the value in `optional`; an absent one is fatal.
template <class T>
[[nodiscard]] const T& unwrap(const std::optional<T>& optional) {
    if (!optional) fatal(UnexpectedNil);
    return *optional;
}

} // namespace platform
