// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The values of a plug-in's control ports, for the plug-in and for the control side.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

#include <atomic>
#include <lilv/lilv.h>
#include <memory>
#include <vector>

namespace platform::lv2 {

class ControlPorts {
  public:
    /// `sampleRate` is used for default values that depend on it.
    ControlPorts(const std::vector<Port>& ports, double sampleRate);

    /// No `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Before a run, copies new values to the plug-in's inputs; after a run, copies the values of its outputs
    /// to the control side. Audio thread.
    void beforeRun() noexcept;
    void afterRun() noexcept;

    /// Return and set the value of a port; `setValue` does not clamp it. Any thread.
    [[nodiscard]] float value(std::uint32_t port) const noexcept;
    void setValue(std::uint32_t port, float value) noexcept;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept;
    /// Clamps the values of inputs whose bounds depend on the sample rate. Control side.
    void limitValues(const std::vector<Port>& ports, double sampleRate);

  private:
    std::vector<std::uint32_t> _inputs, _outputs;
    std::vector<float> _cells; // the memory of the ports, by port index; audio thread only
    // Shared between threads: the values by port index, set by the control side (inputs) or by the audio
    // thread (outputs) and read by both. The values are independent of one another. The flag is set after the
    // values, with release order.
    std::unique_ptr<std::atomic<float>[]> _values;
    std::size_t _valueCount;
    std::atomic<bool> _hasNewValues{true};
    std::int64_t _latencyPort = -1;
};

} // namespace platform::lv2
