// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/codecs/jpeg_tables.h"
#include "imaging/codecs/jpeg_transform.h"

#include <vector>

namespace complexion {

/// One component of a JPEG picture whose samples repeat or spread over a whole number of pixels.
struct JpegComponent {
    /// Its blocks in each MCU, across and down (T.81, A.2.3).
    int blocksAcross = 1;
    int blocksDown = 1;
    /// Pixels per sample, across and down.
    int pixelsAcross = 1;
    int pixelsDown = 1;
    /// Its samples in the whole picture, without those that fill up blocks.
    PixelSize samples;

    std::size_t blocksOfMcu() const {
        return static_cast<std::size_t>(blocksAcross) * static_cast<std::size_t>(blocksDown);
    }
    /// Its blocks in the whole picture, without those that fill up MCUs.
    int blocksOfRow() const { return (samples.width + kJpegBlockSide - 1) / kJpegBlockSide; }
    int blocksOfColumn() const { return (samples.height + kJpegBlockSide - 1) / kJpegBlockSide; }
    bool isWhole() const { return pixelsAcross == 1 && pixelsDown == 1; }
    /// Whether decoders blend neighbouring samples across, or down (libjpeg's "fancy upsampling"); otherwise
    /// each sample is repeated.
    bool blendsAcross() const { return pixelsAcross == 2 && pixelsDown <= 2 && samples.width > kNarrowest; }
    bool blendsDown() const {
        return pixelsDown == 2 && (pixelsAcross == 1 || (pixelsAcross == 2 && samples.width > kNarrowest));
    }

private:
    /// Up to here libjpeg repeats samples rather than blend them across.
    static constexpr int kNarrowest = 2;
};

/// How a picture is divided into MCUs of one scan.
struct JpegLayout {
    PixelSize size;
    JpegColors colors = JpegColors::YCbCr;
    std::vector<JpegComponent> components;
    /// An MCU in pixels.
    PixelSize mcu;
    int mcusAcross = 0;
    int mcusDown = 0;

    std::size_t mcuCount() const {
        return static_cast<std::size_t>(mcusAcross) * static_cast<std::size_t>(mcusDown);
    }
    /// A component's blocks in a row of MCUs: `blocksDown` rows of so many.
    int blocksInRow(const JpegComponent& component) const { return mcusAcross * component.blocksAcross; }
};

/// The coefficients of one row of MCUs: of each component its rows of blocks, one behind the other.
using JpegMcuRow = std::vector<std::vector<JpegBlock>>;

/// An empty row of MCUs: all coefficients 0.
JpegMcuRow emptyMcuRow(const JpegLayout& layout);

/// The place of a component's block in its part of a JpegMcuRow: of MCU `mcu`, and there in row `down` and
/// column `across`.
inline std::size_t blockIndex(const JpegLayout& layout, const JpegComponent& component, int mcu, int down,
                              int across) {
    return static_cast<std::size_t>(down * layout.blocksInRow(component) + mcu * component.blocksAcross +
                                    across);
}

/// Whether an interval of an 8-bit file holds the DC coefficients of `row`, row `index` of the picture.
bool fitsRestartInterval(const JpegLayout& layout, const JpegMcuRow& row, int index);

} // namespace complexion
