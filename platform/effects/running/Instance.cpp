// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/Instance.hpp"

#include "platform/effects/lv2/requirements.hpp"
#include <algorithm>
#include <unistd.h>

namespace platform::lv2 {

Instance::Instance(const Setup& setup)
    : _setup(setup)
    , _features(setup.sampleRate, setup.blockFrames, setup.sequenceBytes, _worker, _scratch) {}

std::optional<Error> Instance::load(const Plugin& plugin) {
    auto entry = LibraryEntry::find(plugin.libraryPath, plugin.bundlePath, plugin.uri, _features.list());
    if (!entry) return unusable(plugin, entry.error().localizedDescription());
    _entry = entry.value();
    const LV2_Descriptor* descriptor = _entry.descriptor();
    LV2_Handle handle =
        descriptor->instantiate(descriptor, _setup.sampleRate, plugin.bundlePath.c_str(), _features.list());
    if (handle == nullptr) return unusable(plugin, "it did not create an instance");
    _instance = {descriptor, handle, nullptr};
    _options = static_cast<const LV2_Options_Interface*>(
        lilv_instance_get_extension_data(&_instance, LV2_OPTIONS__interface));
    _worker.start(handle, static_cast<const LV2_Worker_Interface*>(
                              lilv_instance_get_extension_data(&_instance, LV2_WORKER__interface)));
    return std::nullopt;
}

Instance::~Instance() {
    if (_instance.lv2_handle != nullptr) {
        deactivate();
        _worker.stop();
        _instance.lv2_descriptor->cleanup(_instance.lv2_handle);
    }
    _entry.close();
}

bool Instance::takesBlockFrames() const noexcept {
    return _options != nullptr && _options->set != nullptr;
}

bool Instance::differsFrom(std::uint32_t frames) const noexcept {
    return takesBlockFrames() && std::min(frames, _longestBlockFrames) != _setup.blockFrames;
}

void Instance::setBlockFrames(std::uint32_t frames) {
    if (!differsFrom(frames)) return;
    frames = std::min(frames, _longestBlockFrames);
    _setup.blockFrames = frames;
    const auto options = _features.changeBlockFrames(frames);
    (void)_options->set(_instance.lv2_handle,
                        options.data()); // a plug-in that rejects the length keeps its own
}

void Instance::activate() {
    if (!_isActive) lilv_instance_activate(&_instance);
    _isActive = true;
}

void Instance::deactivate() {
    if (_isActive) lilv_instance_deactivate(&_instance);
    _isActive = false;
}

} // namespace platform::lv2
