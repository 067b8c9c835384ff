// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/BundleIndex.hpp"

#include "platform/effects/lv2/indexCache.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/userDirectories.hpp"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::lv2 {
namespace {

// The bundle of the program's own effect, and its possible places relative to the executable's directory. The
// first place is for the program, installed or in the build tree, the second for the tests in the build tree.
constexpr std::string_view OwnBundle = product::EffectBundle;
constexpr std::string_view OwnPlaces[] = {"/../lib/lv2/", "/../../lib/lv2/"};

std::string executableDirectory() {
    std::string path(4096, '\0');
    const auto length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path.substr(0, path.find_last_of('/'));
}

// Returns the directories in LV2_PATH, or the usual directories for LV2 bundles if the variable is not set.
std::vector<std::string> searchPath() {
    const char* stated = std::getenv("LV2_PATH");
    const std::string text = stated != nullptr && *stated != '\0'
                                 ? stated
                                 : "~/.lv2:/usr/local/lib/lv2:/usr/lib/lv2:/usr/lib64/lv2";
    std::vector<std::string> directories;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t colon = std::min(text.find(':', from), text.size());
        std::string directory = text.substr(from, colon - from);
        if (directory == "~" || directory.starts_with("~/")) directory.replace(0, 1, homeDirectory());
        while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
        if (!directory.empty()) directories.push_back(std::move(directory));
        from = colon + 1;
    }
    return directories;
}

std::vector<std::string> bundlesIn(const std::string& directory) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(directory.c_str()), ::closedir);
    if (!stream) return names;
    while (const dirent* entry = ::readdir(stream.get())) {
        if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

FileStamp stampOf(const struct stat& status) {
    return {static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec,
            static_cast<std::uint64_t>(status.st_size), status.st_ino};
}

class Reader {
  public:
    void add(const std::string& path, bool isOurs) {
        struct stat status {};
        if (::stat((path + "/manifest.ttl").c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
        if (!_seen.insert({status.st_dev, status.st_ino}).second) return;
        IndexedBundle bundle{path, stampOf(status), {}, isOurs};
        const auto known = _cache.find(path);
        if (known != _cache.end() && known->second.stamp == bundle.stamp) {
            bundle.manifest = std::move(known->second.manifest);
        } else {
            bundle.manifest = readManifest(path);
            if (bundle.manifest.hasMistakes) {
                bundle.stamp = {}; // so that it is read and reported again
            }
            _hasNews = true;
        }
        _bundles.push_back(std::move(bundle));
    }

    std::vector<IndexedBundle> finish() {
        if (_hasNews || _bundles.size() != _cache.size()) writeIndexCache(_bundles);
        return std::move(_bundles);
    }

  private:
    std::map<std::string, IndexedBundle> _cache = readIndexCache();
    std::vector<IndexedBundle> _bundles;
    std::set<std::pair<dev_t, ino_t>>
        _seen; // manifests, by device and inode; a directory may have several names
    bool _hasNews = false;
};

bool contains(const std::vector<std::string>& sorted, const std::string& text) {
    return std::binary_search(sorted.begin(), sorted.end(), text);
}

} // namespace

BundleIndex BundleIndex::read() {
    Reader reader;
    const std::string here = executableDirectory();
    for (const auto place : OwnPlaces) reader.add(here + std::string(place) + std::string(OwnBundle), true);
    for (const auto& directory : searchPath()) {
        for (const auto& name : bundlesIn(directory)) reader.add(directory + "/" + name, false);
    }
    BundleIndex index;
    index._bundles = reader.finish();
    return index;
}

const IndexedBundle* BundleIndex::bundleOf(const std::string& pluginURI) const noexcept {
    const auto found = std::find_if(_bundles.begin(), _bundles.end(), [&](const IndexedBundle& bundle) {
        return contains(bundle.manifest.plugins, pluginURI);
    });
    return found == _bundles.end() ? nullptr : &*found;
}

std::vector<const IndexedBundle*> BundleIndex::bundlesAbout(const std::string& pluginURI) const {
    std::vector<const IndexedBundle*> about;
    const IndexedBundle* home = bundleOf(pluginURI);
    if (home == nullptr) return about;
    about.push_back(home);
    for (const auto& bundle : _bundles) {
        if (&bundle != home && contains(bundle.manifest.others, pluginURI)) about.push_back(&bundle);
    }
    return about;
}

} // namespace platform::lv2
