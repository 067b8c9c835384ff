// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Either a value, or the error that explains why there is none.
#pragma once

#include "platform/foundation/Error.hpp"

#include <utility>
#include <variant>

namespace platform {

template <class T>
class Result {
  public:
    // Both constructors are implicit, so that a function can return a plain T or a plain Error.
    Result(T value)
        : _content(std::in_place_index<0>, std::move(value)) {}
    Result(Error error)
        : _content(std::in_place_index<1>, std::move(error)) {}

    [[nodiscard]] explicit operator bool() const noexcept { return _content.index() == 0; }
    [[nodiscard]] T& value() { return std::get<0>(_content); }
    [[nodiscard]] const T& value() const { return std::get<0>(_content); }
    [[nodiscard]] const Error& error() const { return std::get<1>(_content); }

  private:
    std::variant<T, Error> _content;
};

} // namespace platform
