// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The product's names and identifiers, as the platform uses them. Nothing else below platform/ spells them.
#pragma once

namespace platform::product {

/// The name for people.
inline constexpr const char* DisplayName = "Tonewright";
/// The name in files: of the program, of the folders below share/, lib/ and the user's cache, of
/// translations.
inline constexpr const char* Name = "tonewright";
/// The application's unique name: its D-Bus name and the base of its desktop files' names.
inline constexpr const char* Identifier = "example.tonewright.Tonewright";
/// The prefix of the labels of queues.
inline constexpr const char* LabelPrefix = "example.tonewright.";
/// The folder that the maker's programs share.
inline constexpr const char* GroupIdentifier = "group.tonewright.example";
inline constexpr const char* WebSite = "https://tonewright.example/";

// Files of an installation.
inline constexpr const char* EffectBundle = "tonewright.lv2";
inline constexpr const char* BundleIndexHeading = "tonewright bundle index 1"; // its first line
inline constexpr const char* PictureProgram = "tonewright-picture";
inline constexpr const char* WebModule = "libtonewright-web.so";

// What LV2 bundles and states say of this host.
inline constexpr const char* ComponentVocabulary = "https://tonewright.example/ns/component#";
inline constexpr const char* StateURI = "urn:tonewright:state";

// The environment variables that the platform reads.
inline constexpr const char* EffectVariable = "TONEWRIGHT_EFFECT";          // URI of the effect to host
inline constexpr const char* OutputVariable = "TONEWRIGHT_OUTPUT";          // where the sound goes
inline constexpr const char* TraceStartVariable = "TONEWRIGHT_TRACE_START"; // report the first frame's time

// The types of objects in interface descriptions.
inline constexpr const char* ViewType = "TonewrightView";
inline constexpr const char* ViewLayoutType = "TonewrightViewLayout";
inline constexpr const char* ViewLayoutChildType = "TonewrightViewLayoutChild";
inline constexpr const char* DrawingType = "TonewrightDrawing";
inline constexpr const char* SegueType = "TonewrightSegue";
inline constexpr const char* DisclosureType = "TonewrightDisclosure";
inline constexpr const char* ActionScopeType = "TonewrightActionScope";

} // namespace platform::product
