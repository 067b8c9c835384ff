// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the bundle's Turtle files from the tables in effect/dsp, at build time:
//     tonewright_describe DIRECTORY

#include "describePlugin.hpp"
#include "turtle.hpp"

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>

namespace {

using namespace tonewright::effect;

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

void writePresets(std::ostream& out) {
    out << Prefixes;
    for (const Preset& preset : factoryPresets()) {
        out << presetIri(preset) << "\n    a pset:Preset ;\n    lv2:appliesTo " << iri(PluginUri)
            << " ;\n    rdfs:label " << quoted(preset.name) << " ;\n    rdfs:comment "
            << quoted(preset.comment) << " ;\n    lv2:port ";
        bool first = true;
        for (std::size_t i = 0; i < ParameterCount; ++i) {
            if (i == index(Parameter::Enabled)) {
                continue; // presets do not switch the effect on or off
            }
            out << (first ? "" : " , ") << "[\n        lv2:symbol " << quoted(parameterTable()[i].symbol)
                << " ;\n        pset:value " << number(preset.values[i]) << "\n    ]";
            first = false;
        }
        out << " .\n\n";
    }
}

// Writes the RDF vocabulary with which a bundle states its component codes.
void writeVocabulary(std::ostream& out) {
    out << Prefixes << "<https://tonewright.example/ns/component>\n    a owl:Ontology ;\n"
        << "    rdfs:label \"Component codes\" ;\n"
        << "    rdfs:comment \"Properties that state the four-character codes of an LV2 plug-in.\" .\n";
    const auto property = [&out](std::string_view name, std::string_view label, std::string_view range,
                                 std::string_view comment) {
        out << "\ntw:" << name << "\n    a rdf:Property , owl:DatatypeProperty , owl:FunctionalProperty ;\n"
            << "    rdfs:domain lv2:Plugin ;\n    rdfs:range xsd:" << range << " ;\n    rdfs:label "
            << quoted(label) << " ;\n    rdfs:comment " << quoted(comment) << " .\n";
    };
    property("componentType", "component type", "string",
             "The kind of the component: four ASCII characters.");
    property("componentSubType", "component subtype", "string",
             "The component among those of its manufacturer: four ASCII characters.");
    property("componentManufacturer", "component manufacturer", "string",
             "The manufacturer of the component: four ASCII characters.");
    property("componentFlags", "component flags", "integer",
             "Flags of the component; 2 means that it is safe in a sandbox.");
    property("displayName", "display name", "string", "The name under which the component is listed.");
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
