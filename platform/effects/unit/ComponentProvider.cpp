// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The provider of LV2 plug-ins. Some bundles state component codes for their plug-ins; for other plug-ins the
// codes are derived from the URI. A search reads the index of bundles and, if the derived codes match, the
// plug-in's description for its type and name.
#include "platform/effects/ComponentProvider.hpp"
#include "platform/foundation/product.hpp"

#include "platform/audio/OutputDevice.hpp"
#include "platform/effects/inside/InsideModule.hpp"
#include "platform/effects/outside/OutsideProcessor.hpp"
#include "platform/effects/unit/AudioUnit.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace platform {
namespace {

using lv2::BundleIndex;
using lv2::IndexedBundle;

// The 64-bit FNV-1a hash, which is the same on every machine and in every version.
std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

// Derives a code of four letters or digits from the hash of `text`.
std::uint32_t derivedCode(std::string_view text) {
    constexpr std::string_view Letters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::uint64_t hash = hashOf(text);
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i, hash /= Letters.size()) {
        code = (code << 8U) | static_cast<unsigned char>(Letters[hash % Letters.size()]);
    }
    return code;
}

// Returns the part of a URI that is the same for all plug-ins of a maker: everything before the last "/", "#"
// or ":".
std::string_view makerOf(std::string_view uri) {
    return uri.substr(0, uri.find_last_of("/#:"));
}

AudioComponentDescription derivedCodes(const std::string& uri) {
    return {0, derivedCode(uri), derivedCode(makerOf(uri)), 0, 0};
}

// Returns whether the environment requests a process of its own for each effect.
bool runsOutside() {
    const char* where = std::getenv(product::EffectProcessVariable);
    return where != nullptr && std::string_view(where) == "own";
}

template <class SomeProcessor>
Result<std::shared_ptr<AUAudioUnit>> unitOf(const Result<std::shared_ptr<SomeProcessor>>& processor) {
    if (!processor) return processor.error();
    return std::shared_ptr<AUAudioUnit>(std::make_shared<lv2::AudioUnit>(processor.value()));
}

class Lv2ComponentProvider final : public ComponentProvider {
  public:
    std::vector<ComponentRecord> componentsMatching(const AudioComponentDescription& wanted) override {
        const BundleIndex index = BundleIndex::read();
        std::vector<ComponentRecord> found;
        addChosen(index, wanted, found);
        addStated(index, wanted, found);
        addDerived(index, wanted, found);
        return found;
    }

    Result<std::shared_ptr<AUAudioUnit>> instantiate(const ComponentRecord& record) override {
        const BundleIndex index = BundleIndex::read();
        const IndexedBundle* home = index.bundleOf(record.identifier);
        auto world = std::make_shared<lv2::World>(index, record.identifier);
        if (home == nullptr || world->plugin() == nullptr) {
            return Error("LV2", 4, "The effect " + record.identifier + " is not installed.");
        }
        lv2::Plugin plugin = world->describe();
        const RenderSetup setup = askForRenderSetup();
        if (runsOutside()) {
            return unitOf(lv2::OutsideProcessor::make(std::move(world), std::move(plugin), setup.sampleRate,
                                                      setup.blockFrames));
        }
        const auto inside = lv2::insideModule();
        if (!inside) return inside.error();
        return unitOf(inside.value()->makeProcessor(std::move(world), std::move(plugin), home->isOurs,
                                                    setup.sampleRate, setup.blockFrames));
    }

  private:
    // Adds the plug-in that the environment variable product::EffectVariable names, with the codes that are
    // searched for.
    static void addChosen(const BundleIndex& index, const AudioComponentDescription& wanted,
                          std::vector<ComponentRecord>& found) {
        const char* uri = std::getenv(product::EffectVariable);
        if (uri == nullptr || *uri == '\0') return;
        if (index.bundleOf(uri) == nullptr) {
            warn(std::string(product::EffectVariable) + " names the effect " + uri +
                 ", which is not installed; it is left out.");
            return;
        }
        AudioComponentDescription codes = derivedCodes(uri);
        ComponentRecord record = describe(index, uri, codes);
        if (wanted.componentType != 0) record.description.componentType = wanted.componentType;
        if (wanted.componentSubType != 0) record.description.componentSubType = wanted.componentSubType;
        if (wanted.componentManufacturer != 0) {
            record.description.componentManufacturer = wanted.componentManufacturer;
        }
        record.description.componentFlags = wanted.componentFlags;
        found.push_back(std::move(record));
    }

    // Adds the plug-ins with stated codes: first those whose codes another bundle states, then the program's
    // own effect, then all others.
    static void addStated(const BundleIndex& index, const AudioComponentDescription& wanted,
                          std::vector<ComponentRecord>& found) {
        const auto rank = [](const IndexedBundle& bundle, const lv2::StatedComponent& component) {
            const auto& own = bundle.manifest.plugins;
            if (!std::binary_search(own.begin(), own.end(), component.pluginURI)) return 0;
            return bundle.isOurs ? 1 : 2;
        };
        for (int turn = 0; turn < 3; ++turn) {
            for (const IndexedBundle& bundle : index.bundles()) {
                for (const lv2::StatedComponent& component : bundle.manifest.components) {
                    if (rank(bundle, component) != turn || !matches(component.description, wanted)) continue;
                    if (index.bundleOf(component.pluginURI) == nullptr) {
                        warn("The bundle " + bundle.path + " states codes for the effect " +
                             component.pluginURI + ", which is not installed; it is left out.");
                        continue;
                    }
                    found.push_back(
                        {component.description,
                         component.displayName.empty() ? component.pluginURI : component.displayName, "",
                         component.pluginURI});
                }
            }
        }
    }

    static void addDerived(const BundleIndex& index, const AudioComponentDescription& wanted,
                           std::vector<ComponentRecord>& found) {
        std::set<std::string> stated;
        for (const IndexedBundle& bundle : index.bundles()) {
            for (const lv2::StatedComponent& component : bundle.manifest.components) {
                stated.insert(component.pluginURI);
            }
        }
        AudioComponentDescription beforeType = wanted;
        beforeType.componentType = 0;
        for (const IndexedBundle& bundle : index.bundles()) {
            for (const std::string& uri : bundle.manifest.plugins) {
                const AudioComponentDescription codes = derivedCodes(uri);
                if (!matches(codes, beforeType) || stated.contains(uri) || index.bundleOf(uri) != &bundle) {
                    continue;
                }
                ComponentRecord record = describe(index, uri, codes);
                if (matches(record.description, wanted)) found.push_back(std::move(record));
            }
        }
    }

    static ComponentRecord describe(const BundleIndex& index, const std::string& uri,
                                    AudioComponentDescription codes) {
        const lv2::World world(index, uri);
        if (world.plugin() == nullptr) return {codes, uri, "", uri};
        const lv2::Plugin plugin = world.describe();
        codes.componentType = lv2::componentTypeOf(plugin);
        return {codes, plugin.name, plugin.version, uri};
    }
};

} // namespace

std::shared_ptr<ComponentProvider> makeLv2ComponentProvider() {
    return std::make_shared<Lv2ComponentProvider>();
}

} // namespace platform
