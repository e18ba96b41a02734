// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/indexed_image.h"

#include <libimagequant.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

namespace complexion {

namespace {

constexpr std::size_t kMaxColors = 256;
constexpr std::uint8_t kMinOpaqueAlpha = 128;
// libimagequant's speeds run from 1 (slowest) to 10. 3 looks as good as 1 and takes a fraction of its time.
constexpr int kQuantizerSpeed = 3;
constexpr int kBestQuality = 100;

std::vector<RGBA32> readRow(const Image& image, int y) {
    std::vector<RGBA32> row(static_cast<std::size_t>(image.pixelSize().width));
    image.read({0, y, image.pixelSize().width, 1}, row.data(), image.pixelSize().width);
    for (RGBA32& pixel : row)
        pixel = withoutHalfTransparency(pixel);
    return row;
}

/// A hash table of up to 256 colours, with open addressing.
class ColorTable {
public:
    /// Returns the colour's index, adding it if it is new. Nothing if the table is full.
    std::optional<std::uint8_t> index(RGBA32 color) {
        std::size_t slot = (color.color * 2654435761U) >> (32 - kSlotBits); // Knuth's multiplicative hash
        while (m_slots[slot] != kFree) {
            if (m_colors[m_slots[slot]] == color)
                return static_cast<std::uint8_t>(m_slots[slot]);
            slot = (slot + 1) % m_slots.size();
        }
        if (m_colors.size() == kMaxColors)
            return std::nullopt;
        m_slots[slot] = static_cast<std::uint16_t>(m_colors.size());
        m_colors.push_back(color);
        return static_cast<std::uint8_t>(m_slots[slot]);
    }

    const std::vector<RGBA32>& colors() const { return m_colors; }

private:
    static constexpr int kSlotBits = 10;
    static constexpr std::uint16_t kFree = 0xFFFF;

    static std::array<std::uint16_t, 1 << kSlotBits> allFree() {
        std::array<std::uint16_t, 1 << kSlotBits> slots;
        slots.fill(kFree);
        return slots;
    }

    std::array<std::uint16_t, 1 << kSlotBits> m_slots = allFree();
    std::vector<RGBA32> m_colors;
};

/// Moves the transparent colour to palette index 0.
void moveTransparencyToFront(IndexedImage& image) {
    const auto clear = std::ranges::find(image.palette, RGBA32());
    if (clear == image.palette.end() || clear == image.palette.begin())
        return;
    const auto at = static_cast<std::uint8_t>(clear - image.palette.begin());
    std::swap(image.palette.front(), *clear);
    for (std::uint8_t& index : image.indices)
        if (index == 0)
            index = at;
        else if (index == at)
            index = 0;
}

struct QuantizerDeleter {
    void operator()(liq_attr* attributes) const { liq_attr_destroy(attributes); }
    void operator()(liq_image* image) const { liq_image_destroy(image); }
    void operator()(liq_result* result) const { liq_result_destroy(result); }
};
template <class T>
using Quantizer = std::unique_ptr<T, QuantizerDeleter>;

/// Row source for libimagequant, which reads from several threads.
struct RowSource {
    const Image& image;
    std::atomic<bool> failed = false;
};

/// Row callback for libimagequant. Transparent pixels take the colour of their left neighbour, so that they
/// claim no palette entry and diffuse no dithering error.
void fillRow(liq_color out[], int y, int width, void* rowSource) {
    auto& source = *static_cast<RowSource*>(rowSource);
    // Exceptions must not propagate through the C library.
    try {
        RGBA32 last(0, 0, 0, 255);
        for (const RGBA32 pixel : readRow(source.image, y)) {
            if (pixel.alpha() != 0)
                last = pixel;
            *out++ = {last.red(), last.green(), last.blue(), 255};
        }
    } catch (const std::bad_alloc&) {
        source.failed = true;
        std::fill_n(out, width, liq_color{0, 0, 0, 255});
    }
}

/// Assigns unused palette entries to the most frequent colours that are only approximated. The library stops
/// before the palette is full when the remaining error is small; newer versions stop earlier.
void useWholePalette(const Image& image, IndexedImage& indexed) {
    if (indexed.palette.size() >= kMaxColors)
        return;
    const auto forEachInexact = [&](auto&& visit) {
        auto index = indexed.indices.begin();
        for (int y = 0; y < indexed.size.height; ++y)
            for (const RGBA32 pixel : readRow(image, y)) {
                if (!(pixel == indexed.palette[*index]))
                    visit(pixel, *index);
                ++index;
            }
    };
    std::unordered_map<std::uint32_t, std::size_t> counts;
    forEachInexact([&](RGBA32 pixel, std::uint8_t) { ++counts[pixel.color]; });
    std::vector<std::pair<std::uint32_t, std::size_t>> colors(counts.begin(), counts.end());
    const std::size_t added = std::min(colors.size(), kMaxColors - indexed.palette.size());
    std::ranges::partial_sort(
        colors, colors.begin() + static_cast<std::ptrdiff_t>(added),
        [](auto a, auto b) { return a.second != b.second ? a.second > b.second : a.first < b.first; });
    std::unordered_map<std::uint32_t, std::uint8_t> indices;
    std::vector<RGBA32> palette = indexed.palette;
    for (std::size_t i = 0; i < added; ++i) {
        indices[colors[i].first] = static_cast<std::uint8_t>(palette.size());
        palette.push_back(RGBA32(colors[i].first));
    }
    forEachInexact([&](RGBA32 pixel, std::uint8_t& index) {
        if (const auto exact = indices.find(pixel.color); exact != indices.end())
            index = exact->second;
    });
    indexed.palette = std::move(palette);
}

} // namespace

RGBA32 withoutHalfTransparency(RGBA32 pixel) {
    const std::uint8_t alpha = pixel.alpha();
    if (alpha == 255)
        return pixel;
    if (alpha < kMinOpaqueAlpha)
        return {};
    return {unpremultiplied(pixel.red(), alpha), unpremultiplied(pixel.green(), alpha),
            unpremultiplied(pixel.blue(), alpha), 255};
}

ColorSurvey surveyedColors(const Image& image) {
    ColorSurvey found;
    ColorTable table;
    IndexedImage exact;
    exact.size = image.pixelSize();
    exact.indices.reserve(static_cast<std::size_t>(exact.size.area()));
    bool few = true;
    for (int y = 0; y < exact.size.height && (few || !found.hasTransparency); ++y)
        for (const RGBA32 pixel : readRow(image, y)) {
            found.hasTransparency = found.hasTransparency || pixel.alpha() == 0;
            if (!few)
                continue;
            const std::optional<std::uint8_t> index = table.index(pixel);
            few = index.has_value();
            if (few)
                exact.indices.push_back(*index);
        }
    if (few) {
        exact.palette = table.colors();
        exact.hasTransparency = found.hasTransparency;
        moveTransparencyToFront(exact);
        found.exact = std::move(exact);
    }
    return found;
}

Result<IndexedImage> quantized(const Image& image, bool hasTransparency) {
    const PixelSize size = image.pixelSize();
    const Error failed{"the picture's colours cannot be reduced"};
    const Quantizer<liq_attr> attributes(liq_attr_create());
    if (!attributes)
        return failed;
    liq_set_max_colors(attributes.get(), static_cast<int>(kMaxColors) - (hasTransparency ? 1 : 0));
    liq_set_speed(attributes.get(), kQuantizerSpeed);
    liq_set_quality(attributes.get(), 0, kBestQuality);
    RowSource rows{image};
    const Quantizer<liq_image> source(
        liq_image_create_custom(attributes.get(), fillRow, &rows, size.width, size.height, 0));
    liq_result* made = nullptr;
    if (!source || liq_image_quantize(source.get(), attributes.get(), &made) != LIQ_OK)
        return failed;
    const Quantizer<liq_result> result(made);
    IndexedImage indexed{size, {}, hasTransparency, {}};
    indexed.indices.resize(static_cast<std::size_t>(size.area()));
    liq_set_dithering_level(result.get(), 1);
    if (liq_write_remapped_image(result.get(), source.get(), indexed.indices.data(),
                                 indexed.indices.size()) != LIQ_OK ||
        rows.failed)
        return failed;

    const liq_palette* palette = liq_get_palette(result.get());
    if (hasTransparency)
        indexed.palette.emplace_back();
    for (unsigned i = 0; i < palette->count; ++i)
        indexed.palette.emplace_back(palette->entries[i].r, palette->entries[i].g, palette->entries[i].b,
                                     std::uint8_t{255});
    if (hasTransparency) {
        auto index = indexed.indices.begin();
        for (int y = 0; y < size.height; ++y)
            for (const RGBA32 pixel : readRow(image, y)) {
                *index = pixel.alpha() == 0 ? std::uint8_t{0} : static_cast<std::uint8_t>(*index + 1);
                ++index;
            }
    }
    useWholePalette(image, indexed);
    return indexed;
}

Result<IndexedImage> indexedImage(const Image& image) {
    ColorSurvey found = surveyedColors(image);
    if (!found.exact)
        return quantized(image, found.hasTransparency);
    return std::move(*found.exact);
}

} // namespace complexion
