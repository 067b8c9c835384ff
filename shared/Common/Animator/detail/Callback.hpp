// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An optional callable in 24 bytes that is as cheap to call as a function pointer. The animation classes use
// it for their callbacks. A callable may replace or clear its own Callback while it runs: the call then still
// runs to its end, and the new callable is used from the next call on.
//
// Function pointers, callables without data, and lambdas that are not `mutable` and capture at most 16
// trivially copyable bytes are stored inside the object. All others are stored in one heap allocation, so
// that their state persists between calls. (A lambda must not capture a copy of an object that a const call
// changes.) Copies are deep. Single-threaded, like the objects that have callbacks.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace tonewright {

template <class... Arguments>
class Callback {
  public:
    constexpr Callback() noexcept = default;
    constexpr Callback(std::nullptr_t) noexcept {}

    /// Stores a copy of `callable`. A null function pointer or an empty std::function makes the callback
    /// empty.
    template <class Callable>
    requires(!std::same_as<std::remove_cvref_t<Callable>, Callback> &&
             std::copy_constructible<std::decay_t<Callable>> &&
             std::invocable<std::decay_t<Callable>&, Arguments...>) Callback(Callable&& callable) {
        using Target = std::decay_t<Callable>;
        if constexpr (std::is_constructible_v<Target, std::nullptr_t> && requires { callable == nullptr; }) {
            if (callable == nullptr) return;
        }
        if constexpr (FitsInside<Target>) {
            ::new (static_cast<void*>(_storage.bytes)) Target(std::forward<Callable>(callable));
        } else {
            _storage.shared =
                std::make_unique<SharedTarget<Target>>(std::forward<Callable>(callable)).release();
        }
        _operations = &OperationsOf<Target>;
    }

    Callback(const Callback& other)
        : _storage(other._operations != nullptr ? other._operations->copy(other._storage) : Storage{})
        , _operations(other._operations) {}
    Callback(Callback&& other) noexcept
        : _storage(other._storage)
        , _operations(std::exchange(other._operations, nullptr)) {}
    /// Takes over the callable of `other`. The previous callable is destroyed when it is no longer running.
    Callback& operator=(Callback other) noexcept {
        std::swap(_storage, other._storage);
        std::swap(_operations, other._operations);
        return *this;
    }
    ~Callback() {
        if (_operations != nullptr) _operations->release(_storage);
    }

    [[nodiscard]] explicit operator bool() const noexcept { return _operations != nullptr; }
    /// Calls the callable. The callback must not be empty.
    void operator()(Arguments... arguments) const {
        _operations->call(_storage, std::forward<Arguments>(arguments)...);
    }

  private:
    // A callable that is stored on the heap. `holders` counts the callback that owns it and the calls in
    // progress.
    struct Shared {
        std::uint32_t holders = 1;
        Shared() = default;
        Shared(const Shared&) = delete;
        Shared& operator=(const Shared&) = delete;
        virtual ~Shared() = default;
    };
    template <class Target>
    struct SharedTarget final : Shared {
        template <class Source>
        explicit SharedTarget(Source&& source)
            : target(std::forward<Source>(source)) {}
        Target target;
    };

    union Storage {
        std::byte bytes[2 * sizeof(void*)] = {};
        Shared* shared;
    };

    struct Operations {
        void (*call)(const Storage&, Arguments&&...);
        Storage (*copy)(const Storage&);
        void (*release)(const Storage&);
    };

    // A callable that is stored inside the object is copied for each call, because the call may overwrite it.
    // That is correct only if a call cannot change the callable. Classes may have `mutable` members, but
    // lambdas have none. A class that is not an aggregate, not default-constructible and not copy-assignable
    // is taken for a capturing lambda.
    template <class Target>
    static constexpr bool LooksLikeCapturingLambda =
        std::is_class_v<Target> && !std::is_aggregate_v<Target> && !std::is_default_constructible_v<Target> &&
        !std::is_copy_assignable_v<Target>;
    template <class Target>
    static constexpr bool IsUnchangedByCalls =
        std::is_scalar_v<Target> || std::is_empty_v<Target> || LooksLikeCapturingLambda<Target>;
    template <class Target>
    static constexpr bool FitsInside = sizeof(Target) <= sizeof(Storage) &&
                                       alignof(Target) <= alignof(Storage) &&
                                       std::is_trivially_copyable_v<Target>&& std::invocable<
                                           const Target&, Arguments...>&& IsUnchangedByCalls<Target>;

    static void release(Shared* shared) {
        if (--shared->holders == 0) std::unique_ptr<Shared>(shared).reset();
    }

    template <class Target>
    static void call(const Storage& storage, Arguments&&... arguments) {
        if constexpr (FitsInside<Target>) {
            const Storage kept = storage; // the call may overwrite its own storage
            (*std::launder(reinterpret_cast<const Target*>(kept.bytes)))(
                std::forward<Arguments>(arguments)...);
        } else {
            auto* shared = static_cast<SharedTarget<Target>*>(storage.shared);
            ++shared->holders;
            const std::unique_ptr<Shared, void (*)(Shared*)> held(shared, release);
            shared->target(std::forward<Arguments>(arguments)...);
        }
    }
    template <class Target>
    static Storage copy(const Storage& storage) {
        Storage result = storage;
        if constexpr (!FitsInside<Target>) {
            result.shared = std::make_unique<SharedTarget<Target>>(
                                static_cast<const SharedTarget<Target>*>(storage.shared)->target)
                                .release();
        }
        return result;
    }
    template <class Target>
    static void releaseTarget(const Storage& storage) {
        if constexpr (!FitsInside<Target>) release(storage.shared);
    }
    template <class Target>
    static constexpr Operations OperationsOf = {call<Target>, copy<Target>, releaseTarget<Target>};

    Storage _storage{};
    const Operations* _operations = nullptr;
};

} // namespace tonewright
