// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the bundle's Turtle files from the tables in effect/dsp, at build time:
//     tonewright_describe DIRECTORY

#include "Ports.hpp"
#include "Uris.hpp"
#include "effect/dsp/Presets.hpp"

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>

namespace {

using namespace tonewright::effect;

constexpr std::string_view DisplayName = "KVRN: Orvo Tonewright Extension";
constexpr std::string_view Prefixes = R"(@prefix atom:  <http://lv2plug.in/ns/ext/atom#> .
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

std::string between(char before, std::string_view text, char after) {
    std::string result(1, before);
    result += text;
    result += after;
    return result;
}

std::string iri(std::string_view uri) {
    return between('<', uri, '>');
}

std::string quoted(std::string_view text) {
    return between('"', text, '"');
}

std::string number(float value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6g", static_cast<double>(value));
    std::string result{text.data()};
    return result.find_first_of(".e") == std::string::npos ? result + ".0" : result;
}

std::string presetIri(const Preset& preset) {
    std::string uri{PluginUri};
    uri += "#preset-";
    uri += preset.symbol;
    return iri(uri);
}

void writeManifest(std::ostream& out) {
    out << Prefixes;
    out << iri(PluginUri) << R"(
    a lv2:Plugin ;
    lv2:binary <tonewright.so> ;
    rdfs:seeAlso <tonewright.ttl> ;
    tw:componentType "aumf" ;
    tw:componentSubType "ovTw" ;
    tw:componentManufacturer "KVRN" ;
    tw:componentFlags 2 ;
    tw:displayName )"
        << quoted(DisplayName) << " .\n\n";
    out << iri(PanelUri) << "\n    a ui:X11UI ;\n    lv2:binary <tonewright_ui.so> ;\n"
        << "    rdfs:seeAlso <tonewright.ttl> .\n";
    for (const Preset& preset : factoryPresets()) {
        out << "\n"
            << presetIri(preset) << "\n    a pset:Preset ;\n    lv2:appliesTo " << iri(PluginUri)
            << " ;\n    rdfs:label " << quoted(preset.name) << " ;\n    rdfs:seeAlso <presets.ttl> .\n";
    }
}

std::string_view unitIri(Unit unit) {
    switch (unit) {
    case Unit::Decibel:
        return "units:db";
    case Unit::Hertz:
        return "units:hz";
    case Unit::Milliseconds:
        return "units:ms";
    case Unit::Seconds:
        return "units:s";
    case Unit::Percent:
        return "units:pc";
    case Unit::Semitones:
        return "units:semitone12TET";
    case Unit::MidiNote:
        return "units:midiNote";
    case Unit::None:
        break;
    }
    return {};
}

void writeParameter(std::ostream& out, Parameter parameter) {
    const ParameterInfo& p = info(parameter);
    out << " , [\n        a lv2:InputPort , lv2:ControlPort ;\n        lv2:index " << portOf(parameter)
        << " ;\n        lv2:symbol " << quoted(p.symbol) << " ;\n        lv2:name " << quoted(p.name)
        << " ;\n        lv2:shortName " << quoted(p.label) << " ;\n        rdfs:comment " << quoted(p.comment)
        << " ;\n        lv2:minimum " << number(p.minimum) << " ;\n        lv2:maximum " << number(p.maximum)
        << " ;\n        lv2:default " << number(p.defaultValue);
    if (const auto unit = unitIri(p.unit); !unit.empty()) {
        out << " ;\n        units:unit " << unit;
    }
    switch (p.curve) {
    case Curve::Logarithmic:
        out << " ;\n        lv2:portProperty pprop:logarithmic";
        break;
    case Curve::Integer:
        out << " ;\n        lv2:portProperty lv2:integer";
        break;
    case Curve::Toggle:
        out << " ;\n        lv2:portProperty lv2:toggled , lv2:integer";
        break;
    case Curve::Choice:
        out << " ;\n        lv2:portProperty lv2:integer , lv2:enumeration";
        break;
    case Curve::Linear:
        break;
    }
    if (parameter == Parameter::Enabled) {
        out << " ;\n        lv2:designation lv2:enabled";
    }
    for (std::size_t i = 0; i < p.choices.size(); ++i) {
        out << (i == 0 ? " ;\n        lv2:scalePoint " : " , ") << "[ rdfs:label " << quoted(p.choices[i])
            << " ; rdf:value " << number(static_cast<float>(i)) << " ]";
    }
    out << "\n    ]";
}

void writePlugin(std::ostream& out) {
    out << Prefixes;
    out << iri(PluginUri) << "\n    a lv2:Plugin , lv2:FilterPlugin , doap:Project ;\n    doap:name "
        << quoted(DisplayName) << R"( ;
    doap:shortdesc "Drive, filter and tuned resonators that listen to the player." ;
    doap:license <https://spdx.org/licenses/GPL-3.0-or-later> ;
    doap:homepage <https://tonewright.example/> ;
    doap:maintainer [ a foaf:Person ; foaf:name "KVRN" ; foaf:homepage <https://tonewright.example/> ] ;
    rdfs:comment "An effect of drive, state-variable filter and a bank of tuned resonators. An envelope follower moves drive and filter, MIDI notes and controllers tune and shape them, and every onset of the input is sent as a MIDI note." ;
    lv2:minorVersion 0 ;
    lv2:microVersion 2 ;
    lv2:optionalFeature lv2:hardRTCapable , urid:map ;
    lv2:extensionData state:interface ;
    ui:ui )"
        << iri(PanelUri) << " ;\n    pg:mainInput this:in ;\n    pg:mainOutput this:out ;\n    lv2:port ";
    const auto audio = [&out](std::uint32_t index, std::string_view direction, std::string_view symbol,
                              std::string_view name, std::string_view group, std::string_view side) {
        out << (index == 0 ? "" : " , ") << "[\n        a lv2:" << direction
            << "Port , lv2:AudioPort ;\n        lv2:index " << index << " ;\n        lv2:symbol "
            << quoted(symbol) << " ;\n        lv2:name " << quoted(name) << " ;\n        pg:group " << group
            << " ;\n        lv2:designation pg:" << side << "\n    ]";
    };
    audio(InputLeft, "Input", "in_left", "In Left", "this:in", "left");
    audio(InputRight, "Input", "in_right", "In Right", "this:in", "right");
    audio(OutputLeft, "Output", "out_left", "Out Left", "this:out", "left");
    audio(OutputRight, "Output", "out_right", "Out Right", "this:out", "right");
    out << " , [\n        a lv2:InputPort , atom:AtomPort ;\n        lv2:index " << Control << R"( ;
        lv2:symbol "control" ;
        lv2:name "Control" ;
        lv2:designation lv2:control ;
        lv2:portProperty lv2:connectionOptional ;
        atom:bufferType atom:Sequence ;
        atom:supports midi:MidiEvent , )"
        << "this:DisplayRequest"
        << " ;\n        rsz:minimumSize 8192\n    ] , [\n"
        << "        a lv2:OutputPort , atom:AtomPort ;\n        lv2:index " << Notify << R"( ;
        lv2:symbol "notify" ;
        lv2:name "Notify" ;
        lv2:portProperty lv2:connectionOptional ;
        atom:bufferType atom:Sequence ;
        atom:supports midi:MidiEvent , )"
        << "this:DisplayFrame"
        << " ;\n        rsz:minimumSize 8192\n    ] , [\n"
        << "        a lv2:OutputPort , lv2:ControlPort ;\n        lv2:index " << Latency << R"( ;
        lv2:symbol "latency" ;
        lv2:name "Latency" ;
        lv2:minimum 0 ;
        lv2:maximum 192000 ;
        lv2:portProperty lv2:reportsLatency , lv2:integer ;
        lv2:designation lv2:latency ;
        units:unit units:frame
    ])";
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        writeParameter(out, static_cast<Parameter>(i));
    }
    out << R"( .

this:in
    a pg:StereoGroup , pg:InputGroup ;
    lv2:symbol "in" ;
    lv2:name "In" .

this:out
    a pg:StereoGroup , pg:OutputGroup ;
    lv2:symbol "out" ;
    lv2:name "Out" ;
    pg:source this:in .

this:DisplayRequest
    a rdfs:Class , owl:Class ;
    rdfs:subClassOf atom:Object ;
    rdfs:label "Display request" ;
    rdfs:comment "Sent by the panel every half second while it can be seen." .

this:DisplayFrame
    a rdfs:Class , owl:Class ;
    rdfs:subClassOf atom:Object ;
    rdfs:label "Display frame" ;
    rdfs:comment "Levels and spectrum for the panel, about thirty a second while requests come." .

)" << iri(PanelUri)
        << R"(
    a ui:X11UI ;
    lv2:optionalFeature ui:parent , ui:resize , ui:touch , ui:idleInterface , urid:map , opts:options ;
    opts:supportedOption ui:scaleFactor ;
    lv2:extensionData ui:idleInterface , ui:resize ;
    ui:portNotification [
        ui:plugin )"
        << iri(PluginUri) << R"( ;
        lv2:symbol "notify" ;
        ui:notifyType atom:Blank
    ] .
)";
}

void writePresets(std::ostream& out) {
    out << Prefixes;
    for (const Preset& preset : factoryPresets()) {
        out << presetIri(preset) << "\n    a pset:Preset ;\n    lv2:appliesTo " << iri(PluginUri)
            << " ;\n    rdfs:label " << quoted(preset.name) << " ;\n    rdfs:comment "
            << quoted(preset.comment) << " ;\n    lv2:port ";
        bool first = true;
        for (std::size_t i = 0; i < ParameterCount; ++i) {
            if (i == index(Parameter::Enabled)) {
                continue; // a preset does not switch the effect on or off
            }
            out << (first ? "" : " , ") << "[\n        lv2:symbol " << quoted(parameterTable()[i].symbol)
                << " ;\n        pset:value " << number(preset.values[i]) << "\n    ]";
            first = false;
        }
        out << " .\n\n";
    }
}

// The vocabulary with which a bundle states the codes under which the host's registry lists it.
void writeVocabulary(std::ostream& out) {
    out << Prefixes << "<https://tonewright.example/ns/component>\n    a owl:Ontology ;\n"
        << "    rdfs:label \"Component codes\" ;\n"
        << "    rdfs:comment \"States under which four-character codes an LV2 plug-in is found.\" .\n";
    const auto property = [&out](std::string_view name, std::string_view label, std::string_view range,
                                 std::string_view comment) {
        out << "\ntw:" << name << "\n    a rdf:Property , owl:DatatypeProperty , owl:FunctionalProperty ;\n"
            << "    rdfs:domain lv2:Plugin ;\n    rdfs:range xsd:" << range << " ;\n    rdfs:label "
            << quoted(label) << " ;\n    rdfs:comment " << quoted(comment) << " .\n";
    };
    property("componentType", "component type", "string",
             "What kind of component it is: four ASCII characters.");
    property("componentSubType", "component subtype", "string",
             "Which one of its maker's: four ASCII characters.");
    property("componentManufacturer", "component manufacturer", "string",
             "Its maker: four ASCII characters.");
    property("componentFlags", "component flags", "integer",
             "A word of flags; 2 says it is safe in a sandbox.");
    property("displayName", "display name", "string", "The name under which it is listed.");
}

bool write(const std::string& path, const std::function<void(std::ostream&)>& content) {
    std::ofstream out{path};
    content(out);
    out.close();
    if (!out) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: tonewright_describe DIRECTORY\n", stderr);
        return 2;
    }
    const std::string directory = argv[1];
    const bool written = write(directory + "/manifest.ttl", writeManifest) &&
                         write(directory + "/tonewright.ttl", writePlugin) &&
                         write(directory + "/presets.ttl", writePresets) &&
                         write(directory + "/component.ttl", writeVocabulary);
    return written ? 0 : 1;
}
