// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Owns a file descriptor and closes it in the destructor.
#pragma once

#include <utility>

namespace platform {

class Descriptor {
  public:
    Descriptor() noexcept = default;
    explicit Descriptor(int number) noexcept
        : _number(number) {}
    Descriptor(Descriptor&& other) noexcept
        : _number(std::exchange(other._number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            close();
            _number = std::exchange(other._number, -1);
        }
        return *this;
    }
    ~Descriptor() { close(); }

    [[nodiscard]] explicit operator bool() const noexcept { return _number >= 0; }
    [[nodiscard]] int get() const noexcept { return _number; }
    void close() noexcept;

  private:
    int _number = -1;
};

} // namespace platform
