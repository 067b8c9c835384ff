// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The format: a first line with the version, then one line per record, with fields separated by tabs, and a
// last line "end". Text fields are percent-encoded, so they contain no tab or newline; an empty text is a
// single "%".
//
// B path modified size node   a bundle; the lines up to the next B describe it
// P uri                       a plug-in that the bundle contains
// O uri                       a plug-in about which the bundle contains data
// C uri type subtype manufacturer flags name
#include "platform/effects/lv2/indexCache.hpp"

#include "platform/foundation/URL.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/userDirectories.hpp"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace platform::lv2 {
namespace {

constexpr std::string_view FirstLine = product::BundleIndexHeading;

std::string cachePath() {
    return baseDirectory("XDG_CACHE_HOME", ".cache") + "/" + product::Name + "/bundle-index";
}

std::string field(std::string_view text) {
    return text.empty() ? "%" : percentEncodedPath(text);
}
std::string text(std::string_view field) {
    return field == "%" ? std::string() : percentDecoded(field);
}

std::vector<std::string_view> split(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t from = 0;;) {
        const std::size_t tab = line.find('\t', from);
        fields.push_back(line.substr(from, tab - from));
        if (tab == std::string_view::npos) return fields;
        from = tab + 1;
    }
}

template <class Number>
bool read(std::string_view field, Number& number) {
    const char* end = field.data() + field.size();
    const auto [stop, failure] = std::from_chars(field.data(), end, number);
    return failure == std::errc() && stop == end;
}

// Parses one line. Returns false if this version never writes such a line.
bool takeLine(std::string_view line, std::vector<IndexedBundle>& bundles) {
    const auto fields = split(line);
    if (fields[0] == "B" && fields.size() == 5) {
        IndexedBundle bundle;
        bundle.path = text(fields[1]);
        if (!read(fields[2], bundle.stamp.modifiedNanoseconds) || !read(fields[3], bundle.stamp.size) ||
            !read(fields[4], bundle.stamp.node)) {
            return false;
        }
        bundles.push_back(std::move(bundle));
        return true;
    }
    if (bundles.empty()) return false;
    Manifest& manifest = bundles.back().manifest;
    if (fields[0] == "P" && fields.size() == 2) {
        manifest.plugins.push_back(text(fields[1]));
    } else if (fields[0] == "O" && fields.size() == 2) {
        manifest.others.push_back(text(fields[1]));
    } else if (fields[0] == "C" && fields.size() == 7) {
        StatedComponent component{text(fields[1]), {}, text(fields[6])};
        AudioComponentDescription& codes = component.description;
        if (!read(fields[2], codes.componentType) || !read(fields[3], codes.componentSubType) ||
            !read(fields[4], codes.componentManufacturer) || !read(fields[5], codes.componentFlags)) {
            return false;
        }
        manifest.components.push_back(std::move(component));
    } else {
        return false;
    }
    return true;
}

} // namespace

std::map<std::string, IndexedBundle> readIndexCache() {
    std::ifstream file(cachePath(), std::ios::binary);
    std::string line;
    if (!std::getline(file, line) || line != FirstLine) return {};
    std::vector<IndexedBundle> bundles;
    bool isComplete = false;
    while (std::getline(file, line)) {
        isComplete = line == "end";
        if (isComplete) break;
        if (!takeLine(line, bundles)) return {};
    }
    if (!isComplete) return {};
    std::map<std::string, IndexedBundle> byPath;
    for (auto& bundle : bundles) byPath.insert_or_assign(bundle.path, std::move(bundle));
    return byPath;
}

void writeIndexCache(const std::vector<IndexedBundle>& bundles) {
    std::ostringstream out;
    out << FirstLine << '\n';
    for (const auto& bundle : bundles) {
        out << "B\t" << field(bundle.path) << '\t' << bundle.stamp.modifiedNanoseconds << '\t'
            << bundle.stamp.size << '\t' << bundle.stamp.node << '\n';
        for (const auto& uri : bundle.manifest.plugins) out << "P\t" << field(uri) << '\n';
        for (const auto& uri : bundle.manifest.others) out << "O\t" << field(uri) << '\n';
        for (const auto& [uri, codes, name] : bundle.manifest.components) {
            out << "C\t" << field(uri) << '\t' << codes.componentType << '\t' << codes.componentSubType
                << '\t' << codes.componentManufacturer << '\t' << codes.componentFlags << '\t' << field(name)
                << '\n';
        }
    }
    out << "end\n";

    const std::filesystem::path path = cachePath();
    // Several processes may write at the same time. Each writes a file of its own, and the last rename wins.
    const std::filesystem::path draft = path.string() + "." + std::to_string(::getpid());
    std::error_code failure;
    std::filesystem::create_directories(path.parent_path(), failure);
    {
        std::ofstream file(draft, std::ios::binary | std::ios::trunc);
        file << out.str();
        if (!file.flush()) failure = std::make_error_code(std::errc::io_error);
    }
    if (!failure) std::filesystem::rename(draft, path, failure);
    if (failure) std::filesystem::remove(draft, failure);
}

} // namespace platform::lv2
