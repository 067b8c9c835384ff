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
                        return static_cast<UridMap*>(self)->unmap(urid);
                    }} {}

UridMap& UridMap::shared() {
    static auto* const map =
        new UridMap(); // never destroyed, because plug-ins may use it until the process exits
    return *map;
}

LV2_URID UridMap::mapWithin(std::size_t most, std::string_view uri) {
    const std::scoped_lock lock(_mutex);
    if (const auto known = _numbers.find(uri); known != _numbers.end()) return known->second;
    if (_uris.size() >= most) return 0;
    const LV2_URID number = _source ? _source->map(uri) : static_cast<LV2_URID>(_uris.size() + 1);
    if (number != 0) keep(uri, number);
    return number;
}

const char* UridMap::unmap(LV2_URID urid) {
    const std::scoped_lock lock(_mutex);
    if (const auto known = _texts.find(urid); known != _texts.end()) return known->second;
    if (urid == 0 || !_source) return nullptr;
    const std::string uri = _source->unmap(urid);
    return uri.empty() ? nullptr : keep(uri, urid);
}

const char* UridMap::keep(std::string_view uri, LV2_URID number) {
    const std::string& kept = _uris.emplace_back(uri);
    _numbers.emplace(kept, number);
    return _texts.emplace(number, kept.c_str()).first->second;
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
