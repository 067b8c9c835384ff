// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/audio/audioFixture.hpp"

namespace tonewright::test {

using namespace platform;

Sound countingSound(std::uint32_t channels, std::size_t frames) {
    Sound sound(channels, std::vector<float>(frames));
    for (std::size_t c = 0; c < channels; ++c) {
        for (std::size_t i = 0; i < frames; ++i) {
            sound[c][i] = (static_cast<float>(i % 65521) + 0.25F * static_cast<float>(c + 1)) * 0x1p-17F;
        }
    }
    return sound;
}

void writeSound(const std::string& path, const Sound& sound, std::uint32_t rate) {
    std::string data;
    for (std::size_t i = 0; i < sound[0].size(); ++i) {
        for (const auto& plane : sound) data.append(reinterpret_cast<const char*>(&plane[i]), sizeof(float));
    }
    // Numbers in the header are little-endian, like those of this machine; format 3 means floats.
    const auto number = [](std::size_t value, std::size_t bytes) {
        return std::string(reinterpret_cast<const char*>(&value), bytes);
    };
    const std::size_t frameBytes = sound.size() * sizeof(float);
    std::ofstream(path, std::ios::binary)
        << "RIFF" << number(36 + data.size(), 4) << "WAVEfmt " << number(16, 4) << number(3, 2)
        << number(sound.size(), 2) << number(rate, 4) << number(rate * frameBytes, 4) << number(frameBytes, 2)
        << number(32, 2) << "data" << number(data.size(), 4) << data;
}

std::shared_ptr<AVAudioFile> makeFile(const Sound& sound, std::uint32_t rate) {
    const Scratch folder;
    writeSound(folder / "sound.wav", sound, rate);
    auto file = AVAudioFile::open(URL::fileURLWithPath(folder / "sound.wav"));
    if (!file) ADD_FAILURE() << file.error().localizedDescription();
    return file ? file.value() : nullptr;
}

bool isSilent(const Sound& sound) {
    return std::ranges::all_of(sound, [](const std::vector<float>& plane) {
        return std::ranges::all_of(plane, [](float sample) { return sample == 0.0F; });
    });
}

Sound repeated(const Sound& sound, std::size_t passes) {
    Sound all(sound.size());
    for (std::size_t c = 0; c < sound.size(); ++c) {
        for (std::size_t pass = 0; pass < passes; ++pass) {
            all[c].insert(all[c].end(), sound[c].begin(), sound[c].end());
        }
    }
    return all;
}

std::size_t firstDifference(const Sound& a, const Sound& b) {
    std::size_t length = std::min(a.at(0).size(), b.at(0).size());
    for (std::size_t i = 0; i < length; ++i) {
        for (std::size_t c = 0; c < std::min(a.size(), b.size()); ++c) {
            if (a[c][i] != b[c][i]) return i;
        }
    }
    return length;
}

void Signal::raise() {
    const std::scoped_lock lock(_mutex);
    ++_raised;
    _changed.notify_all();
}

bool Signal::wait(int times) {
    std::unique_lock lock(_mutex);
    return _changed.wait_for(lock, std::chrono::seconds(20), [&] { return _raised >= times; });
}

std::optional<Error> TestProcessor::allocate(double sampleRate, std::uint32_t) {
    if (onAllocate) onAllocate();
    if (failure) return failure;
    rate = sampleRate;
    ++allocations;
    return std::nullopt;
}

void TestProcessor::release() noexcept {
    rate = 0;
    ++releases;
}

void TestProcessor::process(ConstPlanarSound in, PlanarSound out, std::int64_t sampleTime) noexcept {
    if (work) return work({in, out, out.frames(), sampleTime});
    for (std::uint32_t c = 0; c < 2; ++c) {
        for (std::uint32_t i = 0; i < out.frames(); ++i) out[c][i] = gain * in[c][i];
    }
}

OfflineEngine::OfflineEngine(AVAudioFormat format, std::uint32_t blockFrames)
    : device(std::make_shared<OfflineDevice>(format, blockFrames))
    , engine(AVAudioEngine::create(device))
    , player(AVAudioPlayerNode::create()) {
    engine->attachNode(player);
    engine->connect(player, engine->mainMixerNode(), std::nullopt);
}

OfflineEngine::~OfflineEngine() {
    ending = true;
    player->stop(); // because its completions refer to this object
}

void OfflineEngine::loop(const std::shared_ptr<AVAudioFile>& file, int passes) {
    player->scheduleFile(file, std::nullopt, [this, file, passes] {
        ++completions;
        if (passes > 1 && !ending) loop(file, passes - 1);
    });
}

void OfflineEngine::insert(const std::shared_ptr<AVAudioNode>& node) {
    engine->attachNode(node);
    engine->disconnectNodeInput(engine->mainMixerNode());
    engine->connect(player, node, std::nullopt);
    engine->connect(node, engine->mainMixerNode(), std::nullopt);
}

std::shared_ptr<TestUnit> OfflineEngine::insertWork(std::function<void(const Block&)> work) {
    auto unit = std::make_shared<TestUnit>();
    unit->testProcessor->work = std::move(work);
    insert(unit);
    return unit;
}

void OfflineEngine::play(const Sound& pass, int passes) {
    loop(makeFile(pass), passes);
    start();
}

void OfflineEngine::start() {
    const auto error = engine->start();
    ASSERT_FALSE(error) << error->localizedDescription();
    player->play();
}

} // namespace tonewright::test
