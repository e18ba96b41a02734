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

/// The resulting sample differences of an MCU's blocks, in the same order.
using McuDifferences = std::vector<std::array<std::int16_t, kBlockArea>>;

/// Two versions of a picture, both as stored, and the MCUs (row and column) in which they differ.
struct Versions {
    const Image& before;
    const Image& after;
    std::function<bool(int row, int column)> isTouched;
};

/// The changes that turn `before` into `after` in the touched MCUs of `mcus` (a rectangle in MCUs), keyed by
/// MCU index in scan order. Subsampled components get a least-squares fit that favours pixels that do not
/// differ. Samples that upsampling blends with an untouched MCU are pinned. The result depends on MCUs up to
/// two away. Nothing if a grey picture would need colour.
std::optional<std::map<int, McuChange>> sampleChanges(const Layout& layout, const Versions& versions,
                                                      PixelRect mcus);

/// Whether the pixels of `mcus` are faithful when the samples of touched MCUs change by `differencesOf`:
/// unpainted pixels hardly change, and painted pixels are close to what was painted.
bool isFaithful(const Layout& layout, const Versions& versions, PixelRect mcus,
                const std::function<const McuDifferences&(int row, int column)>& differencesOf);

/// The bounding box of the touched MCUs in `mcus`.
PixelRect touchedBounds(const Versions& versions, PixelRect mcus);

} // namespace complexion::jpeg
