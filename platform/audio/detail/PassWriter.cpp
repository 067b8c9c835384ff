// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PassWriter.hpp"

#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/detail/mapChannels.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>

namespace platform {

void PassWriter::begin(const std::shared_ptr<AVAudioFile>& file, std::int64_t silentFrames,
                       const AVAudioFormat& ringFormat) {
    _file = file;
    auto reader = file->takeReader();
    if (reader) {
        _reader = std::move(reader.value());
        _silentFrames = silentFrames;
    } else {
        // The file went between two passes. Its place is kept by silence of its length.
        warn(reader.error().localizedDescription());
        _silentFrames = silentFrames + file->lengthFrames();
    }
    const AVAudioFormat format = file->processingFormat();
    if (format.sampleRate != ringFormat.sampleRate)
        _silentFrames = static_cast<std::int64_t>(static_cast<double>(_silentFrames) * ringFormat.sampleRate /
                                                  format.sampleRate);
    _convert = format != ringFormat;
    if (_convert && (_from != format || _to != ringFormat)) prepareConversion(format, ringFormat);
}

PassWriter::Step PassWriter::write(FrameRing& ring) {
    if (_silentFrames > 0) return writeSilence(ring);
    if (!_reader) return finish();
    return _convert ? writeConverted(ring) : writeDirectly(ring);
}

void PassWriter::abandon() {
    if (_file) _file->returnReader(std::move(_reader));
    _file.reset();
    _from = _to = {};
    _converter.reset();
    _held = _taken = 0;
}

PassWriter::Step PassWriter::finish() {
    _file->returnReader(std::move(_reader));
    _file.reset();
    return Step::Finished;
}

PassWriter::Step PassWriter::writeSilence(FrameRing& ring) {
    const auto frames = static_cast<std::uint32_t>(std::min<std::int64_t>(ring.writable(), _silentFrames));
    if (frames == 0) return Step::Full;
    for (std::uint32_t c = 0; c < ring.channels(); ++c) std::fill_n(ring.writePlane(c), frames, 0.0F);
    ring.commit(frames);
    _silentFrames -= frames;
    return Step::Wrote;
}

PassWriter::Step PassWriter::writeDirectly(FrameRing& ring) {
    const std::uint32_t room = ring.writable();
    if (room == 0) return Step::Full;
    _ringPlanes.resize(ring.channels());
    for (std::uint32_t c = 0; c < ring.channels(); ++c) _ringPlanes[c] = ring.writePlane(c);
    const std::uint32_t frames = _reader->read(_ringPlanes.data(), room);
    ring.commit(frames);
    return frames == 0 ? finish() : Step::Wrote;
}

void PassWriter::prepareConversion(const AVAudioFormat& from, const AVAudioFormat& to) {
    _from = from;
    _to = to;
    _held = _taken = 0;
    _converter.reset();
    if (from.sampleRate != to.sampleRate)
        _converter = std::make_unique<RateConverter>(from.sampleRate, to.sampleRate, from.channelCount);
    const std::uint32_t bound =
        _converter ? _converter->outputBound(RateConverter::ChunkFrames) : RateConverter::ChunkFrames;
    const auto place = [this](std::vector<float*>& planes, std::uint32_t channels, std::size_t at,
                              std::uint32_t frames) {
        planes.resize(channels);
        for (float*& plane : planes) {
            plane = _samples.data() + at;
            at += frames;
        }
        return at;
    };
    _samples.resize(static_cast<std::size_t>(from.channelCount) * (RateConverter::ChunkFrames + bound) +
                    static_cast<std::size_t>(to.channelCount) * bound);
    std::size_t end = place(_readPlanes, from.channelCount, 0, RateConverter::ChunkFrames);
    end = place(_convertedPlanes, from.channelCount, end, bound);
    place(_mappedPlanes, to.channelCount, end, bound);
}

PassWriter::Step PassWriter::writeConverted(FrameRing& ring) {
    if (_taken == _held) {
        const std::uint32_t read = _reader->read(_readPlanes.data(), RateConverter::ChunkFrames);
        if (read == 0) return finish();
        _taken = 0;
        _held = read;
        float* const* planes = _readPlanes.data();
        if (_converter) {
            planes = _convertedPlanes.data();
            _held = _converter->push(_readPlanes.data(), read, planes,
                                     _converter->outputBound(RateConverter::ChunkFrames));
        }
        mapChannels(planes, _from.channelCount, _mappedPlanes.data(), _to.channelCount, _held);
    }
    const std::uint32_t frames = std::min(ring.writable(), _held - _taken);
    if (frames == 0) return _held == _taken ? Step::Wrote : Step::Full;
    for (std::uint32_t c = 0; c < _to.channelCount; ++c)
        std::copy_n(_mappedPlanes[c] + _taken, frames, ring.writePlane(c));
    ring.commit(frames);
    _taken += frames;
    return Step::Wrote;
}

} // namespace platform
