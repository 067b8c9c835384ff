// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/devices/RtAudioDevice.hpp"

#include "platform/foundation/product.hpp"
#include "platform/realtime/RealtimeScope.hpp"
#include "platform/realtime/realtimePriority.hpp"

#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <rtaudio/RtAudio.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr unsigned BlockFrames = 256;
constexpr unsigned MaximumChannels = 2;

bool anyNameIn(const fs::path& directory, std::string_view prefix, std::string_view suffix) {
    std::error_code error;
    for (auto entry = fs::directory_iterator(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(prefix) && name.ends_with(suffix)) return true;
    }
    return false;
}

// Returns whether the server of `api`, or a sound card, seems to be present. Without a server the client
// libraries print messages, and some of them wait, so RtAudio is not called then.
bool leavesTrace(RtAudio::Api api) {
    if (api == RtAudio::UNIX_JACK) {
        return anyNameIn("/dev/shm", "jack_default_" + std::to_string(getuid()), "");
    }
    if (api == RtAudio::LINUX_ALSA) return anyNameIn("/dev/snd", "pcm", "p");
    if (api != RtAudio::LINUX_PULSE) return false;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return std::getenv("PULSE_SERVER") != nullptr ||
           (runtime != nullptr && fs::exists(fs::path(runtime) / "pulse" / "native", error));
}

class RtAudioDevice final : public HardwareDevice {
  public:
    RtAudioDevice() = default;
    ~RtAudioDevice() override {
        if (!_library) return;
        try {
            if (_library->isStreamRunning()) _library->abortStream();
            if (_library->isStreamOpen()) _library->closeStream();
        } catch (const RtAudioError&) { // the stream is already closed
        }
    }
    RtAudioDevice(const RtAudioDevice&) = delete;
    RtAudioDevice& operator=(const RtAudioDevice&) = delete;

    Answer open(HardwareListener& listener) override {
        _listener = &listener;
        for (const RtAudio::Api api : {RtAudio::UNIX_JACK, RtAudio::LINUX_PULSE, RtAudio::LINUX_ALSA}) {
            if (leavesTrace(api) && openWith(api)) return {.kind = Answer::Kind::Opened};
        }
        return {.kind = Answer::Kind::Absent};
    }

    void run(bool running) noexcept override {
        try {
            if (running && !_library->isStreamRunning()) _library->startStream();
            if (!running && _library->isStreamRunning()) _library->abortStream();
        } catch (const RtAudioError&) {
            if (running) _listener->hardwareWasLost();
        }
    }

    AVAudioFormat format() const noexcept override { return _format; }
    std::uint32_t blockFrames() const noexcept override { return _blockFrames; }

  private:
    bool openWith(RtAudio::Api api) {
        try {
            auto library = std::make_unique<RtAudio>(api);
            library->showWarnings(false);
            if (library->getDeviceCount() == 0) return false;
            const unsigned device = library->getDefaultOutputDevice();
            const RtAudio::DeviceInfo info = library->getDeviceInfo(device);
            if (!info.probed || info.outputChannels == 0) return false;
            RtAudio::StreamParameters parameters;
            parameters.deviceId = device;
            parameters.nChannels = std::min(info.outputChannels, MaximumChannels);
            RtAudio::StreamOptions options;
            options.flags = RTAUDIO_NONINTERLEAVED | RTAUDIO_SCHEDULE_REALTIME;
            options.streamName = product::DisplayName;
            unsigned frames = BlockFrames;
            const unsigned rate = info.preferredSampleRate > 0 ? info.preferredSampleRate : 48000;
            library->openStream(&parameters, nullptr, RTAUDIO_FLOAT32, rate, &frames, process, this, &options,
                                [](RtAudioError::Type, const std::string&) {});
            _format = {.sampleRate = static_cast<double>(rate), .channelCount = parameters.nChannels};
            _blockFrames = frames; // the length that the card chose
            _library = std::move(library);
            return true;
        } catch (const RtAudioError&) {
            return false;
        }
    }

    // Called on RtAudio's audio thread.
    static int process(void* output, void* /*input*/, unsigned frames, double /*time*/,
                       RtAudioStreamStatus /*status*/, void* data) {
        auto& self = *static_cast<RtAudioDevice*>(data);
        if (!self._askedForPriority) {
            self._askedForPriority = true;
            askForRealtimePriority();
        }
        const RealtimeScope realtime;
        std::array<float*, MaximumChannels> planes{};
        for (unsigned c = 0; c < self._format.channelCount; ++c) {
            planes[c] = static_cast<float*>(output) + static_cast<std::size_t>(c) * frames;
        }
        self._listener->hardwareRender({planes.data(), self._format.channelCount, frames},
                                       self._format.sampleRate);
        return 0;
    }

    HardwareListener* _listener = nullptr;
    AVAudioFormat _format;                    // constant after open
    std::uint32_t _blockFrames = BlockFrames; // constant after open
    bool _askedForPriority = false;
    std::unique_ptr<RtAudio> _library;
};

} // namespace

std::unique_ptr<HardwareDevice> makeRtAudioDevice() {
    return std::make_unique<RtAudioDevice>();
}

} // namespace platform
