// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/Worker.hpp"

namespace platform::lv2 {
namespace {

std::span<const std::byte> bytesOf(const void* data, std::uint32_t size) {
    return {static_cast<const std::byte*>(data), data == nullptr ? 0U : size};
}

} // namespace

Worker::Worker()
    : _schedule{this, [](LV2_Worker_Schedule_Handle self, std::uint32_t size,
                         const void* data) { return static_cast<Worker*>(self)->request(size, data); }}
    , _scheduleForRestore{this,
                          [](LV2_Worker_Schedule_Handle self, std::uint32_t size, const void* data) {
                              return static_cast<Worker*>(self)->workNow(size, data);
                          }}
    , _scratch(LargestMessage) {}

void Worker::start(LV2_Handle handle, const LV2_Worker_Interface* interface) {
    _handle = handle;
    _interface = interface;
    if (interface == nullptr || interface->work == nullptr) return;
    _thread = std::thread([this] { serve(); });
}

void Worker::stop() {
    if (_thread.joinable()) {
        _isEnding = true;
        _wake.signal();
        _thread.join();
    }
    for (ByteRing* ring : {&_requests, &_responses, &_restoreResponses}) {
        while (ring->hasRecord()) ring->drop();
    }
    _interface = nullptr;
}

LV2_Worker_Status Worker::request(std::uint32_t size, const void* data) noexcept {
    if (size > LargestMessage || !_requests.write(bytesOf(data, size))) return LV2_WORKER_ERR_NO_SPACE;
    if (!_isOffline) _wake.signal();
    return LV2_WORKER_SUCCESS;
}

LV2_Worker_Status Worker::workNow(std::uint32_t size, const void* data) {
    if (_interface == nullptr) return LV2_WORKER_ERR_UNKNOWN;
    const std::scoped_lock lock(_workMutex);
    return _interface->work(_handle, &respond, &_restoreResponses, size, data);
}

LV2_Worker_Status Worker::respond(LV2_Worker_Respond_Handle ring, std::uint32_t size, const void* data) {
    const bool fits = size <= LargestMessage && static_cast<ByteRing*>(ring)->write(bytesOf(data, size));
    return fits ? LV2_WORKER_SUCCESS : LV2_WORKER_ERR_NO_SPACE;
}

void Worker::serve() {
    for (;;) {
        _wake.wait();
        if (_isEnding) return;
        workOffRequests();
    }
}

void Worker::workOffRequests() {
    while (!_isEnding) {
        const std::scoped_lock lock(_workMutex);
        if (!_requests.read(_message)) return;
        (void)_interface->work(_handle, &respond, &_responses, static_cast<std::uint32_t>(_message.size()),
                               _message.data());
    }
}

void Worker::setOffline(bool isOffline) {
    _isOffline = isOffline;
    if (!isOffline) _wake.signal(); // for requests made since the last run
}

void Worker::deliver(ByteRing& ring) noexcept {
    while (ring.hasRecord()) {
        const std::size_t size = ring.recordSize();
        ring.peek(std::span(_scratch).first(size));
        ring.drop();
        if (_interface->work_response != nullptr) {
            (void)_interface->work_response(_handle, static_cast<std::uint32_t>(size), _scratch.data());
        }
    }
}

void Worker::deliverResponses() noexcept {
    if (_interface == nullptr) return;
    if (_isOffline && _interface->work != nullptr) workOffRequests();
    deliver(_responses);
    deliver(_restoreResponses);
    if (_interface->end_run != nullptr) (void)_interface->end_run(_handle);
}

} // namespace platform::lv2
