// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/metadata_samples.h"
#include "tests/imaging/hostile_files.h"

namespace complexion {

namespace {

using namespace std::string_literals;

constexpr unsigned kLong = 4;

struct Entry {
    unsigned tag = 0;
    unsigned type = kLong;
    std::uint64_t count = 1;
    std::uint64_t value = 0; // or its offset
};

/// `bytes` with a directory appended whose link is `next`.
std::string withDirectory(std::string bytes, const std::vector<Entry>& entries, std::uint64_t next) {
    bytes += littleNumber(entries.size(), 2);
    for (const Entry& entry : entries)
        bytes += littleNumber(entry.tag, 2) + littleNumber(entry.type, 2) + littleNumber(entry.count, 4) +
                 littleNumber(entry.value, 4);
    bytes += littleNumber(next, 4);
    return bytes;
}

/// The entries of a picture with one strip at `offset`.
std::vector<Entry> picture(std::uint64_t width, std::uint64_t height, std::uint64_t bits,
                           std::uint64_t compression, std::uint64_t offset, std::uint64_t length) {
    return {{256, kLong, 1, width},   {257, kLong, 1, height}, {258, 3, 1, bits},
            {259, 3, 1, compression}, {262, 3, 1, 1},          {273, kLong, 1, offset},
            {277, 3, 1, 1},           {278, kLong, 1, height}, {279, kLong, 1, length}};
}

std::string start(std::uint64_t directory) {
    return "II*\0"s + littleNumber(directory, 4);
}

std::string tiff(std::uint64_t width, std::uint64_t height, std::uint64_t compression) {
    return withDirectory(start(108) + std::string(100, 'x'), picture(width, height, 8, compression, 8, 100),
                         0);
}

/// A TIFF file whose strips all share the same few bytes.
std::string overlapping(std::uint64_t side, std::uint64_t rows, std::uint64_t compression,
                        const std::string& data) {
    const std::uint64_t strips = (side + rows - 1) / rows;
    std::string bytes = data + std::string(data.size() % 2, '\0');
    const std::uint64_t offsets = 8 + bytes.size();
    for (std::uint64_t i = 0; i < strips; ++i)
        bytes += littleNumber(8, 4);
    const std::uint64_t counts = 8 + bytes.size();
    for (std::uint64_t i = 0; i < strips; ++i)
        bytes += littleNumber(data.size(), 4);
    std::vector<Entry> entries = picture(side, side, 8, compression, offsets, 0);
    entries[5] = {273, kLong, strips, offsets};
    entries[7] = {278, kLong, 1, rows};
    entries[8] = {279, kLong, strips, counts};
    return withDirectory(start(8 + bytes.size()) + bytes, entries, 0);
}

std::string linkedPages(std::size_t pages, bool loops) {
    std::string bytes = start(108) + std::string(100, 'x');
    const std::vector<Entry> page = picture(10, 10, 8, 1, 8, 100);
    const std::size_t length = 2 + page.size() * 12 + 4;
    for (std::size_t i = 0; i < pages; ++i) {
        const std::size_t next = i + 1 < pages ? bytes.size() + length : (loops ? 108 : 0);
        bytes = withDirectory(std::move(bytes), page, next);
    }
    return bytes;
}

std::string secondPageOf(std::uint64_t width, std::uint64_t height) {
    std::string bytes = start(108) + std::string(100, 'x');
    const std::vector<Entry> first = picture(10, 10, 8, 1, 8, 100);
    bytes = withDirectory(bytes, first, bytes.size() + 2 + first.size() * 12 + 4);
    return withDirectory(bytes, picture(width, height, 8, 1, 8, 100), 0);
}

} // namespace

std::vector<HostileFile> hostileTiffs() {
    std::vector<HostileFile> files;
    for (const auto& [width, height] : largeSizes()) {
        const std::string size = std::to_string(width) + " by " + std::to_string(height);
        for (const unsigned compression :
             {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 32773U, 34661U, 34676U, 34887U, 34925U, 50000U, 50001U})
            files.push_back(
                {"TIFF (" + std::to_string(compression) + ") of " + size, tiff(width, height, compression)});
        files.push_back({"TIFF with a second page of " + size, secondPageOf(width, height)});
    }
    files.push_back({"TIFF whose directory links to itself", linkedPages(1, true)});
    files.push_back({"TIFF whose pages link back to the first", linkedPages(3000, true)});
    files.push_back({"TIFF with fifty thousand pages", linkedPages(50'000, false)});
    files.push_back({"TIFF with overlapping strips", overlapping(16'000, 1, 1, std::string(16'000, 'x'))});
    files.push_back({"TIFF with overlapping compressed strips",
                     overlapping(16'000, 16, 32773, std::string(4'000, '\x81'))});
    std::vector<Entry> entries = picture(100, 100, 8, 1, 8, 100);
    for (const std::uint64_t count : {0ULL, 0xffffffffULL, 0x40000000ULL}) {
        for (Entry& entry : entries)
            entry.count = count;
        files.push_back({"TIFF whose entries have a count of " + std::to_string(count),
                         withDirectory(start(108) + std::string(100, 'x'), entries, 0)});
    }
    std::vector<Entry> samples = picture(1000, 1000, 8, 1, 8, 100);
    samples[6] = {277, 3, 1, 65535};
    files.push_back(
        {"TIFF with 65535 samples per pixel", withDirectory(start(108) + std::string(100, 'x'), samples, 0)});
    std::vector<Entry> tiles = picture(1000, 1000, 8, 1, 8, 100);
    tiles.push_back({322, kLong, 1, 0x7ffffff0});
    tiles.push_back({323, kLong, 1, 0x7ffffff0});
    tiles.push_back({324, kLong, 1, 8});
    tiles.push_back({325, kLong, 1, 100});
    files.push_back({"TIFF with one huge tile", withDirectory(start(108) + std::string(100, 'x'), tiles, 0)});
    files.push_back(
        {"BigTIFF whose directory is out of range", "II+\0\x08\0\0\0"s + littleNumber(~0ULL - 7, 8)});
    files.push_back({"BigTIFF with endless entries", "II+\0\x08\0\0\0"s + littleNumber(16, 8) +
                                                         littleNumber(~0ULL, 8) + std::string(200, '\1')});
    return files;
}

} // namespace complexion
