// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

#include <png.h>

namespace complexion {

/// How a test wants a PNG file written by the library itself.
struct PngRecipe {
    PixelSize size;
    int colorType = PNG_COLOR_TYPE_RGB;
    int depth = 8;
    bool interlaced = false;
    /// Further chunks before the image data.
    std::function<void(png_structp, png_infop)> adjust = [](png_structp, png_infop) {};
    /// Chunks after it.
    std::function<void(png_structp)> atEnd = [](png_structp) {};
};

/// Has what `png` writes appended to `file`.
inline void appendTo(Bytes& file, png_structp png) {
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, std::size_t count) {
            Bytes& out = *static_cast<Bytes*>(png_get_io_ptr(writer));
            out.insert(out.end(), bytes, bytes + count);
        },
        nullptr);
}

/// The file of packed rows, 16-bit samples in big-endian order.
inline Bytes pngFile(const PngRecipe& recipe, std::vector<std::uint8_t> samples) {
    png_structp png = png_create_write_struct(
        PNG_LIBPNG_VER_STRING, nullptr,
        [](png_structp, png_const_charp message) { throw std::runtime_error(message); },
        [](png_structp, png_const_charp) {});
    png_infop info = png_create_info_struct(png);
    Bytes file;
    appendTo(file, png);
    png_set_IHDR(png, info, static_cast<png_uint_32>(recipe.size.width),
                 static_cast<png_uint_32>(recipe.size.height), recipe.depth, recipe.colorType,
                 recipe.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    recipe.adjust(png, info);
    png_write_info(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    std::vector<png_bytep> rows;
    for (int y = 0; y < recipe.size.height; ++y)
        rows.push_back(samples.data() + static_cast<std::size_t>(y) * stride);
    png_write_image(png, rows.data());
    recipe.atEnd(png);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

/// What the library decodes a file to: red, green, blue and alpha, not premultiplied.
inline std::vector<std::uint8_t> pngSamples(ByteView file) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
        return {};
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> samples(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, samples.data(), 0, nullptr) == 0)
        return {};
    return samples;
}

} // namespace complexion
