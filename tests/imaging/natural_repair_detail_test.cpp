// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/detail_source.h"

#include "imaging/healing/blur.h"
#include "imaging/healing/skin_detail.h"
#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

using healing::Blemish;
using healing::CellGrid;
using healing::DetailSource;
using healing::Restoration;
using healing::SkinWindow;

SkinWindow windowOf(const Image& image, PixelPosition place, std::int64_t radius) {
    return healing::readSkinWindow(image, RepairDisc::at(centreOf(place, image.size()), image, radius));
}

Restoration restorationOf(const Image& image, PixelPosition place, std::int64_t radius) {
    const SkinWindow window = windowOf(image, place, radius);
    const healing::Finding finding =
        healing::findBlemish(window, middleOf(window), healing::Thresholds::both(kThreshold));
    const auto* blemish = std::get_if<Blemish>(&finding);
    return blemish ? healing::restoreDetail(window, *blemish) : Restoration{};
}

/// The correlation of the green component in two square regions of a picture, given by their centres.
double correlation(const Image& picture, PixelPosition a, PixelPosition b, int reach) {
    const auto greenAt = [&picture](PixelPosition place, int dy, int dx) {
        return static_cast<double>(
            picture.pixel(static_cast<int>(place.row) + dy, static_cast<int>(place.column) + dx).green());
    };
    double count = 0;
    double sumA = 0;
    double sumB = 0;
    double squareA = 0;
    double squareB = 0;
    double product = 0;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx) {
            const double valueA = greenAt(a, dy, dx);
            const double valueB = greenAt(b, dy, dx);
            ++count;
            sumA += valueA;
            sumB += valueB;
            squareA += valueA * valueA;
            squareB += valueB * valueB;
            product += valueA * valueB;
        }
    return (product - sumA * sumB / count) /
           std::sqrt((squareA - sumA * sumA / count) * (squareB - sumB * sumB / count));
}

/// The skin around a mottled blemish, as the input of the search for detail.
struct Neighbourhood {
    SkinWindow window;
    Blemish blemish;
    CellGrid<healing::Cell> smooth;
    CellGrid<float> detail;

    static Neighbourhood ofMottledSkin() {
        const Image image = mottled(Skin{.grain = 5}.clean(), kCenter);
        const SkinWindow window = windowOf(image, kCenter, kClickRadius);
        const Blemish blemish = std::get<Blemish>(
            healing::findBlemish(window, middleOf(window), healing::Thresholds::both(kThreshold)));
        const PixelRect whole = window.cells.rect();
        Neighbourhood found{.window = window,
                            .blemish = blemish,
                            .smooth = healing::blurred(window.cells, 2, whole, blemish.mask),
                            .detail = CellGrid<float>(whole)};
        healing::forEachCell(whole, [&found](int x, int y) {
            for (std::size_t c = 0; c < 3 && !found.blemish.mask.valueAt(x, y); ++c)
                found.detail.at(x, y) += found.window.cells.at(x, y)[c] - found.smooth.at(x, y)[c];
        });
        return found;
    }

    std::optional<DetailSource> sourceWhere(const CellGrid<float>& present) const {
        return healing::findDetailSource(window, blemish, smooth, detail, present, 0.01F);
    }
};

TEST(NaturalRepair, APatchThatIsAlreadyThereIsNotUsedAgain) {
    const Neighbourhood skin = Neighbourhood::ofMottledSkin();
    CellGrid<float> present(skin.blemish.bounds);
    std::vector<DetailSource> taken;
    for (int i = 0; i < 3; ++i) {
        const std::optional<DetailSource> source = skin.sourceWhere(present);
        ASSERT_TRUE(source.has_value());
        for (const DetailSource& before : taken)
            EXPECT_FALSE(before.dx == source->dx && before.dy == source->dy) << i;
        taken.push_back(*source);
        healing::forEachCell(present.rect(), [&](int x, int y) {
            present.at(x, y) += skin.detail.at(x + source->dx, y + source->dy);
        });
    }
}

TEST(NaturalRepair, ASecondClickDoesNotRepeatThePattern) {
    const Image image = mottled(Skin{.grain = 5}.clean(), kCenter);
    const Restoration first = restorationOf(image, kCenter, kClickRadius);
    ASSERT_TRUE(first.columns != 0 || first.rows != 0);
    const PixelPosition source{kCenter.row + first.rows, kCenter.column + first.columns};
    const Image once = healed(image);
    EXPECT_GT(correlation(once, kCenter, source, 7), 0.7);

    // Adds a faint new spot: it is repaired, and the pattern that is there already is not applied again.
    const Image spotted = painted(kSkinSize, [&once](int row, int column) {
        const RGBA32 pixel = once.pixel(row, column);
        const double factor = 1 - 0.4 * stainAt(row, column, kCenter, 8);
        return RGBA32(byteOf(pixel.red() * factor), byteOf(pixel.green() * factor),
                      byteOf(pixel.blue() * factor), 255);
    });
    const Restoration second = restorationOf(spotted, kCenter, kClickRadius);
    EXPECT_GT(second.gain, 0);
    EXPECT_FALSE(second.columns == first.columns && second.rows == first.rows);
    const Image twice = healed(spotted);
    EXPECT_LT(grainAround(twice, 6), 2 * grainAround(once, 6));
    EXPECT_GT(grainAround(twice, 6), 0.5 * grainAround(once, 6));
}

TEST(NaturalRepair, ForAMottledBlemishDetailComesFromCleanSkin) {
    const Image clean = Skin{.grain = 5}.clean();
    const Restoration restoration = restorationOf(mottled(clean, kCenter), kCenter, kClickRadius);
    EXPECT_GT(restoration.gain, 0);
    EXPECT_EQ(restoration.grain, 0);
    // The patch does not overlap the blemish.
    EXPECT_GT(std::hypot(restoration.columns, restoration.rows), kMottledRadius);
}

/// The correlation of the green component of two pictures around the centre.
double likeness(const Image& a, const Image& b, int reach) {
    const int width = 2 * reach + 1;
    const Image both = painted({2 * width, width}, [&](int row, int column) {
        const Image& image = column < width ? a : b;
        return image.pixel(static_cast<int>(kCenter.row) - reach + row,
                           static_cast<int>(kCenter.column) - reach + column % width);
    });
    return correlation(both, {reach, reach}, {reach, width + reach}, reach);
}

/// The largest mean difference in green, in levels, along a circle around the centre.
double strongestRing(const Image& a, const Image& b, double radius) {
    std::vector<double> sums(static_cast<std::size_t>(1.5 * radius) + 1);
    std::vector<double> counts(sums.size());
    const int reach = static_cast<int>(sums.size());
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx) {
            const auto ring = static_cast<std::size_t>(std::lround(std::hypot(dx, dy)));
            if (ring >= sums.size())
                continue;
            const auto row = static_cast<int>(kCenter.row) + dy;
            const auto column = static_cast<int>(kCenter.column) + dx;
            sums[ring] += a.pixel(row, column).green() - b.pixel(row, column).green();
            ++counts[ring];
        }
    double strongest = 0;
    for (std::size_t ring = 3; ring < sums.size(); ++ring) // the few pixels of smaller circles are texture
        strongest = std::max(strongest, std::abs(sums[ring] / counts[ring]));
    return strongest;
}

TEST(NaturalRepair, NoRingStaysAtTheOutlineOfASmallStain) {
    for (const int radius : {16, 20, 26, 32}) { // cells of one pixel and of two
        SCOPED_TRACE(radius);
        const auto skinWith = [radius](double stain) {
            return painted(kSkinSize, [radius, stain](int row, int column) {
                const double light = 3 * grainAt(row / 2, column / 2);
                const double t = stain * stainAt(row, column, kCenter, 0.6 * radius);
                return RGBA32(byteOf((205 + light) * (1 - 0.3 * t)), byteOf((160 + light) * (1 - 0.5 * t)),
                              byteOf((140 + light) * (1 - 0.4 * t)), 255);
            });
        };
        EXPECT_LT(strongestRing(healed(skinWith(1), kCenter, radius), skinWith(0), 0.7 * radius), 2);
    }
}

TEST(NaturalRepair, TheCutBesideANostrilHasNoSteps) {
    // In cells of several pixels, whose corners would be visible.
    const Image image = painted(kSkinSize, [](int row, int column) {
        const double nostril = 1 - 0.8 * std::clamp((52 - row) / 12.0, 0.0, 1.0);
        const double t = stainAt(row, column, kCenter, 36);
        const double light = nostril * (1 + 0.02 * grainAt(row / 3, column / 3));
        return RGBA32(byteOf(205 * light * (1 - 0.3 * t)), byteOf(160 * light * (1 - 0.5 * t)),
                      byteOf(140 * light * (1 - 0.4 * t)), 255);
    });
    const Image result = healed(image, kCenter, 70);
    const auto changeAt = [&](int row, int column) {
        return result.pixel(row, column).green() - image.pixel(row, column).green();
    };
    ASSERT_GT(changeAt(static_cast<int>(kCenter.row), static_cast<int>(kCenter.column)), 60);
    int largest = 0;
    for (int row = 0; row + 1 < kSkinSize.height; ++row)
        for (int column = 0; column + 1 < kSkinSize.width; ++column)
            largest = std::max({largest, std::abs(changeAt(row, column) - changeAt(row + 1, column)),
                                std::abs(changeAt(row, column) - changeAt(row, column + 1))});
    EXPECT_LT(largest, 40);
}

TEST(NaturalRepair, NoMottleIsPaintedIntoABlownHighlight) {
    const Image clean = painted(kSkinSize, [&](int row, int column) {
        const double distance =
            std::hypot(row - static_cast<double>(kCenter.row), column - static_cast<double>(kCenter.column));
        const double light = 300 - 3.0 * distance + 6 * grainAt(row / 2, column / 2);
        return RGBA32(byteOf(light), byteOf(light - 3), byteOf(light - 6), 255);
    });
    const Image image = painted(kSkinSize, [&](int row, int column) {
        const RGBA32 pixel = clean.pixel(row, column);
        const double mottle = 0.3 * grainAt(row / 3, column / 3);
        const double t = (1 + mottle) * stainAt(row, column, kCenter, 9);
        return RGBA32(byteOf(pixel.red() * (1 - 0.2 * t)), byteOf(pixel.green() * (1 - 0.35 * t)),
                      byteOf(pixel.blue() * (1 - 0.35 * t)), 255);
    });
    const Image result = healed(image);
    int darkest = 255;
    for (int row = -10; row <= 10; ++row)
        for (int column = -10; column <= 10; ++column)
            if (row * row + column * column < 100)
                darkest = std::min<int>(darkest, result
                                                     .pixel(static_cast<int>(kCenter.row) + row,
                                                            static_cast<int>(kCenter.column) + column)
                                                     .green());
    EXPECT_GE(darkest, 254); // 249 if its detail stays
}

TEST(NaturalRepair, AStainKeepsItsPoresBesideSomethingMuchRougher) {
    // The hairs of a brow in the disc's rim are no measure for the pores of the skin beside it.
    const auto besideHairs = [](const Image& skin) {
        return painted(kSkinSize, [&skin](int row, int column) {
            const RGBA32 pixel = skin.pixel(row, column);
            const double hair = row > kCenter.row + 14 ? (column % 2 == 0 ? 1.2 : 0.8) : 1;
            return RGBA32(byteOf(pixel.red() * hair), byteOf(pixel.green() * hair),
                          byteOf(pixel.blue() * hair), 255);
        });
    };
    const Skin skin{.radius = 8};
    EXPECT_GT(likeness(healed(besideHairs(skin.picture())), besideHairs(skin.clean()), 6), 0.5);
}

TEST(NaturalRepair, WithoutASourcePatchAStainKeepsItsFaintPores) {
    // An opaque layer leaves a little of the pores' contrast. The disc fills the picture.
    const PixelSize size{96, 96};
    const PixelPosition middle{48, 48};
    const auto skinWith = [&](bool stained) {
        return painted(size, [&](int row, int column) {
            const double t = stained ? stainAt(row, column, middle, 30) : 0;
            const double light = 1 + 0.05 * (1 - 0.7 * t) * grainAt(row / 3, column / 3);
            return RGBA32(byteOf((200 + 30 * t) * light), byteOf((160 + 60 * t) * light),
                          byteOf((140 + 70 * t) * light), 255);
        });
    };
    const Image result = healed(skinWith(true), middle, 48);
    const Image both =
        painted({size.width * 2, size.height}, [&, clean = skinWith(false)](int row, int column) {
            return column < size.width ? result.pixel(row, column) : clean.pixel(row, column - size.width);
        });
    EXPECT_GT(correlation(both, middle, {middle.row, middle.column + size.width}, 12), 0.6);
}

/// The disc fills the picture, so that there is no clean skin from which to take a patch.
void expectMembraneWithGrain(int radius) {
    SCOPED_TRACE(radius);
    const PixelSize size{2 * radius, 2 * radius};
    const PixelPosition middle{radius, radius};
    const Image clean = painted(size, [](int row, int column) {
        const double light = 6 * grainAt(row, column);
        return RGBA32(byteOf(200 + light), byteOf(160 + light), byteOf(140 + light), 255);
    });
    const Image image = mottled(clean, middle, 0.55 * radius);
    const Restoration restoration = restorationOf(image, middle, radius);
    EXPECT_EQ(restoration.gain, 0);
    EXPECT_GT(restoration.grain, 0);

    const Image result = healed(image, middle, radius);
    double sum = 0;
    double square = 0;
    double cleanSquare = 0;
    double count = 0;
    for (int dy = -radius / 4; dy <= radius / 4; ++dy)
        for (int dx = -radius / 4; dx <= radius / 4; ++dx) {
            const double level = result.pixel(radius + dy, radius + dx).green();
            const double grain = 6 * grainAt(radius + dy, radius + dx);
            sum += level;
            square += level * level;
            cleanSquare += grain * grain;
            ++count;
        }
    const double mean = sum / count;
    EXPECT_NEAR(mean, 160, 4);
    const double ratio = (square / count - mean * mean) / (cleanSquare / count);
    EXPECT_GT(ratio, 0.5);
    EXPECT_LT(ratio, 2);
}

TEST(NaturalRepair, WithoutASourcePatchTheMembraneGetsGrainAsStrongAsTheSkins) {
    expectMembraneWithGrain(20);
    expectMembraneWithGrain(48);
}

} // namespace
} // namespace complexion
