// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_block_rows.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace complexion::jpeg {

namespace {

/// Rows decoded as one part. The restart markers of each part must begin with RST0.
constexpr int kRowsPerPart = 4 * Tile::kHeight;
static_assert(kRowsPerPart % (8 * DCTSIZE) == 0);

// Frame header (ITU-T T.81 B.2.2) after its length: sample precision, then the number of lines.
constexpr std::size_t kLinesOffset = 1;
constexpr std::size_t kFrameHeaderLength = 6; // at least

bool isStartOfFrame(std::uint8_t marker) {
    return marker == 0xC0 ||
           marker == 0xC1; // SOF0, SOF1: sequential DCT, Huffman coding (ITU-T T.81 table B.1)
}

/// Whether a segment has no effect on decoding.
bool isIgnorable(std::uint8_t code) {
    constexpr int kAdobe = 14; // selects the colour transform, as the absence of JFIF does
    return code == marker::kComment ||
           (code > marker::app(0) && code <= marker::app(15) && code != marker::app(kAdobe));
}

/// The file's headers with another number of lines. Empty unless there is exactly one sequential frame and
/// the scan follows.
Bytes headersWithHeight(ByteView headers, int height) {
    const Segments jpeg = split(headers);
    Bytes bytes = {0xFF, marker::kStartOfImage};
    int frames = 0;
    for (const Segment& segment : jpeg.segments) {
        if (isIgnorable(segment.marker))
            continue;
        bytes.insert(bytes.end(), segment.whole.begin(), segment.whole.end());
        if (!isStartOfFrame(segment.marker) || segment.payload.size() < kFrameHeaderLength)
            continue;
        ++frames;
        std::uint8_t* const payload = bytes.data() + bytes.size() - segment.payload.size();
        payload[kLinesOffset] = static_cast<std::uint8_t>(height >> 8);
        payload[kLinesOffset + 1] = static_cast<std::uint8_t>(height);
    }
    if (frames != 1 || jpeg.rest.size() < 2 || jpeg.rest[0] != 0xFF || jpeg.rest[1] != marker::kStartOfScan)
        return {};
    bytes.insert(bytes.end(), jpeg.rest.begin(), jpeg.rest.end());
    return bytes;
}

/// Decodes the rows from `firstRow` on. False if they cannot be decoded on their own. Sets `isDamaged` if
/// pixels are missing.
bool decodePart(const Bytes& headers, ByteView rest, PixelSize size, int firstRow, ImageBuilder& builder,
                std::atomic<bool>& isDamaged) {
    Decompressor decompressor(headers, rest);
    if (!decompressor.readHeader() || decompressor.size() != size ||
        !decompressor.hasIndependentBlockRows() || !decompressor.start())
        return false;
    PixelBlock rows = PixelBlock::uninitialized({size.width, std::min(Tile::kHeight, size.height)});
    std::array<JSAMPROW, Tile::kHeight> pointers{};
    for (int row = 0; row < rows.size.height; ++row)
        pointers[static_cast<std::size_t>(row)] = reinterpret_cast<JSAMPROW>(rows.row(row));
    for (int y = 0; y < size.height; y += Tile::kHeight) {
        const int count = std::min(Tile::kHeight, size.height - y);
        if (!decompressor.readRows(pointers.data(), count))
            return false;
        builder.setRows(firstRow + y, count, rows.pixels.get());
    }
    if (decompressor.damage())
        isDamaged = true;
    return true;
}

} // namespace

std::optional<DecodedPicture> decodeBlockRowsInParallel(const Decompressor& header, ByteView file) {
    const PixelSize size = header.size();
    if (!header.hasIndependentBlockRows() || size.height <= kRowsPerPart)
        return std::nullopt;
    const ByteView scan = header.scanData();
    const RestartIntervals split = splitAtRestartMarkers(scan);
    const auto blockRows = static_cast<std::size_t>((size.height + DCTSIZE - 1) / DCTSIZE);
    // Files with missing or wrong markers are left to the sequential decoder, which resynchronises.
    if (split.intervals.size() != blockRows || !split.inSequence || split.rest.size() < kEndOfImage.size() ||
        !std::equal(kEndOfImage.begin(), kEndOfImage.end(), split.rest.begin()))
        return std::nullopt;

    const ByteView headers = file.first(file.size() - scan.size());
    ImageBuilder builder(size);
    std::atomic<bool> isDone = true;
    std::atomic<bool> isDamaged = false;
    parallelFor((size.height + kRowsPerPart - 1) / kRowsPerPart, [&](int part) {
        const int y = part * kRowsPerPart;
        const int height = std::min(kRowsPerPart, size.height - y);
        // Up to the end of the file: how the library decodes damaged data depends on how much follows.
        const std::uint8_t* const first = split.intervals[static_cast<std::size_t>(y / DCTSIZE)].data();
        const ByteView rest(first, file.data() + file.size());
        const Bytes headersOfPart = headersWithHeight(headers, height);
        if (!isDone || headersOfPart.empty() ||
            !decodePart(headersOfPart, rest, {size.width, height}, y, builder, isDamaged))
            isDone = false;
    });
    if (!isDone)
        return std::nullopt;
    return DecodedPicture{builder.finish(),
                          isDamaged ? std::optional(Error{"JPEG: pixels are missing"}) : std::nullopt};
}

} // namespace complexion::jpeg
