// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileAttributes.hpp"

#include "platform/foundation/detail/FileKind.hpp"
#include "platform/foundation/detail/FileStatus.hpp"
#include "platform/foundation/fatal.hpp"

#include <bit>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <utility>

namespace platform {
namespace {

using Word = std::array<std::uint32_t, 2>;

constexpr std::array<std::string_view, FileAttributeKeyCount> KeyTexts = {
    "NSFileAppendOnly",
    "NSFileCreationDate",
    "NSFileGroupOwnerAccountID",
    "NSFileGroupOwnerAccountName",
    "NSFileImmutable",
    "NSFileModificationDate",
    "NSFileOwnerAccountID",
    "NSFileOwnerAccountName",
    "NSFilePosixPermissions",
    "NSFileReferenceCount",
    "NSFileSize",
    "NSFileSystemFileNumber",
    "NSFileSystemNumber",
    "NSFileType",
};

std::string typeText(std::uint32_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return "NSFileTypeRegular";
    case S_IFDIR:
        return "NSFileTypeDirectory";
    case S_IFLNK:
        return "NSFileTypeSymbolicLink";
    case S_IFSOCK:
        return "NSFileTypeSocket";
    case S_IFCHR:
        return "NSFileTypeCharacterSpecial";
    case S_IFBLK:
        return "NSFileTypeBlockSpecial";
    default:
        return "NSFileTypeUnknown";
    }
}

std::uint64_t number(Word word) noexcept {
    return std::bit_cast<std::uint64_t>(word);
}
constexpr unsigned NanosecondBits = 30;
constexpr std::int64_t SecondsBefore1970 = std::int64_t{1} << 33U; // half of what 34 bits hold

bool fits(const Date& date) noexcept {
    return date.seconds >= -SecondsBefore1970 && date.seconds < SecondsBefore1970;
}
Word packed(const Date& date) noexcept {
    const auto seconds = static_cast<std::uint64_t>(date.seconds + SecondsBefore1970);
    return std::bit_cast<Word>(seconds << NanosecondBits | date.nanoseconds);
}
Date date(Word word) noexcept {
    const std::uint64_t bits = number(word);
    return {static_cast<std::int64_t>(bits >> NanosecondBits) - SecondsBefore1970,
            static_cast<std::uint32_t>(bits & ((1U << NanosecondBits) - 1))};
}
std::optional<FileAttribute> text(std::optional<std::string> name) {
    if (!name) return std::nullopt;
    return std::move(*name);
}

} // namespace

std::string_view textOf(FileAttributeKey key) noexcept {
    return KeyTexts[static_cast<std::size_t>(key)];
}

std::string describe(const FileAttribute& attribute) {
    if (const auto* flag = std::get_if<bool>(&attribute)) return *flag ? "true" : "false";
    if (const auto* value = std::get_if<NSNumber>(&attribute)) return value->stringValue();
    if (const auto* moment = std::get_if<Date>(&attribute)) return moment->description();
    return std::get<std::string>(attribute);
}

FileAttributes::FileAttributes(const detail::FileStatus& status)
    : _size(std::bit_cast<Word>(status.size))
    , _fileNumber(std::bit_cast<Word>(status.fileNumber)) {
    const detail::FileKind kind{status.device, status.mode,        status.links,       status.owner,
                                status.group,  status.isImmutable, status.isAppendOnly};
    if (fits(status.modification) && fits(status.creation)) {
        _modification = packed(status.modification);
        _creation = packed(status.creation);
        _kind = detail::numberOfKind(kind);
        if (_kind != Empty) return;
    }
    Dictionary all = entries(kind);
    all.insert_or_assign(FileAttributeKey::NSFileModificationDate, status.modification);
    all.insert_or_assign(FileAttributeKey::NSFileCreationDate, status.creation);
    become(std::move(all));
}

FileAttributes::FileAttributes(const FileAttributes& other)
    : _kind(other._kind)
    , _size(other._size)
    , _fileNumber(other._fileNumber)
    , _modification(other._modification)
    , _creation(other._creation) {
    if (_kind == Special) keep(std::make_unique<Dictionary>(*other.dictionary()));
}

FileAttributes::FileAttributes(FileAttributes&& other) noexcept
    : _kind(std::exchange(other._kind, Empty))
    , _size(other._size)
    , _fileNumber(other._fileNumber)
    , _modification(other._modification)
    , _creation(other._creation) {}

FileAttributes& FileAttributes::operator=(FileAttributes other) noexcept {
    std::swap(_kind, other._kind);
    std::swap(_size, other._size);
    _fileNumber = other._fileNumber;
    _modification = other._modification;
    _creation = other._creation;
    return *this;
}

FileAttributes::~FileAttributes() {
    if (_kind == Special) delete dictionary();
}

void FileAttributes::keep(std::unique_ptr<Dictionary> dictionary) noexcept {
    static_assert(sizeof(Dictionary*) == sizeof(Word));
    const Dictionary* kept = dictionary.release();
    std::memcpy(_size.data(), &kept, sizeof _size);
}

FileAttributes::Dictionary* FileAttributes::dictionary() const noexcept {
    Dictionary* kept = nullptr;
    std::memcpy(&kept, _size.data(), sizeof _size);
    return kept;
}

std::size_t FileAttributes::count() const {
    return entries().size();
}

std::optional<FileAttribute> FileAttributes::value(FileAttributeKey key) const {
    if (_kind == Empty) return std::nullopt;
    if (_kind == Special) {
        const auto found = dictionary()->find(key);
        return found == dictionary()->end() ? std::nullopt : std::optional(found->second);
    }
    return value(key, detail::kindOfNumber(_kind));
}

std::optional<FileAttribute> FileAttributes::value(FileAttributeKey key, const detail::FileKind& kind) const {
    switch (key) {
    case FileAttributeKey::NSFileAppendOnly:
        return kind.isAppendOnly;
    case FileAttributeKey::NSFileCreationDate:
        return date(_creation);
    case FileAttributeKey::NSFileGroupOwnerAccountID:
        return NSNumber(kind.group);
    case FileAttributeKey::NSFileGroupOwnerAccountName:
        return text(detail::groupName(kind.group));
    case FileAttributeKey::NSFileImmutable:
        return kind.isImmutable;
    case FileAttributeKey::NSFileModificationDate:
        return date(_modification);
    case FileAttributeKey::NSFileOwnerAccountID:
        return NSNumber(kind.owner);
    case FileAttributeKey::NSFileOwnerAccountName:
        return text(detail::userName(kind.owner));
    case FileAttributeKey::NSFilePosixPermissions:
        return NSNumber(kind.mode & 07777U);
    case FileAttributeKey::NSFileReferenceCount:
        return NSNumber(kind.links);
    case FileAttributeKey::NSFileSize:
        return NSNumber(number(_size));
    case FileAttributeKey::NSFileSystemFileNumber:
        return NSNumber(number(_fileNumber));
    case FileAttributeKey::NSFileSystemNumber:
        return NSNumber(kind.device);
    case FileAttributeKey::NSFileType:
        return typeText(kind.mode);
    }
    return std::nullopt;
}

FileAttributes::Dictionary FileAttributes::entries() const {
    if (_kind == Empty) return {};
    if (_kind == Special) return *dictionary();
    return entries(detail::kindOfNumber(_kind));
}

FileAttributes::Dictionary FileAttributes::entries(const detail::FileKind& kind) const {
    Dictionary all;
    for (std::size_t i = 0; i < FileAttributeKeyCount; ++i) {
        const auto key = static_cast<FileAttributeKey>(i);
        if (auto entry = value(key, kind)) all.emplace(key, std::move(*entry));
    }
    return all;
}

void FileAttributes::become(Dictionary entries) {
    *this = FileAttributes();
    if (entries.empty()) return;
    keep(std::make_unique<Dictionary>(std::move(entries)));
    _kind = Special;
}

void FileAttributes::setValue(FileAttributeKey key, FileAttribute value) {
    Dictionary all = entries();
    all.insert_or_assign(key, std::move(value));
    become(std::move(all));
}

void FileAttributes::removeValue(FileAttributeKey key) {
    Dictionary all = entries();
    all.erase(key);
    become(std::move(all));
}

template <class T>
std::optional<T> FileAttributes::special(FileAttributeKey key) const {
    const std::optional<FileAttribute> found = value(key);
    if (!found) return std::nullopt;
    if (const T* typed = std::get_if<T>(&*found)) return *typed;
    fatal("Could not cast the value of a file attribute to the type of its key");
}

std::optional<NSNumber> FileAttributes::systemFileNumber() const {
    if (_kind == Empty) return std::nullopt;
    if (_kind == Special) return special<NSNumber>(FileAttributeKey::NSFileSystemFileNumber);
    return NSNumber(number(_fileNumber));
}

std::optional<NSNumber> FileAttributes::size() const {
    if (_kind == Empty) return std::nullopt;
    if (_kind == Special) return special<NSNumber>(FileAttributeKey::NSFileSize);
    return NSNumber(number(_size));
}

std::optional<Date> FileAttributes::modificationDate() const {
    if (_kind == Empty) return std::nullopt;
    if (_kind == Special) return special<Date>(FileAttributeKey::NSFileModificationDate);
    return date(_modification);
}

std::optional<Date> FileAttributes::creationDate() const {
    if (_kind == Empty) return std::nullopt;
    if (_kind == Special) return special<Date>(FileAttributeKey::NSFileCreationDate);
    return date(_creation);
}

std::string FileAttributes::description() const {
    if (_kind == Empty) return "[:]";
    std::string all = "[";
    for (std::size_t i = 0; i < FileAttributeKeyCount; ++i) {
        const auto key = static_cast<FileAttributeKey>(i);
        const auto entry = value(key);
        if (!entry) continue;
        if (all.size() > 1) all += ", ";
        all.append(textOf(key)).append(": ").append(describe(*entry));
    }
    return all += ']';
}

bool operator==(const FileAttributes& a, const FileAttributes& b) {
    return a.entries() == b.entries();
}

} // namespace platform
