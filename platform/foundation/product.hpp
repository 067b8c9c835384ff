// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The product's names and identifiers. No other file in platform/ contains them.
#pragma once

namespace platform::product {

/// The name shown to users.
inline constexpr const char* DisplayName = "Tonewright";
/// The name of the program, of its directories in share/, lib/ and the user's cache, and of its translations.
inline constexpr const char* Name = "tonewright";
/// The unique identifier of the application: its D-Bus name and the base name of its desktop files.
inline constexpr const char* Identifier = "example.tonewright.Tonewright";
/// The prefix of the labels of dispatch queues.
inline constexpr const char* LabelPrefix = "example.tonewright.";
/// The identifier of the directory that programs of the same maker share.
inline constexpr const char* GroupIdentifier = "group.tonewright.example";
inline constexpr const char* WebSite = "https://tonewright.example/";

// Files of an installation.
inline constexpr const char* EffectBundle = "tonewright.lv2";
inline constexpr const char* BundleIndexHeading = "tonewright bundle index 1"; // first line of the index file
inline constexpr const char* PictureProgram = "tonewright-picture";
inline constexpr const char* EffectProgram = "tonewright-effect";
inline constexpr const char* Gtk2InterfaceProgram = "tonewright-interface-gtk2"; // these two are optional
inline constexpr const char* Qt5InterfaceProgram = "tonewright-interface-qt5";
inline constexpr const char* InsideModule = "libtonewright-inside.so"; // runs effects inside the program
inline constexpr const char* WebModule = "libtonewright-web.so";

// URIs in LV2 bundles and states.
inline constexpr const char* ComponentVocabulary = "https://tonewright.example/ns/component#";
inline constexpr const char* StateURI = "urn:tonewright:state";

// The environment variables that the platform reads.
inline constexpr const char* EffectVariable = "TONEWRIGHT_EFFECT";                // URI of the effect to host
inline constexpr const char* EffectProcessVariable = "TONEWRIGHT_EFFECT_PROCESS"; // where the effect runs
inline constexpr const char* EffectConfinementVariable = "TONEWRIGHT_EFFECT_CONFINEMENT"; // "off": none
inline constexpr const char* OutputVariable = "TONEWRIGHT_OUTPUT";          // where the sound goes
inline constexpr const char* TraceStartVariable = "TONEWRIGHT_TRACE_START"; // report the first frame's time

// The GObject types that interface descriptions use.
inline constexpr const char* ViewType = "TonewrightView";
inline constexpr const char* ViewLayoutType = "TonewrightViewLayout";
inline constexpr const char* ViewLayoutChildType = "TonewrightViewLayoutChild";
inline constexpr const char* DrawingType = "TonewrightDrawing";
inline constexpr const char* SegueType = "TonewrightSegue";
inline constexpr const char* DisclosureType = "TonewrightDisclosure";
inline constexpr const char* ActionScopeType = "TonewrightActionScope";

} // namespace platform::product
