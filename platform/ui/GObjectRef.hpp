// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A smart pointer that owns one reference to a GObject. Main thread only.
#pragma once

#include <utility>

namespace platform {

/// Adds a reference to `object`, which must not be null, or sinks its floating reference. Returns `object`.
[[nodiscard]] void* keepGObject(void* object) noexcept;
/// Drops one reference to `object`.
void releaseGObject(void* object) noexcept;

template <class T>
class GObjectRef {
  public:
    GObjectRef() = default;
    /// Takes over a reference that the caller owns.
    [[nodiscard]] static GObjectRef adopt(T* object) noexcept { return GObjectRef(object); }
    /// Adds a reference to `object`, or sinks its floating reference. `object` may be null.
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
