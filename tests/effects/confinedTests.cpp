// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests what an effect in a process of its own can access.
#include "platform/foundation/confinement.hpp"
#include "tests/effects/Rendering.hpp"

using namespace platform;
using namespace platform::test;

namespace {

using Reached = std::map<std::string, float>;

// Returns which accesses the test effect succeeded in, by name.
Reached reached(const std::string& confinement) {
    const tonewright::test::Scratch home, outside;
    home.file(".keys/key");
    outside.file("key");
    home.file("Music/file");
    std::filesystem::create_symlink(home / ".keys", home / "link"); // visible, to a hidden folder
    std::filesystem::create_symlink(outside.path(), home / ".ssh"); // hidden, to a folder outside
    home.folder("data");
    const Setting where("TONEWRIGHT_EFFECT_PROCESS", "own"),
        how("TONEWRIGHT_EFFECT_CONFINEMENT", confinement);
    const Setting place("HOME", home.path()), data("XDG_DATA_HOME", home / "data");
    const auto unit = makeUnit("urn:tonewright:test:reaching");
    unit->processor()->setOffline(true);
    Rendering rendering(*unit, 48000, 64);
    rendering.block();
    Reached results;
    for (const AUParameter& parameter : unit->parameters()) {
        results[parameter.identifier] = unit->parameterValue(parameter.address);
    }
    return results;
}

TEST(Confined, ReachesOnlyWhatAnEffectNeeds) {
    Reached results = reached("on");
    EXPECT_EQ(std::exchange(results["descriptors"], 0), 256);
    Reached expected;
    for (const auto& [name, result] : results) expected[name] = 0;
    for (const char* name : {"visible", "own", "thread"}) expected[name] = 1;
    const ConfinementSupport support = confinementSupport();
    if (support.landlock == 0) expected["hidden"] = expected["link"] = expected["home"] = 1;
    if (!support.hasSeccomp) {
        for (const char* name : {"network", "local", "fork", "execute", "signal", "trace"}) {
            expected[name] = 1;
        }
    }
    EXPECT_EQ(results, expected);
}

TEST(Confined, ReachesEverythingOnRequest) {
    Reached results = reached("off");
    EXPECT_EQ(results.size(), 13U);
    results.erase("descriptors");
    for (const auto& [name, result] : results) EXPECT_EQ(result, 1) << name;
}

} // namespace
