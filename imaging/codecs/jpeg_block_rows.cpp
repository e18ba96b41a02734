// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_block_rows.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/jpeg_scan.h"
#include "imaging/containers/jpeg_segments.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace complexion {

namespace {

/// So many rows are decoded in one go. The restart markers of each part have to begin with RST0.
constexpr int kRowsOfPart = 4 * Tile::kHeight;
static_assert(kRowsOfPart % (8 * DCTSIZE) == 0);

// The frame header's payload (T.81, B.2.2): the precision, then the number of lines.
constexpr std::size_t kLinesOffset = 1;
constexpr std::size_t kFrameHeaderLength = 6; // at least

bool isStartOfFrame(std::uint8_t marker) {
    return marker == 0xC0 || marker == 0xC1; // sequential, Huffman coded
}

/// Whether a segment tells the decoder nothing about the coding.
bool isComment(std::uint8_t code) {
    constexpr int kAdobe = 14; // tells the colour transform, as the absence of JFIF does
    return code == jpeg::marker::kComment || (code > jpeg::marker::app(0) && code <= jpeg::marker::app(15) &&
                                              code != jpeg::marker::app(kAdobe));
}

/// The file's headers with another number of lines; empty when they are not plain.
Bytes headersWithHeight(ByteView headers, int height) {
    const jpeg::Segments jpeg = jpeg::split(headers);
    Bytes bytes = {0xFF, jpeg::marker::kStartOfImage};
    int frames = 0;
    for (const jpeg::Segment& segment : jpeg.segments) {
        if (isComment(segment.marker))
            continue;
        bytes.insert(bytes.end(), segment.whole.begin(), segment.whole.end());
        if (!isStartOfFrame(segment.marker) || segment.payload.size() < kFrameHeaderLength)
            continue;
        ++frames;
        std::uint8_t* const payload = bytes.data() + bytes.size() - segment.payload.size();
        payload[kLinesOffset] = static_cast<std::uint8_t>(height >> 8);
        payload[kLinesOffset + 1] = static_cast<std::uint8_t>(height);
    }
    if (frames != 1 || jpeg.rest.size() < 2 || jpeg.rest[0] != 0xFF ||
        jpeg.rest[1] != jpeg::marker::kStartOfScan)
        return {};
    bytes.insert(bytes.end(), jpeg.rest.begin(), jpeg.rest.end());
    return bytes;
}

/// Decodes the rows from `firstRow` on; false when anything is unusual. Notes whether pixels are missing.
bool decodePart(const Bytes& headers, ByteView rest, PixelSize size, int firstRow, ImageBuilder& builder,
                std::atomic<bool>& isDamaged) {
    JpegDecompressor decompressor(headers, rest);
    if (!decompressor.readHeader() || decompressor.size() != size || !decompressor.hasBlockRowsApart() ||
        !decompressor.start())
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

std::optional<DecodedPicture> decodeBlockRowsApart(const JpegDecompressor& header, ByteView file) {
    const PixelSize size = header.size();
    if (!header.hasBlockRowsApart() || size.height <= kRowsOfPart)
        return std::nullopt;
    const ByteView scan = header.scanData();
    const RestartIntervals split = splitAtRestartMarkers(scan);
    const auto blockRows = static_cast<std::size_t>((size.height + DCTSIZE - 1) / DCTSIZE);
    // A decoder that goes through from first to last finds its way through missing and wrong markers.
    if (split.intervals.size() != blockRows || !split.inTurn || split.rest.size() < kJpegEndOfImage.size() ||
        !std::equal(kJpegEndOfImage.begin(), kJpegEndOfImage.end(), split.rest.begin()))
        return std::nullopt;

    const ByteView headers = file.first(file.size() - scan.size());
    ImageBuilder builder(size);
    std::atomic<bool> isDone = true;
    std::atomic<bool> isDamaged = false;
    parallelFor((size.height + kRowsOfPart - 1) / kRowsOfPart, [&](int part) {
        const int y = part * kRowsOfPart;
        const int height = std::min(kRowsOfPart, size.height - y);
        // To the file's end: how the library decodes damaged bytes depends on how many more there are.
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

} // namespace complexion
