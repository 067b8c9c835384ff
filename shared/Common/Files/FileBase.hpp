// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The number and view state of a node in a file tree. One thread at a time, but nodes may be created on
// several threads.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

class FileBase {
  public:
    /// Assigns the next number in this process.
    FileBase();
    virtual ~FileBase() = default;
    FileBase(const FileBase&) = delete;
    FileBase& operator=(const FileBase&) = delete;

    // The fields: whether the node represents a remote item, whether a browser shows it expanded or selected,
    // and its depth below the root of the tree. Numbers start at 1 and are never reused.
    [[nodiscard]] bool _remote() const noexcept { return _remoteField; }
    void set_remote(bool value) noexcept { _remoteField = value; }
    [[nodiscard]] bool _expanded() const noexcept { return _expandedField; }
    void set_expanded(bool value) noexcept { _expandedField = value; }
    [[nodiscard]] bool _selected() const noexcept { return _selectedField; }
    void set_selected(bool value) noexcept { _selectedField = value; }
    [[nodiscard]] std::int64_t _indent() const noexcept { return _indentField; }
    void set_indent(std::int64_t value) noexcept { _indentField = value; }

    /// Returns the number of the node that was created last in this process. Any thread.
    [[nodiscard]] static std::int64_t lastID() noexcept;

    [[nodiscard]] std::int64_t getID() const noexcept { return _id; }
    /// Returns the node's number in decimal.
    [[nodiscard]] std::string getIDFormatted() const { return std::to_string(_id); }
    /// Prints one line with the fields.
    virtual void dumpout() const;

  private:
    std::int64_t _id = -1;
    std::int64_t _indentField = 0;
    bool _remoteField = false; // flags at the end, so that those of derived classes follow without padding
    bool _expandedField = false;
    bool _selectedField = false;
};

} // namespace tonewright
