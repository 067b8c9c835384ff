// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints all fields of nodes, one line for each, for developers.
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/Folder.hpp"
#include "shared/Common/Files/detail/TextWriter.hpp"

#include <array>

namespace tonewright {
namespace {

std::string_view textOf(bool value) {
    return value ? "true" : "false";
}

void writeAddress(TextWriter& writer, const File& node) {
    writer.write("<");
    writer.write(node.className());
    writer.write(": 0x");
    char* const text = writer.room(16);
    writer.advanceTo(std::to_chars(text, text + 16, reinterpret_cast<std::uintptr_t>(&node), 16).ptr);
    writer.write(">");
}

std::string describe(const std::shared_ptr<File>& node) {
    if (!node) return "nil";
    std::string text;
    {
        TextWriter writer(text);
        writer.write("Optional(");
        writeAddress(writer, *node);
        writer.write(")");
    }
    return text;
}

/// Returns the start of every line of a node: tabs and the node's number.
std::string headOf(const FileBase& node) {
    std::string head;
    {
        TextWriter writer(head);
        writer.writeTabs(node._indent());
        writer.write("<item id=");
        writer.writeNumber(node.getID());
    }
    return head;
}

// Builds a line from pieces in a reused buffer, because a dump may have millions of lines. Only one Line may
// exist at a time.
class Line {
  public:
    explicit Line(std::string_view head)
        : _text(buffer()) {
        _text.assign(head);
    }
    Line& operator<<(std::string_view piece) {
        _text.append(piece);
        return *this;
    }
    Line& operator<<(std::int64_t number) { return *this << std::to_string(number); }
    void print() const { platform::print(_text); }

  private:
    static std::string& buffer() {
        thread_local std::string kept;
        return kept;
    }
    std::string& _text;
};

// Returns the printed name of a field.
std::string_view labelOf(std::string_view name) {
    return name.empty() ? "empty" : name;
}

void printField(const std::string& head, std::string_view name, std::string_view type,
                std::string_view value) {
    (Line(head) << " label='" << labelOf(name) << "' type='" << type << "' value='" << value << "' />")
        .print();
}

} // namespace

void FileBase::dumpout() const {
    (Line(headOf(*this)) << " _remote='" << textOf(_remote()) << "' _expanded='" << textOf(_expanded())
                         << "' _selected='" << textOf(_selected()) << "' _indent='" << _indent() << "' />")
        .print();
}

void File::dumpout() const {
    const std::string head = headOf(*this);
    const std::string attributesText = attributes().description();
    const std::string path = subpath();
    (Line(head) << " filename='" << getFileName() << "' />").print();
    FileBase::dumpout();
    (Line(head) << " uid=" << uid().stringValue() << " parent='" << describe(parent()) << "' rootpath='"
                << rootpath() << "' subpath='" << path << "' exists=" << textOf(exists())
                << " isDirectory=" << textOf(isDirectory()) << " isWritable=" << textOf(isWritable())
                << " isReadeble=" << textOf(isReadeble()) << " isExecutable=" << textOf(isExecutable())
                << " isDeleteble=" << textOf(isDeleteble()) << " attributes='" << attributesText << "' />")
        .print();
    dumpFields(head, attributesText);
}

void File::dumpFields(const std::string& head, const std::string& attributesText) const {
    printField(head, "uid", "NSNumber", uid().stringValue());
    printField(head, "parent", "Optional<File>", describe(parent()));
    printField(head, "rootpath", "String", rootpath());
    printField(head, "subpath", "String", subpath());
    printField(head, "exists", "Bool", textOf(exists()));
    printField(head, "isDirectory", "Bool", textOf(isDirectory()));
    printField(head, "isWritable", "Bool", textOf(isWritable()));
    printField(head, "isReadeble", "Bool", textOf(isReadeble()));
    printField(head, "isExecutable", "Bool", textOf(isExecutable()));
    printField(head, "isDeleteble", "Bool", textOf(isDeleteble()));
    printField(head, "attributes", "Dictionary<FileAttributeKey, Any>", attributesText);
}

void Folder::dumpFields(const std::string& head, const std::string& /*attributesText*/) const {
    std::string value;
    {
        TextWriter writer(value);
        writer.write("[");
        for (const auto& child : children) {
            if (&child != &children.front()) writer.write(", ");
            writeAddress(writer, *child);
        }
        writer.write("]");
    }
    printField(head, "children", "Array<File>", value);
}

void Folder::dumpout() const {
    File::dumpout();
    (Line(headOf(*this)) << " label='" << labelOf("children") << "' type='Array<File>' />").print();
    for (const auto& child : children) child->dumpout();
}

} // namespace tonewright
