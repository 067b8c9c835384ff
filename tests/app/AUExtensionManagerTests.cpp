// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The manager's way from the search to the connected effect.
#include "app/Audio Engine/AUExtensionManager.hpp"
#include "app/Audio Engine/componentReport.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/foundation/console.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/InProcessEffect.hpp"

#include <chrono>
#include <gtest/gtest.h>

namespace tonewright::test {
namespace {

using Lines = std::vector<std::string>;
using platform::fourCharCode;

constexpr const char* Note =
    "NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!";

/// Writes a line for each call, so that their place among the system's own lines is seen.
class RecordingDelegate final : public AUExtensionManagerDelegate {
  public:
    std::shared_ptr<platform::AVAudioUnit> unit;
    bool isInitialized = false;

    void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& found) override {
        unit = found;
        platform::print("(found)");
    }
    void onEngineInitialized() override {
        isInitialized = true;
        platform::print("(initialised)");
    }
};

class ManagerTest : public testing::Test {
  protected:
    ManagerTest() { platform::setSharedOutputDevice(std::make_shared<platform::OfflineDevice>()); }
    ~ManagerTest() override {
        registry().setProvider(nullptr);
        platform::setSharedOutputDevice(nullptr);
    }
    static platform::AVAudioUnitComponentManager& registry() {
        return platform::AVAudioUnitComponentManager::sharedAudioUnitComponentManager();
    }
    static InProcessProvider::Entry entry(const std::string& identifier,
                                          const std::shared_ptr<platform::AUAudioUnit>& unit,
                                          std::uint32_t flags = 2,
                                          std::uint32_t subType = fourCharCode("ovTw")) {
        return {{.description = {fourCharCode("aumf"), subType, fourCharCode("KVRN"), flags, 0},
                 .name = identifier,
                 .version = "1",
                 .identifier = identifier},
                unit};
    }
    /// Installs the components, make a manager, and returns the lines up to and with the one that starts with
    /// `last`.
    Lines linesUntil(const std::string& last, std::vector<InProcessProvider::Entry> entries) {
        provider = std::make_shared<InProcessProvider>(std::move(entries));
        registry().setProvider(provider);
        CapturedOutput output;
        manager = AUExtensionManager::create(delegate);
        // A line from another thread wakes nobody, so the loop turns in short steps.
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        const auto isLast = [&] {
            const auto lines = output.lines();
            return !lines.empty() && lines.back().starts_with(last);
        };
        while (!isLast() && std::chrono::steady_clock::now() < end) platform::RunLoop::current().runFor(0.01);
        EXPECT_TRUE(isLast());
        platform::RunLoop::current().runFor(0.05); // nothing may follow
        return output.lines();
    }

    std::shared_ptr<InProcessProvider> provider;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<AUExtensionManager> manager;
    std::shared_ptr<InProcessEffect> effect = std::make_shared<InProcessEffect>(InProcessEffect::Settings{});
};

TEST_F(ManagerTest, TheFirstMatchIsTold) {
    const auto other = std::make_shared<InProcessEffect>(InProcessEffect::Settings{});
    const auto lines = linesUntil("(initialised)", {entry("wrong", other, 2, fourCharCode("xxxx")),
                                                    entry("first", effect, 0x1A), entry("second", other)});
    ASSERT_GT(lines.size(), 9U);
    EXPECT_EQ(lines[9], "flags: 0x0000001a"); // the component's own, not those searched for
    EXPECT_EQ((Lines{lines.end() - 4, lines.end()}),
              (Lines{"AUExtensionManager: Performed audio unit connection.", "(found)",
                     "WARNING: Audio unit is nil (yet?).", "(initialised)"}));
    EXPECT_EQ(provider->instantiated, Lines{"first"});
    ASSERT_TRUE(delegate->unit);
    EXPECT_EQ(delegate->unit->auAudioUnit(), effect);
    EXPECT_EQ(effect->contextName(), "running in distribution host");

    // The manager keeps no audio unit of its own, so it has no presets to give or to set.
    EXPECT_TRUE(manager->presets().empty());
    EXPECT_FALSE(manager->currentPreset());
    manager->setCurrentPreset(std::nullopt);
}

TEST_F(ManagerTest, FailuresEndQuietly) {
    EXPECT_EQ(linesUntil("ERROR", {}), (Lines{Note, "ERROR: There were no audio units found."}));
    const auto lines = linesUntil("Error:", {entry("broken", nullptr)});
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2],
              "AudioComponentDescription(componentType: 1635085670, componentSubType: 1870025847, "
              "componentManufacturer: 1263948366, componentFlags: 2, componentFlagsMask: 0)");
    EXPECT_EQ(lines.back(), "Error: Could not instantiate audio unit.");
    EXPECT_FALSE(delegate->unit);
    EXPECT_FALSE(delegate->isInitialized);
}

TEST(ComponentReport, FormatsFlagsAsCDoes) {
    const auto flagsLine = [](std::uint32_t flags) {
        CapturedOutput output;
        printComponentReport({0, 0x80808080U, fourCharCode("KVRN"), flags, 0});
        return output.lines();
    };
    EXPECT_EQ(flagsLine(0).at(7), "flags: 0000000000");
    EXPECT_EQ(flagsLine(0xFFFFFFFFU).at(7), "flags: 0xffffffff");
    EXPECT_EQ(flagsLine(1).at(4), std::string("type: \0\0\0\0", 10));
    EXPECT_EQ(flagsLine(1).at(5), "subtype: \u00C4\u00C4\u00C4\u00C4");
}

} // namespace
} // namespace tonewright::test
