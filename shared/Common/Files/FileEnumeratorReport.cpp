// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints the locations of the application's files.
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

namespace tonewright {
namespace {

using platform::Bundle;
using platform::print;
using platform::SearchPathDirectory;
using platform::URL;

std::string describe(const std::vector<std::string>& texts) {
    std::string list = "[";
    for (const std::string& text : texts) {
        if (list.size() > 1) list += ", ";
        list += text;
    }
    return list += ']';
}

std::string describe(const std::vector<URL>& urls) {
    std::vector<std::string> texts;
    texts.reserve(urls.size());
    for (const URL& url : urls) texts.push_back(url.absoluteString());
    return describe(texts);
}

std::string describe(const std::map<std::string, std::string>& entries) {
    std::vector<std::string> texts;
    texts.reserve(entries.size());
    for (const auto& [key, value] : entries) texts.push_back(key + ": " + value);
    return texts.empty() ? "[:]" : describe(texts);
}

void printPlace(std::string_view heading, const URL& url, const std::string& path) {
    print(heading);
    print(url.absoluteString());
    print(path);
}

struct DirectoryRow {
    std::string_view label;
    SearchPathDirectory directory;
};

constexpr DirectoryRow Directories[] = {
    {"Dokumenten Ordner: ", SearchPathDirectory::Document},
    {"Application Ordner: ", SearchPathDirectory::Application},
    {"Demo Ordner: ", SearchPathDirectory::DemoApplication},
    {"Entwickler Application Ordner: ", SearchPathDirectory::DeveloperApplication},
    {"Administrativer Ordner: ", SearchPathDirectory::AdminApplication},
    {"Bibliotheks Ordner: ", SearchPathDirectory::Library},
    {"Entwickler Ordner: ", SearchPathDirectory::Developer},
    {"Nutzer Ordner: ", SearchPathDirectory::User},
    {"Dokumentations Ordner: ", SearchPathDirectory::Documentation},
    {"Dokument Ordner", SearchPathDirectory::Document},
    {"Core Service Ordner: ", SearchPathDirectory::CoreService},
    {"Autosaved Information Ordner: ", SearchPathDirectory::AutosavedInformation},
    {"Desktop Ordner: ", SearchPathDirectory::Desktop},
    {"Cache Ordner: ", SearchPathDirectory::Caches},
    {"Application Support Ordner: ", SearchPathDirectory::ApplicationSupport},
    {"Downloads Ordner: ", SearchPathDirectory::Downloads},
    {"Eingabemethoden Ordner: ", SearchPathDirectory::InputMethods},
    {"Filme Ordner: ", SearchPathDirectory::Movies},
    {"Musik Ordner: ", SearchPathDirectory::Music},
    {"Bilder Ordner: ", SearchPathDirectory::Pictures},
    {"Druckerbeschreibungen Ordner: ", SearchPathDirectory::PrinterDescription},
    {"Gemeinsamer Öffentlicher Ordner: ", SearchPathDirectory::SharedPublic},
    {"Eigenschaftsdialog Ordner: ", SearchPathDirectory::PreferencePanes},
    {"Element Austausch Ordner: ", SearchPathDirectory::ItemReplacement},
    {"Alle Application Ordner: ", SearchPathDirectory::AllApplications},
    {"Alle Resourcen Ordner : ", SearchPathDirectory::AllLibraries},
};

} // namespace

void FileEnumerator::printDirectory(std::string_view label, SearchPathDirectory directory) const {
    print(label);
    print(describe(platform::FileManager::defaultManager().URLsForDirectory(
        directory, platform::SearchPathDomain::All)));
}

void FileEnumerator::testFileManager() {
    const Bundle& bundle = Bundle::main();
    print("Der temporäre Ordner ist: ");
    print(fileManager.temporaryDirectory().absoluteString());
    print("Das momentane Wurzelverzeichnis ist: ");
    print(fileManager.currentDirectoryPath());
    print("Die Resourcen befinden sich im Ordner: ");
    print(platform::unwrap(bundle.resourceURL()).absoluteString());
    const std::string resources = platform::unwrap(bundle.resourcePath());
    print(resources);
    printPlace("Der Hauptordner ist: ", bundle.bundleURL(), bundle.bundlePath());
    print("Die Identifikation ist: ");
    print(bundle.bundleIdentifier().value_or("empty (bundleIdentifier)"));
    print("Die Hauptklasse ist: ");
    print(bundle.principalClass().value_or("empty (principalClass)"));
    const auto information = bundle.infoDictionary();
    print(information ? describe(*information) : "empty (infoDictionary)");
    printPlace("Die ausführbare Datei ist: ", bundle.executableURL(), bundle.executablePath());
    printPlace("Private Rahmenwerke sind in: ", bundle.privateFrameworksURL(),
               bundle.privateFrameworksPath());
    printPlace("Gemeinsame Rahmenwerke sind in: ", bundle.sharedFrameworksURL(),
               bundle.sharedFrameworksPath());
    printPlace("Die Plugins befinden sich in: ", bundle.builtInPlugInsURL(), bundle.builtInPlugInsPath());
    printPlace("Der Ordner für den gemeisamen Support ist: ", bundle.sharedSupportURL(),
               bundle.sharedSupportPath());
    print("Die AppStore Quittungen liegen in: ");
    print(bundle.appStoreReceiptURL().absoluteString());

    print("Der Inhalt des 'Resources' Ordners ist: ");
    const auto contents = fileManager.contentsOfDirectoryAtPath(resources);
    print(contents ? describe(contents.value()) : contents.error().description());
    print("Komplette Struktur des 'Resources' Ordners ist: ");
    const auto structure = fileManager.subpathsAtPath(resources);
    print(structure ? describe(*structure) : "empty (subpaths)");
    print("Alle Pfade des 'Resources' Ordners sind: ");
    const auto subpaths = fileManager.subpathsOfDirectoryAtPath(resources);
    print(subpaths ? describe(subpaths.value()) : subpaths.error().description());
    print("Die Einzeluntersuchung der 'Resources' Ordners ergab folgendes: ");
    const auto enumerator = fileManager.enumeratorAtPath(resources);
    if (!enumerator) platform::fatal(platform::UnexpectedNilUnwrapping);
    while (const auto subpath = enumerator->nextObject()) examineFile(std::string(*subpath), resources);
    reportReadErrors(*enumerator);
    print("empty (object)");
    print("Alle *.png Dateien im 'Resources' Ordners sind: ");
    print(describe(Bundle::pathsForResourcesOfType("png", resources)));
    print("Folgende globale Ordner sind definiert: ");
    for (const DirectoryRow& row : Directories) printDirectory(row.label, row.directory);
}

} // namespace tonewright
