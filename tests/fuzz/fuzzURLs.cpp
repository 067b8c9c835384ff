// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Uses arbitrary bytes as URLs, as paths and as item identifiers.
#include "tests/fuzz/fuzz.hpp"

#include "platform/foundation/URL.hpp"
#include "shared/Common/Files/ItemIdentifier.hpp"

void fuzzOne(std::string_view input) {
    using platform::URL;
    if (const auto url = URL::fromString(input)) {
        require(url->absoluteString() == input);
        (void)url->path();
        (void)url->scheme();
        (void)url->pathExtension();
        const URL longer = url->appendingPathComponent(input, input.size() % 2 == 0);
        require(URL::fromString(longer.absoluteString()).has_value());
        (void)longer.lastPathComponent();
    }
    // A file URL preserves every byte of a path, except slashes at the end.
    std::string path = "/" + std::string(input);
    const URL file = URL::fileURLWithPath(path, false);
    require(URL::fromString(file.absoluteString()).has_value());
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    if (path.find('\0') == std::string::npos && !path.starts_with("//")) require(file.path() == path);
    require(platform::percentDecoded(platform::percentEncodedPath(input)) == input);

    tonewright::File node;
    platform::FileAttributes attributes;
    attributes.setValue(platform::FileAttributeKey::NSFileSystemFileNumber, platform::NSNumber(input.size()));
    node.setAttributes(attributes);
    require(tonewright::ItemIdentifier(input).names(node) == (input == std::to_string(input.size())));
}
