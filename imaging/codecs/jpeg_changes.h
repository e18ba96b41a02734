// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/codecs/jpeg_block_fit.h"
#include "imaging/codecs/jpeg_layout.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace complexion {

/// What is to be added to the samples of a block, and which of them have to stay to the bit.
struct JpegBlockChange {
    JpegFloats samples = {};
    JpegSampleMask held;
    bool operator==(const JpegBlockChange&) const = default;
};

/// The changes of an MCU's blocks in the order in which a scan has them: component by component, row by row.
using JpegMcuChange = std::vector<JpegBlockChange>;

/// By how much the samples of an MCU's blocks differ in the end, in the same order.
using JpegMcuMoves = std::vector<std::array<std::int16_t, kJpegBlockArea>>;

/// Two versions of a picture, as it is stored, and the MCUs in which they differ: row and column.
struct JpegVersions {
    const Image& before;
    const Image& after;
    std::function<bool(int row, int column)> isTouched;
};

/// What makes the one version of the other in the touched MCUs of `mcus` (a rectangle in MCUs), by their
/// numbers in the order of the scan. Of components with fewer samples than pixels the changes suit both the
/// pixels that differ and, first of all, those beside them that do not; where a decoder blends such a sample
/// with those of an MCU that is not touched, it is held. The result depends on the MCUs up to two away.
/// Nothing when a grey picture would need colours.
std::optional<std::map<int, JpegMcuChange>> changesIn(const JpegLayout& layout, const JpegVersions& versions,
                                                      PixelRect mcus);

/// Whether the pixels of `mcus` come out well when the samples of touched MCUs move by `movesOf`: no pixel
/// that was not painted moves far, and those that were are near what was painted.
bool isFaithful(const JpegLayout& layout, const JpegVersions& versions, PixelRect mcus,
                const std::function<const JpegMcuMoves&(int row, int column)>& movesOf);

/// The part of `mcus` in which all touched ones lie.
PixelRect touchedPart(const JpegVersions& versions, PixelRect mcus);

} // namespace complexion
