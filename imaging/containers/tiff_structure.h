// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

#include <memory>
#include <optional>
#include <vector>

namespace complexion::tiff {

// The directories of TIFF files and EXIF blocks (TIFF 6.0 section 2, BigTIFF, EXIF 2.32): tagged values in
// the byte order of their file.

/// The tags that have a meaning here.
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

/// Field types (TIFF 6.0 section 2, BigTIFF).
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

/// The header of a TIFF structure (TIFF 6.0 section 2, BigTIFF).
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

/// A directory entry.
struct Entry {
    unsigned tag = 0;
    unsigned type = 0;
    std::uint64_t count = 0;
    /// The value's bytes in the structure's byte order; empty for a directory.
    Bytes value;
    /// Offset of the value in the structure it was read from.
    std::uint64_t valueOffset = 0;
    /// The EXIF, GPS or interoperability directory that the entry refers to.
    std::shared_ptr<const Directory> child;
};

struct Directory {
    std::vector<Entry> entries;
    /// Offset in the structure it was read from, and length of its table, in bytes.
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    /// Offset of the link to the next directory, and the link itself (0: none).
    std::uint64_t linkOffset = 0;
    std::uint64_t next = 0;

    const Entry* find(unsigned wanted) const;
};

/// Reads the header. Nothing if `structure` does not begin with one.
std::optional<Header> readHeader(ByteView structure);

/// The size in bytes of one value of a type; 0 for unknown types.
std::size_t typeLength(unsigned type);

/// Reads the directory at `offset` with its EXIF, GPS and interoperability directories. Skips entries that
/// are, or point, outside the structure. Reads at most twice the size of the structure.
Directory readDirectory(ByteView structure, const Header& header, std::uint64_t offset);

/// The first value of a BYTE, SHORT, LONG or LONG8 entry (0 for other types and empty entries).
std::uint64_t firstNumber(const Entry& entry, ByteOrder order);

/// All values of such an entry.
std::vector<std::uint64_t> allNumbers(const Entry& entry, ByteOrder order);

/// Builds an entry from numbers (BYTE, SHORT, LONG, LONG8) or from bytes.
Entry entryOfNumbers(unsigned tag, unsigned type, const std::vector<std::uint64_t>& numbers, ByteOrder order);
Entry entryOfBytes(unsigned tag, unsigned type, ByteView bytes);

/// Lays out a TIFF structure from directories, values and other bytes.
class Layout {
public:
    Layout(ByteOrder order, bool isBig);

    /// Reserves `offset` for `bytes`: maker notes contain offsets that are valid only where the camera wrote
    /// them. Must be called before anything is placed. False if the range is in use.
    bool placeAt(std::uint64_t offset, ByteView bytes);

    /// Places `bytes` at the next free even offset, which it returns.
    std::uint64_t place(ByteView bytes);

    /// Places the directory's values, the directories in it and its table; returns the table's offset. An
    /// entry whose value was placed by placeAt points there.
    std::uint64_t placeDirectory(const Directory& directory);

    /// Returns the structure, with its first directory at `firstDirectory`.
    Bytes finish(std::uint64_t firstDirectory);

private:
    std::uint64_t reserve(std::uint64_t length);
    void writeEntry(std::size_t position, const Entry& entry, std::uint64_t placedOffset);

    Header m_header;
    Bytes m_bytes;
    std::uint64_t m_cursor;
    std::uint64_t m_fixedOffset = 0;
    std::uint64_t m_fixedLength = 0;
};

} // namespace complexion::tiff
