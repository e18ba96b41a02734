// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"

#include <cstdio> // jpeglib.h needs it
#include <cstdlib>
#include <functional>
#include <vector>

#include <jpeglib.h>

namespace complexion {

/// The parameters of a JPEG file that a test writes with libjpeg itself.
struct JpegRecipe {
    PixelSize size;
    int components = 3;
    J_COLOR_SPACE samples = JCS_RGB; // of the input
    int quality = 100;
    Bytes exif = {}; // starting with its byte order mark
    Bytes icc = {};
    /// Further settings, applied before compression starts.
    std::function<void(jpeg_compress_struct&)> adjust = [](jpeg_compress_struct&) {};
};

/// Encodes packed samples with the library's defaults, but without chroma subsampling.
inline Bytes jpegFile(const JpegRecipe& recipe, const std::vector<std::uint8_t>& samples) {
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &bytes, &length);
    info.image_width = static_cast<JDIMENSION>(recipe.size.width);
    info.image_height = static_cast<JDIMENSION>(recipe.size.height);
    info.input_components = recipe.components;
    info.in_color_space = recipe.samples;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, recipe.quality, TRUE);
    for (int i = 0; i < info.num_components; ++i)
        info.comp_info[i].h_samp_factor = info.comp_info[i].v_samp_factor = 1;
    recipe.adjust(info);
    jpeg_start_compress(&info, TRUE);
    if (!recipe.exif.empty()) {
        Bytes segment = {'E', 'x', 'i', 'f', 0, 0};
        segment.insert(segment.end(), recipe.exif.begin(), recipe.exif.end());
        jpeg_write_marker(&info, JPEG_APP0 + 1, segment.data(), static_cast<unsigned>(segment.size()));
    }
    if (!recipe.icc.empty())
        jpeg_write_icc_profile(&info, recipe.icc.data(), static_cast<unsigned>(recipe.icc.size()));
    const std::size_t stride = static_cast<std::size_t>(recipe.size.width * recipe.components);
    while (info.next_scanline < info.image_height) {
        auto* row = const_cast<JSAMPROW>(samples.data() + info.next_scanline * stride);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const Bytes file(bytes, bytes + length);
    std::free(bytes);
    return file;
}

/// The samples that the library decodes, in the colour space `space`.
inline std::vector<std::uint8_t> jpegSamples(ByteView file, J_COLOR_SPACE space) {
    jpeg_decompress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    errors.emit_message = [](j_common_ptr, int) {};
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), file.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = space;
    jpeg_start_decompress(&info);
    const std::size_t stride = static_cast<std::size_t>(info.output_width) * info.output_components;
    std::vector<std::uint8_t> samples(stride * info.output_height);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = samples.data() + info.output_scanline * stride;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_destroy_decompress(&info);
    return samples;
}

} // namespace complexion
