// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes nodes as elements, nested or in a list. Nothing is escaped.
#include "platform/foundation/ByteCountFormatter.hpp"
#include "platform/foundation/DateFormatter.hpp"
#include "shared/Common/Files/Folder.hpp"
#include "shared/Common/Files/detail/NodeInside.hpp"
#include "shared/Common/Files/detail/TextWriter.hpp"

namespace tonewright {
namespace {

template <class T>
T required(const std::optional<T>& attribute) {
    if (!attribute) platform::fatal(platform::UnexpectedNilUnwrapping);
    return *attribute;
}

void writeDate(TextWriter& writer, const std::optional<platform::Date>& date) {
    writer.advanceTo(platform::DateFormatter::writeMediumDateTime(writer.room(platform::MediumDateTimeLength),
                                                                  required(date)));
}

void writeFileName(const File& node, TextWriter& writer) {
    writer.write(NodeInside::fileName(node));
}

void writeSubpath(const File& node, TextWriter& writer) {
    const std::size_t length = NodeInside::location(node).directoryLength();
    if (length > TextWriter::MostRoom) {
        writer.write(NodeInside::location(node).directory());
    } else {
        char* const text = writer.room(length);
        NodeInside::location(node).writeDirectory(text);
        writer.advanceTo(text + length);
    }
    writer.write(NodeInside::name(node));
}

void writeFileSize(const File& node, TextWriter& writer) {
    if (node.attributes().isEmpty()) {
        writer.write(InvalidAttribute);
        return;
    }
    writer.advanceTo(platform::ByteCountFormatter::writeByteCount(
        writer.room(platform::ByteCountLength), required(node.attributes().size()).longLongValue()));
}

void writeDates(const File& node, TextWriter& writer) {
    writer.write("' created='");
    if (node.attributes().isEmpty()) {
        writer.write(InvalidAttribute);
    } else {
        writeDate(writer, node.attributes().creationDate());
    }
    writer.write("' modified='");
    if (node.attributes().isEmpty()) {
        writer.write(InvalidAttribute);
    } else {
        writeDate(writer, node.attributes().modificationDate());
    }
    writer.write("' depth='");
    writer.writeNumber(node._indent());
}

} // namespace

void File::xml(std::string& result, std::int64_t indent) const {
    TextWriter writer(result);
    writeXML(writer, indent);
}

void File::writeXML(TextWriter& writer, std::int64_t indent) const {
    writer.write("\n");
    writer.writeTabs(indent);
    writer.write("<file name='");
    writeFileName(*this, writer);
    writer.write("' size='");
    writeFileSize(*this, writer);
    writeDates(*this, writer);
    writer.write("' />");
}

void Folder::writeXML(TextWriter& writer, std::int64_t indent) const {
    writer.write("\n");
    writer.writeTabs(indent);
    if (indent == 0) {
        writer.write("<folder path='");
        writer.write(rootpath());
    } else {
        writer.write("<folder subpath='");
        writeSubpath(*this, writer);
    }
    writer.write("' expanded='");
    writer.write(_expanded() ? "true" : "false");
    writeDates(*this, writer);
    writer.write("' >");
    for (const auto& child : children) NodeInside::writeXML(*child, writer, indent + 1);
    writer.write("\n");
    writer.writeTabs(indent);
    writer.write("</folder>");
}

void File::list(std::string& result) const {
    TextWriter writer(result);
    NodeInside::writeListElement(*this, writer);
}

void NodeInside::writeListElement(const File& node, TextWriter& writer) {
    writer.writeTabs(node._indent());
    writer.write(node.isDirectory() ? "<folder id='" : "<file id='");
    const platform::NSNumber number = node.getSystemFileNumber();
    if (number.isBeyondSigned()) {
        writer.writeNumber(number.unsignedLongLongValue());
    } else {
        writer.writeNumber(number.longLongValue());
    }
    writer.write(node.isDirectory() ? "' name '" : "' name='");
    writeFileName(node, writer);
    if (node.isDirectory()) {
        writer.write("' subpath='");
        writeSubpath(node, writer);
    } else {
        writer.write("' size='");
        writeFileSize(node, writer);
    }
    writeDates(node, writer);
    writer.write("' />");
}

} // namespace tonewright
