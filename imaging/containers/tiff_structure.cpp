// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <array>

namespace complexion::tiff {

namespace {

constexpr unsigned kClassicVersion = 42;
constexpr unsigned kBigVersion = 43;
constexpr std::uint64_t kMaxEntries = 65535;
// The first directory contains the EXIF directory, which contains the interoperability directory.
constexpr int kMaxDirectoryDepth = 2;

bool isSubdirectory(unsigned wanted) {
    return wanted == tag::kExifDirectory || wanted == tag::kGpsDirectory ||
           wanted == tag::kInteroperabilityDirectory;
}

/// Reads directories within a budget of bytes, so that overlapping tables and values cannot multiply without
/// limit.
class DirectoryReader {
public:
    DirectoryReader(ByteView structure, const Header& header)
        : m_structure(structure), m_header(header), m_budget(2 * structure.size()) {}

    Directory read(std::uint64_t offset, int depth) {
        Directory directory;
        directory.offset = offset;
        const std::uint64_t count = number(offset, m_header.countLength());
        const std::uint64_t first = offset + m_header.countLength();
        if (offset == 0 || offset >= m_structure.size() || count > kMaxEntries)
            return directory;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t position = first + i * m_header.entryLength();
            if (position + m_header.entryLength() > m_structure.size() || !spend(m_header.entryLength()))
                return directory;
            readEntry(directory, position, depth);
        }
        directory.linkOffset = first + count * m_header.entryLength();
        directory.length = directory.linkOffset + m_header.offsetLength() - offset;
        directory.next = number(directory.linkOffset, m_header.offsetLength());
        return directory;
    }

private:
    std::uint64_t number(std::uint64_t offset, std::size_t length) const {
        return numberAt(m_structure, offset, length, m_header.order);
    }

    bool spend(std::uint64_t length) {
        if (length > m_budget)
            return false;
        m_budget -= length;
        return true;
    }

    void readEntry(Directory& directory, std::uint64_t position, int depth) {
        Entry entry;
        entry.tag = static_cast<unsigned>(number(position, 2));
        entry.type = static_cast<unsigned>(number(position + 2, 2));
        entry.count = number(position + 4, m_header.offsetLength());
        const std::uint64_t field = position + 4 + m_header.offsetLength();
        const std::size_t unit = typeLength(entry.type);
        if (unit == 0 || entry.count > m_structure.size() / unit)
            return;
        const std::uint64_t length = entry.count * unit;
        const bool isInline = length <= m_header.offsetLength();
        entry.valueOffset = isInline ? field : number(field, m_header.offsetLength());
        const ByteView value = slice(m_structure, entry.valueOffset, length);
        if (value.size() < length || !spend(length))
            return;
        entry.value.assign(value.begin(), value.end());
        if (isSubdirectory(entry.tag)) {
            const std::uint64_t offset = firstNumber(entry, m_header.order);
            if (depth >= kMaxDirectoryDepth || offset == 0 || offset == directory.offset)
                return;
            entry.child = std::make_shared<const Directory>(read(offset, depth + 1));
            if (entry.child->entries.empty())
                return;
        }
        directory.entries.push_back(std::move(entry));
    }

    ByteView m_structure;
    Header m_header;
    std::uint64_t m_budget;
};

} // namespace

const Entry* Directory::find(unsigned wanted) const {
    const auto found =
        std::ranges::find_if(entries, [wanted](const Entry& entry) { return entry.tag == wanted; });
    return found == entries.end() ? nullptr : &*found;
}

std::optional<Header> readHeader(ByteView structure) {
    Header header;
    if (startsWith(structure, "MM"))
        header.order = ByteOrder::BigEndian;
    else if (!startsWith(structure, "II"))
        return std::nullopt;
    const std::uint64_t version = numberAt(structure, 2, 2, header.order);
    if (version != kClassicVersion && version != kBigVersion)
        return std::nullopt;
    header.isBig = version == kBigVersion;
    if (structure.size() < header.headerLength())
        return std::nullopt;
    header.firstDirectory =
        header.isBig ? numberAt(structure, 8, 8, header.order) : numberAt(structure, 4, 4, header.order);
    return header;
}

std::size_t typeLength(unsigned wanted) {
    // By number: unused, BYTE, ASCII, SHORT, LONG, RATIONAL, SBYTE, UNDEFINED, SSHORT, SLONG, SRATIONAL,
    // FLOAT, DOUBLE, IFD, two unassigned, LONG8, SLONG8, IFD8. 129 is UTF-8 text (EXIF 3.0).
    constexpr std::array<std::size_t, 19> kLengths = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4,
                                                      8, 4, 8, 4, 0, 0, 8, 8, 8};
    constexpr unsigned kUtf8 = 129;
    if (wanted == kUtf8)
        return 1;
    return wanted < kLengths.size() ? kLengths[wanted] : 0;
}

Directory readDirectory(ByteView structure, const Header& header, std::uint64_t offset) {
    return DirectoryReader(structure, header).read(offset, 0);
}

std::vector<std::uint64_t> allNumbers(const Entry& entry, ByteOrder order) {
    constexpr std::array kNumberTypes = {type::kByte,      type::kShort, type::kLong,
                                         type::kDirectory, type::kLong8, type::kDirectory8};
    const std::size_t unit = typeLength(entry.type);
    if (unit == 0 || std::ranges::find(kNumberTypes, entry.type) == kNumberTypes.end())
        return {};
    std::vector<std::uint64_t> numbers(entry.value.size() / unit);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = numberAt(entry.value, i * unit, unit, order);
    return numbers;
}

std::uint64_t firstNumber(const Entry& entry, ByteOrder order) {
    const std::vector<std::uint64_t> numbers = allNumbers(entry, order);
    return numbers.empty() ? 0 : numbers.front();
}

Entry entryOfNumbers(unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers,
                     ByteOrder order) {
    Entry entry;
    entry.tag = tag;
    entry.type = type;
    entry.count = numbers.size();
    for (const std::uint64_t number : numbers)
        appendNumber(entry.value, typeLength(type), order, number);
    return entry;
}

Entry entryOfBytes(unsigned tag, unsigned type, ByteView bytes) {
    Entry entry;
    entry.tag = tag;
    entry.type = type;
    entry.count = bytes.size();
    entry.value.assign(bytes.begin(), bytes.end());
    return entry;
}

Layout::Layout(ByteOrder order, bool isBig) {
    m_header.order = order;
    m_header.isBig = isBig;
    m_cursor = m_header.headerLength();
    m_bytes.resize(m_cursor);
}

bool Layout::placeAt(std::uint64_t offset, ByteView bytes) {
    if (m_fixedLength != 0 || bytes.empty() || offset < m_cursor)
        return false;
    m_fixedOffset = offset;
    m_fixedLength = bytes.size();
    m_bytes.resize(offset + bytes.size());
    std::ranges::copy(bytes, m_bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

std::uint64_t Layout::reserve(std::uint64_t length) {
    std::uint64_t offset = m_cursor + m_cursor % 2;
    const std::uint64_t fixedEnd = m_fixedOffset + m_fixedLength;
    if (offset < fixedEnd && offset + length > m_fixedOffset)
        offset = fixedEnd + fixedEnd % 2;
    m_cursor = offset + length;
    if (m_bytes.size() < m_cursor)
        m_bytes.resize(m_cursor);
    return offset;
}

std::uint64_t Layout::place(ByteView bytes) {
    const std::uint64_t offset = reserve(bytes.size());
    std::ranges::copy(bytes, m_bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return offset;
}

std::uint64_t Layout::placeDirectory(const Directory& directory) {
    // Entries must be sorted by tag (TIFF 6.0 section 2).
    std::vector<const Entry*> entries;
    entries.reserve(directory.entries.size());
    for (const Entry& entry : directory.entries)
        entries.push_back(&entry);
    std::ranges::stable_sort(entries, [](const Entry* a, const Entry* b) { return a->tag < b->tag; });

    const std::size_t entryLength = m_header.entryLength();
    const std::uint64_t table =
        reserve(m_header.countLength() + entries.size() * entryLength + m_header.offsetLength());
    setNumberAt(m_bytes, table, m_header.countLength(), m_header.order, entries.size());
    std::uint64_t position = table + m_header.countLength();
    for (const Entry* entry : entries) {
        std::uint64_t placedOffset = 0;
        if (entry->child)
            placedOffset = placeDirectory(*entry->child);
        else if (entry->tag == tag::kMakerNote && m_fixedLength != 0 && entry->valueOffset == m_fixedOffset)
            placedOffset = m_fixedOffset;
        else if (entry->value.size() > m_header.offsetLength())
            placedOffset = place(entry->value);
        writeEntry(position, *entry, placedOffset);
        position += entryLength;
    }
    return table;
}

void Layout::writeEntry(std::size_t position, const Entry& entry, std::uint64_t placedOffset) {
    const std::size_t offsetLength = m_header.offsetLength();
    const ByteOrder order = m_header.order;
    const unsigned directoryType = m_header.isBig ? type::kDirectory8 : type::kLong;
    setNumberAt(m_bytes, position, 2, order, entry.tag);
    setNumberAt(m_bytes, position + 2, 2, order, entry.child ? directoryType : entry.type);
    setNumberAt(m_bytes, position + 4, offsetLength, order, entry.child ? 1 : entry.count);
    const std::size_t field = position + 4 + offsetLength;
    if (placedOffset != 0)
        setNumberAt(m_bytes, field, offsetLength, order, placedOffset);
    else
        std::ranges::copy(entry.value, m_bytes.begin() + static_cast<std::ptrdiff_t>(field));
}

Bytes Layout::finish(std::uint64_t firstDirectory) {
    const bool little = m_header.order == ByteOrder::LittleEndian;
    m_bytes[0] = m_bytes[1] = little ? 'I' : 'M';
    setNumberAt(m_bytes, 2, 2, m_header.order, m_header.isBig ? kBigVersion : kClassicVersion);
    if (m_header.isBig) {
        setNumberAt(m_bytes, 4, 2, m_header.order, 8);
        setNumberAt(m_bytes, 8, 8, m_header.order, firstDirectory);
    } else {
        setNumberAt(m_bytes, 4, 4, m_header.order, firstDirectory);
    }
    return std::move(m_bytes);
}

} // namespace complexion::tiff
