// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/devices/PipeWireDevice.hpp"

#include "platform/foundation/product.hpp"
#include "platform/realtime/RealtimeScope.hpp"
#include "platform/realtime/realtimePriority.hpp"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <spa/utils/result.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <string>

namespace platform {
namespace {

constexpr std::uint32_t Channels = 2;       // the server converts to the card's channels
constexpr std::uint32_t WantedFrames = 256; // per block; the server limits the block length
constexpr long AnswerLimitNanoseconds = 1'000'000'000;

class LoopLock {
  public:
    explicit LoopLock(pw_thread_loop* loop)
        : _loop(loop) {
        pw_thread_loop_lock(_loop);
    }
    ~LoopLock() { pw_thread_loop_unlock(_loop); }
    LoopLock(const LoopLock&) = delete;
    LoopLock& operator=(const LoopLock&) = delete;

  private:
    pw_thread_loop* _loop;
};

void initialiseLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        pw_init(nullptr, nullptr);
        if (std::getenv("PIPEWIRE_DEBUG") == nullptr) {
            pw_log_set_level(SPA_LOG_LEVEL_NONE); // this program reports the errors itself
        }
    });
}

class PipeWireDevice final : public HardwareDevice {
  public:
    PipeWireDevice() = default;
    ~PipeWireDevice() override {
        if (_loop != nullptr) pw_thread_loop_stop(_loop);
        if (_stream != nullptr) pw_stream_destroy(_stream);
        if (_core != nullptr) pw_core_disconnect(_core);
        if (_context != nullptr) pw_context_destroy(_context);
        if (_loop != nullptr) pw_thread_loop_destroy(_loop);
    }
    PipeWireDevice(const PipeWireDevice&) = delete;
    PipeWireDevice& operator=(const PipeWireDevice&) = delete;

    Answer open(HardwareListener& listener) override {
        initialiseLibrary();
        _listener = &listener;
        _loop = pw_thread_loop_new("audio output", nullptr);
        if (_loop == nullptr) return absent();
        // client-rt.conf makes PipeWire request real-time priority for its data thread.
        _context = pw_context_new(pw_thread_loop_get_loop(_loop),
                                  pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
        if (_context == nullptr || pw_thread_loop_start(_loop) < 0) return absent();
        const LoopLock lock(_loop);
        errno = 0;
        _core = pw_context_connect(_context,
                                   pw_properties_new(PW_KEY_APP_NAME, product::DisplayName, nullptr), 0);
        if (_core == nullptr) return errno == EACCES || errno == EPERM ? refused(errno) : absent();
        pw_core_add_listener(_core, &_coreHook, &CoreEvents, this);
        if (!awaitAnswer()) return answerToFailure();
        createStream();
        if (_stream == nullptr) return refused(errno);
        if (const int result = connectStream(); result < 0) return refused(-result);
        if (!awaitAnswer()) return answerToFailure();
        _isOpen = true;
        return {.kind = Answer::Kind::Opened};
    }

    void run(bool running) noexcept override {
        const LoopLock lock(_loop);
        pw_stream_set_active(_stream, running);
    }

    AVAudioFormat format() const noexcept override {
        return {.sampleRate = static_cast<double>(_rate.load()), .channelCount = Channels};
    }

    std::uint32_t blockFrames() const noexcept override { return _blockFrames; }

  private:
    static Answer absent() { return {.kind = Answer::Kind::Absent}; }
    static Answer refused(int errorNumber) {
        return {.kind = Answer::Kind::Refused,
                .error = posixError(errorNumber, "The sound server refuses to play.")};
    }
    [[nodiscard]] Answer answerToFailure() const {
        const bool denied = _failure == -EACCES || _failure == -EPERM;
        return denied ? refused(-_failure) : absent();
    }

    // Waits until the server has answered all requests so far. Returns false if the server fails or takes too
    // long. Called with the loop locked.
    bool awaitAnswer() {
        _awaited = pw_core_sync(_core, PW_ID_CORE, 0);
        timespec limit{};
        pw_thread_loop_get_time(_loop, &limit, AnswerLimitNanoseconds);
        while (_answered != _awaited && _failure == 0) {
            if (pw_thread_loop_timed_wait_full(_loop, &limit) < 0) return false;
        }
        return _failure == 0;
    }

    void createStream() {
        const std::string latency = std::to_string(WantedFrames) + "/" + std::to_string(_rate.load());
        pw_properties* properties = pw_properties_new(
            PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback", PW_KEY_MEDIA_ROLE, "Music",
            PW_KEY_NODE_NAME, product::DisplayName, PW_KEY_NODE_DESCRIPTION, product::DisplayName,
            PW_KEY_APP_NAME, product::DisplayName, PW_KEY_MEDIA_NAME, product::DisplayName,
            PW_KEY_NODE_LATENCY, latency.c_str(), nullptr);
        _stream = pw_stream_new(_core, product::DisplayName, properties);
        if (_stream != nullptr) pw_stream_add_listener(_stream, &_streamHook, &StreamEvents, this);
    }

    int connectStream() {
        std::array<std::uint8_t, 1024> space{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, space.data(), static_cast<std::uint32_t>(space.size()));
        spa_audio_info_raw info{};
        info.format = SPA_AUDIO_FORMAT_F32P;
        info.rate = _rate;
        info.channels = Channels;
        info.position[0] = SPA_AUDIO_CHANNEL_FL;
        info.position[1] = SPA_AUDIO_CHANNEL_FR;
        const spa_pod* parameter = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
        const auto flags =
            static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                         PW_STREAM_FLAG_RT_PROCESS | PW_STREAM_FLAG_INACTIVE);
        return pw_stream_connect(_stream, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &parameter, 1);
    }

    // Handles a failure of the server or of the stream. Called on the loop's thread.
    void fail(int result) noexcept {
        if (_failure == 0) _failure = result;
        pw_thread_loop_signal(_loop, false);
        if (_isOpen) _listener->hardwareWasLost();
    }

    static void coreInfo(void* data, const pw_core_info* info) {
        auto& self = *static_cast<PipeWireDevice*>(data);
        const auto number = [&](const char* key, std::uint32_t absent) {
            const char* text = info->props == nullptr ? nullptr : spa_dict_lookup(info->props, key);
            const long value = text == nullptr ? 0 : std::strtol(text, nullptr, 10);
            return value > 0 ? static_cast<std::uint32_t>(value) : absent;
        };
        self._rate = number("default.clock.rate", self._rate);
        self._blockFrames = std::min(std::max(WantedFrames, number("default.clock.min-quantum", 1)),
                                     number("default.clock.max-quantum", UINT32_MAX));
    }
    static void coreDone(void* data, std::uint32_t id, int sequence) {
        auto& self = *static_cast<PipeWireDevice*>(data);
        if (id != PW_ID_CORE) return;
        self._answered = sequence;
        pw_thread_loop_signal(self._loop, false);
    }
    static void coreError(void* data, std::uint32_t id, int /*sequence*/, int result,
                          const char* /*message*/) {
        if (id == PW_ID_CORE) static_cast<PipeWireDevice*>(data)->fail(result == 0 ? -EIO : result);
    }
    static void streamStateChanged(void* data, pw_stream_state former, pw_stream_state state,
                                   const char* /*error*/) {
        auto& self = *static_cast<PipeWireDevice*>(data);
        const bool ended = state == PW_STREAM_STATE_UNCONNECTED && former != PW_STREAM_STATE_CONNECTING;
        if (state == PW_STREAM_STATE_ERROR || ended) self.fail(-EIO);
    }
    static void streamParameterChanged(void* data, std::uint32_t id, const spa_pod* parameter) {
        auto& self = *static_cast<PipeWireDevice*>(data);
        spa_audio_info_raw info{};
        if (id != SPA_PARAM_Format || parameter == nullptr ||
            spa_format_audio_raw_parse(parameter, &info) < 0) {
            return;
        }
        if (info.rate > 0 && self._rate.exchange(info.rate) != info.rate && self._isOpen) {
            self._listener->hardwareFormatDidChange();
        }
    }

    // Called on PipeWire's data thread, in real time.
    static void streamProcess(void* data) {
        auto& self = *static_cast<PipeWireDevice*>(data);
        if (!self._askedForPriority) {
            self._askedForPriority = true;
            askForRealtimePriority();
        }
        const RealtimeScope realtime;
        pw_buffer* buffer = pw_stream_dequeue_buffer(self._stream);
        if (buffer == nullptr) return;
        self.fill(*buffer);
        pw_stream_queue_buffer(self._stream, buffer);
    }

    void fill(pw_buffer& buffer) noexcept {
        spa_buffer& planar = *buffer.buffer;
        std::array<float*, Channels> planes{};
        std::uint32_t frames =
            buffer.requested > 0 ? static_cast<std::uint32_t>(buffer.requested) : UINT32_MAX;
        if (planar.n_datas < Channels) return;
        for (std::uint32_t c = 0; c < Channels; ++c) {
            planes[c] = static_cast<float*>(planar.datas[c].data);
            if (planes[c] == nullptr) return;
            frames = std::min(frames, planar.datas[c].maxsize / static_cast<std::uint32_t>(sizeof(float)));
        }
        for (std::uint32_t c = 0; c < Channels; ++c) {
            planar.datas[c].chunk->offset = 0;
            planar.datas[c].chunk->stride = sizeof(float);
            planar.datas[c].chunk->size = frames * static_cast<std::uint32_t>(sizeof(float));
        }
        if (frames > 0) _listener->hardwareRender({planes.data(), Channels, frames}, format().sampleRate);
    }

    static const pw_core_events CoreEvents;
    static const pw_stream_events StreamEvents;

    HardwareListener* _listener = nullptr;
    pw_thread_loop* _loop = nullptr;
    pw_context* _context = nullptr;
    pw_core* _core = nullptr;
    pw_stream* _stream = nullptr;
    spa_hook _coreHook{};
    spa_hook _streamHook{};
    // Guarded by the loop's lock, which the loop's thread holds during callbacks.
    int _awaited = 0;
    int _answered = -1;
    int _failure = 0;
    bool _isOpen = false;
    // Written on the loop's thread, read on any thread.
    std::atomic<std::uint32_t> _rate{48000};
    std::atomic<std::uint32_t> _blockFrames{WantedFrames};
    // Used only on the data thread.
    bool _askedForPriority = false;
};

const pw_core_events PipeWireDevice::CoreEvents = [] {
    pw_core_events events{};
    events.version = PW_VERSION_CORE_EVENTS;
    events.info = coreInfo;
    events.done = coreDone;
    events.error = coreError;
    return events;
}();

const pw_stream_events PipeWireDevice::StreamEvents = [] {
    pw_stream_events events{};
    events.version = PW_VERSION_STREAM_EVENTS;
    events.state_changed = streamStateChanged;
    events.param_changed = streamParameterChanged;
    events.process = streamProcess;
    return events;
}();

} // namespace

std::unique_ptr<HardwareDevice> makePipeWireDevice() {
    return std::make_unique<PipeWireDevice>();
}

} // namespace platform
