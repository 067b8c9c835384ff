// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "describePlugin.hpp"

#include "Ports.hpp"
#include "turtle.hpp"

namespace tonewright::effect {

namespace {

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

} // namespace

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
    rdfs:comment "Sent by the panel every half second while it is visible." .

this:DisplayFrame
    a rdfs:Class , owl:Class ;
    rdfs:subClassOf atom:Object ;
    rdfs:label "Display frame" ;
    rdfs:comment "Levels and spectrum for the panel, about 30 times a second while the panel requests them." .

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

} // namespace tonewright::effect
