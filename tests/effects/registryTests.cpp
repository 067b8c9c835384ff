// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the registry: which components are found, in which order, and how much a search costs.
#include "tests/effects/Rendering.hpp"

using namespace platform;
using namespace platform::test;
using tonewright::test::contentOf;
namespace fs = std::filesystem;

namespace {

constexpr AudioComponentDescription Wanted{fourCharCode("aumf"), fourCharCode("tsTs"), fourCharCode("TEST"),
                                           2, 0};
constexpr const char* Gain = "urn:tonewright:test:gain";
constexpr const char* Mono = "urn:tonewright:test:mono";

// A private search path and cache, with the fixtures at the end of the path.
class Registry : public testing::Test {
  protected:
    void writeBundle(const std::string& name, const std::string& statements) const {
        (void)_root.file("lv2/" + name + "/manifest.ttl",
                         "@prefix tw: <https://tonewright.example/ns/component#> .\n" + statements);
    }
    static std::string codes(const std::string& uri, const std::string& type, const std::string& subType,
                             const std::string& more = "") {
        return "<" + uri + "> tw:componentType \"" + type + "\" ; tw:componentSubType \"" + subType +
               "\" ; tw:componentManufacturer \"TEST\"" + more + " .\n";
    }

    static std::vector<ComponentRecord> search(const AudioComponentDescription& wanted) {
        return provider().componentsMatching(wanted);
    }
    static std::vector<std::string> searchURIs(const AudioComponentDescription& wanted = Wanted) {
        std::vector<std::string> uris;
        for (const auto& record : search(wanted)) uris.push_back(record.identifier);
        return uris;
    }
    using URIs = std::vector<std::string>;

    tonewright::test::Scratch _root;

  private:
    const std::string _fixtures = std::getenv("TONEWRIGHT_FIXTURES");
    const Setting _path{"LV2_PATH", _root.folder("lv2/") + ":" + _fixtures + ":" + _fixtures};
    const Setting _cache{"XDG_CACHE_HOME", _root / "cache"};
};

} // namespace

TEST(AudioComponentDescription, MatchesByCodesAndMaskedFlags) {
    const AudioComponentDescription component{1, 2, 3, 0b0110, 0};
    using Case = std::pair<AudioComponentDescription, bool>;
    for (const auto& [wanted, expected] :
         {Case{{1, 2, 3, 0, 0}, true}, Case{{0, 0, 0, 0, 0}, true}, Case{{0, 2, 0, 9, 0}, true},
          Case{{1, 2, 4, 6, 0}, false}, Case{{2, 2, 3, 6, 0}, false}, Case{{1, 1, 3, 6, 0}, false},
          Case{{1, 2, 3, 0b0111, 0b0110}, true}, Case{{1, 2, 3, 0b0111, 0b0001}, false}}) {
        EXPECT_EQ(matches(component, wanted), expected);
    }
    EXPECT_EQ(fourCharCode("aumf"), 0x61756D66U);
    EXPECT_EQ(fourCharCode("\xff"
                           "abc"),
              0xFF616263U);
}

TEST_F(Registry, OrdersByPlaceThenByNameAndFollowsChanges) {
    writeBundle("b.lv2", codes(Gain, "aumf", "tsTs"));
    EXPECT_EQ(searchURIs(), (URIs{Gain}));
    writeBundle("a.lv2", codes(Mono, "aumf", "tsTs"));
    for (int run = 0; run < 2; ++run) EXPECT_EQ(searchURIs(), (URIs{Mono, Gain}));
    writeBundle("a.lv2", codes(Mono, "aufx", "tsTs")); // same length, another modification time
    EXPECT_EQ(searchURIs(), (URIs{Gain}));
    fs::remove_all(_root / "lv2/b.lv2");
    EXPECT_EQ(searchURIs(), URIs{});
}

TEST_F(Registry, TheEnvironmentsChoiceComesFirstWithTheCodesSearchedFor) {
    writeBundle("side.lv2", codes(Gain, "aumf", "tsTs"));
    const Setting chosen("TONEWRIGHT_EFFECT", Mono);
    const auto found = search(Wanted);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].identifier, Mono);
    EXPECT_EQ(found[0].name, "Test mono");
    AudioComponentDescription expected = Wanted;
    expected.componentFlagsMask = 0;
    EXPECT_EQ(found[0].description, expected);
    const Setting missing("TONEWRIGHT_EFFECT", "urn:nowhere");
    testing::internal::CaptureStderr();
    EXPECT_EQ(searchURIs(), (URIs{Gain}));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("urn:nowhere"), std::string::npos);
}

TEST_F(Registry, LeavesOutMistakesAndSaysThem) {
    writeBundle("1-short.lv2", codes(Gain, "aum", "tsTs"));
    writeBundle("2-incomplete.lv2", "<urn:tonewright:test:gain> tw:componentType \"aumf\" .\n");
    writeBundle("3-damaged.lv2", codes(Mono, "aumf", "tsTs") + "<urn:x> tw:componentType \"au");
    writeBundle("4-absent.lv2", codes("urn:nowhere", "aumf", "tsTs"));
    (void)_root.folder("lv2/5-empty.lv2");
    (void)_root.file("lv2/6-a-file.lv2", "no directory");
    for (int run = 0; run < 2; ++run) { // the second run reads the cache
        testing::internal::CaptureStderr();
        EXPECT_EQ(searchURIs(), (URIs{Mono}));
        const std::string said = testing::internal::GetCapturedStderr();
        for (const char* part : {"1-short", "2-incomplete", "3-damaged", "urn:nowhere"}) {
            EXPECT_NE(said.find(part), std::string::npos) << part;
        }
    }
}

TEST_F(Registry, SurvivesALostOrDamagedCache) {
    writeBundle("side.lv2",
                codes(Gain, "aumf", "tsTs", " ; tw:componentFlags 6 ; tw:displayName \"a\\tb % \\\"ü\\\"\""));
    AudioComponentDescription described = Wanted;
    described.componentFlags = 6;
    const auto isSame = [&] {
        const auto found = search(Wanted);
        return found.size() == 1 && found[0].identifier == Gain && found[0].name == "a\tb % \"ü\"" &&
               found[0].description == described;
    };
    EXPECT_TRUE(isSame());
    const std::string cache = _root / "cache/tonewright/bundle-index";
    const std::string written = contentOf(cache);
    EXPECT_TRUE(isSame());
    for (const std::string& content :
         {std::string(), std::string("nonsense\n"), written.substr(0, written.size() / 2),
          "tonewright bundle index 1\nC\tx\nend\n" + written,
          std::string("tonewright bundle index 1\nB\t\t\n")}) {
        std::ofstream(cache, std::ios::trunc) << content;
        EXPECT_TRUE(isSame());
        EXPECT_EQ(contentOf(cache), written);
    }
    fs::remove_all(_root / "cache");
    (void)_root.file("cache", "a file where the directory should be");
    EXPECT_TRUE(isSame());
}

TEST_F(Registry, DerivesTypesFromPortsWhereNoneIsStated) {
    constexpr auto Effect = fourCharCode("aufx"), MusicEffect = fourCharCode("aumf");
    for (const auto& [uri, type] : std::map<std::string, std::uint32_t>{
             {Gain, Effect}, {Mono, Effect}, {"urn:tonewright:test:burst", MusicEffect}}) {
        const auto found = searchURIs({type, 0, 0, 0, 0});
        EXPECT_EQ(std::count(found.begin(), found.end(), uri), 1) << uri;
    }
    const auto all = search({});
    for (const auto& record : all) {
        // A search with a component's own description finds this component first.
        const auto again = searchURIs(record.description);
        ASSERT_FALSE(again.empty());
        EXPECT_EQ(again.front(), record.identifier);
    }
    EXPECT_GE(all.size(), 14U);
}

TEST_F(Registry, InstantiatesOnTheMainThreadAndReturnsAtOnce) {
    writeBundle("side.lv2", codes(Gain, "aumf", "tsTs"));
    std::shared_ptr<AVAudioUnit> unit;
    AVAudioUnit::instantiate(Wanted, {}, [&](std::shared_ptr<AVAudioUnit> made, std::optional<Error> error) {
        unit = std::move(made);
        EXPECT_TRUE(isMainThread() && !error);
    });
    EXPECT_FALSE(unit);
    ASSERT_TRUE(waitFor([&] { return unit != nullptr; }));
    EXPECT_EQ(unit->processor(), unit->auAudioUnit()->processor());
}

TEST_F(Registry, AFailedInstantiationGivesNoUnitAndSaysWhy) {
    writeBundle("side.lv2", codes("urn:tonewright:test:unknownfeature", "aumf", "tsTs"));
    for (const bool isInstalled : {true, false}) {
        bool isDone = false;
        testing::internal::CaptureStderr();
        AVAudioUnit::instantiate(Wanted, {},
                                 [&](const std::shared_ptr<AVAudioUnit>& made, std::optional<Error> error) {
                                     EXPECT_FALSE(made);
                                     EXPECT_TRUE(error);
                                     isDone = true;
                                 });
        EXPECT_TRUE(waitFor([&] { return isDone; }));
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_NE(said.find(isInstalled ? "urn:tonewright:test:no-such-feature" : "No effect"),
                  std::string::npos)
            << said;
        fs::remove_all(_root / "lv2/side.lv2");
    }
}
