// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The mapping between URIs and the integers (URIDs) that represent them. All plug-ins and interfaces share
// one map, because URIDs occur in the messages between them; in an effect's process it is a copy of the
// host's, which is asked for what the copy lacks. Any thread. The audio thread should not call these
// operations; a plug-in that does waits for a mutex, and perhaps for the host.
#pragma once

#include <deque>
#include <lv2/urid/urid.h>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace platform::lv2 {

/// Answers what a map does not know.
class UridSource {
  public:
    UridSource() = default;
    UridSource(const UridSource&) = delete;
    UridSource& operator=(const UridSource&) = delete;
    virtual ~UridSource() = default;
    /// Returns the URID of `uri`, or 0 if it is refused.
    [[nodiscard]] virtual LV2_URID map(std::string_view uri) = 0;
    /// Returns the URI of `urid`, or an empty text.
    [[nodiscard]] virtual std::string unmap(LV2_URID urid) = 0;
};

class UridMap {
  public:
    /// Returns the process's map.
    [[nodiscard]] static UridMap& shared();

    /// Returns the URID of `uri`, which is always the same, and 0 only if the source refuses it.
    [[nodiscard]] LV2_URID map(std::string_view uri) { return mapWithin(SIZE_MAX, uri); }
    /// As `map`, but returns 0 for a URI that is new if the map has `most` already.
    [[nodiscard]] LV2_URID mapWithin(std::size_t most, std::string_view uri);
    /// Returns the URI of `urid`, which stays valid for ever, or null if `urid` is unknown.
    [[nodiscard]] const char* unmap(LV2_URID urid);
    /// Has the map ask `source` for what it does not know. Call before anything is mapped.
    void follow(std::unique_ptr<UridSource> source) { _source = std::move(source); }

    /// Return the operations as LV2 feature data.
    [[nodiscard]] LV2_URID_Map* mapFeature() noexcept { return &_mapFeature; }
    [[nodiscard]] LV2_URID_Unmap* unmapFeature() noexcept { return &_unmapFeature; }

  private:
    UridMap();
    const char* keep(std::string_view uri, LV2_URID number);

    std::unique_ptr<UridSource> _source; // null: this map gives the numbers
    std::mutex _mutex;                   // guards the following members
    std::deque<std::string> _uris;       // never moved
    std::unordered_map<std::string_view, LV2_URID> _numbers;
    std::unordered_map<LV2_URID, const char*> _texts;
    LV2_URID_Map _mapFeature;
    LV2_URID_Unmap _unmapFeature;
};

/// The URIDs that the host itself uses, mapped once.
struct Urids {
    LV2_URID atomInt, atomFloat, atomDouble, atomLong, atomBool, atomVector, atomTuple, atomObject,
        atomSequence, atomChunk, atomEventTransfer, midiEvent, minBlockLength, maxBlockLength,
        nominalBlockLength, sequenceSize, sampleRate, scaleFactor, updateRate, logError, logWarning, logTrace,
        floatProtocol, peakProtocol;

    [[nodiscard]] static const Urids& shared();
};

} // namespace platform::lv2
