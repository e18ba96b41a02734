// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_changes.h"
#include "imaging/codecs/jpeg_coded_rows.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace complexion::jpeg {

/// The edited MCUs of a JPEG picture. MCUs without a changed pixel keep their coefficients and decode to the
/// same bits: chroma samples next to them are pinned, so that upsampling across their border changes nothing
/// either.
class Edit {
public:
    /// Starts without edits. `upright` is the picture in `jpeg`, which stores it with `orientation`.
    Edit(const TranscodedFile& jpeg, const Image& upright, Orientation orientation);

    /// Updates the edit to `upright`. Costs time only for the MCUs that differ from the previous image.
    /// Fails, leaving the edit as it was, if the picture's components cannot represent the new pixels.
    std::optional<Error> update(const Image& upright);

    /// The bytes of MCU row `index`, as in TranscodedFile.
    const std::shared_ptr<const Bytes>& row(int index) const;

private:
    /// A touched MCU. Its blocks are empty until some are fitted.
    struct TouchedMcu {
        McuChange wanted; // as computed from the pixels alone
        McuChange fitted; // what the blocks were fitted to
        std::vector<CoefficientBlock> blocks;
        McuDifferences differences; // of the blocks' samples
    };
    using TouchedMcus = std::map<int, std::shared_ptr<const TouchedMcu>>;
    using McuRows = std::map<int, McuRow>;
    using CodedRows = std::map<int, std::shared_ptr<const Bytes>>;

    /// Why an image could not be represented, and the part of the stored picture that this depends on.
    struct Refusal {
        Image image; // upright
        PixelRect region;
        Error error;
    };
    bool isStillRefused(const Image& upright);
    PixelRect regionOf(PixelRect square) const;
    std::optional<PixelRect> findUnfaithful(const std::vector<PixelRect>& squares, const Versions& versions,
                                            const TouchedMcus& touched) const;

    std::vector<PixelRect> squaresAround(const std::vector<int>& mcus, const Versions& versions) const;
    std::vector<int> differingMcus(const Image& upright) const;
    bool isTouched(const Image& stored, int mcu) const;
    PixelRect pixelsOf(int mcu) const;
    std::optional<McuRows> readRows(const std::vector<int>& rows) const;
    std::optional<McuChanges> changesToFit(TouchedMcus& touched, const Versions& versions,
                                           const std::vector<PixelRect>& squares) const;
    /// Blocks of an MCU in scan order, the last one excluded.
    struct BlockRange {
        std::size_t first = 0;
        std::size_t last = 0;
    };
    void fit(const McuRows& rows, TouchedMcus& touched, const McuChanges& changes, BlockRange range) const;
    bool refinesLuminance() const;
    void refineLuminance(const McuRows& rows, TouchedMcus& touched, const Versions& versions,
                         const std::vector<PixelRect>& squares, const std::vector<int>& mcus) const;
    std::vector<int> withTouchedNeighbors(const std::vector<int>& mcus, const TouchedMcus& touched) const;
    DifferencesOf differencesIn(const TouchedMcus& touched) const;
    std::optional<CodedRows> encodeRows(McuRows rows, const TouchedMcus& touched) const;

    const TranscodedFile& m_jpeg;
    Orientation m_orientation;
    Image m_source;  // as stored
    Image m_current; // upright; a separate image, so that no encoder memory owns itself
    TouchedMcus m_touched;
    CodedRows m_rows;                 // MCU rows with touched MCUs
    std::optional<Refusal> m_refusal; // of the last update
};

} // namespace complexion::jpeg
