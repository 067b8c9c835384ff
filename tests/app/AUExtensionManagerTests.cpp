// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the manager from the search to the connected effect.
#include "app/Audio Engine/AUExtensionManager.hpp"
#include "app/Audio Engine/componentReport.hpp"
#include "platform/foundation/console.hpp"
#include "tests/support/InProcessEffect.hpp"

namespace tonewright::test {
namespace {

using platform::fourCharCode;

/// Prints a line for each call, so that the order of calls and the program's own lines can be compared.
class RecordingDelegate final : public AUExtensionManagerDelegate {
  public:
    std::shared_ptr<platform::AVAudioUnit> unit;

    void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& found) override {
        unit = found;
        platform::print("(found)");
    }
    void onEngineInitialized() override { platform::print("(initialised)"); }
};

class ManagerTest : public testing::Test {
  protected:
    ManagerTest() { platform::setSharedOutputDevice(std::make_shared<platform::OfflineDevice>()); }
    ~ManagerTest() override {
        InProcessProvider::install(nullptr);
        platform::setSharedOutputDevice(nullptr);
    }
    static InProcessProvider::Entry entry(const std::string& identifier,
                                          const std::shared_ptr<platform::AUAudioUnit>& unit,
                                          std::uint32_t flags = 2, const char (&subType)[5] = "ovTw") {
        return {{.description = {fourCharCode("aumf"), fourCharCode(subType), fourCharCode("KVRN"), flags, 0},
                 .name = identifier,
                 .version = "1",
                 .identifier = identifier},
                unit};
    }
    /// Installs the components, creates a manager, and returns the lines up to and including `last`.
    Lines linesUntil(const std::string& last, std::vector<InProcessProvider::Entry> entries) {
        provider = std::make_shared<InProcessProvider>(std::move(entries));
        InProcessProvider::install(provider);
        CapturedOutput output;
        manager = AUExtensionManager::create(delegate);
        EXPECT_TRUE(waitFor([&] { return !output.lines().empty() && output.lines().back() == last; }));
        platform::RunLoop::current().runFor(0.05); // no line may follow
        return output.lines();
    }

    std::shared_ptr<InProcessProvider> provider;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<AUExtensionManager> manager;
    std::shared_ptr<InProcessEffect> effect = std::make_shared<InProcessEffect>();
};

TEST_F(ManagerTest, TheFirstMatchIsTold) {
    const auto other = std::make_shared<InProcessEffect>();
    const auto lines = linesUntil("(initialised)", {entry("wrong", other, 2, "xxxx"),
                                                    entry("first", effect, 0x1A), entry("second", other)});
    ASSERT_GT(lines.size(), 9U);
    EXPECT_EQ(lines[9], "flags: 0x0000001a"); // the flags of the component, not those of the search
    EXPECT_EQ((Lines{lines.end() - 4, lines.end()}),
              (Lines{"AUExtensionManager: Performed audio unit connection.", "(found)",
                     "WARNING: Audio unit is nil (yet?).", "(initialised)"}));
    EXPECT_EQ(provider->instantiated, Lines{"first"});
    ASSERT_TRUE(delegate->unit);
    EXPECT_EQ(delegate->unit->auAudioUnit(), effect);
    EXPECT_EQ(effect->contextName(), "running in distribution host");

    // The manager keeps no audio unit, so it has no presets to return or set.
    EXPECT_TRUE(manager->presets().empty());
    EXPECT_FALSE(manager->currentPreset());
    manager->setCurrentPreset(std::nullopt);
}

TEST_F(ManagerTest, FailuresEndQuietly) {
    const std::string nothing = "ERROR: There were no audio units found.";
    EXPECT_EQ(linesUntil(nothing, {}),
              (Lines{"NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!",
                     nothing}));
    const auto lines = linesUntil("Error: Could not instantiate audio unit.", {entry("broken", nullptr)});
    EXPECT_EQ(lines[lines.size() - 2],
              "AudioComponentDescription(componentType: 1635085670, componentSubType: 1870025847, "
              "componentManufacturer: 1263948366, componentFlags: 2, componentFlagsMask: 0)");
    EXPECT_FALSE(delegate->unit);
}

TEST(ComponentReport, FormatsFlagsAsCDoes) {
    CapturedOutput output;
    for (const std::uint32_t flags : {0U, ~0U}) {
        printComponentReport({0, 0x80808080U, fourCharCode("KVRN"), flags, 0});
        const Lines lines = output.take();
        EXPECT_EQ(lines.at(4), std::string("type: \0\0\0\0", 10));
        EXPECT_EQ(lines.at(5), "subtype: \u00C4\u00C4\u00C4\u00C4");
        EXPECT_EQ(lines.at(6), "manufacturer: KVRN");
        EXPECT_EQ(lines.at(7), flags == 0 ? "flags: 0000000000" : "flags: 0xffffffff");
    }
}

} // namespace
} // namespace tonewright::test
