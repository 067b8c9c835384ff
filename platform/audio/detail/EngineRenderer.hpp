// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The engine's audio side: renders the current plan, and gives previous plans back when it no longer uses
// them. One that is not given back, because an effect does not return, is kept here until it is.
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
    /// `news` is signalled when the control side has something to handle; `onFormatChange` is called when the
    /// device's format changes.
    EngineRenderer(bool offline, std::shared_ptr<WakeSignal> news, std::function<void()> onFormatChange);
    /// No thread may be rendering: devices keep their client that long.
    ~EngineRenderer() override;

    void render(PlanarSound sound, double sampleRate) noexcept override;
    void outputFormatDidChange() override { _onFormatChange(); }

    // The control side, one operation at a time.

    /// Starts again, at sample time 0 and with blocks of `frames` frames. Call while nothing renders.
    void reset(std::uint32_t frames);
    /// What the control side must know about a plan that the audio side has not released.
    struct Retired {
        std::shared_ptr<NodeProcessor> inside; // the processor that does not return; null if it is none
    };
    /// Publishes `plan` to the audio side and frees the previous one. If that is still in use after `limit`,
    /// it is retired: the audio side calls no further processor of it. `plan` runs once it is free.
    [[nodiscard]] std::optional<Retired> publish(std::unique_ptr<RenderPlan> plan,
                                                 std::chrono::nanoseconds limit = ControlLimit);
    /// Frees the retired plans that are no longer in use and returns the processors that have returned.
    [[nodiscard]] std::vector<std::shared_ptr<NodeProcessor>> emptyGraveyard();
    /// Returns whether a thread has not returned from `processor`.
    [[nodiscard]] bool keeps(const NodeProcessor* processor) const noexcept;
    [[nodiscard]] bool hasRetiredPlans() const noexcept { return !_graveyard.empty(); }
    /// Ends the waits of an offline render.
    void requestStop() { _shared.stopping.request_stop(); }
    /// Returns whether a thread is rendering.
    [[nodiscard]] bool isRendering() const noexcept { return !_shared.entrance.isEmpty(); }
    /// Returns the frames of a usual block.
    [[nodiscard]] std::uint32_t blockFrames() const noexcept { return _shared.blockLength.usual(); }

  private:
    [[nodiscard]] RenderPlan* acquirePlan() noexcept;
    void releasePlan() noexcept { _shared.inUse.store(nullptr); }
    void provide(std::uint32_t frames);
    void renderPiece(PlanarSound sound, double sampleRate) noexcept;

    // All that the audio side shares with the control side.
    struct Shared {
        // Lets one thread render at a time: if an effect does not return, a device may call from another.
        Gate entrance;
        // The plan to run. The control side exchanges it and frees the previous one when `inUse` no longer
        // refers to it.
        std::atomic<RenderPlan*> plan{nullptr};
        // The plan being run: set by the audio side, which then checks that it is still the one to run.
        std::atomic<RenderPlan*> inUse{nullptr};
        // Frames rendered since the engine started; set to 0 by the control side while nothing renders.
        std::atomic<std::int64_t> sampleTime{0};
        // Of a device in real time: the audio side measures, the control side tells the effects.
        BlockLength blockLength;
        // Requested by the control side when it stops the engine; exchanged by it while nothing renders.
        std::stop_source stopping;
    };
    Shared _shared;

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
