// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "benchmarks/portraits.h"
#include "imaging/base/files.h"

namespace complexion::bench {

// What the table's values are quotients of: plain work of plain libraries, on the portraits. Each gives the
// seconds that it took.

/// Copying the picture's pixels in memory.
class CopyReference {
public:
    explicit CopyReference(int megapixels);
    double operator()();

private:
    std::vector<RGBA32> m_from;
    std::vector<RGBA32> m_to;
};

/// Copying one frame of 1920 by 1200 pixels of 32 bits in memory.
class FrameReference {
public:
    FrameReference();
    double operator()();

private:
    std::vector<std::uint32_t> m_from;
    std::vector<std::uint32_t> m_to;
};

/// One plain decode of a JPEG file to rows of pixels.
double decodeJpegSeconds(const std::filesystem::path& file);
/// One plain decode of a PNG file to rows of pixels.
double decodePngSeconds(const std::filesystem::path& file);

/// The picture as the JPEG library writes it: quality 100, 4:4:4.
Bytes encodePlainly(const PlainPicture& picture);
double encodeJpegSeconds(const PlainPicture& picture);

/// The picture as the PNG library writes it at a level of its compression (-1: its own choice).
Bytes encodePngPlainly(const PlainPicture& picture, int level);

enum class Flush { No, Yes };

/// Writing `bytes` to a new file that is then renamed.
double writeSeconds(const Bytes& bytes, Flush flush);

Bytes bytesOf(const std::filesystem::path& file);

} // namespace complexion::bench
