// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/UridMap.hpp"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/midi/midi.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>

namespace platform::lv2 {

UridMap::UridMap()
    : _mapFeature{this,
                  [](LV2_URID_Map_Handle self, const char* uri) {
                      return uri == nullptr ? LV2_URID{0} : static_cast<UridMap*>(self)->map(uri);
                  }}
    , _unmapFeature{this, [](LV2_URID_Unmap_Handle self, LV2_URID urid) {
                        return static_cast<const UridMap*>(self)->unmap(urid);
                    }} {}

UridMap& UridMap::shared() {
    static auto* const map = new UridMap(); // outlives every plug-in, also those that end after main
    return *map;
}

LV2_URID UridMap::map(std::string_view uri) {
    const std::scoped_lock lock(_mutex);
    if (const auto known = _numbers.find(uri); known != _numbers.end()) return known->second;
    const std::string& kept = _uris.emplace_back(uri);
    const auto number = static_cast<LV2_URID>(_uris.size());
    _numbers.emplace(kept, number);
    return number;
}

const char* UridMap::unmap(LV2_URID urid) const {
    const std::scoped_lock lock(_mutex);
    return urid == 0 || urid > _uris.size() ? nullptr : _uris[urid - 1].c_str();
}

const Urids& Urids::shared() {
    const auto map = [](const char* uri) { return UridMap::shared().map(uri); };
    static const Urids urids{map(LV2_ATOM__Int),
                             map(LV2_ATOM__Float),
                             map(LV2_ATOM__Double),
                             map(LV2_ATOM__Long),
                             map(LV2_ATOM__Bool),
                             map(LV2_ATOM__Vector),
                             map(LV2_ATOM__Tuple),
                             map(LV2_ATOM__Object),
                             map(LV2_ATOM__Sequence),
                             map(LV2_ATOM__Chunk),
                             map(LV2_ATOM__eventTransfer),
                             map(LV2_MIDI__MidiEvent),
                             map(LV2_BUF_SIZE__minBlockLength),
                             map(LV2_BUF_SIZE__maxBlockLength),
                             map(LV2_BUF_SIZE__nominalBlockLength),
                             map(LV2_BUF_SIZE__sequenceSize),
                             map(LV2_PARAMETERS__sampleRate),
                             map(LV2_UI__scaleFactor),
                             map(LV2_UI__updateRate),
                             map(LV2_LOG__Error),
                             map(LV2_LOG__Warning),
                             map(LV2_LOG__Trace),
                             map(LV2_UI__floatProtocol),
                             map(LV2_UI__peakProtocol)};
    return urids;
}

} // namespace platform::lv2
