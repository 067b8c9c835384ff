// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The file manager's standard locations. Sources: XDG Base Directory Specification, xdg-user-dirs, Filesystem
// Hierarchy Standard.
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/userDirectories.hpp"

#include <cstdlib>

namespace platform {
namespace {

struct Places {
    std::vector<std::string> user;
    std::vector<std::string> local;
    std::vector<std::string> system;
};

std::string dataHome() {
    return baseDirectory("XDG_DATA_HOME", ".local/share");
}

Places placesOf(SearchPathDirectory directory) {
    using enum SearchPathDirectory;
    switch (directory) {
    case Application:
    case AllApplications:
        return {
            {dataHome() + "/applications"}, {"/usr/local/share/applications"}, {"/usr/share/applications"}};
    case AdminApplication:
        return {{}, {"/usr/local/sbin"}, {"/usr/sbin"}};
    case Library:
    case AllLibraries:
        return {{dataHome()}, {"/usr/local/share"}, {"/usr/share"}};
    case ApplicationSupport:
        return {{dataHome()}, {"/var/local"}, {"/var/lib"}};
    case User:
        return {{}, {"/home"}, {}};
    case Documentation:
        return {{}, {"/usr/local/share/doc"}, {"/usr/share/doc"}};
    case Document:
        return {{userDirectory("DOCUMENTS", "Documents")}, {}, {}};
    case CoreService:
        return {{}, {"/usr/local/libexec"}, {"/usr/libexec"}};
    case AutosavedInformation:
        return {{baseDirectory("XDG_STATE_HOME", ".local/state")}, {}, {}};
    case Desktop:
        return {{userDirectory("DESKTOP", "Desktop")}, {}, {}};
    case Caches:
        return {{baseDirectory("XDG_CACHE_HOME", ".cache")}, {"/var/cache"}, {}};
    case Downloads:
        return {{userDirectory("DOWNLOAD", "Downloads")}, {}, {}};
    case Movies:
        return {{userDirectory("VIDEOS", "Videos")}, {}, {}};
    case Music:
        return {{userDirectory("MUSIC", "Music")}, {}, {}};
    case Pictures:
        return {{userDirectory("PICTURES", "Pictures")}, {}, {}};
    case PrinterDescription:
        return {{}, {}, {"/usr/share/ppd"}};
    case SharedPublic:
        return {{userDirectory("PUBLICSHARE", "Public")}, {}, {}};
    case DemoApplication:
    case DeveloperApplication:
    case Developer:
    case InputMethods:
    case PreferencePanes:
    case ItemReplacement:
        break;
    }
    return {};
}

} // namespace

std::vector<URL> FileManager::URLsForDirectory(SearchPathDirectory directory,
                                               SearchPathDomain inDomains) const {
    const Places places = placesOf(directory);
    std::vector<URL> urls;
    const auto add = [&](SearchPathDomain domain, const std::vector<std::string>& paths) {
        if ((static_cast<unsigned>(inDomains) & static_cast<unsigned>(domain)) == 0) return;
        for (const std::string& path : paths) urls.push_back(URL::fileURLWithPath(path, true));
    };
    add(SearchPathDomain::User, places.user);
    add(SearchPathDomain::Local, places.local);
    add(SearchPathDomain::System, places.system);
    return urls;
}

URL FileManager::temporaryDirectory() const {
    const char* named = std::getenv("TMPDIR");
    return URL::fileURLWithPath(named != nullptr && named[0] == '/' ? named : "/tmp", true);
}

std::optional<URL>
FileManager::containerURLForSecurityApplicationGroupIdentifier(std::string_view group) const {
    if (group.empty() || group.find('/') != std::string_view::npos) return std::nullopt;
    const std::string data = dataHome();
    if (data == "//.local/share") return std::nullopt; // a user without a home directory
    const std::string container = data + "/" + std::string(group);
    // If this fails, later attempts to store something in the directory will report errors.
    (void)FileManager().createDirectoryAtPath(container);
    return URL::fileURLWithPath(container, true);
}

} // namespace platform
