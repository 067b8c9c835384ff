// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the built plug-in library, loaded as a host loads it.

#include "Bundle.hpp"
#include "Rendering.hpp"

#include "effect/lv2/AtomSequence.hpp"
#include "effect/lv2/DisplayMessage.hpp"

#include <lv2/midi/midi.h>
#include <lv2/state/state.h>

namespace tonewright::effect::test {
namespace {

using P = Parameter;
using Store = std::map<LV2_URID, std::pair<LV2_URID, std::vector<std::uint8_t>>>;

constexpr std::uint32_t Block = 256;
constexpr std::uint32_t BufferBytes = 65536;
constexpr std::uint64_t Mark = 0xA5A5A5A5A5A5A5A5ULL;

/// An input or output event, of MIDI or another type.
struct TimedEvent {
    std::int64_t frame = 0;
    LV2_URID type = 0;
    std::vector<std::uint8_t> body;
};

/// An instance of the built plug-in with a buffer for every port.
class Stage : tonewright::test::Uncopied {
  public:
    explicit Stage(bool withUrids = true) {
        const LV2_Feature* const features[] = {withUrids ? urids.feature() : nullptr, nullptr};
        _handle = _library->instantiate(_library.get(), Rate, bundlePath().c_str(), features);
        if (_handle == nullptr) {
            throw std::runtime_error{"no instance"};
        }
        for (std::size_t i = 0; i < ParameterCount; ++i) {
            _library->connect_port(_handle, portOf(static_cast<P>(i)), &controls[i]);
        }
        _library->connect_port(_handle, Latency, &latency);
        _library->connect_port(_handle, Control, _controlBuffer.data());
        _library->connect_port(_handle, Notify, _notifyBuffer.data());
        activate();
    }
    ~Stage() { _library->cleanup(_handle); }

    void activate() { _library->activate(_handle); }

    TimedEvent midi(std::int64_t frame, std::vector<std::uint8_t> bytes) {
        return {frame, urids(LV2_MIDI__MidiEvent), std::move(bytes)};
    }
    TimedEvent displayRequest() {
        const auto request = DisplayRequest::of(DisplayUrids::mapped(urids.map()));
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&request.object);
        return {0, request.atom.type, {bytes, bytes + sizeof(request.object)}};
    }
    /// Runs one block in place, with these input events.
    void run(std::span<const TimedEvent> events = {}, std::uint32_t frames = Block) {
        auto* const control = reinterpret_cast<LV2_Atom_Sequence*>(_controlBuffer.data());
        auto* const notify = reinterpret_cast<LV2_Atom_Sequence*>(_notifyBuffer.data());
        control->atom.size = BufferBytes;
        AtomSequenceWriter writer{control, urids(LV2_ATOM__Sequence)};
        for (const TimedEvent& event : events) {
            if (!writer.append(event.frame, event.type, event.body)) {
                throw std::runtime_error{"too many events for one block"};
            }
        }
        notify->atom = {notifyCapacity, urids(LV2_ATOM__Chunk)};
        // The first word contains the capacity itself; the memory after the usable part is filled with a
        // marker.
        const auto beyond = _notifyBuffer.begin() + std::max(1U, (notifyCapacity + 7) / 8);
        std::fill(beyond, _notifyBuffer.end(), Mark);
        _library->connect_port(_handle, InputLeft, left.data());
        _library->connect_port(_handle, InputRight, right.data());
        _library->connect_port(_handle, OutputLeft, left.data());
        _library->connect_port(_handle, OutputRight, right.data());
        _library->run(_handle, frames);
        EXPECT_EQ(std::count(beyond, _notifyBuffer.end(), Mark), _notifyBuffer.end() - beyond)
            << "the plug-in wrote beyond its buffer";
        sent.clear();
        if (notify->atom.type != urids(LV2_ATOM__Sequence)) return;
        ASSERT_LE(notify->atom.size + sizeof(LV2_Atom), notifyCapacity);
        forEachEvent(*notify, [this](std::int64_t frame, LV2_URID type, std::span<const std::uint8_t> body) {
            // The header of the atom precedes its body.
            if (const auto shown =
                    DisplayMessage::read(body.data() - sizeof(LV2_Atom), sizeof(LV2_Atom) + body.size(),
                                         DisplayUrids::mapped(urids.map()))) {
                shownFrames.push_back(*shown);
            } else {
                sent.push_back({frame, type, {body.begin(), body.end()}});
            }
        });
    }
    /// Runs blocks of silence; returns how many display frames were sent.
    std::size_t displayFramesIn(int blocks) {
        shownFrames.clear();
        for (int i = 0; i < blocks; ++i) run();
        return shownFrames.size();
    }
    Store save() {
        Store store;
        const auto keep = [](LV2_State_Handle handle, std::uint32_t key, const void* value, std::size_t size,
                             std::uint32_t type, std::uint32_t) {
            const auto* const bytes = static_cast<const std::uint8_t*>(value);
            (*static_cast<Store*>(handle))[key] = {type, {bytes, bytes + size}};
            return LV2_STATE_SUCCESS;
        };
        EXPECT_EQ(state().save(_handle, keep, &store, 0, nullptr), LV2_STATE_SUCCESS);
        return store;
    }
    void restore(Store store) {
        const auto find = [](LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                             std::uint32_t* type, std::uint32_t* flags) -> const void* {
            const auto& all = *static_cast<Store*>(handle);
            const auto found = all.find(key);
            if (found == all.end()) return nullptr;
            *size = found->second.second.size();
            *type = found->second.first;
            *flags = LV2_STATE_IS_POD;
            return found->second.second.data();
        };
        state().restore(_handle, find, &store, 0, nullptr);
    }

    UridTable urids;
    ParameterValues controls = defaultValues();
    float latency = -1.F;
    Signal left = Signal(8192);
    Signal right = Signal(8192);
    std::uint32_t notifyCapacity = BufferBytes;
    std::vector<TimedEvent> sent;          // output events of the last block
    std::vector<DisplayFrame> shownFrames; // display frames of all blocks

  private:
    [[nodiscard]] const LV2_State_Interface& state() const {
        return *static_cast<const LV2_State_Interface*>(_library->extension_data(LV2_STATE__interface));
    }

    Library<LV2_Descriptor> _library{"tonewright.so", "lv2_descriptor"};
    LV2_Handle _handle = nullptr;
    std::vector<std::uint64_t> _controlBuffer = std::vector<std::uint64_t>(BufferBytes / 8);
    std::vector<std::uint64_t> _notifyBuffer = std::vector<std::uint64_t>(BufferBytes / 8);
};

TEST(PluginRun, TakesAnyBlockSizeAndPutsBackTheFloatingPointMode) {
    Stage stage;
    stage.left = stage.right = noise(0.5F, 8192);
    for (const std::uint32_t frames : {0U, 1U, 2U, 63U, 1024U, 8192U, 0U, 4096U}) {
        stage.run({}, frames);
        EXPECT_EQ(stage.latency, static_cast<float>(Processor::latencyFrames()));
        EXPECT_TRUE(std::isfinite(peak(stage.left)));
    }
    // Subnormals are flushed within run() and preserved outside.
    volatile float small = std::numeric_limits<float>::min();
    const float half = small * 0.5F;
    EXPECT_EQ(std::fpclassify(half), FP_SUBNORMAL);
}

TEST(PluginRun, WorksWithoutTheHostsUrids) {
    Stage stage{false};
    stage.left = stage.right = noise(0.5F, 8192);
    stage.run({}, 8192);
    EXPECT_GT(rms(stage.left, 4096, 8192), 0.01);
    EXPECT_TRUE(stage.sent.empty());
}

TEST(PluginMidi, ArrivesAtItsFrame) {
    // Splitting the block at the event must produce the same sound as sending the event within the block.
    const Signal in = noise(0.3F, 4096);
    const auto play = [&in](const std::vector<std::uint32_t>& cuts) {
        Stage stage;
        Signal out(4096);
        std::uint32_t at = 0;
        for (const std::uint32_t frames : cuts) {
            std::vector<TimedEvent> events;
            if (1000 >= at && 1000 < at + frames) {
                events.push_back(stage.midi(1000 - at, {0x90, 72, 120}));
            }
            stage.left.assign(in.begin() + at, in.begin() + at + frames);
            stage.right = stage.left;
            stage.run(events, frames);
            std::copy(stage.left.begin(), stage.left.end(), out.begin() + at);
            at += frames;
        }
        return out;
    };
    const Signal whole = play({4096});
    EXPECT_EQ(whole, play({1000, 3096}));
    EXPECT_EQ(whole, play({500, 600, 2996}));
}

TEST(PluginMidi, SurvivesBurstsAndNonsense) {
    Stage stage;
    std::vector<TimedEvent> burst;
    for (int i = 0; i < 2000; ++i) {
        const auto data = static_cast<std::uint8_t>(i % 128);
        burst.push_back(stage.midi(i / 10, {static_cast<std::uint8_t>(0x80 + i % 0x70), data, data}));
    }
    for (const std::size_t length : {0U, 300U}) {
        burst.push_back(stage.midi(250, std::vector<std::uint8_t>(length, 0xF0)));
    }
    burst.push_back(stage.midi(100000, {0x90, 60, 1})); // after the end of the block
    for (int i = 0; i < 25; ++i) {
        stage.left = noise(0.4F, 8192);
        stage.run(burst);
        ASSERT_TRUE(std::isfinite(peak(stage.left)));
    }
}

TEST(PluginMidi, SendsOnsetsAtFramesThatTheSoundDecides) {
    const Signal in = strokes({5000, 20000, 35000}, {0.5F, 0.5F, 0.5F}, 48000, 450.);
    const auto framesWith = [&in](std::uint32_t block) {
        Stage stage;
        std::vector<std::int64_t> frames;
        for (std::uint32_t at = 0; at + block <= in.size(); at += block) {
            std::copy_n(in.begin() + at, block, stage.left.begin());
            stage.right = stage.left;
            stage.run(std::vector{stage.midi(block / 2, {0xB0, 1, 0})}, block); // splits the block
            for (const TimedEvent& event : stage.sent) frames.push_back(at + event.frame);
        }
        return frames;
    };
    const auto frames = framesWith(64);
    EXPECT_EQ(frames.size(), 6U);
    EXPECT_EQ(framesWith(8000), frames);
}

TEST(PluginMidi, NeverWritesBeyondASmallBuffer) {
    for (const std::uint32_t capacity : {0U, 8U, 16U, 24U, 39U, 40U, 64U, 100U, 400U}) {
        Stage stage;
        stage.notifyCapacity = capacity;
        int balance = 0;
        for (int i = 0; i < 200; ++i) {
            stage.left = stage.right = i % 10 == 0 ? noise(0.8F, 4096) : Signal(4096, 0.F);
            stage.run(std::vector{stage.displayRequest()}, 4096);
            for (const TimedEvent& event : stage.sent) {
                if (event.type == stage.urids(LV2_MIDI__MidiEvent)) balance += event.body[0] == 0x90 ? 1 : -1;
            }
            ASSERT_GE(balance, 0);
            ASSERT_LE(balance, 1);
        }
        EXPECT_EQ(balance, 0) << "a note does not end with a buffer of " << capacity;
    }
}

TEST(PluginDisplay, SpeaksOnlyWhileItIsAsked) {
    Stage stage;
    EXPECT_EQ(stage.displayFramesIn(400), 0U);
    stage.run(std::vector{stage.displayRequest()});
    const auto whileAsked = stage.displayFramesIn(186); // slightly less than a second
    EXPECT_GE(whileAsked, 27U);
    EXPECT_LE(whileAsked, 31U);
    stage.displayFramesIn(4);
    EXPECT_EQ(stage.displayFramesIn(400), 0U) << "no frames without requests";
}

TEST(PluginDisplay, TellsWhatIsHeard) {
    Stage stage;
    const Signal in = sine(1000., 0.5F, Block * 40);
    stage.controls[index(P::Enabled)] = 0.F;
    for (std::uint32_t i = 0; i < 40; ++i) {
        std::copy_n(in.begin() + i * Block, Block, stage.left.begin());
        stage.right = stage.left;
        stage.run(std::vector{stage.displayRequest()});
    }
    ASSERT_FALSE(stage.shownFrames.empty());
    const DisplayFrame& last = stage.shownFrames.back();
    EXPECT_NEAR(last.inputPeaks[0], 0.5F, 0.02F);
    EXPECT_NEAR(last.outputPeaks[1], 0.5F, 0.02F);
    const auto loudest = std::max_element(last.spectrum.begin(), last.spectrum.end());
    EXPECT_NEAR(spectrumBandHertz(static_cast<std::size_t>(loudest - last.spectrum.begin())), 1000.F, 60.F);
    EXPECT_NEAR(*loudest, -6.F, 1.5F);
}

TEST(PluginState, ComesBack) {
    Stage played, restored, fresh;
    played.run(std::vector{played.midi(0, {0x90, 57, 100}), played.midi(10, {0x90, 64, 100}),
                           played.midi(20, {0xB0, 1, 90}), played.midi(30, {0x80, 57, 0})});
    const Store store = played.save();
    EXPECT_EQ(store.size(), 2U);
    restored.restore(store);
    EXPECT_EQ(restored.save(), store) << "before it ever ran";
    restored.activate();
    restored.run();
    EXPECT_EQ(restored.save(), store) << "after it ran";
    restored.restore({});
    EXPECT_EQ(restored.save(), fresh.save()) << "without a stored value the default holds";
    restored.restore(store);
    Store damaged = store;
    for (auto& [key, value] : damaged) value.second.resize(3);
    restored.restore(damaged);
    EXPECT_EQ(restored.save(), fresh.save());
}

} // namespace
} // namespace tonewright::effect::test
