// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/fakes/jpeg_files.h"
#include "tests/imaging/codec_pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

namespace complexion::test {

/// Shading, noise and colours that change within a few pixels, like skin, hair and cloth.
inline std::vector<std::uint8_t> photoSamples(PixelSize size, int components) {
    std::mt19937 engine(7);
    std::normal_distribution<double> noise(0, 6);
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            for (int c = 0; c < components; ++c)
                samples.push_back(static_cast<std::uint8_t>(std::clamp(
                    170 - 30 * c + 40 * std::sin(x / (9.0 + c)) * std::cos(y / 7.0) + noise(engine), 0.0,
                    255.0)));
    return samples;
}

/// A kind of file that can be saved exactly.
struct JpegKind {
    const char* name;
    int components = 3;
    std::array<int, 6> sampling = {1, 1, 1, 1, 1, 1}; // horizontal and vertical factor of each component
    void (*adjust)(jpeg_compress_struct&) = [](jpeg_compress_struct&) {};
    int orientation = 1;
    PixelSize size = {205, 147};
};

inline Bytes fileOf(const JpegKind& kind, int quality = 85) {
    return jpegFile({.size = kind.size,
                     .components = kind.components,
                     .samples = kind.components == 1 ? JCS_GRAYSCALE : JCS_RGB,
                     .quality = quality,
                     .exif = {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1,
                              1,   18,  0, 3,  0, 0, 0, 1, 0, static_cast<std::uint8_t>(kind.orientation),
                              0,   0,   0, 0,  0, 0},
                     .icc = {},
                     .adjust =
                         [&](jpeg_compress_struct& info) {
                             for (int i = 0; i < kind.components; ++i) {
                                 info.comp_info[i].h_samp_factor =
                                     kind.sampling[static_cast<std::size_t>(2 * i)];
                                 info.comp_info[i].v_samp_factor =
                                     kind.sampling[static_cast<std::size_t>(2 * i + 1)];
                             }
                             kind.adjust(info);
                         }},
                    photoSamples(kind.size, kind.components));
}

/// How the saved samples differ from the painted ones.
struct Outcome {
    std::int64_t differentOutside = 0; // samples outside the touched MCUs
    int maxUnpainted = 0;              // difference of unpainted pixels in touched MCUs
    double meanInside = 0;             // difference in touched MCUs
};

inline Outcome outcomeOf(const std::vector<std::uint8_t>& source, const std::vector<std::uint8_t>& painted,
                         const std::vector<std::uint8_t>& file, PixelSize size, PixelSize mcu) {
    const int across = (size.width + mcu.width - 1) / mcu.width;
    const int down = (size.height + mcu.height - 1) / mcu.height;
    std::vector<bool> touched(static_cast<std::size_t>(across) * static_cast<std::size_t>(down));
    const auto mcuOf = [&](std::size_t i) {
        const int pixel = static_cast<int>(i / 3);
        return static_cast<std::size_t>(pixel / size.width / mcu.height * across +
                                        pixel % size.width / mcu.width);
    };
    for (std::size_t i = 0; i < source.size(); ++i)
        if (source[i] != painted[i])
            touched[mcuOf(i)] = true;
    Outcome outcome;
    std::int64_t sum = 0;
    std::int64_t count = 0;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const int difference = std::abs(painted[i] - file[i]);
        if (!touched[mcuOf(i)]) {
            outcome.differentOutside += difference != 0 ? 1 : 0;
            continue;
        }
        sum += difference;
        ++count;
        const std::size_t pixel = i - i % 3;
        if (std::equal(source.begin() + static_cast<std::ptrdiff_t>(pixel),
                       source.begin() + static_cast<std::ptrdiff_t>(pixel + 3),
                       painted.begin() + static_cast<std::ptrdiff_t>(pixel)))
            outcome.maxUnpainted = std::max(outcome.maxUnpainted, difference);
    }
    outcome.meanInside = count > 0 ? static_cast<double>(sum) / static_cast<double>(count) : 0;
    return outcome;
}

} // namespace complexion::test
