// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

#include <memory>
#include <optional>
#include <vector>

namespace complexion::tiff {

// The directories of TIFF files and EXIF blocks (TIFF 6.0, BigTIFF, EXIF 2.32): tags with values in the byte
// order of their file.

/// Tags by number, as far as this code gives one a meaning.
namespace tag {
inline constexpr unsigned kImageWidth = 256;
inline constexpr unsigned kImageLength = 257;
inline constexpr unsigned kBitsPerSample = 258;
inline constexpr unsigned kCompression = 259;
inline constexpr unsigned kPhotometricInterpretation = 262;
inline constexpr unsigned kImageDescription = 270;
inline constexpr unsigned kStripOffsets = 273;
inline constexpr unsigned kOrientation = 274;
inline constexpr unsigned kStripByteCounts = 279;
inline constexpr unsigned kXResolution = 282;
inline constexpr unsigned kYResolution = 283;
inline constexpr unsigned kPlanarConfiguration = 284;
inline constexpr unsigned kResolutionUnit = 296;
inline constexpr unsigned kSoftware = 305;
inline constexpr unsigned kArtist = 315;
inline constexpr unsigned kTileOffsets = 324;
inline constexpr unsigned kTileByteCounts = 325;
inline constexpr unsigned kJpegOffset = 513;
inline constexpr unsigned kJpegLength = 514;
inline constexpr unsigned kXmp = 700;
inline constexpr unsigned kCopyright = 33432;
inline constexpr unsigned kIptc = 33723;
inline constexpr unsigned kPhotoshop = 34377;
inline constexpr unsigned kExifDirectory = 34665;
inline constexpr unsigned kGpsDirectory = 34853;
inline constexpr unsigned kMakerNote = 37500;
inline constexpr unsigned kInteroperabilityDirectory = 40965;
} // namespace tag

/// Value types by number.
namespace type {
inline constexpr unsigned kByte = 1;
inline constexpr unsigned kAscii = 2;
inline constexpr unsigned kShort = 3;
inline constexpr unsigned kLong = 4;
inline constexpr unsigned kRational = 5;
inline constexpr unsigned kUndefined = 7;
inline constexpr unsigned kSignedRational = 10;
inline constexpr unsigned kDirectory = 13;
inline constexpr unsigned kLong8 = 16;
inline constexpr unsigned kDirectory8 = 18;
} // namespace type

/// How a TIFF structure begins.
struct Header {
    ByteOrder order = ByteOrder::LittleEndian;
    /// BigTIFF: offsets and counts of 8 bytes instead of 4.
    bool isBig = false;
    std::uint64_t firstDirectory = 0;

    std::size_t offsetLength() const { return isBig ? 8 : 4; }
    std::size_t countLength() const { return isBig ? 8 : 2; }
    std::size_t entryLength() const { return isBig ? 20 : 12; }
    std::size_t headerLength() const { return isBig ? 16 : 8; }
};

struct Directory;

/// One tag.
struct Entry {
    unsigned tag = 0;
    unsigned type = 0;
    std::uint64_t count = 0;
    /// The value's bytes in the structure's byte order; empty for a directory.
    Bytes value;
    /// Where the value lies in the structure that it was read from.
    std::uint64_t valueOffset = 0;
    /// The EXIF, GPS or interoperability directory that the tag stands for.
    std::shared_ptr<const Directory> child;
};

struct Directory {
    std::vector<Entry> entries;
    /// Where it lies in the structure that it was read from, and how long its table is.
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    /// Where the link to the next directory is written, and what it says (0: none).
    std::uint64_t linkOffset = 0;
    std::uint64_t next = 0;

    const Entry* find(unsigned wanted) const;
};

/// Nothing for bytes that do not begin as a TIFF structure.
std::optional<Header> readHeader(ByteView structure);

/// The length in bytes of one value of a type; 0 for types that are not known.
std::size_t typeLength(unsigned type);

/// The directory at `offset`, with the EXIF, GPS and interoperability directories in it. Entries that lie or
/// point outside the structure are left out. What is read is never longer than twice the structure.
Directory readDirectory(ByteView structure, const Header& header, std::uint64_t offset);

/// The first number of an entry of type BYTE, SHORT, LONG or LONG8 (0 for others and for empty ones).
std::uint64_t firstNumber(const Entry& entry, ByteOrder order);

/// All numbers of such an entry.
std::vector<std::uint64_t> allNumbers(const Entry& entry, ByteOrder order);

/// An entry made of numbers (BYTE, SHORT, LONG, LONG8) and one made of bytes.
Entry entryOfNumbers(unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers, ByteOrder order);
Entry entryOfBytes(unsigned tag, unsigned type, ByteView bytes);

/// Lays out a TIFF structure from directories, values and other bytes.
class Layout {
public:
    Layout(ByteOrder order, bool isBig);

    /// Keeps the place at `offset` free for `bytes`: maker notes hold offsets of their own that are true only
    /// where the camera put them. To be called before anything is placed; false when the place is taken.
    bool placeAt(std::uint64_t offset, ByteView bytes);

    /// Puts `bytes` at the next free even offset, which it returns.
    std::uint64_t place(ByteView bytes);

    /// Puts the directory's values, the directories in it and its table; returns the table's offset. An entry
    /// whose value was placed by placeAt points there.
    std::uint64_t placeDirectory(const Directory& directory);

    /// The structure, whose first directory is at `firstDirectory`.
    Bytes finish(std::uint64_t firstDirectory);

private:
    std::uint64_t reserve(std::uint64_t length);
    void putEntry(std::size_t position, const Entry& entry, std::uint64_t valuePlace);

    Header m_header;
    Bytes m_bytes;
    std::uint64_t m_cursor;
    std::uint64_t m_fixedOffset = 0;
    std::uint64_t m_fixedLength = 0;
};

} // namespace complexion::tiff
