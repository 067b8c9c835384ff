// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A value, or the error in its place.
#pragma once

#include "platform/foundation/Error.hpp"

#include <utility>
#include <variant>

namespace platform {

template <class T>
class Result {
  public:
    Result(T value)
        : _content(std::in_place_index<0>, std::move(value)) {} // a value is a result
    Result(Error error)
        : _content(std::in_place_index<1>, std::move(error)) {} // and so is an error

    [[nodiscard]] explicit operator bool() const noexcept { return _content.index() == 0; }
    [[nodiscard]] T& value() { return std::get<0>(_content); }
    [[nodiscard]] const T& value() const { return std::get<0>(_content); }
    [[nodiscard]] const Error& error() const { return std::get<1>(_content); }

  private:
    std::variant<T, Error> _content;
};

} // namespace platform
