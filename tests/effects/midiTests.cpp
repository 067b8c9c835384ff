// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests MIDI from and to an effect: no event is lost, the order is kept, and each event has its length.
#include "platform/audio/OfflineDevice.hpp"
#include "platform/audio/seams.hpp"
#include "platform/effects/detail/MIDIOutputDelivery.hpp"
#include "platform/effects/unit/AudioUnit.hpp"
#include "tests/effects/Rendering.hpp"

using namespace platform;
using namespace platform::test;

namespace {

struct Received {
    std::int64_t time, length;
    std::vector<std::uint8_t> bytes;
};

class Receiver {
  public:
    MIDIOutputEventBlock block() {
        return [this](std::int64_t time, std::uint8_t cable, std::int64_t length, const std::uint8_t* data) {
            const std::scoped_lock lock(_mutex);
            EXPECT_EQ(cable, 0);
            _events.push_back({time, length, {data, data + length}});
            return 0;
        };
    }
    std::vector<Received> wait(std::size_t count) {
        EXPECT_TRUE(waitFor([&] {
            const std::scoped_lock lock(_mutex);
            return _events.size() >= count;
        }));
        const std::scoped_lock lock(_mutex);
        return _events;
    }

  private:
    std::mutex _mutex;
    std::vector<Received> _events;
};

constexpr std::uint32_t Count = 6, Size = 7; // ports of the fixture

// So long that a process of its own renders every block in time, also with a sanitizer on a busy machine.
constexpr std::uint32_t BlockFrames = 8192;

// Creates the unit with a device of this block length, so that the host does not split blocks.
std::shared_ptr<AUAudioUnit> makeUnitForBlocks(const std::string& uri) {
    setSharedOutputDevice(std::make_shared<OfflineDevice>(AVAudioFormat{48000, 2}, BlockFrames));
    auto unit = makeUnit(uri);
    setSharedOutputDevice(nullptr);
    return unit;
}

// A plug-in that sends bursts, and a receiver of its events.
class Burst : public testing::Test {
  protected:
    void SetUp() override { unit->setMIDIOutputEventBlock(receiver.block()); }

    Receiver receiver; // declared before the unit, which may still call it
    const std::shared_ptr<AUAudioUnit> unit = makeUnitForBlocks("urn:tonewright:test:burst");
    Rendering rendering{*unit, 48000, BlockFrames};
};

} // namespace

TEST_F(Burst, LosesNoEvent) {
    constexpr int Events = 50000;
    EXPECT_EQ(unit->MIDIOutputNames(), std::vector<std::string>{"Midi out"});
    rendering.block();
    unit->setParameterValue(Count, Events);
    rendering.block();
    const auto events = receiver.wait(Events);
    ASSERT_EQ(events.size(), static_cast<std::size_t>(Events));
    for (std::int64_t i = 0; i < Events; ++i) {
        const Received& event = events[static_cast<std::size_t>(i)];
        ASSERT_EQ(event.time, BlockFrames + i * BlockFrames / Events);
        ASSERT_EQ(event.bytes, (std::vector<std::uint8_t>{0x90, static_cast<std::uint8_t>(i & 0x7f),
                                                          static_cast<std::uint8_t>((i >> 7) & 0x7f)}));
    }
}

TEST_F(Burst, KeepsTheTrueLength) {
    unit->setParameterValue(Size, -1);
    unit->setParameterValue(Count, 500);
    rendering.block();
    const auto events = receiver.wait(500);
    ASSERT_EQ(events.size(), 500U);
    constexpr std::int64_t Lengths[] = {0, 1, 2, 3, 300};
    for (std::size_t i = 0; i < 500; ++i) {
        ASSERT_EQ(events[i].length, Lengths[i % 5]);
        ASSERT_TRUE(i % 5 != 4 || events[i].bytes[299] == (299 & 0x7f));
    }
}

TEST(MIDIOutput, SaysWhatItLost) {
    testing::internal::CaptureStderr();
    std::atomic<int> received{0};
    {
        MIDIOutputDelivery delivery("Flood");
        delivery.setBlock(
            [&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) { return ++received * 0; });
        const std::uint8_t note[] = {0x90, 1, 2};
        for (int i = 0; i < 65536 + 100; ++i) delivery.push(i, note, 3); // not yet delivered
        delivery.flush();
    }
    EXPECT_EQ(received, 65536);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("100 events were lost"), std::string::npos);
}

TEST(MIDIOutput, BlockMayBeReplacedAlsoFromInside) {
    std::atomic<int> first{0}, second{0};
    MIDIOutputDelivery delivery("Test");
    EXPECT_FALSE(delivery.isWanted());
    delivery.setBlock([&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) {
        ++first;
        delivery.setBlock(
            [&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) { return ++second * 0; });
        return 0;
    });
    const std::uint8_t note[] = {0x90, 1, 2};
    for (int i = 0; i < 10; ++i) delivery.push(i, note, 3);
    delivery.flush();
    EXPECT_TRUE(waitFor([&] { return second == 9; }));
    EXPECT_EQ(first, 1);
    delivery.setBlock(nullptr);
    EXPECT_FALSE(delivery.isWanted());
}

TEST_F(Burst, KeepsEventsForTheInterfaceThatIsOpen) {
    auto& effect = dynamic_cast<lv2::AudioUnit&>(*unit).lv2Processor();
    std::uint32_t port = 0;
    std::vector<std::byte> atom;
    effect.setListening(true);
    unit->setParameterValue(Count, 5);
    rendering.block();
    effect.setListening(false);
    rendering.block();
    effect.setListening(true); // like a second interface
    EXPECT_FALSE(effect.receiveAtom(port, atom));
    unit->setParameterValue(Count, 3);
    rendering.block();
    int received = 0;
    while (effect.receiveAtom(port, atom)) ++received;
    EXPECT_EQ(received, 3);
    effect.setListening(false);
}

TEST(MIDIOutput, LosesItsLastOwnerInsideTheBlock) {
    std::atomic<int> received{0};
    auto delivery = std::make_unique<MIDIOutputDelivery>("Test");
    delivery->setBlock([&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) {
        delivery.reset();
        return ++received * 0;
    });
    const std::uint8_t note[] = {0x90, 1, 2};
    for (int i = 0; i < 3; ++i) delivery->push(i, note, 3);
    delivery->flush();
    EXPECT_TRUE(waitFor([&] { return received == 3; }));
}

TEST_F(Burst, SendsBackWhatItHears) {
    const std::vector<std::uint8_t> note{0x90, 60, 100}, sysex{0xf0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0xf7};
    EXPECT_TRUE(unit->sendMIDIEvent(note));
    EXPECT_TRUE(unit->sendMIDIEvent(sysex));
    rendering.block();
    const auto events = receiver.wait(2);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].bytes, note);
    EXPECT_EQ(events[1].bytes, sysex);
    EXPECT_FALSE(makeUnit("urn:tonewright:test:mono")->sendMIDIEvent(note));
    int taken = 0;
    while (unit->sendMIDIEvent(sysex) && taken < 1000000) ++taken; // no block runs, so the queue fills up
    EXPECT_GT(taken, 100);
    EXPECT_LT(taken, 1000000);
}
