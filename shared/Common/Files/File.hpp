// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One item of a file system in a tree: its path, its flags and attributes as they were when it was scanned.
// A tree holds millions of these; hence the packed fields. Used from one thread at a time.
#pragma once

#include "platform/foundation/Date.hpp"
#include "platform/foundation/FileAttributes.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "shared/Common/Files/FileBase.hpp"
#include "shared/Common/Files/FileList.hpp"
#include "shared/Common/Files/detail/CompactText.hpp"
#include "shared/Common/Files/detail/NodeLocation.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace tonewright {

class Folder;
class ItemIdentifier;
class TextWriter;

class File : public FileBase {
  public:
    File();

    // The fields, in their order.
    /// The file number (inode) that the scanner found; -1 without one.
    [[nodiscard]] platform::NSNumber uid() const noexcept;
    void setUid(platform::NSNumber value) noexcept;
    /// The folder that contains this node, owned; none for the root.
    [[nodiscard]] const std::shared_ptr<File>& parent() const noexcept { return _parent; }
    void setParent(std::shared_ptr<File> value) noexcept { _parent = std::move(value); }
    /// The absolute path of the scanned directory.
    [[nodiscard]] std::string_view rootpath() const noexcept { return _location->rootpath(); }
    void setRootpath(std::string_view value) { _location = _location->withRootpath(value); }
    /// The path below it, without a leading separator; empty for the root.
    [[nodiscard]] std::string subpath() const;
    /// Assigns the path and computes the depth from it: the number of components less one, -1 for none.
    void setSubpath(std::string_view value);
    [[nodiscard]] bool exists() const noexcept { return _exists; }
    void setExists(bool value) noexcept { _exists = value; }
    [[nodiscard]] bool isDirectory() const noexcept { return _isDirectory; }
    void setIsDirectory(bool value) noexcept;
    [[nodiscard]] bool isWritable() const noexcept { return _isWritable; }
    void setIsWritable(bool value) noexcept { _isWritable = value; }
    [[nodiscard]] bool isReadeble() const noexcept { return _isReadeble; }
    void setIsReadeble(bool value) noexcept { _isReadeble = value; }
    [[nodiscard]] bool isExecutable() const noexcept { return _isExecutable; }
    void setIsExecutable(bool value) noexcept { _isExecutable = value; }
    [[nodiscard]] bool isDeleteble() const noexcept { return _isDeleteble; }
    void setIsDeleteble(bool value) noexcept { _isDeleteble = value; }
    [[nodiscard]] const platform::FileAttributes& attributes() const noexcept { return _attributes; }
    void setAttributes(platform::FileAttributes value) noexcept { _attributes = std::move(value); }

    /// Returns `rootpath` + "/" + `subpath`.
    [[nodiscard]] std::string getFilePath() const;
    /// Returns the last component of `subpath`, or of `rootpath` for the root.
    [[nodiscard]] std::string getFileName() const;
    /// Returns what follows the last "." of the last component of `subpath`; empty when it has none.
    [[nodiscard]] std::string getFileExtension() const;
    /// Returns `subpath` without its last component.
    [[nodiscard]] std::string getParentPath() const;

    // Attributes. Without any, the numbers are -1, the dates are now and the texts "(invalid attribute)"; one
    // that is missing among others is fatal.
    [[nodiscard]] platform::NSNumber getSystemFileNumber() const;
    [[nodiscard]] std::string getSystemFileNumberFormatted() const;
    [[nodiscard]] platform::Date getModificationDate() const;
    [[nodiscard]] std::string getModifiedDateFormatted() const;
    [[nodiscard]] platform::Date getCreationDate() const;
    [[nodiscard]] std::string getCreationDateFormatted() const;
    [[nodiscard]] platform::NSNumber getFileSize() const;
    [[nodiscard]] std::string getFileSizeFormatted() const;

    /// Sets the expansion of this node and all below it; a plain file stays collapsed.
    virtual void setExpanded(bool value);
    /// Appends this node, which `self` owns, and the visible ones below it to `list`.
    virtual void makeExpandedList(const std::shared_ptr<File>& self, FileList& list);
    /// Looks for the item whose file number has the text `uid`, here (`self` owns this node) and below;
    /// stores it in `found` and prints a line.
    void findFileWithUID(std::string_view uid, const std::shared_ptr<File>& self,
                         std::shared_ptr<File>& found);

    /// Appends the node's XML, including everything below it for a folder, indented by `indent` tabs.
    void xml(std::string& result, std::int64_t indent = 0) const;
    /// Appends one element, for files and folders alike.
    void list(std::string& result) const;
    void dumpout() const override;

    /// Returns this as a folder; null if it is not one.
    [[nodiscard]] virtual Folder* asFolder() noexcept { return nullptr; }
    [[nodiscard]] virtual std::string_view className() const noexcept { return "File"; }

  protected:
    // What `findFileWithUID` and `xml` do with one node and all below it.
    virtual void find(const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                      std::shared_ptr<File>& found);
    virtual void writeXML(TextWriter& writer, std::int64_t indent) const;
    /// Prints the lines of the fields that this class itself declares.
    virtual void dumpFields(const std::string& head, const std::string& attributesText) const;

  private:
    friend struct NodeInside;

    void noteRelabeling() noexcept;

    bool _exists : 1 = false;
    bool _isDirectory : 1 = false;
    bool _isWritable : 1 = false;
    bool _isReadeble : 1 = false;
    bool _isExecutable : 1 = false;
    bool _isDeleteble : 1 = false;
    bool _uidIsBeyondSigned : 1 = false;
    bool _isIndexed : 1 = false;
    platform::FileAttributes _attributes;
    std::uint64_t _uid = static_cast<std::uint64_t>(-1);
    std::shared_ptr<File> _parent;
    NodeLocation::Reference _location; // the root path, and the subpath up to its last "/"
    CompactText _name;                 // the rest of the subpath
};
static_assert(sizeof(void*) != 8 || sizeof(File) == 120, "a node and its owners' counts fill 136 bytes");

/// The text of an attribute for an item that has none.
inline constexpr std::string_view InvalidAttribute = "(invalid attribute)";

} // namespace tonewright
