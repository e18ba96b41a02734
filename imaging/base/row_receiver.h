// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/pixel_block.h"
#include "imaging/base/rgba32.h"
#include "imaging/base/rgba64.h"

#include <optional>

namespace complexion {

enum class Orientation;

/// What a reduced picture shows that is known before the rows are.
struct PreviewedPicture {
    PixelSize stored;
    Orientation orientation;
    /// Its profile; empty if it has none.
    ByteView icc;
};

/// Takes over the pixels of pictures that are decoded in this process: an ImageBuilder passes its rows on
/// instead of keeping them, and its image has a size and a profile, but no pixels to read. For a process that
/// decodes on behalf of another one.
class RowReceiver {
public:
    RowReceiver() = default;
    RowReceiver(const RowReceiver&) = delete;
    RowReceiver& operator=(const RowReceiver&) = delete;
    virtual ~RowReceiver() = default;

    /// A picture of this size follows, as an ImageBuilder is constructed; whatever came before is discarded.
    virtual void begin(PixelSize size, std::optional<DeepAlpha> deepAlpha) = 0;
    /// As ImageBuilder::setRows, from any thread.
    virtual void setRows(int firstRow, int count, const RGBA32* rows, const RGBA64* deepRows) = 0;
    /// Memory to decode the next `count` rows into, packed, for passing them to `setRows` from there without
    /// a copy; until then it is the same memory. Null if there is none. For one thread per picture.
    virtual RGBA32* memoryForRows(int /*count*/) { return nullptr; }
    /// As turnedUpright, of the whole picture.
    virtual void turnUpright(Orientation orientation) = 0;

    /// Whether decoders that know a preview early are to pass it to `preview`, before the first row.
    virtual bool wantsPreview(PixelSize) const { return false; }
    /// `pixels` is the stored picture, reduced.
    virtual void preview(const PixelBlock& /*pixels*/, const PreviewedPicture& /*picture*/) {}

    /// The one of this process; null, as long as none was installed, for a process that keeps its images.
    static RowReceiver* installed() { return s_installed; }
    /// Before the first picture is decoded, and for the rest of the process.
    static void install(RowReceiver* receiver) { s_installed = receiver; }

private:
    inline static RowReceiver* s_installed = nullptr;
};

} // namespace complexion
