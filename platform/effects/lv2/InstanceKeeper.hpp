// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates, replaces and ends the one instance of a plug-in. The plug-in's code runs on separate threads, and
// the caller waits for it with a deadline: a call that does not return continues on its own, with everything
// that it uses, and no other instance is created beside it. Control side, one
// operation at a time, except for what the comments say.
#pragma once

#include "platform/effects/lv2/Instance.hpp"
#include "platform/effects/lv2/PortBuffers.hpp"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>

namespace platform::lv2 {

/// A time by which several calls must have returned.
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
    /// `plugin` outlives this. The ports of instances are connected to `buffers`.
    InstanceKeeper(const Plugin& plugin, std::shared_ptr<PortBuffers> buffers)
        : _plugin(plugin)
        , _buffers(std::move(buffers)) {}

    /// Creates the instance, or returns the reason why not.
    [[nodiscard]] std::optional<Error> make(const Instance::Setup& setup, const Deadline& deadline);
    /// Ends the instance, if there is one. No `run` may be in progress.
    [[nodiscard]] std::optional<Error> drop(const Deadline& deadline);
    /// Activates the instance, or deactivates it. One that does not return from that is given up.
    [[nodiscard]] std::optional<Error> activate(const Deadline& deadline);
    [[nodiscard]] std::optional<Error> deactivate(const Deadline& deadline);

    /// Returns the instance; null if there is none. Also the audio side, inside the gate that the control
    /// side closes for all of the above.
    [[nodiscard]] Instance* get() const noexcept { return _instance.get(); }

  private:
    [[nodiscard]] std::optional<Error> call(std::function<void()> task, const Deadline& deadline,
                                            const std::string& doing);
    [[nodiscard]] std::optional<Error> callInstance(void (Instance::*operation)(), const Deadline& deadline,
                                                    const std::string& doing);

    const Plugin& _plugin;
    const std::shared_ptr<PortBuffers> _buffers; // also kept by an instance that does not end
    std::shared_ptr<Instance> _instance;
    std::shared_future<void> _stuck; // the call into the plug-in that did not return in time
};

} // namespace platform::lv2
