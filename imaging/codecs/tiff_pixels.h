// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/sample_unpacking.h"
#include "imaging/codecs/srgb_conversion.h"
#include "imaging/codecs/tiff_file.h"

#include <array>
#include <span>
#include <vector>

namespace complexion::tiff {

/// Turns rows of a page's samples into pixels.
class PixelConverter {
public:
    /// Nothing for a kind of pixels that it does not know (see `readByLibrary`).
    static std::optional<PixelConverter> create(const File& file, const Page& page);

    /// The samples that are looked at: in a planar page, the only ones whose blocks have to be read.
    const std::vector<int>& samplesUsed() const { return m_used; }

    /// Converts `out.size()` pixels. `rows` are the samples of one row: of all samples in turn, or in a
    /// planar page of one sample each, in the order of `samplesUsed`.
    void convert(std::span<const std::uint8_t* const> rows, std::span<RGBA32> out);

private:
    enum class Colors { Grey, Palette, Rgb, Cmyk, Lab };

    /// 8-bit samples of a row: `step` bytes from pixel to pixel, alpha `alpha` bytes behind the first colour.
    struct Samples {
        const std::uint8_t* data = nullptr;
        std::size_t step = 0;
        std::size_t alpha = 0;
    };

    PixelConverter(const Page& page, SampleUnpacker unpacker) : m_page(page), m_unpacker(unpacker) {}
    bool chooseColors(const File& file);
    bool readPalette(const File& file);
    void makeGreys();

    SampleUnpacker::Walk walk(std::size_t used, std::size_t count, std::size_t outStep) const;
    Samples samplesOf(std::span<const std::uint8_t* const> rows, std::size_t count);
    RGBA32 pixel(std::uint8_t red, std::uint8_t green, std::uint8_t blue, const std::uint8_t* alpha) const;
    void convertGrey(Samples samples, std::span<RGBA32> out) const;
    void convertRgb(Samples samples, std::span<RGBA32> out) const;
    void convertPalette(std::span<const std::uint8_t* const> rows, std::span<RGBA32> out);
    void convertByProfile(Samples samples, std::span<RGBA32> out);
    void convertInks(Samples samples, std::span<RGBA32> out) const;

    Page m_page;
    SampleUnpacker m_unpacker;
    Colors m_colors = Colors::Grey;
    std::vector<int> m_used;
    std::vector<RGBA32> m_palette;          // opaque; of greys too
    std::optional<SrgbConversion> m_toSrgb; // of CMYK and Lab
    std::vector<std::uint8_t> m_unpacked, m_packedColors, m_rgb;
    std::vector<std::uint16_t> m_indices;
};

} // namespace complexion::tiff
