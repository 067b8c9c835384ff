// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates, replaces, destroys and calls the instance of a plug-in. The plug-in's code runs on its library's
// thread, and the caller waits for it until a deadline. A call that does not return in time continues on that
// thread, which keeps everything that it uses alive; no other call is made and no other instance is created
// until it returns. Control side, one operation at a time, except where the comments state otherwise.
#pragma once

#include "platform/effects/running/Instance.hpp"
#include "platform/effects/running/PluginThread.hpp"
#include "platform/effects/running/PortBuffers.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform::lv2 {

/// A point in time by which one or several calls must have returned.
class Deadline {
  public:
    explicit Deadline(std::chrono::seconds limit)
        : _limit(limit)
        , _end(std::chrono::steady_clock::now() + limit) {}
    [[nodiscard]] std::chrono::seconds limit() const noexcept { return _limit; }
    [[nodiscard]] std::chrono::steady_clock::time_point end() const noexcept { return _end; }

  private:
    std::chrono::seconds _limit;
    std::chrono::steady_clock::time_point _end;
};

class InstanceKeeper {
  public:
    /// Whether `run` may be in progress during a call. With Excluded, the caller must have closed the
    /// processor's gate, and `get` returns null until the call has returned.
    enum class DuringRun { Allowed, Excluded };

    /// Connects the ports of instances to `buffers`.
    InstanceKeeper(std::shared_ptr<const Plugin> plugin, std::shared_ptr<PortBuffers> buffers)
        : _plugin(std::move(plugin))
        , _buffers(std::move(buffers)) {}

    /// Creates the instance, or returns the reason why that failed.
    [[nodiscard]] std::optional<Error> make(const Instance::Setup& setup, const Deadline& deadline);
    /// Destroys the instance, if there is one. No `run` may be in progress.
    [[nodiscard]] std::optional<Error> drop(const Deadline& deadline);
    /// Calls `task` with the instance on the library's thread. There must be an instance, and `task` must own
    /// everything that it uses. `doing` completes the error "it has not returned from".
    [[nodiscard]] std::optional<Error> call(std::function<void(Instance&)> task, DuringRun duringRun,
                                            const Deadline& deadline, const std::string& doing);
    /// Activate and deactivate the instance. No `run` may be in progress.
    [[nodiscard]] std::optional<Error> activate(const Deadline& deadline);
    [[nodiscard]] std::optional<Error> deactivate(const Deadline& deadline);
    /// Changes the instance's block length. No `run` may be in progress.
    [[nodiscard]] std::optional<Error> setBlockFrames(std::uint32_t frames, const Deadline& deadline);

    /// Returns whether there is no instance.
    [[nodiscard]] bool isEmpty() const noexcept { return !_instance; }
    /// Returns an error if an earlier call has not returned yet.
    [[nodiscard]] std::optional<Error> stuck() const;
    /// Returns the instance, or null if there is none or a call that excludes `run` is in progress. The audio
    /// thread may call this inside the processor's gate.
    [[nodiscard]] Instance* get() const noexcept {
        return _instance && !_instance->excludesRun() ? _instance.get() : nullptr;
    }

  private:
    [[nodiscard]] std::optional<Error> run(std::function<void()> task, const Deadline& deadline,
                                           const std::string& doing);

    const std::shared_ptr<const Plugin> _plugin;
    const std::shared_ptr<PortBuffers> _buffers;     // kept alive by an abandoned instance
    std::shared_ptr<PluginThread> _thread;           // the thread of the plug-in's library
    std::shared_ptr<Instance> _instance;             // the last reference is released on _thread
    std::shared_ptr<const PluginThread::Call> _late; // the last call that did not return in time
};

} // namespace platform::lv2
