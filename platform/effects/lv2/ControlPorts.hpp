// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A plug-in's control ports: what it reads and writes, and the values that cross to the control side.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

#include <atomic>
#include <lilv/lilv.h>
#include <memory>
#include <vector>

namespace platform::lv2 {

class ControlPorts {
  public:
    /// `sampleRate`: the rate for the controls' defaults.
    ControlPorts(const std::vector<Port>& ports, double sampleRate);

    /// No `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Applies what was set, and passes on the run's output. Audio side.
    void beforeRun() noexcept;
    void afterRun() noexcept;

    /// Returns the value of a port, or sets it without limiting. Any thread.
    [[nodiscard]] float value(std::uint32_t port) const noexcept;
    void setValue(std::uint32_t port, float value) noexcept;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept;
    /// Limits the values of inputs whose bounds follow the sample rate to these. Control side.
    void limitValues(const std::vector<Port>& ports, double sampleRate);

  private:
    std::vector<std::uint32_t> _inputs, _outputs;
    std::vector<float> _cells; // by port index: what the plug-in reads and writes; audio side
    // Crosses threads. By port index: set by the control side (inputs) or by the audio side (outputs), read
    // by both; the values are independent, so the only order kept is that of the flag, which is set after the
    // values.
    std::unique_ptr<std::atomic<float>[]> _values;
    std::size_t _valueCount;
    std::atomic<bool> _hasNewValues{true};
    std::int64_t _latencyPort = -1;
};

} // namespace platform::lv2
