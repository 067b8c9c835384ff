// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Texts of the bundle's Turtle files: the prefixes, and values as Turtle writes them.
#pragma once

#include "Uris.hpp"
#include "effect/dsp/Presets.hpp"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace tonewright::effect {

inline constexpr std::string_view DisplayName = "KVRN: Orvo Tonewright Extension";
inline constexpr std::string_view Prefixes = R"(@prefix atom:  <http://lv2plug.in/ns/ext/atom#> .
@prefix doap:  <http://usefulinc.com/ns/doap#> .
@prefix foaf:  <http://xmlns.com/foaf/0.1/> .
@prefix lv2:   <http://lv2plug.in/ns/lv2core#> .
@prefix midi:  <http://lv2plug.in/ns/ext/midi#> .
@prefix opts:  <http://lv2plug.in/ns/ext/options#> .
@prefix owl:   <http://www.w3.org/2002/07/owl#> .
@prefix pg:    <http://lv2plug.in/ns/ext/port-groups#> .
@prefix pprop: <http://lv2plug.in/ns/ext/port-props#> .
@prefix pset:  <http://lv2plug.in/ns/ext/presets#> .
@prefix rdf:   <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .
@prefix rdfs:  <http://www.w3.org/2000/01/rdf-schema#> .
@prefix rsz:   <http://lv2plug.in/ns/ext/resize-port#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix this:  <https://tonewright.example/lv2/tonewright#> .
@prefix tw:    <https://tonewright.example/ns/component#> .
@prefix ui:    <http://lv2plug.in/ns/extensions/ui#> .
@prefix units: <http://lv2plug.in/ns/extensions/units#> .
@prefix urid:  <http://lv2plug.in/ns/ext/urid#> .
@prefix xsd:   <http://www.w3.org/2001/XMLSchema#> .

)";

inline std::string between(char before, std::string_view text, char after) {
    std::string result(1, before);
    result += text;
    result += after;
    return result;
}

inline std::string iri(std::string_view uri) {
    return between('<', uri, '>');
}

inline std::string quoted(std::string_view text) {
    return between('"', text, '"');
}

inline std::string number(float value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6g", static_cast<double>(value));
    std::string result{text.data()};
    return result.find_first_of(".e") == std::string::npos ? result + ".0" : result;
}

inline std::string presetIri(const Preset& preset) {
    std::string uri{PluginUri};
    uri += "#preset-";
    uri += preset.symbol;
    return iri(uri);
}

} // namespace tonewright::effect
