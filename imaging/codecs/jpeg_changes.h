// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/codecs/jpeg_block_fit.h"
#include "imaging/codecs/jpeg_layout.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace complexion::jpeg {

/// The values to add to a block's samples, and the samples that must not change by a bit.
struct BlockChange {
    FloatBlock samples = {};
    SampleMask pinned;
    bool operator==(const BlockChange&) const = default;
};

/// The changes of an MCU's blocks in scan order (ITU-T T.81 A.2.3): component by component, row by row.
using McuChange = std::vector<BlockChange>;
/// By MCU index in scan order.
using McuChanges = std::map<int, McuChange>;

/// The resulting sample differences of an MCU's blocks, in the same order.
using McuDifferences = std::vector<std::array<std::int16_t, kBlockArea>>;

/// The differences of a touched MCU.
using DifferencesOf = std::function<const McuDifferences&(int row, int column)>;

/// Two versions of a picture, both as stored, and the MCUs (row and column) in which they differ.
struct Versions {
    const Image& before;
    const Image& after;
    std::function<bool(int row, int column)> isTouched;
};

/// The changes that turn `before` into `after` in the touched MCUs of `mcus` (a rectangle in MCUs).
/// Subsampled components get a least-squares fit that favours pixels that do not
/// differ. Samples that upsampling blends with an untouched MCU are pinned. The result depends on MCUs up to
/// two away. Nothing if a grey picture would need colour.
std::optional<McuChanges> sampleChanges(const Layout& layout, const Versions& versions, PixelRect mcus);

/// Whether the pixels of `mcus` are faithful when the samples of touched MCUs change by `differencesOf`:
/// unpainted pixels hardly change, and painted pixels are close to what was painted.
bool isFaithful(const Layout& layout, const Versions& versions, PixelRect mcus,
                const DifferencesOf& differencesOf);

/// The changes of the touched MCUs of `mcus` whose luminance, of full resolution, comes closest to what was
/// painted when the chroma samples of touched MCUs change by `differencesOf`: it makes up for what coarse
/// chroma gets wrong. Of the luminance blocks alone.
McuChanges luminanceChanges(const Layout& layout, const Versions& versions, PixelRect mcus,
                            const DifferencesOf& differencesOf);

/// The bounding box of the touched MCUs in `mcus`.
PixelRect touchedBounds(const Versions& versions, PixelRect mcus);

} // namespace complexion::jpeg
