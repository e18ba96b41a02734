// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/gif_codec.h"

#include "imaging/base/picture_limits.h"
#include "imaging/codecs/gif_lzw.h"
#include "imaging/containers/gif_blocks.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace complexion::gif {

namespace {

constexpr std::uint8_t kMaxCodeSize = 8; // bits of a palette index (GIF89a section 22)
// A 12-bit code expands to at most one pixel per entry of the string table (GIF89a appendix F).
constexpr std::int64_t kMaxPixelsPerByte = 4096;

/// The logical screen (GIF89a section 18). If the file gives it no size, the extent of the first frame.
PixelSize canvasSize(PixelSize screen, const PixelRect& frame) {
    return {screen.width > 0 ? screen.width : frame.right(),
            screen.height > 0 ? screen.height : frame.bottom()};
}

/// The library's input. It rejects frames with an invalid LZW minimum code size, so that byte is clamped
/// while it is read.
struct Source {
    ByteView rest;
    /// The first frame's LZW minimum code size; null if there is no frame.
    const std::uint8_t* codeSize = nullptr;
};

const std::uint8_t* firstCodeSize(ByteView file) {
    const auto gif = split(file);
    const std::size_t at = gif && !gif->frames.empty() ? gif->frames.front().dataOffset : file.size();
    return at < file.size() ? &file[at] : nullptr;
}

int readFromMemory(GifFileType* gif, GifByteType* out, int count) {
    auto& [rest, codeSize] = *static_cast<Source*>(gif->UserData);
    const std::size_t taken = std::min(rest.size(), static_cast<std::size_t>(std::max(count, 0)));
    std::memcpy(out, rest.data(), taken);
    if (codeSize && codeSize >= rest.data() && codeSize < rest.data() + taken)
        out[codeSize - rest.data()] = std::min(*codeSize, kMaxCodeSize);
    rest = rest.subspan(taken);
    return static_cast<int>(taken);
}

struct GifCloser {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, GifCloser>;

/// The transparent colour index of a graphic control extension (GIF89a section 23), -1 if it has none.
/// Nothing for other extensions.
std::optional<int> transparentIndex(int code, const GifByteType* extension) {
    GraphicsControlBlock control;
    if (code != GRAPHICS_EXT_FUNC_CODE || !extension ||
        DGifExtensionToGCB(extension[0], extension + 1, &control) != GIF_OK)
        return std::nullopt;
    return control.TransparentColor;
}

/// Reads up to the first frame's image descriptor. Returns its transparent colour index, -1 if it has none;
/// nothing if there is no frame.
std::optional<int> seekFirstFrame(GifFileType* gif) {
    int transparent = NO_TRANSPARENT_COLOR;
    for (;;) {
        GifRecordType type = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &type) != GIF_OK)
            return std::nullopt;
        if (type == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(gif) == GIF_OK ? std::optional(transparent) : std::nullopt;
        if (type != EXTENSION_RECORD_TYPE)
            return std::nullopt;
        int code = 0;
        GifByteType* extension = nullptr;
        if (DGifGetExtension(gif, &code, &extension) != GIF_OK)
            return std::nullopt;
        transparent = transparentIndex(code, extension).value_or(transparent);
        while (extension)
            if (DGifGetExtensionNext(gif, &extension) != GIF_OK)
                return std::nullopt;
    }
}

std::array<RGBA32, 256> paletteOf(const GifFileType* gif, int transparent) {
    std::array<RGBA32, 256> palette;
    const ColorMapObject* map = gif->Image.ColorMap ? gif->Image.ColorMap : gif->SColorMap;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        // Without a colour table the decoder chooses the colours: greys. Indices beyond a table are black.
        const auto grey = static_cast<std::uint8_t>(i);
        palette[i] = map ? RGBA32(0, 0, 0, 255) : RGBA32(grey, grey, grey, 255);
        if (map && i < static_cast<std::size_t>(map->ColorCount))
            palette[i] = RGBA32(map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue, 255);
    }
    if (transparent >= 0 && transparent < static_cast<int>(palette.size()))
        palette[static_cast<std::size_t>(transparent)] = RGBA32();
    return palette;
}

/// The order in which a frame's rows are stored (GIF89a appendix E).
std::vector<int> rowOrder(int height, bool interlaced) {
    struct Pass {
        int first;
        int step;
    };
    static constexpr std::array<Pass, 4> kInterlaced = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(height));
    if (!interlaced)
        for (int y = 0; y < height; ++y)
            order.push_back(y);
    else
        for (const Pass pass : kInterlaced)
            for (int y = pass.first; y < height; y += pass.step)
                order.push_back(y);
    return order;
}

/// Decodes the current frame of `gif` at its position on the canvas. Returns the number of rows decoded, in
/// file order.
int decodeFrame(GifFileType* gif, int transparent, int codeSize, PixelSize canvas, ImageBuilder& builder) {
    const GifImageDesc& frame = gif->Image;
    const std::array<RGBA32, 256> palette = paletteOf(gif, transparent);
    const PixelRect shown = PixelRect{frame.Left, frame.Top, frame.Width, frame.Height}.intersected(
        {0, 0, canvas.width, canvas.height});
    std::vector<GifPixelType> indices(static_cast<std::size_t>(frame.Width));
    std::vector<RGBA32> row(static_cast<std::size_t>(canvas.width));
    LzwDecoder decoder(gif, codeSize);
    int decoded = 0;
    for (const int y : rowOrder(frame.Height, frame.Interlace)) {
        // A damaged row and all rows after it are skipped.
        if (!decoder.read(indices))
            break;
        ++decoded;
        const int target = frame.Top + y;
        if (target >= canvas.height)
            continue;
        for (int x = 0; x < shown.width; ++x)
            row[static_cast<std::size_t>(shown.x) + static_cast<std::size_t>(x)] =
                palette[indices[static_cast<std::size_t>(x)]];
        builder.setRows(target, 1, row.data());
    }
    return decoded;
}

} // namespace

Result<std::vector<PixelSize>> measure(ByteView file) {
    const auto gif = split(file);
    if (containerOf(file) != Container::Gif || !gif)
        return Error{"not a GIF file"};
    if (gif->frames.empty())
        return std::vector<PixelSize>();
    const PixelSize canvas = canvasSize(gif->screen, gif->frames.front().rect);
    return std::vector<PixelSize>(gif->frames.size(), canvas);
}

Result<DecodedPicture> decode(ByteView file) {
    if (containerOf(file) != Container::Gif)
        return Error{"not a GIF file"};
    Source source{file, firstCodeSize(file)};
    int error = 0;
    const Gif gif(DGifOpen(&source, readFromMemory, &error));
    if (!gif)
        return Error{"damaged GIF header"};
    const std::optional<int> transparent = seekFirstFrame(gif.get());
    if (!transparent)
        return Error{"GIF file without a frame"};
    const GifImageDesc& frame = gif->Image;
    const PixelSize canvas =
        canvasSize({gif->SWidth, gif->SHeight}, {frame.Left, frame.Top, frame.Width, frame.Height});
    if (!isPlausibleArea(canvas.width, canvas.height, file.size(), kMaxPixelsPerByte))
        return Error{"GIF picture of an impossible size", ErrorKind::TooLarge};
    ImageBuilder builder(canvas);
    const int codeSize = source.codeSize ? *source.codeSize : 0;
    const int rows = decodeFrame(gif.get(), *transparent, codeSize, canvas, builder);
    const Error truncated{"GIF file ends before its pixels"};
    if (rows == 0)
        return truncated;
    return DecodedPicture{builder.finish().withProfile(ColorProfile::fromIcc(profile(file))),
                          rows < frame.Height ? std::optional(truncated) : std::nullopt};
}

} // namespace complexion::gif
