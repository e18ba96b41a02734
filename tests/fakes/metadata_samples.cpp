// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/metadata_samples.h"

#include "imaging/carried_metadata.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <zlib.h>

namespace complexion {

namespace {

constexpr std::size_t kHeaderLength = 8;
constexpr std::size_t kEntryLength = 12;
constexpr unsigned kExifPointer = 34665;
constexpr unsigned kGpsPointer = 34853;

/// A directory's table followed by its values, each at an even offset.
class TableWriter {
public:
    TableWriter(const SampleTiff& tiff, std::size_t offset, std::size_t count)
        : m_tiff(tiff), m_valuesOffset(offset + 2 + count * kEntryLength + 4) {
        m_table = tiff.number(count, 2);
    }

    void add(const SampleTag& entry) {
        m_table += m_tiff.number(entry.tag, 2) + m_tiff.number(entry.type, 2) + m_tiff.number(entry.count, 4);
        if (entry.value.size() <= 4) {
            m_table += entry.value + std::string(4 - entry.value.size(), '\0');
        } else {
            m_table += m_tiff.number(m_valuesOffset + m_values.size(), 4);
            m_values += entry.value + std::string(entry.value.size() % 2, '\0');
        }
    }

    std::size_t end() const { return m_valuesOffset + m_values.size(); }
    std::string finish(std::size_t next) const { return m_table + m_tiff.number(next, 4) + m_values; }

private:
    const SampleTiff& m_tiff;
    std::size_t m_valuesOffset;
    std::string m_table;
    std::string m_values;
};

std::size_t lengthOf(const SampleTiff& tiff, const std::vector<SampleTag>& entries) {
    TableWriter writer(tiff, 0, entries.size());
    for (const SampleTag& entry : entries)
        writer.add(entry);
    return writer.end();
}

std::string directory(const SampleTiff& tiff, std::size_t offset, std::vector<SampleTag> entries,
                      std::size_t next) {
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.tag < b.tag; });
    TableWriter writer(tiff, offset, entries.size());
    for (const SampleTag& entry : entries)
        writer.add(entry);
    return writer.finish(next);
}

} // namespace

std::string bigNumber(std::uint64_t value, int length) {
    std::string bytes;
    for (int i = length - 1; i >= 0; --i)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

std::string littleNumber(std::uint64_t value, int length) {
    std::string bytes = bigNumber(value, length);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

std::string SampleTiff::number(std::uint64_t value, int length) const {
    return isBigEndian ? bigNumber(value, length) : littleNumber(value, length);
}

SampleTag SampleTiff::shortTag(unsigned tag, unsigned value) const {
    return {tag, 3, 1, number(value, 2)};
}

SampleTag SampleTiff::longTag(unsigned tag, std::uint32_t value) const {
    return {tag, 4, 1, number(value, 4)};
}

SampleTag SampleTiff::rationalTag(unsigned tag, std::uint32_t numerator, std::uint32_t denominator) const {
    return {tag, 5, 1, number(numerator, 4) + number(denominator, 4)};
}

SampleTag SampleTiff::textTag(unsigned tag, std::string_view text) {
    return {tag, 2, static_cast<std::uint32_t>(text.size() + 1), std::string(text) + '\0'};
}

SampleTag SampleTiff::bytesTag(unsigned tag, std::string_view bytes) {
    return {tag, 7, static_cast<std::uint32_t>(bytes.size()), std::string(bytes)};
}

std::string SampleTiff::bytes() const {
    std::vector<SampleTag> first = main;
    if (!exif.empty())
        first.push_back(longTag(kExifPointer, 0));
    if (!gps.empty())
        first.push_back(longTag(kGpsPointer, 0));
    if (!strip.empty()) {
        first.push_back(longTag(256, static_cast<std::uint32_t>(strip.size())));
        first.push_back(longTag(257, 1));
        first.push_back(shortTag(258, 8));
        first.push_back(shortTag(259, 1));
        first.push_back(shortTag(262, 1));
        first.push_back(longTag(273, 0));
        first.push_back(longTag(279, static_cast<std::uint32_t>(strip.size())));
    }
    const std::size_t exifAt = kHeaderLength + lengthOf(*this, first);
    const std::size_t gpsAt = exifAt + (exif.empty() ? 0 : lengthOf(*this, exif));
    const std::size_t stripAt = gpsAt + (gps.empty() ? 0 : lengthOf(*this, gps));
    const std::size_t thumbnailAt = stripAt + strip.size() + strip.size() % 2;
    for (SampleTag& entry : first) {
        if (entry.tag == kExifPointer)
            entry.value = number(exifAt, 4);
        else if (entry.tag == kGpsPointer)
            entry.value = number(gpsAt, 4);
        else if (entry.tag == 273)
            entry.value = number(stripAt, 4);
    }
    std::string result = (isBigEndian ? "MM" : "II") + number(42, 2) + number(kHeaderLength, 4);
    result += directory(*this, kHeaderLength, first, thumbnail.empty() ? 0 : thumbnailAt);
    if (!exif.empty())
        result += directory(*this, exifAt, exif, 0);
    if (!gps.empty())
        result += directory(*this, gpsAt, gps, 0);
    result += strip + std::string(strip.size() % 2, '\0');
    if (!thumbnail.empty()) {
        std::vector<SampleTag> second = {shortTag(259, 6), longTag(513, 0),
                                         longTag(514, static_cast<std::uint32_t>(thumbnail.size()))};
        second[1].value = number(thumbnailAt + lengthOf(*this, second), 4);
        result += directory(*this, thumbnailAt, second, 0) + thumbnail;
    }
    return result;
}

SampleTiff cameraExif(int orientation, bool isBigEndian) {
    SampleTiff tiff;
    tiff.isBigEndian = isBigEndian;
    tiff.main = {SampleTiff::textTag(271, "Camera maker"),
                 tiff.shortTag(274, static_cast<unsigned>(orientation)), tiff.rationalTag(282, 300, 1),
                 tiff.rationalTag(283, 300, 1), tiff.shortTag(296, 2)};
    tiff.exif = {tiff.rationalTag(33434, 1, 125), SampleTiff::bytesTag(37500, kSampleMakerNote)};
    tiff.gps = {SampleTiff::textTag(1, "N")};
    return tiff;
}

Bytes exifBlock(int orientation, std::optional<std::uint32_t> dotsPerInch) {
    SampleTiff tiff;
    tiff.main = {tiff.shortTag(274, static_cast<unsigned>(orientation))};
    if (dotsPerInch)
        for (const unsigned resolution : {282U, 283U})
            tiff.main.push_back(tiff.rationalTag(resolution, *dotsPerInch, 1));
    const std::string block = tiff.bytes();
    return {block.begin(), block.end()};
}

std::string jpegSegmentOf(int marker, std::string_view payload) {
    return '\xff' + std::string(1, static_cast<char>(marker)) + bigNumber(payload.size() + 2, 2) +
           std::string(payload);
}

std::string withSegments(const std::string& jpeg, const std::string& segments, bool keepsJfif) {
    constexpr std::size_t kStart = 2;
    constexpr std::size_t kJfifEnd = 20; // the SOI marker and the 18 bytes of a JFIF segment
    return jpeg.substr(0, keepsJfif ? kJfifEnd : kStart) + segments + jpeg.substr(kJfifEnd);
}

std::string scansOf(const std::string& jpeg) {
    return jpeg.substr(jpeg.rfind("\xff\xda"));
}

std::string pngChunkOf(std::string_view name, std::string_view data) {
    const std::string named = std::string(name) + std::string(data);
    const auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(named.data()), named.size());
    return bigNumber(data.size(), 4) + named + bigNumber(sum, 4);
}

std::string withChunks(const std::string& png, const std::string& chunks) {
    constexpr std::size_t kHeaderEnd = 33; // signature and IHDR
    return png.substr(0, kHeaderEnd) + chunks + png.substr(kHeaderEnd);
}

std::string rawProfileChunkOf(const std::string& kind, const std::string& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text =
        "Raw profile type " + kind + '\0' + "\n" + kind + "\n      " + std::to_string(bytes.size()) + "\n";
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[byte & 15];
    }
    return pngChunkOf("tEXt", text + "\n");
}

std::string pixelChunksOf(const std::string& png) {
    std::string pixels;
    for (std::size_t position = 8; position + 12 <= png.size();) {
        std::size_t length = 0;
        for (int i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(png[position + static_cast<std::size_t>(i)]);
        if (png.compare(position + 4, 4, "IDAT") == 0)
            pixels += png.substr(position, length + 12);
        position += length + 12;
    }
    return pixels;
}

std::string encodedAs(const Codec& codec, const Image& image) {
    const Result<FileContents> file = codec.encode(image);
    if (!file) {
        ADD_FAILURE() << file.error().message;
        return {};
    }
    return stringOf(*file);
}

bool contains(const std::string& bytes, std::string_view part) {
    return bytes.find(part) != std::string::npos;
}

ByteView viewOf(const std::string& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

std::string stringOf(const FileContents& contents) {
    const Bytes bytes = contents.joined();
    return {bytes.begin(), bytes.end()};
}

std::string carried(const std::string& source, const std::string& written) {
    const Result<FileContents> file = withMetadataOf(viewOf(source), viewOf(written));
    if (!file) {
        ADD_FAILURE() << file.error().message;
        return {};
    }
    return stringOf(*file);
}

} // namespace complexion
