// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <vector>

#include <png.h>

namespace complexion {

/// The parameters of a PNG file that a test writes with libpng itself.
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

/// Makes `png` append its output to `file`.
inline void appendTo(Bytes& file, png_structp png) {
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, std::size_t count) {
            Bytes& out = *static_cast<Bytes*>(png_get_io_ptr(writer));
            out.insert(out.end(), bytes, bytes + count);
        },
        nullptr);
}

/// Encodes packed rows; 16-bit samples are big-endian.
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

/// The samples that the library decodes: RGBA, not premultiplied.
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

/// Samples as a file has them, all in one plane.
struct FileSamples {
    PixelSize size;
    int bits = 0;
    int perPixel = 0;
    std::vector<std::uint16_t> values;

    const std::uint16_t* pixel(int row, int column) const {
        return values.data() + (std::ptrdiff_t{row} * size.width + column) * perPixel;
    }
};

/// What the library reads from a PNG file, nothing converted.
inline FileSamples samplesOfPng(ByteView file) {
    FileSamples samples;
    png_structp png = png_create_read_struct(
        PNG_LIBPNG_VER_STRING, nullptr,
        [](png_structp, png_const_charp message) { throw std::runtime_error(message); },
        [](png_structp, png_const_charp) {});
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &file, [](png_structp reader, png_bytep out, std::size_t count) {
        ByteView& left = *static_cast<ByteView*>(png_get_io_ptr(reader));
        if (left.size() < count)
            png_error(reader, "too short");
        std::copy_n(left.begin(), count, out);
        left = left.subspan(count);
    });
    png_read_png(png, info, PNG_TRANSFORM_SWAP_ENDIAN, nullptr);
    samples.size = {static_cast<int>(png_get_image_width(png, info)),
                    static_cast<int>(png_get_image_height(png, info))};
    samples.bits = png_get_bit_depth(png, info);
    samples.perPixel = png_get_channels(png, info);
    const auto perRow = static_cast<std::size_t>(samples.size.width * samples.perPixel);
    for (int y = 0; y < samples.size.height; ++y) {
        const png_bytep row = png_get_rows(png, info)[y];
        for (std::size_t i = 0; i < perRow; ++i) {
            std::uint16_t value = row[i];
            if (samples.bits == 16)
                std::memcpy(&value, row + 2 * i, sizeof value);
            samples.values.push_back(value);
        }
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return samples;
}

} // namespace complexion
