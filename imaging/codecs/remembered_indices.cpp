// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/remembered_indices.h"

#include <algorithm>
#include <array>
#include <limits>

namespace complexion {

namespace {

constexpr std::size_t kComponents = 3;
using Color = std::array<float, kComponents>;

/// Looking up one pixel after the other is the better way for at most this part of them.
constexpr std::int64_t kMaxChangedPart = 16;
/// The colours' fit to the picture is judged by so many of its pixels.
constexpr std::int64_t kJudgedPixels = 50'000;
/// Colours fit changed pixels when these are off by at most so much more than the picture's own pixels are,
/// in the mean square; or by what nobody sees, two levels in each component.
constexpr double kAcceptedWorsening = 2;
constexpr double kUnseenMisfit = 3 * 2 * 2;

/// A picture's chosen colours, the bands that they were given to, and how far its pixels are from them: the
/// mean square of the distances, in levels.
struct ChosenColors : Memo::Value {
    BandList bands;
    std::shared_ptr<const IndexedImage> indexed;
    double misfit = 0;
};

struct ChangedPixel {
    PixelPosition place;
    RGBA32 color;
};

Color asColor(RGBA32 pixel) {
    return {static_cast<float>(pixel.red()), static_cast<float>(pixel.green()),
            static_cast<float>(pixel.blue())};
}

/// The palette, for look-ups by distance.
class Colors {
public:
    explicit Colors(const IndexedImage& image) : m_first(image.hasTransparency ? 1 : 0) {
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

double misfitOf(const Colors& colors, const std::vector<RGBA32>& pixels) {
    double sum = 0;
    std::int64_t opaque = 0;
    for (const RGBA32 pixel : pixels)
        if (pixel.alpha() != 0) {
            sum += colors.nearest(asColor(pixel)).distance;
            ++opaque;
        }
    return opaque == 0 ? 0 : sum / static_cast<double>(opaque);
}

/// Pixels spread over the picture.
std::vector<RGBA32> spreadPixels(const Image& image) {
    const PixelSize size = image.pixelSize();
    const std::int64_t step = std::max<std::int64_t>(1, size.area() / kJudgedPixels);
    std::vector<RGBA32> pixels;
    for (std::int64_t place = 0; place < size.area(); place += step)
        pixels.push_back(withoutHalfTransparency(
            image.pixel(static_cast<int>(place / size.width), static_cast<int>(place % size.width))));
    return pixels;
}

/// The pixels that differ from those of the bands `before`, in scan order within each tile.
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
        return std::pair(pixel.place.row, pixel.place.column);
    });
    return changed;
}

/// Diffuses what a pixel is off to its neighbours, over the changed pixels only (Floyd and Steinberg, An
/// Adaptive Algorithm for Spatial Greyscale, 1976).
void dither(const std::vector<ChangedPixel>& changed, const Colors& colors, IndexedImage& indexed) {
    const auto width = static_cast<std::size_t>(indexed.size.width);
    // Places of one row and the next, with a margin on both sides.
    std::vector<Color> off(width + 2);
    std::vector<Color> offBelow(width + 2);
    std::int64_t row = -1;
    for (const ChangedPixel& pixel : changed) {
        if (pixel.place.row != row) {
            std::swap(off, offBelow);
            if (pixel.place.row != row + 1)
                std::ranges::fill(off, Color{});
            std::ranges::fill(offBelow, Color{});
            row = pixel.place.row;
        }
        const auto x = static_cast<std::size_t>(pixel.place.column);
        std::uint8_t& index = indexed.indices[static_cast<std::size_t>(row) * width + x];
        if (pixel.color.alpha() == 0) {
            index = 0;
            continue;
        }
        Color wanted = asColor(pixel.color);
        for (std::size_t c = 0; c < kComponents; ++c)
            wanted[c] = std::clamp(wanted[c] + off[x + 1][c], 0.0F, 255.0F);
        const Colors::Found found = colors.nearest(wanted);
        index = found.index;
        for (std::size_t c = 0; c < kComponents; ++c) {
            const float rest = (wanted[c] - found.color[c]) / 16;
            off[x + 2][c] += 7 * rest;
            offBelow[x][c] += 3 * rest;
            offBelow[x + 1][c] += 5 * rest;
            offBelow[x + 2][c] += rest;
        }
    }
}

/// `before` with the pixels that have changed since; null when other colours have to be chosen.
std::shared_ptr<const ChosenColors> afterEdits(const ChosenColors& before, const Image& image) {
    const std::vector<ChangedPixel> changed = pixelsChangedSince(image, before.bands);
    if (std::ssize(changed) > image.pixelSize().area() / kMaxChangedPart)
        return nullptr;
    const Colors colors(*before.indexed);
    std::vector<RGBA32> changedColors;
    std::ranges::transform(changed, std::back_inserter(changedColors), &ChangedPixel::color);
    if (misfitOf(colors, changedColors) > std::max(kUnseenMisfit, kAcceptedWorsening * before.misfit))
        return nullptr;
    auto after = std::make_shared<ChosenColors>();
    after->bands = image.bands();
    after->misfit = before.misfit;
    auto indexed = std::make_shared<IndexedImage>(*before.indexed);
    dither(changed, colors, *indexed);
    after->indexed = std::move(indexed);
    return after;
}

} // namespace

Result<std::shared_ptr<const IndexedImage>> rememberedIndexedImage(const Image& image) {
    ColorSurvey survey = surveyedColors(image);
    if (survey.exact)
        return std::shared_ptr<const IndexedImage>(std::make_shared<IndexedImage>(std::move(*survey.exact)));
    const bool isStored = image.storedBand(0) != nullptr;
    const auto before = isStored ? image.encoderMemory().get<ChosenColors>() : nullptr;
    if (before && before->indexed->size == image.pixelSize() &&
        before->indexed->hasTransparency == survey.hasTransparency)
        if (const auto after = afterEdits(*before, image)) {
            image.encoderMemory().set(after);
            return after->indexed;
        }
    Result<IndexedImage> chosen = quantized(image, survey.hasTransparency);
    if (!chosen)
        return chosen.error();
    auto colors = std::make_shared<ChosenColors>();
    colors->indexed = std::make_shared<IndexedImage>(std::move(*chosen));
    if (isStored) {
        colors->bands = image.bands();
        colors->misfit = misfitOf(Colors(*colors->indexed), spreadPixels(image));
        image.encoderMemory().set(colors);
    }
    return colors->indexed;
}

} // namespace complexion
