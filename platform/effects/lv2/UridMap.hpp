// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The numbers that represent URIs in this process. One map for all plug-ins and interfaces, so that messages
// between them keep their meaning. Any thread; not meant for the audio thread, though a plug-in that maps
// there only waits for a short lock.
#pragma once

#include <deque>
#include <lv2/urid/urid.h>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace platform::lv2 {

class UridMap {
  public:
    /// Returns the one map of the process.
    [[nodiscard]] static UridMap& shared();

    /// Returns the number of `uri`, always the same, never 0.
    [[nodiscard]] LV2_URID map(std::string_view uri);
    /// Returns the URI of a number, valid for ever; null for an unknown one.
    [[nodiscard]] const char* unmap(LV2_URID urid) const;

    /// Returns the operations in the form that plug-ins take.
    [[nodiscard]] LV2_URID_Map* mapFeature() noexcept { return &_mapFeature; }
    [[nodiscard]] LV2_URID_Unmap* unmapFeature() noexcept { return &_unmapFeature; }

  private:
    UridMap();
    mutable std::mutex _mutex;
    std::deque<std::string> _uris;                           // guarded by _mutex; texts never move
    std::unordered_map<std::string_view, LV2_URID> _numbers; // guarded by _mutex
    LV2_URID_Map _mapFeature;
    LV2_URID_Unmap _unmapFeature;
};

/// The numbers that the host itself needs, looked up once.
struct Urids {
    LV2_URID atomInt, atomFloat, atomDouble, atomLong, atomBool, atomVector, atomTuple, atomObject,
        atomSequence, atomChunk, atomEventTransfer, midiEvent, minBlockLength, maxBlockLength,
        nominalBlockLength, sequenceSize, sampleRate, scaleFactor, updateRate, logError, logWarning, logTrace,
        floatProtocol, peakProtocol;

    [[nodiscard]] static const Urids& shared();
};

} // namespace platform::lv2
