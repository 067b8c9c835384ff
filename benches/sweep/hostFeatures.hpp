// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The features that the minimal host offers to an effect, and the buffers of the effect's ports.
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/log/log.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace sweep {

// The mutex is needed because plug-ins map URIs from their own threads, too.
inline std::mutex uridMutex;
inline std::map<std::string, LV2_URID> urids;
inline std::map<LV2_URID, const char*> uris;

inline LV2_URID mapUri(LV2_URID_Map_Handle /*handle*/, const char* uri) {
    const std::scoped_lock lock(uridMutex);
    const auto [entry, isNew] = urids.try_emplace(uri, static_cast<LV2_URID>(urids.size() + 1));
    if (isNew) uris[entry->second] = entry->first.c_str();
    return entry->second;
}
inline const char* unmapUri(LV2_URID_Unmap_Handle /*handle*/, LV2_URID urid) {
    const std::scoped_lock lock(uridMutex);
    const auto found = uris.find(urid);
    return found == uris.end() ? nullptr : found->second;
}
inline LV2_URID urid(const char* uri) {
    return mapUri(nullptr, uri);
}

inline int logV(LV2_Log_Handle /*handle*/, LV2_URID /*type*/, const char* format, std::va_list arguments) {
    return std::vfprintf(stderr, format, arguments);
}
inline int logText(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = logV(handle, type, format, arguments);
    va_end(arguments);
    return length;
}

// The worker's requests and responses, which are delivered between two blocks.
struct Work {
    std::mutex mutex;
    std::deque<std::vector<char>> asked, answered;
};
inline LV2_Worker_Status schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size, const void* data) {
    auto& work = *static_cast<Work*>(handle);
    const std::scoped_lock lock(work.mutex);
    const auto* bytes = static_cast<const char*>(data);
    work.asked.emplace_back(bytes, bytes + size);
    return LV2_WORKER_SUCCESS;
}
inline LV2_Worker_Status respond(LV2_Worker_Respond_Handle handle, std::uint32_t size, const void* data) {
    auto& work = *static_cast<Work*>(handle);
    const std::scoped_lock lock(work.mutex);
    const auto* bytes = static_cast<const char*>(data);
    work.answered.emplace_back(bytes, bytes + size);
    return LV2_WORKER_SUCCESS;
}
inline std::deque<std::vector<char>> take(Work& work, std::deque<std::vector<char>> Work::*queue) {
    const std::scoped_lock lock(work.mutex);
    std::deque<std::vector<char>> taken;
    taken.swap(work.*queue);
    return taken;
}

struct Port {
    enum class Kind { Control, Audio, Atom, None } kind = Kind::None;
    bool isInput = false, hasSignal = false, takesNotes = false;
    float value = 0;
    std::vector<float> plane;
    std::vector<std::uint64_t> atoms;

    void prepare(bool withNote, std::uint8_t status, LV2_URID midi) {
        auto* sequence = reinterpret_cast<LV2_Atom_Sequence*>(atoms.data());
        if (!isInput) {
            sequence->atom = {static_cast<std::uint32_t>(atoms.size() * 8 - sizeof(LV2_Atom)),
                              urid(LV2_ATOM__Chunk)};
            return;
        }
        sequence->atom = {sizeof(LV2_Atom_Sequence_Body), urid(LV2_ATOM__Sequence)};
        sequence->body = {0, 0};
        if (!withNote || !takesNotes) return;
        auto* event = reinterpret_cast<LV2_Atom_Event*>(sequence + 1);
        event->time.frames = 0;
        event->body = {3, midi};
        const std::uint8_t message[] = {status, 60, 100};
        std::memcpy(event + 1, message, sizeof message);
        sequence->atom.size += sizeof(LV2_Atom_Event) + 8;
    }
};

} // namespace sweep
