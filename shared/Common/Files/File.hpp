// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An item of the file system in a tree, with its path, flags and attributes at the time of the scan. The
// fields are packed, because a tree may have millions of items. One thread at a time.
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

    // The fields, in the order in which they are printed.
    /// The file number (inode), or -1 if it is unknown.
    [[nodiscard]] platform::NSNumber uid() const noexcept;
    void setUid(platform::NSNumber value) noexcept;
    /// The folder that contains this node (a strong reference), or null for the root.
    [[nodiscard]] const std::shared_ptr<File>& parent() const noexcept { return _parent; }
    void setParent(std::shared_ptr<File> value) noexcept { _parent = std::move(value); }
    /// The absolute path of the scanned directory.
    [[nodiscard]] std::string_view rootpath() const noexcept { return _location->rootpath(); }
    void setRootpath(std::string_view value) { _location = _location->withRootpath(value); }
    /// The path relative to `rootpath`, without a leading "/"; empty for the root.
    [[nodiscard]] std::string subpath() const;
    /// Sets the subpath and the depth, which is the number of components minus one (-1 without components).
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
    /// Returns the text after the last "." of the last component of `subpath`, or an empty text if there is
    /// no ".".
    [[nodiscard]] std::string getFileExtension() const;
    /// Returns `subpath` without its last component.
    [[nodiscard]] std::string getParentPath() const;

    // Attributes. If there are none at all, numbers are -1, dates are the current time, and texts are
    // "(invalid attribute)". It is a fatal error if there are others but the requested one is missing.
    [[nodiscard]] platform::NSNumber getSystemFileNumber() const;
    [[nodiscard]] std::string getSystemFileNumberFormatted() const;
    [[nodiscard]] platform::Date getModificationDate() const;
    [[nodiscard]] std::string getModifiedDateFormatted() const;
    [[nodiscard]] platform::Date getCreationDate() const;
    [[nodiscard]] std::string getCreationDateFormatted() const;
    [[nodiscard]] platform::NSNumber getFileSize() const;
    [[nodiscard]] std::string getFileSizeFormatted() const;

    /// Expands or collapses this node and all nodes below it. Files always stay collapsed.
    virtual void setExpanded(bool value);
    /// Appends this node and the visible nodes below it to `list`. `self` must point to this node.
    virtual void makeExpandedList(const std::shared_ptr<File>& self, FileList& list);
    /// Searches this node and all nodes below it for the item whose file number has the text `uid`, stores it
    /// in `found` and prints a line. `self` must point to this node.
    void findFileWithUID(std::string_view uid, const std::shared_ptr<File>& self,
                         std::shared_ptr<File>& found);

    /// Appends the XML of this node and of all nodes below it to `result`, indented by `indent` tabs.
    void xml(std::string& result, std::int64_t indent = 0) const;
    /// Appends one element to `result`, without the nodes below this one.
    void list(std::string& result) const;
    void dumpout() const override;

    /// Returns this node as a folder, or null if it is a file.
    [[nodiscard]] virtual Folder* asFolder() noexcept { return nullptr; }
    [[nodiscard]] virtual std::string_view className() const noexcept { return "File"; }

  protected:
    // Implement `findFileWithUID` and `xml` for this node and all nodes below it.
    virtual void find(const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                      std::shared_ptr<File>& found);
    virtual void writeXML(TextWriter& writer, std::int64_t indent) const;
    /// Prints one line for each field that this class declares.
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
    NodeLocation::Reference _location; // root path, and subpath up to its last "/"
    CompactText _name;                 // subpath after its last "/"
};
static_assert(sizeof(void*) != 8 || sizeof(File) == 120, "a node and its owners' counts fill 136 bytes");

/// The text of an attribute for an item without attributes.
inline constexpr std::string_view InvalidAttribute = "(invalid attribute)";

} // namespace tonewright
