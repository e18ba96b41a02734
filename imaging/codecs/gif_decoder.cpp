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

namespace complexion {

namespace {

constexpr std::uint8_t kMaxCodeSize = 8;
// A code of 12 bits can stand for a string as long as the table has entries.
constexpr std::int64_t kMaxPixelsPerByte = 4096;

/// The picture area: the canvas; the first frame's extent when the file states none.
PixelSize canvasSize(PixelSize screen, const PixelRect& frame) {
    return {screen.width > 0 ? screen.width : frame.right(),
            screen.height > 0 ? screen.height : frame.bottom()};
}

/// What the library reads. It refuses frames whose code size is not of the format, and is told another.
struct Source {
    ByteView rest;
    /// Of the first frame; null when the file has none.
    const std::uint8_t* codeSize = nullptr;
};

const std::uint8_t* firstCodeSize(ByteView file) {
    const auto gif = gif::split(file);
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

/// The transparent index that an extension states, if it is a graphics control extension; -1 for none.
std::optional<int> transparentIndex(int code, const GifByteType* extension) {
    GraphicsControlBlock control;
    if (code != GRAPHICS_EXT_FUNC_CODE || !extension ||
        DGifExtensionToGCB(extension[0], extension + 1, &control) != GIF_OK)
        return std::nullopt;
    return control.TransparentColor;
}

/// Reads on to the first frame's description. Gives its transparent index, -1 for none; nothing when there is
/// no frame.
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
        // A file without any table leaves the colours to the reader: greys. Colours beyond a table are black.
        const auto grey = static_cast<std::uint8_t>(i);
        palette[i] = map ? RGBA32(0, 0, 0, 255) : RGBA32(grey, grey, grey, 255);
        if (map && i < static_cast<std::size_t>(map->ColorCount))
            palette[i] = RGBA32(map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue, 255);
    }
    if (transparent >= 0 && transparent < static_cast<int>(palette.size()))
        palette[static_cast<std::size_t>(transparent)] = RGBA32();
    return palette;
}

/// The order in which a frame's rows are stored.
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

/// Decodes the frame that `gif` stands at into its place on the canvas. The number of rows that could be
/// decoded, in the file's order.
int decodeFrame(GifFileType* gif, int transparent, int codeSize, PixelSize canvas, ImageBuilder& builder) {
    const GifImageDesc& frame = gif->Image;
    const std::array<RGBA32, 256> palette = paletteOf(gif, transparent);
    const PixelRect shown = PixelRect{frame.Left, frame.Top, frame.Width, frame.Height}.intersected(
        {0, 0, canvas.width, canvas.height});
    std::vector<GifPixelType> indices(static_cast<std::size_t>(frame.Width));
    std::vector<RGBA32> row(static_cast<std::size_t>(canvas.width));
    GifLzwDecoder decoder(gif, codeSize);
    int decoded = 0;
    for (const int y : rowOrder(frame.Height, frame.Interlace)) {
        // A damaged row is left out together with all that come after it.
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

Result<std::vector<PixelSize>> measureGif(ByteView file) {
    const auto gif = gif::split(file);
    if (containerOf(file) != Container::Gif || !gif)
        return Error{"not a GIF file"};
    if (gif->frames.empty())
        return std::vector<PixelSize>();
    const PixelSize canvas = canvasSize(gif->screen, gif->frames.front().rect);
    return std::vector<PixelSize>(gif->frames.size(), canvas);
}

Result<DecodedPicture> decodeGif(ByteView file) {
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
    const Error cut{"GIF file ends before its pixels"};
    if (rows == 0)
        return cut;
    return DecodedPicture{builder.finish().withProfile(ColorProfile::fromIcc(gif::profile(file))),
                          rows < frame.Height ? std::optional(cut) : std::nullopt};
}

} // namespace complexion
