// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/directories.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Extensions/safeprint.hpp"

#include <mutex>

namespace tonewright {
namespace {

using platform::FileManager;
using platform::URL;

// A URL shared by all threads. The mutex is held only for a copy or an assignment.
class SharedURL {
  public:
    [[nodiscard]] std::optional<URL> get() const {
        const std::scoped_lock lock(_mutex);
        return _url;
    }
    void set(std::optional<URL> url) {
        const std::scoped_lock lock(_mutex);
        _url.swap(url);
    }

  private:
    mutable std::mutex _mutex;
    std::optional<URL> _url;
};

struct Places {
    SharedURL documents, resources, sharedAudio, sharedMIDI;
};

Places& places() {
    static auto* all = new Places; // never destroyed, because threads may use it until the end
    return *all;
}

void sayPlace(const char* name, const std::optional<URL>& url) {
    const std::string origin = "AudioUnitViewController::getPaths() : ";
    if (url) {
        safeprint(origin + "Audio Unit's " + name + " path is: " + url->path());
    } else {
        safeprint(origin + "ERROR: Audio Unit's " + name + " path is nil.");
    }
}

} // namespace

std::optional<URL> documentsURL() {
    return places().documents.get();
}

std::optional<URL> resourcesURL() {
    return places().resources.get();
}

std::optional<URL> sharedURLAudio() {
    return places().sharedAudio.get();
}

std::optional<URL> sharedURLMIDI() {
    return places().sharedMIDI.get();
}

void getPaths() {
    const auto documents = FileManager::defaultManager().URLsForDirectory(
        platform::SearchPathDirectory::Document, platform::SearchPathDomain::User);
    if (documents.empty()) platform::fatal("getPaths() : There is no documents directory.");
    places().documents.set(documents.front());
    sayPlace("documents", documentsURL());
    const auto resources = platform::Bundle::main().resourceURL();
    if (!resources) platform::fatal(platform::UnexpectedNilUnwrapping);
    places().resources.set(resources);
    sayPlace("resources", resourcesURL());
}

bool ensureDirectoryExists(const URL& url) {
    const std::string path = url.path();
    if (FileManager::defaultManager().fileExistsAtPath(path)) return true;
    const auto error = FileManager::defaultManager().createDirectoryAtURL(url);
    if (error) {
        debugprint("ensureDirectoryExists() : ERROR: Creating required directory '" + path +
                   "' failed: " + error->localizedDescription());
    }
    return !error;
}

} // namespace tonewright
