// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/manifest.hpp"

#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"

#include <charconv>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <serd/serd.h>
#include <set>
#include <string_view>

namespace platform::lv2 {
namespace {

constexpr std::string_view Vocabulary = product::ComponentVocabulary;
constexpr std::string_view RdfType = "http://www.w3.org/1999/02/22-rdf-syntax-ns#type";
constexpr std::string_view Lv2Plugin = "http://lv2plug.in/ns/lv2core#Plugin";
constexpr std::string_view Lv2AppliesTo = "http://lv2plug.in/ns/lv2core#appliesTo";
constexpr std::string_view UiUi = "http://lv2plug.in/ns/extensions/ui#ui";

std::string_view textOf(const SerdNode& node) {
    return {reinterpret_cast<const char*>(node.buf), node.n_bytes};
}

// The properties collected for one subject while the file is read.
struct Codes {
    std::optional<std::uint32_t> type, subType, manufacturer;
    std::uint32_t flags = 0;
    std::string name;
};

struct Reading {
    SerdEnv* environment = nullptr;
    std::set<std::string> plugins, others;
    std::map<std::string, Codes> codes;
    std::string complaint;

    [[nodiscard]] std::string expanded(const SerdNode& node) const {
        SerdNode full = serd_env_expand_node(environment, &node);
        std::string text(textOf(full.buf != nullptr ? full : node));
        serd_node_free(&full);
        return text;
    }

    void stateCode(std::optional<std::uint32_t>& code, std::string_view property, std::string_view text) {
        if (text.size() != 4) {
            complaint = std::string(property) + " must have four characters";
            return;
        }
        std::uint32_t packed = 0;
        for (const char c : text) packed = (packed << 8U) | static_cast<unsigned char>(c);
        code = packed;
    }

    void takeProperty(Codes& subject, std::string_view property, std::string_view text) {
        if (property == "componentType") {
            stateCode(subject.type, property, text);
        } else if (property == "componentSubType") {
            stateCode(subject.subType, property, text);
        } else if (property == "componentManufacturer") {
            stateCode(subject.manufacturer, property, text);
        } else if (property == "displayName") {
            subject.name = text;
        } else if (property == "componentFlags") {
            const auto end = text.data() + text.size();
            if (std::from_chars(text.data(), end, subject.flags).ptr != end) {
                complaint = "componentFlags must be a whole number from 0 to 4294967295";
            }
        }
    }

    void take(const SerdNode& subject, const SerdNode& predicate, const SerdNode& object) {
        const std::string property = expanded(predicate);
        if (property == RdfType) {
            if (expanded(object) == Lv2Plugin) plugins.insert(expanded(subject));
        } else if (property == Lv2AppliesTo) {
            others.insert(expanded(object));
        } else if (property == UiUi) {
            others.insert(expanded(subject));
        } else if (property.starts_with(Vocabulary)) {
            takeProperty(codes[expanded(subject)], std::string_view(property).substr(Vocabulary.size()),
                         textOf(object));
        }
    }
};

Reading& readingOf(void* handle) {
    return *static_cast<Reading*>(handle);
}

SerdStatus onBase(void* handle, const SerdNode* uri) {
    return serd_env_set_base_uri(readingOf(handle).environment, uri);
}
SerdStatus onPrefix(void* handle, const SerdNode* name, const SerdNode* uri) {
    return serd_env_set_prefix(readingOf(handle).environment, name, uri);
}
SerdStatus onStatement(void* handle, SerdStatementFlags, const SerdNode*, const SerdNode* subject,
                       const SerdNode* predicate, const SerdNode* object, const SerdNode*, const SerdNode*) {
    readingOf(handle).take(*subject, *predicate, *object);
    return SERD_SUCCESS;
}
SerdStatus onError(void* handle, const SerdError* error) {
    readingOf(handle).complaint = "it is damaged at line " + std::to_string(error->line);
    return SERD_SUCCESS;
}

struct FileClose {
    void operator()(FILE* file) const noexcept { (void)std::fclose(file); }
};

} // namespace

Manifest readManifest(const std::string& bundlePath) {
    const std::string path = bundlePath + "/manifest.ttl";
    const std::unique_ptr<FILE, FileClose> file(std::fopen(path.c_str(), "re"));
    if (!file) return {};

    SerdNode base =
        serd_node_new_file_uri(reinterpret_cast<const std::uint8_t*>(path.c_str()), nullptr, nullptr, true);
    const std::unique_ptr<SerdEnv, decltype(&serd_env_free)> environment(serd_env_new(&base), serd_env_free);
    Reading reading;
    reading.environment = environment.get();
    const std::unique_ptr<SerdReader, decltype(&serd_reader_free)> reader(
        serd_reader_new(SERD_TURTLE, &reading, nullptr, onBase, onPrefix, onStatement, nullptr),
        serd_reader_free);
    serd_reader_set_error_sink(reader.get(), onError, &reading);
    (void)serd_reader_read_file_handle(reader.get(), file.get(), base.buf);
    serd_node_free(&base);

    Manifest manifest;
    manifest.plugins.assign(reading.plugins.begin(), reading.plugins.end());
    for (const auto& [uri, codes] : reading.codes) {
        if (!reading.plugins.contains(uri)) reading.others.insert(uri);
        if (!codes.type || !codes.subType || !codes.manufacturer) {
            if (reading.complaint.empty()) {
                reading.complaint = "type, subtype and manufacturer must all be stated for <" + uri + ">";
            }
            continue;
        }
        manifest.components.push_back(
            {uri, {*codes.type, *codes.subType, *codes.manufacturer, codes.flags, 0}, codes.name});
    }
    manifest.others.assign(reading.others.begin(), reading.others.end());
    manifest.hasMistakes = !reading.complaint.empty();
    if (manifest.hasMistakes) warn("The manifest " + path + ": " + reading.complaint + ".");
    return manifest;
}

} // namespace platform::lv2
