// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/detail/RenderPlan.hpp"
#include "platform/audio/devices/AutomaticDevice.hpp"
#include "platform/audio/devices/PipeWireDevice.hpp"
#include "platform/audio/devices/RtAudioDevice.hpp"
#include "platform/audio/seams.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/termination.hpp"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

namespace platform {
namespace {

std::shared_ptr<OutputDevice> makeAutomaticDevice() {
    const char* setting = std::getenv(product::OutputVariable);
    const std::string_view wanted = setting == nullptr ? "" : setting;
    if (wanted == "silent") return std::make_shared<AutomaticDevice>(std::vector<HardwareFactory>{});
    if (wanted == "pipewire") {
        return std::make_shared<AutomaticDevice>(std::vector<HardwareFactory>{makePipeWireDevice});
    }
    if (wanted == "rtaudio") {
        return std::make_shared<AutomaticDevice>(std::vector<HardwareFactory>{makeRtAudioDevice});
    }
    if (!wanted.empty()) {
        warn(std::string(product::OutputVariable) + " is \"" + std::string(wanted) +
             "\", which is none of pipewire, rtaudio and silent.");
    }
    return std::make_shared<AutomaticDevice>(
        std::vector<HardwareFactory>{makePipeWireDevice, makeRtAudioDevice});
}

struct SharedOutput {
    std::mutex mutex; // guards the device
    std::shared_ptr<OutputDevice> device;
};

// Never destroyed, because the audio thread may still use the device while the process exits.
SharedOutput& sharedOutput() {
    static auto& output = *new SharedOutput; // NOLINT: see above
    return output;
}

} // namespace

Error outputIsInUse() {
    return {"AudioOutput", 1, "The sound output is already in use."};
}

std::shared_ptr<OutputDevice> sharedOutputDevice() {
    SharedOutput& output = sharedOutput();
    const std::scoped_lock lock(output.mutex);
    if (!output.device) {
        output.device = makeAutomaticDevice();
        // Stops the device before the process exits, because effect libraries could otherwise be unloaded
        // while the audio thread still runs their code.
        atTermination([device = output.device] { device->stop(); });
    }
    return output.device;
}

RenderSetup askForRenderSetup() {
    const auto device = sharedOutputDevice();
    const bool isClaimed = !device->open(); // a refusal is reported when playback starts
    const double sampleRate = device->format().sampleRate;
    const RenderSetup setup{
        .sampleRate = sampleRate,
        .blockFrames =
            std::min(device->blockFrames(), RenderPlan::maximumFrames(sampleRate, device->isOffline()))};
    if (isClaimed) device->close();
    return setup;
}

void setSharedOutputDevice(std::shared_ptr<OutputDevice> device) {
    SharedOutput& output = sharedOutput();
    const std::scoped_lock lock(output.mutex);
    output.device.swap(device);
}

} // namespace platform
