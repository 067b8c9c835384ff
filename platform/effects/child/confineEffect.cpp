// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/confineEffect.hpp"

#include "platform/foundation/URL.hpp"
#include "platform/foundation/confinement.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/userDirectories.hpp"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

namespace platform::lv2 {
namespace {

namespace fs = std::filesystem;

constexpr ResourceLimits Limits{
    .realtimeMicroseconds = 200'000, // longer than the longest block takes to play
    .memoryBytes = std::uint64_t{2} << 30U,
    .descriptors = 256,
};

// The files of programs and libraries, the configuration that the C library and common libraries read, and
// harmless devices.
constexpr const char* SystemPlaces[] = {
    "/usr",
    "/lib",
    "/lib32",
    "/lib64",
    "/opt",
    "/app",
    "/nix/store",
    "/gnu/store",
    "/var/cache/fontconfig",
    "/etc/ld.so.cache",
    "/etc/ld.so.preload",
    "/etc/nsswitch.conf",
    "/etc/passwd",
    "/etc/group",
    "/etc/localtime",
    "/etc/fonts",
    "/proc/self",
    "/proc/cpuinfo",
    "/proc/meminfo",
    "/sys/devices/system/cpu",
    "/dev/urandom",
    "/dev/random",
};
constexpr const char* Devices[] = {"/dev/null", "/dev/zero", "/dev/full"};

// What drivers of graphics cards read, and the cards themselves.
constexpr const char* GraphicsPlaces[] = {"/sys/dev/char",  "/sys/devices",        "/sys/bus/pci",
                                          "/sys/class/drm", "/proc/driver/nvidia", "/etc/drirc"};
constexpr const char* GraphicsDevices[] = {"/dev/dri", "/dev/nvidiactl", "/dev/nvidia0",
                                           "/dev/nvidia-modeset"};

std::string cookieFile() {
    const char* file = std::getenv("XAUTHORITY");
    return file != nullptr && *file != '\0' ? std::string(file) : homeDirectory() + "/.Xauthority";
}

bool isWithin(const fs::path& path, const fs::path& directory) {
    const fs::path rest = path.lexically_relative(directory);
    return !rest.empty() && *rest.begin() != "..";
}

// Adds the entries of the home directory that a file manager shows. Leaves out links to the home directory,
// to a directory above it or to a hidden entry in it, because they would give access to hidden files.
void addVisible(std::vector<std::string>& places) {
    std::error_code failure;
    const fs::path home = fs::canonical(homeDirectory(), failure);
    if (failure || home == home.root_path()) return;
    for (fs::directory_iterator entry(home, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        if (entry->path().filename().native().starts_with('.')) continue;
        std::error_code missing;
        const fs::path target = fs::canonical(entry->path(), missing);
        if (missing || isWithin(home, target)) continue;
        if (isWithin(target, home) && target.lexically_relative(home).native().starts_with('.')) continue;
        places.push_back(target);
    }
}

// Adds the folders in which bundles were found, and the targets of bundles that are links.
void addBundles(const BundleIndex& index, std::vector<std::string>& places) {
    fs::path last;
    for (const IndexedBundle& bundle : index.bundles()) {
        const fs::path folder = fs::path(bundle.path).parent_path();
        if (folder != last) places.push_back(folder);
        last = folder;
        std::error_code ignored;
        if (fs::is_symlink(bundle.path, ignored)) places.push_back(bundle.path);
    }
}

// Returns the path of the effect's own folder. The effect cannot replace this folder by a link, because it
// has no write access to the parent directory.
std::string ownFolder(const std::string& uri) {
    std::string name;
    for (const char letter : percentEncodedPath(uri)) {
        name += letter == '/' ? std::string("%2F") : std::string(1, letter);
    }
    return baseDirectory("XDG_DATA_HOME", ".local/share") + "/" + product::Name + "/effects/" + name;
}

void createFolder(const std::string& path) {
    std::error_code ignored; // without this folder, there is one place less to which the effect can write
    fs::create_directories(path, ignored);
}

// Called when the process is already confined, so links that the effect has left in its folder cannot lead to
// other places.
void useFolder(const std::string& folder) {
    constexpr std::pair<const char*, const char*> Folders[] = {{"XDG_CONFIG_HOME", "/config"},
                                                               {"XDG_DATA_HOME", "/data"},
                                                               {"XDG_STATE_HOME", "/state"},
                                                               {"XDG_CACHE_HOME", "/cache"},
                                                               {"TMPDIR", "/tmp"}};
    for (const auto& [variable, name] : Folders) {
        createFolder(folder + name);
        ::setenv(variable, (folder + name).c_str(), 1);
    }
}

} // namespace

std::optional<Error> confineEffect(const std::string& uri, Confinement kind, const BundleIndex& index) {
    const char* wish = std::getenv(product::EffectConfinementVariable);
    if (wish != nullptr && std::string_view(wish) == "off") return std::nullopt;
    const std::string folder = ownFolder(uri);
    createFolder(folder);
    ReachableFiles files;
    files.readable.assign(std::begin(SystemPlaces), std::end(SystemPlaces));
    addBundles(index, files.readable);
    addVisible(files.readable);
    files.writable.assign(std::begin(Devices), std::end(Devices));
    files.writable.push_back(folder);
    if (kind == Confinement::Interface) {
        files.readable.push_back(cookieFile());
        if (const char* fonts = std::getenv("FONTCONFIG_FILE")) files.readable.emplace_back(fonts);
        files.readable.insert(files.readable.end(), std::begin(GraphicsPlaces), std::end(GraphicsPlaces));
        files.devices.assign(std::begin(GraphicsDevices), std::end(GraphicsDevices));
    }
    const Sockets sockets = kind == Confinement::Interface ? Sockets::Local : Sockets::None;
    if (!limitResources(Limits) || !confineTo(files, sockets)) {
        return Error("LV2", 7,
                     "The effect " + uri + " cannot be confined; " + product::EffectConfinementVariable +
                         "=off starts it unconfined.");
    }
    useFolder(folder);
    return std::nullopt;
}

} // namespace platform::lv2
