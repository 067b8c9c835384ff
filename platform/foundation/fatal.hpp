// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The one way in which the program ends itself when a precondition is violated.
// Any thread, but not the audio thread: it writes.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// Flush standard output, write `message` as one line to standard error and abort.
[[noreturn]] void fatal(std::string_view message);

/// The text of the fatal error that a required but absent object raises.
inline constexpr std::string_view UnexpectedNil =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";

/// The text of the fatal error when it is unwrapped explicitly.
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
