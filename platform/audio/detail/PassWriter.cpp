// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PassWriter.hpp"

#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/detail/mapChannels.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <utility>

namespace platform {

void PassWriter::begin(const std::shared_ptr<AVAudioFile>& file, std::int64_t silentFrames,
                       const AVAudioFormat& ringFormat) {
    _file = file;
    _ringFormat = ringFormat;
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
    if (format.sampleRate != ringFormat.sampleRate) {
        _silentFrames = static_cast<std::int64_t>(static_cast<double>(_silentFrames) * ringFormat.sampleRate /
                                                  format.sampleRate);
    }
    _tailFrames = _converter && format != _from ? _converter->tailFrames() : 0;
}

PassWriter::Step PassWriter::write(FrameRing& ring) {
    if (_taken < _held) return writeConverted(ring);
    if (_tailFrames > 0) return flush();
    if (_silentFrames > 0) return writeSilence(ring);
    if (!_reader || _reader->isAtEnd()) return finish();
    return _file->processingFormat() == _ringFormat ? writeDirectly(ring) : convert();
}

void PassWriter::abandon() {
    if (_file) _file->returnReader(std::move(_reader));
    _file.reset();
    _from = {};
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
    return frames == 0 || _reader->isAtEnd() ? finish() : Step::Wrote;
}

void PassWriter::prepareConversion() {
    _from = _file->processingFormat();
    _converter.reset();
    if (_from.sampleRate != _ringFormat.sampleRate) {
        _converter =
            std::make_unique<RateConverter>(_from.sampleRate, _ringFormat.sampleRate, _from.channelCount);
    }
    const std::uint32_t chunk = RateConverter::ChunkFrames;
    const std::uint32_t bound = _converter ? _converter->outputBound(chunk) : chunk;
    _samples.resize(static_cast<std::size_t>(_from.channelCount) * (chunk + bound) +
                    static_cast<std::size_t>(_ringFormat.channelCount) * bound);
    float* next = _samples.data();
    const auto place = [&next](std::vector<float*>& planes, std::uint32_t channels, std::uint32_t frames) {
        planes.resize(channels);
        for (float*& plane : planes) plane = std::exchange(next, next + frames);
    };
    place(_readPlanes, _from.channelCount, chunk);
    place(_convertedPlanes, _from.channelCount, bound);
    place(_mappedPlanes, _ringFormat.channelCount, bound);
}

// Convert the `frames` frames in the planes of reading.
void PassWriter::convertChunk(std::uint32_t frames) {
    float* const* planes = _readPlanes.data();
    _taken = 0;
    _held = frames;
    if (_converter) {
        planes = _convertedPlanes.data();
        _held = _converter->push(_readPlanes.data(), frames, planes, _converter->outputBound(frames));
    }
    mapChannels(planes, _from.channelCount, _mappedPlanes.data(), _ringFormat.channelCount, _held);
}

PassWriter::Step PassWriter::convert() {
    if (_from != _file->processingFormat()) prepareConversion();
    const std::uint32_t read = _reader->read(_readPlanes.data(), RateConverter::ChunkFrames);
    if (read == 0) return finish();
    convertChunk(read);
    return Step::Wrote;
}

// Between passes of different formats: bring out what the converter still holds of the former.
PassWriter::Step PassWriter::flush() {
    const std::uint32_t frames = std::min(_tailFrames, RateConverter::ChunkFrames);
    for (float* plane : _readPlanes) std::fill_n(plane, frames, 0.0F);
    convertChunk(frames);
    _tailFrames -= frames;
    if (_tailFrames == 0) {
        _converter.reset();
        _from = {};
    }
    return Step::Wrote;
}

PassWriter::Step PassWriter::writeConverted(FrameRing& ring) {
    const std::uint32_t frames = std::min(ring.writable(), _held - _taken);
    if (frames == 0) return Step::Full;
    for (std::uint32_t c = 0; c < ring.channels(); ++c) {
        std::copy_n(_mappedPlanes[c] + _taken, frames, ring.writePlane(c));
    }
    ring.commit(frames);
    _taken += frames;
    return _taken == _held && _tailFrames == 0 && _reader && _reader->isAtEnd() ? finish() : Step::Wrote;
}

} // namespace platform
