// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The owner of one reference to an object of the toolkit. Main thread only.
#pragma once

#include <utility>

namespace platform {

/// Returns `object`, which is not null, with one more reference; a floating one is sunk.
[[nodiscard]] void* keepGObject(void* object) noexcept;
/// Gives up one reference to `object`.
void releaseGObject(void* object) noexcept;

template <class T>
class GObjectRef {
  public:
    GObjectRef() = default;
    /// Takes over a reference that the caller owns.
    [[nodiscard]] static GObjectRef adopt(T* object) noexcept { return GObjectRef(object); }
    /// Takes its own reference; a floating one is sunk.
    [[nodiscard]] static GObjectRef keep(T* object) noexcept {
        return GObjectRef(object == nullptr ? nullptr : static_cast<T*>(keepGObject(object)));
    }

    GObjectRef(GObjectRef&& other) noexcept
        : _object(std::exchange(other._object, nullptr)) {}
    GObjectRef& operator=(GObjectRef&& other) noexcept {
        std::swap(_object, other._object);
        return *this;
    }
    GObjectRef(const GObjectRef&) = delete;
    GObjectRef& operator=(const GObjectRef&) = delete;
    ~GObjectRef() {
        if (_object != nullptr) releaseGObject(_object);
    }

    [[nodiscard]] T* get() const noexcept { return _object; }
    [[nodiscard]] explicit operator bool() const noexcept { return _object != nullptr; }

  private:
    explicit GObjectRef(T* object) noexcept
        : _object(object) {}
    T* _object = nullptr;
};

} // namespace platform
