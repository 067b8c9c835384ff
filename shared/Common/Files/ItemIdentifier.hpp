// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The text that identifies an item for other programs: its file number in decimal. An ItemIdentifier is
// created once per search; comparing it with a node has the same result as comparing texts, but does not
// create the text of the node. It refers to the text that it was created from.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <charconv>
#include <optional>
#include <string_view>

namespace tonewright {

/// Identifiers of containers instead of items.
inline constexpr std::string_view RootContainerItemIdentifier = "NSFileProviderRootContainerItemIdentifier";
inline constexpr std::string_view WorkingSetContainerItemIdentifier =
    "NSFileProviderWorkingSetContainerItemIdentifier";

class ItemIdentifier {
  public:
    explicit ItemIdentifier(std::string_view text)
        : _text(text) {
        // Only the usual decimal form matches, not one with leading zeros.
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc() && end == text.data() + text.size() &&
            (text.size() == 1 || text.front() != '0')) {
            _number = platform::NSNumber(number);
        }
    }

    [[nodiscard]] std::string_view text() const noexcept { return _text; }

    /// Returns whether this is the identifier of `node`.
    [[nodiscard]] bool names(const File& node) const {
        const platform::FileAttributes& attributes = node.attributes();
        if (attributes.isEmpty()) return _text == InvalidAttribute;
        const auto number = attributes.systemFileNumber();
        if (!number) platform::fatal(platform::UnexpectedNilUnwrapping);
        if (*number < platform::NSNumber(0)) return _text == number->stringValue();
        return _number == number;
    }

  private:
    std::string_view _text;
    std::optional<platform::NSNumber> _number;
};

} // namespace tonewright
