// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_pixels.h"

#include "imaging/codecs/device_colors.h"

#include <algorithm>

namespace complexion::tiff {

namespace {

constexpr std::size_t kGreys = GreyTable().size();
constexpr int kMaxPaletteBits = 16;

/// Signed integers are honoured only in single-channel samples of more than 8 bits, which are measurements.
/// Elsewhere the tag is usually a mistake, and other readers ignore it.
SampleKind sampleKind(const Page& page) {
    if (page.sampleFormat == SAMPLEFORMAT_IEEEFP)
        return SampleKind::Float;
    return page.sampleFormat == SAMPLEFORMAT_INT && page.bits > 8 && page.samples == 1 ? SampleKind::Signed
                                                                                       : SampleKind::Unsigned;
}

} // namespace

std::optional<PixelConverter> PixelConverter::create(const File& file, const Page& page) {
    if (page.sampleFormat > SAMPLEFORMAT_IEEEFP)
        return std::nullopt; // complex numbers
    const std::optional<SampleUnpacker> unpacker = SampleUnpacker::create(page.bits, sampleKind(page));
    if (!unpacker)
        return std::nullopt;
    PixelConverter converter(page, *unpacker);
    for (int sample = 0; sample < page.colorSamples; ++sample)
        converter.m_used.push_back(sample);
    if (page.alpha != Alpha::None)
        converter.m_used.push_back(page.alphaSample);
    return converter.chooseColors(file) ? std::optional(std::move(converter)) : std::nullopt;
}

bool PixelConverter::chooseColors(const File& file) {
    switch (m_page.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MASK:
        m_colors = Colors::Grey;
        makeGreys();
        return true;
    case PHOTOMETRIC_RGB:
        m_colors = Colors::Rgb;
        return true;
    case PHOTOMETRIC_PALETTE:
        m_colors = Colors::Palette;
        return readPalette(file);
    case PHOTOMETRIC_SEPARATED:
        m_colors = Colors::Cmyk;
        if (!m_page.icc.empty())
            m_toSrgb = SrgbConversion::fromCmyk(m_page.icc);
        return true;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
        m_colors = Colors::Lab;
        m_toSrgb = SrgbConversion::fromLab();
        return m_toSrgb.has_value() && m_page.bits == 8;
    default:
        return false;
    }
}

bool PixelConverter::readPalette(const File& file) {
    std::array<const std::uint16_t*, 3> map = {};
    if (m_page.bits > kMaxPaletteBits ||
        TIFFGetField(file.handle(), TIFFTAG_COLORMAP, map.data(), &map[1], &map[2]) != 1)
        return false;
    const std::size_t count = std::size_t{1} << m_page.bits;
    // ColorMap entries have 16 bits (TIFF 6.0 section 5), but some writers store 8-bit values.
    const bool has8BitEntries = std::ranges::all_of(map, [&](const std::uint16_t* entries) {
        return std::all_of(entries, entries + count, [](std::uint16_t entry) { return entry < 256; });
    });
    const int shift = has8BitEntries ? 0 : 8;
    for (std::size_t i = 0; i < count; ++i)
        m_palette.emplace_back(static_cast<std::uint8_t>(map[0][i] >> shift),
                               static_cast<std::uint8_t>(map[1][i] >> shift),
                               static_cast<std::uint8_t>(map[2][i] >> shift), std::uint8_t{255});
    return true;
}

void PixelConverter::makeGreys() {
    const std::optional<GreyTable> profileGreys = m_page.icc.empty() ? std::nullopt : greyTable(m_page.icc);
    m_hasGreyProfile = profileGreys.has_value();
    for (std::size_t i = 0; i < kGreys; ++i) {
        const std::size_t level = m_page.photometric == PHOTOMETRIC_MINISWHITE ? kGreys - 1 - i : i;
        const auto grey = static_cast<std::uint8_t>(level);
        m_palette.push_back(profileGreys ? (*profileGreys)[level] : RGBA32(grey, grey, grey, 255));
    }
}

SampleUnpacker::Stride PixelConverter::stride(std::size_t used, std::size_t count,
                                              std::size_t outStep) const {
    if (m_page.planar)
        return {0, 1, count, outStep};
    return {static_cast<std::size_t>(m_used[used]), static_cast<std::size_t>(m_page.samples), count, outStep};
}

PixelConverter::Samples PixelConverter::samplesOf(std::span<const std::uint8_t* const> rows,
                                                  std::size_t count) {
    if (m_unpacker.isCopy() && !m_page.planar)
        return {rows[0], static_cast<std::size_t>(m_page.samples),
                static_cast<std::size_t>(m_page.alphaSample)};
    const std::size_t step = m_used.size();
    m_unpacked.resize(step * count);
    for (std::size_t i = 0; i < step; ++i)
        m_unpacker.unpack(rows[m_page.planar ? i : 0], stride(i, count, step), m_unpacked.data() + i);
    return {m_unpacked.data(), step, step - 1};
}

/// Applies the page's kind of alpha to a colour.
RGBA32 PixelConverter::pixel(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                             const std::uint8_t* alpha) const {
    switch (m_page.alpha) {
    case Alpha::None:
        return {red, green, blue, 255};
    case Alpha::Associated:
        // A premultiplied component must not exceed alpha.
        return {std::min(red, *alpha), std::min(green, *alpha), std::min(blue, *alpha), *alpha};
    case Alpha::Straight:
        return {premultiplied(red, *alpha), premultiplied(green, *alpha), premultiplied(blue, *alpha),
                *alpha};
    }
    return {};
}

void PixelConverter::convert(std::span<const std::uint8_t* const> rows, std::span<RGBA32> out) {
    if (m_colors == Colors::Palette) {
        convertPalette(rows, out);
        return;
    }
    const Samples samples = samplesOf(rows, out.size());
    switch (m_colors) {
    case Colors::Grey:
        convertGrey(samples, out);
        break;
    case Colors::Rgb:
        convertRgb(samples, out);
        break;
    default:
        m_toSrgb ? convertByProfile(samples, out) : convertInks(samples, out);
        break;
    }
}

void PixelConverter::convertGrey(Samples samples, std::span<RGBA32> out) const {
    const std::uint8_t* in = samples.data;
    for (RGBA32& to : out) {
        const RGBA32 grey = m_palette[*in];
        to = m_page.alpha == Alpha::None ? grey
                                         : pixel(grey.red(), grey.green(), grey.blue(), in + samples.alpha);
        in += samples.step;
    }
}

void PixelConverter::convertRgb(Samples samples, std::span<RGBA32> out) const {
    const std::uint8_t* in = samples.data;
    for (RGBA32& to : out) {
        to = pixel(in[0], in[1], in[2], in + samples.alpha);
        in += samples.step;
    }
}

void PixelConverter::convertPalette(std::span<const std::uint8_t* const> rows, std::span<RGBA32> out) {
    m_numbers.resize(out.size());
    m_unpacker.unpackIndices(rows[0], stride(0, out.size(), 1), m_numbers.data());
    const bool alpha = m_page.alpha != Alpha::None;
    if (alpha) {
        m_unpacked.resize(out.size());
        m_unpacker.unpack(rows[m_page.planar ? 1 : 0], stride(1, out.size(), 1), m_unpacked.data());
    }
    for (std::size_t i = 0; i < out.size(); ++i) {
        const RGBA32 color = m_palette[m_numbers[i]];
        out[i] = alpha ? pixel(color.red(), color.green(), color.blue(), &m_unpacked[i]) : color;
    }
}

std::optional<DeepAlpha> PixelConverter::deepAlpha() const {
    const bool isKept = (m_colors == Colors::Grey && !m_hasGreyProfile) || m_colors == Colors::Rgb;
    if (!isKept || m_page.bits != 16 || sampleKind(m_page) != SampleKind::Unsigned)
        return std::nullopt;
    return m_page.alpha == Alpha::Associated ? DeepAlpha::Premultiplied : DeepAlpha::Straight;
}

void PixelConverter::convertDeep(std::span<const std::uint8_t* const> rows, std::span<RGBA64> out) {
    const std::size_t step = m_used.size();
    m_numbers.resize(step * out.size());
    for (std::size_t i = 0; i < step; ++i)
        m_unpacker.unpackIndices(rows[m_page.planar ? i : 0], stride(i, out.size(), step),
                                 m_numbers.data() + i);
    const std::uint16_t flip = m_page.photometric == PHOTOMETRIC_MINISWHITE ? UINT16_MAX : 0;
    const std::uint16_t* in = m_numbers.data();
    for (RGBA64& to : out) {
        const std::uint16_t alpha = m_page.alpha == Alpha::None ? UINT16_MAX : in[step - 1];
        if (m_colors == Colors::Rgb) {
            to = {in[0], in[1], in[2], alpha};
        } else {
            const auto grey = static_cast<std::uint16_t>(in[0] ^ flip);
            to = {grey, grey, grey, alpha};
        }
        in += step;
    }
}

void PixelConverter::convertByProfile(Samples samples, std::span<RGBA32> out) {
    const auto colors = static_cast<std::size_t>(m_page.colorSamples);
    // CIE L*a*b* has signed a* and b* (TIFF 6.0 section 23); the conversion expects an offset of 128.
    const std::uint8_t flip = m_page.photometric == PHOTOMETRIC_CIELAB ? 0x80 : 0;
    m_packedColors.resize(colors * out.size());
    m_rgb.resize(3 * out.size());
    for (std::size_t i = 0; i < out.size(); ++i)
        for (std::size_t c = 0; c < colors; ++c)
            m_packedColors[i * colors + c] = samples.data[i * samples.step + c] ^ (c == 0 ? 0 : flip);
    m_toSrgb->convert(m_packedColors.data(), m_rgb.data(), out.size());
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = pixel(m_rgb[3 * i], m_rgb[3 * i + 1], m_rgb[3 * i + 2],
                       samples.data + i * samples.step + samples.alpha);
}

/// CMYK without a profile: ideal inks. Each channel is attenuated by its ink and by black.
void PixelConverter::convertInks(Samples samples, std::span<RGBA32> out) const {
    const std::uint8_t* in = samples.data;
    for (RGBA32& to : out) {
        const std::uint32_t light = 255U - in[3];
        to = pixel(premultiplied(255U - in[0], light), premultiplied(255U - in[1], light),
                   premultiplied(255U - in[2], light), in + samples.alpha);
        in += samples.step;
    }
}

void PixelRows::reset(int rows) {
    m_pixels.assign(m_width * static_cast<std::size_t>(rows), RGBA32());
    if (m_isDeep)
        m_deepPixels.assign(m_pixels.size(), RGBA64());
}

void PixelRows::convert(std::span<const std::uint8_t* const> samples, int row, std::size_t column,
                        std::size_t count) {
    const std::size_t first = static_cast<std::size_t>(row) * m_width + column;
    m_converter.convert(samples, std::span(m_pixels).subspan(first, count));
    if (m_isDeep)
        m_converter.convertDeep(samples, std::span(m_deepPixels).subspan(first, count));
}

} // namespace complexion::tiff
