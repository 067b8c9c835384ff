// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the LV2 host without a screen: sound, parameters, state, presets, worker, and unusable plug-ins.
#include "effect/dsp/Presets.hpp"
#include "tests/effects/Rendering.hpp"

#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/audio/seams.hpp"
#include "platform/realtime/PlanarBuffer.hpp"

using namespace platform;
using namespace platform::test;

namespace {

std::uint32_t addressOf(const AUAudioUnit& unit, const std::string& identifier) {
    for (const AUParameter& parameter : unit.parameters()) {
        if (parameter.identifier == identifier) return parameter.address;
    }
    ADD_FAILURE() << "no parameter " << identifier;
    return 0;
}

// Renders blocks of the length that the test wants, like a sound server whose block length other programs
// change. (The engine does not follow the block length of an offline device.)
class VaryingDevice final : public OutputDevice {
  public:
    [[nodiscard]] std::optional<Error> open() override { return std::nullopt; }
    void close() noexcept override {}
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override {
        _client = std::move(client);
        return std::nullopt;
    }
    void stop() noexcept override { _client.reset(); }
    [[nodiscard]] AVAudioFormat format() const noexcept override { return {44100, 2}; }
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return 480; }
    void render(std::uint32_t frames) {
        PlanarBuffer sound(2, frames);
        _client->render(sound.view(), format().sampleRate);
    }

  private:
    std::shared_ptr<OutputClient> _client;
};

} // namespace

TEST(Host, RunsStereoAndTellsItsParameters) {
    const auto unit = makeUnit("urn:tonewright:test:gain");
    const auto parameters = unit->parameters();
    ASSERT_EQ(parameters.size(), 3U);
    EXPECT_EQ(parameters[0].identifier, "gain");
    EXPECT_EQ(parameters[0].maxValue, 4.0F);
    EXPECT_TRUE(parameters[0].isWritable);
    EXPECT_FALSE(parameters[1].isWritable);

    Rendering rendering(*unit, 48000, 20000); // above the plug-in's maximum, so the host splits it
    const auto gain = addressOf(*unit, "gain");
    unit->setParameterValue(gain, 0.25F);
    for (const std::uint32_t frames : {20000U, 1U, 64U, 255U}) {
        rendering.block(frames);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            for (std::size_t i = 0; i < frames; ++i) {
                ASSERT_EQ(rendering.out(channel)[i], 0.25F * rendering.in(channel)[i]);
            }
        }
    }
    EXPECT_EQ(unit->parameterValue(addressOf(*unit, "gain_used")), 0.25F);
    EXPECT_EQ(unit->latencyFrames(), 7U);

    unit->setParameterValue(gain, 100); // limited to 4
    EXPECT_EQ(unit->parameterValue(gain), 4.0F);
    unit->setParameterValue(gain, std::nanf(""));
    unit->setParameterValue(addressOf(*unit, "gain_used"), 1); // ignored: an output
    unit->setParameterValue(12345, 1);
    EXPECT_EQ(unit->parameterValue(gain), 4.0F);
    EXPECT_EQ(unit->parameterValue(12345), 0.0F);
}

// Tests the bundled effect as the program finds it.
TEST(Host, FindsTheBundledEffectAndSetsItsPresets) {
    const auto found =
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager().componentsMatchingDescription(
            {fourCharCode("aumf"), fourCharCode("ovTw"), fourCharCode("KVRN"), 2, 0});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name(), "KVRN: Orvo Tonewright Extension");
    const auto unit = makeUnit(found[0].record().identifier);
    Rendering rendering(*unit, 48000, 256); // runs each block in a real-time scope
    const std::uint8_t note[] = {0x90, 57, 100};
    EXPECT_TRUE(unit->sendMIDIEvent(note));
    const auto decay = addressOf(*unit, "decay");
    float loudest = 0;
    const auto presets = unit->factoryPresets().value();
    for (const AUAudioUnitPreset& preset : presets) {
        unit->setCurrentPreset(preset);
        const auto& wanted = *std::ranges::find(tonewright::effect::factoryPresets(), preset.name(),
                                                &tonewright::effect::Preset::name);
        EXPECT_FLOAT_EQ(unit->parameterValue(decay),
                        wanted.values[index(tonewright::effect::Parameter::Decay)]);
        loudest = std::max(loudest, rendering.loudestOf(100));
    }
    EXPECT_TRUE(loudest > 1e-3F && std::isfinite(loudest)) << loudest;
}

TEST(Host, MapsOtherNumbersOfChannels) {
    const auto mono = makeUnit("urn:tonewright:test:mono");
    EXPECT_EQ(mono->processor()->inputChannels(), 1U);
    EXPECT_EQ(mono->processor()->outputChannels(), 1U);
    // Three inputs, of which the first is a side chain; CV ports; a third output; an unknown optional port.
    const auto side = makeUnit("urn:tonewright:test:sidechain");
    EXPECT_EQ(side->processor()->inputChannels(), 2U);
    EXPECT_EQ(side->processor()->outputChannels(), 2U);
    Rendering rendering(*side, 48000, 128);
    for (int i = 0; i < 3; ++i) {
        rendering.block();
        EXPECT_EQ(rendering.out(0), rendering.in(0));
        EXPECT_EQ(rendering.out(1), rendering.in(1));
    }
}

TEST(Host, IsSilentWhileReleased) {
    const auto unit = makeUnit("urn:tonewright:test:gain");
    Rendering rendering(*unit, 48000, 64);
    rendering.block();
    EXPECT_EQ(rendering.out(0), rendering.in(0));
    rendering.processor->release();
    rendering.block();
    EXPECT_EQ(rendering.out(0), std::vector<float>(64));
    EXPECT_FALSE(rendering.processor->allocate(48000, 64));
    rendering.block();
    EXPECT_EQ(rendering.out(0), rendering.in(0));
}

TEST(Host, SavesAndRestoresEverything) {
    const auto unit = makeUnit("urn:tonewright:test:stateful");
    const auto factor = addressOf(*unit, "factor");
    const auto initial = unit->fullState();
    EXPECT_NE(std::string(initial.begin(), initial.end()).find("from the default state"), std::string::npos);
    unit->setCurrentPreset(AUAudioUnitPreset(0, "any"));
    EXPECT_EQ(unit->currentPreset(), AUAudioUnitPreset(0, "Text"));
    EXPECT_EQ(unit->parameterValue(factor), 3.0F);
    const auto preset = unit->fullState();
    EXPECT_NE(std::string(preset.begin(), preset.end()).find("from the preset"), std::string::npos);
    const Rendering atAnotherRate(*unit, 44100, 64);
    EXPECT_EQ(unit->fullState(), preset);
    EXPECT_FALSE(unit->setFullState(initial));
    EXPECT_FALSE(unit->currentPreset());
    EXPECT_EQ(unit->parameterValue(factor), 1.0F);
    EXPECT_EQ(unit->fullState(), initial);
    EXPECT_FALSE(unit->setFullState(preset));
    EXPECT_EQ(unit->fullState(), preset);

    const std::string damaged = "<urn:x> a ; garbage";
    for (const auto& bytes :
         {std::vector<std::uint8_t>{}, std::vector<std::uint8_t>(damaged.begin(), damaged.end()),
          makeUnit("urn:tonewright:test:gain")->fullState()}) {
        EXPECT_TRUE(unit->setFullState(bytes));
    }
    EXPECT_EQ(unit->fullState(), preset);
}

TEST(Host, OffersFactoryPresets) {
    const auto unit = makeUnit("urn:tonewright:test:gain");
    const std::vector<AUAudioUnitPreset> presets{{0, "Half"}, {1, "Double"}};
    EXPECT_EQ(unit->factoryPresets(), presets);
    EXPECT_FALSE(unit->currentPreset());
    for (const auto& given : {presets[1], AUAudioUnitPreset(2, "none")}) {
        unit->setCurrentPreset(given);
        EXPECT_EQ(unit->currentPreset(), presets[1]);
        EXPECT_EQ(unit->parameterValue(addressOf(*unit, "gain")), 2.0F);
    }
    unit->setCurrentPreset(std::nullopt);
    EXPECT_FALSE(unit->currentPreset());
    EXPECT_FALSE(makeUnit("urn:tonewright:test:mono")->factoryPresets());
}

TEST(Host, LetsAPlugInWorkBesideTheSound) {
    const auto unit = makeUnit("urn:tonewright:test:stateful");
    Rendering rendering(*unit, 48000, 64);
    unit->setParameterValue(addressOf(*unit, "factor"), 2);
    const auto isScaled = [&] {
        rendering.block();
        return rendering.out(0)[10] == 2 * rendering.in(0)[10];
    };
    EXPECT_TRUE(waitFor(isScaled));
    EXPECT_GE(unit->parameterValue(addressOf(*unit, "answers")), 1.0F);
    // In offline rendering, the worker finishes the work requested in a block before the next block.
    rendering.processor->setOffline(true);
    for (int i = 0; i < 100; ++i) {
        unit->setParameterValue(addressOf(*unit, "factor"), static_cast<float>(3 + i % 2));
        rendering.block();
        rendering.block();
        ASSERT_EQ(rendering.out(0)[10], static_cast<float>(3 + i % 2) * rendering.in(0)[10]);
    }
}

TEST(Host, TakesDefaultsOfBothDialectsWithinBoundsAtTheRate) {
    setSharedOutputDevice(std::make_shared<OfflineDevice>(AVAudioFormat{44100, 2}));
    const auto unit = makeUnit("urn:tonewright:test:rates");
    setSharedOutputDevice(nullptr);
    const auto parameters = unit->parameters();
    const float defaults[] = {440, 11025, 22050};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(parameters[i].defaultValue, defaults[i]) << parameters[i].identifier;
        EXPECT_EQ(unit->parameterValue(parameters[i].address), defaults[i]) << parameters[i].identifier;
        EXPECT_EQ(parameters[i].maxValue, 22050);
    }
    {
        const Rendering faster(*unit, 96000, 64);
        unit->setParameterValue(parameters[0].address, 1e6F);
        EXPECT_EQ(unit->parameterValue(parameters[0].address), 48000);
    }
    const Rendering slower(*unit, 32000, 64);
    EXPECT_EQ(unit->parameterValue(parameters[0].address), 16000);
}

TEST(Host, MakesOneInstanceForTheDeviceAndTellsItOfOtherBlocks) {
    setSharedOutputDevice(std::make_shared<OfflineDevice>(AVAudioFormat{44100, 2}, 192));
    const auto unit = makeUnit("urn:tonewright:test:blocks");
    setSharedOutputDevice(nullptr);
    const auto level = addressOf(*unit, "level");
    const auto told = [&] {
        std::vector<float> values;
        for (const char* name : {"rate", "nominal", "longest", "made"}) {
            values.push_back(unit->parameterValue(addressOf(*unit, name)));
        }
        return values;
    };
    {
        Rendering rendering(*unit, 44100, 1000);
        const float first = [&] { return rendering.block(192), told()[3]; }();
        EXPECT_EQ(told(), (std::vector<float>{44100, 192, 192, first}));
        unit->setParameterValue(level, 0.75F);
        const auto isCopy = [&](std::uint32_t frames) {
            rendering.block(frames);
            for (std::uint32_t i = 0; i < frames; ++i) {
                if (rendering.out(0)[i] != 0.75F * rendering.in(0)[i]) return false;
            }
            return true;
        };
        for (const std::uint32_t frames : {1U, 191U, 192U, 1000U}) EXPECT_TRUE(isCopy(frames)) << frames;
        rendering.processor->setBlockFrames(100);
        EXPECT_TRUE(isCopy(100));
        EXPECT_EQ(told(), (std::vector<float>{44100, 100, 100, first}));
        rendering.processor->setBlockFrames(480); // more than the maximum at creation
        EXPECT_TRUE(isCopy(480));
        EXPECT_EQ(told(), (std::vector<float>{44100, 192, 192, first}));
    }
    Rendering another(*unit, 48000, 1000);
    another.block();
    EXPECT_EQ(told()[0], 48000);
    EXPECT_EQ(told()[1], 480);
    EXPECT_EQ(unit->parameterValue(level), 0.75F);
}

TEST(Host, TellsAnEffectOfTheBlocksThatTheEngineMeets) {
    const auto device = std::make_shared<VaryingDevice>();
    setSharedOutputDevice(device);
    const auto unit = makeUnit("urn:tonewright:test:blocks");
    setSharedOutputDevice(nullptr);
    const auto engine = AVAudioEngine::create(device);
    const auto node = std::make_shared<AVAudioUnit>(unit);
    engine->attachNode(node);
    engine->connect(node, engine->mainMixerNode(), std::nullopt);
    ASSERT_FALSE(engine->start());

    std::vector<float> told; // after the last block: nominal, shortest and longest length, number of changes
    const auto render = [&](std::uint32_t frames) {
        device->render(frames);
        std::this_thread::sleep_for(std::chrono::milliseconds(1)); // gives the control side time to follow
        told.clear();
        for (const char* name : {"nominal", "shortest", "longest", "changes"}) {
            told.push_back(unit->parameterValue(addressOf(*unit, name)));
        }
    };
    const auto comesTo = [&](std::uint32_t frames, const std::vector<float>& wanted) {
        // Another thread reports the change to the plug-in.
        return waitFor([&] { return render(frames), told == wanted; }) || (ADD_FAILURE() << told[0], false);
    };
    render(480);
    EXPECT_EQ(told, (std::vector<float>{480, 1, 480, 0}));
    for (int i = 0; i < 300; ++i) render(i % 10 == 0 ? 480 : 192);
    EXPECT_EQ(told, (std::vector<float>{480, 1, 480, 0})); // the nominal length did not change
    for (int i = 0; i < 50; ++i) render(192);
    EXPECT_EQ(told[0], 480); // not reported yet
    EXPECT_TRUE(comesTo(192, {192, 1, 192, 1}));
    EXPECT_TRUE(comesTo(480, {480, 1, 480, 2})); // reported at once
    for (int i = 0; i < 300; ++i) render(1000);
    EXPECT_EQ(told, (std::vector<float>{480, 1, 480, 2})); // limited to the maximum at creation
    engine->stop();
}

// Checks values of ports, and values in the plug-in's own state.
TEST(Host, KeepsAllDigitsOfAValue) {
    const auto unit = makeUnit("urn:tonewright:test:gain");
    const auto gain = addressOf(*unit, "gain");
    for (const float value : {0.0012345678F, 1.1754944e-38F, 3.9999998F, 1.2345678e-10F, 2.0F, -0.0F}) {
        unit->setParameterValue(gain, value);
        const auto state = unit->fullState();
        unit->setParameterValue(gain, 1);
        EXPECT_FALSE(unit->setFullState(state));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(unit->parameterValue(gain)),
                  std::bit_cast<std::uint32_t>(value));
    }
    const auto saving = makeUnit("urn:tonewright:test:stateful");
    EXPECT_FALSE(saving->setFullState(saving->fullState()));
    Rendering(*saving, 48000, 64).block();
    EXPECT_EQ(saving->parameterValue(addressOf(*saving, "restored")), std::nextafter(0.001F, 1.0F));
    EXPECT_EQ(saving->parameterValue(addressOf(*saving, "restored_small")), 1e-12F);
}

TEST(Host, CallsAPlugInOutsideOfRenderingFromOneThread) {
    {
        const auto unit = makeUnit("urn:tonewright:test:home");
        Rendering(*unit, 48000, 64).block();
        EXPECT_FALSE(unit->setFullState(unit->fullState()));
        unit->processor()->setBlockFrames(32);
        Rendering(*unit, 96000, 64).block(); // creates another instance
    }
    const auto another = makeUnit("urn:tonewright:test:home");
    Rendering(*another, 48000, 64).block();
    EXPECT_EQ(another->parameterValue(addressOf(*another, "strays")), 0);
}

TEST(Host, NeverUnloadsALibrary) {
    (void)makeUnit("urn:tonewright:test:gain");
    const std::string path = std::string(std::getenv("TONEWRIGHT_FIXTURES")) + "/fixtures.lv2/plugins.so";
    EXPECT_NE(::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

// Runs every operation of the control side while another thread renders continuously.
TEST(Host, MayBeChangedWhileItRuns) {
    const auto unit = makeUnit("urn:tonewright:test:stateful");
    Rendering rendering(*unit, 48000, 64);
    std::atomic<bool> isOver{false};
    std::thread audio([&] {
        while (!isOver) rendering.block();
    });
    const auto factor = addressOf(*unit, "factor");
    const auto state = unit->fullState();
    for (int i = 0; i < 200; ++i) {
        unit->setParameterValue(factor, static_cast<float>(i % 4));
        if (i % 10 == 0) {
            EXPECT_FALSE(unit->setFullState(state));
        }
        if (i % 10 == 5) unit->setCurrentPreset(AUAudioUnitPreset(0, ""));
        (void)unit->fullState();
        (void)unit->latencyFrames();
        (void)unit->parameterValue(addressOf(*unit, "answers"));
    }
    isOver = true;
    audio.join();
}

TEST(Host, MakesNoUnitOfABrokenPlugIn) {
    for (const auto& [name, reason] : {std::pair{"missinglibrary", "absent.so"},
                                       {"damagedlibrary", "damaged.so: "}, // followed by the loader's message
                                       {"hanginginstance", "has not returned from creating an instance"},
                                       {"noinstance", "did not create an instance"},
                                       {"unknownfeature", "urn:tonewright:test:no-such-feature"},
                                       {"unknownport", "Strange"},
                                       {"nowhere", "not installed"}}) {
        const auto made = provider().instantiate({{}, "", "", std::string("urn:tonewright:test:") + name});
        ASSERT_FALSE(made) << name;
        EXPECT_NE(made.error().localizedDescription().find(reason), std::string::npos) << name;
    }
}

TEST(Host, WaitsForAPlugInForTwoSecondsAtMost) {
    const auto allocateAt = [](double rate) {
        return [rate](AUAudioUnit& unit) { return unit.processor()->allocate(rate, 64); };
    };
    const auto restore = [](AUAudioUnit& unit) { return unit.setFullState(unit.fullState()); };
    struct {
        const char* name;
        std::string from; // named in the error or on standard error
        std::function<std::optional<Error>(AUAudioUnit&)> operation;
    } const cases[] = {
        {"hangingactivate", "being activated", allocateAt(44100)},
        {"hangingsecond", "creating an instance", allocateAt(96000)},
        {"hangingsave", "saving its state",
         [](AUAudioUnit& unit) { return (void)unit.fullState(), std::nullopt; }},
        {"hangingsave", "saving its state", allocateAt(96000)},
        {"hangingrestore", "restoring a state", restore},
        {"hangingoptions", "changing the block length",
         [](AUAudioUnit& unit) { return unit.processor()->setBlockFrames(32), std::nullopt; }},
        {"hangingrun", "rendering", allocateAt(96000)},
        {"hangingrun", "rendering", restore},
    };
    for (const auto& [name, from, operation] : cases) {
        const auto unit = makeUnit(std::string("urn:tonewright:test:") + name);
        if (std::string_view(name) == "hangingrun") {
            std::atomic<bool> runs{false};
            std::thread([&runs, unit] {
                Rendering rendering(*unit, 44100, 64);
                runs = true;
                rendering.block();
            }).detach();
            while (!runs) std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        testing::internal::CaptureStderr();
        const auto begin = std::chrono::steady_clock::now();
        const auto failure = operation(*unit);
        EXPECT_FALSE(unit->factoryPresets()) << name; // other operations do not wait for the hanging call
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3)) << name;
        const std::string told = testing::internal::GetCapturedStderr();
        const std::string text = failure ? failure->localizedDescription() : told;
        EXPECT_NE(text.find("has not returned from " + from), std::string::npos) << text;
        EXPECT_NE(text.find(unit->processor()->name()), std::string::npos) << text;
    }
}

// Saving and rendering can run concurrently, so an effect that does not return from saving is still heard.
TEST(Host, RunsAnEffectWhileItSaves) {
    const auto unit = makeUnit("urn:tonewright:test:hangingsave");
    Rendering rendering(*unit, 48000, 8192); // the block length at creation
    std::thread saving([&] { EXPECT_TRUE(unit->fullState().empty()); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    for (int i = 0; i < 2; ++i) {
        rendering.block();
        EXPECT_EQ(rendering.out(0)[10], -rendering.in(0)[10]);
        if (i == 0) saving.join();
    }
}
