// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/rgba64.h"
#include "imaging/codecs/sample_unpacking.h"
#include "imaging/codecs/srgb_conversion.h"
#include "imaging/codecs/tiff_file.h"

#include <array>
#include <span>
#include <vector>

namespace complexion::tiff {

/// Converts rows of a page's samples to pixels.
class PixelConverter {
public:
    /// Nothing for pixel formats that are not supported (see `readByLibrary`).
    static std::optional<PixelConverter> create(const File& file, const Page& page);

    /// The samples that are used. In a planar page only their blocks have to be read.
    const std::vector<int>& samplesUsed() const { return m_used; }

    /// Converts `out.size()` pixels of one row. `rows` are the row's interleaved samples or, in a planar
    /// page, one row per sample in the order of `samplesUsed`.
    void convert(std::span<const std::uint8_t* const> rows, std::span<RGBA32> out);

    /// How the page's pixels have their alpha, where they are kept in all their 16 bits; nothing where they
    /// are not: they have fewer, or more, or their colours are converted.
    std::optional<DeepAlpha> deepAlpha() const;

    /// As `convert`, without rounding, of pixels that have `deepAlpha`.
    void convertDeep(std::span<const std::uint8_t* const> rows, std::span<RGBA64> out);

private:
    enum class Colors { Grey, Palette, Rgb, Cmyk, Lab };

    /// 8-bit samples of a row: pixels are `step` bytes apart, alpha is `alpha` bytes after the first colour.
    struct Samples {
        const std::uint8_t* data = nullptr;
        std::size_t step = 0;
        std::size_t alpha = 0;
    };

    PixelConverter(const Page& page, SampleUnpacker unpacker) : m_page(page), m_unpacker(unpacker) {}
    bool chooseColors(const File& file);
    bool readPalette(const File& file);
    void makeGreys();

    SampleUnpacker::Stride stride(std::size_t used, std::size_t count, std::size_t outStep) const;
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
    std::vector<RGBA32> m_palette; // opaque; the grey levels too
    bool m_hasGreyProfile = false;
    std::optional<SrgbConversion> m_toSrgb; // from CMYK or L*a*b*
    std::vector<std::uint8_t> m_unpacked, m_packedColors, m_rgb;
    std::vector<std::uint16_t> m_numbers;
};

/// Packed pixels as an ImageBuilder takes them, converted part by part.
class PixelRows {
public:
    PixelRows(int width, PixelConverter& converter)
        : m_width(static_cast<std::size_t>(width)),
          m_converter(converter),
          m_isDeep(converter.deepAlpha().has_value()) {}

    /// As many transparent rows.
    void reset(int rows);
    /// Converts `count` pixels of a row from `column` on; `samples` as PixelConverter::convert takes them.
    void convert(std::span<const std::uint8_t* const> samples, int row, std::size_t column,
                 std::size_t count);

    const RGBA32* pixels() const { return m_pixels.data(); }
    /// Null unless the converter has deep pixels.
    const RGBA64* deepPixels() const { return m_isDeep ? m_deepPixels.data() : nullptr; }

private:
    std::size_t m_width;
    PixelConverter& m_converter;
    bool m_isDeep;
    std::vector<RGBA32> m_pixels;
    std::vector<RGBA64> m_deepPixels;
};

} // namespace complexion::tiff
