// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_tables.h"
#include "imaging/codecs/jpeg_transform.h"

#include <span>
#include <vector>

namespace complexion::jpeg {

/// One component of a JPEG picture. A sample covers a whole number of pixels in each direction.
struct Component {
    /// Blocks per MCU, across and down (ITU-T T.81 A.2.3).
    int blocksAcross = 1;
    int blocksDown = 1;
    /// Pixels per sample, across and down.
    int pixelsAcross = 1;
    int pixelsDown = 1;
    /// Samples of the whole picture, without padding of blocks.
    PixelSize samples;

    std::size_t blocksPerMcu() const {
        return static_cast<std::size_t>(blocksAcross) * static_cast<std::size_t>(blocksDown);
    }
    /// Blocks of the whole picture, without padding of MCUs.
    int blocksPerRow() const { return (samples.width + kBlockSide - 1) / kBlockSide; }
    int blocksPerColumn() const { return (samples.height + kBlockSide - 1) / kBlockSide; }
    bool isFullResolution() const { return pixelsAcross == 1 && pixelsDown == 1; }
    /// Whether decoders interpolate between neighbouring samples across or down (libjpeg's "fancy
    /// upsampling"). Otherwise samples are replicated.
    bool blendsAcross() const {
        return pixelsAcross == 2 && pixelsDown <= 2 && samples.width > kMaxReplicatedWidth;
    }
    bool blendsDown() const {
        return pixelsDown == 2 &&
               (pixelsAcross == 1 || (pixelsAcross == 2 && samples.width > kMaxReplicatedWidth));
    }

private:
    /// libjpeg replicates the samples of components up to this wide.
    static constexpr int kMaxReplicatedWidth = 2;
};

/// How a single-scan picture is divided into MCUs.
struct Layout {
    PixelSize size;
    ColorSpace colorSpace = ColorSpace::YCbCr;
    std::vector<Component> components;
    /// Size of an MCU in pixels.
    PixelSize mcu;
    int mcusAcross = 0;
    int mcusDown = 0;

    std::size_t mcuCount() const {
        return static_cast<std::size_t>(mcusAcross) * static_cast<std::size_t>(mcusDown);
    }
    /// Width in blocks of a component's part of an MCU row, which is `blocksDown` blocks high.
    int blocksPerMcuRow(const Component& component) const { return mcusAcross * component.blocksAcross; }
};

/// How finely a component is sampled, compared to the others: 1 to 4 in each direction (ITU-T T.81 B.2.2).
struct SamplingFactors {
    int across = 1;
    int down = 1;
};

/// The layout of a picture whose components have these factors. Fails if a sample does not cover a whole
/// number of pixels, or if an MCU has more blocks than a scan can.
Result<Layout> makeLayout(PixelSize size, ColorSpace colorSpace, std::span<const SamplingFactors> factors);

/// The coefficient blocks of one MCU row: for each component its block rows, concatenated.
using McuRow = std::vector<std::vector<CoefficientBlock>>;

/// An MCU row with all coefficients 0.
McuRow emptyMcuRow(const Layout& layout);

/// The index of a block in its component's part of a McuRow: MCU `mcu`, block row `down` and block column
/// `across` in it.
inline std::size_t blockIndex(const Layout& layout, const Component& component, int mcu, int down,
                              int across) {
    return static_cast<std::size_t>(down * layout.blocksPerMcuRow(component) + mcu * component.blocksAcross +
                                    across);
}

/// Whether a restart interval of an 8-bit file can hold the DC differences of `row`, MCU row `index` of the
/// picture.
bool fitsRestartInterval(const Layout& layout, const McuRow& row, int index);

} // namespace complexion::jpeg
