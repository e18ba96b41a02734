// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"
#include "tests/imaging/tiff_writer.h"

#include <cstdint>
#include <string>
#include <vector>

namespace complexion::test {

/// How a 16-bit file is made.
struct DeepKind {
    std::string name;
    bool isPng = false;
    bool isGrey = false;
    bool hasAlpha = false;
    std::uint16_t alphaKind = EXTRASAMPLE_UNASSALPHA;
    bool isPlanar = false;
    bool isTiled = false;
    bool isInterlaced = false;
    std::string mode = "wl"; // byte order and size of a TIFF file
    int compression = COMPRESSION_NONE;
    int orientation = 1;
    bool isBlackZero = true;
    int rowsPerStrip = 10;

    int perPixel() const { return (isGrey ? 1 : 3) + (hasAlpha ? 1 : 0); }
};

/// Skin of many levels between those of 8 bits, with a dark blemish in its middle, in rows of `perPixel`
/// samples; all alphas, if the kind has any, beyond the middle.
FileSamples skinSamples(PixelSize size, const DeepKind& kind);

/// The file of such samples.
Bytes deepFile(const FileSamples& samples, const DeepKind& kind);

/// What the library reads from a TIFF file, nothing converted.
FileSamples samplesOfTiff(const std::filesystem::path& path);

} // namespace complexion::test
