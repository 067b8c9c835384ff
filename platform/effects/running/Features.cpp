// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/Features.hpp"

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/foundation/ProcessInfo.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/userDirectories.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <lv2/buf-size/buf-size.h>

namespace platform::lv2 {
namespace {

int writeLog(LV2_URID type, const char* format, std::va_list arguments) {
    if (type == Urids::shared().logTrace) return 0;
    char text[1024];
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    std::string_view line(text);
    while (line.ends_with('\n')) line.remove_suffix(1);
    warn(line);
    return length;
}

int onLogV(LV2_Log_Handle, LV2_URID type, const char* format, std::va_list arguments) {
    return writeLog(type, format, arguments);
}

int onLog(LV2_Log_Handle, LV2_URID type, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = writeLog(type, format, arguments);
    va_end(arguments);
    return length;
}

LV2_Options_Option option(LV2_URID key, LV2_URID type, std::uint32_t size, const void* value) {
    return {LV2_OPTIONS_INSTANCE, 0, key, size, type, value};
}

LV2_Options_Option wholeOption(LV2_URID key, const std::int32_t& value) {
    return option(key, Urids::shared().atomInt, sizeof value, &value);
}

} // namespace

LV2_Log_Log* logFeature() noexcept {
    static LV2_Log_Log log{nullptr, onLog, onLogV};
    return &log;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored; // leftover files in a cache directory do no harm
    if (!_path.empty()) std::filesystem::remove_all(_path, ignored);
}

std::string ScratchDirectory::pathFor(const std::string& name) {
    const std::scoped_lock lock(_mutex);
    if (_path.empty()) {
        _path = std::filesystem::path(baseDirectory("XDG_CACHE_HOME", ".cache")) / product::Name / "scratch" /
                ProcessInfo::processInfo().globallyUniqueString();
    }
    const std::filesystem::path path = _path / std::filesystem::path(name).relative_path();
    std::error_code ignored; // the plug-in then fails to open the file
    std::filesystem::create_directories(path.parent_path(), ignored);
    return path.string();
}

Features::Features(double sampleRate, std::uint32_t blockFrames, std::uint32_t sequenceBytes, Worker& worker,
                   ScratchDirectory& scratch)
    : _blockFrames(static_cast<std::int32_t>(blockFrames))
    , _sequenceBytes(static_cast<std::int32_t>(sequenceBytes))
    , _sampleRate(static_cast<float>(sampleRate))
    , _makePath{&scratch,
                [](LV2_State_Make_Path_Handle handle, const char* path) {
                    return ::strdup(static_cast<ScratchDirectory*>(handle)->pathFor(path).c_str());
                }}
    , _freePath{nullptr, [](LV2_State_Free_Path_Handle, char* path) {
                    std::free(path); // NOLINT(cppcoreguidelines-no-malloc): LV2 requires memory from malloc
                }} {
    const Urids& urids = Urids::shared();
    _options = {wholeOption(urids.minBlockLength, _minimumFrames),
                wholeOption(urids.maxBlockLength, _blockFrames),
                wholeOption(urids.nominalBlockLength, _blockFrames),
                wholeOption(urids.sequenceSize, _sequenceBytes),
                option(urids.sampleRate, urids.atomFloat, sizeof _sampleRate, &_sampleRate),
                option(0, 0, 0, nullptr)};
    _features = {{LV2_URID__map, UridMap::shared().mapFeature()},
                 {LV2_URID__unmap, UridMap::shared().unmapFeature()},
                 {LV2_OPTIONS__options, _options.data()},
                 {LV2_LOG__log, logFeature()},
                 {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                 {LV2_STATE__makePath, &_makePath},
                 {LV2_STATE__freePath, &_freePath},
                 {LV2_STATE__loadDefaultState, nullptr},
                 {LV2_STATE__threadSafeRestore, nullptr},
                 {LV2_CORE__isLive, nullptr},
                 {LV2_CORE__inPlaceBroken, nullptr},
                 {LV2_CORE__hardRTCapable, nullptr},
                 {LV2_WORKER__schedule, worker.schedule()},
                 {LV2_WORKER__schedule, worker.scheduleForRestore()}};
    const LV2_Feature* forRestore = &_features.back();
    for (const LV2_Feature& feature : _features) {
        if (&feature != forRestore) _list.push_back(&feature);
        if (std::string_view(feature.URI) != LV2_WORKER__schedule || &feature == forRestore) {
            _listForRestore.push_back(&feature);
        }
    }
    _list.push_back(nullptr);
    _listForRestore.push_back(nullptr);
}

std::vector<LV2_Options_Option> Features::changeBlockFrames(std::uint32_t frames) {
    _blockFrames = static_cast<std::int32_t>(frames);
    return {wholeOption(Urids::shared().maxBlockLength, _blockFrames),
            wholeOption(Urids::shared().nominalBlockLength, _blockFrames), option(0, 0, 0, nullptr)};
}

} // namespace platform::lv2
