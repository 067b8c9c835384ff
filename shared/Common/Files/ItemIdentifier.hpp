// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The text that identifies an item from outside: the decimal text of its file number. Made once for a search,
// it compares with each node as exactly as the texts would, without making the node's. A value; refers to the
// text.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <charconv>
#include <optional>
#include <string_view>

namespace tonewright {

/// The identifiers that name containers instead of items.
inline constexpr std::string_view RootContainerItemIdentifier = "NSFileProviderRootContainerItemIdentifier";
inline constexpr std::string_view WorkingSetContainerItemIdentifier =
    "NSFileProviderWorkingSetContainerItemIdentifier";

class ItemIdentifier {
  public:
    explicit ItemIdentifier(std::string_view text)
        : _text(text) {
        // A number matches only the one text that it is written as.
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc() && end == text.data() + text.size() &&
            (text.size() == 1 || text.front() != '0')) {
            _number = platform::NSNumber(number);
        }
    }

    [[nodiscard]] std::string_view text() const noexcept { return _text; }

    /// Returns whether this is the text of the node's file number.
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
