// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_decoder.h"

#include "imaging/base/orientation.h"
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/device_colors.h"
#include "imaging/codecs/jump_guard.h"
#include "imaging/codecs/png_color.h"
#include "imaging/containers/exif_basics.h"
#include "imaging/containers/png_text.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include <png.h>

namespace complexion::png {

namespace {

constexpr png_alloc_size_t kMaxChunk = 64 << 20;
/// Largest expansion by deflate: 258 bytes from two bits (RFC 1951 section 3.2.5), 1032 bytes per byte.
constexpr std::int64_t kMaxExpansion = 1032;

/// Rows are decoded so many at a time, but at least one, and at most the rows of a tile.
constexpr std::size_t kUsualRowsBytes = std::size_t{4} << 20;

/// Chunks that the library skips: text is not needed here, and the profile is validated by the colour
/// library, which is less strict.
constexpr char kIgnoredChunks[] = "tEXt\0zTXt\0iTXt\0sPLT\0hIST\0tIME\0eXIf\0pCAL\0iCCP";
constexpr int kIgnoredChunkCount = sizeof kIgnoredChunks / 5; // four letters and a null byte each

/// libpng's decoder for one file. A failed step leaves its message in `error()`.
class Reader {
public:
    explicit Reader(ByteView file) : m_unread(file) {
        m_png = png_create_read_struct(
            PNG_LIBPNG_VER_STRING, this,
            [](png_structp png, png_const_charp message) {
                of(png_get_error_ptr(png)).m_guard.fail(message);
            },
            [](png_structp, png_const_charp) {});
        if (m_png != nullptr)
            m_info = png_create_info_struct(m_png);
    }
    ~Reader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Reads up to the image data.
    bool readHeader() {
        if (m_info == nullptr)
            return false;
        return m_guard.run([this] {
            png_set_read_fn(m_png, this, [](png_structp png, png_bytep out, std::size_t count) {
                Reader& self = of(png_get_io_ptr(png));
                if (self.m_unread.size() < count)
                    png_error(png, "the file ends early");
                std::memcpy(out, self.m_unread.data(), count);
                self.m_unread = self.m_unread.subspan(count);
            });
            png_set_user_limits(m_png, kMaxPictureSide, kMaxPictureSide);
            png_set_chunk_malloc_max(m_png, kMaxChunk);
            png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER,
                                        reinterpret_cast<png_const_bytep>(kIgnoredChunks),
                                        kIgnoredChunkCount);
            png_set_benign_errors(m_png, 1);
#ifdef PNG_IGNORE_ADLER32 // not every build of the library has the option
            // The checksum follows all the pixels; a wrong one must not discard them.
            png_set_option(m_png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
#endif
            png_read_info(m_png, m_info);
        });
    }

    PixelSize size() const {
        return {static_cast<int>(png_get_image_width(m_png, m_info)),
                static_cast<int>(png_get_image_height(m_png, m_info))};
    }
    std::int64_t bitsPerPixel() const {
        return std::int64_t{png_get_bit_depth(m_png, m_info)} * png_get_channels(m_png, m_info);
    }
    bool hasAlpha() const {
        return (png_get_color_type(m_png, m_info) & PNG_COLOR_MASK_ALPHA) != 0 ||
               png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0;
    }
    bool isGrey() const { return (png_get_color_type(m_png, m_info) & PNG_COLOR_MASK_COLOR) == 0; }

    /// The density in the pHYs chunk (PNG 1.2 section 4.2.4.2); 72 pixels per inch if there is none.
    Resolution resolution() const {
        png_uint_32 across = 0;
        png_uint_32 down = 0;
        int unit = PNG_RESOLUTION_UNKNOWN;
        if (png_get_pHYs(m_png, m_info, &across, &down, &unit) == 0 || unit != PNG_RESOLUTION_METER)
            return {};
        return wholeResolutionOfPixelsPerMetre(across, down);
    }

    /// The ICC profile described by the gAMA and cHRM chunks. Empty for sRGB.
    Bytes describedProfile() const {
        const bool srgb = png_get_valid(m_png, m_info, PNG_INFO_sRGB) != 0;
        return srgb ? Bytes() : profileFromGammaAndPrimaries(fileGamma(), primaries());
    }

    bool has16Bits() const { return png_get_bit_depth(m_png, m_info) == 16; }

    /// Starts the output of rows of RGBA32 or RGBA64 pixels, with straight alpha.
    template <class Pixel>
    bool start() {
        return m_guard.run([this] {
            png_set_expand(m_png);
            png_set_gray_to_rgb(m_png);
            if (std::is_same_v<Pixel, RGBA64>) {
                png_set_swap(m_png); // to little-endian
                if (!hasAlpha())
                    png_set_add_alpha(m_png, UINT16_MAX, PNG_FILLER_AFTER);
            } else {
                png_set_scale_16(m_png);
                png_set_bgr(m_png);
                if (hasAlpha())
                    png_set_swap_alpha(m_png);
                else
                    png_set_add_alpha(m_png, 255, PNG_FILLER_BEFORE);
            }
            m_passes = png_set_interlace_handling(m_png);
            png_read_update_info(m_png, m_info);
            if (png_get_rowbytes(m_png, m_info) != png_get_image_width(m_png, m_info) * sizeof(Pixel))
                m_guard.fail("unexpected row size");
        });
    }

    /// Number of passes over all rows: more than one for interlaced pictures.
    int passes() const { return m_passes; }

    /// Reads the next row. For an interlaced picture `row` must hold the result of the previous pass, which
    /// this one refines.
    bool readRow(void* row) {
        auto* bytes = static_cast<png_bytep>(row);
        return m_guard.run([&] {
            if (m_passes > 1)
                png_read_row(m_png, nullptr, bytes);
            else
                png_read_row(m_png, bytes, nullptr);
        });
    }

    Error error() const { return Error{"PNG: " + m_guard.message()}; }

private:
    static Reader& of(png_voidp self) { return *static_cast<Reader*>(self); }

    std::optional<double> fileGamma() const {
        double gamma = 0;
        return png_get_gAMA(m_png, m_info, &gamma) != 0 ? std::optional(gamma) : std::nullopt;
    }

    std::optional<Primaries> primaries() const {
        Primaries p;
        if (png_get_cHRM(m_png, m_info, &p.white.x, &p.white.y, &p.red.x, &p.red.y, &p.green.x, &p.green.y,
                         &p.blue.x, &p.blue.y) == 0)
            return std::nullopt;
        return p;
    }

    ByteView m_unread;
    JumpGuard m_guard;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    int m_passes = 1;
};

/// Reads the header and rejects implausible sizes.
Result<PixelSize> readCheckedHeader(Reader& reader, ByteView file) {
    if (!reader.readHeader())
        return reader.error();
    const PixelSize size = reader.size();
    if (!isPlausibleArea(size.width, size.height, file.size(), kMaxExpansion * 8 / reader.bitsPerPixel()))
        return Error{"PNG: the picture is too large, or the file too short for it"};
    return size;
}

/// A picture's colour profile and, for grey pictures with a profile of their own, the conversion to sRGB.
struct SourceColors {
    ColorProfile profile;
    std::optional<GreyTable> grey;
};

/// A cICP chunk takes precedence over all other colour chunks.
SourceColors sourceColors(const Reader& reader, ByteView file) {
    if (const std::optional<ByteView> codes = findChunk(file, "cICP"); codes && !reader.isGrey())
        if (const std::optional<Bytes> described = profileFromCodePoints(*codes))
            return {.profile = ColorProfile::fromIcc(*described), .grey = {}};
    const std::optional<ByteView> chunk = findChunk(file, "iCCP");
    const Bytes embedded = chunk ? inflatedProfile(*chunk) : Bytes();
    if (const std::optional<GreyTable> grey = reader.isGrey() ? greyTable(embedded) : std::nullopt)
        return {.profile = {}, .grey = grey};
    const ColorProfile profile = ColorProfile::fromIcc(embedded);
    return {.profile = profile.isSrgb() ? ColorProfile::fromIcc(reader.describedProfile()) : profile,
            .grey = {}};
}

/// Converts decoded rows to RGBA32 pixels, in place.
class PixelFinisher {
public:
    PixelFinisher(bool hasAlpha, std::optional<GreyTable> grey) : m_hasAlpha(hasAlpha), m_grey(grey) {}

    void finish(std::span<RGBA32> pixels) const {
        if (m_grey)
            for (RGBA32& pixel : pixels)
                pixel.color = ((*m_grey)[pixel.red()].color & ~kAlphaBits) | pixel.alpha();
        if (m_hasAlpha)
            for (RGBA32& pixel : pixels)
                pixel = premultipliedPixel(pixel);
    }

private:
    static constexpr std::uint32_t kAlphaBits = 255;

    static RGBA32 premultipliedPixel(RGBA32 pixel) {
        const std::uint8_t alpha = pixel.alpha();
        return alpha == 255 ? pixel
                            : RGBA32(premultiplied(pixel.red(), alpha), premultiplied(pixel.green(), alpha),
                                     premultiplied(pixel.blue(), alpha), alpha);
    }

    bool m_hasAlpha;
    std::optional<GreyTable> m_grey;
};

/// Builds an image from rows as the library decodes them.
class RowBuilder {
public:
    RowBuilder(PixelSize size, const PixelFinisher& finisher) : m_builder(size), m_finisher(finisher) {}

    void setRows(int firstRow, std::span<RGBA32> pixels, int count) {
        m_finisher.finish(pixels);
        m_builder.setRows(firstRow, count, pixels.data());
    }
    Image finish() { return m_builder.finish(); }

private:
    ImageBuilder m_builder;
    const PixelFinisher& m_finisher;
};

/// The same from rows of 16 bits a sample.
class DeepRowBuilder {
public:
    DeepRowBuilder(PixelSize size, const PixelFinisher& finisher)
        : m_builder(size, DeepAlpha::Straight), m_finisher(finisher) {}

    void setRows(int firstRow, std::span<const RGBA64> pixels, int count) {
        m_rounded.clear();
        for (const RGBA64 pixel : pixels)
            m_rounded.emplace_back(roundedTo8(pixel.red), roundedTo8(pixel.green), roundedTo8(pixel.blue),
                                   roundedTo8(pixel.alpha));
        m_finisher.finish(m_rounded);
        m_builder.setRows(firstRow, count, m_rounded.data(), pixels.data());
    }
    Image finish() { return m_builder.finish(); }

private:
    ImageBuilder m_builder;
    const PixelFinisher& m_finisher;
    std::vector<RGBA32> m_rounded;
};

template <class Pixel, class Builder>
Result<DecodedPicture> readProgressively(Reader& reader, PixelSize size, Builder builder) {
    const auto width = static_cast<std::size_t>(size.width);
    const int step = static_cast<int>(
        std::clamp<std::size_t>(kUsualRowsBytes / (width * sizeof(Pixel)), 1, Tile::kHeight));
    std::vector<Pixel> rows(width * static_cast<std::size_t>(std::min(step, size.height)));
    bool readable = true;
    for (int y = 0; y < size.height && readable; y += step) {
        const int wanted = std::min(step, size.height - y);
        int count = 0;
        while (readable && count < wanted) {
            readable = reader.readRow(rows.data() + std::ptrdiff_t{count} * size.width);
            count += readable ? 1 : 0;
        }
        if (y + count == 0)
            return reader.error();
        builder.setRows(y, std::span(rows).first(static_cast<std::size_t>(count) * width), count);
    }
    return DecodedPicture{builder.finish(), readable ? std::nullopt : std::optional(reader.error())};
}

template <class Pixel, class Builder>
Result<DecodedPicture> readInterlaced(Reader& reader, PixelSize size, Builder builder) {
    std::vector<Pixel> pixels(static_cast<std::size_t>(size.area()));
    const auto row = [&](int y) { return pixels.data() + std::ptrdiff_t{y} * size.width; };
    bool readable = true;
    for (int pass = 0; pass < reader.passes() && readable; ++pass)
        for (int y = 0; y < size.height && readable; ++y) {
            readable = reader.readRow(row(y));
            if (!readable && pass == 0 && y == 0)
                return reader.error();
        }
    builder.setRows(0, pixels, size.height);
    return DecodedPicture{builder.finish(), readable ? std::nullopt : std::optional(reader.error())};
}

template <class Pixel, class Builder>
Result<DecodedPicture> readRows(Reader& reader, PixelSize size, Builder builder) {
    if (!reader.start<Pixel>())
        return reader.error();
    return reader.passes() > 1 ? readInterlaced<Pixel>(reader, size, std::move(builder))
                               : readProgressively<Pixel>(reader, size, std::move(builder));
}

Orientation orientationOf(ByteView file) {
    return exif::readBasics(exif(split(file))).orientation;
}

} // namespace

Result<PixelSize> measure(ByteView file) {
    Reader reader(file);
    Result<PixelSize> size = readCheckedHeader(reader, file);
    if (!size)
        return size;
    return uprightSize(*size, orientationOf(file));
}

Result<DecodedPicture> decode(ByteView file) {
    Reader reader(file);
    COMPLEXION_TRY(const PixelSize size, readCheckedHeader(reader, file));
    const Resolution resolution = reader.resolution();
    const SourceColors colors = sourceColors(reader, file);
    const PixelFinisher finisher(reader.hasAlpha(), colors.grey); // before start(), which adds alpha
    // Greys of a space of their own are converted, in 8 bits.
    Result<DecodedPicture> stored = reader.has16Bits() && !colors.grey
                                        ? readRows<RGBA64>(reader, size, DeepRowBuilder(size, finisher))
                                        : readRows<RGBA32>(reader, size, RowBuilder(size, finisher));
    if (stored)
        stored->image = turnedUpright(
            stored->image.withProfile(colors.profile).withSize(sizeAtResolution(size, resolution)),
            orientationOf(file));
    return stored;
}

} // namespace complexion::png
