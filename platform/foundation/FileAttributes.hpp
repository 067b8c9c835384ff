// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the file system records about one item. The interface is that of a dictionary, but in memory it is
// usually a record of 36 bytes. What the record cannot hold (dates before 1698 or after 2242, or a dictionary
// built key by key) is stored in a real dictionary instead. Concurrent reading is safe.
#pragma once

#include "platform/foundation/Date.hpp"
#include "platform/foundation/NSNumber.hpp"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace platform {

namespace detail {
struct FileKind;
struct FileStatus;
} // namespace detail

/// The keys, in alphabetical order.
enum class FileAttributeKey : std::uint8_t {
    NSFileAppendOnly,
    NSFileCreationDate,
    NSFileGroupOwnerAccountID,
    NSFileGroupOwnerAccountName,
    NSFileImmutable,
    NSFileModificationDate,
    NSFileOwnerAccountID,
    NSFileOwnerAccountName,
    NSFilePosixPermissions,
    NSFileReferenceCount,
    NSFileSize,
    NSFileSystemFileNumber,
    NSFileSystemNumber,
    NSFileType,
};
inline constexpr std::size_t FileAttributeKeyCount = 14;

/// Returns the name of the key, for example "NSFileSize".
[[nodiscard]] std::string_view textOf(FileAttributeKey key) noexcept;

/// A flag, a number, a date or a text, depending on the key. The value of NSFileType is one of the texts
/// "NSFileTypeRegular", "NSFileTypeDirectory", "NSFileTypeSymbolicLink", "NSFileTypeSocket",
/// "NSFileTypeCharacterSpecial", "NSFileTypeBlockSpecial", "NSFileTypeUnknown".
using FileAttribute = std::variant<bool, NSNumber, Date, std::string>;

/// Returns the value as text: "true", "17", "2026-11-16 09:40:14 +0000", or the text itself.
[[nodiscard]] std::string describe(const FileAttribute& attribute);

class FileAttributes {
  public:
    /// Creates a dictionary without entries.
    FileAttributes() noexcept = default;
    /// Creates the record of an existing item.
    explicit FileAttributes(const detail::FileStatus& status);
    FileAttributes(const FileAttributes& other);
    FileAttributes(FileAttributes&& other) noexcept;
    FileAttributes& operator=(FileAttributes other) noexcept;
    ~FileAttributes();

    [[nodiscard]] bool isEmpty() const noexcept { return _kind == Empty; }
    /// Returns the number of entries.
    [[nodiscard]] std::size_t count() const;
    /// Returns the value of `key`, or no value if the dictionary has no such entry. The entry with the name
    /// of an account is missing if the account has only a number.
    [[nodiscard]] std::optional<FileAttribute> value(FileAttributeKey key) const;
    void setValue(FileAttributeKey key, FileAttribute value);
    void removeValue(FileAttributeKey key);

    // The four attributes that every item has, as values of their own types. They return no value if there is
    // no entry. It is a fatal error if setValue() has stored a value of another type.
    [[nodiscard]] std::optional<NSNumber> systemFileNumber() const;
    [[nodiscard]] std::optional<NSNumber> size() const;
    [[nodiscard]] std::optional<Date> modificationDate() const;
    [[nodiscard]] std::optional<Date> creationDate() const;

    /// Returns the entries as text in the order of the keys, "[NSFileAppendOnly: false, ...]", or "[:]" if
    /// there are none.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const FileAttributes& a, const FileAttributes& b);

  private:
    using Dictionary = std::map<FileAttributeKey, FileAttribute>;
    using Word = std::array<std::uint32_t, 2>; // 64 bits aligned to 32, so that the record has 36 bytes

    static constexpr std::uint32_t Empty = 0;
    static constexpr std::uint32_t Special = 0xFFFFFFFF; // _size holds the address of a Dictionary

    void keep(std::unique_ptr<Dictionary> dictionary) noexcept; // stores its address in _size
    [[nodiscard]] Dictionary* dictionary() const noexcept;
    [[nodiscard]] std::optional<FileAttribute> value(FileAttributeKey key,
                                                     const detail::FileKind& kind) const;
    [[nodiscard]] Dictionary entries() const;
    [[nodiscard]] Dictionary entries(const detail::FileKind& kind) const;
    void become(Dictionary dictionary);
    template <class T>
    [[nodiscard]] std::optional<T> special(FileAttributeKey key) const;

    std::uint32_t _kind = Empty; // Empty, Special, or the number of a FileKind (detail/FileKind.hpp)
    Word _size{};
    Word _fileNumber{};
    Word _modification{}; // 34 bits of seconds, 30 of nanoseconds
    Word _creation{};
};
static_assert(sizeof(FileAttributes) == 36);

} // namespace platform
