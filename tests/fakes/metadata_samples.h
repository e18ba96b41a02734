// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/codecs/codec.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace complexion {

// Files for the metadata tests, assembled byte by byte without the code under test. Bytes are kept in
// strings, which compare and print well.

/// A number in `length` bytes, big-endian or little-endian.
std::string bigNumber(std::uint64_t value, int length);
std::string littleNumber(std::uint64_t value, int length);

/// One tag, with its value's bytes in the byte order of the structure.
struct SampleTag {
    unsigned tag = 0;
    unsigned type = 0;
    std::uint32_t count = 0;
    std::string value;
};

/// Builds a TIFF structure: an EXIF block, or a TIFF file with one strip.
struct SampleTiff {
    bool isBigEndian = false;
    std::vector<SampleTag> main;
    std::vector<SampleTag> exif;
    std::vector<SampleTag> gps;
    /// A JPEG file, referenced by a second directory.
    std::string thumbnail;
    /// The strip of a TIFF file with one row of grey pixels.
    std::string strip;

    std::string number(std::uint64_t value, int length) const;
    SampleTag shortTag(unsigned tag, unsigned value) const;
    SampleTag longTag(unsigned tag, std::uint32_t value) const;
    SampleTag rationalTag(unsigned tag, std::uint32_t numerator, std::uint32_t denominator) const;
    static SampleTag textTag(unsigned tag, std::string_view text);
    static SampleTag bytesTag(unsigned tag, std::string_view bytes);

    std::string bytes() const;
};

/// A camera's EXIF block: make, orientation, 300 dots per inch, exposure, maker note and position.
SampleTiff cameraExif(int orientation, bool isBigEndian = false);
/// A little-endian block with an orientation and, if given, a resolution in dots per inch.
Bytes exifBlock(int orientation, std::optional<std::uint32_t> dotsPerInch = std::nullopt);

inline constexpr std::string_view kSampleMakerNote = "Maker note with offsets of its own, 40 B.";

std::string jpegSegmentOf(int marker, std::string_view payload);
/// A JPEG file with segments inserted after its first one (JFIF), or in place of it.
std::string withSegments(const std::string& jpeg, const std::string& segments, bool keepsJfif = true);
/// The file from its last scan on: in these tests' files, all image data.
std::string scansOf(const std::string& jpeg);

std::string pngChunkOf(std::string_view name, std::string_view data);
/// A PNG file with chunks inserted after its header.
std::string withChunks(const std::string& png, const std::string& chunks);
/// The text chunk in which older software stores a profile, an EXIF block, or other bytes.
std::string rawProfileChunkOf(const std::string& kind, const std::string& bytes);
/// All IDAT chunks.
std::string pixelChunksOf(const std::string& png);

/// The image encoded by `codec`, without metadata.
std::string encodedAs(const Codec& codec, const Image& image);

/// Whether `bytes` contains `part`. (gmock's matchers would print the whole file.)
bool contains(const std::string& bytes, std::string_view part);

ByteView viewOf(const std::string& bytes);
std::string stringOf(const FileContents& contents);

/// `written` with the metadata of `source`; empty, with a failed test, if that is refused.
std::string carried(const std::string& source, const std::string& written);

} // namespace complexion
