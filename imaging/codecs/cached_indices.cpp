// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/cached_indices.h"

#include <algorithm>
#include <array>
#include <limits>

namespace complexion {

namespace {

constexpr std::size_t kComponents = 3;
using Color = std::array<float, kComponents>;

/// At most one pixel in this many may have changed. Beyond that, choosing a new palette is faster.
constexpr std::int64_t kMinPixelsPerChange = 16;
/// Number of pixels sampled to measure how well a palette fits.
constexpr std::int64_t kSampledPixels = 50'000;
/// A palette fits the changed pixels if their mean squared error is at most `kMaxErrorRatio` times the
/// picture's, or at most `kInvisibleError`: two levels in each component.
constexpr double kMaxErrorRatio = 2;
constexpr double kInvisibleError = 3 * 2 * 2;

/// A palette chosen for a picture, the bands it was applied to, and the mean squared error of the picture's
/// pixels, in levels.
struct CachedPalette : Memo::Value {
    BandList bands;
    std::shared_ptr<const IndexedImage> indexed;
    double error = 0;
};

struct ChangedPixel {
    PixelPosition position;
    RGBA32 color;
};

Color asColor(RGBA32 pixel) {
    return {static_cast<float>(pixel.red()), static_cast<float>(pixel.green()),
            static_cast<float>(pixel.blue())};
}

/// Nearest-colour search in a palette.
class PaletteSearch {
public:
    explicit PaletteSearch(const IndexedImage& image) : m_first(image.hasTransparency ? 1 : 0) {
        for (std::size_t i = m_first; i < image.palette.size(); ++i)
            m_colors.push_back(asColor(image.palette[i]));
    }

    struct Found {
        std::uint8_t index = 0;
        Color color = {};
        float distance = std::numeric_limits<float>::max(); // squared
    };

    Found nearest(const Color& wanted) const {
        Found found;
        for (std::size_t i = 0; i < m_colors.size(); ++i) {
            float distance = 0;
            for (std::size_t c = 0; c < kComponents; ++c)
                distance += (m_colors[i][c] - wanted[c]) * (m_colors[i][c] - wanted[c]);
            if (distance < found.distance)
                found = {static_cast<std::uint8_t>(m_first + i), m_colors[i], distance};
        }
        return found;
    }

private:
    std::size_t m_first;
    std::vector<Color> m_colors;
};

double meanSquaredError(const PaletteSearch& colors, const std::vector<RGBA32>& pixels) {
    double sum = 0;
    std::int64_t opaque = 0;
    for (const RGBA32 pixel : pixels)
        if (pixel.alpha() != 0) {
            sum += colors.nearest(asColor(pixel)).distance;
            ++opaque;
        }
    return opaque == 0 ? 0 : sum / static_cast<double>(opaque);
}

/// Pixels sampled evenly over the picture.
std::vector<RGBA32> sampledPixels(const Image& image) {
    const PixelSize size = image.pixelSize();
    const std::int64_t step = std::max<std::int64_t>(1, size.area() / kSampledPixels);
    std::vector<RGBA32> pixels;
    for (std::int64_t position = 0; position < size.area(); position += step)
        pixels.push_back(withoutHalfTransparency(
            image.pixel(static_cast<int>(position / size.width), static_cast<int>(position % size.width))));
    return pixels;
}

/// The pixels that differ from those of the bands `before`, in raster order.
std::vector<ChangedPixel> pixelsChangedSince(const Image& image, const BandList& before) {
    std::vector<ChangedPixel> changed;
    const BandList& bands = image.bands();
    for (std::size_t band = 0; band < bands.size(); ++band) {
        const TileList& tiles = bands[band]->tiles();
        for (std::size_t column = 0; bands[band] != before[band] && column < tiles.size(); ++column) {
            if (tiles[column] == before[band]->tiles()[column])
                continue;
            const PixelBlock& now = tiles[column]->block();
            const PixelBlock& then = before[band]->tiles()[column]->block();
            for (int y = 0; y < now.size.height; ++y)
                for (int x = 0; x < now.size.width; ++x)
                    if (now.row(y)[x] != then.row(y)[x])
                        changed.push_back({{static_cast<std::int64_t>(band) * Tile::kHeight + y,
                                            static_cast<std::int64_t>(column) * Tile::kWidth + x},
                                           withoutHalfTransparency(now.row(y)[x])});
        }
    }
    std::ranges::sort(changed, {}, [](const ChangedPixel& pixel) {
        return std::pair(pixel.position.row, pixel.position.column);
    });
    return changed;
}

/// Dithers the changed pixels by error diffusion among them (Floyd and Steinberg, An Adaptive Algorithm for
/// Spatial Greyscale, 1976).
void dither(const std::vector<ChangedPixel>& changed, const PaletteSearch& colors, IndexedImage& indexed) {
    const auto width = static_cast<std::size_t>(indexed.size.width);
    // The errors diffused to this row and the next, with a margin on both sides.
    std::vector<Color> errors(width + 2);
    std::vector<Color> errorsBelow(width + 2);
    std::int64_t row = -1;
    for (const ChangedPixel& pixel : changed) {
        if (pixel.position.row != row) {
            std::swap(errors, errorsBelow);
            if (pixel.position.row != row + 1)
                std::ranges::fill(errors, Color{});
            std::ranges::fill(errorsBelow, Color{});
            row = pixel.position.row;
        }
        const auto x = static_cast<std::size_t>(pixel.position.column);
        std::uint8_t& index = indexed.indices[static_cast<std::size_t>(row) * width + x];
        if (pixel.color.alpha() == 0) {
            index = 0;
            continue;
        }
        Color wanted = asColor(pixel.color);
        for (std::size_t c = 0; c < kComponents; ++c)
            wanted[c] = std::clamp(wanted[c] + errors[x + 1][c], 0.0F, 255.0F);
        const PaletteSearch::Found found = colors.nearest(wanted);
        index = found.index;
        for (std::size_t c = 0; c < kComponents; ++c) {
            const float sixteenth = (wanted[c] - found.color[c]) / 16;
            errors[x + 2][c] += 7 * sixteenth;
            errorsBelow[x][c] += 3 * sixteenth;
            errorsBelow[x + 1][c] += 5 * sixteenth;
            errorsBelow[x + 2][c] += sixteenth;
        }
    }
}

/// `before` updated with the pixels changed since then; null if a new palette is needed.
std::shared_ptr<const CachedPalette> afterEdits(const CachedPalette& before, const Image& image) {
    const std::vector<ChangedPixel> changed = pixelsChangedSince(image, before.bands);
    if (std::ssize(changed) > image.pixelSize().area() / kMinPixelsPerChange)
        return nullptr;
    const PaletteSearch colors(*before.indexed);
    std::vector<RGBA32> changedColors;
    std::ranges::transform(changed, std::back_inserter(changedColors), &ChangedPixel::color);
    if (meanSquaredError(colors, changedColors) > std::max(kInvisibleError, kMaxErrorRatio * before.error))
        return nullptr;
    auto after = std::make_shared<CachedPalette>();
    after->bands = image.bands();
    after->error = before.error;
    auto indexed = std::make_shared<IndexedImage>(*before.indexed);
    dither(changed, colors, *indexed);
    after->indexed = std::move(indexed);
    return after;
}

} // namespace

Result<std::shared_ptr<const IndexedImage>> cachedIndexedImage(const Image& image) {
    ColorSurvey survey = surveyedColors(image);
    if (survey.exact)
        return std::shared_ptr<const IndexedImage>(std::make_shared<IndexedImage>(std::move(*survey.exact)));
    const bool isStored = image.storedBand(0) != nullptr;
    const auto before = isStored ? image.encoderMemory().get<CachedPalette>() : nullptr;
    if (before && before->indexed->size == image.pixelSize() &&
        before->indexed->hasTransparency == survey.hasTransparency)
        if (const auto after = afterEdits(*before, image)) {
            image.encoderMemory().set(after);
            return after->indexed;
        }
    Result<IndexedImage> chosen = quantized(image, survey.hasTransparency);
    if (!chosen)
        return chosen.error();
    auto colors = std::make_shared<CachedPalette>();
    colors->indexed = std::make_shared<IndexedImage>(std::move(*chosen));
    if (isStored) {
        colors->bands = image.bands();
        colors->error = meanSquaredError(PaletteSearch(*colors->indexed), sampledPixels(image));
        image.encoderMemory().set(colors);
    }
    return colors->indexed;
}

} // namespace complexion
