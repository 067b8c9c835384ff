// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The audio side of the engine. Renders the current plan, and keeps previous plans alive while they are still
// in use because an effect has not returned.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/BlockLength.hpp"
#include "platform/audio/detail/RenderPlan.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace platform {

class EngineRenderer final : public OutputClient {
  public:
    /// Signals `news` when the control side has something to handle, and calls `onFormatChange` when the
    /// device's format changes.
    EngineRenderer(bool offline, std::shared_ptr<WakeSignal> news, std::function<void()> onFormatChange);
    /// Must not be destroyed while a thread renders; devices hold a strong reference until then.
    ~EngineRenderer() override;

    void render(PlanarSound sound, double sampleRate) noexcept override;
    [[nodiscard]] std::optional<Error> failure() const override { return _failure; }
    void outputFormatDidChange() override { _onFormatChange(); }

    // Control side, one operation at a time.

    /// Resets the sample time to 0 and the block length to `frames`. Must be called while nothing renders.
    void reset(std::uint32_t frames);
    /// Describes a plan that the audio side has not released.
    struct Retired {
        std::shared_ptr<NodeProcessor> inside; // the processor that has not returned, or null
    };
    /// Publishes `plan` to the audio side and frees the previous plan. If the previous plan is still in use
    /// after `limit`, retires it: the audio side calls no further processors of a retired plan, and `plan`
    /// runs when the audio side has left it.
    [[nodiscard]] std::optional<Retired> publish(std::unique_ptr<RenderPlan> plan,
                                                 std::chrono::nanoseconds limit = ControlLimit);
    /// Frees the retired plans that are no longer in use and returns the processors that have returned.
    [[nodiscard]] std::vector<std::shared_ptr<NodeProcessor>> emptyGraveyard();
    /// Returns whether a retired plan is still kept because `processor` has not returned.
    [[nodiscard]] bool keeps(const NodeProcessor* processor) const noexcept;
    [[nodiscard]] bool hasRetiredPlans() const noexcept { return !_graveyard.empty(); }
    /// Ends the waiting of an offline render call.
    void requestStop() { _shared.stopping.request_stop(); }
    /// Returns whether a thread is rendering.
    [[nodiscard]] bool isRendering() const noexcept { return !_shared.entrance.isEmpty(); }
    /// Returns the usual block length in frames.
    [[nodiscard]] std::uint32_t blockFrames() const noexcept { return _shared.blockLength.usual(); }

  private:
    [[nodiscard]] RenderPlan* acquirePlan() noexcept;
    void releasePlan() noexcept { _shared.inUse.store(nullptr, std::memory_order_release); }
    [[nodiscard]] RenderPlan* provide(RenderPlan* plan, std::uint32_t frames);
    void noteFailure(const RenderPlan& plan);
    void renderPiece(PlanarSound sound, double sampleRate) noexcept;

    // Shared between the audio side and the control side.
    struct Shared {
        // Admits one thread at a time: while an effect does not return, a device may call `render` from
        // another thread.
        Gate entrance;
        // The plan to run. The control side exchanges it, and frees a previous plan when `inUse` no longer
        // points to it.
        std::atomic<RenderPlan*> plan{nullptr};
        // The plan being run. The audio side sets it and then checks that `plan` still has the same value.
        std::atomic<RenderPlan*> inUse{nullptr};
        // Number of frames rendered since the engine started. The control side resets it while nothing
        // renders.
        std::atomic<std::int64_t> sampleTime{0};
        // Block length of a real-time device. The audio side measures it, the control side passes it to the
        // effects.
        BlockLength blockLength;
        // The control side requests a stop when the engine stops, and replaces the source while nothing
        // renders.
        std::stop_source stopping;
    };
    Shared _shared;

    std::optional<Error> _failure; // offline; the thread that renders, and `reset`
    const bool _offline;
    const std::shared_ptr<WakeSignal> _news;
    const std::function<void()> _onFormatChange;

    struct Grave {
        std::unique_ptr<RenderPlan> plan;
        std::shared_ptr<NodeProcessor> inside;
    };
    std::vector<Grave> _graveyard; // control side
};

} // namespace platform
