// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/fakes/pictures.h"
#include "tests/fakes/png_files.h"
#include "tests/imaging/tiff_writer.h"

#include <cstdint>
#include <string>
#include <vector>

namespace complexion::test {

/// The format of a 16-bit file.
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

/// The samples of skin with levels between those of 8 bits and a dark blemish at the centre. If the kind has
/// alpha, it takes values from the whole range beside the blemish.
FileSamples skinSamples(PixelSize size, const DeepKind& kind);

/// Writes the samples to a file of this kind.
Bytes deepFile(const FileSamples& samples, const DeepKind& kind);

/// The samples of a TIFF file, unconverted.
FileSamples samplesOfTiff(const std::filesystem::path& path);

} // namespace complexion::test
