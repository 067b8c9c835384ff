// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Bundle.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;
using Lines = std::vector<std::string>;

namespace {

// The report's headings and labels in order, separated by bars.
constexpr const char* Headings =
    "Der temporäre Ordner ist: |Das momentane Wurzelverzeichnis ist: |"
    "Die Resourcen befinden sich im Ordner: |Der Hauptordner ist: |Die Identifikation ist: |"
    "Die Hauptklasse ist: |Die ausführbare Datei ist: |Private Rahmenwerke sind in: |"
    "Gemeinsame Rahmenwerke sind in: |Die Plugins befinden sich in: |"
    "Der Ordner für den gemeisamen Support ist: |Die AppStore Quittungen liegen in: |"
    "Der Inhalt des 'Resources' Ordners ist: |Komplette Struktur des 'Resources' Ordners ist: |"
    "Alle Pfade des 'Resources' Ordners sind: |"
    "Die Einzeluntersuchung der 'Resources' Ordners ergab folgendes: |"
    "Alle *.png Dateien im 'Resources' Ordners sind: |Folgende globale Ordner sind definiert: ";
constexpr const char* Labels =
    "Dokumenten Ordner: |Application Ordner: |Demo Ordner: |Entwickler Application Ordner: |"
    "Administrativer Ordner: |Bibliotheks Ordner: |Entwickler Ordner: |Nutzer Ordner: |"
    "Dokumentations Ordner: |Dokument Ordner|Core Service Ordner: |Autosaved Information Ordner: |"
    "Desktop Ordner: |Cache Ordner: |Application Support Ordner: |Downloads Ordner: |"
    "Eingabemethoden Ordner: |Filme Ordner: |Musik Ordner: |Bilder Ordner: |"
    "Druckerbeschreibungen Ordner: |Gemeinsamer Öffentlicher Ordner: |Eigenschaftsdialog Ordner: |"
    "Element Austausch Ordner: |Alle Application Ordner: |Alle Resourcen Ordner : ";

Lines divided(const std::string& text) {
    Lines pieces;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, '|');) pieces.push_back(piece);
    return pieces;
}

} // namespace

TEST(Report, NamesEveryPlaceInItsOrder) {
    const auto& bundle = platform::Bundle::main();
    std::filesystem::create_directories(bundle.sharedSupportPath() +
                                        "/tonewright"); // may be missing in a build
    const std::string resources = bundle.resourcePath().value();
    const auto subpaths = platform::FileManager::defaultManager().subpathsAtPath(resources).value();
    FileEnumerator enumerator;
    test::CapturedOutput output;
    enumerator.testFileManager();
    const Lines lines = output.take();
    auto at = lines.begin();
    const Lines headings = divided(Headings);
    for (const std::string& heading : headings) {
        at = std::find(at, lines.end(), heading);
        ASSERT_NE(at, lines.end()) << heading;
    }
    const auto under = [&](const std::string& heading, int line = 1) {
        return *(std::find(lines.begin(), lines.end(), heading) + line);
    };
    EXPECT_EQ(under(headings[2], 1), platform::URL::fileURLWithPath(resources, true).absoluteString());
    EXPECT_EQ(under(headings[2], 2), resources);
    EXPECT_EQ(under(headings[4]), "empty (bundleIdentifier)");
    EXPECT_EQ(under(headings[5], 1), "empty (principalClass)");
    EXPECT_EQ(under(headings[5], 2), "empty (infoDictionary)");
    EXPECT_EQ(under(headings[6], 2), std::filesystem::read_symlink("/proc/self/exe"));
    EXPECT_EQ(under(headings[11], 2), headings[12]);

    // Ten lines per resource, and then the last line of the walk.
    const auto details = std::find(lines.begin(), lines.end(), headings[15]);
    EXPECT_EQ(*(details + 1 + static_cast<std::ptrdiff_t>(10 * subpaths.size())), "empty (object)");
    ASSERT_EQ(std::distance(at, lines.end()), 1 + 52);
    for (const std::string& label : divided(Labels)) {
        EXPECT_EQ(*++at, label);
        const std::string& list = *++at;
        EXPECT_TRUE(list == "[]" || list.starts_with("[file:///")) << list;
    }
}

TEST(Report, BundlePathsForResourcesAreThoseOfTheType) {
    const test::Scratch scratch;
    for (const char* name : {"b.png", "a.png", ".png", "c.PNG", "d.png.txt", "inner/e.png"}) {
        scratch.file(name);
    }
    EXPECT_EQ(platform::Bundle::pathsForResourcesOfType("png", scratch.path()),
              (Lines{scratch / "a.png", scratch / "b.png"}));
    EXPECT_TRUE(platform::Bundle::pathsForResourcesOfType("png", scratch / "none").empty());
}
