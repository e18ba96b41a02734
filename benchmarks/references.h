// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "benchmarks/portraits.h"
#include "imaging/base/files.h"

namespace complexion::bench {

// The denominators of the table's values: the same work done plainly with the system's libraries, on the
// portraits. Each returns the seconds that it took.

/// Copies the picture's pixels in memory.
class CopyReference {
public:
    explicit CopyReference(int megapixels);
    double operator()();

private:
    std::vector<RGBA32> m_from;
    std::vector<RGBA32> m_to;
};

/// Copies a frame of 1920 × 1200 pixels of 32 bits in memory.
class FrameReference {
public:
    FrameReference();
    double operator()();

private:
    std::vector<std::uint32_t> m_from;
    std::vector<std::uint32_t> m_to;
};

/// Decodes a JPEG file with libjpeg.
double decodeJpegSeconds(const std::filesystem::path& file);
/// Decodes a PNG file with libpng.
double decodePngSeconds(const std::filesystem::path& file);

/// Encodes a picture with libjpeg: quality 100, 4:4:4.
enum class Scans { Sequential, Progressive };
Bytes encodeWithLibjpeg(const PlainPicture& picture, Scans scans = Scans::Sequential);
double encodeJpegSeconds(const PlainPicture& picture);

/// Encodes a picture with libpng at a compression level (-1: the default).
Bytes encodeWithLibpng(const PlainPicture& picture, int level);

enum class Flush { No, Yes };

/// Writes `bytes` to a new file and renames it.
double writeSeconds(const Bytes& bytes, Flush flush);

Bytes bytesOf(const std::filesystem::path& file);

} // namespace complexion::bench
