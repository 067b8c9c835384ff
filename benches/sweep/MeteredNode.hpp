// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect in the engine's graph and a meter of its output, which sees the samples before the engine mutes
// those that are not finite. With the offline device all calls come from the thread that renders, except
// `allocate`, which the engine may call from another thread.
#pragma once

#include "platform/audio/AVAudioNode.hpp"
#include "platform/audio/NodeProcessor.hpp"

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace bench {

class Meter final : public platform::NodeProcessor {
  public:
    explicit Meter(std::shared_ptr<platform::NodeProcessor> processor)
        : _processor(std::move(processor)) {}

    [[nodiscard]] std::uint32_t inputChannels() const noexcept override {
        return _processor->inputChannels();
    }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override {
        return _processor->outputChannels();
    }
    void setBlockFrames(std::uint32_t frames) override { _processor->setBlockFrames(frames); }
    void setOffline(bool isOffline) override { _processor->setOffline(isOffline); }
    [[nodiscard]] std::optional<platform::Error> allocate(double sampleRate,
                                                          std::uint32_t maximumFrames) override {
        auto failure = _processor->allocate(sampleRate, maximumFrames);
        const std::scoped_lock lock(_mutex);
        _rate = failure ? 0 : sampleRate;
        if (failure) _failure = failure->localizedDescription();
        return failure;
    }
    void release() noexcept override { _processor->release(); }
    void process(platform::ConstPlanarSound inputs, platform::PlanarSound outputs,
                 std::int64_t sampleTime) noexcept override {
        _processor->process(inputs, outputs, sampleTime);
        for (std::uint32_t channel = 0; channel < outputs.channels(); ++channel) {
            for (std::uint32_t i = 0; i < outputs.frames(); ++i) {
                const float sample = outputs[channel][i];
                if (std::isfinite(sample)) {
                    peak = std::max(peak, std::abs(sample));
                } else {
                    ++badSamples;
                }
            }
        }
    }
    [[nodiscard]] bool hasFailed() const noexcept override { return _processor->hasFailed(); }
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override {
        return _processor->latencyFrames();
    }

    /// Returns the rate for which the effect was last allocated; 0 if that failed or never happened.
    [[nodiscard]] double rate() const {
        const std::scoped_lock lock(_mutex);
        return _rate;
    }
    /// Returns why allocating the effect failed the last time; empty if allocation never failed.
    [[nodiscard]] std::string failure() const {
        const std::scoped_lock lock(_mutex);
        return _failure;
    }

    float peak = 0; // largest magnitude of a finite sample
    long badSamples = 0;

  private:
    const std::shared_ptr<platform::NodeProcessor> _processor;
    mutable std::mutex _mutex; // guards the members below
    double _rate = 0;
    std::string _failure;
};

class MeteredNode final : public platform::AVAudioNode {
  public:
    explicit MeteredNode(std::shared_ptr<Meter> meter)
        : _meter(std::move(meter)) {}
    [[nodiscard]] std::shared_ptr<platform::NodeProcessor> processor() const override { return _meter; }

  private:
    const std::shared_ptr<Meter> _meter;
};

} // namespace bench
