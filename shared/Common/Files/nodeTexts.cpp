// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The two forms in which nodes are written as elements. Nothing is escaped.
#include "platform/foundation/ByteCountFormatter.hpp"
#include "platform/foundation/DateFormatter.hpp"
#include "shared/Common/Files/Folder.hpp"
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

} // namespace

void File::writeFileName(TextWriter& writer) const {
    writer.write(fileName());
}

void File::writeSubpath(TextWriter& writer) const {
    const std::size_t length = location()->directoryLength();
    if (length > TextWriter::MostRoom) {
        writer.write(location()->directory());
    } else {
        char* const text = writer.room(length);
        location()->writeDirectory(text);
        writer.advanceTo(text + length);
    }
    writer.write(namePart());
}

void File::writeFileSize(TextWriter& writer) const {
    if (attributes().isEmpty()) {
        writer.write(InvalidAttribute);
        return;
    }
    writer.advanceTo(platform::ByteCountFormatter::writeByteCount(
        writer.room(platform::ByteCountLength), required(attributes().size()).longLongValue()));
}

void File::writeDates(TextWriter& writer) const {
    writer.write("' created='");
    if (attributes().isEmpty()) {
        writer.write(InvalidAttribute);
    } else {
        writeDate(writer, attributes().creationDate());
    }
    writer.write("' modified='");
    if (attributes().isEmpty()) {
        writer.write(InvalidAttribute);
    } else {
        writeDate(writer, attributes().modificationDate());
    }
    writer.write("' depth='");
    writer.writeNumber(_indent());
}

void File::xml(std::string& result, std::int64_t indent) const {
    TextWriter writer(result);
    writeXML(writer, indent);
}

void File::writeXML(TextWriter& writer, std::int64_t indent) const {
    writer.write("\n");
    writer.writeTabs(indent);
    writer.write("<file name='");
    writeFileName(writer);
    writer.write("' size='");
    writeFileSize(writer);
    writeDates(writer);
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
        writeSubpath(writer);
    }
    writer.write("' expanded='");
    writer.write(_expanded() ? "true" : "false");
    writeDates(writer);
    writer.write("' >");
    for (const auto& child : children) child->writeXML(writer, indent + 1);
    writer.write("\n");
    writer.writeTabs(indent);
    writer.write("</folder>");
}

void File::list(std::string& result) const {
    TextWriter writer(result);
    writeListElement(writer);
}

void File::writeListElement(TextWriter& writer) const {
    writer.writeTabs(_indent());
    writer.write(isDirectory() ? "<folder id='" : "<file id='");
    const platform::NSNumber number = getSystemFileNumber();
    if (number.isBeyondSigned()) {
        writer.writeNumber(number.unsignedLongLongValue());
    } else {
        writer.writeNumber(number.longLongValue());
    }
    writer.write(isDirectory() ? "' name '" : "' name='");
    writeFileName(writer);
    if (isDirectory()) {
        writer.write("' subpath='");
        writeSubpath(writer);
    } else {
        writer.write("' size='");
        writeFileSize(writer);
    }
    writeDates(writer);
    writer.write("' />");
}

} // namespace tonewright
