// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/cached_indices.h"
#include "imaging/codecs/gif_codec.h"
#include "imaging/containers/gif_blocks.h"

#include <cgif.h>

#include <cstdlib>
#include <new>

namespace complexion::gif {

namespace {

/// The library does not check its allocations. Per picture it allocates a copy of the indices, two arrays of
/// 16-bit codes, the packed codes and a dictionary.
constexpr std::size_t kLibraryBytesPerPixel = 8;
constexpr std::size_t kLibraryDictionarySize = std::size_t{8} << 20;

bool hasMemoryFor(PixelSize size) {
    const auto pixels = static_cast<std::size_t>(size.area());
    // Volatile, so that the compiler does not remove the trial allocation.
    void* volatile trial = std::malloc(pixels * kLibraryBytesPerPixel + kLibraryDictionarySize);
    std::free(trial);
    return trial != nullptr;
}

int appendToBytes(void* bytes, const std::uint8_t* data, const std::size_t count) {
    // Exceptions must not propagate through the C library.
    try {
        auto& out = *static_cast<Bytes*>(bytes);
        out.insert(out.end(), data, data + count);
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

} // namespace

Result<FileContents> encode(const Image& image) {
    const PixelSize size = image.pixelSize();
    if (!image.hasPixels() || size.width > kMaxSide || size.height > kMaxSide)
        return Error{"a GIF file cannot hold a picture of this size", ErrorKind::FormatCannotHold};
    COMPLEXION_TRY(const auto cached, cachedIndexedImage(image));
    const IndexedImage* indexed = cached.get();
    if (!hasMemoryFor(size))
        return Error{"there is not enough memory to write the GIF file", ErrorKind::OutOfMemory};

    std::vector<std::uint8_t> palette;
    for (const RGBA32 color : indexed->palette)
        palette.insert(palette.end(), {color.red(), color.green(), color.blue()});
    Bytes bytes;
    CGIF_Config file = {};
    file.pGlobalPalette = palette.data();
    file.numGlobalPaletteEntries = static_cast<std::uint16_t>(indexed->palette.size());
    // The library writes a graphic control extension, which holds the transparent index, for animations only.
    // One frame is enough.
    file.attrFlags = indexed->hasTransparency ? CGIF_ATTR_IS_ANIMATED | CGIF_ATTR_NO_LOOP : 0;
    file.width = static_cast<std::uint16_t>(size.width);
    file.height = static_cast<std::uint16_t>(size.height);
    file.pWriteFn = appendToBytes;
    file.pContext = &bytes;
    CGIF* gif = cgif_newgif(&file);
    if (!gif)
        return Error{"the GIF file cannot be begun", ErrorKind::OutOfMemory};
    CGIF_FrameConfig frame = {};
    frame.attrFlags = indexed->hasTransparency ? CGIF_FRAME_ATTR_HAS_ALPHA : 0;
    frame.transIndex = 0;
    frame.pImageData = const_cast<std::uint8_t*>(indexed->indices.data()); // only read
    const bool added = cgif_addframe(gif, &frame) == CGIF_OK;
    const bool closed = cgif_close(gif) == CGIF_OK;
    if (!added || !closed)
        return Error{"the GIF file cannot be finished", ErrorKind::OutOfMemory};
    if (!image.profile().isSrgb())
        return withProfile(image.profile().icc(), bytes);
    FileContents contents;
    contents.append(std::move(bytes));
    return contents;
}

} // namespace complexion::gif
