// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/files/textLimit.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A growing text buffer: its capacity doubles, pieces are copied into it directly, and new memory is not
// zeroed.
class Writer {
  public:
    void write(std::string_view piece) {
        std::memcpy(room(piece.size()), piece.data(), piece.size());
        _length += piece.size();
    }
    void tabs(std::size_t count) {
        std::memset(room(count), '\t', count);
        _length += count;
    }
    void number(std::uint64_t value) {
        char* const text = room(20);
        _length += static_cast<std::size_t>(std::to_chars(text, text + 20, value).ptr - text);
    }
    void two(unsigned value) {
        char* const text = room(2);
        text[0] = static_cast<char>('0' + value / 10);
        text[1] = static_cast<char>('0' + value % 10);
        _length += 2;
    }
    LimitText take() { return {std::move(_text), _length}; }

  private:
    char* room(std::size_t size) {
        if (_capacity - _length < size) {
            _capacity = std::max<std::size_t>(_length + size, std::max<std::size_t>(256, _capacity * 2));
            // A string would clear the memory first.
            // NOLINTNEXTLINE(cppcoreguidelines-no-malloc)
            _text.reset(static_cast<char*>(std::realloc(_text.release(), _capacity)));
        }
        return _text.get() + _length;
    }
    std::unique_ptr<char, LimitText::Free> _text;
    std::size_t _length = 0;
    std::size_t _capacity = 0;
};

// Writes a date in UTC, because the benchmark sets TZ to UTC.
void writeDate(Writer& writer, std::int64_t seconds) {
    const std::int64_t day = seconds / 86400;
    const auto second = static_cast<unsigned>(seconds - day * 86400);
    const std::int64_t shifted = day + 719468;
    const std::int64_t era = shifted / 146097;
    const auto dayOfEra = static_cast<unsigned>(shifted - era * 146097);
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned monthFromMarch = (5 * dayOfYear + 2) / 153;
    const unsigned month = monthFromMarch < 10 ? monthFromMarch + 2 : monthFromMarch - 10; // January is 0
    writer.write(std::string_view("JanFebMarAprMayJunJulAugSepOctNovDec").substr(month * std::size_t{3}, 3));
    writer.write(" ");
    writer.number(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    writer.write(", ");
    writer.number(static_cast<std::uint64_t>(yearOfEra + era * 400 + (month <= 1 ? 1 : 0)));
    writer.write(" at ");
    const unsigned hour = second / 3600;
    writer.number(hour % 12 == 0 ? 12 : hour % 12);
    writer.write(":");
    writer.two(second / 60 % 60);
    writer.write(":");
    writer.two(second % 60);
    writer.write(hour < 12 ? " AM" : " PM");
}

void writeSize(Writer& writer, std::uint64_t size) {
    if (size == 0) return writer.write("Zero KB");
    if (size == 1) return writer.write("1 byte");
    if (size < 1000) {
        writer.number(size);
        return writer.write(" bytes");
    }
    const auto rounded = [](std::uint64_t value, std::uint64_t step) {
        const std::uint64_t quotient = value / step;
        const std::uint64_t rest = value % step;
        return quotient + (rest > step / 2 || (rest == step / 2 && quotient % 2 == 1) ? 1 : 0);
    };
    if (size < 1'000'000) {
        writer.number(rounded(size, 1000));
        return writer.write(" KB");
    }
    const std::uint64_t tenths = rounded(size, 100'000); // makeTree creates no file as large as a gigabyte
    writer.number(tenths / 10);
    if (tenths % 10 != 0) {
        writer.write(".");
        writer.number(tenths % 10);
    }
    writer.write(" MB");
}

void writeDates(Writer& writer, const FlatRecord& record) {
    writer.write("' created='");
    writeDate(writer, record.creation);
    writer.write("' modified='");
    writeDate(writer, record.modification);
    writer.write("' depth='");
    writer.number(record.depth);
}

void writeSubpath(Writer& writer, const FlatTree& tree, std::uint32_t number) {
    const FlatRecord& record = tree.records[number];
    if (record.depth > 0) {
        writeSubpath(writer, tree, record.parent);
        writer.write("/");
    }
    writer.write(tree.name(record));
}

void appendSorted(const FlatTree& tree, FlatTree& result,
                  const std::vector<std::vector<std::uint32_t>>& children, std::uint32_t folder,
                  std::uint32_t parent) {
    for (const std::uint32_t number : children[folder]) {
        FlatRecord record = tree.records[number];
        const std::string_view name = tree.name(record);
        record.parent = parent;
        record.nameOffset = static_cast<std::uint32_t>(result.names.size());
        result.names.insert(result.names.end(), name.begin(), name.end());
        result.records.push_back(record);
        if (record.isDirectory) {
            appendSorted(tree, result, children, number + 1,
                         static_cast<std::uint32_t>(result.records.size() - 1));
        }
    }
}

} // namespace

FlatTree sorted(const FlatTree& tree) {
    std::vector<std::vector<std::uint32_t>> children(tree.records.size() + 1); // index 0: root
    for (std::uint32_t i = 0; i < tree.records.size(); ++i) {
        children[tree.records[i].depth == 0 ? 0 : tree.records[i].parent + 1].push_back(i);
    }
    for (auto& list : children) {
        std::sort(list.begin(), list.end(), [&](std::uint32_t a, std::uint32_t b) {
            return tree.name(tree.records[a]) < tree.name(tree.records[b]);
        });
    }
    FlatTree result;
    result.records.reserve(tree.records.size());
    result.names.reserve(tree.names.size());
    appendSorted(tree, result, children, 0, 0);
    return result;
}

LimitText limitXML(const FlatTree& tree, const std::string& opening) {
    Writer writer;
    writer.write(opening);
    std::vector<std::uint32_t> open; // the indices of the folders not yet closed
    const auto closeTo = [&](std::size_t depth) {
        while (open.size() > depth) {
            open.pop_back();
            writer.write("\n");
            writer.tabs(open.size() + 1);
            writer.write("</folder>");
        }
    };
    for (std::uint32_t i = 0; i < tree.records.size(); ++i) {
        const FlatRecord& record = tree.records[i];
        closeTo(record.depth);
        writer.write("\n");
        writer.tabs(record.depth + 1U);
        if (record.isDirectory) {
            writer.write("<folder subpath='");
            writeSubpath(writer, tree, i);
            writer.write("' expanded='false");
            writeDates(writer, record);
            writer.write("' >");
            open.push_back(i);
        } else {
            writer.write("<file name='");
            writer.write(tree.name(record));
            writer.write("' size='");
            writeSize(writer, record.size);
            writeDates(writer, record);
            writer.write("' />");
        }
    }
    closeTo(0);
    writer.write("\n</folder>");
    return writer.take();
}

LimitText limitList(const FlatTree& tree, const std::string& basePath) {
    Writer writer;
    writer.write("\n<!-- file list -->\n<files basepath='");
    writer.write(basePath);
    writer.write("'>");
    for (std::uint32_t i = 0; i < tree.records.size(); ++i) {
        const FlatRecord& record = tree.records[i];
        writer.write("\n\t");
        writer.tabs(record.depth);
        writer.write(record.isDirectory ? "<folder id='" : "<file id='");
        writer.number(record.fileNumber);
        writer.write(record.isDirectory ? "' name '" : "' name='");
        writer.write(tree.name(record));
        if (record.isDirectory) {
            writer.write("' subpath='");
            writeSubpath(writer, tree, i);
        } else {
            writer.write("' size='");
            writeSize(writer, record.size);
        }
        writeDates(writer, record);
        writer.write("' />");
    }
    writer.write("\n</files>");
    return writer.take();
}

void limitDump(const std::string& lines) {
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find('\n', at) + 1;
        if (::write(STDOUT_FILENO, lines.data() + at, end - at) < 0) return;
        at = end;
    }
}
