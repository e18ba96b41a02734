// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/codecs/jpeg_changes.h"
#include "imaging/codecs/jpeg_coded_rows.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace complexion {

/// What an edit made of a JPEG picture's MCUs. Those in which no pixel differs from the picture as it was
/// decoded keep their coefficients, and what a decoder makes of them stays the same to the bit: chroma beside
/// them is held, so that a decoder's blending across their border changes nothing either.
class JpegEdit {
public:
    /// Nothing is edited yet: `upright` is the picture that `jpeg` shows, stored with `orientation`.
    JpegEdit(const CodedJpeg& jpeg, const Image& upright, Orientation orientation);

    /// Makes the edit that of `upright`: costs the MCUs in which that differs from the image before. An
    /// error says why the picture's components cannot hold the new pixels; then the edit is as it was.
    std::optional<Error> update(const Image& upright);

    /// The bytes of row `index` of MCUs, as in CodedJpeg.
    const std::shared_ptr<const Bytes>& row(int index) const;

private:
    /// A touched MCU: what was to be changed, the blocks that came of it, and what these change.
    struct TouchedMcu {
        JpegMcuChange change;
        std::vector<JpegBlock> blocks;
        JpegMcuMoves moves;
    };
    using TouchedMcus = std::map<int, std::shared_ptr<const TouchedMcu>>;
    using McuRows = std::map<int, JpegMcuRow>;
    using CodedRows = std::map<int, std::shared_ptr<const Bytes>>;

    std::vector<PixelRect> squaresAround(const std::vector<int>& mcus, const JpegVersions& versions) const;
    std::vector<int> differingMcus(const Image& upright) const;
    bool isTouched(const Image& stored, int mcu) const;
    PixelRect pixelsOf(int mcu) const;
    std::optional<McuRows> readRows(const std::vector<int>& rows) const;
    void fit(const McuRows& rows, TouchedMcus& touched, const std::vector<int>& mcus) const;
    std::optional<CodedRows> codeRows(McuRows rows, const TouchedMcus& touched) const;

    const CodedJpeg& m_jpeg;
    Orientation m_orientation;
    Image m_source;  // as stored
    Image m_current; // upright; of its own, so that no picture's memory owns itself through it
    TouchedMcus m_touched;
    CodedRows m_rows; // those with touched MCUs
};

} // namespace complexion
