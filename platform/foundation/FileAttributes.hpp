// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the file system records about one item: a dictionary to its readers, a flat record of 36 bytes in
// memory. The file manager returns whole records; what such a record cannot hold (dates before 1698 or after
// 2242, a dictionary that somebody builds key by key) is stored as a real dictionary instead. A value;
// concurrent reading is safe.
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

/// The keys, in the order of their texts.
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

/// Returns the key's own text, "NSFileSize".
[[nodiscard]] std::string_view textOf(FileAttributeKey key) noexcept;

/// A flag, a number, a date or a text, depending on the key. NSFileType is one of the texts
/// "NSFileTypeRegular", "NSFileTypeDirectory", "NSFileTypeSymbolicLink", "NSFileTypeSocket",
/// "NSFileTypeCharacterSpecial", "NSFileTypeBlockSpecial", "NSFileTypeUnknown".
using FileAttribute = std::variant<bool, NSNumber, Date, std::string>;

/// Returns the value's text: "true", "17", "2026-11-16 09:40:14 +0000", the text itself.
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
    /// Returns the value of `key`; absent when the dictionary has none. (An account without a name has only
    /// its number.)
    [[nodiscard]] std::optional<FileAttribute> value(FileAttributeKey key) const;
    void setValue(FileAttributeKey key, FileAttribute value);
    void removeValue(FileAttributeKey key);

    // The four that every item has, without the conversion to a general value. Absent if the key is; a value
    // of another type than the key's is fatal.
    [[nodiscard]] std::optional<NSNumber> systemFileNumber() const;
    [[nodiscard]] std::optional<NSNumber> size() const;
    [[nodiscard]] std::optional<Date> modificationDate() const;
    [[nodiscard]] std::optional<Date> creationDate() const;

    /// Returns the entries as text, "[NSFileAppendOnly: false, ...]", keys in order; "[:]" when there are
    /// none.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const FileAttributes& a, const FileAttributes& b);

  private:
    using Dictionary = std::map<FileAttributeKey, FileAttribute>;
    using Word =
        std::array<std::uint32_t, 2>; // 64 bits with an alignment of 32: keeps the record at 36 bytes

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

    std::uint32_t _kind = Empty; // Empty, Special, or what the item shares with others (detail/FileKind.hpp)
    Word _size{};
    Word _fileNumber{};
    Word _modification{}; // 34 bits of seconds, 30 of nanoseconds
    Word _creation{};
};
static_assert(sizeof(FileAttributes) == 36);

} // namespace platform
